// Requests in approval on the server: levels in order, deputies, what is missing, and two people at
// once.

#include <functional>
#include <sstream>
#include <thread>

#include "server/check/check.h"
#include "server/request_world.h"

namespace orvane::server {
namespace {

constexpr int kGiven = ApprovalGiven;
constexpr int kRejectedRow = ApprovalRejected;
constexpr int kWaiting = ApprovalWaiting;

/// At whom each level of a loaded request stands: "|Служител 102|".
std::string WaitsFor(const VariantArray& told) {
  const DataPacket& levels = *told[6].AsPacket();
  std::string text;
  for (std::size_t row = 0; row < levels.rowCount; ++row)
    text += (row == 0 ? "" : "|") + levels.At(row, "WaitsFor").ToText();
  return text;
}

class Approval : public RequestCase {
 protected:
  /// Three levels for kind 4: cost centre, section, department.
  void ThreeLevels() {
    world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
    world.AddLevel(4, 2, 0, 1000, ApproverKind::SectionHead);
    world.AddLevel(4, 3, 100, 1000, ApproverKind::DepartmentHead);
  }

  /// Plays lines of "by does level rows status refusal": what somebody tries at a level, the rows
  /// afterwards, and a piece of the refusal ("-" when it goes well).
  void Play(std::int64_t id, const std::string& table) {
    std::stringstream lines(table);
    std::string line;
    while (std::getline(lines, line)) {
      std::stringstream cells(line);
      std::string by;
      std::string does;
      int level = 0;
      std::string rows;
      int status = 0;
      std::string refusal;
      if (!(cells >> by >> does >> level >> rows >> status)) continue;
      std::getline(cells >> std::ws, refusal);
      const int to = does == "approve" ? kGiven : does == "reject" ? kRejectedRow : kWaiting;
      const std::string answer = world.Decide(by, id, level, StatusAt(id, level), to);
      if (refusal == "-") {
        EXPECT_EQ(answer, "ok") << line;
      } else {
        EXPECT_NE(answer.find(refusal), std::string::npos) << line << "\n" << answer;
        EXPECT_TRUE(answer.starts_with("!!Err_")) << answer;
      }
      std::string shown;
      for (int at = 1; at <= 3; ++at)
        shown += std::to_string(StatusAt(id, at));
      EXPECT_EQ(shown, rows) << line;
      EXPECT_EQ(world.StatusOf(id), status) << line;
    }
  }

