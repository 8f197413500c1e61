#pragma once

// Changes under keys that the client chose: what was carried out under a key is kept with its
// answer in the same transaction, and a repetition gets the same answer without touching anything.
// Keys are kept for seven days of running time.

#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "packet/application_server.h"
#include "server/engine/database.h"
#include "server/providers/work.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

inline constexpr std::size_t kLongestClientKey = 64;

/// What was answered under a key.
struct KeptAnswer {
  std::string requestHash;
  NamedValues filled;
  Variant ownerAnswer;
  NamedValues headMoved;
};

/// Tells one change to one provider from another.
std::string RequestHash(std::string_view provider, const Change& change);

/// Reads the answers under the keys of the changes.
Statement SelectKeptAnswers(const std::string& login, std::span<const PreparedChange> changes);
/// By key; `packet` is the answer to SelectKeptAnswers.
std::map<std::string, KeptAnswer> KeptAnswers(const DataPacket& packet);
/// Keeps the answer of a change that is being carried out.
Statement KeepAnswer(const WriteContext& context, const PreparedChange& change);

/// Whether a client may use the key: printable, without blanks, of bounded length.
bool IsClientKey(std::string_view key);

/// What a writing method does in its transaction; `first` are the answers to its first statements.
using MethodBody = std::function<Answer<VariantArray, Setback>(Transaction&, const Packets& first)>;
/// Carries the called method out under its key, once: a repetition gets the kept answer.
Answer<VariantArray> WriteOnce(Work& work, std::vector<Statement> first, const MethodBody& body);

}  // namespace orvane::server
