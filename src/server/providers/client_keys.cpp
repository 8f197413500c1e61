#include "server/providers/client_keys.h"

#include "server/providers/value_text.h"
#include "server/providers/work.h"
#include "server/sessions/passwords.h"
#include "server/sessions/statements.h"

namespace orvane {
namespace {

constexpr char kSelectAnswers[] =
    "select Key, RequestHash, Answer from ClientKey where Login = ?1 and Key in (";

constexpr char kKeepAnswer[] =
    "insert into ClientKey (Login, Key, RequestHash, Answer, CreatedOn) "
    "values (?1, ?2, ?3, ?4, ?5)";

/// A name and a value in turn.
VariantArray Flat(const NamedValues& values) {
  VariantArray flat;
  for (const NamedValue& value : values) {
    flat.emplace_back(value.name);
    flat.push_back(value.value);
  }
  return flat;
}

NamedValues Named(const Variant& flat) {
  NamedValues values;
  const VariantArray* array = flat.AsArray();
  if (!array) return values;
  for (std::size_t i = 0; i + 1 < array->size(); i += 2) {
    values.push_back({(*array)[i].ToText(), (*array)[i + 1]});
  }
  return values;
}

}  // namespace

std::string RequestHash(std::string_view provider, const Change& change) {
  const VariantArray whole = {Variant(provider), Variant(static_cast<int>(change.kind)),
                              Variant(Flat(change.before)), Variant(Flat(change.after))};
  return TicketHash(EncodeValue(Variant(whole)));
}

Statement SelectKeptAnswers(const std::string& login, std::span<const PreparedChange> changes) {
  Statement statement = Select(kSelectAnswers, {login},
                               {{"Key", ValueKind::String, kLongestClientKey},
                                {"RequestHash", ValueKind::String, 64},
                                {"Answer", ValueKind::Memo, 0}});
  for (const PreparedChange& change : changes) {
    statement.params.emplace_back(change.change.clientKey);
    statement.text +=
        (statement.params.size() == 2 ? "?" : ", ?") + std::to_string(statement.params.size());
  }
  statement.text += ')';
  return statement;
}

std::map<std::string, KeptAnswer> KeptAnswers(const DataPacket& packet) {
  std::map<std::string, KeptAnswer> answers;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    KeptAnswer answer;
    answer.requestHash = packet.At(row, "RequestHash").ToText();
    const auto kept = DecodeValue(packet.At(row, "Answer").ToText());
    const VariantArray* parts = kept ? kept->AsArray() : nullptr;
    if (parts && parts->size() == 3) {
      answer.filled = Named((*parts)[0]);
      answer.ownerAnswer = (*parts)[1];
      answer.headMoved = Named((*parts)[2]);
    }
    answers.emplace(packet.At(row, "Key").ToText(), std::move(answer));
  }
  return answers;
}

Statement KeepAnswer(const WriteContext& context, const PreparedChange& change) {
  const VariantArray answer = {Variant(Flat(change.filled)), context.ownerAnswer,
                               Variant(Flat(context.headMoved))};
  return Command(kKeepAnswer,
                 {context.work.Who().login, change.change.clientKey, change.requestHash,
                  EncodeValue(Variant(answer)), context.work.Now()});
}

}  // namespace orvane
