#include "server/documents/document_head.h"

#include "server/documents/claims.h"
#include "server/providers/change_writer.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

constexpr std::string_view kStatusNames[] = {"Анулиран",     "Отхвърлен",        "Въведен",
                                             "За одобрение", "Частично одобрен", "Одобрен",
                                             "В изпълнение", "Приключен"};

/// What a move does, after "може да".
struct MoveVerb {
  std::string_view move;
  std::string_view verb;
};
constexpr MoveVerb kVerbs[] = {
    {"send", "изпрати документа за одобрение"},
    {"correct", "върне документа за корекция"},
    {"annul", "анулира документа"},
    {"complete", "приключи документа"},
    {"reopen", "премахне приключването му"},
};

std::string VerbOf(const Move& move) {
  for (const MoveVerb& row : kVerbs) {
    if (row.move == move.name) return std::string(row.verb);
  }
  return "промени документа";
}

std::string HasStatus(const StoredDocument& document, const StoredHead& head) {
  return NameOf(document, head.key) + " е със статус „" + std::string(StatusName(head.status)) +
         "“";
}

std::string OnlyOwner(const StoredDocument& document, const StoredHead& head) {
  return NameOf(document, head.key) + ": само създателят „" + head.createdFrom + "“ може да ";
}

/// Why the asker is not the one to make the move.
std::optional<Failure> WhyNotHis(const StoredDocument& document, const StoredHead& head,
                                 const Move& move, const MoveAsked& asked) {
  const std::string name = NameOf(document, head.key);
  if (move.who == Who::ChiefOrRequester && !asked.chiefOrRequester) {
    return Refused(
        "Само заявителят и началникът на центъра за разход могат да променят приключването на " +
        name + ".");
  }
  if (move.who == Who::Owner && !asked.owner) {
    return Refused(OnlyOwner(document, head) + VerbOf(move) + ".");
  }
  if (move.who == Who::Requester && !asked.requester) {
    return Refused(name + ": само заявителят може да " + VerbOf(move) + ".");
  }
  return std::nullopt;
}

}  // namespace

NamedValues KeyParams(DocumentKey key) {
  return {{"Id", key.id}, {"Version", key.version}};
}

NamedValues PartKey(const StoredDocument& document, DocumentKey key) {
  NamedValues values = {{std::string(document.partId), key.id}};
  if (!document.partVersion.empty()) {
    values.push_back({std::string(document.partVersion), key.version});
  }
  return values;
}

std::string OfHead(const StoredDocument& document, std::string_view part) {
  const auto equal = [&](std::string_view column, std::string_view key) {
    return std::string(part) + "." + std::string(column) + " = p." + std::string(key);
  };
  const std::string id = equal(document.partId, document.seen.id);
  if (document.partVersion.empty()) return id;
  return id + " and " + equal(document.partVersion, document.seen.version);
}

namespace {

/// Condition on the key of alias p.
std::string KeyCondition(const SeenTable& table) {
  const std::string id = "p." + std::string(table.id) + " = :Id";
  return table.version.empty() ? id : id + " and p." + std::string(table.version) + " = :Version";
}

}  // namespace

Statement LockHead(const Work& work, const StoredDocument& document, DocumentKey key) {
  const AskerVisibility visibility(document.seen, SightOf(work));
  std::string text = "select ";
  std::vector<ResultColumn> columns = ColumnsOf(document.head);
  for (const ResultColumn& column : columns)
    text += "p." + column.name + ", ";
  text += "case when " + visibility.On("p") + " then 1 else 0 end from " +
          std::string(document.head.table) + " p where " + KeyCondition(document.seen);
  if (work.EngineKind() == Engine::Postgres) text += " for update of p";
  columns.push_back({"Seen", ValueKind::Bool, 0});
  NamedValues params = visibility.Params();
  for (NamedValue& own : KeyParams(key))
    params.push_back(std::move(own));
  return Named(text, params, std::move(columns));
}

