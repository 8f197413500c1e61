#pragma once

// The rows behind a lookup combo: a search template, its parameters, and as many of its rows as
// were needed so far. Half a million entries open like ten: a first portion comes with the screen,
// keys that have not arrived are found on the server one by one, typed beginnings are answered in
// pages.

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/client_dataset.h"
#include "data/search_template.h"

namespace orvane::data {

class TLookupTable {
 public:
  /// `keyField` is the dataset's field that codes refer to.
  TLookupTable(TVosClientDataSet& dataSet, std::string_view keyField);

  TVosClientDataSet& DataSet() const { return dataSet_; }
  const std::string& KeyField() const { return keyField_; }

  /// Lines of the template; SetTemplate, once rows have come. Without lines nothing is offered and
  /// nothing asked.
  std::vector<std::string> dlgSQL;
  std::vector<SearchField> dlgSearchFields;
  std::int32_t portion = 1000;

  /// A changed value marks the rows as stale; they are fetched when they are needed next.
  void SetParam(std::string_view name, Variant value);
  Variant Param(std::string_view name) const;
  const NamedValues& Params() const { return params_; }
  void SetTemplate(std::vector<std::string> lines);
  bool IsStale() const { return stale_; }
  /// Drops the rows; they are fetched when they are needed next. For rows that others change while
  /// the screen is open.
  void Forget();

  /// The first portion, ordered by key, without conditions: for batches that travel together. The
  /// answer goes to TakeFilled.
  FetchRequest FillRequest() const;
  void TakeFilled(DataPacket packet);
  /// GetRemoteLookupData: fetches the first portion; one call.
  void Fill();
  void FillIfStale();
  /// The next portion (one call), without the rows that came before it by their key.
  void FetchMore();

  /// Moves the dataset to the row of that key, fetching it when it has not arrived (one call).
  /// False when there is no such row.
  bool LocateKey(const Variant& key);
  /// Asks for the rows of several keys at once, for batches that travel together. The answer goes
  /// to TakeKeys, which also remembers the keys that the server does not know.
  FetchRequest KeysRequest(const std::vector<Variant>& keys) const;
  void TakeKeys(const std::vector<Variant>& keys, const DataPacket& packet);
  /// Rows behind codes that the screen shows (its document's own), kept apart from those that are
  /// offered; replaces the former ones.
  void TakeShown(DataPacket rows) { shown_ = std::move(rows); }
  /// A column of that key's row, among those offered or shown; nothing is fetched. Null when the
  /// row is not here.
  Variant ValueOf(const Variant& key, std::string_view field) const;
  /// The row of that key is here, offered or shown.
  bool Knows(const Variant& key) const;
  /// True when the key has not arrived and asking for it may bring it.
  bool MayBeFetched(const Variant& key) const;
  /// A page of rows where `field` equals, begins with or contains `text`; rows already in memory
  /// answer alone when the whole table has arrived. Positions in the dataset.
  std::vector<std::size_t> Narrow(std::string_view field, SearchMatch match, std::string_view text,
                                  std::size_t limit, bool* more = nullptr);

 private:
  FetchRequest Request(const std::vector<SearchCondition>& conditions, std::string_view orderField,
                       std::int32_t rowLimit) const;
  std::string ColumnOf(std::string_view field) const;
  std::optional<std::size_t> ShownRow(const Variant& key) const;
  void AddFound(const DataPacket& packet);
  std::vector<std::size_t> NarrowInMemory(const TField& field, SearchMatch match,
                                          std::string_view text, std::size_t limit,
                                          bool& more) const;
  std::vector<std::size_t> NarrowOnServer(const TField& field, SearchMatch match,
                                          std::string_view text, std::size_t limit, bool& more);

  struct ByValue {
    bool operator()(const Variant& left, const Variant& right) const {
      return Variant::Compare(left, right) < 0;
    }
  };

  TVosClientDataSet& dataSet_;
  std::string keyField_;
  NamedValues params_;
  DataPacket shown_;
  bool stale_ = true;
  std::set<Variant, ByValue> unknownKeys_;  ///< asked for, and not there
};

}  // namespace orvane::data
