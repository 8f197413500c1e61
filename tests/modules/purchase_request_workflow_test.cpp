// The workflow of purchase requests as the screen offers it: every action under every status, right
// and role against rules written out by hand; who owns F9; what each operation sends.

#include <gtest/gtest.h>

#include "modules/purchases/purchase_requests/tf_purchase_order_report.h"
#include "modules/request_world.h"

namespace orvane::modules::requests {
namespace {

namespace pr = purchase_request;

constexpr std::string_view kAtKeys[] = {
    "acNewDoc",     "acNewVersion", "acCopyDoc",   "acForConfirmation", "acCorrect",
    "acAnnul",      "acConfirm",    "acRefuse",    "acUnconfirm",       "acUnRefuse",
    "acFinish",     "acUnFinish",   "acDocSearch", "acPrint",           "acRows",
    "acSave",       "acCancel",     "acDelete",    "acQuantity",        "acSearch",
    "acSearchGroup"};

/// One situation of a loaded request and its user.
struct Situation {
  int rights = 15;
  int status = 2;
  bool annulled = false;
  bool old = false;
  bool mayAppend = true;
  bool requester = false;
  bool chief = false;
  int turn = 0;     ///< status at the level where it is the user's turn; 0: none
  int decided = 0;  ///< what the user decided; 0: nothing
};

/// The rules in words: what is offered while identifier or version has the focus.
std::string Expected(const Situation& s) {
  const bool edit = (s.rights & 2) != 0, insert = (s.rights & 4) != 0, del = (s.rights & 8) != 0;
  const bool moves = !s.annulled && !s.old;
  const bool byHim = s.chief || s.requester;
  const auto offered = [&](std::string_view action) {
    if (action == "acNewDoc" || action == "acCopyDoc") return insert && s.mayAppend;
    if (action == "acNewVersion") return insert && s.mayAppend && s.status < 6 && !s.annulled;
    if (action == "acForConfirmation") return edit && moves && s.status == 2;
    if (action == "acCorrect") return edit && moves && s.status == 3;
    if (action == "acAnnul") return del && moves && (s.status == 1 || s.status == 2);
    if (action == "acConfirm" || action == "acRefuse") return edit && !s.annulled && s.turn == 2;
    if (action == "acUnconfirm") return edit && !s.annulled && (s.decided == 3 || s.decided == 4);
    if (action == "acUnRefuse") return edit && !s.annulled && s.decided == 1;
    if (action == "acFinish") return edit && moves && s.status > 1 && byHim;
    if (action == "acUnFinish") return edit && moves && s.status == 7 && byHim;
    return action == "acDocSearch" || action == "acPrint" || action == "acRows";
  };
  std::string names;
  for (std::string_view action : kAtKeys) {
    if (offered(action)) names += (names.empty() ? "" : " ") + std::string(action);
  }
  return names;
}

Document DocumentOf(const Situation& s) {
  Document document = MakeDocument(1);
  Set(document.head, "Status", s.status);
  Set(document.head, "OldVersion", s.old);
  if (s.annulled) Set(document.head, "AnnulOn", Stamp{1});
  if (!s.requester) Set(document.head, "Notifier", 999);
  if (s.chief) document.roles.push_back({{"oKindUser", 3}});
  if (s.turn != 0)
    document.roles.push_back(
        {{"oKindUser", 2}, {"oConfirmationLevel", 1}, {"oConfirmationStats", s.turn}});
  if (s.decided != 0)
    document.roles.push_back(
        {{"oKindUser", 1}, {"oConfirmationLevel", 1}, {"oConfirmationStats", s.decided}});
  return document;
}

void CheckOffered(const Situation& s) {
  SCOPED_TRACE("rights " + std::to_string(s.rights) + ", status " + std::to_string(s.status) +
               (s.annulled ? ", annulled" : "") + (s.old ? ", old" : "") + ", turn " +
               std::to_string(s.turn) + ", decided " + std::to_string(s.decided));
  World world(s.rights);
  world.server.admissible = s.mayAppend;
  world.server.documents = {DocumentOf(s)};
  world.Open();
  EXPECT_EQ(world.Live(kAtKeys), Expected(s));
  EXPECT_TRUE(world.Screen().DuplicateLiveKeys().empty());
  world.FocusOn(world.Screen().eVer);
  EXPECT_EQ(world.Live(kAtKeys), Expected(s));
  EXPECT_TRUE(world.Screen().DuplicateLiveKeys().empty());
  const bool writable = s.status == 2 && !s.annulled && !s.old && (s.rights & 2) != 0;
  EXPECT_EQ(world.Screen().diMainInfo.readOnly, !writable);
  EXPECT_EQ(world.Screen().gPOPayPl.canInsert, writable && (s.rights & 4) != 0);
  world.FocusOn(world.Screen().diMainInfo);
  EXPECT_EQ(world.Live(kAtKeys), writable ? "acRows acSave acCancel" : "acRows acCancel");
}

TEST(PurchaseRequestWorkflow, OffersWhatStatusRightsAndRolesAllow) {
  for (const int rights : {1, 1 | 2, 1 | 4, 1 | 8, 15}) {
    for (int status = 1; status <= 7; ++status) {
      for (const int bits : {0, 1, 2, 3, 4, 7, 8, 12, 16, 31}) {
        CheckOffered({.rights = rights,
                      .status = status,
                      .annulled = (bits & 8) != 0,
                      .old = (bits & 16) != 0,
                      .mayAppend = (bits & 1) != 0,
                      .requester = (bits & 2) != 0,
                      .chief = (bits & 4) != 0});
      }
    }
  }
}

TEST(PurchaseRequestWorkflow, OffersDecisionsByTheUsersPart) {
  for (const int rights : {1, 15}) {
    for (const int turn : {0, 1, 2, 3}) {
      for (const int decided : {0, 1, 2, 3, 4}) {
        for (const bool annulled : {false, true})
          CheckOffered({.rights = rights,
                        .status = 4,
                        .annulled = annulled,
                        .turn = turn,
                        .decided = decided});
      }
    }
  }
}

TEST(PurchaseRequestWorkflow, AHigherApprovalKeepsTheLowerOne) {
  struct Case {
    std::vector<int> levels;  ///< statuses, the lowest first
    int own;
    bool mayWithdraw;
  };
  const Case cases[] = {{{3}, 1, true},       {{3, 2}, 1, true},    {{3, 3}, 1, false},
                        {{3, 3}, 2, true},    {{3, 1}, 1, true},    {{3, 2, 3}, 1, false},
                        {{3, 3, 2}, 2, true}, {{3, 3, 2}, 1, false}};
  for (const Case& row : cases) {
    World world;
    Document document = DocumentOf({.status = 4, .decided = 3});
    Set(document.roles.back(), "oConfirmationLevel", row.own);
    int level = 0;
    for (const int status : row.levels) {
      ++level;
      document.adm.push_back({{"PurchaseOrderId", 1},
                              {"PurchaseOrderVer", 1},
                              {"ConfirmationLevel", level},
                              {"ConfLevelLocate", level},
                              {"Status", status}});
    }
    world.server.documents = {document};
    world.Open();
    EXPECT_EQ(world.IsLive("acUnconfirm"), row.mayWithdraw)
        << row.levels.size() << " levels, own " << row.own;
  }
}

TEST(PurchaseRequestWorkflow, F9BelongsToWhoeverIsLive) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  const TAction& send = *world.Screen().FindAction("acForConfirmation");
  const TAction& save = *world.Screen().FindAction("acSave");
  EXPECT_EQ(send.shortcut, KeyStroke(KeyCode::F9));
  EXPECT_EQ(send.hint, "За одобрение");
  EXPECT_TRUE(save.shortcut.IsNone());
  EXPECT_EQ(save.hint, "Запис (F9)");
  world.FocusOn(world.Screen().diMainInfo);
  EXPECT_EQ(save.shortcut, KeyStroke(KeyCode::F9));
  EXPECT_EQ(save.hint, "Запис");
  EXPECT_TRUE(send.shortcut.IsNone());
  EXPECT_EQ(send.hint, "За одобрение (F9)");
  world.Press(KeyCode::F6);  // neither is live: the key stays where it is
  EXPECT_EQ(save.shortcut, KeyStroke(KeyCode::F9));
  EXPECT_FALSE(save.enabled);