  int StatusAt(std::int64_t id, int level) {
    return static_cast<int>(
        world.Server()
            .Value("select Status from PurchaseOrderAdm where PurchaseOrderId = ?1 and "
                   "ConfirmationLevel = ?2",
                   ValueKind::Byte, {id, level})
            .AsInt()
            .value_or(0));
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, Approval, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Approval, LevelsAreDecidedInOrder) {
  ThreeLevels();
  const std::int64_t id = world.SentRequest();
  EXPECT_EQ(world.StatusOf(id), ForApproval);
  Play(id, R"(
    petrova  approve  2  222 3 още не е на ред
    petrova  approve  1  222 3 не сте одобряващ
    author   approve  1  222 3 не сте одобряващ
    kolev    approve  1  322 4 -
    kolev    withdraw 1  222 3 -
    kolev    reject   1  122 1 -
    petrova  approve  2  122 1 по-ниско ниво го е отхвърлило
    deputy   withdraw 1  122 1 от друг служител
    kolev    approve  1  322 4 -
    dimitrov approve  3  322 4 първо решава ниво 2
    petrova  approve  2  332 4 -
    kolev    withdraw 1  332 4 по-високо ниво
    petrova  reject   2  312 1 -
    petrova  approve  2  332 4 -
    dimitrov approve  3  333 5 -
    petrova  withdraw 2  333 5 по-високо ниво
    dimitrov withdraw 3  332 4 -
    dimitrov reject   3  331 1 -
    dimitrov approve  3  333 5 -
  )");
  EXPECT_EQ(world.Column("select ConfirmedFrom from PurchaseOrderAdm order by ConfirmationLevel"),
            "101 102 103");
  EXPECT_EQ(
      world.Count("History where TableName = 'PurchaseOrderAdm' and ColumnName = 'Status' and "
                  "Kind = 'U'"),
      11);
}

TEST_P(Approval, ADecisionSaysWhyUntilItIsTakenBack) {
  ThreeLevels();
  const std::int64_t id = world.SentRequest();
  std::string longest;
  for (int i = 0; i < 200; ++i)
    longest += "я";
  const struct {
    int from;
    int to;
    std::optional<std::string> note;
    std::string answer;
    std::string kept;
  } steps[] = {
      {kWaiting, kRejectedRow, " Скъпо ", "ok", "Скъпо"},
      {kRejectedRow, kGiven, std::nullopt, "ok", ""},  // it was the rejection's
      {kGiven, kRejectedRow, longest, "ok", longest},
      {kRejectedRow, kWaiting, std::nullopt, "ok", ""},
      {kWaiting, kGiven, longest + "я", "Поле „Причина“: Текстът е по-дълъг от 200 знака.", ""},
      {kWaiting, kGiven, "а\nб", "!!Err_Поле „Причина“: Текстът съдържа недопустими знаци.", ""},
      {kWaiting, kGiven, "  ", "ok", ""},
  };
  std::string before;
  for (const auto& step : steps) {
    Change change = UpdateOf({{"PurchaseOrderId", id},
                              {"PurchaseOrderVer", 1},
                              {"ConfirmationLevel", 1},
                              {"SendingNumber", 1},
                              {"Status", step.from}},
                             {{"Status", step.to}});
    if (step.note) {
      change.before.push_back({"ApprovalNote", before.empty() ? Variant() : Variant(before)});
      change.after.push_back({"ApprovalNote", *step.note});
    }
    EXPECT_EQ(world.Apply("kolev", "dspPurchaseOrderAdm", change), step.answer);
    before = world.Column(
        "select coalesce(ApprovalNote, '') from PurchaseOrderAdm where ConfirmationLevel = 1",
        ValueKind::String);
    EXPECT_EQ(before, step.kept) << step.answer;
  }
  EXPECT_EQ(world.Count("History where ColumnName = 'ApprovalNote' and Kind = 'U'"), 4);
}

TEST_P(Approval, ALevelThatWaitsNamesWhoCanDecideItToday) {
  ThreeLevels();
  const std::int64_t id = world.SentRequest();
  const auto waits = [&](int language = 1) {
    return WaitsFor(world.Load("author", Nav::ByKey, id, {}, 0, language));
  };
  EXPECT_EQ(waits(), "Служител 101, Служител 104||");
  EXPECT_EQ(waits(2), "Employee 101, Employee 104||");
  world.RunSql("update StructDepDates set ToDate = ?1", {*Date::FromYmd(2026, 3, 4)});
  EXPECT_EQ(waits(), "Служител 101||");
  ASSERT_EQ(world.Decide("kolev", id, 1, kWaiting, kGiven), "ok");
  EXPECT_EQ(waits(), "|Служител 102|");
  ASSERT_EQ(world.Decide("petrova", id, 2, kWaiting, kRejectedRow), "ok");
  EXPECT_EQ(waits(), "||");
  ASSERT_EQ(world.Decide("petrova", id, 2, kRejectedRow, kWaiting), "ok");
  world.RunSql("update WSysUsers set Blocked = 1 where ShortName = 'petrova'");
  EXPECT_EQ(waits(), "|никой|");
  EXPECT_EQ(waits(2), "|nobody|");
  world.RunSql("update PurchaseOrder set AnnulOn = ?1", {Stamp{1}});
  EXPECT_EQ(waits(), "||");
}

TEST_P(Approval, ADeputyDecidesBesideTheHeadAndTheRecordNamesBoth) {
  ThreeLevels();
  const std::int64_t id = world.SentRequest();
  EXPECT_EQ(world.Roles("deputy", id), "2@1=2 3@0=0");
  EXPECT_EQ(world.Decide("deputy", id, 1, kWaiting, kGiven), "ok");
  EXPECT_EQ(world.Column("select ConfirmedFrom from PurchaseOrderAdm where ConfirmationLevel = 1"),
            "104");
  EXPECT_EQ(world.Column("select OnBehalfOf from PurchaseOrderAdm where ConfirmationLevel = 1"),
            "101");
  const VariantArray told = world.Load("author", Nav::ByKey, id);
  EXPECT_EQ(told[6].AsPacket()->At(0, "EmpName").ToText(), "Служител 104 (за Служител 101)");
  EXPECT_EQ(world.Roles("deputy", id), "1@1=3 3@0=0");
  EXPECT_EQ(world.Roles("kolev", id), "3@0=0") << "the decision is the deputy's";
  world.RunSql("update StructDepDates set ToDate = ?1", {*Date::FromYmd(2026, 3, 4)});
  EXPECT_EQ(world.Roles("deputy", id), "1@1=3") << "no longer stands in, yet decided";
  EXPECT_EQ(world.Decide("deputy", id, 1, kGiven, kWaiting), "ok");
  EXPECT_NE(world.Decide("deputy", id, 1, kWaiting, kGiven).find("не сте одобряващ"),
            std::string::npos);
}

TEST_P(Approval, WhoeverIsMissingStopsTheSendingAndIsNamed) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  world.AddLevel(4, 2, 0, 1000, ApproverKind::SectionHead);
  world.AddLevel(4, 3, 0, 1000, ApproverKind::DepartmentHead);
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddRow(id, 1, 20, 8000, "10"), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  const struct {
    const char* breaks;
    const char* mends;
    const char* names;
  } cases[] = {
      {"update CostCenters set Chief = null where CostCenter = 1001",
       "update CostCenters set Chief = 101 where CostCenter = 1001",
       "на ниво 1. В „Центрове за разходи“ няма началник на център за разход 1001 „Цех“."},
      {"update WSysUsers set Blocked = 1 where ShortName = 'kolev'",
       "update WSysUsers set Blocked = 0 where ShortName = 'kolev'",
       "на ниво 1. Началникът на център за разход 1001 „Цех“ няма точно един запис"},
      {"update Employees set Login = 'petrova' where Employee = 105",
       "update Employees set Login = 'stranger' where Employee = 105",
       "на ниво 2. Началникът на отдел 20 „Отдел“ няма точно един запис"},
      {"update Structure set Section = null", "update Structure set Section = 20",
       "на ниво 2. В „Организационна структура“ не е посочен отдел за център за разход 1001"},
      {"update Sections set Chief = null", "update Sections set Chief = 102",
       "на ниво 2. В „Отдели“ няма началник на отдел 20 „Отдел“."},
      {"update Structure set Department = null", "update Structure set Department = 3",
       "на ниво 3. В „Организационна структура“ не е посочена дирекция за"},
      {"update Department set Chief = 'boss'", "update Department set Chief = 'dimitrov'",
       "на ниво 3. Началникът на дирекция 3 „Дирекция“, потребител „boss“, няма запис"},
      {"delete from Structure",
       "insert into Structure (CostCenter, Department, Section) values "
       "(1001, 3, 20)",
       "на ниво 2. В „Организационна структура“ няма ред за център за разход 1001 „Цех“."},
  };
  world.RunSql("update StructDepDates set ToDate = ?1", {*Date::FromYmd(2026, 3, 4)});
  for (const auto& row : cases) {
    world.RunSql(row.breaks);
    const std::string answer = world.Move("author", id, Entered, ForApproval);
    EXPECT_NE(answer.find(row.names), std::string::npos) << row.breaks << "\n" << answer;
    EXPECT_EQ(world.StatusOf(id), Entered);
    world.RunSql(row.mends);
  }
  EXPECT_EQ(world.Rows(id), "");
  EXPECT_EQ(world.Move("author", id, Entered, ForApproval), "ok");
  EXPECT_EQ(world.Rows(id), "1:2 2:2 3:2");
}

TEST_P(Approval, ADeputyAloneIsEnough) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  world.RunSql("update CostCenters set Chief = null where CostCenter = 1001");
  const std::int64_t id = world.SentRequest();
  EXPECT_EQ(world.Decide("deputy", id, 1, kWaiting, kGiven), "ok");
  EXPECT_EQ(world.StatusOf(id), Approved);
}

TEST_P(Approval, WithoutLevelsAtAllTheServiceApprovesAndHistoryNamesIt) {
  const std::int64_t id = world.SentRequest();
  EXPECT_EQ(world.StatusOf(id), Approved);
  EXPECT_EQ(world.Rows(id), "");
  EXPECT_EQ(world.Column("select NewValue from History where TableName = 'PurchaseOrder' and "
                         "ColumnName = 'ServiceEmployee'",
                         ValueKind::String),
            "103");
  EXPECT_EQ(world.Column("select NewValue from History where TableName = 'PurchaseOrder' and "
                         "ColumnName = 'Status' order by Id",
                         ValueKind::String),
            "2 3 5");
}

TEST_P(Approval, AHoleInTheRangesApprovesNothing) {
  world.AddLevel(4, 1, 0, 99, ApproverKind::CostCenterHead);
  world.AddLevel(4, 1, 101, 200, ApproverKind::CostCenterHead);
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddRow(id, 1, 20, 8000, "100"), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  EXPECT_NE(world.Move("author", id, Entered, ForApproval).find("не попада в никой обхват"),
            std::string::npos);
  EXPECT_EQ(world.StatusOf(id), Entered);
}

TEST_P(Approval, TheSumIsTakenAtTheBanksRateOnTheDocumentsDay) {
  world.AddLevel(4, 1, 0, 195, ApproverKind::CostCenterHead);
  world.AddLevel(4, 2, 196, 1000, ApproverKind::SectionHead);
  // 100 euro at the bank's 1.95583 are 195.58: between the levels; at the request's own rate 2:
  // 200.
  const NamedValues euro = {{"KindCurrency", 2},
                            {"RateOfExchange", *Decimal::Parse("2")->AtScale(7)}};
  const auto send = [&](NamedValues changed) {
    const std::int64_t id = world.NewRequest(4, std::move(changed));
    EXPECT_EQ(world.AddRow(id, 1, 20, 8000, "100"), "ok");
    EXPECT_EQ(world.AddDate(id), "ok");
    const std::string answer = world.Move("author", id, Entered, ForApproval);
    return answer == "ok" ? world.Rows(id) : answer.substr(answer.find("сумата"), 19);
  };
  EXPECT_EQ(send(euro), "сумата 195,58");
  NamedValues early = euro;
  early.push_back({"DocumentDate", *Date::FromYmd(2026, 3, 1)});
  EXPECT_EQ(send(early), "2:2") << "the bank has no rate yet";
}

TEST_P(Approval, ADecisionOnAFormerSendingSaysWhoSentAnew) {
  ThreeLevels();
  const std::int64_t id = world.SentRequest();
  ASSERT_EQ(world.Move("author", id, ForApproval, Entered), "ok");
  EXPECT_EQ(world.Rows(id), "");
  EXPECT_EQ(world.Decide("kolev", id, 1, kWaiting, kGiven),
            "Искане за покупка 1, версия 1 не приема решения: статусът вече е „Въведен“.");
  ASSERT_EQ(world.Move("author", id, Entered, ForApproval), "ok");
  const std::string answer = world.Decide("kolev", id, 1, kWaiting, kGiven, 1);
  EXPECT_NE(answer.find("изпратено отново за одобрение от author на 05.03.2026 09:0"),
            std::string::npos)
      << answer;
  EXPECT_EQ(world.Decide("kolev", id, 1, kWaiting, kGiven, 2), "ok");
  EXPECT_EQ(world.Count("History where TableName = 'PurchaseOrderAdm' and Kind = 'D'"), 36)
      << "three rows of twelve columns";
}

TEST_P(Approval, RolesFollowTheDocument) {
  ThreeLevels();
  const std::int64_t id = world.SentRequest();
  const auto roles = [&] {
    std::string text;
    for (const char* login : {"author", "kolev", "petrova", "dimitrov", "boss"})
      text += "|" + world.Roles(login, id);
    return text;
  };
  EXPECT_EQ(roles(), "||2@1=2 3@0=0|||");
  ASSERT_EQ(world.Decide("kolev", id, 1, kWaiting, kGiven), "ok");
  EXPECT_EQ(roles(), "||1@1=3 3@0=0|2@2=2||");
  ASSERT_EQ(world.Decide("petrova", id, 2, kWaiting, kRejectedRow), "ok");
  EXPECT_EQ(roles(), "||3@0=0|1@2=1||");
  ASSERT_EQ(world.Decide("petrova", id, 2, kRejectedRow, kGiven), "ok");
  ASSERT_EQ(world.Decide("dimitrov", id, 3, kWaiting, kGiven), "ok");
  EXPECT_EQ(roles(), "||3@0=0||1@3=3|");
  ASSERT_EQ(world.Move("kolev", id, Approved, Completed), "ok");
  EXPECT_EQ(roles(), "||3@0=0|||") << "the chief may open it again";
  EXPECT_NE(world.Decide("dimitrov", id, 3, kGiven, kWaiting).find("„Приключен“"),
            std::string::npos);
}

TEST_P(Approval, AnApprovalOnWhichADeliveryStandsIsNotTakenBack) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  const std::int64_t id = world.SentRequest();
  ASSERT_EQ(world.Decide("kolev", id, 1, kWaiting, kGiven), "ok");
  world.RunSql(
      "insert into Deliveries (IdNumber, DeliveryDate, PODeliveryDate, PurchaseOrderId,"
      " PurchaseOrderVer, KindSupply, Supplier, Status, CreatedFrom, CreatedOn)"
      " values (9, ?1, ?1, ?2, 1, 4, 7, 2, 'author', ?3)",
      {*Date::FromYmd(2026, 3, 5), id, Stamp{1}});
  for (const int to : {kWaiting, kRejectedRow}) {
    EXPECT_EQ(
        world.Decide("kolev", id, 1, kGiven, to),
        "!!Err_По Искане за покупка 1, версия 1 има доставка 9. Първо анулирайте доставката.");
  }
  EXPECT_EQ(world.Rows(id), "1:3");
  world.RunSql("update Deliveries set AnnulOn = ?1", {Stamp{2}});
  EXPECT_EQ(world.Decide("kolev", id, 1, kGiven, kWaiting), "ok");
  EXPECT_EQ(world.StatusOf(id), ForApproval);
}

