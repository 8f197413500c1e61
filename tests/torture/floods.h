#pragma once

// What strangers may send before anybody has logged in. Bounded in count and time.

#include <chrono>
#include <string>

namespace orvane::torture {

/// Wrong passwords for a login, so many times.
void StrangerGuesses(const std::string& address, const std::string& login, int times);

/// Messages that are small on the way and large when they are unpacked or read, several at once.
void ThrowBombs(const std::string& address);

/// Silent connections beyond a thousand and seventy strangers who guess, for so long.
void Flood(const std::string& address, std::chrono::seconds time);

}  // namespace orvane::torture
