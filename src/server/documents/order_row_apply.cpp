#include <algorithm>
#include <set>

#include "contract/supplier_order.h"
#include "server/documents/document_row_apply.h"
#include "server/documents/document_steps.h"
#include "server/documents/named_statement.h"
#include "server/documents/order_apply.h"
#include "server/documents/order_head.h"

namespace orvane {
namespace {

namespace det = supplier_order::det;

/// Units are kept in blocks of a hundred, within which they convert into each other.
constexpr std::int64_t kUnitBlock = 100;

/// The units in which an entry may be ordered.
struct EntryUnits {
  std::int64_t own = 0;          ///< of the list
  std::set<std::int64_t> named;  ///< that its material names, with its own
  bool isMaterial = false;
  std::int64_t service = 0;
};

std::vector<Statement> SelectUnits(const Work&, DocumentKey, WantedValues& wanted) {
  const std::string entries = wanted.Of(det::SerialNumber.name, "b.SerialNumber");
  return {
      Named("select b.SerialNumber, b.Measure, i.Measure, i.IncomeMeasure, i.BarCodeMeasure,"
            " s.Measure from BaseSupplyList b"
            " left join MaterialStocks i on i.IdNumber = b.InventoryCode"
            " left join Services s on s.Code = b.ServiceCode where " +
                entries,
            wanted.Params(),
            {{"SerialNumber", ValueKind::Code, 0},
             {"Measure", ValueKind::Int16, 0},
             {"MatStockMeasure", ValueKind::Int16, 0},
             {"MatStockIncomeMeasure", ValueKind::Int16, 0},
             {"MatStockBarCodeMeasure", ValueKind::Int16, 0},
             {"ServiceMeasure", ValueKind::Int16, 0}})};
}

std::map<std::int64_t, EntryUnits> ReadUnits(const DataPacket& packet) {
  std::map<std::int64_t, EntryUnits> units;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    const auto code = [&](std::string_view column) { return packet.At(row, column).AsInt(); };
    EntryUnits entry;
    entry.own = code("Measure").value_or(0);
    entry.named.insert(entry.own);
    for (const FieldDef* column :
         {&det::MatStockMeasure, &det::MatStockIncomeMeasure, &det::MatStockBarCodeMeasure}) {
      if (const auto unit = code(column->name)) entry.named.insert(*unit);
    }
    entry.isMaterial = code("MatStockMeasure").has_value();
    entry.service = code("ServiceMeasure").value_or(entry.own);
    units.emplace(code("SerialNumber").value_or(0), std::move(entry));
  }
  return units;
}

bool MayBeOrderedIn(const EntryUnits& entry, std::int64_t unit, bool ownOnly) {
  if (entry.isMaterial && ownOnly) return entry.named.contains(unit);
  const std::int64_t block = entry.isMaterial ? entry.own : entry.service;
  return unit / kUnitBlock == block / kUnitBlock;
}

std::optional<Failure> WhyUnitsRefused(const RowFacts& facts, const DocumentRow& row,
                                       const std::map<std::int64_t, EntryUnits>& units) {
  const auto entry = units.find(row.serial);
  if (entry == units.end() ||
      MayBeOrderedIn(entry->second, row.measure, facts.settings.ownUnitsOnly)) {
    return std::nullopt;
  }
  return Refused(RowName(StoredOrder(), facts.head.key, row) +
                 EntryName(row.serial, facts.entries) + " не се поръчва в мярка " +
                 std::to_string(row.measure) + ". Изберете друга мярка.");
}

/// An order holds an entry once: what it leaves is counted by entry.
std::optional<Failure> WhyTwice(const RowFacts& facts, const DocumentRow& row,
                                const std::vector<DocumentRow>& rows) {
  const auto other = std::find_if(rows.begin(), rows.end(), [&](const DocumentRow& another) {
    return another.serial == row.serial && another.number != row.number;
  });
  if (other == rows.end()) return std::nullopt;
  return Refused(RowName(StoredOrder(), facts.head.key, row) +
                 EntryName(row.serial, facts.entries) + " е вече на ред " +
                 std::to_string(other->number) + ". Променете количеството на онзи ред.");
}

std::optional<Failure> WhyRowsRefused(const RowFacts& facts, const std::vector<DocumentRow>& rows,
                                      std::span<const PreparedChange> changes) {
  const auto units = ReadUnits(facts.more[0]);
  for (const DocumentRow* row : ChangedRows(rows, changes)) {
    if (auto refusal = WhyUnitsRefused(facts, *row, units)) return refusal;
    if (auto refusal = WhyTwice(facts, *row, rows)) return refusal;
  }
  return std::nullopt;
}

RowSteps Steps() {
  return {StoredOrder(), &SelectUnits, &WhyRowsRefused};
}

Answer<Done, Setback> BeforeRows(WriteContext& context, std::span<PreparedChange> changes) {
  const auto ready = BeforeDocumentRows(Steps(), context, changes);
  for (PreparedChange& prepared : changes)
    Drop(prepared.filled, stored::kRowAmount);  // no client knows the column
  return ready;
}

Answer<Done, Setback> AfterRows(WriteContext& context, std::span<PreparedChange>) {
  return AfterDocumentRows(Steps(), context);
}

}  // namespace

WriteRules OrderRowRules() {
  return {.beforeWrite = &BeforeRows, .afterWrite = &AfterRows};
}

}  // namespace orvane
