#include "server/documents/entry_terms.h"

#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

/// Units are kept in blocks of a hundred, within which they convert into each other.
constexpr std::int64_t kUnitBlock = 100;

/// A material is bought until the day before it is forbidden.
constexpr std::string_view kTerms =
    "select b.SerialNumber, b.Measure, i.Measure, i.IncomeMeasure, i.BarCodeMeasure, s.Measure,"
    " case when i.SuppForbiddenFrom <= {day} or i.SuppActiveFrom > {day} then 0 else 1 end"
    " from BaseSupplyList b"
    " left join MaterialStocks i on i.IdNumber = b.InventoryCode"
    " left join Services s on s.Code = b.ServiceCode where ";

}  // namespace

bool EntryTerms::MayBeCountedIn(std::int64_t unit, bool ownOnly) const {
  if (isMaterial && ownOnly) return named.contains(unit);
  const std::int64_t block = isMaterial ? own : service;
  return unit / kUnitBlock == block / kUnitBlock;
}

Statement SelectEntryTerms(const std::string& wanted, const std::string& day,
                           const NamedValues& params) {
  return Named(Replaced(kTerms, "{day}", day) + wanted, params,
               {{"SerialNumber", ValueKind::Code, 0},
                {"Measure", ValueKind::Int16, 0},
                {"MaterialMeasure", ValueKind::Int16, 0},
                {"IncomeMeasure", ValueKind::Int16, 0},
                {"BarCodeMeasure", ValueKind::Int16, 0},
                {"ServiceMeasure", ValueKind::Int16, 0},
                {"Bought", ValueKind::Bool, 0}});
}

std::map<std::int64_t, EntryTerms> ReadEntryTerms(const DataPacket& packet) {
  std::map<std::int64_t, EntryTerms> terms;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    const auto code = [&](std::string_view column) { return packet.At(row, column).AsInt(); };
    EntryTerms entry;
    entry.own = code("Measure").value_or(0);
    entry.named.insert(entry.own);
    for (const std::string_view column : {"MaterialMeasure", "IncomeMeasure", "BarCodeMeasure"}) {
      if (const auto unit = code(column)) entry.named.insert(*unit);
    }
    entry.isMaterial = code("MaterialMeasure").has_value();
    entry.service = code("ServiceMeasure").value_or(entry.own);
    entry.bought = packet.At(row, "Bought").AsBool().value_or(true);
    terms.emplace(code("SerialNumber").value_or(0), std::move(entry));
  }
  return terms;
}

}  // namespace orvane::server
