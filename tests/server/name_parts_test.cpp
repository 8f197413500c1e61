// Parts of names: what the indexes of trigrams find is what reading every name finds.

#include <random>

#include "packet/fold.h"
#include "server/check/check.h"
#include "server/dialect_world.h"
#include "server/schema/migrate.h"
#include "support/engine_steps.h"
#include "support/seed.h"

namespace orvane::server {
namespace {

/// So many that a word which nearly all names have is met sooner than looked up.
constexpr int kNames = 1500;

class NameParts : public testing::TestWithParam<TestEngine> {
 protected:
  NameParts() : database_(FreshDatabase(GetParam())), random_(Seed()) {
    Run({Sql("insert into Measures (Code, Name, FoldName, Numerator) values (100, 'бр', 'бр', 1)"),
         Sql("insert into KindSupplyLists (Code, Name, FoldName) values (1, 'а', 'а')")});
    std::vector<Statement> rows;
    for (int code = 1; code <= kNames; ++code)
      AddRow(rows, code);
    Run(std::move(rows));
    EXPECT_TRUE(database_->RunScript("analyze"));
  }

  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

  /// Letters of either case, what patterns and quotes are made of, and more than two bytes.
  std::string Letters(int most) {
    constexpr std::string_view kLetters[] = {"а", "А", "б",  "Б", "в",  "1", " ", "%",
                                             "_", "[", "\\", "'", "\"", "*", "€", "𝄞"};
    std::string text;
    for (int left = Below(most + 1); left > 0; --left)
      text += kLetters[Below(std::size(kLetters))];
    return text;
  }
  std::string Name() { return (Below(8) == 0 ? "" : "Фирма ") + Letters(10); }

  void AddRow(std::vector<Statement>& rows, int code) {
    const std::string name = Name();
    const Variant name2 = Below(3) == 0 ? Variant() : Variant(Letters(12));
    const Variant fold2 = name2.IsNull() ? Variant() : Variant(Fold(name2.ToText()));
    const VariantArray values = {code, name, name2, Fold(name), fold2};
    rows.push_back(
        Sql("insert into Partners (Partner, Name, Name2, FoldName, FoldName2)"
            " values (?1, ?2, ?3, ?4, ?5)",
            values));
    rows.push_back(
        Sql("insert into BaseSupplyList (SerialNumber, Name, Name2, FoldName, FoldName2,"
            " Kind, Measure) values (?1, ?2, ?3, ?4, ?5, 1, 100)",
            values));
    if (code % 2 == 0) {
      rows.push_back(Sql(
          "insert into SupplyLists (KindList, SerialNumber, Measure) values (1, ?1, 100)", {code}));
    }
  }

  /// Names change and rows go.
  void Disturb() {
    std::vector<Statement> steps;
    for (int i = 0; i < 20; ++i) {
      const std::string name = Name();
      const VariantArray values = {1 + Below(kNames), name, Fold(name)};
      steps.push_back(
          Sql("update Partners set Name = ?2, FoldName = ?3 where Partner = ?1", values));
      steps.push_back(
          Sql("update BaseSupplyList set Name2 = ?2, FoldName2 = ?3"
              " where SerialNumber = ?1",
              values));
      steps.push_back(Sql("delete from Partners where Partner = ?1", {1 + Below(kNames)}));
      const int gone = 1 + Below(kNames);
      steps.push_back(Sql("delete from SupplyLists where SerialNumber = ?1", {gone}));
      steps.push_back(Sql("delete from BaseSupplyList where SerialNumber = ?1", {gone}));
    }
    Run(std::move(steps));
  }

  void Run(std::vector<Statement> statements) {
    auto transaction = database_->Begin();
    ASSERT_TRUE(transaction);
    const auto done = (*transaction)->ExecuteAll(statements);
    ASSERT_TRUE(done) << done.GetFailure().text;
    ASSERT_TRUE((*transaction)->Commit());
  }

