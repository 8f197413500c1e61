#include "server/documents/entries.h"

#include "contract/parameters.h"
#include "contract/system.h"
#include "server/documents/values.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

constexpr int kPriceDecimals = 4;

/// The supply-list choice is the contract's, else the supplier's, else that of the parameters; the
/// list's newest price not later than the day counts before the undated one. The entries come first
/// by themselves: PostgreSQL looks at eight tables together, and would walk the list of all.
constexpr std::string_view kEntries =
    "with b as materialized (select b.SerialNumber, b.EffectiveName, b.InventoryCode,"
    " b.ServiceCode, b.Measure, b.Price from BaseSupplyList b where {wanted})"
    " select b.SerialNumber, coalesce(b.EffectiveName, ''), b.InventoryCode, b.ServiceCode,"
    " coalesce(lm.Numerator, bm.Numerator),"
    " coalesce(case when ch.Choice in (2, 3) then (select t.Price from SupplyListsDates t"
    " where t.KindList = ch.List and t.SerialNumber = b.SerialNumber and t.AvailableFromDate <= "
    "ch.Day"
    " order by t.AvailableFromDate desc limit 1) end, l.Price,"
    " case when ch.Choice in (2, 3) then (select t.Price from BaseSupplyListDates t"
    " where t.SerialNumber = b.SerialNumber and t.AvailableFromDate <= ch.Day"
    " order by t.AvailableFromDate desc limit 1) end, b.Price)"
    " from b join (select {day} as Day,"
    " case when c.IdNumber is not null then c.KindSupplyChoice"
    " when p.KindSupplyChoice is not null then p.KindSupplyChoice"
    " when k.Value = '2' then 2 when k.Value = '3' then 3 else 1 end as Choice,"
    " case when c.IdNumber is not null then c.KindSupplyList"
    " when p.KindSupplyChoice is not null then p.KindSupplyList else s.Code end as List"
    " from (select 1 as One) one"
    " left join SuppliesContracts c on c.IdNumber = {contract}"
    " left join Partners p on p.Partner = {supplier}"
    " left join Params k on k.ParamGroup = {group} and k.Number = {choiceNumber}"
    " left join Params v on v.ParamGroup = {group} and v.Number = {listNumber}"
    " left join KindSupplyLists s on cast(s.Code as text) = v.Value)"
    " ch on 1 = 1"
    " left join Measures bm on bm.Code = b.Measure"
    " left join SupplyLists l on l.KindList = ch.List and l.SerialNumber = b.SerialNumber"
    " left join Measures lm on lm.Code = l.Measure";

/// What the request behind the last approved delivery paid for the entry; looked for only where the
/// algorithm asks for it. The comparison comes before the test for null: it tells PostgreSQL the
/// type of a supplier that is not given.
constexpr std::string_view kLastDeliveries =
    "select x.SerialNumber, d.CurrSumWithoutVAT, d.Quantity, d.Numerator, o.RateOfExchange"
    " from (select b.SerialNumber, (select v.IdNumber from DeliveryRows r"
    " join Deliveries v on v.IdNumber = r.DeliveryId"
    " where r.SerialNumber = b.SerialNumber and v.Status = 5 and v.AnnulOn is null"
    " and (v.Supplier = {supplier} or {supplier} is null)"
    " order by v.DeliveryDate desc, v.IdNumber desc limit 1) as DeliveryId"
    " from BaseSupplyList b where exists (select 1 from Params a where a.ParamGroup = {group}"
    " and a.Number = {algorithmNumber} and a.Value = '2') and {wanted}) x"
    " join Deliveries v on v.IdNumber = x.DeliveryId"
    " join PurchaseOrder o on o.POIdNumber = v.PurchaseOrderId and o.POVersion = v.PurchaseOrderVer"
    " join PurchaseOrderDet d on d.PurchaseOrderId = o.POIdNumber and"
    " d.PurchaseOrderVer = o.POVersion and d.SerialNumber = x.SerialNumber"
    " where d.Quantity > 0 order by x.SerialNumber, d.RowNumber desc";

