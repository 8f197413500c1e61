#include "server/documents/request_pricing.h"

#include "server/documents/named_statement.h"
#include "server/documents/values.h"

namespace orvane {

EntriesAsked EntriesOfRequest(const std::string& wanted, const NamedValues& params) {
  const auto column = [](std::string_view name) {
    return Replaced(
        "(select q.{name} from PurchaseOrder q where q.POIdNumber = :Id and q.POVersion"
        " = :Version)",
        "{name}", name);
  };
  return {column("DocumentDate"), column("ContractId"), column("Supplier"), wanted, params};
}

std::optional<Decimal> RowAmount(std::int64_t kindSupply, Decimal rate, const RequestRow& row,
                                 const EntryFacts& entry, const DocumentSettings& settings) {
  std::optional<Decimal> amount;
  if (!settings.IsPriced(kindSupply)) {
    amount = row.amount.Times(Decimal(1, 0)).RoundedHalfUp(settings.amountDecimals);
  } else if (const auto price = entry.Price(settings)) {
    amount = ValueOf(*price, row.quantity, row.numerator, rate, settings.amountDecimals);
  } else {
    amount = Decimal();
  }
  return amount ? amount->AtScale(4) : std::nullopt;
}

std::optional<RequestSums> SumsOf(std::span<const RequestRow> rows, Decimal rate,
                                  const DocumentSettings& settings) {
  std::vector<Decimal> amounts;
  for (const RequestRow& row : rows)
    amounts.push_back(row.amount);
  const auto currency = SumOf(amounts);
  const auto rounded =
      currency ? InNational(*currency, rate, settings.amountDecimals) : std::nullopt;
  const auto national = rounded ? rounded->AtScale(4) : std::nullopt;
  if (!currency || !national) return std::nullopt;
  return RequestSums{*currency, *national};
}

}  // namespace orvane
