#include "contract/system.h"
#include "packet/decimal.h"
#include "packet/fold.h"
#include "server/classes/server_classes.h"
#include "server/providers/change_writer.h"
#include "server/providers/work.h"
#include "server/sessions/statements.h"

namespace orvane {
namespace {

constexpr int kFirstNumber = 1;
constexpr int kLastNumber = 19;
constexpr int kLongestValue = 250;

constexpr char kSelectGroup[] =
    "select Number, Value from Params where ParamGroup = ?1 and Value is not null order by Number";
constexpr char kSelectOne[] = "select Value from Params where ParamGroup = ?1 and Number = ?2";
/// Touches no row when the value is not the one that was read.
constexpr char kStore[] =
    "insert into Params (ParamGroup, Number, Value) values (?1, ?2, ?3) "
    "on conflict (ParamGroup, Number) do update set Value = excluded.Value "
    "where Params.Value is not distinct from ?4";

/// How history writes a parameter; the table itself has no provider.
constexpr auto ParamGroup = Int32("ParamGroup", Key);
constexpr auto Number = Int32("Number", Key);
constexpr auto Value = String("Value", kLongestValue);
constexpr auto kHistoryFields = Writes("", "Params", ParamGroup, Number, Value);

Answer<VariantArray> GetParams(Work& work, const VariantArray& arguments) {
  const auto group = arguments.size() == 1 ? arguments[0].AsInt() : std::nullopt;
  if (!group) return Failure{FailureKind::BadRequest, "Методът очаква номер на група."};
  const Statement select =
      Select(kSelectGroup, {*group},
             {{"Number", ValueKind::Int32, 0}, {"Value", ValueKind::String, kLongestValue}});
  auto packets = work.Read({&select, 1});
  if (!packets) return packets.GetFailure();
  const DataPacket& rows = packets->front();
  VariantArray pairs;
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    pairs.emplace_back(VariantArray{rows.At(row, "Number"), rows.At(row, "Value")});
  }
  return VariantArray{Variant(std::move(pairs))};
}

/// Every parameter of the module is a number, kept as text.
Answer<Variant> KeptText(const Variant& value) {
  if (value.IsEmpty()) return Variant();
  const std::string* text = value.AsString();
  if (!text) return Failure{FailureKind::BadRequest, "Стойността на параметър е текст."};
  if (text->size() > static_cast<std::size_t>(kLongestValue) || !Decimal::Parse(*text)) {
    return Refused("Стойността на параметъра трябва да е число.");
  }
  return value;
}

/// What history says of the parameter's change.
Statement ParamHistory(const Work& work, int number, const Variant& old, const Variant& value) {
  Change change;
  change.kind = ChangeKind::Update;
  change.before.push_back({"ParamGroup", system::kModuleGroup});
  change.before.push_back({"Number", number});
  change.before.push_back({"Value", old});
  change.after.push_back({"Value", value});
  const Writer writer{work.Who().login, work.Who().machineName, work.Now()};
  return HistoryStatement(kHistoryFields, writer, change);
}

Answer<Done> Store(Work& work, int number, const Variant& value) {
  const Statement present = Select(kSelectOne, {system::kModuleGroup, number},
                                   {{"Value", ValueKind::String, kLongestValue}});
  return work.Write(
      {&present, 1}, [&](Transaction& transaction, const Packets& first) -> Answer<Done, Setback> {
        const Variant old = first.front().rowCount == 1 ? first.front().At(0, "Value") : Variant();
        if (old == value) return Done{};
        const Statement writes[] = {Command(kStore, {system::kModuleGroup, number, value, old}),
                                    ParamHistory(work, number, old, value)};
        const auto written = transaction.ExecuteAll(writes);
        if (!written) return ToSetback(written.GetFailure(), "storing a parameter");
        if (written->front() == 1) return Done{};
        return Setback{{FailureKind::Conflict,
                        "Параметърът се променя и от друг потребител. Опитайте отново."},
                       true};
      });
}

Answer<VariantArray> SetParam(Work& work, const VariantArray& arguments) {
  const auto group = arguments.size() == 3 ? arguments[0].AsInt() : std::nullopt;
  const auto number = arguments.size() == 3 ? arguments[1].AsInt() : std::nullopt;
  if (!group || !number) {
    return Failure{FailureKind::BadRequest, "Методът очаква група, номер и стойност."};
  }
  if (*group != system::kModuleGroup || *number < kFirstNumber || *number > kLastNumber) {
    return Refused("Параметър " + std::to_string(*number) + " от група " + std::to_string(*group) +
                   " не се променя оттук.");
  }
  auto text = KeptText(arguments[2]);
  if (!text) return text.GetFailure();
  const auto stored = Store(work, static_cast<int>(*number), *text);
  if (!stored) return stored.GetFailure();
  return VariantArray{};
}

}  // namespace

ServerClass TsmParameters() {
  return ServerClass(system::kParametersClass)
      .UsedFrom({Point::Parameters})
      .Operation(system::kGetParams, Rule::Session, &GetParams)
      .Operation(system::kSetParam, Rule::Edit, &SetParam);
}

}  // namespace orvane
