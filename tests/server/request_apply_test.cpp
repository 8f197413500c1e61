// The head of purchase requests: what the server fills in, who may change what and when, and every
// move tried from every status by everyone.

#include "server/request_world.h"

namespace orvane::server {
namespace {

class RequestHeads : public RequestCase {
 protected:
  NamedValues Key(std::int64_t id) { return {{"POIdNumber", id}, {"POVersion", 1}}; }
  NamedValues Old(std::int64_t id, const char* column, Variant value) {
    NamedValues before = Key(id);
    before.push_back({column, std::move(value)});
    return before;
  }
  std::string ChangeHead(const std::string& login, std::int64_t id, const char* column, Variant old,
                         Variant value) {
    return world.Apply(login, "dspPurchaseOrder",
                       UpdateOf(Old(id, column, std::move(old)), {{column, std::move(value)}}));
  }
  std::string InsertWith(const char* column, Variant value) {
    NamedValues values = RequestWorld::HeadValues();
    bool found = false;
    for (NamedValue& own : values) {
      if (own.name != column) continue;
      own.value = value;
      found = true;
    }
    if (!found) values.push_back({column, std::move(value)});
    return world.Apply("author", "dspPurchaseOrder", InsertOf(values));
  }
  std::string At(const std::string& column, ValueKind kind = ValueKind::String) {
    return world.Column("select " + column + " from PurchaseOrder order by POIdNumber", kind);
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, RequestHeads, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(RequestHeads, WhatTheServerKnowsItPutsInTheClientsPlace) {
  NamedValues values = RequestWorld::HeadValues();
  for (NamedValue& value : values) {
    if (value.name == "POIdNumber") value.value = 77;
    if (value.name == "POVersion") value.value = 9;
    if (value.name == "Status") value.value = 5;
    if (value.name == "OldVersion") value.value = true;
    if (value.name == "RateOfExchange") value.value = *Decimal::Parse("3")->AtScale(7);
    if (value.name == "SumPurchaseOrder") value.value = *Decimal::Parse("9")->AtScale(4);
  }
  values.push_back({"CreatedFrom", "kolev"});
  values.push_back({"CreatedOn", Stamp{5}});
  values.push_back({"AnnulFrom", "kolev"});
  values.push_back({"AnnulOn", Stamp{5}});
  const ApplyAnswer answer = world.ApplyFully("author", "dspPurchaseOrder", InsertOf(values));
  ASSERT_TRUE(answer.outcomes[0].applied) << answer.outcomes[0].failure->message;
  EXPECT_EQ(answer.ownerData, Variant(1));
  const auto filled = [&](const char* name) {
    const Variant* value = FindValue(answer.outcomes[0].filled, name);
    return value ? value->ToText() : "?";
  };
  EXPECT_EQ(filled("POIdNumber") + filled("POVersion") + filled("Status"), "112");
  EXPECT_EQ(filled("CreatedFrom"), "author");
  EXPECT_EQ(filled("RateOfExchange"), "1.0000000");
  EXPECT_EQ(At("CreatedFrom"), "author");
  EXPECT_EQ(At("SumPurchaseOrder", ValueKind::Amount), "0.0000");
  EXPECT_EQ(At("OldVersion", ValueKind::Bool), "0");
  EXPECT_EQ(At("AnnulFrom"), "");
  EXPECT_EQ(world.NewRequest(), 2);
}

TEST_P(RequestHeads, WhatAHeadSaysMustBeThereAndFitTogether) {
  world.RunSql(
      "insert into SuppliesContracts (IdNumber, Supplier, ContractNumber, ShortDescription,"
      " FoldShortDescription, ContractDate, KindContract, KindSupplyChoice, CreatedFrom,"
      " CreatedOn) values (5, 7, '5', 'Договор', 'договор', ?1, 4, 1, 'kolev', ?2),"
      " (6, 7, '6', 'Бъдещ', 'бъдещ', ?3, 4, 1, 'kolev', ?2),"
      " (8, 8, '8', 'Чужд', 'чужд', ?1, 4, 1, 'kolev', ?2)",
      {*Date::FromYmd(2026, 1, 1), Stamp{1}, *Date::FromYmd(2026, 3, 6)});
  const struct {
    const char* column;
    Variant value;
    const char* answer;
  } cases[] = {
      {"CostCenter", 77,
       "!!Err_Заявител с код 100 не е допустим за център за разход 77 (виж „Допустими заявители“). "
       "Изберете друг център за разход."},
      {"Notifier", 101,
       "!!Err_Заявител с код 101 не е допустим за център за разход 1001 (виж „Допустими "
       "заявители“). Изберете друг център за разход."},
      {"Supplier", 77, "!!Err_Няма доставчик 77. Изберете друг доставчик."},
      {"KindSupply", 77, "!!Err_Няма вид покупка 77. Изберете друг вид покупка."},
      {"KindCurrency", 77, "!!Err_Няма вид валута 77. Изберете друга валута."},
      {"ContractId", 77, "!!Err_Няма договор 77. Изберете друг договор."},
      {"ContractId", 6, "!!Err_Договор 6 не е действащ днес. Изберете друг договор."},
      {"ContractId", 8,
       "!!Err_Договор 8 не е за доставчика и вида покупка на искането. Изберете друг договор."},
      {"DocumentDate", Variant(), "!!Err_Попълнете стойност в поле „Дата на документ“."},
      {"Supplier", Variant(), "ok"},
      {"ContractId", 5, "ok"},
  };
  for (const auto& row : cases)
    EXPECT_EQ(InsertWith(row.column, row.value), row.answer) << row.column;
  EXPECT_EQ(ChangeHead("author", 1, "RateOfExchange", *Decimal::Parse("1")->AtScale(7),
                       *Decimal::Parse("0")->AtScale(7)),
            "ok")
      << "the national currency has its own rate";
  NamedValues euro = RequestWorld::HeadValues();
  for (NamedValue& value : euro) {
    if (value.name == "KindCurrency") value.value = 2;
    if (value.name == "RateOfExchange") value.value = *Decimal::Parse("0")->AtScale(7);
  }
  EXPECT_EQ(world.Apply("author", "dspPurchaseOrder", InsertOf(euro)),
            "!!Err_Валутният курс трябва да бъде по-голям от нула. Въведете друг.");
}

TEST_P(RequestHeads, HeadsAndPartsChangeAtStatusTwoOnly) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddRow(id, 1, 20, 1, "1"), "ok");
  const auto tries = [&](int step) {
    return std::vector<std::string>{
        ChangeHead("author", id, "Supplier", 7, 7), world.AddRow(id, 10 + step, 20, 1, "1"),
        world.AddDate(id, 1 + step),
        world.Apply("author", "dspPurchaseOrderPayPl",
                    InsertOf({{"PurchaseOrderId", id},
                              {"PurchaseOrderVer", 1},
                              {"RowNumber", Variant()},
                              {"InvoiceDate", *Date::FromYmd(2026, 3, 10)},
                              {"SumWithVAT", *Decimal::Parse("1")->AtScale(4)},
                              {"PaymentDate", *Date::FromYmd(2026, 3, 20)}}))};
  };
  const char* wayOut[] = {"",
                          "Направете нова версия или копие.",
                          "",
                          "Първо го върнете за корекция.",
                          "Направете нова версия.",
                          "Направете нова версия.",
                          "Направете ново искане.",
                          "Първо премахнете приключването."};
  for (int status = 1; status <= 7; ++status) {
    world.RunSql("update PurchaseOrder set Status = ?1", {status});
    for (const std::string& answer : tries(status)) {
      if (status == Entered) {
        EXPECT_EQ(answer, "ok");
        continue;
      }
      EXPECT_NE(answer.find("и не се променя. " + std::string(wayOut[status])), std::string::npos)
          << status << answer;
    }
  }
  world.RunSql("update PurchaseOrder set Status = 2, AnnulOn = ?1", {Stamp{1}});
  for (const std::string& answer : tries(8))
    EXPECT_EQ(answer, "!!Err_Искане за покупка 1, версия 1 е анулирано и не се променя.");
  world.RunSql("update PurchaseOrder set AnnulOn = null, OldVersion = 1");
  for (const std::string& answer : tries(9))
    EXPECT_NE(answer.find("е стара версия"), std::string::npos) << answer;
  world.RunSql("update PurchaseOrder set OldVersion = 0");
  EXPECT_EQ(ChangeHead("stranger", id, "Supplier", 7, Variant()),
            "!!Err_Искане за покупка 1, версия 1 не съществува.")
      << "what one may not see does not exist";
  EXPECT_EQ(ChangeHead("author", 99, "Supplier", 7, Variant()),
            "!!Err_Искане за покупка 99, версия 1 не съществува.");
}

TEST_P(RequestHeads, ServerColumnsAndKeysAreNotTheClientsToSend) {
  const std::int64_t id = world.NewRequest();
  EXPECT_EQ(ChangeHead("author", id, "OldVersion", false, true), "ok");
  EXPECT_EQ(ChangeHead("author", id, "SumPurchaseOrder", *Decimal::Parse("0")->AtScale(4),
                       *Decimal::Parse("5")->AtScale(4)),
            "ok");
  EXPECT_EQ(At("OldVersion", ValueKind::Bool), "0");
  EXPECT_EQ(At("SumPurchaseOrder", ValueKind::Amount), "0.0000");
  EXPECT_EQ(world.Apply("author", "dspPurchaseOrder", UpdateOf(Key(id), {{"POIdNumber", 5}})),
            "Номерът на искането („POIdNumber“) не се променя.");
  EXPECT_EQ(
      world.Apply("author", "dspPurchaseOrderDet",
                  UpdateOf({{"PurchaseOrderId", id}, {"PurchaseOrderVer", 1}, {"RowNumber", 1}},
                           {{"PurchaseOrderId", 5}})),
      "Редовете не са на едно искане.");
}

TEST_P(RequestHeads, AChangeBySomebodyElseIsAConflictWithThePresentRow) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(ChangeHead("author", id, "Supplier", 7, 8), "ok");
  const ApplyAnswer answer = world.ApplyFully(
      "kolev", "dspPurchaseOrder", UpdateOf(Old(id, "Supplier", 7), {{"Supplier", Variant()}}));
  EXPECT_EQ(answer.outcomes[0].failure->kind, FailureKind::Conflict);
  EXPECT_EQ(FindValue(answer.outcomes[0].present, "Supplier")->ToText(), "8");
  EXPECT_EQ(At("Supplier", ValueKind::Code), "8");
  EXPECT_EQ(world.Column("select OldValue || '>' || NewValue from History where TableName ="
                         " 'PurchaseOrder' and ColumnName = 'Supplier' and Kind = 'U'",
                         ValueKind::String),
            "7>8");
}

TEST_P(RequestHeads, AnnulmentIsStampedByTheServerAndIsNoAmendment) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(ChangeHead("author", id, "Supplier", 7, 8), "ok");
  const std::string amended = At("AmendOn", ValueKind::Stamp);
  ASSERT_EQ(world.Apply("author", "dspPurchaseOrder",
                        UpdateOf({{"POIdNumber", id},
                                  {"POVersion", 1},
                                  {"AnnulOn", Variant()},
                                  {"AnnulFrom", Variant()}},
                                 {{"AnnulOn", Stamp{77}}, {"AnnulFrom", "kolev"}})),
            "ok");
  EXPECT_EQ(At("AnnulFrom"), "author");
  EXPECT_TRUE(At("AnnulOn", ValueKind::Stamp).starts_with("2026-03-05T07:00"))
      << At("AnnulOn", ValueKind::Stamp);
  EXPECT_EQ(At("AmendOn", ValueKind::Stamp), amended);
  EXPECT_EQ(At("Status", ValueKind::Byte), "2");
}