TEST_P(Approval, OnlyDecisionsChangeApprovalRows) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  const std::int64_t id = world.SentRequest();
  const NamedValues key = {{"PurchaseOrderId", id},
                           {"PurchaseOrderVer", 1},
                           {"ConfirmationLevel", 1},
                           {"SendingNumber", 1}};
  const auto with = [&](const char* name, const Variant& value) {
    NamedValues values = key;
    values.push_back({name, value});
    return values;
  };
  const std::string only = "Редовете на одобрението се променят само с решение.";
  EXPECT_EQ(world.Apply("kolev", "dspPurchaseOrderAdm", DeleteOf(key)), only);
  EXPECT_EQ(world.Apply("kolev", "dspPurchaseOrderAdm", InsertOf(with("Status", 3))), only);
  EXPECT_EQ(world.Apply("kolev", "dspPurchaseOrderAdm",
                        UpdateOf(with("ConfirmedFrom", Variant()), {{"ConfirmedFrom", 101}})),
            only);
  EXPECT_EQ(
      world.Apply("kolev", "dspPurchaseOrderAdm", UpdateOf(with("Status", 2), {{"Status", 4}})),
      only)
      << "the service's status is nobody's to send";
  // Whoever and whenever the client says, the server knows better.
  NamedValues before = with("Status", 2);
  before.push_back({"ConfirmedFrom", Variant()});
  ASSERT_EQ(world.Apply("kolev", "dspPurchaseOrderAdm",
                        UpdateOf(before, {{"Status", 3}, {"ConfirmedFrom", 102}})),
            "ok");
  EXPECT_EQ(world.Column("select ConfirmedFrom from PurchaseOrderAdm"), "101");
  EXPECT_EQ(
      world.Decide("boss", id, 1, kGiven, kWaiting),
      "!!Err_Вашият потребител няма точно един запис в таблица „Служители“ и не може да взема "
      "решения по документи.");
}

