#pragma once

// The rows behind a lookup combo: a search template, its parameters, and as many of its rows as
// were needed so far. Half a million entries open like ten: a first portion comes with the screen,
// keys that have not arrived are found on the server one by one, typed beginnings are answered in
// pages.

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "data/search_template.h"

namespace orvane {

class TLookupTable {
 public:
  /// `keyField` is the dataset's field that codes refer to.
  TLookupTable(TVosClientDataSet& dataSet, std::string_view keyField);

  TVosClientDataSet& DataSet() const { return dataSet_; }
  const std::string& KeyField() const { return keyField_; }

  std::vector<std::string> dlgSQL;  ///< lines of the template
  std::vector<SearchField> dlgSearchFields;
  std::int32_t portion = 1000;

  /// A changed value marks the rows as stale; they are fetched when they are needed next.
  void SetParam(std::string_view name, Variant value);
  Variant Param(std::string_view name) const;
  void SetTemplate(std::vector<std::string> lines);
  bool IsStale() const { return stale_; }

  /// The first portion, ordered by key, without conditions: for batches that travel together. The
  /// answer goes to TakeFilled.
  FetchRequest FillRequest() const;
  void TakeFilled(DataPacket packet);
  /// GetRemoteLookupData: fetches the first portion; one call.
  void Fill();
  void FillIfStale();

  /// Moves the dataset to the row of that key, fetching it when it has not arrived (one call).
  /// False when there is no such row.
  bool LocateKey(const Variant& key);
  /// A page of rows where `field` equals, begins with or contains `text`; rows already in memory
  /// answer alone when the whole table has arrived. Positions in the dataset.
  std::vector<std::size_t> Narrow(std::string_view field, SearchMatch match, std::string_view text,
                                  std::size_t limit, bool* more = nullptr);

 private:
  TVosClientDataSet& dataSet_;
  std::string keyField_;
  NamedValues params_;
  bool stale_ = true;
};

}  // namespace orvane
