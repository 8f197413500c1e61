// What search statements may not say, and where the refusal points.

#include <gtest/gtest.h>

#include "server/dialect/search.h"

namespace orvane::server {
namespace {

const NamedValues kParams = {{"Text", "стоки"}, {"Number", 5}, {"List", VariantArray{1, 2}}};

Answer<RenderedSearch> Ask(const std::string& sql, const NamedValues& params = kParams) {
  return RenderSearch({sql,
                       params,
                       80,
                       {},
                       Engine::Sqlite,
                       [](const CatalogueTable&) { return true; },
                       [](const CatalogueTable&) { return RowPredicate{}; },
                       {},
                       {}});
}

std::string Repeated(const std::string& text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i)
    repeated += text;
  return repeated;
}

std::string Columns(int count) {
  std::string columns;
  for (int i = 1; i <= count; ++i)
    columns += ", 1 a" + std::to_string(i);
  return columns;
}

TEST(DialectRefusals, NameLineAndColumn) {
  struct Row {
    std::string sql;
    std::string place;  ///< "line:column"
    std::string word;   ///< that the sentence has in it
  };
  const std::string select = "SELECT Code FROM KindSupplies";
  const Row kRows[] = {
      // second statements, other statements
      {select + "; SELECT 1", "1:30", "„;“"},
      {select + "\nDELETE FROM KindSupplies", "2:1", "DELETE"},
      {"DELETE FROM KindSupplies", "1:1", "DELETE"},
      {"EXEC sp_who", "1:1", "EXEC"},
      {"DECLARE @A INT SET @A = 1 DROP TABLE KindSupplies", "1:27", "DROP"},
      {"SELECT Code INTO Copy FROM KindSupplies", "1:13", "INTO"},
      {select + " UNION SELECT ShortName FROM WSysUsers", "1:31", "UNION"},
      {select + " UNION ALL SELECT 1", "1:31", "UNION"},
      {select + " GROUP BY Code", "1:31", "GROUP"},
      {"SELECT TOP 5 Code FROM KindSupplies", "1:8", "TOP"},
      {"WITH x AS (SELECT 1) SELECT Code FROM x", "1:1", "WITH"},
      {"", "1:1", "SELECT"},
      {"-- SELECT Code FROM KindSupplies", "1:33", "SELECT"},
      // unlisted tables, columns, functions
      {"SELECT name FROM sqlite_master", "1:18", "sqlite_master"},
      {"SELECT PasswordHash FROM WSysUsers", "1:8", "PasswordHash"},
      {"SELECT FoldName FROM KindSupplies", "1:8", "FoldName"},
      {"SELECT rowid FROM KindSupplies", "1:8", "rowid"},
      {"SELECT Code\nFROM Session", "2:6", "Session"},
      {"SELECT Code FROM KindSupplies k WHERE KindSupplies.Code = 1", "1:39", "KindSupplies.Code"},
      {"SELECT Code FROM dbo.UserRights", "1:18", "UserRights"},
      {"SELECT Code FROM orvane.dbo.KindSupplies", "1:24", "."},
      {"SELECT Code FROM KindSupplies WHERE Code IN (SELECT Login FROM UserRights)", "1:64",
       "UserRights"},
      {"SELECT load_extension('x') Code FROM KindSupplies", "1:8", "load_extension"},
      {"SELECT Code FROM KindSupplies WHERE UPPER(Name) = 'A'", "1:37", "UPPER"},
      {"SELECT COUNT(Code) n FROM KindSupplies", "1:8", "COUNT"},
      {"SELECT MAX(Code) n FROM KindSupplies", "1:8", "MAX"},
      {"SELECT * FROM KindSupplies", "1:8", "„*“"},
      {"SELECT k.* FROM KindSupplies k", "1:10", "„*“"},
      // comment and quoting tricks
      {"SELECT Code /* */ FROM KindSupplies", "1:13", "„/“"},
      {"SELECT \"Code\" FROM KindSupplies", "1:8", "„\"“"},
      {"SELECT [Code] FROM KindSupplies", "1:8", "„[“"},
      {select + " WHERE Name = 'a\n", "1:44", "апостроф"},
      {select + " WHERE Name = 'a' 'b'", "1:48", "„b“"},
      {select + " -- x\n WHERE Code = 1 -- y\r\n OR", "3:4", "свършва"},
      {select + " WHERE Име = 1", "1:37", "„И“"},
      {"SELECT 'щъркел' x,\n  Кол FROM KindSupplies", "2:3", "„К“"},
      {"SELECT 'щъркел' x, y FROM KindSupplies", "1:20", "„y“"},
      {select + " WHERE Code = 0x1F", "1:44", "число"},
      {select + " WITH (TABLOCK)", "1:37", "TABLOCK"},
      {select + " WITH (NOLOCK, HOLDLOCK)", "1:43", "„,“"},
      // names
      {"SELECT Name FROM KindSupplies a INNER JOIN Currencies b ON a.Code = b.Code", "1:8",
       "няколко"},
      {"SELECT a.Name FROM KindSupplies a INNER JOIN Currencies A ON 1 = 1", "1:46", "две таблици"},
      {"SELECT a.Name FROM KindSupplies a INNER JOIN Currencies b ON b.Code = c.Code INNER JOIN "
       "Measures c ON 1 = 1",
       "1:71", "c.Code"},
      {"SELECT Code, Name Code FROM KindSupplies", "1:14", "две колони"},
      {"SELECT Code + 1 FROM KindSupplies", "1:8", "AS"},
      {"SELECT Code FROM KindSupplies WHERE Code = :Missing", "1:44", "Missing"},
      {"SELECT Code FROM KindSupplies WHERE Code = @Missing", "1:44", "Missing"},
      {"SELECT Code FROM KindSupplies WHERE Code = :List", "1:44", "List"},
      {"DECLARE @A INT DECLARE @a BIT " + select, "1:24", "два пъти"},
      {"SET @A = 1 " + select, "1:5", "обявена"},
      {"DECLARE @A FLOAT " + select, "1:12", "вид"},
      {"DECLARE @A INT SET @A = Code " + select, "1:25", "параметър"},
      {"DECLARE @A INT SET @A = 'x' " + select, "1:25", "вида"},
      // kinds
      {select + " WHERE Code = 'five'", "1:44", "различен вид"},
      {select + " WHERE Code = :Text", "1:44", "различен вид"},
      {select + " WHERE Name = 5", "1:44", "различен вид"},
      {select + " WHERE Code = 1.5", "1:44", "различен вид"},
      {select + " WHERE Code = Name", "1:37", "различен вид"},
      {select + " WHERE Code IN (1, 'x')", "1:49", "различен вид"},
      {select + " WHERE Code IN (SELECT Name FROM Currencies)", "1:37", "различен вид"},
      {select + " WHERE Code IN (SELECT Code, Name FROM Currencies)", "1:46", "една колона"},
      {select + " WHERE Code = (SELECT Code FROM Currencies)", "1:44", "MAX"},
      {select + " WHERE Code LIKE '1%'", "1:37", "LIKE"},
      {select + " WHERE Name LIKE Name2", "1:47", "LIKE"},
      {select + " WHERE Name LIKE '[a-z]%'", "1:47", "шаблон"},
      {select + " WHERE Name", "1:37", "условие"},
      {select + " WHERE Code = (1 = 1)", "1:45", "стойност"},
      {"SELECT Name - Name2 x FROM KindSupplies", "1:8", "числа"},
      {"SELECT CASE Code WHEN 1 THEN 2 ELSE Name END x FROM KindSupplies", "1:30", "различен вид"},
      {"SELECT IdNumber FROM SuppInvRegister WHERE JoinedDate = '2026-03-05'", "1:57",
       "различен вид"},
      {"SELECT IdNumber FROM SuppInvRegister WHERE JoinedDate = '31.02.2026'", "1:57",
       "различен вид"},
      {"SELECT CAST(Name AS DATE) x FROM KindSupplies", "1:21", "VARCHAR"},
      {"SELECT CAST(Name AS INT) x FROM KindSupplies", "1:8", "INT"},
      {"SELECT CAST(Name AS VARCHAR(0)) x FROM KindSupplies", "1:29", "дължина"},
      {select + " ORDER BY 1", "1:40", "номер"},
      {"SELECT DISTINCT Code FROM KindSupplies ORDER BY Name", "1:49", "DISTINCT"},
      {select + " WHERE Code = 9999999999999999999", "1:44", "„9999999999999999999“ е извън"},
      {select + " WHERE Code + 999999999999999 > 1", "1:37", "„999999999999999“ е извън"},
      // names what is wrong, and not more than 80 characters of it
      {select + " WHERE Code = '" + Repeated("щ", 81) + "'", "1:44",
       "„" + Repeated("щ", 80) + "…“ е от различен вид"},
      {"SELECT " + Repeated("n", 90) + " FROM KindSupplies", "1:8", "„" + Repeated("n", 80) + "…“"},
      // an alias holds in its own SELECT; a MAX is of the rows it stands with
      {"SELECT Code A FROM KindSupplies WHERE Code IN (SELECT Code FROM Currencies WHERE A = 1)",
       "1:82", "„A“"},
      {"SELECT Code A FROM KindSupplies k WHERE Code = (SELECT MAX(k.Code) FROM Currencies)",
       "1:56", "MAX"},
      // size
      {select + " WHERE " + Repeated("(", 40) + "1=1" + Repeated(")", 40), "1:53", "дълбоко"},
      {select + " WHERE Code = " + Repeated("1+", 40) + "1", "1:110", "дълъг"},
      {select + " WHERE Code IN (1" + Repeated(",1", 4000) + ")", "1:6040", "много части"},
      {select + Repeated(" ", 40000), "1:1", "дълъг"},
      {"SELECT 1 a0" + Columns(300) + " FROM KindSupplies", "1:1946", "много колони"},
      // short statements that would be written in millions of characters
      {select + " WHERE " + Repeated("CASE ", 24) + "Code" +
           Repeated(" WHEN 1 THEN 2 WHEN 2 THEN 3 WHEN 4 THEN 5 END", 24) + " = 1",
       "1:457", "твърде дълга"},
      {"SELECT Code" + Repeated(" + Code", 30) + " A FROM KindSupplies WHERE A = 1" +
           Repeated(" OR A = 1", 400),
       "1:429", "твърде дълга"},
      {"SELECT a1.Code FROM Measures a1 " +
           [] {
             std::string joins;
             for (int i = 2; i < 20; ++i) {
               joins += "INNER JOIN Measures a" + std::to_string(i) + " ON 1=1\n";
             }
             return joins;
           }(),
       "12:12", "много таблици"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.sql.substr(0, 200));
    const auto answer = Ask(row.sql);
    if (answer) {
      ADD_FAILURE() << "rendered as " << answer->statement.text;
      continue;
    }
    const Failure& failure = answer.GetFailure();
    EXPECT_EQ(failure.kind, FailureKind::BadRequest);
    const auto colon = row.place.find(':');
    const std::string place =
        "ред " + row.place.substr(0, colon) + ", позиция " + row.place.substr(colon + 1) + ": ";
    EXPECT_NE(failure.message.find(place), std::string::npos) << failure.message;
    EXPECT_NE(failure.message.find(row.word), std::string::npos) << failure.message;
  }
}

TEST(DialectRefusals, NothingOfTheAskersTextReachesTheEngine) {
  const std::string sql =
      "SELECT Code AS Evil, Name -- '; drop table x\nFROM dbo.KindSupplies Sneaky (nolock)\n"
      "WHERE Sneaky.Name = 'x''; DROP TABLE KindSupplies --' OR Sneaky.Code = 77123 "
      "OR Name LIKE '%zzz%' ORDER BY Evil";
  const auto answer = Ask(sql);
  ASSERT_TRUE(answer) << answer.GetFailure().message;
  for (const char* part : {"Evil", "Sneaky", "DROP", "77123", "zzz", "--", "'", ";"}) {
    EXPECT_EQ(answer->statement.text.find(part), std::string::npos) << answer->statement.text;
  }
}

TEST(DialectRefusals, ReadingEndsInTime) {
  const NamedValues none;
  SearchInput input{"SELECT Code FROM KindSupplies WHERE Code = 1", none};
  ASSERT_TRUE(RenderSearch(input));
  input.readMilliseconds = 0;
  const auto late = RenderSearch(input);
  ASSERT_FALSE(late);
  EXPECT_NE(late.GetFailure().message.find("твърде дълго"), std::string::npos);
}

TEST(DialectRefusals, TablesAreReadOnlyFromWhereTheyMayBe) {
  const NamedValues none;
  SearchInput input{"SELECT k.Code FROM KindSupplies k INNER JOIN Employees e ON 1 = 1", none};
  std::string asked;
  input.mayRead = [&](const CatalogueTable& table) {
    asked += std::string(table.name) + " ";
    return table.readers.empty();
  };
  const auto refused = RenderSearch(input);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.GetFailure().kind, FailureKind::NoRight);
  EXPECT_EQ(asked, "KindSupplies Employees ");

  input.mayRead = {};
  input.sql = "SELECT Code FROM KindSupplies";
  EXPECT_TRUE(RenderSearch(input)) << "reference data is everybody's";
  input.mayRead = [](const CatalogueTable&) { return true; };
  input.sql = "SELECT IdNumber FROM Deliveries";
  const auto unseen = RenderSearch(input);
  ASSERT_FALSE(unseen) << "documents need a predicate, even an empty one";
  EXPECT_EQ(unseen.GetFailure().kind, FailureKind::NoRight);
}

}  // namespace
}  // namespace orvane::server
