#pragma once

// Users who enter purchase requests as fast as they can, whatever happens to the server, and keep a
// book of what it acknowledged.

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "server/engine/database.h"
#include "wire/remote_server.h"

namespace orvane::torture {

using namespace apps;  // troubles every floor

inline constexpr char kLogin[] = "ivanova";
inline constexpr char kPassword[] = "парола-изпитание";

/// A second user of the company, who means harm; his password is the same.
inline constexpr char kHostileLogin[] = "petrov";

/// A session of a user over a link of its own; empty when he is not let in within the time.
struct Visitor {
  std::unique_ptr<RemoteServer> server;
  Caller caller;
};
std::unique_ptr<Visitor> LetIn(const std::string& address, std::chrono::seconds within,
                               const std::string& login = kLogin);

/// The insertion of a request's head, told apart by its description.
ApplyRequest NewRequest(const std::string& description, const std::string& clientKey);

/// What was acknowledged, and what was answered that should not have been.
class Book {
 public:
  void Acknowledge(const std::string& description, std::int64_t id);
  void Note(const std::string& sentence);
  std::size_t Acknowledged() const;
  /// How often a sentence with these words was answered.
  int Heard(const std::string& words) const;
  /// Compares with the database: everything once, with its row. A sentence per kind of difference.
  std::vector<std::string> Differences(Database& database) const;

 private:
  mutable std::mutex mutex_;
  std::map<std::string, std::int64_t> acknowledged_;
  std::map<std::string, int> heard_;
};

class Writers {
 public:
  /// `series` begins the descriptions.
  Writers(Book& book, const std::string& address, const std::string& series, int count);
  ~Writers();
  Writers(const Writers&) = delete;
  Writers& operator=(const Writers&) = delete;

  /// Lets each finish what it is at, as long as it takes up to a minute.
  void Finish();

 private:
  void Write(const std::string& address, const std::string& series);
  /// Sends the same until there is an answer; null when there was none in the end.
  std::unique_ptr<ApplyAnswer> Send(const std::string& address, std::unique_ptr<Visitor>& visitor,
                                    const ApplyRequest& request);

  Book& book_;
  std::atomic<bool> finish_{false};
  std::atomic<bool> giveUp_{false};
  std::atomic<int> atWork_{0};
  std::vector<std::thread> threads_;
};

}  // namespace orvane::torture
