#include "server/documents/document_row_apply.h"

#include <algorithm>

#include "server/documents/document_steps.h"
#include "server/documents/server_writes.h"
#include "server/documents/values.h"
#include "server/providers/change_check.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

/// What the second hook needs of what the first one read.
struct RowsApply {
  StoredHead head;
  DocumentSums sums;
};

std::string ChangedNumbers(std::span<const PreparedChange> changes, NamedValues& params) {
  std::string list;
  for (const PreparedChange& change : changes) {
    const Variant* number = FindValue(change.change.before, stored::kRowNumber);
    if (!number) continue;
    const std::string name = "Row" + std::to_string(params.size());
    list += (list.empty() ? ":" : ", :") + name;
    params.push_back({name, *number});
  }
  return list.empty() ? "null" : list;
}

/// Bytes of the texts of all rows of a document: it is loaded whole, and answers are limited.
constexpr std::size_t kLongestTexts = 16 * 1024 * 1024;

std::size_t TextsOf(std::span<const DocumentRow> rows) {
  std::size_t bytes = 0;
  for (const DocumentRow& row : rows) {
    for (const NamedValue& value : row.values) {
      if (const std::string* text = value.value.AsString()) bytes += text->size();
    }
  }
  return bytes;
}

/// What was read, and the packets that `facts.more` looks into.
struct Read {
  Packets packets;
  RowFacts facts;
};

Answer<Read, Setback> ReadFacts(const RowSteps& steps, WriteContext& context, DocumentKey key,
                                std::span<const PreparedChange> changes) {
  const StoredDocument& document = steps.document;
  WantedValues wanted(document, key, changes);
  const std::string entries = wanted.Of(stored::kSerialNumber, "{serial}");
  const std::string units = wanted.Of(stored::kMeasure, "Code");
  const std::string terms = wanted.Of(stored::kSerialNumber, "b.SerialNumber");
  std::vector<Statement> more;
  if (steps.more) more = steps.more(context.work, key, wanted);
  std::vector<Statement> statements = {LockHead(context.work, document, key), SelectSettings(),
                                       SelectPart(document, document.rows, key)};
  statements.push_back(Named("select Code, Numerator from Measures where " + units, wanted.Params(),
                             {{"Code", ValueKind::Int16, 0}, {"Numerator", ValueKind::Int32, 0}}));
  for (Statement& statement : SelectEntries(EntriesOf(document, entries, wanted.Params())))
    statements.push_back(std::move(statement));
  statements.push_back(
      SelectEntryTerms(terms, HeadColumn(document, stored::kDocumentDate), wanted.Params()));
  const std::size_t behind = statements.size();
  for (Statement& statement : more)
    statements.push_back(std::move(statement));
  auto packets = context.transaction.QueryAll(statements);
  if (!packets) return ToSetback(packets.GetFailure(), "reading what stands behind rows");

  const auto head = ReadHead(document, (*packets)[0]);
  if (auto refusal = WhyNotEditable(context.work, document, head, key)) {
    return Refusal(*std::move(refusal));
  }
  Read read{*std::move(packets), {}};
  RowFacts& facts = read.facts;
  facts.head = *head;
  facts.settings = ReadSettings(read.packets[1]);
  facts.rows = ReadDocumentRows(read.packets[2]);
  const DataPacket& measures = read.packets[3];
  for (std::size_t row = 0; row < measures.rowCount; ++row) {
    facts.numerators[measures.At(row, "Code").AsInt().value_or(0)] =
        measures.At(row, "Numerator").AsInt().value_or(1);
  }
  facts.entries = ReadEntries(read.packets[4], read.packets[5]);
  facts.terms = ReadEntryTerms(read.packets[6]);
  facts.more = std::span<const DataPacket>(read.packets).subspan(behind);
  return read;
}

/// The columns of a head that its rows move.
NamedValues HeadSums(const StoredDocument& document, const Decimal& currency,
                     const Decimal& national) {
  return {{std::string(document.currencySum), currency},
          {std::string(document.nationalSum), national}};
}