TEST_P(Approval, OnesOwnDocumentIsDecidedUnlessTheConfigurationForbidsIt) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  world.RunSql("update CostCenters set Chief = 100 where CostCenter = 1001");
  const std::int64_t id = world.SentRequest();
  EXPECT_EQ(world.Roles("author", id), "2@1=2 3@0=0");
  ServerOptions strict;
  strict.sessions.passwordCost = PasswordCost::Lowest();
  strict.documents.mayApproveOwn = false;
  OrvaneServer other(world.Server().Base(), world.Server().Time(), strict);
  const NamedValues row = {{"PurchaseOrderId", id},
                           {"PurchaseOrderVer", 1},
                           {"ConfirmationLevel", 1},
                           {"SendingNumber", 1},
                           {"Status", 2}};
  const ApplyRequest decide{
      "TsmPurchaseOrder", "dspPurchaseOrderAdm", 0, {}, {UpdateOf(row, {{"Status", 3}})}};
  const Caller author = world.As("author").At(Point::PurchaseRequests);
  const auto refused = other.Apply(author, decide);
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->outcomes[0].failure->message,
            "!!Err_Искане за покупка 1, версия 1 е ваш документ и решението по него е на друг "
            "одобряващ.");
  const auto load = [&] {
    return other.Call(author,
                      {"TsmPurchaseOrder",
                       "Operations",
                       {"GetRec", 1, 0, 0, id, Variant(), "author", Variant(), true, false}});
  };
  const auto told = load();
  ASSERT_TRUE(told);
  EXPECT_EQ(WaitsFor(*told), "Служител 104");
  EXPECT_EQ((*told)[8].AsPacket()->rowCount, 1u) << "the chief's role alone";
  ASSERT_EQ(world.Move("author", id, ForApproval, Entered), "ok");
  const auto sending = [&] {
    const Change send =
        UpdateOf({{"POIdNumber", id}, {"POVersion", 1}, {"Status", 2}}, {{"Status", 3}});
    const auto sent = other.Apply(author, {"TsmPurchaseOrder", "dspPurchaseOrder", 0, {}, {send}});
    if (!sent) return sent.GetFailure().message;
    const auto& failure = sent->outcomes[0].failure;
    return failure ? failure->message : std::string("ok");
  };
  EXPECT_EQ(sending(), "ok") << "his deputy decides";
  ASSERT_EQ(world.Move("author", id, ForApproval, Entered), "ok");
  world.RunSql("delete from StructDepDates");
  const std::string alone = sending();
  EXPECT_NE(alone.find("а собствен документ не се одобрява"), std::string::npos) << alone;
  ASSERT_EQ(world.Move("author", id, Entered, ForApproval), "ok");
  EXPECT_EQ(WaitsFor(*load()), "никой");
  const auto stuck =
      CheckDatabase(world.Server().Base(), world.Server().Time().Now(), strict.documents);
  ASSERT_TRUE(stuck);
  EXPECT_EQ(*stuck, std::vector<std::string>{
                        "Искане за покупка 1 чака решение, което никой не може да вземе. Решават "
                        "само създателят и заявителят, а собствен документ не се одобрява."});
  EXPECT_EQ(world.Decide("author", id, 1, kWaiting, kGiven, 3), "ok");
}

