#include "modules/core/supply_rows.h"

#include <algorithm>
#include <cmath>

#include "host/controls/grid.h"
#include "kit/documents/units.h"
#include "modules/core/get_quant.h"

namespace orvane::modules {
namespace {

constexpr std::string_view kQuantity = "Quantity";
constexpr std::string_view kMeasure = "Measure";
constexpr std::string_view kOrdinaryFraction = "OrdinaryFraction";

}  // namespace

QuantityUnit UnitOf(const RowReader& row, const SupplyRowFields& fields) {
  const auto number = [&](std::string_view field) {
    return static_cast<std::int32_t>(row(field).AsInt().value_or(0));
  };
  return {.rowNumerator = std::max(1, number("RowNumerator")),
          .decimals = number(fields.roundQuantity),
          .ordinaryFraction = number(kOrdinaryFraction) != 0,
          .ownNumerator = number("Numerator")};
}

void ShowQuantities(TVosClientDataSet& rows, const SupplyRowFields& fields) {
  rows.FieldByName(kQuantity).OnGetRowText = [fields](const RowReader& row) {
    const auto quantity = row(kQuantity).AsDouble();
    return quantity ? QuantityToStr(*quantity, UnitOf(row, fields))
                    : std::string(fields.noQuantity);
  };
}

SupplyWay WayOf(const TLookupTable& table, const Variant& key) {
  return {table.ValueOf(key, "KindSupplyChoice"), table.ValueOf(key, "KindSupplyList")};
}

SupplyRows::SupplyRows(TVosClientDataSet& rows, SupplyRowFields fields, TLookupTable& kpl,
                       TLookupTable& measures)
    : rows_(rows), fields_(fields), kpl_(kpl), measures_(measures) {
  ShowQuantities(rows_, fields_);
  rows_.FieldByName(kQuantity).OnSetText = [this](std::string_view text) {
    return ReadQuantity(text);
  };
}

// --- entries and units --------------------------------------------------------------------------

bool SupplyRows::TakeEntry(const Variant& serial, bool firstLanguage) {
  if (serial.IsNull() || !kpl_.LocateKey(serial)) return false;
  const auto entry = [&](std::string_view column) { return kpl_.ValueOf(serial, column); };
  Set("InventoryId", entry("InventoryCode"));
  Set("ServiceCode", entry("ServiceCode"));
  Set(fields_.name, entry(firstLanguage ? "cbName" : "cbName2"));
  Set(fields_.roundQuantity, entry("roundQNT"));
  Set(fields_.stockMeasure, entry("msMeasure"));
  Set(fields_.incomeMeasure, entry("IncomeMeasure"));
  Set(fields_.barCodeMeasure, entry("BarCodeMeasure"));
  Set(fields_.serviceMeasure, entry("servMeasure"));
  Set(kMeasure, entry("bslMeasure"));
  Set(kQuantity, 0.0);
  return true;
}

void SupplyRows::TakeEntryMeasure(bool firstLanguage) {
  const Variant measure = Current(kMeasure);
  measures_.LocateKey(measure);
  TakeMeasure(firstLanguage);
  Set("Numerator", measures_.ValueOf(measure, "Numerator"));
}

void SupplyRows::TakeMeasure(bool firstLanguage) {
  const Variant measure = Current(kMeasure);
  if (!measures_.Knows(measure)) return;
  Set(fields_.measureName, measures_.ValueOf(measure, firstLanguage ? "Name" : "Name2"));
  Set("RowNumerator", measures_.ValueOf(measure, "Numerator"));
  Set(kOrdinaryFraction, measures_.ValueOf(measure, kOrdinaryFraction));
}

void SupplyRows::RefreshMeasure(bool ownUnitsOnly) {
  if (rows_.IsEmpty()) return;
  const UnitFields units = {
      .serviceMeasure = fields_.serviceMeasure,
      .ownMeasures = {fields_.stockMeasure, fields_.incomeMeasure, fields_.barCodeMeasure}};
  NarrowUnits(measures_, UnitsClause(rows_, units, ownUnitsOnly));
}

// --- quantities ---------------------------------------------------------------------------------

Answer<Variant> SupplyRows::ReadQuantity(std::string_view text) const {
  if (Variant(text).IsEmpty()) return Variant();
  const auto quantity = StrToQuantity1(text, UnitAt(rows_.RecNo()));
  if (!quantity) return quantity.GetFailure();
  return Variant(*quantity);
}

bool SupplyRows::IsAtFraction(const TVosDBGrid& grid) const {
  if (grid.readOnly || rows_.IsEmpty() || grid.columns.empty()) return false;
  const auto column = static_cast<std::size_t>(grid.CurrentColumn());
  return grid.columns[column].field == kQuantity && rows_.FieldByName(kOrdinaryFraction).AsBool();
}

void SupplyRows::AskQuantity(TVosBaseForm& form, TVosDBGrid& grid) {
  grid.CommitEditor();
  measures_.FillIfStale();
  const auto whole = std::llround(rows_.FieldByName(kQuantity).AsDouble().value_or(0));
  const auto chosen = GetQuant(form, Current(kMeasure), whole, measures_.DataSet());
  if (!chosen) return;
  if (!rows_.Editing()) rows_.Edit();
  Set(kQuantity, static_cast<double>(*chosen));
}

}  // namespace orvane::modules
