#include <thread>

#include "server/server_case.h"

namespace orvane::server {
namespace {

class Applying : public ServerCase {
 protected:
  Applying() : server(GetParam()) {
    server.AddUser("ivanova");
    server.AddUser("petrov");
    ivanova = server.LogIn("ivanova");
    petrov = server.LogIn("petrov");
  }

  Answer<ApplyAnswer> Apply(const Delta& delta, std::int32_t maxErrors = 0) {
    return server->Apply(ivanova.At(Point::Departments), DepartmentApply(delta, maxErrors));
  }
  /// Outcomes one after the other: "ok Refused -".
  std::string Outcomes(const Delta& delta, std::int32_t maxErrors = 0) {
    const auto answer = Apply(delta, maxErrors);
    if (!answer) return Outcome(answer);
    std::string text;
    for (const ChangeOutcome& outcome : answer->outcomes) {
      text += (text.empty() ? "" : " ") + Outcome(outcome);
    }
    return text;
  }
  /// The message of a single change's failure.
  std::string Message(const Change& change) {
    const auto answer = Apply({change});
    if (!answer) return answer.GetFailure().message;
    const auto& failure = answer->outcomes.front().failure;
    return failure ? failure->message : "";
  }
  std::int64_t Count(const std::string& table) {
    return *server.Value("select count(*) from " + table, ValueKind::Code).AsInt();
  }

  TestServer server;
  TestSession ivanova;
  TestSession petrov;
};
INSTANTIATE_TEST_SUITE_P(Engines, Applying, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Applying, EveryKindOfChangeNeedsItsRightAtAPointOfTheClass) {
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "Една", "petrov"))}), "ok");
  int code = 10;
  for (const Point point : {Point::Departments, Point::Structure}) {
    for (int rights = 0; rights <= kAllRights; ++rights) {
      ASSERT_TRUE(server.Admin().Grant("ivanova", static_cast<std::int32_t>(point), rights));
      const Caller caller = ivanova.At(point);
      const auto try1 = [&](const Change& change) {
        const auto answer = server->Apply(caller, DepartmentApply({change}));
        return answer ? Outcome(answer->outcomes.front()) : Outcome(answer);
      };
      const auto expected = [&](Right right) {
        const bool may = (rights & static_cast<int>(right)) != 0 && point == Point::Departments;
        return may ? "ok" : "NoRight";
      };
      const std::string name = "Име " + std::to_string(rights);
      const std::string old =
          server.Value("select Name from Department where Code = 1", ValueKind::String).ToText();
      ++code;
      EXPECT_EQ(Outcome(server->Fetch(caller, {DepartmentFetch()})), expected(Right::Open));
      EXPECT_EQ(try1(UpdateOf({{"Code", 1}, {"Name", old}}, {{"Name", name}})),
                expected(Right::Edit))
          << rights;
      EXPECT_EQ(try1(InsertOf(Department(code, "Нова", "petrov"))), expected(Right::Insert))
          << rights;
      server.Execute(
          {"insert into Department (Code, Name, FoldName, Chief) values (9, 'x', 'x', "
           "'petrov') on conflict do nothing",
           {},
           {}});
      EXPECT_EQ(try1(DeleteOf({{"Code", 9}, {"Name", "x"}})), expected(Right::Delete)) << rights;
    }
  }
}

TEST_P(Applying, MaximumErrorsDecideWhatIsKept) {
  const auto insert = [](int code, const std::string& chief) {
    return InsertOf(Department(code, "Име", chief));
  };
  const Delta good = {insert(1, "petrov"), insert(2, "petrov")};
  const Delta duplicate = {insert(3, "petrov"), insert(1, "petrov"), insert(4, "petrov")};
  const Delta badValue = {insert(5, "petrov"), insert(6, ""), insert(7, "petrov")};
  const Delta unknownChief = {insert(8, "nobody"), insert(9, "petrov")};
  EXPECT_EQ(Outcomes(good, 0), "ok ok");
  EXPECT_EQ(Departments(server), "1 Име petrov; 2 Име petrov");
  EXPECT_EQ(Outcomes(duplicate, 0), "- Refused -");
  EXPECT_EQ(Outcomes(badValue, 0), "- Refused -");
  EXPECT_EQ(Outcomes(unknownChief, 0), "Refused -");
  EXPECT_EQ(Departments(server), "1 Име petrov; 2 Име petrov") << "nothing of a failed apply stays";
  EXPECT_EQ(Outcomes(duplicate, -1), "ok Refused ok");
  EXPECT_EQ(Outcomes(badValue, -1), "ok Refused ok");
  EXPECT_EQ(Outcomes(unknownChief, -1), "Refused ok");
  EXPECT_EQ(Count("Department"), 7);
  EXPECT_EQ(Outcomes({insert(20, "petrov")}, 3), "BadRequest");
}

