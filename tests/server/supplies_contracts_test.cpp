// Supplies contracts at the edges of the server's rules: identifiers and stamps, what must be
// there, which are in force, moving between them, who may, and what a contract in use allows.

#include <thread>

#include "contract/supplies_contract.h"
#include "server/request_world.h"

namespace orvane::server {
namespace {

namespace contract = supplies_contract;
using contract::get_rec::Tell;

constexpr std::string_view kMark = "!!Err_";

Variant DayOf(int day, int month = 3, int year = 2026) {
  return *Date::FromYmd(year, month, day);
}

NamedValues With(NamedValues values, const NamedValues& changed) {
  for (const NamedValue& change : changed) {
    std::erase_if(values, [&](const NamedValue& value) { return value.name == change.name; });
    values.push_back(change);
  }
  return values;
}

/// The world of requests with registers for contracts. Supplier 7 invoices by kind 1, supplier 8
/// has no kind of invoice.
class SuppliesContracts : public RequestCase {
 protected:
  SuppliesContracts() {
    for (const char* statement :
         {"insert into SupplyInvoiceDescr (Code, Name, Name2, FoldName, KindInvoice) values"
          " (1, 'Фактура', 'Invoice', 'ф', 1), (2, 'Дебитно', null, 'д', 3)",
          "update Partners set SupplyInvoiceDescr = 1, Name2 = 'Supplier' where Partner = 7",
          "insert into SupplyRequestDescr (Code, Name, FoldName) values (1, 'Поръчка', 'п')",
          "insert into SupplyArtVchDescr (Code, Name, FoldName) values (1, 'Разписка', 'р')",
          "insert into KindSupplyLists (Code, Name, FoldName) values (1, 'Общ', 'о')",
          "insert into FreeNomElements (FreeNomenclature, Element, Name, FoldName) values"
          " (15, 1, 'Превод', 'п'), (16, 2, 'Друго', 'д')"})
      world.RunSql(statement);
    world.RunSql(
        "insert into CapExPlan (Code, Name, FoldName, FromDate, TimeLimit, CapSum) values"
        " (2501, 'Стругове', 'с', ?1, ?2, ?3)",
        {DayOf(1), DayOf(31), Decimal(10'000, 4)});
  }

  static NamedValues Values(const NamedValues& changed = {}) {
    return With({{"IdNumber", -1},
                 {"Supplier", 7},
                 {"ContractNumber", "Д-1"},
                 {"ShortDescription", "Рамков договор"},
                 {"ContractDate", DayOf(1)},
                 {"KindContract", 4},
                 {"KindSupplyChoice", 1},
                 {"CreatedFrom", "somebody"},
                 {"CreatedOn", Stamp{1}}},
                changed);
  }
  ApplyAnswer Apply(const Change& change, const std::string& login = "author",
                    Point point = Point::SuppliesContracts) {
    auto answer = world.Server()->Apply(
        world.As(login).At(point),
        {std::string(contract::kServerClass), "dspSuppliesContracts", 0, {}, {change}});
    if (answer) return *std::move(answer);
    ApplyAnswer failed;
    failed.outcomes.push_back({false, answer.GetFailure(), {}, {}});
    return failed;
  }
  /// "" or what the server says, without its mark.
  std::string Refusal(const Change& change, const std::string& login = "author") {
    const auto failure = Apply(change, login).outcomes.front().failure;
    if (!failure) return "";
    const std::string& text = failure->message;
    return text.starts_with(kMark) ? text.substr(kMark.size()) : text;
  }
  std::int64_t NewContract(const NamedValues& changed = {}) {
    const ApplyAnswer answer = Apply(InsertOf(Values(changed)));
    EXPECT_EQ(Outcome(answer.outcomes.front()), "ok");
    return answer.ownerData.AsInt().value_or(0);
  }
  VariantArray Load(Nav nav, std::int64_t id, int step = 0) {
    auto told = world.Call("author", std::string(contract::kServerClass),
                           {"GetRec", static_cast<int>(nav), step, id}, Point::SuppliesContracts);
    if (told) return *std::move(told);
    ADD_FAILURE() << told.GetFailure().message;
    return VariantArray(Tell::kTellSize);
  }
  /// Load code and identifier, "2:5"; "3" when nothing was found.
  std::string Where(Nav nav, std::int64_t id, int step = 0) {
    const VariantArray told = Load(nav, id, step);
    const DataPacket* row = told[Tell::kContract].AsPacket();
    return told[Tell::kCode].ToText() + (row ? ":" + row->At(0, "IdNumber").ToText() : "");
  }
  std::string At(std::int64_t id, const char* column) {
    const VariantArray told = Load(Nav::ByKey, id);
    return told[Tell::kContract].AsPacket()->At(0, column).ToText();
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, SuppliesContracts, testing::ValuesIn(TestEngines()),
                         TestEngineName);

TEST_P(SuppliesContracts, AreNumberedByTheCounterAndStampedByTheServer) {
  const ApplyAnswer entered = Apply(InsertOf(Values({{"IdNumber", 77}})));
  EXPECT_EQ(entered.ownerData.AsInt(), 1);
  EXPECT_EQ(FindValue(entered.outcomes.front().filled, "IdNumber")->AsInt(), 1);
  EXPECT_EQ(NewContract(), 2);
  EXPECT_EQ(At(1, "CreatedFrom") + At(1, "AmendFrom"), "author");
  const ApplyAnswer changed =
      Apply(UpdateOf({{"IdNumber", 1}, {"ContractNumber", "Д-1"}, {"AmendFrom", Variant()}},
                     {{"ContractNumber", "Д-2"}, {"AmendFrom", "somebody"}}),
            "kolev");
  EXPECT_EQ(changed.ownerData.AsInt(), 1);
  EXPECT_EQ(At(1, "ContractNumber") + At(1, "CreatedFrom") + At(1, "AmendFrom"), "Д-2authorkolev");
  EXPECT_EQ(world.Count("History where TableName = 'SuppliesContracts' and ColumnName ="
                        " 'ContractNumber' and ChangedBy = 'kolev'"),
            1);
  const ApplyAnswer deleted = Apply(DeleteOf({{"IdNumber", 2}}));
  EXPECT_EQ(Outcome(deleted.outcomes.front()), "ok");
  EXPECT_TRUE(deleted.ownerData.IsNull());
  EXPECT_EQ(NewContract(), 3) << "a number is given once";
  EXPECT_EQ(Refusal(UpdateOf({{"IdNumber", 1}}, {{"IdNumber", 9}})),
            "Идентификаторът на договор („IdNumber“) не се променя.");
}

TEST_P(SuppliesContracts, WhatAContractSaysMustBeThereAndKnown) {
  const struct {
    const char* column;
    Variant value;
    const char* refusal;
  } cases[] = {
      {"Supplier", {}, "Попълнете стойност в поле „Доставчик“."},
      {"Supplier", 77, "Няма доставчик 77. Изберете друг доставчик."},
      {"ContractNumber", "", "Попълнете стойност в поле „Номер на договор“."},
      {"ShortDescription", " ", "Попълнете стойност в поле „Съкратено описание“."},
      {"ContractDate", {}, "Попълнете стойност в поле „Дата на сключване“."},
      {"KindContract", {}, "Попълнете стойност в поле „Вид договор“."},
      {"KindContract", 77, "Няма вид договор 77. Изберете друг вид договор."},
      {"CapExPlanCode", 7, "Няма код 7 в плана за капиталови разходи. Изберете друг код."},
      {"CapExPlanCode", 2501, ""},
      {"SupplyRequestDescr", 7, "Няма описание на поръчка 7. Изберете друго описание."},
      {"SupplyArtVchDescr", 7, "Няма описание на стокова разписка 7. Изберете друго описание."},
      {"ToSupplyArtVchDescr", 7,
       "Няма описание на разлики по стокова разписка 7. Изберете друго описание."},
      {"SupplyInvoiceDescr", 7, "Няма описание на фактура 7. Изберете друго описание."},
      {"SuppAdvInvDescr", 7,
       "Няма описание на фактура за авансово плащане 7. Изберете друго описание."},
      {"SuppDNoticeDescr", 7, "Няма описание на дебитно известие 7. Изберете друго описание."},
      {"SuppCNoticeDescr", 7, "Няма описание на кредитно известие 7. Изберете друго описание."},
      {"SuppDNoticeDescr", 2, ""},
      {"KindSupplyList", 7, "Няма вид списък за доставка 7. Изберете друг вид."},
      {"KindSupplyChoice", {}, "Попълнете стойност в поле „Начин на избор“."},
      {"KindSupplyChoice", 4, "Няма начин на избор 4. Изберете друг начин."},
      {"SuppElKindPayment", 2, "Няма начин на плащане 2. Изберете друг начин."},
      {"SuppElKindPayment", 1, ""},
      {"AutomaticRenewal", {}, ""},
      {"MaxTermOfPayment", 255, ""},
  };
  for (const auto& row : cases)
    EXPECT_EQ(Refusal(InsertOf(Values({{row.column, row.value}}))), row.refusal) << row.column;
}

TEST_P(SuppliesContracts, OfKindsBoughtByListNameOne) {
  constexpr char kMissing[] =
      "Договор от вид % се сключва по списък за доставка. Попълнете стойност в поле „Вид списък за "
      "доставка“.";
  const auto missing = [&](int kind) {
    return std::string(kMissing).replace(std::string_view(kMissing).find('%'), 1,
                                         std::to_string(kind));
  };
  for (const int kind : {1, 4, 5})
    EXPECT_EQ(Refusal(InsertOf(Values({{"KindContract", kind}}))), "") << kind;
  for (const int kind : {2, 3}) {
    const NamedValues values = Values({{"KindContract", kind}});
    EXPECT_EQ(Refusal(InsertOf(values)), missing(kind));
    EXPECT_EQ(Refusal(InsertOf(With(values, {{"KindSupplyList", 1}}))), "") << kind;
  }
  const auto change = [&](NamedValues before, NamedValues after) {
    before.push_back({"IdNumber", 1});
    return Refusal(UpdateOf(std::move(before), std::move(after)));
  };
  EXPECT_EQ(change({{"KindContract", 1}}, {{"KindContract", 2}}), missing(2));
  EXPECT_EQ(change({{"KindContract", 1}, {"KindSupplyList", {}}},
                   {{"KindContract", 2}, {"KindSupplyList", 1}}),
            "");
  EXPECT_EQ(change({{"KindSupplyList", 1}}, {{"KindSupplyList", {}}}), missing(2));
  EXPECT_EQ(change({{"KindContract", 2}, {"KindSupplyList", 1}},
                   {{"KindContract", 4}, {"KindSupplyList", {}}}),
            "");
  world.Server().SetParam(11, 5, "");
  EXPECT_EQ(Refusal(InsertOf(Values({{"KindContract", 3}}))), "") << "goods are not set";
}

/// Of two users, one makes it a contract by list while the other takes the list away.
TEST_P(SuppliesContracts, TwoUsersAtOnceDoNotLeaveOneWithoutItsList) {
  NewContract({{"KindSupplyList", 1}});
  for (int round = 0; round < 12; ++round) {
    world.RunSql("update SuppliesContracts set KindContract = 4, KindSupplyList = 1");
    world.As("author");
    world.As("kolev");
    std::thread first([&] {
      Apply(UpdateOf({{"IdNumber", 1}, {"KindContract", 4}}, {{"KindContract", 2}}), "author");
    });
    std::thread second([&] {
      Apply(UpdateOf({{"IdNumber", 1}, {"KindSupplyList", 1}}, {{"KindSupplyList", {}}}), "kolev");
    });
    first.join();
    second.join();
    EXPECT_EQ(world.Count("SuppliesContracts where KindContract = 2 and KindSupplyList is null"),
              0);
  }
}

TEST_P(SuppliesContracts, AreInForceBetweenTheirDatesUnlessRenewed) {
  const struct {
    Variant signedOn, blocked, ended;
    bool renewed;
    const char* active;
  } cases[] = {
      {DayOf(5), {}, {}, false, "1"},       {DayOf(6), {}, {}, false, "0"},
      {DayOf(6), {}, {}, true, "0"},        {DayOf(1), DayOf(5), {}, false, "0"},
      {DayOf(1), DayOf(6), {}, false, "1"}, {DayOf(1), {}, DayOf(5), false, "0"},
      {DayOf(1), {}, DayOf(6), false, "1"}, {DayOf(1), {}, DayOf(5), true, "1"},
      {DayOf(1), DayOf(5), {}, true, "0"},  {DayOf(1), DayOf(6), DayOf(5), true, "1"},
  };
  std::string active;
  for (const auto& row : cases) {
    const std::int64_t id = NewContract({{"ContractDate", row.signedOn},
                                         {"FreezeDate", row.blocked},
                                         {"FinishDate", row.ended},
                                         {"AutomaticRenewal", row.renewed}});
    EXPECT_EQ(At(id, "Active"), row.active) << id;
    if (*row.active == '1') active.append(active.empty() ? "" : " ").append(std::to_string(id));
  }
  // The list that requests offer says the same.
  FetchRequest offered;
  offered.serverClass = system::kSearchClass;
  offered.provider = "dspSQL";
  offered.sql = "SELECT IdNumber FROM SuppliesContracts WHERE Active = 1 ORDER BY IdNumber";
  const auto rows =
      world.Server()->Fetch(world.As("author").At(Point::PurchaseRequests), {offered});
  ASSERT_TRUE(rows) << rows.GetFailure().message;
  std::string found;
  for (std::size_t row = 0; row < rows->front().rowCount; ++row)
    found.append(row == 0 ? "" : " ").append(rows->front().At(row, "IdNumber").ToText());
  EXPECT_EQ(found, active);
}

TEST_P(SuppliesContracts, AreFoundByIdentifierAndByMoves) {
  EXPECT_EQ(Where(Nav::First, 0), "3");
  for (int i = 1; i <= 5; ++i)
    NewContract();
  for (const int gone : {2, 4})
    EXPECT_EQ(Refusal(DeleteOf({{"IdNumber", gone}})), "");
  const struct {
    Nav nav;
    int id;
    int step;
    const char* where;
  } cases[] = {
      {Nav::ByKey, 3, 0, "0:3"}, {Nav::ByKey, 2, 0, "3"},      {Nav::First, 9, 0, "1:1"},
      {Nav::Last, 0, 0, "2:5"},  {Nav::Next, 1, 0, "0:3"},     {Nav::Next, 2, 0, "0:3"},
      {Nav::Next, 5, 0, "2:5"},  {Nav::Previous, 4, 0, "0:3"}, {Nav::Previous, 1, 0, "1:1"},
      {Nav::Step, 1, 10, "2:5"}, {Nav::Step, 5, -10, "1:1"},   {Nav::Step, 5, -1, "0:3"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Where(row.nav, row.id, row.step), row.where)
        << static_cast<int>(row.nav) << " from " << row.id;
  }
  for (const int gone : {1, 3})
    Apply(DeleteOf({{"IdNumber", gone}}));
  EXPECT_EQ(Where(Nav::Previous, 5), "2:5") << "the only one is the last one";
  const VariantArray bad[] = {
      {"GetRec", 9, 0, 1}, {"GetRec", 1, 0}, {"GetRec", 0, 0, "x"}, {"Other"}};
  for (const VariantArray& arguments : bad) {
    EXPECT_EQ(Outcome(world.Call("author", std::string(contract::kServerClass), arguments,
                                 Point::SuppliesContracts)),
              "BadRequest");
  }
}

TEST_P(SuppliesContracts, BringTheNamesOfTheirCodesInBothLanguages) {
  const std::int64_t id = NewContract({{"SupplyInvoiceDescr", 1},
                                       {"SuppDNoticeDescr", 2},
                                       {"CapExPlanCode", 2501},
                                       {"SuppElKindPayment", 1}});
  const struct {
    const char* column;
    const char* name;
  } cases[] = {
      {"SupplierName", "Доставчик"},         {"SupplierName2", "Supplier"},
      {"KindContractName", "Други"},         {"KindContractName2", "Други"},
      {"SupplyInvoiceDescrName", "Фактура"}, {"SupplyInvoiceDescrName2", "Invoice"},
      {"SuppDNoticeDescrName2", "Дебитно"},  {"SuppCNoticeDescrName", ""},
      {"SuppElKindPaymentName", "Превод"},
  };
  for (const auto& row : cases)
    EXPECT_EQ(At(id, row.column), row.name) << row.column;
  const VariantArray told = Load(Nav::ByKey, id);
  EXPECT_EQ(told[Tell::kSupplierRow].AsPacket()->At(0, "KindInvoice").AsInt(), 1);
  EXPECT_EQ(told[Tell::kPlanRow].AsPacket()->At(0, "Name").ToText(), "Стругове");
  const VariantArray plain = Load(Nav::ByKey, NewContract({{"Supplier", 8}}));
  EXPECT_TRUE(plain[Tell::kSupplierRow].AsPacket()->At(0, "KindInvoice").IsNull());
  EXPECT_EQ(plain[Tell::kPlanRow].AsPacket()->rowCount, 0U);
}

TEST_P(SuppliesContracts, ThatDocumentsUseAreNotDeleted) {
  const std::int64_t asked = NewContract();
  const std::int64_t ordered = NewContract({{"KindContract", 3}, {"KindSupplyList", 1}});
  world.NewRequest();
  const std::int64_t request = world.NewRequest();
  const std::int64_t order = world.AddOrder(20, 1);
  world.RunSql("update PurchaseOrder set ContractId = ?1 where POIdNumber = ?2", {asked, request});
  world.RunSql("update SuppManifacOrder set ContractId = ?1", {ordered});
  constexpr char kInstead[] = ". Вместо това въведете дата на прекратяване.";
  EXPECT_EQ(Refusal(DeleteOf({{"IdNumber", asked}})),
            std::string("Договор 1 не се изтрива: по него е искане за покупка ")
                .append(std::to_string(request))
                .append(kInstead));
  EXPECT_EQ(Refusal(DeleteOf({{"IdNumber", ordered}})),
            std::string("Договор 2 не се изтрива: по него е поръчка за производство ")
                .append(std::to_string(order))
                .append(kInstead));
  world.RunSql("update SuppliesContracts set AutomaticRenewal = 1 where IdNumber = ?1", {asked});
  EXPECT_EQ(Refusal(DeleteOf({{"IdNumber", asked}})),
            std::string("Договор 1 не се изтрива: по него е искане за покупка ")
                .append(std::to_string(request))
                .append(". Вместо това въведете дата на блокиране."));
  const auto keeps = [&](const char* column, int from, int to) {
    return Refusal(UpdateOf({{"IdNumber", asked}, {column, from}}, {{column, to}}));
  };
  const std::string kept = "Договор 1 запазва доставчика и вида си: по него е искане за покупка " +
                           std::to_string(request) + ". Въведете нов договор.";
  EXPECT_EQ(keeps("Supplier", 7, 8), kept);
  EXPECT_EQ(keeps("KindContract", 4, 1), kept);
  world.RunSql("update PurchaseOrder set ContractId = null");
  EXPECT_EQ(keeps("Supplier", 7, 8), "");
  EXPECT_EQ(Refusal(DeleteOf({{"IdNumber", asked}})), "");
}

TEST_P(SuppliesContracts, ChangedMeanwhileAreNotOverwritten) {
  const std::int64_t id = NewContract();
  const auto rename = [&](const char* to) {
    return UpdateOf({{"IdNumber", id}, {"ContractNumber", "Д-1"}}, {{"ContractNumber", to}});
  };
  EXPECT_EQ(Refusal(rename("Д-2"), "kolev"), "");
  const ApplyAnswer late = Apply(rename("Д-3"));
  const ChangeOutcome& outcome = late.outcomes.front();
  EXPECT_EQ(Outcome(&*outcome.failure), "Conflict");
  EXPECT_EQ(outcome.changedBy, "Потребител kolev");
  EXPECT_EQ(FindValue(outcome.present, "ContractNumber")->ToText(), "Д-2");
  const Change other = UpdateOf({{"IdNumber", id}, {"NoticePeriod", {}}}, {{"NoticePeriod", 30}});
  EXPECT_EQ(Refusal(other), "") << "another column is nobody's conflict";
  EXPECT_EQ(Refusal(DeleteOf({{"IdNumber", id}, {"ContractNumber", "Д-1"}})).substr(0, 10),
            std::string("Редът").substr(0, 10));
}

TEST_P(SuppliesContracts, AskForTheRightsOfTheirPoint) {
  const std::int64_t id = NewContract();
  const Change changes[] = {
      UpdateOf({{"IdNumber", id}, {"NoticePeriod", {}}}, {{"NoticePeriod", 30}}),
      InsertOf(Values()), DeleteOf({{"IdNumber", 2}})};
  const int rights[] = {2, 4, 8};
  const auto grant = [&](int bits) {
    ASSERT_TRUE(world.Server().Admin().Grant(
        "author", static_cast<std::int32_t>(Point::SuppliesContracts), bits));
  };
  for (std::size_t i = 0; i < std::size(changes); ++i) {
    grant(15 - rights[i]);
    EXPECT_EQ(Outcome(Apply(changes[i]).outcomes.front()).substr(0, 7), "NoRight") << rights[i];
    grant(1 | rights[i]);
    EXPECT_EQ(Outcome(Apply(changes[i]).outcomes.front()), "ok") << rights[i];
  }
  const std::string name(contract::kServerClass);
  const VariantArray first = {"GetRec", 1, 0, 0};
  grant(14);
  EXPECT_EQ(Outcome(world.Call("author", name, first, Point::SuppliesContracts)), "NoRight");
  EXPECT_EQ(Outcome(world.Call("kolev", name, first, Point::PurchaseRequests)), "NoRight");
  EXPECT_EQ(Outcome(world.Call("kolev", name, first, Point::SuppliesContracts)), "ok");
}

}  // namespace
}  // namespace orvane::server