TEST_P(RequestHeads, AKindWithoutOrdersTakesTheLinksOffTheRows) {
  const std::int64_t order = world.AddOrder(20, 10000);
  const std::int64_t id = world.NewRequest(3);
  ASSERT_EQ(world.AddRow(id, 1, 20, 1, "0", order), "ok");
  ASSERT_EQ(ChangeHead("author", id, "Supplier", 7, Variant()), "ok");
  EXPECT_EQ(world.Count("PurchaseOrderDet where SuppManifacOrderId is not null"), 1);
  EXPECT_EQ(ChangeHead("author", id, "KindSupply", 3, 4), "ok");
  EXPECT_EQ(world.Count("PurchaseOrderDet where SuppManifacOrderId is not null"), 0);
}

TEST_P(RequestHeads, OnlyAnEmptyFirstVersionIsDeleted) {
  const std::int64_t id = world.NewRequest();
  const auto remove = [&](int version = 1) {
    return world.ApplyFully("author", "dspPurchaseOrder",
                            DeleteOf({{"POIdNumber", id}, {"POVersion", version}}));
  };
  ASSERT_EQ(world.AddRow(id, 1, 20, 1, "1"), "ok");
  EXPECT_EQ(remove().outcomes[0].failure->message,
            "!!Err_Искане за покупка 1 има редове. Първо ги изтрийте.");
  ASSERT_TRUE(world.Call("author", "TsmPurchaseOrderReport", {"NewRec", 2, id, 1, "author"}));
  EXPECT_NE(remove(2).outcomes[0].failure->message.find("Анулирайте искането"), std::string::npos);
  const std::int64_t empty = world.NewRequest();
  const ApplyAnswer gone = world.ApplyFully("author", "dspPurchaseOrder",
                                            DeleteOf({{"POIdNumber", empty}, {"POVersion", 1}}));
  EXPECT_TRUE(gone.outcomes[0].applied);
  EXPECT_TRUE(gone.ownerData.IsNull());
  EXPECT_EQ(world.NewRequest(), 3) << "gaps are allowed, numbers do not come twice";
}