TEST_P(Applying, RefusalsAreWholeSentences) {
  ASSERT_EQ(Outcomes({InsertOf(Department(7, "Седма", "petrov"))}), "ok");
  struct Row {
    Change change;
    const char* message;
  };
  const NamedValues seventh = {{"Code", 7}};
  const Row rows[] = {
      {InsertOf(Department(7, "Друга", "petrov")),
       "!!Err_Вече има дирекция с код 7. Изберете друг код."},
      {InsertOf(Department(8, "Осма", "nobody")),
       "!!Err_Няма потребител „nobody“, който да е началник на дирекцията. Изберете друг "
       "началник."},
      {InsertOf(Department(8, " \t", "petrov")),
       "!!Err_Поле „Име“: Текстът съдържа недопустими знаци."},
      {InsertOf(Department(8, "   ", "petrov")), "!!Err_Попълнете стойност в поле „Име“."},
      {InsertOf({{"Code", 8}, {"Name", "Осма"}}),
       "!!Err_Попълнете стойност в поле „Началник(В.И.Д.)“."},
      {InsertOf(Department(8, "Ред\nдве", "petrov")),
       "!!Err_Поле „Име“: Текстът съдържа недопустими знаци."},
      {InsertOf(Department(8, std::string(41, 'x'), "petrov")),
       "Поле „Име“: Текстът е по-дълъг от 40 знака."},
      {InsertOf(Department(40000, "Име", "petrov")),
       "Поле „Код“: Стойността е извън допустимите граници."},
      {InsertOf({{"Code", "осем"}, {"Name", "Осма"}, {"Chief", "petrov"}}),
       "Поле „Код“: Стойността не е от очаквания вид."},
      {InsertOf({{"Code", 8}, {"Name", "Осма"}, {"Chief", "petrov"}, {"FoldName", "x"}}),
       "Непознато поле „FoldName“."},
      {UpdateOf(seventh, {{"Name", "Нова"}}), "Липсва старата стойност на поле „Name“."},
      {UpdateOf({{"Name", "Седма"}}, {{"Name", "Нова"}}), "Липсва ключът „Code“ на реда."},
      {UpdateOf({{"Code", 7}, {"Chief", "petrov"}}, {{"Chief", Variant()}}),
       "!!Err_Попълнете стойност в поле „Началник(В.И.Д.)“."},
      {DeleteOf({}), "Липсва ключът „Code“ на реда."},
  };
  for (const Row& row : rows)
    EXPECT_EQ(Message(row.change), row.message);
  EXPECT_EQ(Departments(server), "7 Седма petrov");
}

TEST_P(Applying, ARowChangedMeanwhileIsAConflictThatShowsIt) {
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "Една", "petrov"))}), "ok");
  const NamedValues loaded = {{"Code", 1}, {"Name", "Една"}};
  ASSERT_TRUE(server->Apply(petrov.At(Point::Departments),
                            DepartmentApply({UpdateOf(loaded, {{"Name", "Първа"}})})));
  const auto answer = Apply({UpdateOf(loaded, {{"Name", "Моя"}})});
  ASSERT_TRUE(answer);
  const ChangeOutcome& outcome = answer->outcomes.front();
  EXPECT_EQ(Outcome(outcome), "Conflict");
  EXPECT_EQ(outcome.failure->message,
            "Редът междувременно е променен от „Потребител petrov“. Поле „Име“ вече е „Първа“.");
  EXPECT_EQ(outcome.changedBy, "Потребител petrov");
  EXPECT_EQ(FindValue(outcome.present, "Name")->ToText(), "Първа");
  EXPECT_EQ(FindValue(outcome.present, "Chief")->ToText(), "petrov");
  EXPECT_EQ(Departments(server), "1 Първа petrov");
  // Another column of the same row is nobody's conflict.
  EXPECT_EQ(Outcomes({UpdateOf({{"Code", 1}, {"Chief", "petrov"}}, {{"Chief", "ivanova"}})}), "ok");
  EXPECT_EQ(Departments(server), "1 Първа ivanova");
  // Old values are compared byte for byte, null is a value.
  EXPECT_EQ(Outcomes({UpdateOf({{"Code", 1}, {"Name", "първа"}}, {{"Name", "Х"}})}), "Conflict");
  EXPECT_EQ(Outcomes({UpdateOf({{"Code", 1}, {"Name2", ""}}, {{"Name2", "X"}})}), "Conflict");
  EXPECT_EQ(Outcomes({UpdateOf({{"Code", 1}, {"Name2", Variant()}}, {{"Name2", "X"}})}), "ok");
  EXPECT_EQ(Outcomes({DeleteOf({{"Code", 1}, {"Name", "Една"}})}), "Conflict");
  ASSERT_EQ(Outcomes({DeleteOf({{"Code", 1}, {"Name", "Първа"}})}), "ok");
  const auto gone = Apply({UpdateOf({{"Code", 1}, {"Name", "Първа"}}, {{"Name", "Х"}})});
  EXPECT_EQ(gone->outcomes.front().failure->message,
            "Редът междувременно е изтрит от „Потребител ivanova“.");
  EXPECT_TRUE(gone->outcomes.front().present.empty());
}