  World reader(1);
  reader.server.documents = {MakeDocument(1)};
  reader.Open();
  EXPECT_NE(reader.Screen().FindAction("acForConfirmation")->shortcut,
            reader.Screen().FindAction("acSave")->shortcut);
}

// --- what operations send -----------------------------------------------------------------------

TEST(PurchaseRequestWorkflow, MovesAskThenWriteTheirStatusAndReload) {
  struct Case {
    const char* action;
    const char* caption;
    int from;
    int to;
    int calls;
  };
  const Case cases[] = {
      {"acForConfirmation", "За одобрение", 2, 3, 3},  // with the check of sums
      {"acCorrect", "Корекция", 3, 2, 2},
      {"acFinish", "Приключване", 6, 7, 2},
      {"acUnFinish", "Премахване на приключването", 7, 6, 2},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.action);
    World world;
    world.server.documents = {DocumentOf({.status = row.from, .requester = true})};
    world.Open();
    world.Calls();
    world.Choose(row.action);
    EXPECT_EQ(world.Messages(), std::string("Потвърдете операция \"") + row.caption + "\" !");
    EXPECT_TRUE(world.server.applies.empty());
    world.AnswerYes();
    world.Choose(row.action);
    world.Messages();
    EXPECT_EQ(world.Calls(), row.calls);
    ASSERT_EQ(world.server.applies.size(), 1u);
    const NamedValues& sent = world.server.applies[0].delta.at(0).after;
    EXPECT_EQ(*FindValue(sent, "Status"), Variant(row.to));
    const bool completes = row.to == 7 || row.from == 7;
    EXPECT_EQ(FindValue(sent, "AmendFrom") == nullptr, completes) << "completing amends nothing";
    EXPECT_EQ(world.Screen().values.FDocumentStatus, row.to);
  }
}

