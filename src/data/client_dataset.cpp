#include "data/client_dataset.h"

#include <algorithm>
#include <cassert>
#include <numeric>

#include "contract/system.h"
#include "data/abort.h"
#include "data/client_dataset_impl.h"

namespace orvane::data {
namespace {

DataPacket EmptyPacket(std::span<const FieldDef> fields) {
  return *ShapePacket(DataPacket(), fields);
}

}  // namespace

// --- data source
// ----------------------------------------------------------------------------------

TDataSource::TDataSource(TVosClientDataSet& dataSet) : dataSet_(&dataSet) {
  dataSet.impl_->sources.push_back(this);
}

TDataSource::~TDataSource() {
  if (dataSet_ != nullptr) std::erase(dataSet_->impl_->sources, this);
}

// --- birth and end
// --------------------------------------------------------------------------------

TVosClientDataSet::Impl::Impl(TVosClientDataSet& dataSet, std::string_view dataSetName,
                              TVosSQLConnection* dataConnection,
                              std::span<const FieldDef> fieldDefs)
    : self(dataSet), name(dataSetName), connection(dataConnection) {
  for (const FieldDef& def : fieldDefs)
    AddField(def);
  store.Replace(EmptyPacket(dataDefs));
}

TVosClientDataSet::TVosClientDataSet(std::string_view name, TVosSQLConnection& connection,
                                     const ProviderDef& provider)
    : impl_(std::make_unique<Impl>(*this, name, &connection, provider.fields)) {
  impl_->provider = provider.name.empty() ? system::kSearchProvider : provider.name;
  impl_->writable = provider.Writable();
}

TVosClientDataSet::TVosClientDataSet(std::string_view name, TVosSQLConnection& connection,
                                     std::initializer_list<FieldDef> fields)
    : impl_(std::make_unique<Impl>(*this, name, &connection, fields)) {
  impl_->provider = system::kSearchProvider;
}

TVosClientDataSet::TVosClientDataSet(std::string_view name, std::initializer_list<FieldDef> fields)
    : impl_(std::make_unique<Impl>(*this, name, nullptr, fields)) {}

TVosClientDataSet::~TVosClientDataSet() {
  for (TDataSource* source : impl_->sources)
    source->dataSet_ = nullptr;
  for (TVosClientDataSet* dependent : impl_->dependents) {
    for (TField& field : dependent->impl_->fields) {
      if (field.lookup_ && field.lookup_->source == this) field.lookup_->source = nullptr;
    }
  }
  for (TField& field : impl_->fields) {
    if (field.lookup_ && field.lookup_->source != nullptr) {
      std::erase(field.lookup_->source->impl_->dependents, this);
    }
  }
}

const std::string& TVosClientDataSet::Name() const {
  return impl_->name;
}

TVosSQLConnection* TVosClientDataSet::Connection() const {
  return impl_->connection;
}

std::uint64_t TVosClientDataSet::Generation() const {
  return impl_->generation;
}

std::uint64_t TVosClientDataSet::Version() const {
  return impl_->version;
}

// --- events
// ---------------------------------------------------------------------------------------

void TVosClientDataSet::Impl::Fire(const std::function<void()>& handler) {
  if (!handler) return;
  const std::function<void()> kept = handler;  // a rule may detach it while it runs
  kept();
}

void TVosClientDataSet::Impl::AnnounceState() {
  const std::vector<TDataSource*> told = sources;
  for (TDataSource* source : told) {
    if (std::ranges::find(sources, source) != sources.end()) Fire(source->OnStateChange);
  }
}

void TVosClientDataSet::Impl::Touch() {
  ++version;
  for (TVosClientDataSet* dependent : dependents)
    ++dependent->impl_->version;
}

// --- fields
// ---------------------------------------------------------------------------------------

TField& TVosClientDataSet::Impl::AddField(const FieldDef& def) {
  assert(FindField(def.name) == nullptr);
  fields.push_back(TField(self, def));
  TField& field = fields.back();
  field.column_ = dataDefs.size();
  if (connection != nullptr) field.Format.zone = connection->Session().info.zone;
  dataDefs.push_back(def);
  return field;
}

TField* TVosClientDataSet::Impl::FindField(std::string_view fieldName) {
  const auto found = std::ranges::find_if(
      fields, [&](const TField& field) { return SameName(field.Name(), fieldName); });
  return found == fields.end() ? nullptr : &*found;
}

const TField* TVosClientDataSet::Impl::FindDataField(std::string_view fieldName) const {
  const auto found = std::ranges::find_if(fields, [&](const TField& field) {
    return !field.lookup_ && SameName(field.Name(), fieldName);
  });
  return found == fields.end() ? nullptr : &*found;
}

TField& TVosClientDataSet::FieldByName(std::string_view name) {
  TField* field = FindField(name);
  assert(field != nullptr && "no field of that name");
  return *field;
}

const TField& TVosClientDataSet::FieldByName(std::string_view name) const {
  const TField* field = impl_->FindField(name);
  assert(field != nullptr && "no field of that name");
  return *field;
}

TField* TVosClientDataSet::FindField(std::string_view name) {
  return impl_->FindField(name);
}

std::vector<TField*> TVosClientDataSet::Fields() {
  std::vector<TField*> all;
  for (TField& field : impl_->fields)
    all.push_back(&field);
  return all;
}

TField& TVosClientDataSet::AddLookup(const FieldDef& field, TVosClientDataSet& source,
                                     std::string_view keyField, std::string_view lookupKeyField,
                                     std::string_view resultField) {
  assert(FindField(field.name) == nullptr && impl_->FindDataField(keyField) != nullptr);
  assert(source.FindField(lookupKeyField) != nullptr && source.FindField(resultField) != nullptr);
  impl_->fields.push_back(TField(*this, field));
  TField& added = impl_->fields.back();
  added.lookup_ = TField::Lookup{&source, std::string(keyField), std::string(lookupKeyField),
                                 std::string(resultField)};
  added.ReadOnly = true;
  auto& dependents = source.impl_->dependents;
  if (std::ranges::find(dependents, this) == dependents.end()) dependents.push_back(this);
  return added;
}

void TVosClientDataSet::SetLookupResult(const FieldDef& field, std::string_view resultField) {
  TField& lookup = FieldByName(field.name);
  assert(lookup.lookup_);
  if (SameName(lookup.lookup_->resultField, resultField)) return;
  lookup.lookup_->resultField = resultField;
  impl_->settled.erase(&lookup);
  impl_->Touch();
}

Variant TVosClientDataSet::Impl::LookUp(const TField& field, const Variant& key) const {
  if (key.IsNull()) return {};
  const TField::Lookup& lookup = *field.lookup_;
  if (lookup.source != nullptr) {
    const Impl& source = *lookup.source->impl_;
    const auto found = source.Find(*source.FindDataField(lookup.lookupKeyField), key);
    if (found) {
      return source.ValueOf(source.order[*found], *source.FindDataField(lookup.resultField));
    }
  }
  const auto seen = settled.find(&field);
  if (seen == settled.end()) return {};
  const auto result = seen->second.find(key);
  return result == seen->second.end() ? Variant() : result->second;
}

void TVosClientDataSet::Impl::SettleLookups(const TVosClientDataSet& source) {
  if (order.empty() || source.impl_->order.empty()) return;
  for (const TField& field : fields) {
    if (!field.lookup_ || field.lookup_->source != &source) continue;
    const TField& keyField = *FindDataField(field.lookup_->keyField);
    auto& seen = settled[&field];
    for (const RowId row : order) {
      const Variant key = ValueOf(row, keyField);
      Variant result = LookUp(field, key);
      if (!result.IsNull()) seen[key] = std::move(result);
    }
  }
}

std::vector<Variant> TVosClientDataSet::MissingLookupKeys(const TField& lookup) const {
  std::vector<Variant> missing;
  if (!lookup.lookup_ || lookup.lookup_->source == nullptr) return missing;
  const TField& keyField = *impl_->FindDataField(lookup.lookup_->keyField);
  const Impl& source = *lookup.lookup_->source->impl_;
  const TField& sourceKey = *source.FindDataField(lookup.lookup_->lookupKeyField);
  const auto remembered = impl_->settled.find(&lookup);
  std::map<Variant, bool, VariantLess> seen;
  for (const RowId row : impl_->order) {
    Variant key = impl_->ValueOf(row, keyField);
    if (key.IsNull() || !seen.try_emplace(key).second) continue;
    if (source.Find(sourceKey, key)) continue;
    if (remembered != impl_->settled.end() && remembered->second.contains(key)) continue;
    missing.push_back(std::move(key));
  }
  return missing;
}

Variant TVosClientDataSet::MaxOf(const FieldDef& field, int plus) const {
  const TField& of = FieldByName(field.name);
  std::optional<std::int64_t> largest;
  for (const RowId row : impl_->order) {
    const auto value = impl_->ValueOf(row, of).AsInt();
    if (value && (!largest || *value > *largest)) largest = value;
  }
  return largest ? Variant(*largest + plus) : Variant();
}

Variant TVosClientDataSet::Impl::ValueOf(RowId row, const TField& field) const {
  if (field.lookup_) return LookUp(field, ValueOf(row, *FindDataField(field.lookup_->keyField)));
  if (Editing() && row == editRow) return buffer[field.column_];
  return store.Value(row, field.column_);
}

// --- opening
// --------------------------------------------------------------------------------------

void TVosClientDataSet::SetParam(std::string_view name, Variant value) {
  for (NamedValue& param : Params) {
    if (!SameName(param.name, name)) continue;
    param.value = std::move(value);
    return;
  }
  Params.push_back({std::string(name), std::move(value)});
}

Variant TVosClientDataSet::Param(std::string_view name) const {
  const Variant* value = FindValue(Params, name);
  return value == nullptr ? Variant() : *value;
}

bool TVosClientDataSet::Active() const {
  return State() != DataSetState::Inactive;
}

FetchRequest TVosClientDataSet::MakeFetchRequest() const {
  assert(impl_->connection != nullptr);
  FetchRequest request;
  request.serverClass = impl_->connection->ServerClassName();
  request.provider = impl_->provider;
  request.params = Params;
  request.sql = Sql;
  request.rowLimit = RowLimit;
  return request;
}

void TVosClientDataSet::Open() {
  if (impl_->connection != nullptr) {
    LoadPacket(FetchPortion(RowLimit, {}));
  } else if (!Active()) {
    EmptyDataSet();
  }
}

void TVosClientDataSet::Close() {
  if (!Active()) return;
  impl_->ReplaceContent(EmptyPacket(impl_->dataDefs), DataSetState::Inactive);
  impl_->AnnounceState();
}

void TVosClientDataSet::LoadPacket(DataPacket packet) {
  Answer<DataPacket> shaped = ShapePacket(std::move(packet), impl_->dataDefs);
  if (!shaped) throw ServerError{shaped.GetFailure()};
  impl_->ReplaceContent(*std::move(shaped), DataSetState::Browse);
  const std::uint64_t loaded = Generation();
  impl_->AnnounceState();
  if (Generation() == loaded) Impl::Fire(AfterScroll);
}

void TVosClientDataSet::EmptyDataSet() {
  LoadPacket(DataPacket());
}

void TVosClientDataSet::Impl::ReplaceContent(DataPacket shaped, DataSetState newState) {
  for (TVosClientDataSet* dependent : dependents)
    dependent->impl_->SettleLookups(self);
  continuation = shaped.continuation;
  store.Replace(std::move(shaped));
  log.clear();
  inFlight.reset();
  inFlightCount = 0;
  answeredOwnerData = {};
  buffer.clear();
  modified = false;
  state = newState;
  ResetOrder();
  ++generation;
  Touch();
}

void TVosClientDataSet::Impl::ResetOrder() {
  order.resize(store.LoadedRows());
  std::iota(order.begin(), order.end(), RowId{0});
  SortRows(store, indexColumns, order);
  indexes.clear();
  position = 0;
  bof = true;
  eof = order.empty();
}

void TVosClientDataSet::Impl::AppendContent(DataPacket packet) {
  const Answer<DataPacket> shaped = ShapePacket(std::move(packet), dataDefs);
  if (!shaped) throw ServerError{shaped.GetFailure()};
  if (shaped->rowCount == 0) return;
  const bool wasEmpty = order.empty();
  const std::optional<RowId> current = CurrentRow();
  const RowId first = store.Append(*shaped);
  for (RowId row = first; row < store.LoadedRows(); ++row)
    order.push_back(row);
  if (!indexColumns.empty()) {
    SortRows(store, indexColumns, order);
    indexes.clear();
  }
  RestoreCursor(current, 0);
  if (wasEmpty) bof = true;
  Touch();
  if (wasEmpty) Fire(self.AfterScroll);
}

void TVosClientDataSet::AppendPacket(DataPacket packet) {
  impl_->continuation = packet.continuation;
  impl_->AppendContent(std::move(packet));
}

void TVosClientDataSet::AppendRows(DataPacket rows) {
  impl_->AppendContent(std::move(rows));
}

bool TVosClientDataSet::HasMore() const {
  return !impl_->continuation.empty();
}

const std::string& TVosClientDataSet::Continuation() const {
  return impl_->continuation;
}

void TVosClientDataSet::FetchMore() {
  if (!HasMore()) return;
  AppendPacket(FetchPortion(RowLimit, impl_->continuation));
}

DataPacket TVosClientDataSet::FetchPortion(std::int32_t rowLimit,
                                           const std::string& continuation) const {
  if (OnFetchPortion) return OnFetchPortion(rowLimit, continuation);
  FetchRequest request = MakeFetchRequest();
  request.rowLimit = rowLimit;
  request.continuation = continuation;
  return std::move(impl_->connection->Fetch({request}).front());
}

void TVosClientDataSet::DataRequest(Variant data) {
  FetchRequest request = MakeFetchRequest();
  std::erase_if(request.params, [](const NamedValue& p) { return SameName(p.name, "Data"); });
  request.params.push_back({"Data", std::move(data)});
  LoadPacket(std::move(impl_->connection->Fetch({request}).front()));
}

std::unique_ptr<TVosClientDataSet> TVosClientDataSet::EmptyTwin() const {
  auto twin = std::make_unique<TVosClientDataSet>(impl_->name, std::initializer_list<FieldDef>{});
  twin->impl_->connection = impl_->connection;
  for (const FieldDef& def : impl_->dataDefs)
    twin->impl_->AddField(def);
  for (const TField& field : impl_->fields) {
    if (field.lookup_ && field.lookup_->source != nullptr) {
      twin->AddLookup(field.def_, *field.lookup_->source, field.lookup_->keyField,
                      field.lookup_->lookupKeyField, field.lookup_->resultField);
    }
    TField* same = twin->FindField(field.Name());
    if (same == nullptr) continue;
    same->Format = field.Format;
    same->DisplayLabel = field.DisplayLabel;
    same->OnGetText = field.OnGetText;
    const auto seen = impl_->settled.find(&field);
    if (seen != impl_->settled.end()) twin->impl_->settled[same] = seen->second;
  }
  twin->EmptyDataSet();
  return twin;
}

bool TVosClientDataSet::HasIndex() const {
  return !impl_->indexColumns.empty();
}

void TVosClientDataSet::SetIndexFieldNames(std::string_view names) {
  std::vector<std::size_t> columns;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(';'), names.size());
    const TField* field = impl_->FindDataField(names.substr(0, end));
    assert(field != nullptr && "an index names a field with data");
    columns.push_back(field->column_);
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  if (columns == impl_->indexColumns) return;
  impl_->indexColumns = std::move(columns);
  const std::optional<RowId> current = impl_->CurrentRow();
  if (impl_->indexColumns.empty()) std::ranges::sort(impl_->order);
  SortRows(impl_->store, impl_->indexColumns, impl_->order);
  impl_->indexes.clear();
  impl_->RestoreCursor(current, 0);
  impl_->Touch();
}

}  // namespace orvane::data
