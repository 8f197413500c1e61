#include "server/orders/order_report.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "contract/supplier_order.h"
#include "server/documents/claims.h"
#include "server/documents/document.h"
#include "server/orders/admissible_centers.h"
#include "server/providers/arguments.h"
#include "server/providers/change_check.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

namespace report = supplier_order::report;
namespace asked = supplier_order::get_report;
namespace opening = supplier_order::report_params;

constexpr std::int32_t kMostRows = 1000;         // of a portion
constexpr int kStatusNames = 249;                // nomenclature
constexpr std::int64_t kHighestLanguage = 10;    // columns of names in NomIn
constexpr std::int64_t kHighestId = 2147483647;  // of a document

constexpr std::string_view kSelect =
    "select o.IdNumber, o.CostCenter, o.Supplier, o.Status, {o.Description}, {c.Name}, {p.Name}"
    " from {source} left join CostCenters c on c.CostCenter = o.CostCenter"
    " left join Partners p on p.Partner = o.Supplier";

/// What is asked for: the filter's bounds and where the former portion ended.
struct Asked {
  std::int64_t after = 0;  ///< identifiers above this one
  std::int64_t last = kHighestId;
  std::string conditions;  ///< on {t}; each begins with " and "
  NamedValues params;
  std::int32_t rows = kMostRows;
  Language language = Language::First;
};

Failure Misasked(std::string_view method) {
  return {FailureKind::BadRequest,
          "Методът „" + std::string(method) + "“ не получи това, което очаква."};
}

/// The identifier behind which a portion goes on; nothing when the text is none.
std::optional<std::int64_t> ReadContinuation(const Variant& continuation) {
  if (continuation.IsEmpty()) return 0;
  const std::string text = continuation.ToText();
  std::int64_t id = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  if (error != std::errc() || end != text.data() + text.size() || id < 0) return std::nullopt;
  return id;
}

/// The filter's one record; a field that did not come does not limit.
Answer<Done> ReadFilter(const DataPacket& filter, Asked& read) {
  const auto value = [&](const FieldDef& field) { return filter.At(0, field.name); };
  for (const FieldDef& field : report::kFilter.fields) {
    const auto kept = value(field).As(field.kind);
    if (kept) continue;
    return Failure{FailureKind::BadRequest, AboutField(field, kept.GetFailure().message)};
  }
  for (const FieldDef& field : {report::CostCenter, report::Supplier, report::Status}) {
    if (value(field).IsNull()) continue;
    const std::string name(field.name);
    read.conditions += " and {t}." + name + " = :" + name;
    read.params.push_back({name, value(field)});
  }
  if (const auto from = value(report::FromNumber).AsInt())
    read.after = std::max(read.after, *from - 1);
  if (const auto to = value(report::ToNumber).AsInt()) read.last = std::min(read.last, *to);
  return Done{};
}

Answer<Asked> ReadAsked(Work& work, const VariantArray& ask) {
  const VariantArray* context =
      ask.size() == asked::kAskSize ? ask[asked::kContext].AsArray() : nullptr;
  const DataPacket* filter =
      ask.size() == asked::kAskSize ? ask[asked::kFilterPacket].AsPacket() : nullptr;
  const bool whole =
      context && context->size() == asked::kContextSize && filter && filter->rowCount == 1;
  const VariantArray* options = whole ? (*context)[asked::kOptions].AsArray() : nullptr;
  if (!options) return Misasked(asked::kName);
  constexpr Argument kContext[] = {
      {"Database", ValueKind::String},
      {"Login", ValueKind::String},
  };
  constexpr Argument kOptions[] = {
      {"FirstLanguage", ValueKind::Bool},
      {"RowLimit", ValueKind::Int32},
      {"Continuation", ValueKind::String},
  };
  for (const auto& sound : {CheckArguments(asked::kName, kContext, *context, asked::kContextSize),
                            CheckArguments(asked::kName, kOptions, *options)}) {
    if (!sound) return sound.GetFailure();
  }
  const auto claimed = CheckClaims(work, {(*context)[asked::kLogin], {}, {}});
  if (!claimed) return claimed.GetFailure();
  const auto after = ReadContinuation((*options)[asked::kContinuation]);
  if (!after) return Misasked(asked::kName);

  Asked read;
  read.after = *after;
  const bool first = (*options)[asked::kFirstLanguage].AsBool().value_or(true);
  read.language = first ? Language::First : Language::Second;
  const std::int64_t rows = (*options)[asked::kRowLimit].AsInt().value_or(0);
  if (rows > 0) read.rows = static_cast<std::int32_t>(std::min<std::int64_t>(rows, kMostRows));
  const auto filtered = ReadFilter(*filter, read);
  if (!filtered) return filtered.GetFailure();
  return read;
}