TEST_P(RequestHeads, SendingNeedsRowsADateAndPrices) {
  const std::int64_t id = world.NewRequest(3);
  const auto send = [&] { return world.Move("author", id, Entered, ForApproval); };
  EXPECT_EQ(send(),
            "!!Err_Искане за покупка 1, версия 1 няма редове. Въведете поне един ред с "
            "материал или услуга.");
  ASSERT_EQ(world.AddRow(id, 1, 20, 8000), "ok");
  EXPECT_EQ(send(),
            "!!Err_Искане за покупка 1, версия 1 няма планирана дата на доставка. Въведете "
            "поне една.");
  ASSERT_EQ(world.AddDate(id), "ok");
  ASSERT_EQ(world.AddRow(id, 2, 23, 8000), "ok");
  EXPECT_EQ(send(),
            "!!Err_Искане за покупка 1, версия 1, ред 2: пореден номер 23 няма цена към "
            "датата на документа. Въведете цена в списъка за доставка и запишете реда "
            "отново.");
  EXPECT_EQ(world.StatusOf(id), Entered);
  ASSERT_EQ(
      world.Apply("author", "dspPurchaseOrderDet",
                  DeleteOf({{"PurchaseOrderId", id}, {"PurchaseOrderVer", 1}, {"RowNumber", 2}})),
      "ok");
  EXPECT_EQ(send(), "ok");
}