/// Registers that changed between entering and sending; each as it was before the next.
TEST_P(Approval, SendingJudgesAgainWhatEnteringJudged) {
  world.AddLevel(3, 1, 0, 100000, ApproverKind::CostCenterHead);
  world.AddLevel(4, 1, 0, 100000, ApproverKind::CostCenterHead);
  world.RunSql(
      "insert into SuppliesContracts (IdNumber, ContractNumber, ContractDate, ShortDescription,"
      " FoldShortDescription, Supplier, KindContract, KindSupplyChoice, CreatedFrom, CreatedOn)"
      " values (40, 'Д', ?1, 'д', 'д', 7, 3, 1, 'boss', ?2)",
      {*Date::FromYmd(2026, 1, 1), Stamp{1}});
  const std::int64_t id = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(id, 1, 20, 3000), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  world.RunSql("update PurchaseOrder set ContractId = 40");
  const std::string name = "!!Err_Искане за покупка 1, версия 1";
  const struct {
    const char* breaks;
    const char* mends;
    const char* says;
  } cases[] = {
      {"update SuppliesContracts set FreezeDate = ContractDate",
       "update SuppliesContracts set FreezeDate = null",
       ": договор 40 не е действащ днес. Изберете друг договор."},
      {"delete from AdmissibleNotifiers where CostCenter = 1001",
       "insert into AdmissibleNotifiers (CostCenter, Notifier) values (1001, 100)",
       ": заявител с код 100 вече не е допустим за център за разход 1001 (виж „Допустими "
       "заявители“). Изберете друг център за разход."},
      {"update MaterialStocks set SuppForbiddenFrom = (select DocumentDate from PurchaseOrder)",
       "update MaterialStocks set SuppForbiddenFrom = null",
       ", ред 1: „20 Ламарина 2 мм“ не се купува към датата на документа. Изберете друг материал "
       "или изтрийте реда."},
      {"update BaseSupplyList set Price = null where SerialNumber = 20",
       "update BaseSupplyList set Price = (select max(Price) from BaseSupplyList)",
       ", ред 1: пореден номер 20 няма цена към датата на документа. Въведете цена в списъка за "
       "доставка и запишете реда отново."},
      {"update PurchaseOrderDet set Quantity = 0", "update PurchaseOrderDet set Quantity = 3000",
       ", ред 1: количеството е нула. Въведете количество или изтрийте реда."},
  };
  for (const auto& row : cases) {
    world.RunSql(row.breaks);
    EXPECT_EQ(world.Move("author", id, Entered, ForApproval), name + row.says);
    world.RunSql(row.mends);
  }
  EXPECT_EQ(world.Move("author", id, Entered, ForApproval), "ok");
  const std::int64_t typed = world.NewRequest(4);
  ASSERT_EQ(world.AddRow(typed, 1, 22, 0, "0"), "ok");
  ASSERT_EQ(world.AddDate(typed), "ok");
  EXPECT_EQ(world.Move("author", typed, Entered, ForApproval),
            "!!Err_Искане за покупка 2, версия 1, ред 1: няма нито количество, нито сума. Въведете "
            "ги или изтрийте реда.");
  world.RunSql("update PurchaseOrderDet set CurrSumWithoutVAT = 10000 where PurchaseOrderId = 2");
  EXPECT_EQ(world.Move("author", typed, Entered, ForApproval), "ok") << "a sum for the whole";
}

