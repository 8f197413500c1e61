#include "server/approval/decision.h"

#include <algorithm>

namespace orvane::server {
namespace {

Failure WentOn(const std::string& sentence) {
  return {FailureKind::Conflict, sentence};
}

std::string LevelName(const DecisionFacts& facts, int level) {
  return facts.document + ", ниво " + std::to_string(level);
}

const ApprovalRow* RowOf(std::span<const ApprovalRow> rows, int level) {
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [&](const ApprovalRow& row) { return row.level == level; });
  return found == rows.end() ? nullptr : &*found;
}

std::string_view WordFor(int approvalStatus) {
  if (approvalStatus == ApprovalRejected) return "отхвърлено";
  return IsGiven(approvalStatus) ? "одобрено" : "чака решение";
}

/// The document is not what the asker saw: sent anew, corrected, or past decisions.
std::optional<Failure> WhyOutdated(const DecisionFacts& facts, const DecisionAsked& asked) {
  if (facts.sending != asked.sending && !facts.rows.empty()) {
    return WentOn(facts.document + " междувременно е " + std::string(facts.sent) +
                  " отново за одобрение от " + facts.sentFrom + " на " + facts.sentOn +
                  ". Прегледайте " + std::string(facts.it) + " отново.");
  }
  if (!facts.decidable.Has(facts.status) || facts.rows.empty()) {
    return WentOn(facts.document + " не приема решения: статусът вече е „" +
                  std::string(facts.statusName) + "“.");
  }
  return std::nullopt;
}

std::string Names(const FoundApprovers& found) {
  return found.approvers.empty() ? found.gap : "Решава: " + found.Names() + ".";
}

/// Taking back, or exchanging, one's own decision; the latter needs present authority.
std::optional<Failure> WhyNotTakenBack(const DecisionFacts& facts, const ApprovalRow& row, int to) {
  if (row.decidedBy != facts.employee) {
    return Refused(LevelName(facts, row.level) + " е " + std::string(WordFor(row.status)) +
                   " от друг служител. Само той може да оттегли решението си.");
  }
  if (!MayTakeBack(facts.rows, row, *facts.employee)) {
    return Refused(LevelName(facts, row.level) +
                   ": по-високо ниво вече е решило. Първо то трябва да оттегли решението си.");
  }
  const FoundApprovers& found = facts.approvers.Of(row.approver);
  if (to != ApprovalWaiting && !found.Has(*facts.employee)) {
    return Refused(
        LevelName(facts, row.level) +
        ": вече не сте одобряващ на това ниво и можете само да оттеглите решението си. " +
        Names(found));
  }
  return std::nullopt;
}

std::optional<Failure> WhyNotTheTurn(const DecisionFacts& facts, const ApprovalRow& row) {
  const ApprovalRow* turn = TurnOf(facts.rows);
  if (turn != &row) {
    const std::string first = turn ? "първо решава ниво " + std::to_string(turn->level)
                                   : std::string("по-ниско ниво го е отхвърлило");
    return Refused(LevelName(facts, row.level) + " още не е на ред: " + first + ".");
  }
  const FoundApprovers& found = facts.approvers.Of(row.approver);
  if (!found.Has(*facts.employee)) {
    return Refused(LevelName(facts, row.level) + ": вие не сте одобряващ на това ниво. " +
                   Names(found));
  }
  return std::nullopt;
}

/// The head whom the employee stands in for; nothing when he decides in his own right.
std::optional<std::int64_t> InPlaceOf(const FoundApprovers& found, std::int64_t employee) {
  for (const Approver& approver : found.approvers) {
    if (approver.employee == employee) return approver.deputy ? found.head : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

Answer<DecidedRow> JudgeDecision(const DecisionFacts& facts, const DecisionAsked& asked) {
  if (!facts.employee) {
    return Refused(
        "Вашият потребител няма точно един запис в таблица „Служители“ и не може да "
        "взема решения по документи.");
  }
  if (facts.forbiddenOwn && asked.status != ApprovalWaiting) {
    return Refused(facts.document + " е ваш документ и решението по него е на друг одобряващ.");
  }
  if (auto outdated = WhyOutdated(facts, asked)) return *outdated;
  const ApprovalRow* row = RowOf(facts.rows, asked.level);
  if (!row) return WentOn(LevelName(facts, asked.level) + " вече не съществува.");
  if (row->status == asked.status) {
    return WentOn(LevelName(facts, asked.level) + " вече е " + std::string(WordFor(row->status)) +
                  ".");
  }
  const bool waiting = row->status == ApprovalWaiting;
  const auto refusal =
      waiting ? WhyNotTheTurn(facts, *row) : WhyNotTakenBack(facts, *row, asked.status);
  if (refusal) return *refusal;

  DecidedRow decided;
  decided.level = asked.level;
  decided.status = asked.status;
  decided.exchanges = !waiting;
  if (asked.status == ApprovalWaiting) {
    decided.withdrawnBy = facts.employee;
  } else {
    decided.decidedBy = facts.employee;
    decided.onBehalfOf = InPlaceOf(facts.approvers.Of(row->approver), *facts.employee);
  }
  return decided;
}

}  // namespace orvane::server
