// The catalogue against the migrated schema, and searches behind the engines' own fences.

#include <map>
#include <stdexcept>

#include "packet/fold.h"
#include "server/dialect_world.h"

namespace orvane::server {
namespace {

struct SchemaColumn {
  std::string type;
  bool mayBeNull = true;
};
using SchemaColumns = std::map<std::string, SchemaColumn>;

/// Columns of a table by the fold of their names; empty when there is no such table.
SchemaColumns ColumnsOf(Database& database, std::string_view table) {
  const bool postgres = database.Kind() == Engine::Postgres;
  Statement statement;
  statement.text = postgres ? "select column_name, data_type, case is_nullable when 'YES' then 1 "
                              "else 0 end from information_schema.columns where table_name = ?1"
                            : "select name, lower(type), 1 - \"notnull\" from "
                              "pragma_table_xinfo(?1)";
  statement.params = {postgres ? Fold(table) : std::string(table)};
  statement.columns = {{"name", ValueKind::Memo, 0},
                       {"type", ValueKind::Memo, 0},
                       {"mayBeNull", ValueKind::Int32, 0}};
  auto packets = database.ReadSnapshot({&statement, 1});
  if (!packets) throw std::runtime_error(packets.GetFailure().text);
  SchemaColumns columns;
  for (std::size_t row = 0; row < packets->front().rowCount; ++row) {
    columns[Fold(packets->front().At(row, "name").ToText())] = {
        packets->front().At(row, "type").ToText(),
        packets->front().At(row, "mayBeNull").AsInt() != 0};
  }
  return columns;
}

std::string TypeIn(ValueKind kind, Engine engine) {
  const Storage storage = RowOf(kind).storage;
  if (storage == Storage::Text) return "text";
  if (engine == Engine::Sqlite) return storage == Storage::Real ? "real" : "integer";
  switch (kind) {
    case ValueKind::Bool:
    case ValueKind::Byte:
    case ValueKind::Int16:
      return "smallint";
    case ValueKind::Int32:
      return "integer";
    case ValueKind::Code:
      return "bigint";
    case ValueKind::Double:
      return "double precision";
    case ValueKind::Date:
      return "date";
    case ValueKind::Stamp:
      return "timestamp with time zone";
    default:
      return "numeric";
  }
}

void ExpectColumn(const SchemaColumns& schema, const std::string& name,
                  const CatalogueColumn& column, Engine engine) {
  const auto found = schema.find(Fold(name));
  if (found == schema.end()) {
    ADD_FAILURE() << name << " is not there";
    return;
  }
  EXPECT_EQ(found->second.type, TypeIn(column.kind, engine)) << name;
  EXPECT_TRUE(column.MayBeNull() || !found->second.mayBeNull) << name << " may be null";
}

TEST_P(DialectOnEngine, EveryColumnOfTheCatalogueIsInTheSchema) {
  const auto database = FreshDatabase(GetParam());
  for (const CatalogueTable& table : SearchCatalogue()) {
    SCOPED_TRACE(table.name);
    const SchemaColumns schema = ColumnsOf(*database, table.stored);
    EXPECT_FALSE(schema.empty()) << "what is listed can be read";
    for (const CatalogueColumn& column : table.columns) {
      if (RowOf(column.kind).storage == Storage::Text) {
        EXPECT_TRUE(column.Is(kFolded)) << column.name << " is searched with case";
      }
      if (!column.expression.empty()) continue;
      const std::string name(column.name);
      ExpectColumn(schema, name, column, GetParam());
      if (column.Is(kFolded)) ExpectColumn(schema, "Fold" + name, column, GetParam());
    }
  }
}

TEST_P(DialectOnEngine, EveryTableOfTheSchemaIsSearchedBehindTheFence) {
  const auto database = FreshDatabase(GetParam());
  const NamedValues none;
  const Statement guard{"select 1", {}, {{"one", ValueKind::Int32, 0}}};
  for (const CatalogueTable& table : SearchCatalogue()) {
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
  }
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
}  // namespace orvane::server
