#include "data/lookup_completion.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "data/connection_scope.h"

namespace orvane::data {
namespace {

constexpr std::size_t kKeysOfARequest = 200;

struct KeysOfTable {
  TLookupTable* table = nullptr;
  std::vector<Variant> keys;
};

std::vector<KeysOfTable> MissingByTable(const std::vector<LookupNeed>& needs) {
  std::vector<KeysOfTable> missing;
  for (const LookupNeed& need : needs) {
    assert(!need.table.IsStale());
    auto of = std::ranges::find(missing, &need.table, &KeysOfTable::table);
    if (of == missing.end()) of = missing.insert(of, {&need.table, {}});
    const TField& lookup = need.dataSet.FieldByName(need.lookupField);
    for (const Variant& key : need.dataSet.MissingLookupKeys(lookup)) {
      const bool known = std::ranges::find(of->keys, key) != of->keys.end();
      if (!known && need.table.MayBeFetched(key)) of->keys.push_back(key);
    }
  }
  return missing;
}

/// Statements have a limited length: many keys go in several requests of the same call.
std::vector<KeysOfTable> InPortions(const std::vector<KeysOfTable>& missing) {
  std::vector<KeysOfTable> portions;
  for (const KeysOfTable& of : missing) {
    for (std::size_t from = 0; from < of.keys.size(); from += kKeysOfARequest) {
      const std::size_t to = std::min(from + kKeysOfARequest, of.keys.size());
      portions.push_back({of.table,
                          {of.keys.begin() + static_cast<std::ptrdiff_t>(from),
                           of.keys.begin() + static_cast<std::ptrdiff_t>(to)}});
    }
  }
  return portions;
}

}  // namespace

void CompleteLookups(const std::vector<LookupNeed>& needs) {
  const std::vector<KeysOfTable> portions = InPortions(MissingByTable(needs));
  ConnectionScope scope;
  std::vector<FetchRequest> requests;
  for (const KeysOfTable& portion : portions) {
    scope.Add(portion.table->DataSet().Connection());
    requests.push_back(portion.table->KeysRequest(portion.keys));
  }
  const std::vector<DataPacket> packets = scope.Fetch(requests);
  for (std::size_t i = 0; i < packets.size(); ++i)
    portions[i].table->TakeKeys(portions[i].keys, packets[i]);
}

}  // namespace orvane::data
