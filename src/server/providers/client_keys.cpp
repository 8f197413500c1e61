#include "server/providers/client_keys.h"

#include <algorithm>

#include "server/providers/value_text.h"
#include "server/sessions/passwords.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

constexpr char kSelectAnswers[] =
    "select Key, RequestHash, Answer from ClientKey where Login = ?1 and Key in (";

constexpr char kSelectAnswer[] =
    "select Key, RequestHash, Answer from ClientKey where Login = ?1 and Key = ?2";

constexpr char kKeepAnswer[] =
    "insert into ClientKey (Login, Key, RequestHash, Answer, CreatedOn, KeptAt) "
    "values (?1, ?2, ?3, ?4, ?5, ?6)";

const std::vector<ResultColumn> kAnswerColumns = {{"Key", ValueKind::String, kLongestClientKey},
                                                  {"RequestHash", ValueKind::String, 64},
                                                  {"Answer", ValueKind::Memo, 0}};

std::string MethodHash(const MethodCall& call) {
  const VariantArray whole = {Variant(call.serverClass), Variant(call.method),
                              Variant(call.arguments)};
  return TicketHash(EncodeValue(Variant(whole)));
}

/// What was answered under the key of `call`; null when it was not carried out yet.
Answer<std::optional<VariantArray>, Setback> KeptMethodAnswer(const DataPacket& kept,
                                                              const std::string& hash) {
  if (kept.rowCount == 0) return std::optional<VariantArray>();
  const auto answer = DecodeValue(kept.At(0, "Answer").ToText());
  const VariantArray* values = answer ? answer->AsArray() : nullptr;
  if (kept.At(0, "RequestHash").ToText() != hash || !values) {
    return Setback{{FailureKind::BadRequest, "Ключът на извикването вече е ползван за друго."},
                   false};
  }
  return std::optional<VariantArray>(*values);
}

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
  Statement statement = Select(kSelectAnswers, {login}, kAnswerColumns);
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
                  EncodeValue(Variant(answer)), context.work.Now(), context.work.RunningMicros()});
}

bool IsClientKey(std::string_view key) {
  return !key.empty() && key.size() <= kLongestClientKey &&
         std::all_of(key.begin(), key.end(), [](char c) { return c > 32 && c < 127; });
}

Answer<VariantArray> WriteOnce(Work& work, std::vector<Statement> first, const MethodBody& body) {
  const MethodCall& call = work.Called();
  if (!IsClientKey(call.clientKey)) {
    return Failure{FailureKind::BadRequest,
                   "Методът „" + call.method + "“ записва и очаква собствен ключ."};
  }
  const std::string& login = work.Who().login;
  const std::string hash = MethodHash(call);
  first.push_back(Select(kSelectAnswer, {login, call.clientKey}, kAnswerColumns));
  VariantArray answer;
  const auto written = work.Write(
      first, [&](Transaction& transaction, const Packets& packets) -> Answer<Done, Setback> {
        auto kept = KeptMethodAnswer(packets.back(), hash);
        if (!kept) return kept.GetFailure();
        if (*kept) {
          answer = **std::move(kept);
          return Done{};
        }
        auto made = body(transaction, packets);
        if (!made) return made.GetFailure();
        answer = *std::move(made);
        const Statement keep =
            Command(kKeepAnswer, {login, call.clientKey, hash, EncodeValue(Variant(answer)),
                                  work.Now(), work.RunningMicros()});
        const auto done = transaction.ExecuteAll({&keep, 1});
        if (done) return Done{};
        Setback setback = ToSetback(done.GetFailure(), "keeping a method's answer");
        // The same call under way twice: the other one's answer is there now.
        if (done.GetFailure().kind == EngineErrorKind::Unique) setback.retry = true;
        return setback;
      });
  if (!written) return written.GetFailure();
  return answer;
}

}  // namespace orvane::server
