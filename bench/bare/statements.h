#pragma once

// What a careful person would write by hand for what the benchmarks compare.

#include <string>
#include <vector>

#include "bare/bare.h"

namespace orvane::bench {

/// All rows of a purchase request with the names that its screen shows.
std::vector<BareStatement> RowsOfRequest(std::int64_t id, std::int64_t version);
/// A page of the report of requests.
BareStatement PageOfRequests(const std::string& condition);
/// A page of supply-list entries whose names begin with `begin`, in small letters.
BareStatement EntriesThatBegin(const std::string& begin);
/// A row's new quantity and amount, the head's sums, `history` lines of history and a key, as one
/// writes them who stores what a post stores.
struct RowPost {
  std::int64_t id = 0;
  std::int64_t version = 1;
  std::int64_t row = 1;
  std::int64_t quantity = 1;
  std::int64_t history = 2;
  std::string key;
};
std::vector<BareStatement> WritesOf(const RowPost& post);
/// What a decision at a level reads and stores, with the request's status, its history and a key.
/// The values stay as they are, so that the request still waits for the next one.
struct LevelDecision {
  std::int64_t id = 0;
  std::int64_t version = 1;
  std::int64_t level = 1;
  std::string key;
};
std::vector<BareStatement> DecisionOf(const LevelDecision& decision);

}  // namespace orvane::bench