TEST_P(Approval, EditOnTheQueuesPointIsEnoughToDecide) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  const std::int64_t id = world.SentRequest();
  TestServer& server = world.Server();
  const auto grant = [&](Point point, int rights) {
    ASSERT_TRUE(server.Admin().Grant("kolev", static_cast<std::int32_t>(point), rights));
  };
  grant(Point::PurchaseRequests, 1);
  grant(Point::ApprovalQueue, 1);
  EXPECT_NE(world.Decide("kolev", id, 1, kWaiting, kGiven), "ok");
  EXPECT_NE(world.Decide("kolev", id, 1, kWaiting, kGiven, 1, Point::ApprovalQueue), "ok");
  grant(Point::ApprovalQueue, 3);
  EXPECT_EQ(world.Decide("kolev", id, 1, kWaiting, kGiven, 1, Point::ApprovalQueue), "ok");
}

// --- two people at once --------------------------------------------------------------------------

/// Runs both at the same time; their answers.
std::pair<std::string, std::string> AtOnce(const std::function<std::string()>& first,
                                           const std::function<std::string()>& second) {
  std::string one;
  std::string two;
  std::thread other([&] { two = second(); });
  one = first();
  other.join();
  return {one, two};
}

TEST_P(Approval, OfTwoApproversOfALevelOneDecides) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  world.As("kolev");
  world.As("deputy");
  for (int round = 0; round < 8; ++round) {
    const std::int64_t id = world.SentRequest();
    const auto [head, deputy] =
        AtOnce([&] { return world.Decide("kolev", id, 1, kWaiting, kGiven); },
               [&] { return world.Decide("deputy", id, 1, kWaiting, kRejectedRow); });
    EXPECT_NE(head == "ok", deputy == "ok") << head << "\n" << deputy;
    EXPECT_EQ(world.StatusOf(id), head == "ok" ? Approved : Rejected);
    const std::string& loser = head == "ok" ? deputy : head;
    EXPECT_NE(loser.find("от друг служител"), std::string::npos) << loser;
  }
}

