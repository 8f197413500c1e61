#pragma once

// Password hashes (Argon2id) and the secrets of sessions. A hash carries its own cost and salt, so
// that the cost may be raised later without touching the stored ones.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "packet/failure.h"

namespace orvane::server {

/// What one hash costs. The default takes 64 MB and some tens of milliseconds.
struct PasswordCost {
  std::uint64_t operations = 2;
  std::size_t bytes = std::size_t{64} * 1024 * 1024;

  /// The least that the library accepts, for tests.
  static PasswordCost Lowest() { return {1, 8192}; }
};

inline constexpr std::size_t kShortestPassword = 6;   ///< code points
inline constexpr std::size_t kLongestPassword = 128;  ///< code points

/// Refused when the password is too short, too long or holds control characters.
Answer<Done> CheckPassword(std::string_view password);
/// Text of a fresh hash with its own salt; Internal when there is not enough memory.
Answer<std::string> HashPassword(std::string_view password, PasswordCost cost);
/// False for an empty or malformed hash too.
bool PasswordMatches(std::string_view password, const std::string& hash);

/// Secret of a session: 32 random bytes, as 64 hexadecimal digits.
std::string NewTicket();
/// Public name of a session: 8 random bytes, as 16 hexadecimal digits.
std::string NewSessionName();
/// What is kept of a ticket: the hash of its text, as 64 hexadecimal digits.
std::string TicketHash(std::string_view ticket);

}  // namespace orvane::server