/// One row more than the portion is read: it tells that something follows. Whoever sees everything
/// reads forward in the index of a condition; whoever sees a part goes from one order of his to the
/// next, which costs the same however many there are that he does not see.
Statement SelectPortion(const Work& work, const Asked& asked) {
  SeenTable table = kSeenOrders;
  const std::string passing = "1 = 1" + asked.conditions;
  table.current = passing;
  const AskerVisibility visibility(table, SightOf(work));
  const std::string select = InLanguage(
      Replaced(kSelect, "{source}",
               visibility.Everything() ? "SuppManifacOrder o"
                                       : "walk w join SuppManifacOrder o on o.IdNumber = w.Id"),
      asked.language);
  NamedValues params = visibility.Params();
  params.insert(params.end(), asked.params.begin(), asked.params.end());
  for (const NamedValue& bound : {NamedValue{"After", asked.after}, NamedValue{"Last", asked.last},
                                  NamedValue{"Rows", asked.rows + 1}})
    params.push_back(bound);
  const std::string text =
      visibility.Everything()
          ? select + " where " + Replaced(passing, "{t}", "o") +
                " and o.IdNumber > :After and o.IdNumber <= :Last order by o.IdNumber limit :Rows"
          : "with recursive " + visibility.Tables() +
                "walk (N, Id) as (select 0, cast(:After as integer) union all select walk.N + 1, " +
                visibility.Next("walk.Id") +
                " from walk where walk.N < :Rows and walk.Id is not null and walk.Id < :Last) " +
                select + " where w.N > 0 and o.IdNumber <= :Last order by o.IdNumber";
  return Named(text, params, ColumnsOf(report::kResult));
}

/// The packet without its row too many, and with what asks for those behind it.
DataPacket Portion(DataPacket packet, std::int32_t rows) {
  const auto wanted = static_cast<std::size_t>(rows);
  if (packet.rowCount <= wanted) return packet;
  CutRows(packet, wanted);
  packet.continuation = packet.At(wanted - 1, report::IdNumber.name).ToText();
  return packet;
}

}  // namespace

Answer<VariantArray> GetOrderReport(Work& work, const VariantArray& ask) {
  const auto asked = ReadAsked(work, ask);
  if (!asked) return asked.GetFailure();
  const Statement select = SelectPortion(work, *asked);
  auto packets = work.Read({&select, 1});
  if (!packets) return packets.GetFailure();
  VariantArray tell(asked::kSize);
  tell[asked::kResultPacket] = Variant(Portion(std::move(packets->front()), asked->rows));
  return tell;
}

Answer<VariantArray> GetOrderReportParams(Work& work, const VariantArray& ask) {
  const VariantArray* input =
      ask.size() == opening::kAskSize ? ask[opening::kInput].AsArray() : nullptr;
  if (!input) return Misasked(opening::kName);
  constexpr Argument kAsked[] = {
      {"Database", ValueKind::String},
      {"Employee", ValueKind::Code},
      {"Language", ValueKind::Int32},
  };
  const auto sound = CheckArguments(opening::kName, kAsked, *input);
  if (!sound) return sound.GetFailure();
  const Variant& employee = (*input)[opening::kEmployee];
  const auto claimed = CheckClaims(work, {{}, employee, {}});
  if (!claimed) return claimed.GetFailure();
  const std::int64_t language = std::clamp((*input)[opening::kLanguage].AsInt().value_or(1),
                                           std::int64_t{1}, kHighestLanguage);
  const std::string name = language == 1 ? "Name" : "Name" + std::to_string(language);
  const Statement statements[] = {
      SelectAdmissibleCenters(employee.AsInt().value_or(0)),
      Named("select Element, " + name + " from NomIn where Nomenclature = :NomIn order by Element",
            {{"NomIn", kStatusNames}},
            {{"Element", ValueKind::Code, 0}, {"Name", ValueKind::String, 30}})};
  auto packets = work.Read(statements);
  if (!packets) return packets.GetFailure();
  VariantArray tell(opening::kSize);
  tell[opening::kCostCenters] = AdmissibleCenters(std::move((*packets)[0]));
  tell[opening::kStatuses] = Variant(std::move((*packets)[1]));
  return tell;
}

}  // namespace orvane::server
