#include "server/classes/levels_rules.h"

#include <set>

#include "contract/levels_approval.h"
#include "server/approval/levels.h"
#include "server/documents/settings.h"
#include "server/providers/change_writer.h"
#include "server/providers/row_checks.h"
#include "server/statements/named_statement.h"

namespace orvane::server {

using namespace levels_approval;

namespace {

constexpr std::int64_t kHighestSum = 99'999'999'999;

constexpr RangeRule kRanges[] = {
    {KindRegister, 1, 4, "Няма такъв вид регистър. Изберете от списъка."},
    {Level, 1, kHighestLevel, "Нивото на одобрение е от 1 до 255."},
    {FromSum, 0, kHighestSum, "Поле 'От сума' е от 0 до 99999999999."},
    {ToSum, 0, kHighestSum, "Поле 'До сума' е от 0 до 99999999999."},
    {Approval, 1, 3, "Няма такъв одобряващ. Изберете от списъка."},
};
constexpr std::string_view kKey[] = {"KindRegister", "KindSupply", "Level", "FromSum"};
constexpr UniqueRule kUnique[] = {
    {kKey,
     "Вече има ред с ниво {Level} от същата сума за този вид регистър и вид покупка {KindSupply}. "
     "Изберете друго ниво или друга сума."},
};
constexpr ReferenceRule kReferences[] = {
    {"KindSupply", "KindSupplies", "Code",
     "Няма вид покупка с код {KindSupply}. Изберете друг вид."},
};

/// The levels that belong together: those of one kind of register and one kind of supply.
using Group = std::pair<std::int64_t, std::int64_t>;

Group GroupOf(const Change& change, const NamedValues& row) {
  return {AfterChange(change, row, KindRegister).AsInt().value_or(0),
          AfterChange(change, row, KindSupply).AsInt().value_or(0)};
}

std::optional<Failure> RefusalOf(const Change& change, const NamedValues& present,
                                 const DocumentSettings& settings) {
  const auto sum = [&](const FieldDef& field) {
    return AfterChange(change, present, field).AsDecimal().value_or(Decimal());
  };
  const auto [kindRegister, kindSupply] = GroupOf(change, present);
  const Decimal from = sum(FromSum);
  const Decimal to = sum(ToSum);
  if (from > to) return Refused(std::string(kRangeUpsideDown));
  if (HasSums(kindRegister)) return std::nullopt;
  if (!from.IsZero() || !to.IsZero()) {
    return Refused(
        "Поръчките към доставчици се одобряват без оглед на сумата: 'От сума' и 'До сума' са 0.");
  }
  const bool known = settings.bulkKind && settings.waresKind;
  if (known && kindSupply != settings.bulkKind && kindSupply != settings.waresKind) {
    return Refused("Поръчки към доставчици има само за видове покупки ОСМ (" +
                   std::to_string(*settings.bulkKind) + ") и стоки (" +
                   std::to_string(*settings.waresKind) + "). Изберете един от тях.");
  }
  return std::nullopt;
}

Answer<Done, Setback> BeforeWrite(WriteContext& context, std::span<PreparedChange> changes) {
  if (auto within = WithinRanges(changes, kRanges); !within) return within;
  const auto read = context.transaction.Query(SelectSettings());
  if (!read) return ToSetback(read.GetFailure(), "reading parameters");
  const DocumentSettings settings = ReadSettings(*read);
  for (const PreparedChange& prepared : changes) {
    if (prepared.change.kind == ChangeKind::Delete) continue;
    NamedValues present;
    if (prepared.change.kind == ChangeKind::Update) {
      const auto row = context.transaction.Query(PresentRow(dspLevelsApproval, prepared.change));
      if (!row) return ToSetback(row.GetFailure(), "reading an approval level");
      if (row->rowCount == 0) continue;  // gone meanwhile: the write tells the conflict
      present = RowValues(*row, 0);
    }
    if (const auto refusal = RefusalOf(prepared.change, present, settings))
      return Setback{*refusal, false};
  }
  return Done{};
}

Statement SelectGroupNames(const Group& group) {
  return Named(
      "select n.Name as RegisterName, k.Name as SupplyName from NomIn n, KindSupplies k"
      " where n.Nomenclature = 244 and n.Element = :Register and k.Code = :Supply",
      {{"Register", group.first}, {"Supply", group.second}},
      {{"RegisterName", ValueKind::String, 40}, {"SupplyName", ValueKind::String, 40}});
}

std::string SumText(const Decimal& sum, int decimals) {
  return sum.AtScale(decimals).value_or(sum).ToText(',');
}

/// "от 1000,01 до 1999,99, от 5000,01 до 9999,99".
std::string GapsText(std::span<const Gap> gaps, int decimals) {
  std::string text;
  for (const Gap& gap : gaps) {
    text += (text.empty() ? "от " : ", от ") + SumText(gap.from, decimals) + " до " +
            SumText(gap.to, decimals);
  }
  return text;
}

/// The sentence for one group; empty where no sum is left out.
Answer<std::string, Setback> GapWarning(WriteContext& context, const Group& group, int decimals) {
  const Statement reads[] = {SelectLevels(static_cast<DocumentKind>(group.first), group.second),
                             SelectGroupNames(group)};
  const auto packets = context.transaction.QueryAll(reads);
  if (!packets) return ToSetback(packets.GetFailure(), "looking for gaps between levels");
  const std::vector<Gap> gaps = GapsBetween(ReadLevels(packets->front()), decimals);
  const DataPacket& names = packets->back();
  if (gaps.empty() || names.rowCount == 0) return std::string();
  return "Промяната е записана. За „" + names.At(0, "RegisterName").ToText() + "“ и вид покупка „" +
         names.At(0, "SupplyName").ToText() + "“ няма ниво за суми " + GapsText(gaps, decimals) +
         ": документ с такава сума няма да може да бъде изпратен за одобрение.";
}

/// A gap is no mistake yet: levels are entered one by one. It is told, and what was entered stays.
Answer<Done, Setback> AfterWrite(WriteContext& context, std::span<PreparedChange> changes) {
  const auto read = context.transaction.Query(SelectSettings());
  if (!read) return ToSetback(read.GetFailure(), "reading parameters");
  const int decimals = ReadSettings(*read).amountDecimals;
  std::set<Group> groups;
  for (const PreparedChange& prepared : changes) {
    groups.insert(GroupOf(prepared.change, prepared.change.before));
    if (prepared.change.kind == ChangeKind::Update)
      groups.insert(GroupOf({}, prepared.change.before));
  }
  std::string warnings;
  for (const Group& group : groups) {
    const auto warning = GapWarning(context, group, decimals);
    if (!warning) return warning.GetFailure();
    if (!warning->empty()) warnings += (warnings.empty() ? "" : "\n") + *warning;
  }
  context.ownerAnswer = warnings.empty() ? Variant() : Variant(warnings);
  return Done{};
}

}  // namespace

WriteRules LevelsApprovalRules() {
  return {.unique = kUnique,
          .references = kReferences,
          .beforeWrite = &BeforeWrite,
          .afterWrite = &AfterWrite};
}

}  // namespace orvane::server
