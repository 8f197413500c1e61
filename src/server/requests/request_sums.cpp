#include "server/requests/request_sums.h"

#include "contract/purchase_request.h"
#include "server/documents/navigation.h"
#include "server/documents/settings.h"
#include "server/documents/values.h"
#include "server/providers/arguments.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

using purchase_request::sum_check::At;

constexpr int kUsualVat = 20;

constexpr std::string_view kRows =
    "select d.CurrSumWithoutVAT, coalesce(i.VATPercent, s.VATPercent, {usual})"
    " from PurchaseOrderDet d left join MaterialStocks i on i.IdNumber = d.InventoryId"
    " left join Services s on s.Code = d.ServiceCode"
    " where d.PurchaseOrderId = {id} and d.PurchaseOrderVer = {version} order by d.RowNumber";
constexpr std::string_view kPlan =
    "select SumWithVAT from PurchaseOrderPayPl where PurchaseOrderId = {id}"
    " and PurchaseOrderVer = {version} order by RowNumber";
constexpr std::string_view kKind =
    "select KindSupply from PurchaseOrder where POIdNumber = {id} and POVersion = {version}";

std::string Keyed(std::string_view text) {
  return Replaced(Replaced(text, "{id}", kKeptId), "{version}", kKeptVersion);
}

std::optional<Decimal> WithVat(const DataPacket& rows, int decimals) {
  std::vector<Decimal> amounts;
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    const Decimal amount = rows.At(row, "Amount").AsDecimal().value_or(Decimal());
    const Decimal factor(100 + rows.At(row, "VAT").AsInt().value_or(kUsualVat), 2);
    const auto gross = amount.Times(factor).RoundedHalfUp(decimals);
    if (!gross) return std::nullopt;
    amounts.push_back(*gross);
  }
  return SumOf(amounts);
}

std::optional<Decimal> PlanTotal(const DataPacket& plan) {
  std::vector<Decimal> amounts;
  for (std::size_t row = 0; row < plan.rowCount; ++row)
    amounts.push_back(plan.At(row, "Amount").AsDecimal().value_or(Decimal()));
  return SumOf(amounts);
}

}  // namespace

SumCheck SumCheck::WithinTolerance(Decimal tolerance) const {
  if (planIsEmpty) return {compared, compared, true};
  const auto difference = compared > plan ? compared.Minus(plan) : plan.Minus(compared);
  if (difference && *difference <= tolerance) return {compared, compared, false};
  return *this;
}

Answer<VariantArray> CheckRequestSums(Work& work, const VariantArray& ask) {
  constexpr Argument kAsked[] = {
      {"Operation", ValueKind::String, Need::Needed},
      {"Id", ValueKind::Int32, Need::Needed},
      {"Version", ValueKind::Int32, Need::Needed},
  };
  const auto sound = CheckArguments(purchase_request::sum_check::kName, kAsked, ask, At::kSize);
  if (!sound) return sound.GetFailure();
  const auto id = ask[At::kId].AsInt();
  const auto version = ask[At::kVersion].AsInt();
  const std::vector<ResultColumn> amount = {{"Amount", ValueKind::Amount, 0}};
  const Statement statements[] = {
      FindDocument(kSeenRequests, AskerVisibility(kSeenRequests, SightOf(work)),
                   {Nav::ByKey, 0, *id, *version}, work.EngineKind()),
      SelectSettings(),
      {Keyed(kKind), {}, {{"KindSupply", ValueKind::Int16, 0}}},
      {Keyed(Replaced(kRows, "{usual}", std::to_string(kUsualVat))),
       {},
       {{"Amount", ValueKind::Amount, 0}, {"VAT", ValueKind::Int16, 0}}},
      {Keyed(kPlan), {}, amount}};
  auto packets = work.Read(statements);
  if (!packets) return packets.GetFailure();
  if ((*packets)[2].rowCount == 0) {
    return Refused("Искане за покупка " + std::to_string(*id) + ", версия " +
                   std::to_string(*version) + " не съществува.");
  }
  const DocumentSettings settings = ReadSettings((*packets)[1]);
  const auto compared = WithVat((*packets)[3], settings.amountDecimals);
  const auto plan = PlanTotal((*packets)[4]);
  if (!compared || !plan) return TooGreat("Сумата на искането");
  const SumCheck check =
      SumCheck{*compared, *plan, (*packets)[4].rowCount == 0}.WithinTolerance(settings.tolerance);
  VariantArray tell = ask;
  tell[At::kCompared] = check.compared;
  tell[At::kPlan] = check.plan;
  const std::int64_t kind = (*packets)[2].At(0, 0).AsInt().value_or(0);
  tell[At::kIsAmount] = settings.HasAmountColumn(kind) ? 0 : 1;
  return tell;
}

}  // namespace orvane::server
