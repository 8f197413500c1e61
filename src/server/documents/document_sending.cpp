#include "server/documents/document_sending.h"

#include "packet/quantity.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

std::optional<Failure> WhyHeadNotSent(const SentDocument& sent) {
  const StoredHead& head = sent.head;
  const std::string name = NameOf(sent.document, head.key) + ": ";
  const auto value = [&](std::string_view column) {
    const Variant* found = FindValue(head.row, column);
    return found ? *found : Variant();
  };
  if (!sent.facts.admissible) {
    return Refused(name + "заявител с код " + value(stored::kNotifier).ToText() +
                   " вече не е допустим за център за разход " +
                   value(stored::kCostCenter).ToText() +
                   " (виж „Допустими заявители“). Изберете друг център за разход.");
  }
  const auto refused = WhyContractRefused(sent.document, sent.facts, value(stored::kContractId),
                                          head.supplier, head.kindSupply);
  if (refused) return Refused(name + "договор " + *refused);
  return std::nullopt;
}

std::optional<Failure> WhyRowNotSent(const SentDocument& sent, const DocumentRow& row) {
  const DocumentSettings& settings = sent.facts.settings;
  const bool priced = settings.IsPriced(sent.head.kindSupply);
  const std::string where =
      NameOf(sent.document, sent.head.key) + ", ред " + std::to_string(row.number) + ": ";
  const auto entry = sent.entries.find(row.serial);
  const bool hasPrice = entry != sent.entries.end() && entry->second.Price(settings).has_value();
  if (priced && !hasPrice) {
    return Refused(where + "пореден номер " + std::to_string(row.serial) +
                   " няма цена към датата на документа. Въведете цена "
                   "в списъка за доставка и запишете реда отново.");
  }
  const auto terms = sent.terms.find(row.serial);
  if (terms != sent.terms.end() && !terms->second.bought) {
    return Refused(where + EntryName(row.serial, sent.entries) +
                   " не се купува към датата на документа. Изберете друг материал или изтрийте "
                   "реда.");
  }
  const bool typed = !priced && !row.amount.IsZero();
  if (CompareQuantities(row.quantity, 0) == 0 && !typed) {
    return Refused(where +
                   (priced ? "количеството е нула. Въведете количество"
                           : "няма нито количество, нито сума. Въведете ги") +
                   " или изтрийте реда.");
  }
  return std::nullopt;
}

}  // namespace

std::vector<Statement> SelectSent(const Work& work, const StoredDocument& document,
                                  const StoredHead& head) {
  const NamedValues params = KeyParams(head.key);
  const std::string named = EntriesNamed(document);
  std::vector<Statement> statements = SelectHeadFacts(work, {}, head.row);
  statements.push_back(SelectPart(document, document.rows, head.key));
  statements.push_back(SelectEntryTerms(Replaced(named, "{serial}", "b.SerialNumber"),
                                        HeadColumn(document, stored::kDocumentDate), params));
  for (Statement& statement : SelectEntries(EntriesOf(document, named, params)))
    statements.push_back(std::move(statement));
  return statements;
}

SentDocument ReadSent(const StoredDocument& document, const StoredHead& head,
                      std::span<const DataPacket> packets) {
  const auto rest = packets.subspan(kHeadFactStatements);
  return {document,
          head,
          ReadHeadFacts(packets),
          ReadDocumentRows(rest[0]),
          ReadEntries(rest[2], rest[3]),
          ReadEntryTerms(rest[1])};
}

std::optional<Failure> WhyNotSent(const SentDocument& sent) {
  if (sent.rows.empty()) {
    return Refused(NameOf(sent.document, sent.head.key) +
                   " няма редове. Въведете поне един ред с материал или услуга.");
  }
  if (auto refusal = WhyHeadNotSent(sent)) return refusal;
  for (const DocumentRow& row : sent.rows) {
    if (auto refusal = WhyRowNotSent(sent, row)) return refusal;
  }
  return std::nullopt;
}

const DocumentOwners* WhoMayNotDecide(const Work& work, const DocumentOwners& owners) {
  return work.Options().mayApproveOwn ? nullptr : &owners;
}

}  // namespace orvane::server
