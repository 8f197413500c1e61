#pragma once

// What strangers may send before anybody has logged in, and a user who means harm. Bounded in count
// and time.

#include <chrono>
#include <string>
#include <vector>

#include "packet/application_server.h"

namespace orvane::torture {

/// Wrong passwords for a login, so many times.
void StrangerGuesses(const std::string& address, const std::string& login, int times);

/// Messages that are small on the way and large when they are unpacked or read, several at once.
void ThrowBombs(const std::string& address);

/// More connections than a process has files by default, over which nothing is said.
class SilentCrowd {
 public:
  explicit SilentCrowd(const std::string& address);
  ~SilentCrowd();
  SilentCrowd(const SilentCrowd&) = delete;
  SilentCrowd& operator=(const SilentCrowd&) = delete;

  std::size_t Count() const { return sockets_.size(); }

 private:
  std::vector<int> sockets_;
};

/// Dear searches of one session, eight at once and more, and large ones whose answers it does not
/// read, for so long.
void Starve(const std::string& address, const Caller& caller, std::chrono::seconds time);

/// A silent crowd and seventy strangers who guess, for so long.
void Flood(const std::string& address, std::chrono::seconds time);

}  // namespace orvane::torture