TEST_P(RequestHeads, WhatTravelsWithASendingIsSaved) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddRow(id, 1, 20, 1, "1"), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  NamedValues before = Old(id, "Status", 2);
  before.push_back({"Description", Variant()});
  EXPECT_EQ(world.Apply("author", "dspPurchaseOrder",
                        UpdateOf(before, {{"Status", 3}, {"Description", "Спешно"}})),
            "ok");
  EXPECT_EQ(At("Description"), "Спешно");
  NamedValues later = Old(id, "Status", 5);
  later.push_back({"Description", "Спешно"});
  EXPECT_NE(world.Apply("kolev", "dspPurchaseOrder",
                        UpdateOf(later, {{"Status", 7}, {"Description", "Друго"}})),
            "ok")
      << "a move from a status where nothing changes carries nothing else";
}

/// What the rules say of a move, written anew: from which status, with which rights, by whom.
bool MayMove(int to, int status, int rights, const std::string& who) {
  const bool edit = (rights & static_cast<int>(Right::Edit)) != 0;
  const bool remove = (rights & static_cast<int>(Right::Delete)) != 0;
  const bool concerned = who == "author" || who == "kolev" || who == "deputy";
  switch (to) {
    case 0:
      return remove && (status == 1 || status == 2);
    case 2:
      return edit && status == 3;
    case 3:
      return edit && status == 2;
    case 6:
      return edit && status == 7 && concerned;
    case 7:
      return edit && (status == 5 || status == 6) && concerned;
    default:
      return false;
  }
}

