#include "server/sessions/passwords.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <span>

#include "packet/fold.h"

namespace orvane::server {
namespace {

/// Hashes take much memory; logins of a whole morning wait for each other instead.
std::mutex& OneHashAtATime() {
  static std::mutex mutex;
  return mutex;
}

bool LibraryReady() {
  static const bool ready = sodium_init() >= 0;
  return ready;
}

std::string Hexadecimal(std::span<const unsigned char> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const unsigned char byte : bytes) {
    text.push_back(kDigits[byte >> 4]);
    text.push_back(kDigits[byte & 15]);
  }
  return text;
}

template <std::size_t N>
std::string RandomHexadecimal() {
  if (!LibraryReady()) return {};
  std::array<unsigned char, N> bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  return Hexadecimal(bytes);
}

}  // namespace

Answer<Done> CheckPassword(std::string_view password) {
  if (!IsUtf8(password)) return Refused("Паролата съдържа непозволени знаци.");
  const bool control = std::any_of(password.begin(), password.end(), [](char c) {
    return static_cast<unsigned char>(c) < 32 || c == 127;
  });
  if (control) return Refused("Паролата съдържа непозволени знаци.");
  const std::size_t length = Utf8Length(password);
  if (length < kShortestPassword) {
    return Refused("Паролата е твърде къса: трябват поне " + std::to_string(kShortestPassword) +
                   " знака.");
  }
  if (length > kLongestPassword) {
    return Refused("Паролата е твърде дълга: позволени са най-много " +
                   std::to_string(kLongestPassword) + " знака.");
  }
  return Done{};
}

Answer<std::string> HashPassword(std::string_view password, PasswordCost cost) {
  const Failure failure{FailureKind::Internal,
                        "Паролата не може да бъде записана: на сървъра не достига памет."};
  if (!LibraryReady()) return failure;
  std::array<char, crypto_pwhash_STRBYTES> hash{};
  const std::lock_guard lock(OneHashAtATime());
  if (crypto_pwhash_str_alg(hash.data(), password.data(), password.size(), cost.operations,
                            cost.bytes, crypto_pwhash_ALG_ARGON2ID13) != 0) {
    return failure;
  }
  return std::string(hash.data());
}

bool PasswordMatches(std::string_view password, const std::string& hash) {
  if (!LibraryReady() || hash.empty() || hash.size() >= crypto_pwhash_STRBYTES) return false;
  const std::lock_guard lock(OneHashAtATime());
  return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

std::string NewTicket() {
  return RandomHexadecimal<32>();
}

std::string NewSessionName() {
  return RandomHexadecimal<8>();
}

std::string TicketHash(std::string_view ticket) {
  std::array<unsigned char, crypto_hash_sha256_BYTES> hash{};
  crypto_hash_sha256(hash.data(), reinterpret_cast<const unsigned char*>(ticket.data()),
                     ticket.size());
  return Hexadecimal(hash);
}

}  // namespace orvane::server
