#include "data/lookup_table.h"

#include <algorithm>
#include <cassert>
#include <optional>
#include <utility>

#include "data/connection_scope.h"
#include "data/text_format.h"
#include "packet/fold.h"

namespace orvane::data {
namespace {

bool IsText(ValueKind kind) {
  return RowOf(kind).storage == Storage::Text;
}

/// The rows of `packet` that `keep` lets through.
template <class Keep>
DataPacket Filtered(const DataPacket& packet, const Keep& keep) {
  DataPacket kept;
  for (const PacketColumn& column : packet.columns)
    kept.AddColumn(column.name, column.kind, column.size);
  std::vector<Variant> row(packet.columns.size());
  for (std::size_t i = 0; i < packet.rowCount; ++i) {
    if (!keep(i)) continue;
    for (std::size_t column = 0; column < row.size(); ++column)
      row[column] = packet.At(i, column);
    kept.AppendRow(row);
  }
  kept.continuation = packet.continuation;
  return kept;
}

bool IsNameLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// "cc.Name" when a line says so of the field "Name"; empty when it does not.
std::string QualifiedColumn(std::string_view line, std::string_view field) {
  for (std::size_t point = line.find('.'); point != std::string_view::npos;
       point = line.find('.', point + 1)) {
    std::size_t begin = point;
    while (begin > 0 && IsNameLetter(line[begin - 1]))
      --begin;
    std::size_t end = point + 1;
    while (end < line.size() && IsNameLetter(line[end]))
      ++end;
    if (begin == point || !SameName(line.substr(point + 1, end - point - 1), field)) continue;
    return std::string(line.substr(begin, end - begin));
  }
  return {};
}

bool Matches(std::string_view value, SearchMatch match, std::string_view sought) {
  switch (match) {
    case SearchMatch::Equals:
      return value == sought;
    case SearchMatch::Begins:
      return value.starts_with(sought);
    case SearchMatch::Contains:
      return value.find(sought) != std::string_view::npos;
  }
  return false;
}

}  // namespace

TLookupTable::TLookupTable(TVosClientDataSet& dataSet, std::string_view keyField)
    : dataSet_(dataSet), keyField_(keyField) {
  assert(dataSet.FindField(keyField) != nullptr);
}

// --- parameters
// -----------------------------------------------------------------------------------

void TLookupTable::SetParam(std::string_view name, Variant value) {
  for (NamedValue& param : params_) {
    if (!SameName(param.name, name)) continue;
    if (param.value == value) return;
    param.value = std::move(value);
    stale_ = true;
    return;
  }
  params_.push_back({std::string(name), std::move(value)});
  stale_ = true;
}

Variant TLookupTable::Param(std::string_view name) const {
  const Variant* value = FindValue(params_, name);
  return value == nullptr ? Variant() : *value;
}

void TLookupTable::SetTemplate(std::vector<std::string> lines) {
  if (dlgSQL == lines) return;
  dlgSQL = std::move(lines);
  stale_ = true;
}

void TLookupTable::Forget() {
  dataSet_.EmptyDataSet();
  unknownKeys_.clear();
  stale_ = true;
}

/// The field as the template's statement calls it: with its table's alias when it has one.
std::string TLookupTable::ColumnOf(std::string_view field) const {
  for (const SearchField& offered : dlgSearchFields) {
    const std::size_t point = offered.name.find('.');
    if (point != std::string::npos && SameName(offered.name.substr(point + 1), field)) {
      return offered.name;
    }
  }
  for (const std::string& line : dlgSQL) {
    const std::string column = QualifiedColumn(line, field);
    if (!column.empty()) return column;
  }
  return std::string(field);
}

FetchRequest TLookupTable::Request(const std::vector<SearchCondition>& conditions,
                                   std::string_view orderField, std::int32_t rowLimit) const {
  ComposedSearch search = ComposeSearch(dlgSQL, params_, conditions, ColumnOf(orderField));
  FetchRequest request = dataSet_.MakeFetchRequest();
  request.sql = std::move(search.sql);
  request.params = std::move(search.params);
  request.rowLimit = rowLimit;
  return request;
}

// --- portions
// -------------------------------------------------------------------------------------

FetchRequest TLookupTable::FillRequest() const {
  return Request({}, keyField_, portion);
}

void TLookupTable::TakeFilled(DataPacket packet) {
  FetchRequest request = FillRequest();
  dataSet_.Sql = std::move(request.sql);
  dataSet_.Params = std::move(request.params);
  dataSet_.RowLimit = request.rowLimit;
  unknownKeys_.clear();
  stale_ = false;
  dataSet_.LoadPacket(std::move(packet));
}

void TLookupTable::Fill() {
  if (dlgSQL.empty()) {
    Forget();
    stale_ = false;
    return;
  }
  ConnectionScope scope(dataSet_.Connection());
  TakeFilled(std::move(scope.Fetch({FillRequest()}).front()));
}

void TLookupTable::FillIfStale() {
  if (stale_) Fill();
}

void TLookupTable::FetchMore() {
  if (stale_) return Fill();
  if (!dataSet_.HasMore()) return;
  ConnectionScope scope(dataSet_.Connection());
  FetchRequest request = dataSet_.MakeFetchRequest();
  request.continuation = dataSet_.Continuation();
  const DataPacket packet = std::move(scope.Fetch({request}).front());
  dataSet_.AppendPacket(Filtered(packet, [&](std::size_t row) {
    return !dataSet_.Find(keyField_, packet.At(row, keyField_));
  }));
}

// --- keys
// -----------------------------------------------------------------------------------------

FetchRequest TLookupTable::KeysRequest(const std::vector<Variant>& keys) const {
  const Variant sought = keys.size() == 1 ? keys.front() : Variant(VariantArray(keys));
  return Request({{ColumnOf(keyField_), SearchMatch::Equals, sought}}, keyField_,
                 static_cast<std::int32_t>(keys.size()));
}

void TLookupTable::TakeKeys(const std::vector<Variant>& keys, const DataPacket& packet) {
  AddFound(packet);
  for (const Variant& key : keys) {
    if (!dataSet_.Find(keyField_, key)) unknownKeys_.insert(key);
  }
}

void TLookupTable::AddFound(const DataPacket& packet) {
  dataSet_.AppendRows(Filtered(packet, [&](std::size_t row) {
    return !dataSet_.Find(keyField_, packet.At(row, keyField_));
  }));
}

bool TLookupTable::MayBeFetched(const Variant& key) const {
  if (key.IsNull() || dataSet_.Find(keyField_, key)) return false;
  return dataSet_.HasMore() && TakesConditions(dlgSQL) && !unknownKeys_.contains(key);
}

std::optional<std::size_t> TLookupTable::ShownRow(const Variant& key) const {
  for (std::size_t row = 0; row < shown_.rowCount; ++row) {
    if (shown_.At(row, keyField_) == key) return row;
  }
  return std::nullopt;
}

Variant TLookupTable::ValueOf(const Variant& key, std::string_view field) const {
  if (key.IsNull()) return {};
  if (const auto offered = dataSet_.Find(keyField_, key))
    return dataSet_.ValueAt(*offered, dataSet_.FieldByName(field));
  const auto shown = ShownRow(key);
  return shown ? shown_.At(*shown, field) : Variant();
}

bool TLookupTable::Knows(const Variant& key) const {
  return !key.IsNull() && (dataSet_.Find(keyField_, key) || ShownRow(key));
}

bool TLookupTable::LocateKey(const Variant& key) {
  if (key.IsNull()) return false;
  if (dlgSQL.empty()) {
    FillIfStale();
    return dataSet_.Locate(keyField_, key);
  }
  ConnectionScope scope(dataSet_.Connection());
  if (stale_) {
    std::vector<FetchRequest> requests{FillRequest()};
    if (TakesConditions(dlgSQL)) requests.push_back(KeysRequest({key}));
    std::vector<DataPacket> packets = scope.Fetch(requests);
    TakeFilled(std::move(packets.front()));
    if (packets.size() > 1) TakeKeys({key}, packets.back());
  } else if (MayBeFetched(key)) {
    TakeKeys({key}, scope.Fetch({KeysRequest({key})}).front());
  }
  // A statement without a place for conditions is read to its end.
  while (!TakesConditions(dlgSQL) && dataSet_.HasMore() && !dataSet_.Find(keyField_, key))
    FetchMore();
  return dataSet_.Locate(keyField_, key);
}

// --- narrowing
// ------------------------------------------------------------------------------------

std::vector<std::size_t> TLookupTable::Narrow(std::string_view field, SearchMatch match,
                                              std::string_view text, std::size_t limit,
                                              bool* more) {
  FillIfStale();
  const TField& sought = dataSet_.FieldByName(field);
  const std::string_view typed = Trim(text);
  bool rest = false;
  const bool inMemory = typed.empty() || !dataSet_.HasMore() || !TakesConditions(dlgSQL);
  std::vector<std::size_t> found = inMemory ? NarrowInMemory(sought, match, typed, limit, rest)
                                            : NarrowOnServer(sought, match, typed, limit, rest);
  if (more != nullptr) *more = rest;
  return found;
}

std::vector<std::size_t> TLookupTable::NarrowInMemory(const TField& field, SearchMatch match,
                                                      std::string_view text, std::size_t limit,
                                                      bool& more) const {
  const bool isText = IsText(field.Def().kind);
  const std::string sought = isText ? Fold(text) : std::string(text);
  std::vector<std::size_t> found;
  more = text.empty() && dataSet_.HasMore();
  for (std::size_t row = 0; row < dataSet_.RecordCount(); ++row) {
    if (!text.empty()) {
      const Variant value = dataSet_.ValueAt(row, field);
      const std::string shown = isText ? Fold(value.ToText()) : value.ToText();
      if (!Matches(shown, match, sought)) continue;
    }
    if (found.size() == limit) {
      more = true;
      break;
    }
    found.push_back(row);
  }
  return found;
}

std::vector<std::size_t> TLookupTable::NarrowOnServer(const TField& field, SearchMatch match,
                                                      std::string_view text, std::size_t limit,
                                                      bool& more) {
  Variant value(text);
  if (!IsText(field.Def().kind)) {
    const Answer<Variant> number = ParseValue(text, field.Format);
    if (!number) return {};  // no number begins so
    value = *number;
  }
  const SearchCondition condition{ColumnOf(field.Name()), match, value,
                                  RowOf(field.Def().kind).highest};
  const FetchRequest request = Request({condition}, field.Name(), static_cast<std::int32_t>(limit));
  ConnectionScope scope(dataSet_.Connection());
  const DataPacket packet = std::move(scope.Fetch({request}).front());
  AddFound(packet);
  more = !packet.continuation.empty();
  std::vector<std::size_t> found;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    const auto place = dataSet_.Find(keyField_, packet.At(row, keyField_));
    if (place) found.push_back(*place);
  }
  return found;
}

}  // namespace orvane::data
