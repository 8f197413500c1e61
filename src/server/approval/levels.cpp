#include "server/approval/levels.h"

#include <algorithm>
#include <map>

#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

std::string LevelsOf(const SendingFacts& facts) {
  return "„Нива на одобрение“ за вид регистър " + std::to_string(static_cast<int>(facts.kind)) +
         " и вид покупка " + std::to_string(facts.kindSupply);
}

}  // namespace

Statement SelectLevels(DocumentKind kind, std::int64_t kindSupply) {
  return Named(
      "select Level, FromSum, ToSum, Approval from LevelsApproval"
      " where KindRegister = :Kind and KindSupply = :KindSupply order by Level, FromSum",
      {{"Kind", static_cast<int>(kind)}, {"KindSupply", kindSupply}},
      {{"Level", ValueKind::Int32, 0},
       {"FromSum", ValueKind::Amount, 0},
       {"ToSum", ValueKind::Amount, 0},
       {"Approval", ValueKind::Byte, 0}});
}

std::vector<LevelRow> ReadLevels(const DataPacket& packet) {
  std::vector<LevelRow> rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    rows.push_back({static_cast<int>(packet.At(row, "Level").AsInt().value_or(0)),
                    packet.At(row, "FromSum").AsDecimal().value_or(Decimal()),
                    packet.At(row, "ToSum").AsDecimal().value_or(Decimal()),
                    static_cast<ApproverKind>(packet.At(row, "Approval").AsInt().value_or(1))});
  }
  return rows;
}

std::vector<LevelRow> MatchLevels(std::span<const LevelRow> rows, Decimal sum) {
  std::map<int, LevelRow> matched;
  for (const LevelRow& row : rows) {
    if (sum < row.from || sum > row.to) continue;
    const auto [place, added] = matched.emplace(row.level, row);
    if (!added && place->second.from < row.from) place->second = row;
  }
  std::vector<LevelRow> levels;
  for (const auto& [level, row] : matched)
    levels.push_back(row);
  return levels;
}

std::vector<Gap> GapsBetween(std::span<const LevelRow> rows, int decimals) {
  std::vector<LevelRow> ranges(rows.begin(), rows.end());
  std::sort(ranges.begin(), ranges.end(),
            [](const LevelRow& left, const LevelRow& right) { return left.from < right.from; });
  const Decimal step(1, decimals);
  std::vector<Gap> gaps;
  Decimal reached = ranges.empty() ? Decimal() : ranges.front().to;
  for (const LevelRow& range : ranges) {
    const auto next = reached.Plus(step);
    if (next && *next < range.from) gaps.push_back({*next, *range.from.Minus(step)});
    reached = std::max(reached, range.to);
  }
  return gaps;
}

Answer<std::vector<ApprovalRow>> PlanApproval(const SendingFacts& facts) {
  std::vector<ApprovalRow> rows;
  if (facts.levels.empty()) {
    if (facts.kind != DocumentKind::SupplierOrder) return rows;
    return Refused(facts.document + " не може да бъде изпратена: няма " + LevelsOf(facts) +
                   ". Попълнете ги в регистъра.");
  }
  const std::vector<LevelRow> matched = MatchLevels(facts.levels, facts.sum);
  if (matched.empty()) {
    return Refused(facts.document + ": сумата " + facts.sum.ToText(',') +
                   " не попада в никой обхват на " + LevelsOf(facts) +
                   ". Допълнете обхватите в регистъра.");
  }
  for (const LevelRow& level : matched) {
    const FoundApprovers& found = facts.approvers.Of(level.approver);
    if (found.approvers.empty()) {
      return Refused(facts.document + " няма кой да одобри на ниво " + std::to_string(level.level) +
                     ". " + found.gap);
    }
    if (facts.mayNotDecide && !found.HasOther(*facts.mayNotDecide)) {
      return Refused(facts.document + " няма кой да одобри на ниво " + std::to_string(level.level) +
                     ": на него решават само създателят и заявителят, а собствен документ не се "
                     "одобрява. Въведете заместник в „Заместници“.");
    }
    rows.push_back({level.level, level.approver, ApprovalWaiting, std::nullopt});
  }
  return rows;
}

}  // namespace orvane::server
