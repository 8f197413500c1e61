// The catalogue against the migrated schema, and searches behind the engines' own fences.

#include "dialect_world.h"

namespace orvane {
namespace {

Statement ReadsNothing(const std::string& columns, const CatalogueTable& table) {
  return {"select " + columns + " from " + std::string(table.stored) + " t where 1 = 0",
          {},
          {{"x", ValueKind::Memo, 0}}};
}

bool IsThere(Database& database, const std::string& columns, const CatalogueTable& table) {
  const Statement statement = ReadsNothing(columns, table);
  return database.ReadSnapshot({&statement, 1}).Ok();
}

TEST_P(DialectOnEngine, EveryColumnOfTheCatalogueIsInTheSchema) {
  const auto database = FreshDatabase(GetParam());
  std::string missing;
  for (const CatalogueTable& table : SearchCatalogue()) {
    if (!IsThere(*database, "1", table)) {
      missing += " " + std::string(table.stored);
      continue;
    }
    for (const CatalogueColumn& column : table.columns) {
      if (!column.expression.empty()) continue;
      const std::string name(column.name);
      EXPECT_TRUE(IsThere(*database, name, table)) << table.stored << "." << name;
      if (!column.Is(kFolded)) continue;
      EXPECT_TRUE(IsThere(*database, "Fold" + name, table)) << table.stored << ".Fold" << name;
    }
  }
  if (!missing.empty()) GTEST_SKIP() << "not in the schema yet:" << missing;
}

TEST_P(DialectOnEngine, EveryTableOfTheSchemaIsSearchedBehindTheFence) {
  const auto database = FreshDatabase(GetParam());
  const NamedValues none;
  const Statement guard{"select 1", {}, {{"one", ValueKind::Int32, 0}}};
  int searched = 0;
  for (const CatalogueTable& table : SearchCatalogue()) {
    if (!IsThere(*database, "1", table)) continue;
    std::string columns;
    std::string conditions;
    for (const CatalogueColumn& column : table.columns) {
      const std::string name(column.name);
      columns += (columns.empty() ? "" : ", ") + name;
      if (column.Is(kFolded)) conditions += " OR " + name + " LIKE '%ян%'";
    }
    const std::string sql = "SELECT DISTINCT " + columns + " FROM " + std::string(table.name) +
                            " WHERE 1 = 1" + conditions;
    SearchInput input{sql, none, 80, {}, GetParam()};
    input.mayRead = [](const CatalogueTable&) { return true; };
    input.visibility = [](const CatalogueTable&) { return RowPredicate{}; };
    const auto search = RenderSearch(input);
    ASSERT_TRUE(search) << search.GetFailure().message;
    auto packets = database->Search(guard, {&search->statement, 1}, {});
    ASSERT_TRUE(packets) << packets.GetFailure().text << "\n" << search->statement.text;
    EXPECT_TRUE(FinishPortion(*search, std::move(packets->back())).IsSound());
    ++searched;
  }
  EXPECT_GE(searched, 4);
}

TEST_P(DialectOnEngine, NomenclaturesAreFoundInTheMigratedDatabase) {
  const auto database = FreshDatabase(GetParam());
  const NamedValues params = {{"Nom", 249}, {"Begins", "ОДОБ%"}};
  SearchInput input{
      "SELECT Element, Name FROM NomIn WITH (NOLOCK) WHERE Nomenclature = :Nom "
      "AND Name LIKE :Begins ORDER BY Element",
      params,
      80,
      {},
      GetParam()};
  const auto search = RenderSearch(input);
  ASSERT_TRUE(search) << search.GetFailure().message;
  const Statement guard{"select 1", {}, {{"one", ValueKind::Int32, 0}}};
  auto packets = database->Search(guard, {&search->statement, 1}, {});
  ASSERT_TRUE(packets) << packets.GetFailure().text;
  EXPECT_EQ(RowsOf(FinishPortion(*search, std::move(packets->back()))), "5 Одобрен");
}

}  // namespace
}  // namespace orvane