TEST_P(Applying, OfTwoUsersAtOnceOneWinsAndTheOtherSeesIt) {
  constexpr int kRounds = 40;
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "0", "petrov"))}), "ok");
  std::atomic<int> won{0};
  std::atomic<int> lost{0};
  const auto walk = [&](const TestSession& session) {
    for (int round = 0; round < kRounds; ++round) {
      // Both start from the round's name; each tries until the round is over.
      const Change change = UpdateOf({{"Code", 1}, {"Name", std::to_string(round)}},
                                     {{"Name", std::to_string(round + 1)}});
      const auto answer = server->Apply(session.At(Point::Departments), DepartmentApply({change}));
      ASSERT_TRUE(answer) << answer.GetFailure().message;
      const std::string outcome = Outcome(answer->outcomes.front());
      ASSERT_TRUE(outcome == "ok" || outcome == "Conflict") << outcome;
      ++(outcome == "ok" ? won : lost);
      while (
          server.Value("select Name from Department where Code = 1", ValueKind::String).ToText() ==
          std::to_string(round)) {
        std::this_thread::yield();
      }
    }
  };
  std::thread first(walk, ivanova);
  std::thread second(walk, petrov);
  first.join();
  second.join();
  EXPECT_EQ(won, kRounds);
  EXPECT_EQ(lost, kRounds);
  EXPECT_EQ(Departments(server), "1 40 petrov");
  EXPECT_EQ(server
                .Value("select count(*) from History where Kind = 'U' and TableName = "
                       "'Department'",
                       ValueKind::Code)
                .AsInt(),
            kRounds);
}

TEST_P(Applying, ARepeatedKeyIsAnsweredAgainAndNothingHappensTwice) {
  const Change insert = InsertOf(Department(1, "Една", "petrov"));
  ASSERT_EQ(Outcomes({insert}), "ok");
  const std::int64_t history = Count("History");
  EXPECT_EQ(Outcomes({insert}), "ok");
  const Change update = UpdateOf({{"Code", 1}, {"Name", "Една"}}, {{"Name", "Първа"}});
  ASSERT_EQ(Outcomes({update}), "ok");
  EXPECT_EQ(Outcomes({update}), "ok") << "not a conflict with itself";
  EXPECT_EQ(Count("History"), history + 1);
  EXPECT_EQ(Departments(server), "1 Първа petrov");

  // The known part of a longer delta is answered, the rest carried out.
  const Change another = InsertOf(Department(2, "Две", "petrov"));
  EXPECT_EQ(Outcomes({insert, another}), "ok ok");
  EXPECT_EQ(Departments(server), "1 Първа petrov; 2 Две petrov");

  // The same key under other contents is a client's mistake; another user's key is his own.
  Change forged = InsertOf(Department(3, "Три", "petrov"));
  forged.clientKey = insert.clientKey;
  EXPECT_EQ(Outcomes({forged}), "BadRequest");
  const auto other = server->Apply(petrov.At(Point::Departments), DepartmentApply({forged}));
  ASSERT_TRUE(other);
  EXPECT_EQ(Outcome(other->outcomes.front()), "ok");
  EXPECT_EQ(Outcomes({InsertOf(Department(4, "Х", "petrov")), forged}), "- BadRequest");

  // What failed was not carried out, and may be tried again under its key.
  const Change tooEarly = InsertOf(Department(5, "Пет", "georgieva"));
  EXPECT_EQ(Outcomes({tooEarly}), "Refused");
  server.AddUser("georgieva");
  EXPECT_EQ(Outcomes({tooEarly}), "ok");

  Change keyless = InsertOf(Department(6, "Шест", "petrov"));
  keyless.clientKey.clear();
  EXPECT_EQ(Outcomes({keyless}), "BadRequest");
  EXPECT_EQ(Outcomes({another, another}), "BadRequest");
}

