// Whatever arrives as a search statement, with whatever parameters: the reader does not crash, a
// short statement stays short, what it renders is a statement that SQLite prepares and that reads
// the catalogue's tables and nothing else, and a kept statement answers as a new one.

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

#include "server/dialect/kept_searches.h"
#include "server/dialect/search.h"

namespace {

using namespace orvane;
using namespace orvane::server;

void Must(bool holds) {
  if (!holds) std::abort();
}

/// Words of which odd inputs are put together, so that the parser lets many of them through.
constexpr const char* kWords[] = {
    "SELECT",
    "DISTINCT",
    "Code",
    "Name",
    ",",
    "FROM",
    "KindSupplies",
    "Partners",
    "p",
    "WHERE",
    "AND",
    "OR",
    "NOT",
    "(",
    ")",
    "=",
    "<>",
    "<=",
    ">",
    "LIKE",
    "'с%'",
    "'%т%'",
    "'a_b%'",
    "IN",
    "1",
    "2",
    "12.5",
    "'05.03.2026'",
    "IS",
    "NULL",
    "CASE",
    "WHEN",
    "THEN",
    "ELSE",
    "END",
    "CAST",
    "AS",
    "VARCHAR(3)",
    "INT",
    "ISNULL",
    "MAX",
    "-",
    "+",
    ".",
    "LEFT",
    "OUTER",
    "INNER",
    "JOIN",
    "ON",
    "1=1",
    "ORDER",
    "BY",
    "DESC",
    ":A",
    ":B",
    "@C",
    "DECLARE",
    "SET",
    "BIT",
    "dbo.",
    "WITH(NOLOCK)",
    "BaseSupplyList",
    "B",
    "SerialNumber",
    "B.Kind",
    "B.Name",
    "MaterialStocks",
    "M",
    "M.IdNumber",
    "B.InventoryCode",
    "M.Name",
    "Services",
    "S",
    "S.Code",
    "S.Name",
    "B.ServiceCode",
    "DescrBaseSupplyList",
    "D",
    "D.IdentityWithNom",
    "PurchaseOrder",
    "po",
    "POIdNumber",
    "DocumentDate",
    "PurchaseOrderDet",
    "PurchaseOrderId",
    "SuppManOrderDet",
    "CalcQuantity",
    "CalcOrderedQunatity",
    "SuppInvRegister",
    "InvoiceNumber",
    "CurrSumWithVATRb",
    "SuppliesContracts",
    "Active",
    "KindSupplies.Code",
    "Partner",
    "Partners p",
    "--",
    "\n",
    "BaseSupplyListDates",
    "AvailableFromDate",
    "SELECT DISTINCT B.SerialNumber, B.Name FROM",
    "SELECT Code FROM KindSupplies WHERE",
    "SELECT p.Partner FROM Partners p WHERE",
    "UNION",
    "INTO",
    ";",
    "SupplyLists",
    "KindList",
    "WSysUsers",
    "ShortName",
    "PasswordHash",
};

int MayRead(void*, int action, const char* table, const char*, const char*, const char*) {
  if (action == SQLITE_SELECT || action == SQLITE_FUNCTION) return SQLITE_OK;
  if (action != SQLITE_READ) return SQLITE_DENY;
  for (const CatalogueTable& listed : SearchCatalogue()) {
    if (SameName(listed.stored, table)) return SQLITE_OK;
  }
  return SQLITE_DENY;
}

sqlite3* MakeDatabase() {
  sqlite3* database = nullptr;
  Must(sqlite3_open(":memory:", &database) == SQLITE_OK);
  std::string script = "create table Secret (PasswordHash text);";
  for (const CatalogueTable& table : SearchCatalogue()) {
    std::string columns;
    for (const CatalogueColumn& column : table.columns) {
      if (!column.expression.empty()) continue;
      columns += (columns.empty() ? "" : ", ") + std::string(column.name);
      if (column.Is(kFolded)) columns += ", Fold" + std::string(column.name);
    }
    for (const CatalogueColumn& column : table.keptNames)
      columns += ", Fold" + std::string(column.name);
    script += "create table " + std::string(table.stored) + " (" + columns + ");";
  }
  Must(sqlite3_exec(database, script.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK);
  const auto nothing = [](sqlite3_context*, int, sqlite3_value**) {};
  for (const char* name : {"orvane_quantity", "orvane_whole"}) {
    Must(sqlite3_create_function(database, name, 1, SQLITE_UTF8, nullptr, nothing, nullptr,
                                 nullptr) == SQLITE_OK);
  }
  sqlite3_set_authorizer(database, &MayRead, nullptr);
  return database;
}

void MustPrepare(const RenderedSearch& search) {
  static sqlite3* const database = MakeDatabase();
  sqlite3_stmt* prepared = nullptr;
  const char* tail = nullptr;
  const std::string& text = search.statement.text;
  Must(sqlite3_prepare_v2(database, text.c_str(), static_cast<int>(text.size()), &prepared,
                          &tail) == SQLITE_OK);
  Must(*tail == '\0' && sqlite3_stmt_readonly(prepared) != 0);
  Must(static_cast<std::size_t>(sqlite3_column_count(prepared)) == search.statement.columns.size());
  Must(static_cast<std::size_t>(sqlite3_bind_parameter_count(prepared)) ==
       search.statement.params.size());
  sqlite3_finalize(prepared);
}

/// What the statement may be given: numbers, texts with signs of patterns, nothing.
Variant ParameterOf(std::uint8_t chosen) {
  const Variant values[] = {Variant(),
                            1,
                            -1,
                            std::int64_t{1} << 62,
                            0.5,
                            -0.0,
                            "сто%",
                            "%\\_[%]",
                            "05.03.2026",
                            "",
                            Decimal(5, 2),
                            true,
                            Date{1},
                            Stamp{1}};
  return values[chosen % std::size(values)];
}

void MustBeSame(const Answer<RenderedSearch>& kept, const Answer<RenderedSearch>& fresh) {
  Must(kept.Ok() == fresh.Ok());
  if (!fresh) return Must(kept.GetFailure().message == fresh.GetFailure().message);
  Must(kept->statement.text == fresh->statement.text);
  Must(kept->statement.params == fresh->statement.params);
  Must(kept->fingerprint == fresh->fingerprint);
}

std::string StatementOf(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return {};
  if (data[0] % 2 == 0) return std::string(data + 1, data + size);
  std::string sql;
  for (std::size_t i = 1; i < size; ++i)
    sql += std::string(kWords[data[i] % std::size(kWords)]) + " ";
  return sql;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 2048;
  constexpr std::size_t kParameters = 3;
  if (size < kParameters || size > kLongest) return 0;
  const NamedValues params = {
      {"A", ParameterOf(data[0])}, {"B", ParameterOf(data[1])}, {"C", ParameterOf(data[2])}};
  const std::string sql = StatementOf(data + kParameters, size - kParameters);
  SearchInput input{sql, params, 80};
  input.mayRead = [](const CatalogueTable&) { return true; };
  input.visibility = [](const CatalogueTable&) {
    return RowPredicate{"{t}.rowid > ?1 and {t}.rowid <> ?2", {1, 2}};
  };
  const auto search = RenderSearch(input);
  static KeptSearches kept(64, std::size_t{1} << 20);
  MustBeSame(kept.Render(input), search);
  MustBeSame(kept.Render(input), search);
  Must(kept.Bytes() <= std::size_t{1} << 20);
  if (!search) {
    Must(!search.GetFailure().message.empty());
    return 0;
  }
  Must(search->statement.text.size() <= std::size_t{1} << 20);
  MustPrepare(*search);
  input.engine = Engine::Postgres;
  Must(RenderSearch(input).Ok());
  // What follows the first portion is accepted in any values, and only in their shape.
  DataPacket packet;
  for (const ResultColumn& column : search->statement.columns) {
    packet.AddColumn(column.name, column.kind, column.size);
  }
  const VariantArray nulls(packet.columns.size());
  for (int row = 0; row <= search->rowLimit; ++row)
    packet.AppendRow(nulls);
  const std::string continuation = FinishPortion(*search, std::move(packet)).continuation;
  if (search->order.empty()) return 0;
  input.engine = Engine::Sqlite;
  input.continuation = continuation;
  const auto next = RenderSearch(input);
  Must(next.Ok());
  MustPrepare(*next);
  return 0;
}
