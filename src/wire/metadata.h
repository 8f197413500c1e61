#pragma once

// What travels beside a call's message, so that a server knows who asks before it reads anything.

#include <cstddef>

namespace orvane::wire {

/// The ticket of the session.
inline constexpr char kTicketMetadata[] = "orvane-ticket-bin";
/// LogInRequest, serialised.
inline constexpr char kLogInMetadata[] = "orvane-log-in-bin";
/// Bytes of all metadata of a call.
inline constexpr int kLongestMetadata = 16 * 1024;
/// Bytes of a login; no name or password comes near it.
inline constexpr std::size_t kLongestLogIn = std::size_t{4} * 1024;

}  // namespace orvane::wire