TEST_P(Applying, ClientKeysAreForgottenAfterSevenDays) {
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "Една", "petrov"))}), "ok");
  constexpr std::int64_t kDay = 24LL * 3600 * 1'000'000;
  server.Time().Set({server.Time().Now().micros + 6 * kDay});
  server.LogIn("petrov");
  EXPECT_EQ(Count("ClientKey"), 1);
  server.Time().Set({server.Time().Now().micros + kDay + 1});
  server.LogIn("petrov");
  EXPECT_EQ(Count("ClientKey"), 0);
}

TEST_P(Applying, HistoryHasARowPerChangedColumn) {
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "Една", "petrov"))}), "ok");
  ASSERT_EQ(Outcomes({UpdateOf({{"Code", 1}, {"Name", "Една"}, {"Chief", "petrov"}},
                               {{"Name", "Първа"}, {"Chief", "ivanova"}})}),
            "ok");
  ASSERT_EQ(Outcomes({UpdateOf({{"Code", 1}}, {})}), "ok") << "nothing changed, nothing written";
  ASSERT_EQ(Outcomes({DeleteOf(Department(1, "Първа", "ivanova"))}), "ok");
  const Statement select{
      "select Kind, RowKey, ColumnName, OldValue, NewValue, ChangedBy, MachineName from History "
      "where TableName = 'Department' order by Id",
      {},
      {{"Kind", ValueKind::String, 1},
       {"RowKey", ValueKind::Memo, 0},
       {"ColumnName", ValueKind::Memo, 0},
       {"OldValue", ValueKind::Memo, 0},
       {"NewValue", ValueKind::Memo, 0},
       {"ChangedBy", ValueKind::Memo, 0},
       {"MachineName", ValueKind::Memo, 0}}};
  const auto packets = server.Base().ReadSnapshot({&select, 1});
  ASSERT_TRUE(packets);
  std::string text;
  const DataPacket& rows = packets->front();
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    for (std::size_t column = 0; column < rows.columns.size(); ++column) {
      const Variant value = rows.At(row, column);
      text += (column == 0 ? "" : "|") + (value.IsNull() ? "-" : value.ToText());
    }
    text += '\n';
  }
  EXPECT_EQ(text,
            "I|1|Code|-|1|ivanova|TEST-PC\n"
            "I|1|Name|-|Една|ivanova|TEST-PC\n"
            "I|1|Name2|-|-|ivanova|TEST-PC\n"
            "I|1|Chief|-|petrov|ivanova|TEST-PC\n"
            "U|1|Name|Една|Първа|ivanova|TEST-PC\n"
            "U|1|Chief|petrov|ivanova|ivanova|TEST-PC\n"
            "D|1|Code|1|-|ivanova|TEST-PC\n"
            "D|1|Name|Първа|-|ivanova|TEST-PC\n"
            "D|1|Name2|-|-|ivanova|TEST-PC\n"
            "D|1|Chief|ivanova|-|ivanova|TEST-PC\n");
}

TEST_P(Applying, FoldsAreWrittenBesideTheirTexts) {
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "ЩЪРКЕЛ ", "petrov"))}), "ok");
  const auto fold = [&](const std::string& column) {
    return server.Value("select " + column + " from Department", ValueKind::String);
  };
  EXPECT_EQ(fold("FoldName").ToText(), "щъркел");
  EXPECT_TRUE(fold("FoldName2").IsNull());
  ASSERT_EQ(Outcomes({UpdateOf({{"Code", 1}, {"Name2", Variant()}}, {{"Name2", "STORK"}})}), "ok");
  EXPECT_EQ(fold("FoldName2").ToText(), "stork");
}

TEST_P(Applying, ATransactionThatIsCutLeavesNothing) {
  const auto cut = [&] {
    auto transaction = server.Base().Begin();
    ASSERT_TRUE(transaction);
    ASSERT_TRUE((*transaction)
                    ->Execute({"insert into Department (Code, Name, FoldName, Chief) values (1, "
                               "'x', 'x', 'petrov')",
                               {},
                               {}}));
  };
  cut();
  EXPECT_EQ(Departments(server), "");
  EXPECT_EQ(Outcomes({InsertOf(Department(1, "Една", "petrov"))}), "ok");
}

