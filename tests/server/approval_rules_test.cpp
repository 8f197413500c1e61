// The pure rules of approval, tried on every small world and compared with the rules said anew.

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "server/approval/approval_rows.h"
#include "server/approval/decision.h"
#include "server/approval/levels.h"

namespace orvane::server {
namespace {

/// Calls `check` with every combination of statuses of up to `most` levels; each level is decided
/// by its own employee: 101 at level 1 and so on.
void ForEachWorld(int most, const std::function<void(const std::vector<ApprovalRow>&)>& check) {
  for (int count = 1; count <= most; ++count) {
    int combinations = 1;
    for (int i = 0; i < count; ++i)
      combinations *= 4;
    for (int world = 0; world < combinations; ++world) {
      std::vector<ApprovalRow> rows;
      int rest = world;
      for (int level = 1; level <= count; ++level, rest /= 4) {
        const int status = 1 + rest % 4;
        rows.push_back({level, ApproverKind::CostCenterHead, status, std::nullopt});
        if (status != ApprovalWaiting) rows.back().decidedBy = 100 + level;
      }
      check(rows);
    }
  }
}

std::string Show(const std::vector<ApprovalRow>& rows) {
  std::string text;
  for (const ApprovalRow& row : rows)
    text += std::to_string(row.status);
  return text;
}

TEST(ApprovalRules, TheStatusFollowsFromTheRowsInEverySmallWorld) {
  ForEachWorld(4, [](const std::vector<ApprovalRow>& rows) {
    const std::string shown = Show(rows);
    const bool rejected = shown.find('1') != std::string::npos;
    const bool waiting = shown.find('2') != std::string::npos;
    const bool given = shown.find_first_of("34") != std::string::npos;
    const int expected = rejected ? 1 : !waiting ? 5 : given ? 4 : 3;
    EXPECT_EQ(StatusOf(rows), expected) << shown;
  });
}

TEST(ApprovalRules, TheTurnIsAtTheLowestWaitingLevelUnlessALowerOneIsRejected) {
  ForEachWorld(4, [](const std::vector<ApprovalRow>& rows) {
    const std::string shown = Show(rows);
    const std::size_t open = shown.find_first_not_of("34");
    const int expected =
        open == std::string::npos || shown[open] == '1' ? 0 : static_cast<int>(open) + 1;
    const ApprovalRow* turn = TurnOf(rows);
    EXPECT_EQ(turn ? turn->level : 0, expected) << shown;
  });
}

TEST(ApprovalRules, ADecisionIsTakenBackByItsOwnerWhileNoHigherLevelDecided) {
  ForEachWorld(3, [](const std::vector<ApprovalRow>& rows) {
    const std::string shown = Show(rows);
    for (const ApprovalRow& row : rows) {
      const auto behind = shown.substr(static_cast<std::size_t>(row.level));
      const bool last = behind.find_first_not_of('2') == std::string::npos;
      for (int employee = 101; employee <= 103; ++employee) {
        const bool own = row.status != ApprovalWaiting && employee == 100 + row.level;
        EXPECT_EQ(MayTakeBack(rows, row, employee), own && last) << shown << " " << employee;
      }
    }
  });
}

TEST(ApprovalRules, EachRoleIsGivenOnceAndNoneWhereNothingMayBeDecided) {
  ForEachWorld(3, [](const std::vector<ApprovalRow>& rows) {
    for (int status = 1; status <= 7; ++status) {
      for (int flags = 0; flags < 8; ++flags) {
        RoleFacts facts;
        facts.status = status;
        facts.rows = rows;
        facts.closed = (flags & 1) != 0;
        facts.decidesTurn = (flags & 2) != 0;
        facts.isChief = (flags & 4) != 0;
        facts.employee = 102;
        std::string expected;
        const bool decidable = !facts.closed && status != 2 && status < 6;
        if (decidable && rows.size() >= 2 && MayTakeBack(rows, rows[1], 102)) {
          expected += "1@2=" + std::to_string(rows[1].status) + " ";
        }
        const ApprovalRow* turn = TurnOf(rows);
        if (decidable && turn && facts.decidesTurn) {
          expected += "2@" + std::to_string(turn->level) + "=2 ";
        }
        if (!facts.closed && facts.isChief) expected += "3@0=0 ";
        std::string shown;
        for (const RoleRow& role : RolesOf(facts)) {
          shown += std::to_string(static_cast<int>(role.role)) + "@" + std::to_string(role.level) +
                   "=" + std::to_string(role.status) + " ";
        }
        EXPECT_EQ(shown, expected) << Show(rows) << " status " << status << " flags " << flags;
        facts.employee.reset();
        EXPECT_TRUE(RolesOf(facts).empty());
      }
    }
  });
}

TEST(ApprovalRules, OfSeveralOwnLevelsTheHighestIsTakenBack) {
  const ApprovalRow rows[] = {{1, ApproverKind::CostCenterHead, ApprovalGiven, 101},
                              {2, ApproverKind::SectionHead, ApprovalGiven, 101},
                              {3, ApproverKind::DepartmentHead, ApprovalWaiting, {}}};
  RoleFacts facts;
  facts.status = PartlyApproved;
  facts.rows = rows;
  facts.employee = 101;
  EXPECT_EQ(RolesOf(facts), (std::vector<RoleRow>{{ApprovalRole::HasDecided, 2, 3}}));
}

// --- levels --------------------------------------------------------------------------------------

Decimal Sum(const std::string& text) {
  return *Decimal::Parse(text)->AtScale(4);
}

/// Register rows "level from to approver", one a line.
std::vector<LevelRow> Register(const std::string& text) {
  std::vector<LevelRow> rows;
  std::stringstream stream(text);
  std::string level;
  std::string from;
  std::string to;
  int approver = 0;
  while (stream >> level >> from >> to >> approver)
    rows.push_back({std::stoi(level), Sum(from), Sum(to), static_cast<ApproverKind>(approver)});
  return rows;
}

std::string Matched(const std::vector<LevelRow>& rows, const std::string& sum) {
  std::string text;
  for (const LevelRow& row : MatchLevels(rows, Sum(sum))) {
    text += (text.empty() ? "" : " ") + std::to_string(row.level) + ":" +
            std::to_string(static_cast<int>(row.approver));
  }
  return text;
}

TEST(ApprovalRules, LevelsMatchWithBothBoundsAndTheHighestLowerOneOfSeveral) {
  const std::vector<LevelRow> rows = Register(R"(
    1  0        1000     1
    1  1000     5000     2
    2  500,01   5000     2
    3  5000     5000     3
    3  2000     9000     1
  )");
  const struct {
    const char* sum;
    const char* matched;
  } cases[] = {
      {"0", "1:1"},
      {"500", "1:1"},
      {"500,01", "1:1 2:2"},
      {"999,99", "1:1 2:2"},
      {"1000", "1:2 2:2"},
      {"1000,01", "1:2 2:2"},
      {"2000", "1:2 2:2 3:1"},
      {"4999,99", "1:2 2:2 3:1"},
      {"5000", "1:2 2:2 3:3"},
      {"5000,01", "3:1"},
      {"9000", "3:1"},
      {"9000,01", ""},
  };
  for (const auto& row : cases)
    EXPECT_EQ(Matched(rows, row.sum), row.matched) << row.sum;
}

ApproversOfCostCenter SomeApprovers() {
  ApproversOfCostCenter all;
  all.kinds[0].approvers = {{101, "Колев", false}, {104, "Заместник", true}};
  all.kinds[0].head = 101;
  all.kinds[1].approvers = {{102, "Петрова", false}};
  all.kinds[1].head = 102;
  all.kinds[2].gap = "Няма началник.";
  return all;
}

TEST(ApprovalRules, NothingIsApprovedBecauseARangeHasAHole) {
  const ApproversOfCostCenter approvers = SomeApprovers();
  const auto plan = [&](DocumentKind kind, const std::vector<LevelRow>& levels,
                        const std::string& sum) -> std::string {
    const auto rows = PlanApproval({"Искане 1", kind, 4, Sum(sum), levels, approvers});
    if (!rows) return rows.GetFailure().message;
    std::string text = "rows";
    for (const ApprovalRow& row : *rows)
      text += " " + std::to_string(row.level);
    return text;
  };
  const std::vector<LevelRow> none;
  const std::vector<LevelRow> two = Register("1 0 100 1  2 50 100 2");
  EXPECT_EQ(plan(DocumentKind::PurchaseRequest, none, "10"), "rows") << "by service";
  EXPECT_EQ(
      plan(DocumentKind::SupplierOrder, none, "0"),
      "!!Err_Искане 1 не може да бъде изпратена: няма „Нива на одобрение“ за вид регистър 1 и "
      "вид покупка 4. Попълнете ги в регистъра.");
  EXPECT_EQ(plan(DocumentKind::PurchaseRequest, two, "10"), "rows 1");
  EXPECT_EQ(plan(DocumentKind::PurchaseRequest, two, "50"), "rows 1 2");
  EXPECT_EQ(
      plan(DocumentKind::PurchaseRequest, two, "100,01"),
      "!!Err_Искане 1: сумата 100,0100 не попада в никой обхват на „Нива на одобрение“ за вид "
      "регистър 2 и вид покупка 4. Допълнете обхватите в регистъра.");
  EXPECT_EQ(plan(DocumentKind::PurchaseRequest, Register("1 0 100 3"), "10"),
            "!!Err_Искане 1 няма кой да одобри на ниво 1. Няма началник.");
  const std::vector<LevelRow> levels = Register("1 0 100 1 2 0 100 2");
  const auto planned = [&](const DocumentOwners& owners) {
    return PlanApproval(
        {"Искане 1", DocumentKind::PurchaseRequest, 4, Sum("10"), levels, approvers, &owners});
  };
  EXPECT_TRUE(planned({"author", 101})) << "a deputy is left at level 1";
  const auto alone = planned({"author", 102});
  ASSERT_FALSE(alone);
  EXPECT_TRUE(alone.GetFailure().message.starts_with(
      "!!Err_Искане 1 няма кой да одобри на ниво 2: на него решават само"));
}

// --- decisions -----------------------------------------------------------------------------------

TEST(ApprovalRules, DecisionsAreJudgedInEverySmallWorld) {
  const ApproversOfCostCenter approvers = SomeApprovers();
  ForEachWorld(2, [&](std::vector<ApprovalRow> rows) {
    if (rows.size() > 1) rows[1].approver = ApproverKind::SectionHead;
    for (int level = 1; level <= static_cast<int>(rows.size()); ++level) {
      for (const std::int64_t employee : {101, 102, 103, 104}) {
        for (const int wanted : {ApprovalRejected, ApprovalWaiting, ApprovalGiven}) {
          const ApprovalRow& row = rows[static_cast<std::size_t>(level - 1)];
          const auto judged =
              JudgeDecision({"Искане 1", "За одобрение", StatusOf(rows), kDecidableStatuses, 1,
                             "author", "днес", rows, approvers, employee},
                            {level, 1, wanted});
          const ApprovalRow* turn = TurnOf(rows);
          const bool approver = level == 1 ? employee == 101 || employee == 104 : employee == 102;
          const bool may =
              row.status == wanted ? false
              : row.status == ApprovalWaiting
                  ? turn && turn->level == level && approver
                  : MayTakeBack(rows, row, employee) && (approver || wanted == ApprovalWaiting);
          EXPECT_EQ(judged.Ok(), may)
              << Show(rows) << " level " << level << " by " << employee << " to " << wanted;
          if (!judged) continue;
          EXPECT_EQ(judged->decidedBy.has_value(), wanted != ApprovalWaiting);
          EXPECT_EQ(judged->withdrawnBy.has_value(), wanted == ApprovalWaiting);
          const bool inPlace = employee == 104 && wanted != ApprovalWaiting;
          EXPECT_EQ(judged->onBehalfOf, inPlace ? std::optional<std::int64_t>(101) : std::nullopt);
        }
      }
    }
  });
}

TEST(ApprovalRules, WhoeverHeadsNothingAnyMoreTakesBackButDoesNotExchange) {
  const ApproversOfCostCenter approvers = SomeApprovers();
  const ApprovalRow rows[] = {{1, ApproverKind::CostCenterHead, ApprovalGiven, 103}};
  const auto judged = [&](int wanted) {
    return JudgeDecision({"Искане 1", "Одобрен", Approved, kDecidableStatuses, 1, "author", "днес",
                          rows, approvers, 103},
                         {1, 1, wanted});
  };
  EXPECT_TRUE(judged(ApprovalWaiting));
  const auto exchanged = judged(ApprovalRejected);
  ASSERT_FALSE(exchanged);
  EXPECT_EQ(exchanged.GetFailure().message,
            "!!Err_Искане 1, ниво 1: вече не сте одобряващ на това ниво и можете само да оттеглите "
            "решението си. Решава: Колев, Заместник.");
}

TEST(ApprovalRules, ApproversAreNamedWholeOrNotAtAll) {
  const FoundApprovers found{
      {{100, "Христо Колев", false, "kolev"}, {101, "Лиляна Добрева", true, "dobreva"}}, 100, {}};
  const DocumentOwners kolev{"kolev", 0};
  const struct {
    const DocumentOwners* mayNotDecide;
    std::size_t most;
    std::string_view names;
  } rows[] = {
      {nullptr, 250, "Христо Колев, Лиляна Добрева"},
      {nullptr, 29, "Христо Колев, Лиляна Добрева"},
      {nullptr, 28, "Христо Колев…"},
      {&kolev, 250, "Лиляна Добрева"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(found.Names(row.mayNotDecide, row.most), row.names);
}

}  // namespace
}  // namespace orvane::server