TEST_P(Approval, ApprovalAgainstCorrectionEqualsOneBeforeTheOther) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  world.As("kolev");
  for (int round = 0; round < 8; ++round) {
    const std::int64_t id = world.SentRequest();
    const auto [approve, correct] =
        AtOnce([&] { return world.Decide("kolev", id, 1, kWaiting, kGiven); },
               [&] { return world.Move("author", id, ForApproval, Entered); });
    EXPECT_NE(approve == "ok", correct == "ok") << approve << "\n" << correct;
    if (approve == "ok") {
      EXPECT_EQ(world.StatusOf(id), Approved);
      EXPECT_EQ(world.Rows(id), "1:3");
      EXPECT_NE(correct.find("Поле „Статус“ вече е „Одобрен“"), std::string::npos) << correct;
    } else {
      EXPECT_EQ(world.StatusOf(id), Entered);
      EXPECT_EQ(world.Rows(id), "");
      EXPECT_NE(approve.find("не приема решения"), std::string::npos) << approve;
    }
  }
}

TEST_P(Approval, AWithdrawalAgainstTheNextLevelEqualsOneBeforeTheOther) {
  ThreeLevels();
  world.As("kolev");
  world.As("petrova");
  for (int round = 0; round < 8; ++round) {
    const std::int64_t id = world.SentRequest();
    ASSERT_EQ(world.Decide("kolev", id, 1, kWaiting, kGiven), "ok");
    const auto [withdraw, approve] =
        AtOnce([&] { return world.Decide("kolev", id, 1, kGiven, kWaiting); },
               [&] { return world.Decide("petrova", id, 2, kWaiting, kGiven); });
    EXPECT_NE(withdraw == "ok", approve == "ok") << withdraw << "\n" << approve;
    if (withdraw == "ok") {
      EXPECT_EQ(world.Rows(id), "1:2 2:2 3:2");
      EXPECT_EQ(world.StatusOf(id), ForApproval);
      EXPECT_NE(approve.find("още не е на ред"), std::string::npos) << approve;
    } else {
      EXPECT_EQ(world.Rows(id), "1:3 2:3 3:2");
      EXPECT_EQ(world.StatusOf(id), PartlyApproved);
      EXPECT_NE(withdraw.find("по-високо ниво"), std::string::npos) << withdraw;
    }
  }
}