TEST_P(Applying, AChangedKeyIsAnUpdateOfTheRow) {
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "Една", "petrov")),
                      InsertOf(Department(2, "Две", "petrov"))}),
            "ok ok");
  EXPECT_EQ(Outcomes({UpdateOf({{"Code", 1}}, {{"Code", 3}})}), "ok");
  EXPECT_EQ(Departments(server), "2 Две petrov; 3 Една petrov");
  EXPECT_EQ(Message(UpdateOf({{"Code", 2}}, {{"Code", 3}})),
            "!!Err_Вече има дирекция с код 3. Изберете друг код.");
}

TEST_P(Applying, ADepartmentThatIsUsedStays) {
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "Една", "petrov")),
                      InsertOf(Department(2, "Две", "petrov"))}),
            "ok ok");
  server.Execute(
      {"insert into CostCenters (CostCenter, Name, FoldName) values (1001, 'Ц', 'ц')", {}, {}});
  server.Execute({"insert into Structure (CostCenter, Department) values (1001, 1)", {}, {}});
  server.Execute(
      {"insert into StructureDeputies (IdNumber, StructuralUnitType, Department) values "
       "(1, 3, 2)",
       {},
       {}});
  constexpr char kInStructure[] =
      "!!Err_Дирекция 1 е в организационната структура на център за разход 1001. Изберете първо "
      "друга дирекция за него.";
  EXPECT_EQ(Message(DeleteOf({{"Code", 1}})), kInStructure);
  EXPECT_EQ(Message(UpdateOf({{"Code", 1}}, {{"Code", 9}})), kInStructure);
  EXPECT_EQ(Message(DeleteOf({{"Code", 2}})),
            "!!Err_За дирекция 2 са посочени заместници. Изтрийте първо заместниците ѝ.");
  EXPECT_EQ(Departments(server), "1 Една petrov; 2 Две petrov");
}

TEST_P(Applying, FetchesComeWholeOrInPortionsByKey) {
  for (const int code : {5, 1, 4, 2, 3}) {
    ASSERT_EQ(Outcomes({InsertOf(Department(code, "Име", "petrov"))}), "ok");
  }
  const auto codes = [&](FetchRequest request) {
    std::string text;
    for (int portion = 0; portion < 10; ++portion) {
      const auto packets = server->Fetch(ivanova.At(Point::Departments), {request});
      if (!packets) return packets.GetFailure().message;
      const DataPacket& packet = packets->front();
      EXPECT_TRUE(packet.IsSound());
      for (std::size_t row = 0; row < packet.rowCount; ++row) {
        text += packet.At(row, "Code").ToText();
      }
      if (packet.continuation.empty()) return text;
      request.continuation = packet.continuation;
      text += '|';
    }
    return text + "…";
  };
  FetchRequest request = DepartmentFetch();
  EXPECT_EQ(codes(request), "12345");
  request.rowLimit = 2;
  EXPECT_EQ(codes(request), "12|34|5");
  request.rowLimit = 5;
  EXPECT_EQ(codes(request), "12345");
  request.continuation = "a1:s3:xyz";
  EXPECT_EQ(codes(request), "Грешно продължение.");
}

TEST_P(Applying, TwoProvidersTravelTogetherAndAPostIsFewStatements) {
  ASSERT_EQ(Outcomes({InsertOf(Department(1, "Една", "petrov"))}), "ok");
  const EngineCounters& counters = server.Base().Counters();
  std::int64_t statements = counters.statements;
  std::int64_t roundTrips = counters.roundTrips;
  ASSERT_TRUE(
      server->Fetch(ivanova.At(Point::Departments), {DepartmentFetch(), DepartmentFetch()}));
  if (GetParam() == Engine::Postgres) {
    EXPECT_EQ(counters.roundTrips - roundTrips, 1);
  }
  EXPECT_LE(counters.statements - statements, 3 + 2) << "guard, two selects, begin and commit";

  statements = counters.statements;
  roundTrips = counters.roundTrips;
  ASSERT_EQ(Outcomes({UpdateOf({{"Code", 1}, {"Name", "Една"}}, {{"Name", "Първа"}})}), "ok");
  if (GetParam() == Engine::Postgres) {
    EXPECT_LE(counters.roundTrips - roundTrips, 3);
  }
  EXPECT_LE(counters.statements - statements, 5 + 2)
      << "guard, keys, update, history, key, begin and commit";
}

}  // namespace
}  // namespace orvane::server
