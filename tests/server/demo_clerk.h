#pragma once

// Documents of the demonstration entered anew through the providers: what the tests of that share.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "packet/clock.h"
#include "packet/delta.h"
#include "server/demo/demo_tables.h"
#include "server/server_case.h"

namespace orvane::server {

/// A row's value; fails the test when the row has no such column.
const Variant& At(const NamedValues& row, std::string_view column);
std::int64_t NumberAt(const NamedValues& row, std::string_view column);

/// The rows of a table that meet a condition, all without one.
std::vector<NamedValues> RowsOf(Database& base, const DemoTable& table, const std::string& where);

/// Makes a small demonstration company with so many requests.
void MakeSmallDemo(Database& base, std::int64_t requests);

/// Fails the test for every row and column in which the two differ.
void Compare(const DemoTable& table, const std::vector<NamedValues>& written,
             const std::vector<NamedValues>& entered);

/// Sits down as somebody at a moment, and applies changes one by one.
class DemoClerk {
 public:
  /// Runs `clearing` first: what takes away the documents that are entered anew.
  DemoClerk(Database& base, const std::vector<std::string>& clearing, std::string_view serverClass,
            Point point);

 protected:
  void Come(const std::string& login, Stamp moment);
  void Apply(std::string_view provider, Change change);
  /// The document being entered, for messages.
  virtual std::string Where() const = 0;
  ~DemoClerk() = default;

  Database& base_;
  SetClock clock_;
  std::unique_ptr<OrvaneServer> server_;
  std::map<std::int64_t, std::string> logins_;
  Caller caller_;
  std::string login_;

 private:
  std::string_view serverClass_;
  Point point_;
};

}  // namespace orvane::server