/// Levels are those of the sum that is on disk when the request is sent; afterwards no row changes.
TEST_P(Approval, SendingAgainstAChangeOfARowEqualsOneBeforeTheOther) {
  world.AddLevel(4, 1, 0, 1000, ApproverKind::CostCenterHead);
  world.AddLevel(4, 2, 100, 1000, ApproverKind::SectionHead);
  world.As("author");
  world.As("kolev");
  for (int round = 0; round < 8; ++round) {
    const std::int64_t id = world.NewRequest();
    ASSERT_EQ(world.AddRow(id, 1, 20, 8000, "50"), "ok");
    ASSERT_EQ(world.AddDate(id), "ok");
    const NamedValues key = {{"PurchaseOrderId", id}, {"PurchaseOrderVer", 1}, {"RowNumber", 1}};
    NamedValues before = key;
    before.push_back({"CurrSumWithoutVAT", Decimal(50'0000, 4)});
    const auto [send, change] = AtOnce(
        [&] { return world.Move("author", id, Entered, ForApproval); },
        [&] {
          return world.Apply("kolev", "dspPurchaseOrderDet",
                             UpdateOf(before, {{"CurrSumWithoutVAT", Decimal(500'0000, 4)}}));
        });
    EXPECT_EQ(send, "ok");
    EXPECT_EQ(world.StatusOf(id), ForApproval);
    if (change == "ok") {
      EXPECT_EQ(world.Rows(id), "1:2 2:2");
    } else {
      EXPECT_EQ(world.Rows(id), "1:2");
      EXPECT_NE(change.find("„За одобрение“ и не се променя. Първо го върнете за корекция."),
                std::string::npos)
          << change;
    }
  }
}

}  // namespace
}  // namespace orvane::server
