#include "server/documents/document_pricing.h"

#include <algorithm>

#include "server/documents/server_writes.h"
#include "server/documents/values.h"
#include "server/statements/named_statement.h"

namespace orvane::server {

DocumentRow DocumentRowOf(NamedValues values) {
  const auto number = [&](std::string_view column) {
    const Variant* value = FindValue(values, column);
    return value ? value->AsInt() : std::nullopt;
  };
  DocumentRow row;
  row.number = static_cast<int>(number(stored::kRowNumber).value_or(0));
  row.serial = number(stored::kSerialNumber).value_or(0);
  row.measure = number(stored::kMeasure).value_or(0);
  row.order = number("SuppManifacOrderId");
  row.numerator = number("Numerator").value_or(1);
  if (const Variant* quantity = FindValue(values, stored::kQuantity)) {
    row.quantity = quantity->AsDouble().value_or(0);
  }
  if (const Variant* amount = FindValue(values, stored::kRowAmount)) {
    row.amount = amount->AsDecimal().value_or(Decimal());
  }
  row.values = std::move(values);
  return row;
}

std::vector<DocumentRow> ReadDocumentRows(const DataPacket& packet) {
  std::vector<DocumentRow> rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row)
    rows.push_back(DocumentRowOf(RowValues(packet, row)));
  return rows;
}

void ApplyChange(std::vector<DocumentRow>& rows, const Change& change) {
  if (change.kind == ChangeKind::Insert) {
    rows.push_back(DocumentRowOf(change.after));
    return;
  }
  const Variant* number = FindValue(change.before, stored::kRowNumber);
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const DocumentRow& row) {
    return number && number->AsInt() == row.number;
  });
  if (found == rows.end()) return;  // gone meanwhile, which the where clause will tell
  if (change.kind == ChangeKind::Delete) {
    rows.erase(found);
  } else {
    *found = DocumentRowOf(After(found->values, change));
  }
}

EntriesAsked EntriesOf(const StoredDocument& document, const std::string& wanted,
                       const NamedValues& params) {
  return {HeadColumn(document, stored::kDocumentDate), HeadColumn(document, stored::kContractId),
          HeadColumn(document, stored::kSupplier), wanted, params};
}

std::string EntriesNamed(const StoredDocument& document) {
  return "{serial} in (select SerialNumber from " + std::string(document.rows.table) + " where " +
         std::string(document.ofDocument) + ")";
}

std::optional<Decimal> RowAmount(std::int64_t kindSupply, Decimal rate, const DocumentRow& row,
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

std::optional<DocumentSums> SumsOf(std::span<const DocumentRow> rows, Decimal rate,
                                   const DocumentSettings& settings) {
  std::vector<Decimal> amounts;
  for (const DocumentRow& row : rows)
    amounts.push_back(row.amount);
  const auto currency = SumOf(amounts);
  const auto rounded =
      currency ? InNational(*currency, rate, settings.amountDecimals) : std::nullopt;
  const auto national = rounded ? rounded->AtScale(4) : std::nullopt;
  if (!currency || !national) return std::nullopt;
  return DocumentSums{*currency, *national};
}

std::string EntryName(std::int64_t serial, const std::map<std::int64_t, EntryFacts>& entries) {
  const auto found = entries.find(serial);
  std::string name = "„" + std::to_string(serial);
  if (found != entries.end() && !found->second.name.empty()) name += " " + found->second.name;
  return name + "“";
}

}  // namespace orvane::server
