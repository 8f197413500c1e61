#include "contract/system.h"
#include "server/classes/parameter_rules.h"
#include "server/classes/server_classes.h"
#include "server/providers/arguments.h"
#include "server/providers/change_writer.h"
#include "server/providers/client_keys.h"
#include "server/providers/work.h"
#include "server/sessions/statements.h"

namespace orvane::server {

using parameters::ModuleParameter;

namespace {

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

constexpr Argument kGroupAsked[] = {
    {"Group", ValueKind::Int32, Need::Needed},
};
constexpr Argument kStored[] = {
    {"Group", ValueKind::Int32, Need::Needed},
    {"Number", ValueKind::Int32, Need::Needed},
    {"Value", ValueKind::String, Need::Optional},
    {"Seen", ValueKind::String, Need::Optional},
};

Answer<VariantArray> GetParams(Work& work, const VariantArray& arguments) {
  const auto sound = CheckArguments(system::kGetParams, kGroupAsked, arguments);
  if (!sound) return sound.GetFailure();
  const Statement select =
      Select(kSelectGroup, {*arguments[0].AsInt()},
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

/// A change of one parameter: its new text, and the text that the asker has seen.
struct Storing {
  const ModuleParameter& parameter;
  Variant value;  ///< as the parameter's field keeps it
  Variant text;
  Variant seen;
};

Failure ChangedMeanwhile(const ModuleParameter& parameter, const Variant& now) {
  return {FailureKind::Conflict,
          ParameterName(parameter) + " междувременно е променен от друг потребител: вече е " +
              (now.IsNull() ? "празен" : "„" + now.ToText() + "“") +
              ". Вашата стойност не е записана; прегледайте я и запишете отново."};
}

Answer<Done, Setback> StoreIn(Work& work, Transaction& transaction, const Storing& storing,
                              const Variant& present) {
  const int number = storing.parameter.number;
  const Variant now = present.IsEmpty() ? Variant() : present;
  if (now == storing.text) return Done{};
  if (now != storing.seen) return Setback{ChangedMeanwhile(storing.parameter, now), false};
  if (const auto referred = ReferredRow(work, storing.parameter, storing.value)) {
    const auto found = transaction.Query(*referred);
    if (!found) return ToSetback(found.GetFailure(), "looking for a parameter's code");
    if (found->rowCount == 0) {
      return Setback{Refused(ParameterName(storing.parameter) + " няма стойност " +
                             storing.text.ToText() + ". Изберете от списъка."),
                     false};
    }
  }
  const Statement writes[] = {
      Command(kStore, {system::kModuleGroup, number, storing.text, present}),
      ParamHistory(work, number, now, storing.text)};
  const auto written = transaction.ExecuteAll(writes);
  if (!written) return ToSetback(written.GetFailure(), "storing a parameter");
  if (written->front() == 1) return Done{};
  return Setback{ChangedMeanwhile(storing.parameter, storing.seen), true};
}

Answer<VariantArray> Store(Work& work, const Storing& storing) {
  Statement present =
      Select(kSelectOne, {system::kModuleGroup, static_cast<int>(storing.parameter.number)},
             {{"Value", ValueKind::String, kLongestValue}});
  return WriteOnce(
      work, {std::move(present)},
      [&](Transaction& transaction, const Packets& first) -> Answer<VariantArray, Setback> {
        const Variant now = first.front().rowCount == 1 ? first.front().At(0, "Value") : Variant();
        const auto stored = StoreIn(work, transaction, storing, now);
        if (!stored) return stored.GetFailure();
        return VariantArray{};
      });
}

bool IsTooLong(const Variant& text) {
  return text.AsString() && text.AsString()->size() > kLongestValue;
}

Answer<VariantArray> SetParam(Work& work, const VariantArray& arguments) {
  const auto sound = CheckArguments(system::kSetParam, kStored, arguments);
  if (!sound) return sound.GetFailure();
  if (IsTooLong(arguments[2]) || IsTooLong(arguments[3])) {
    return Failure{FailureKind::BadRequest, "Стойността на параметър („Value“) е твърде дълга."};
  }
  const auto group = arguments[0].AsInt();
  const auto number = arguments[1].AsInt();
  const ModuleParameter* parameter =
      *group == system::kModuleGroup ? parameters::FindModuleParameter(*number) : nullptr;
  if (!parameter) {
    return Refused("Параметър " + std::to_string(*number) + " от група " + std::to_string(*group) +
                   " не се променя оттук.");
  }
  const auto value = ParameterValue(*parameter, arguments[2].ToText());
  if (!value) return value.GetFailure();
  const auto kept = [](const Variant& text) { return text.IsEmpty() ? Variant() : text; };
  return Store(work, {*parameter, *value, kept(arguments[2]), kept(arguments[3])});
}

}  // namespace

ServerClass TsmParameters() {
  return ServerClass(system::kParametersClass)
      .UsedFrom({Point::Parameters})
      .Operation(system::kGetParams, Rule::Session, &GetParams)
      .Operation(system::kSetParam, Rule::Edit, &SetParam);
}

}  // namespace orvane::server