TEST_P(RequestHeads, EveryMoveFromEveryStatusByEveryone) {
  const std::int64_t id = world.NewRequest();
  ASSERT_EQ(world.AddRow(id, 1, 20, 1, "1"), "ok");
  ASSERT_EQ(world.AddDate(id), "ok");
  int allowed = 0;
  for (const char* who : {"author", "kolev", "deputy", "petrova"}) {
    for (const int rights : {1, 3, 9, 11}) {
      ASSERT_TRUE(
          world.Server().Admin().Grant(who, static_cast<int>(Point::PurchaseRequests), rights));
      for (int status = 1; status <= 7; ++status) {
        for (int to = 0; to <= 7; ++to) {
          if (to == status) continue;
          world.RunSql(
              "update PurchaseOrder set Status = ?1, AnnulOn = null, AnnulFrom = null,"
              " AmendFrom = 'before'",
              {status});
          const std::string answer =
              to == 0 ? world.Annul(who, id) : world.Move(who, id, status, to);
          EXPECT_EQ(answer == "ok", MayMove(to, status, rights, who))
              << who << " with " << rights << " from " << status << " to " << to << ": " << answer;
          allowed += answer == "ok" ? 1 : 0;
          const bool amends = answer == "ok" && (to == Entered || to == ForApproval);
          EXPECT_EQ(world.Count("PurchaseOrder where AmendFrom = 'before'"), amends ? 0 : 1)
              << who << " from " << status << " to " << to;
          if (answer == "ok" && to > 3) {
            EXPECT_EQ(world.StatusOf(id), to);
          }
        }
      }
    }
  }
  EXPECT_EQ(allowed, 4 * (2 * 2 + 2 * 2) + 3 * 2 * 3) << "annul and send/correct; complete, reopen";
}

TEST_P(RequestHeads, AnnulledAndOldRequestsMoveNoMore) {
  const std::int64_t id = world.NewRequest();
  for (const char* closing : {"AnnulOn = ?1, OldVersion = 0", "AnnulOn = null, OldVersion = 1"}) {
    for (int status = 1; status <= 7; ++status) {
      const std::string set = closing;
      world.RunSql("update PurchaseOrder set Status = " + std::to_string(status) + ", " + set,
                   set.find("?1") == std::string::npos ? VariantArray{} : VariantArray{Stamp{1}});
      for (int to = 1; to <= 7; ++to) {
        if (to == status) continue;
        const std::string answer = world.Move("author", id, status, to);
        EXPECT_TRUE(answer.find("е анулирано") != std::string::npos ||
                    answer.find("е стара версия") != std::string::npos)
            << answer;
      }
    }
  }
}

TEST_P(RequestHeads, ARepeatedChangeIsAnsweredAsTheFirstTime) {
  const Change insert = InsertOf(RequestWorld::HeadValues());
  const ApplyAnswer first = world.ApplyFully("author", "dspPurchaseOrder", insert);
  const ApplyAnswer again = world.ApplyFully("author", "dspPurchaseOrder", insert);
  EXPECT_EQ(first.ownerData, again.ownerData);
  EXPECT_EQ(first.outcomes[0].filled, again.outcomes[0].filled);
  EXPECT_EQ(world.Count("PurchaseOrder"), 1);
}

}  // namespace
}  // namespace orvane::server