TEST(PurchaseRequestWorkflow, AnAnnulmentIsNoAmendment) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.AnswerYes();
  world.Press(Ctrl(KeyCode::F5));
  const NamedValues& sent = world.server.applies.at(0).delta.at(0).after;
  EXPECT_EQ(*FindValue(sent, "AnnulFrom"), Variant("ivanova"));
  EXPECT_NE(FindValue(sent, "AnnulOn"), nullptr);
  EXPECT_EQ(FindValue(sent, "AmendFrom"), nullptr);
  EXPECT_EQ(FindValue(sent, "Status"), nullptr);
  EXPECT_EQ(world.Screen().lStatus.text, "Анулирано");
  EXPECT_TRUE(world.Screen().values.FillAmend);
  EXPECT_EQ(world.Live({"acForConfirmation", "acAnnul", "acNewVersion", "acPrint"}), "acPrint");
}

TEST(PurchaseRequestWorkflow, ARateOfOneIsAskedAboutBeforeSending) {
  World world;
  Document document = MakeDocument(1);
  Set(document.head, "KindCurrency", kDollar);
  world.server.documents = {document};
  world.Open();
  world.AnswerYes(2);
  world.Press(KeyCode::F9);
  EXPECT_EQ(world.Messages(),
            "Потвърдете операция \"За одобрение\" ! | Валутният курс е 1.0000000. Желаете ли "
            "промяна на валутния курс?");
  EXPECT_EQ(world.Focus(), "diMainInfo.RateOfExchange");
  EXPECT_TRUE(world.server.applies.empty());
  world.Press(Ctrl(KeyCode::Z));
  world.AnswerYes();  // and No to the rate
  world.Press(KeyCode::F9);
  EXPECT_EQ(world.server.applies.size(), 1u);
}

