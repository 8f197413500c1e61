#include "server/providers/select_statement.h"

#include <vector>

#include "server/providers/change_check.h"
#include "server/providers/value_text.h"

namespace orvane::server {
namespace {

Failure Malformed(std::string sentence) {
  return {FailureKind::BadRequest, std::move(sentence)};
}

bool IsNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// Parameters that come from the session, never from the client.
std::optional<Variant> SessionParam(const Work& work, std::string_view name) {
  if (name == "SessionLogin") return Variant(work.Who().login);
  if (name == "SessionLevel") return Variant(work.Who().userLevel);
  if (name == "SessionReadsReceived") return Variant(work.Who().ReadsReceived());
  if (name == "Today") return Variant(work.Today());
  if (name == "SessionEmployee") {
    const auto employee = work.Who().Employee();
    return employee ? Variant(*employee) : Variant();
  }
  return std::nullopt;
}

Answer<Variant> ParamValue(const Work& work, const ProviderRow& provider,
                           const FetchRequest& request, std::string_view name) {
  if (auto own = SessionParam(work, name)) return *std::move(own);
  for (const FieldDef& param : provider.params) {
    if (param.name != name) continue;
    const Variant* sent = FindValue(request.params, name);
    if (!sent) return Malformed("Липсва параметър „" + std::string(name) + "“.");
    auto kept = sent->As(param.kind, param.size);
    if (kept) return kept;
    return Failure{kept.GetFailure().kind,
                   "Параметър „" + std::string(name) + "“: " + kept.GetFailure().message};
  }
  return Malformed("Непознат параметър „" + std::string(name) + "“.");
}

/// Puts ?1, ?2 … in the place of :Name; a name that occurs twice is one parameter.
Answer<Statement> Bound(const Work& work, const ProviderRow& provider,
                        const FetchRequest& request) {
  Statement statement;
  std::vector<std::string_view> names;
  const std::string_view sql = provider.select;
  for (std::size_t i = 0; i < sql.size(); ++i) {
    if (sql[i] != ':' || i + 1 == sql.size() || !IsNameCharacter(sql[i + 1])) {
      statement.text += sql[i];
      continue;
    }
    std::size_t end = i + 1;
    while (end < sql.size() && IsNameCharacter(sql[end]))
      ++end;
    const std::string_view name = sql.substr(i + 1, end - i - 1);
    std::size_t position = 0;
    while (position < names.size() && names[position] != name)
      ++position;
    if (position == names.size()) {
      auto value = ParamValue(work, provider, request, name);
      if (!value) return value.GetFailure();
      names.push_back(name);
      statement.params.push_back(*std::move(value));
    }
    statement.text += '?' + std::to_string(position + 1);
    i = end - 1;
  }
  for (const FieldDef& field : provider.def.fields) {
    statement.columns.push_back({std::string(field.name), field.kind, field.size});
  }
  return statement;
}

std::vector<const FieldDef*> Keys(const ProviderDef& provider) {
  std::vector<const FieldDef*> keys;
  for (const FieldDef& field : provider.fields) {
    if (field.Is(Key)) keys.push_back(&field);
  }
  return keys;
}

std::string JoinedNames(const std::vector<const FieldDef*>& fields) {
  std::string names;
  for (const FieldDef* field : fields) {
    if (!names.empty()) names += ", ";
    names += field->name;
  }
  return names;
}

/// Wraps the select into a portion by key.
Answer<Statement> AsPortion(Statement statement, const ProviderDef& provider,
                            const FetchRequest& request) {
  const std::vector<const FieldDef*> keys = Keys(provider);
  if (keys.empty()) return Malformed("Тези данни не се четат на порции.");
  std::string text = "select * from (" + statement.text + ") portion";
  if (!request.continuation.empty()) {
    const auto last = DecodeValue(request.continuation);
    const VariantArray* values = last ? last->AsArray() : nullptr;
    if (!values || values->size() != keys.size()) return Malformed("Грешно продължение.");
    std::string places;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      auto value = (*values)[i].As(keys[i]->kind, keys[i]->size);
      if (!value || value->IsNull()) return Malformed("Грешно продължение.");
      statement.params.push_back(*std::move(value));
      places += (i == 0 ? "?" : ", ?") + std::to_string(statement.params.size());
    }
    text += " where (" + JoinedNames(keys) + ") > (" + places + ")";
  }
  statement.params.emplace_back(std::int64_t{request.rowLimit} + 1);
  text += " order by " + JoinedNames(keys) + " limit ?" + std::to_string(statement.params.size());
  statement.text = std::move(text);
  return statement;
}

/// A data request carries its parameters by position, in one array under the name "Data".
Answer<FetchRequest> WithDataSpread(const ProviderRow& provider, const FetchRequest& request) {
  const Variant* data = FindValue(request.params, "Data");
  const VariantArray* values = data ? data->AsArray() : nullptr;
  if (!values) return request;
  if (values->size() != provider.params.size()) return Malformed("Грешен брой параметри.");
  FetchRequest spread = request;
  std::erase_if(spread.params,
                [](const NamedValue& param) { return SameName(param.name, "Data"); });
  for (std::size_t i = 0; i < values->size(); ++i)
    spread.params.push_back({std::string(provider.params[i].name), (*values)[i]});
  return spread;
}

void CutColumn(PacketColumn& column, std::size_t rows) {
  switch (RowOf(column.kind).storage) {
    case Storage::Integer:
      column.integers.resize(rows);
      break;
    case Storage::Real:
      column.reals.resize(rows);
      break;
    case Storage::Text:
      column.ends.resize(rows);
      column.heap.resize(rows == 0 ? 0 : column.ends.back());
      break;
  }
  const std::size_t words = (rows + 63) / 64;
  if (column.nulls.size() > words) column.nulls.resize(words);
  if (rows % 64 != 0 && column.nulls.size() == words) {
    column.nulls.back() &= (std::uint64_t{1} << (rows % 64)) - 1;
  }
}

}  // namespace

Answer<Statement> SelectStatement(const Work& work, const ProviderRow& provider,
                                  const FetchRequest& asked) {
  auto spread = WithDataSpread(provider, asked);
  if (!spread) return spread.GetFailure();
  const FetchRequest& request = *spread;
  if (request.rowLimit < 0) return Malformed("Грешен брой редове.");
  for (const NamedValue& sent : request.params) {
    bool known = false;
    for (const FieldDef& param : provider.params)
      known = known || SameName(param.name, sent.name);
    if (!known) return Malformed("Непознат параметър „" + sent.name + "“.");
  }
  auto statement = Bound(work, provider, request);
  if (!statement) return statement.GetFailure();
  if (request.rowLimit == 0) {
    if (!request.continuation.empty()) return Malformed("Продължението е без брой редове.");
    return statement;
  }
  return AsPortion(*std::move(statement), provider.def, request);
}

void CutPortion(const ProviderRow& provider, std::int32_t rowLimit, DataPacket& packet) {
  const auto limit = static_cast<std::size_t>(rowLimit);
  if (rowLimit == 0 || packet.rowCount <= limit) return;
  for (PacketColumn& column : packet.columns)
    CutColumn(column, limit);
  packet.rowCount = limit;
  VariantArray last;
  for (const FieldDef* key : Keys(provider.def))
    last.push_back(packet.At(limit - 1, key->name));
  packet.continuation = EncodeValue(Variant(std::move(last)));
}

}  // namespace orvane::server
