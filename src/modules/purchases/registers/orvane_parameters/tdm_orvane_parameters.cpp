#include "modules/purchases/registers/orvane_parameters/tdm_orvane_parameters.h"

#include <iterator>
#include <utility>

#include "contract/system.h"
#include "data/lookup_completion.h"
#include "data/screen_fetch.h"
#include "modules/core/lookups.h"

namespace orvane::modules {

using parameters::kModuleParameters;
using parameters::ModuleParameter;
using parameters::Refers;

namespace {

constexpr auto Employee = Code19("Employee", Key, "Код");

struct ListRow {
  parameters::Module number;
  std::string_view dataSet;
};
constexpr ListRow kLists[] = {
    {parameters::cpCar, "cdsCar"},
    {parameters::cpBRM, "cdsBRM"},
    {parameters::cpKindSupplyChoice, "cdsNomIn90"},
    {parameters::cpKindSupplyList, "cdsKindSupplyList"},
    {parameters::cpWares, "cdsWares"},
    {parameters::cpKindDocInvBRM, "cdsKindDocInvBRM"},
    {parameters::cpKindDocInvWares, "cdsKindDocInvWares"},
    {parameters::cpMixedKindSupp, "cdsMixedKindSupp"},
    {parameters::cpServiceUser, "cdsEmployees"},
    {parameters::cpSuppServ, "cdsSuppServ"},
    {parameters::cpSuppOtherMS, "cdsSuppOtherMS"},
    {parameters::cpKindDocOtherMS, "cdsKindDocOtherMS"},
    {parameters::cpAlgoritmPrice, "cdsNomIn283"},
};

template <std::size_t... I>
TVosClientDataSet MakeParameters(std::index_sequence<I...>) {
  return {"cdsParameters", {kModuleParameters[I].field...}};
}

std::unique_ptr<ParameterList> MakeList(TVosSQLConnection& connection, const ListRow& row) {
  const Refers refers = parameters::FindModuleParameter(row.number)->refers;
  if (refers == Refers::Employees) {
    return std::make_unique<ParameterList>(
        connection, row.dataSet,
        std::initializer_list<FieldDef>{Employee, core::Name40, core::Name40Second}, Employee.name);
  }
  const bool nomenclature = refers == Refers::WaysOfChoosing || refers == Refers::PriceAlgorithms;
  const FieldDef key = nomenclature ? core::Element : core::Code;
  return std::make_unique<ParameterList>(
      connection, row.dataSet,
      std::initializer_list<FieldDef>{key, core::Name40, core::Name40Second}, key.name);
}

/// As the store keeps it: no parted thousands, the client's decimal mark.
Variant StoreText(const TField& field) {
  const Variant value = field.Value();
  if (value.IsNull()) return {};
  TextFormat format = field.Format;
  format.grouped = false;
  format.decimals = -1;
  return FormatValue(value, format);
}

}  // namespace

TdmOrvaneParameters::TdmOrvaneParameters(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcSQL(Session(), Point(), system::kSearchClass),
      cdsParameters(MakeParameters(std::make_index_sequence<std::size(kModuleParameters)>())),
      dsParameters(cdsParameters),
      form_(form),
      stored_(std::size(kModuleParameters)) {
  for (const ListRow& row : kLists)
    lists_.push_back(MakeList(sqlcSQL, row));
}

ParameterList* TdmOrvaneParameters::ListOf(parameters::Module number) const {
  for (std::size_t i = 0; i < std::size(kLists); ++i) {
    if (kLists[i].number == number) return lists_[i].get();
  }
  return nullptr;
}

// --- reading ------------------------------------------------------------------------------------

Variant TdmOrvaneParameters::StoredText(const ModuleParameter& parameter) const {
  return form_.App().GetParam(form_.ModuleNo(), form_.PointNo(), system::kModuleGroup,
                              parameter.number);
}

Variant TdmOrvaneParameters::ValueOf(const ModuleParameter& parameter, const Variant& text) {
  if (text.IsEmpty()) return Variant();
  // The store's texts have comma or point before their decimals and no parted thousands.
  const std::optional<Decimal> number = Decimal::Parse(text.ToText());
  const Variant read = number && IsNumber(parameter.field.kind) ? Variant(*number) : text;
  const Answer<Variant> fitting = read.As(parameter.field.kind, parameter.field.size);
  return fitting ? *fitting : Variant();
}

void TdmOrvaneParameters::ReadStore() {
  form_.App().RefreshParams(form_.ModuleNo(), form_.PointNo(), system::kModuleGroup);
  for (std::size_t i = 0; i < std::size(kModuleParameters); ++i) {
    const Variant text = StoredText(kModuleParameters[i]);
    stored_[i] = {text, ValueOf(kModuleParameters[i], text)};
  }
}

void TdmOrvaneParameters::GetParams() {
  cdsParameters.EmptyDataSet();
  ReadStore();
  cdsParameters.Insert();
  for (std::size_t i = 0; i < std::size(kModuleParameters); ++i)
    FieldOf(kModuleParameters[i]).Set(stored_[i].value);
  cdsParameters.Post();
}

void TdmOrvaneParameters::FetchLists() {
  std::vector<TLookupTable*> tables;
  for (const auto& list : lists_)
    tables.push_back(&list->table);
  FetchTogether(tables, std::vector<TVosClientDataSet*>());
  for (const ListRow& row : kLists) {
    // A code behind the first portion is asked for, so that its name shows.
    const Variant code = FieldOf(*parameters::FindModuleParameter(row.number)).Value();
    if (!code.IsNull()) ListOf(row.number)->table.LocateKey(code);
  }
  sqlcSQL.Close();
}

// --- writing ------------------------------------------------------------------------------------

void TdmOrvaneParameters::Store(const ModuleParameter& parameter) {
  const TField& field = FieldOf(parameter);
  Stored& stored = stored_[static_cast<std::size_t>(&parameter - std::begin(kModuleParameters))];
  if (field.Value() == stored.value) return;
  const Variant text = StoreText(field);
  form_.App().SetParam(form_.ModuleNo(), form_.PointNo(), system::kModuleGroup, parameter.number,
                       text, stored.text);
  stored = {text, field.Value()};
}

void TdmOrvaneParameters::Save() {
  if (cdsParameters.Editing()) cdsParameters.Post();
  try {
    for (const ModuleParameter& parameter : kModuleParameters)
      Store(parameter);
  } catch (const ServerError& error) {
    if (error.failure.kind == FailureKind::Conflict) TakeInStore();
    cdsParameters.Edit();
    throw;
  }
}

/// What others changed meanwhile comes into the fields that were not touched here; what was typed
/// stays, and is compared with what the store holds now.
void TdmOrvaneParameters::TakeInStore() {
  const std::vector<Stored> before = stored_;
  ReadStore();
  cdsParameters.Edit();
  for (std::size_t i = 0; i < std::size(kModuleParameters); ++i) {
    TField& field = FieldOf(kModuleParameters[i]);
    if (field.Value() == before[i].value) field.Set(stored_[i].value);
  }
}

void TdmOrvaneParameters::Cancel() {
  cdsParameters.Cancel();
  cdsParameters.Edit();
  for (std::size_t i = 0; i < std::size(kModuleParameters); ++i)
    FieldOf(kModuleParameters[i]).Set(stored_[i].value);
  cdsParameters.Post();
}

}  // namespace orvane::modules