TEST(PurchaseRequestWorkflow, ADifferenceOfSumsIsToldAndTheStatusStays) {
  const std::pair<int, std::string> cases[] = {
      {1,
       "Има разлика между сумата от план за плащане и сумата на искането.Стойностите са "
       "съответно  100,50 и  120,00."},
      {0,
       "Има разлика между сумата от план за плащане и сумата от редовете с материали и услуги "
       "с начислено ДДС. Стойностите са съответно 100,50 и  120,00."},
  };
  for (const auto& [isAmount, text] : cases) {
    World world;
    world.server.documents = {MakeDocument(1)};
    world.server.sumCheck = {Decimal(1'200'000, 4), Decimal(1'005'000, 4), isAmount};
    world.Open();
    world.AnswerYes();
    world.Press(KeyCode::F9);
    EXPECT_EQ(world.toolkit.messages.back().text, text);
    EXPECT_EQ(world.toolkit.messages.back().kind, 1);
    EXPECT_EQ(world.Screen().values.FDocumentStatus, 3);
  }
}

TEST(PurchaseRequestWorkflow, DecisionsWriteOneRowAndReloadWithTwoCalls) {
  struct Case {
    const char* action;
    int turn, decided;
    int status;
    bool withdrawn;
  };
  const Case cases[] = {{"acConfirm", 2, 0, 3, false},
                        {"acRefuse", 2, 0, 1, false},
                        {"acUnconfirm", 0, 3, 2, true},
                        {"acUnRefuse", 0, 1, 2, true}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.action);
    World world;
    Document document = DocumentOf({.status = 3, .turn = row.turn, .decided = row.decided});
    document.adm = {{{"PurchaseOrderId", 1},
                     {"PurchaseOrderVer", 1},
                     {"ConfirmationLevel", 1},
                     {"ConfLevelLocate", 1},
                     {"SendingNumber", 4},
                     {"Status", row.decided == 0 ? 2 : row.decided},
                     {"ConfirmedFrom", row.withdrawn ? Variant(kIvanova) : Variant()}}};
    world.server.documents = {document};
    world.Open();
    world.Calls();
    world.AnswerYes();
    world.Choose(row.action);
    EXPECT_EQ(world.Calls(), 2);
    const ApplyRequest& applied = world.server.applies.at(0);
    EXPECT_EQ(applied.ownerData.AsArray()->size(), 5u);
    EXPECT_EQ(applied.maxErrors, -1);
    const Change& change = applied.delta.at(0);
    EXPECT_EQ(*FindValue(change.before, "SendingNumber"), Variant(4));
    EXPECT_EQ(*FindValue(change.after, "Status"), Variant(row.status));
    const char* by = row.withdrawn ? "UnConfirmedFrom" : "ConfirmedFrom";
    EXPECT_EQ(*FindValue(change.after, by), Variant(kIvanova));
    const Variant* approver = FindValue(change.after, "ConfirmedFrom");
    EXPECT_EQ(approver != nullptr && approver->IsNull(), row.withdrawn);
  }
}

TEST(PurchaseRequestWorkflow, ARefusedMoveChangesNothing) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.server.refuseNext = Refused("Искане 1 няма редове. Въведете поне един и го изпратете.");
  world.AnswerYes();
  world.Press(KeyCode::F9);
  EXPECT_EQ(world.toolkit.messages.back().text,
            "Искане 1 няма редове. Въведете поне един и го изпратете.");
  EXPECT_EQ(world.Screen().values.FDocumentStatus, 2);
  EXPECT_EQ(world.Focus(), "eIdNum");
  for (const MethodCall& call : world.server.methods)
    EXPECT_TRUE(call.arguments.empty() || call.arguments[0] != Variant("GetSumCheck"));
}

TEST(PurchaseRequestWorkflow, AMoveThatMeetsAnothersChangeIsNotLeftInEdit) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  world.server.refuseNext = Failure{FailureKind::Conflict, "Искане 1 е променено от petrov."};
  world.server.presentNext = {{"Status", 3}};
  world.AnswerYes();
  world.Press(KeyCode::F9);  // the table of differences is left without a choice
  EXPECT_EQ(world.Head().State(), DataSetState::Browse);
  EXPECT_EQ(world.Head().ChangeCount(), 0u);
  EXPECT_EQ(world.Screen().values.FDocumentStatus, 2);
}

// --- the search report --------------------------------------------------------------------------