std::optional<StoredHead> ReadHead(const StoredDocument& document, const DataPacket& packet) {
  if (packet.rowCount == 0) return std::nullopt;
  const auto at = [&](std::string_view column) { return packet.At(0, column); };
  const auto number = [&](std::string_view column) { return at(column).AsInt().value_or(0); };
  const auto amount = [&](std::string_view column) {
    return at(column).AsDecimal().value_or(Decimal());
  };
  const SeenTable& table = document.seen;
  StoredHead head;
  head.key.id = number(table.id);
  if (!table.version.empty()) {
    head.key.version = number(table.version);
    head.old = number(stored::kOldVersion) != 0;
  }
  head.row = RowValues(packet, 0);
  head.row.pop_back();  // whether it is seen
  head.documentDate = at(stored::kDocumentDate).AsDate().value_or(Date{});
  head.costCenter = number(stored::kCostCenter);
  head.notifier = number(stored::kNotifier);
  head.supplier = at(stored::kSupplier).AsInt();
  head.kindSupply = number(stored::kKindSupply);
  head.kindCurrency = number(stored::kKindCurrency);
  head.rate = amount(stored::kRateOfExchange);
  head.currSum = amount(document.currencySum);
  head.sum = amount(document.nationalSum);
  head.status = static_cast<int>(number(stored::kStatus));
  head.annulled = !at(stored::kAnnulOn).IsNull();
  head.seen = at("Seen").AsBool().value_or(false);
  head.sending = number(stored::kSendingNumber.name);
  head.createdFrom = at(stored::kCreatedFrom).ToText();
  head.sentFrom = at(stored::kSentFrom.name).ToText();
  head.sentOn = at(stored::kSentOn.name).AsStamp();
  return head;
}

std::string HeadColumn(const StoredDocument& document, std::string_view column) {
  return "(select p." + std::string(column) + " from " + std::string(document.head.table) +
         " p where " + KeyCondition(document.seen) + ")";
}

Statement SelectPart(const StoredDocument& document, const ProviderDef& part, DocumentKey key) {
  std::string columns;
  std::string order;
  std::vector<ResultColumn> result;
  for (const FieldDef& field : part.fields) {
    if (field.Is(Joined)) continue;
    columns += (columns.empty() ? "" : ", ") + std::string(field.name);
    if (field.Is(Key)) order += (order.empty() ? "" : ", ") + std::string(field.name);
    result.push_back({std::string(field.name), field.kind, field.size});
  }
  return Named("select " + columns + " from " + std::string(part.table) + " where " +
                   std::string(document.ofDocument) + " order by " + order,
               KeyParams(key), std::move(result));
}

std::string NameOf(const StoredDocument& document, DocumentKey key) {
  const std::string name = std::string(document.name) + " " + std::to_string(key.id);
  if (document.seen.version.empty()) return name;
  return name + ", версия " + std::to_string(key.version);
}

std::string_view StatusName(int status) {
  const bool known = status >= 0 && status < static_cast<int>(std::size(kStatusNames));
  return known ? kStatusNames[status] : "?";
}

std::optional<Failure> WhyClosed(const StoredDocument& document,
                                 const std::optional<StoredHead>& head, DocumentKey key) {
  const std::string name = NameOf(document, key);
  if (!head || !head->seen) return Refused(name + " не съществува.");
  if (head->old) {
    return Refused(name + " е стара версия и не се променя. Отворете текущата версия.");
  }
  if (head->annulled) {
    return Refused(name + " е " + std::string(document.annulled) + " и не се променя.");
  }
  return std::nullopt;
}

std::optional<Failure> WhyNotEditable(const Work& work, const StoredDocument& document,
                                      const std::optional<StoredHead>& head, DocumentKey key) {
  if (auto closed = WhyClosed(document, head, key)) return closed;
  if (head->status == Entered) {
    if (!document.ownersOnly || IsOwner(work, *head)) return std::nullopt;
    return Refused(OnlyOwner(document, *head) + "го променя.");
  }
  std::string_view wayOut;
  for (const WayOut& row : document.waysOut) {
    if (row.status == head->status) wayOut = row.sentence;
  }
  return Refused(HasStatus(document, *head) + " и не се променя. " + std::string(wayOut));
}

Answer<const Move*> JudgeMove(const StoredDocument& document, const StoredHead& head,
                              const MoveAsked& asked) {
  for (const Move& move : document.moves) {
    const bool annuls = move.name == "annul";
    const bool meant = asked.annuls ? annuls : !annuls && move.to == asked.to;
    if (!meant || !move.from.Has(head.status)) continue;
    if (auto refusal = WhyNotHis(document, head, move, asked)) return *std::move(refusal);
    return &move;
  }
  const std::string has = HasStatus(document, head);
  if (head.status == Completed) return Refused(has + ". Първо премахнете приключването.");
  if (asked.annuls) {
    return Refused(has + " и не може да бъде " + std::string(document.annulled) + ".");
  }
  return Refused(has + " и не може да получи статус „" + std::string(StatusName(asked.to)) + "“.");
}

bool IsOwner(const Work& work, const StoredHead& head) {
  return work.Who().userLevel < kFirstBoundLevel || work.Who().login == head.createdFrom;
}

bool IsRequester(const Work& work, const StoredHead& head) {
  return HasFullAccess(work) || work.Who().Employee() == head.notifier;
}

}  // namespace orvane::server