  Answer<RenderedSearch> Render(const std::string& sql, const std::string& pattern,
                                const std::string& continuation = "") {
    const NamedValues params = {{"P", pattern}};
    SearchInput input{sql, params, 80, continuation, GetParam()};
    input.mayRead = [](const CatalogueTable&) { return true; };
    return RenderSearch(input);
  }

  /// All rows, portion by portion, behind the fence.
  std::string Found(const std::string& sql, const std::string& pattern) {
    std::string rows;
    std::string continuation;
    do {
      const auto search = Render(sql, pattern, continuation);
      if (!search) return search.GetFailure().message;
      const Statement guard = Sql("select count(*) from Session", {}, {{"n", ValueKind::Code, 0}});
      auto packets = database_->Search(guard, {&search->statement, 1}, {});
      if (!packets) return packets.GetFailure().text + "\n" + search->statement.text;
      const DataPacket portion = FinishPortion(*search, std::move(packets->back()));
      rows += RowsOf(portion) + "; ";
      continuation = portion.continuation;
    } while (!continuation.empty());
    return rows;
  }

  std::unique_ptr<Database> database_;
  std::mt19937 random_;
};
INSTANTIATE_TEST_SUITE_P(Engines, NameParts, testing::ValuesIn(TestEngines()), TestEngineName);

/// A statement up to its condition; {n} is the column, and what the index does not serve.
struct Source {
  std::string sql;
  std::string columns[2];
  std::string order;
};
const Source kSources[] = {
    {"SELECT Partner FROM Partners WHERE ", {"Name", "Name2"}, " ORDER BY Name"},
    {"SELECT Partner FROM Partners WHERE Partner > 50 AND ",
     {"Name", "Name2"},
     " ORDER BY Name2 DESC"},
    {"SELECT Partner FROM Partners WHERE ", {"Name", "Name2"}, ""},
    {"SELECT DISTINCT Name2 FROM Partners WHERE ", {"Name", "Name2"}, ""},
    {"SELECT SerialNumber FROM BaseSupplyList WHERE ",
     {"EffectiveName", "EffectiveName2"},
     " ORDER BY EffectiveName"},
    {"SELECT B.SerialNumber, P.Measure FROM SupplyLists P INNER JOIN BaseSupplyList B"
     " ON P.SerialNumber = B.SerialNumber WHERE P.KindList = 1 AND ",
     {"B.EffectiveName", "B.EffectiveName2"},
     " ORDER BY B.EffectiveName"},
};

TEST_P(NameParts, TheIndexFindsWhatReadingAllNamesFinds) {
  constexpr int kPatterns = 120;
  int found = 0;
  for (int i = 0; i < kPatterns; ++i) {
    if (i % 20 == 19) Disturb();
    const Source& source = kSources[i % std::size(kSources)];
    const std::string& column = source.columns[Below(4) == 0 ? 1 : 0];
    std::string part = Below(3) == 0 ? "ма " + Letters(2) : Letters(5);
    const auto mark = part.find('[');  // begins a set of characters, which is not read
    if (mark != std::string::npos) part.replace(mark, 1, "[[]");
    const std::string pattern = (Below(9) == 0 ? "" : "%") + part + (Below(9) == 0 ? "" : "%");
    SCOPED_TRACE(source.sql + column + " LIKE " + pattern + source.order);
    const std::string indexed = Found(source.sql + column + " LIKE :P" + source.order, pattern);
    const std::string plain =
        Found(source.sql + "CAST(" + column + " AS VARCHAR(90)) LIKE :P" + source.order, pattern);
    ASSERT_EQ(indexed, plain);
    if (indexed.size() > 2) ++found;
  }
  EXPECT_GT(found, kPatterns / 8) << "patterns that find something";
  const auto findings = CheckDatabase(*database_, Stamp{0});
  ASSERT_TRUE(findings) << findings.GetFailure().message;
  for (const std::string& finding : *findings)
    EXPECT_EQ(finding.find("част от име"), std::string::npos) << finding;
}

TEST_P(NameParts, AnIndexServesThreeCharactersAndMore) {
  const bool sqlite = GetParam() == Engine::Sqlite;
  const auto plan = [&](const std::string& sql, const std::string& pattern) {
    const auto search = Render(sql, pattern);
    EXPECT_TRUE(search);
    Statement explain{(sqlite ? "explain query plan " : "explain ") + search->statement.text,
                      search->statement.params,
                      {}};
    explain.columns = {{"line", ValueKind::Memo, 0}};
    if (sqlite)
      explain.columns = {{"id", ValueKind::Int32, 0},
                         {"parent", ValueKind::Int32, 0},
                         {"unused", ValueKind::Int32, 0},
                         {"line", ValueKind::Memo, 0}};
    const auto transaction = *database_->Begin();
    const auto packet = transaction->Query(explain);
    EXPECT_TRUE(packet) << packet.GetFailure().text;
    std::string lines;
    for (std::size_t row = 0; row < packet->rowCount; ++row)
      lines += packet->At(row, "line").ToText() + "\n";
    return lines;
  };
  if (!sqlite) {  // what waits to be sorted in makes an index dear
    ASSERT_TRUE(database_->RunScript("select SortNameParts()"));
  }
  for (const Source& source : kSources) {
    if (source.sql.find("DISTINCT") != std::string::npos) continue;
    const std::string sql = source.sql + source.columns[0] + " LIKE :P" + source.order;
    const std::string index = sqlite ? "VIRTUAL TABLE INDEX" : "parts";
    for (const char* pattern : {"%ба1вб%", "%ба1%вб1%"})
      EXPECT_NE(plan(sql, pattern).find(index), std::string::npos) << plan(sql, pattern);
    const std::string two = plan(sql, "%€€%");
    EXPECT_EQ(two.find(index), std::string::npos) << two;
  }
}

TEST_P(NameParts, WhatAnIndexDoesNotFindIsTold) {
  const bool sqlite = GetParam() == Engine::Sqlite;
  ASSERT_TRUE(database_->RunScript(
      sqlite ? "drop trigger PartnersPartsChanged; update Partners set FoldName = 'щъркел', Name ="
               " 'Щъркел' where Partner = (select min(Partner) from Partners)"
             : "delete from Partners where Partner > 300; update pg_index set indisready = false"
               " where indexrelid = 'partnersparts'::regclass"));
  if (!sqlite) {
    Run({Sql("update Partners set FoldName = 'щъркел', Name = 'Щъркел' where Partner = 7")});
    ASSERT_TRUE(
        database_->RunScript("update pg_index set indisready = true"
                             " where indexrelid = 'partnersparts'::regclass"));
  }
  const auto findings = CheckDatabase(*database_, Stamp{0});
  ASSERT_TRUE(findings) << findings.GetFailure().message;
  ASSERT_FALSE(findings->empty());
  EXPECT_NE(findings->front().find("Partners: част от име"), std::string::npos)
      << findings->front();
}

TEST_P(NameParts, WithoutTheExtensionSearchesAnswerAndTheServerSaysSo) {
  const auto slow = [&] { return *WhatSlowsDown(*database_); };
  EXPECT_EQ(slow(), "");
  if (GetParam() == Engine::Sqlite) return;
  const std::string sql = "SELECT Partner FROM Partners WHERE Name LIKE :P";
  const std::string found = Found(sql, "%ирма%");
  EXPECT_NE(found, "");
  ASSERT_TRUE(database_->RunScript("drop extension pg_trgm cascade"));
  EXPECT_NE(slow().find("pg_trgm"), std::string::npos);
  EXPECT_EQ(Found(sql, "%ирма%"), found);
  ASSERT_TRUE(Migrate(*database_));
  EXPECT_EQ(slow(), "");
}

}  // namespace
}  // namespace orvane::server
