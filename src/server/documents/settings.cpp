#include "server/documents/settings.h"

#include "contract/parameters.h"
#include "contract/system.h"

namespace orvane::server {
namespace {

constexpr int kMostAmountDecimals = 4;

std::optional<Decimal> NumberOf(const DataPacket& rows, int group, int number) {
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    if (rows.At(row, "ParamGroup").AsInt() != group) continue;
    if (rows.At(row, "Number").AsInt() != number) continue;
    const Variant value = rows.At(row, "Value");
    return value.AsString() ? Decimal::Parse(*value.AsString()) : std::nullopt;
  }
  return std::nullopt;
}

std::optional<std::int64_t> CodeOf(const DataPacket& rows, int group, int number) {
  const auto value = NumberOf(rows, group, number);
  const auto whole = value ? value->AtScale(0) : std::nullopt;
  return whole ? std::optional(whole->Mantissa()) : std::nullopt;
}

}  // namespace

Statement SelectSettings() {
  return {"select ParamGroup, Number, Value from Params where ParamGroup in (?1, ?2)",
          {system::kHostGroup, system::kModuleGroup},
          {{"ParamGroup", ValueKind::Int32, 0},
           {"Number", ValueKind::Int32, 0},
           {"Value", ValueKind::String, 250}}};
}

DocumentSettings ReadSettings(const DataPacket& rows) {
  const auto host = [&](int number) { return CodeOf(rows, system::kHostGroup, number); };
  const auto own = [&](int number) { return CodeOf(rows, system::kModuleGroup, number); };
  DocumentSettings settings;
  const auto decimals = host(parameters::kAmountDecimals);
  if (decimals && *decimals >= 0 && *decimals <= kMostAmountDecimals) {
    settings.amountDecimals = static_cast<int>(*decimals);
  }
  settings.centralBank = host(parameters::kCentralBank);
  settings.nationalCurrency = host(parameters::kNationalCurrency);
  settings.carKind = own(parameters::cpCar);
  settings.bulkKind = own(parameters::cpBRM);
  settings.waresKind = own(parameters::cpWares);
  settings.pricedServiceKind = own(parameters::cpSuppServ);
  settings.serviceEmployee = own(parameters::cpServiceUser);
  const auto tolerance = NumberOf(rows, system::kModuleGroup, parameters::cpPOTolerance);
  settings.tolerance = tolerance.value_or(Decimal());
  settings.ownUnitsOnly = host(parameters::kOwnUnitsOnly) == 1;
  if (own(parameters::cpAlgoritmPrice) == 2) settings.priceAlgorithm = 2;
  return settings;
}

}  // namespace orvane::server