const NamedValues* PresentRowOf(const RowFacts& facts, const Change& change) {
  const Variant* number = FindValue(change.before, stored::kRowNumber);
  for (const DocumentRow& row : facts.rows) {
    if (number && number->AsInt() == row.number) return &row.values;
  }
  return nullptr;
}

bool HasNumber(const std::vector<DocumentRow>& rows, const Change& change) {
  const auto number = ValueAfter(change, {}, stored::kRowNumber).AsInt();
  return std::any_of(rows.begin(), rows.end(),
                     [&](const DocumentRow& row) { return row.number == number; });
}

/// Codes, sizes of units and the amount are the server's to fill.
std::optional<Failure> FillRow(const StoredDocument& document, const RowFacts& facts,
                               const NamedValues& present, PreparedChange& prepared) {
  const DocumentRow asked = DocumentRowOf(After(present, prepared.change));
  const std::string where = RowName(document, facts.head.key, asked);
  if (asked.number < 1) {
    return Refused(where + "номерът на ред трябва да бъде поне 1. Въведете друг.");
  }
  const auto entry = facts.entries.find(asked.serial);
  if (entry == facts.entries.end()) {
    return Refused(where + "в списъка за доставка няма пореден номер " +
                   std::to_string(asked.serial) + ". Изберете друг.");
  }
  const auto unit = facts.numerators.find(asked.measure);
  if (unit == facts.numerators.end()) {
    return Refused(where + "няма мярка с код " + std::to_string(asked.measure) +
                   ". Изберете друга.");
  }
  if (asked.quantity < 0) {
    return Refused(where + "количеството не може да бъде отрицателно. Въведете друго.");
  }
  const auto code = [](const std::optional<std::int64_t>& value) {
    return value ? Variant(*value) : Variant();
  };
  Impose(prepared, present, "InventoryId", code(entry->second.inventoryId));
  Impose(prepared, present, "ServiceCode", code(entry->second.serviceCode));
  Impose(prepared, present, "Numerator", entry->second.numerator);
  Impose(prepared, present, "RowNumerator", unit->second);
  const DocumentRow row = DocumentRowOf(After(present, prepared.change));
  const auto amount =
      RowAmount(facts.head.kindSupply, facts.head.rate, row, entry->second, facts.settings);
  if (!amount) return TooGreat(where + "сумата");
  Impose(prepared, present, stored::kRowAmount, *amount);
  return std::nullopt;
}

/// Units of another block would count something else.
std::optional<Failure> WhyUnitRefused(const StoredDocument& document, const RowFacts& facts,
                                      const DocumentRow& row) {
  const auto terms = facts.terms.find(row.serial);
  if (terms == facts.terms.end() ||
      terms->second.MayBeCountedIn(row.measure, facts.settings.ownUnitsOnly)) {
    return std::nullopt;
  }
  return Refused(RowName(document, facts.head.key, row) + EntryName(row.serial, facts.entries) +
                 " не се поръчва в мярка " + std::to_string(row.measure) +
                 ". Изберете друга мярка.");
}

/// Fills the changes one after the other; the rows as they leave them.
Answer<std::vector<DocumentRow>, Setback> RowsAfter(const StoredDocument& document,
                                                    const RowFacts& facts,
                                                    std::span<PreparedChange> changes) {
  std::vector<DocumentRow> rows = facts.rows;
  for (PreparedChange& prepared : changes) {
    const bool insert = prepared.change.kind == ChangeKind::Insert;
    const NamedValues* present = insert ? nullptr : PresentRowOf(facts, prepared.change);
    if (prepared.change.kind != ChangeKind::Delete && (insert || present)) {
      static const NamedValues kNothing;
      const NamedValues& old = present ? *present : kNothing;
      if (auto refusal = FillRow(document, facts, old, prepared)) {
        return Refusal(*std::move(refusal));
      }
      CompleteOldValues(prepared.change, old);
    }
    if (insert && HasNumber(rows, prepared.change)) {
      return Refusal(Refused(NameOf(document, facts.head.key) + " вече има ред " +
                             ValueAfter(prepared.change, {}, stored::kRowNumber).ToText() +
                             ". Изберете друг номер на ред."));
    }
    ApplyChange(rows, prepared.change);
  }
  return rows;
}

}  // namespace