TfPurchaseOrderReport& ReportOf(TVosBaseForm& form) {
  return static_cast<TfPurchaseOrderReport&>(form);
}

TEST(PurchaseRequestReport, BuildsItsStatementFromTheFilter) {
  World world;
  world.server.documents = {MakeDocument(1)};
  world.Open();
  std::string caption, columns;
  world.toolkit.modals.push_back([&](TVosBaseForm& form) {
    caption = form.caption;
    auto& filter = dynamic_cast<TVosDataInspector&>(*form.FindControl("diFilter"));
    const auto type = [&](std::string_view field, std::string_view text) {
      filter.FocusField(field);
      fakes::Type(form, text);
      fakes::Press(form, Shift(KeyCode::Tab));
    };
    type("ToId", "500");
    type("FromDate", "01.03.2026");
    type("Supplier", "20117");
    type("SerialNumber", "20045");
    type("Annuled", " ");
    fakes::Press(form, KeyCode::F9);
    columns = world.Columns(dynamic_cast<TVosDBGrid&>(*form.FindControl("gResult")));
  });
  world.Press(Ctrl(KeyCode::F10));
  EXPECT_EQ(caption, "Нова версия \"Искания за покупка\"");
  EXPECT_EQ(columns, "POIdNumber POVersion CostCenter CCName Description lupStatusName");
  const std::string& sql = world.server.fetches.back().sql;
  EXPECT_TRUE(sql.ends_with(
      "WHERE 1=1\n AND po.CreatedFrom = 'ivanova' AND po.POIdNumber <= 500 AND po.DocumentDate >= "
      "'20260301' AND po.Supplier = 20117 AND po.AnnulOn IS NOT NULL  AND po.POIdNumber IN "
      "(SELECT PurchaseOrderId FROM PurchaseOrderDet WHERE SerialNumber = 20045)  AND "
      "po.OldVersion = 0 "))
      << sql;
  EXPECT_EQ(world.server.fetches.back().serverClass, "TsmPurchaseOrderReport");
  EXPECT_EQ(world.server.fetches.back().provider, "dspResult");
}

TEST(PurchaseRequestReport, ReturnsWhatWasChosenOrMade) {
  struct Case {
    KeyStroke key;  ///< of the request screen
    const char* question;
    std::int64_t made;
    const char* shown;
  };
  const Case cases[] = {
      {Ctrl(KeyCode::S), "", 0, "7/1"},
      {Ctrl(KeyCode::F10), "Потвърдете създаването на нова версия!", 8, "8/1"},
      {Ctrl(KeyCode::K), "Потвърдете копирането!", 8, "8/1"},
      {Ctrl(KeyCode::K), "Потвърдете копирането!", 0, "9/1"},  // refused: nothing changes
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.question);
    World world;
    world.server.documents = {MakeDocument(7), MakeDocument(8), MakeDocument(9)};
    world.server.tables["PurchaseOrder"] = {{{"POIdNumber", 7}, {"POVersion", 1}}};
    world.server.newRec = {row.made == 0 ? 0 : 1, row.made, 1};
    world.Open();
    bool filterOwns = false, chooseOwns = false;
    world.toolkit.modals.push_back([&](TVosBaseForm& form) {
      filterOwns = !form.FindAction("acFilter")->shortcut.IsNone() &&
                   form.FindAction("acChoose")->shortcut.IsNone();
      fakes::Press(form, KeyCode::F9);
      chooseOwns = !form.FindAction("acChoose")->shortcut.IsNone() &&
                   form.FindAction("acFilter")->shortcut.IsNone();
      if (*row.question != 0) world.AnswerYes();
      fakes::Press(form, KeyCode::F9);
      EXPECT_EQ(ReportOf(form).Success, row.made != 0 || *row.question == 0);
    });
    world.Press(row.key);
    EXPECT_TRUE(filterOwns && chooseOwns);
    EXPECT_EQ(world.Messages(), row.question);
    EXPECT_EQ(world.Screen().eIdNum.Text() + "/" + world.Screen().eVer.Text(), row.shown);
    EXPECT_EQ(world.Focus(), "eIdNum");
  }
}

}  // namespace
}  // namespace orvane::modules::requests