std::string Filled(std::string_view text, const EntriesAsked& asked) {
  std::string filled = Replaced(text, "{day}", asked.day);
  filled = Replaced(filled, "{contract}", asked.contract);
  filled = Replaced(filled, "{supplier}", asked.supplier);
  filled = Replaced(filled, "{group}", std::to_string(system::kModuleGroup));
  filled = Replaced(filled, "{choiceNumber}", std::to_string(parameters::cpKindSupplyChoice));
  filled = Replaced(filled, "{listNumber}", std::to_string(parameters::cpKindSupplyList));
  filled = Replaced(filled, "{algorithmNumber}", std::to_string(parameters::cpAlgoritmPrice));
  return Replaced(filled, "{wanted}", Replaced(asked.wanted, "{serial}", "b.SerialNumber"));
}

/// Of the entry's own unit, from what was paid for a quantity.
std::optional<Decimal> UnitPrice(Decimal amount, double quantity, std::int64_t numerator,
                                 Decimal rate) {
  const auto national = amount.Times(rate).RoundedHalfUp(kPriceDecimals);
  const auto exact = Decimal::FromDouble(quantity, 6);
  if (!national || !exact || exact->IsZero()) return std::nullopt;
  return national->Times(Decimal(numerator, 0)).DividedBy(*exact).RoundedHalfUp(kPriceDecimals);
}

}  // namespace

std::vector<Statement> SelectEntries(const EntriesAsked& asked) {
  return {Named(Filled(kEntries, asked), asked.params,
                {{"SerialNumber", ValueKind::Code, 0},
                 {"Name", ValueKind::String, 0},
                 {"InventoryCode", ValueKind::Int32, 0},
                 {"ServiceCode", ValueKind::Int32, 0},
                 {"Numerator", ValueKind::Int32, 0},
                 {"Price", ValueKind::Amount, 0}}),
          Named(Filled(kLastDeliveries, asked), asked.params,
                {{"SerialNumber", ValueKind::Code, 0},
                 {"Amount", ValueKind::Amount, 0},
                 {"Quantity", ValueKind::Double, 0},
                 {"Numerator", ValueKind::Int32, 0},
                 {"Rate", ValueKind::Rate, 0}})};
}

std::map<std::int64_t, EntryFacts> ReadEntries(const DataPacket& entries,
                                               const DataPacket& lastDeliveries) {
  std::map<std::int64_t, EntryFacts> facts;
  for (std::size_t row = 0; row < entries.rowCount; ++row) {
    EntryFacts entry;
    entry.serial = entries.At(row, "SerialNumber").AsInt().value_or(0);
    entry.name = entries.At(row, "Name").ToText();
    entry.inventoryId = entries.At(row, "InventoryCode").AsInt();
    entry.serviceCode = entries.At(row, "ServiceCode").AsInt();
    entry.numerator = entries.At(row, "Numerator").AsInt().value_or(1);
    entry.listPrice = entries.At(row, "Price").AsDecimal();
    facts.emplace(entry.serial, std::move(entry));
  }
  for (std::size_t row = 0; row < lastDeliveries.rowCount; ++row) {
    const auto found = facts.find(lastDeliveries.At(row, "SerialNumber").AsInt().value_or(0));
    if (found == facts.end()) continue;
    found->second.lastDeliveryPrice =
        UnitPrice(lastDeliveries.At(row, "Amount").AsDecimal().value_or(Decimal()),
                  lastDeliveries.At(row, "Quantity").AsDouble().value_or(0),
                  lastDeliveries.At(row, "Numerator").AsInt().value_or(1),
                  lastDeliveries.At(row, "Rate").AsDecimal().value_or(Decimal(1, 0)));
  }
  return facts;
}

}  // namespace orvane::server