WantedValues::WantedValues(const StoredDocument& document, DocumentKey key,
                           std::span<const PreparedChange> changes)
    : changes_(changes), params_(KeyParams(key)) {
  ofChanged_ = "select {column} from " + std::string(document.rows.table) + " where " +
               std::string(document.ofDocument) + " and RowNumber in (" +
               ChangedNumbers(changes, params_) + ")";
}

// One list, because PostgreSQL would walk the whole supply list for two joined by "or".
std::string WantedValues::Of(std::string_view column, std::string_view what) {
  std::string selects;
  for (const PreparedChange& change : changes_) {
    const Variant* value = FindValue(change.change.after, column);
    if (!value || value->IsNull()) continue;
    const std::string name = "V" + std::to_string(params_.size());
    selects += "select :" + name + " union all ";
    params_.push_back({name, *value});
  }
  return std::string(what) + " in (" + selects + Replaced(ofChanged_, "{column}", column) + ")";
}

Answer<Done, Setback> BeforeDocumentRows(const RowSteps& steps, WriteContext& context,
                                         std::span<PreparedChange> changes) {
  const StoredDocument& document = steps.document;
  const auto key = DocumentOf(document, changes);
  if (!key) return key.GetFailure();
  const auto read = ReadFacts(steps, context, *key, changes);
  if (!read) return read.GetFailure();
  const RowFacts& facts = read->facts;
  context.headFound = HeadSums(document, facts.head.currSum, facts.head.sum);
  const auto rows = RowsAfter(document, facts, changes);
  if (!rows) return rows.GetFailure();
  for (const DocumentRow* row : ChangedRows(*rows, changes)) {
    if (auto refusal = WhyUnitRefused(document, facts, *row)) return Refusal(*std::move(refusal));
  }
  if (TextsOf(*rows) > kLongestTexts) {
    return Refusal(Refused(NameOf(document, *key) +
                           ": текстовете на редовете са общо твърде дълги. Съкратете бележките."));
  }
  if (auto refusal = steps.refuses(facts, *rows, changes)) return Refusal(*std::move(refusal));
  const auto sums = SumsOf(*rows, facts.head.rate, facts.settings);
  if (!sums) return Refusal(TooGreat(NameOf(document, *key) + ": сумата"));
  context.kept = RowsApply{facts.head, *sums};
  return Done{};
}

Answer<Done, Setback> AfterDocumentRows(const RowSteps& steps, WriteContext& context) {
  const RowsApply& apply = *std::any_cast<RowsApply>(&context.kept);
  context.headMoved = HeadSums(steps.document, apply.sums.currency, apply.sums.national);
  ServerWrites writes(context.work);
  writes.Update(steps.document.head, apply.head.row, context.headMoved);
  return writes.CarryOut(context.transaction, "writing a document's sums");
}

std::vector<const DocumentRow*> ChangedRows(const std::vector<DocumentRow>& rows,
                                            std::span<const PreparedChange> changes) {
  std::vector<const DocumentRow*> changed;
  for (const PreparedChange& prepared : changes) {
    if (prepared.change.kind == ChangeKind::Delete) continue;
    const Variant* number = FindValue(prepared.change.after, stored::kRowNumber);
    if (!number) number = FindValue(prepared.change.before, stored::kRowNumber);
    for (const DocumentRow& row : rows) {
      if (number && number->AsInt() == row.number) changed.push_back(&row);
    }
  }
  return changed;
}

std::string RowName(const StoredDocument& document, DocumentKey key, const DocumentRow& row) {
  return NameOf(document, key) + ", ред " + std::to_string(row.number) + ": ";
}

}  // namespace orvane::server
