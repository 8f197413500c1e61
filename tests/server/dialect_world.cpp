#include "server/dialect_world.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "packet/fold.h"

namespace orvane::server {
namespace {

std::string TypeOf(ValueKind kind, Engine engine) {
  const Storage storage = RowOf(kind).storage;
  if (storage == Storage::Text) return engine == Engine::Postgres ? "text collate \"C\"" : "text";
  if (engine == Engine::Sqlite) return storage == Storage::Real ? "real" : "integer";
  switch (kind) {
    case ValueKind::Bool:
    case ValueKind::Byte:
    case ValueKind::Int16:
      return "smallint";
    case ValueKind::Int32:
      return "integer";
    case ValueKind::Amount:
      return "numeric(19,4)";
    case ValueKind::Rate:
      return "numeric(19,7)";
    case ValueKind::Double:
      return "double precision";
    case ValueKind::Date:
      return "date";
    case ValueKind::Stamp:
      return "timestamptz";
    default:
      return "bigint";
  }
}

std::string CreateTable(const CatalogueTable& table, Engine engine) {
  std::string columns;
  std::string keys;
  std::string indexes;
  for (const CatalogueColumn& column : table.columns) {
    if (!column.expression.empty()) continue;
    const std::string name(column.name);
    const std::string type = TypeOf(column.kind, engine) + (column.MayBeNull() ? "" : " not null");
    columns += (columns.empty() ? "" : ", ") + name + " " + type;
    if (column.Is(kKeyColumn)) keys += (keys.empty() ? "" : ", ") + name;
    if (column.Is(kFolded)) columns += ", Fold" + name + " " + type;
  }
  for (const CatalogueColumn& column : table.keptNames)
    columns += ", Fold" + std::string(column.name) + " " + TypeOf(column.kind, engine);
  if (!keys.empty()) columns += ", primary key (" + keys + ")";
  for (const CatalogueColumn& column : table.columns) {
    if (!column.Is(kFolded) || column.Is(kKeyColumn) || !column.expression.empty()) continue;
    const std::string fold = "Fold" + std::string(column.name);
    const bool nullsFirst = engine == Engine::Postgres && column.MayBeNull();
    indexes += "create index " + std::string(table.stored) + "By" + fold + " on " +
               std::string(table.stored) + " (" + fold + (nullsFirst ? " nulls first, " : ", ") +
               keys + ");\n";
  }
  return "create table " + std::string(table.stored) + " (" + columns + ");\n" + indexes;
}

/// The index of trigrams of a table by its name, and its columns; an empty name where it has none.
std::pair<std::string, std::string> TrigramsOf(const CatalogueTable& table) {
  std::pair<std::string, std::string> index;
  for (const CatalogueColumn& column : table.columns) {
    if (column.trigrams.empty()) continue;
    index.first = column.trigrams;
    index.second += "Fold" + std::string(column.name) + ", ";
  }
  return index;
}

std::string CreateTrigrams(const CatalogueTable& table) {
  const auto [index, columns] = TrigramsOf(table);
  if (index.empty()) return "";
  return "create virtual table " + index + " using fts5 (" + columns + "content = '" +
         std::string(table.stored) + "', content_rowid = '" +
         std::string(table.columns.front().name) +
         "', tokenize = 'trigram case_sensitive 1', detail = none);\n";
}

Variant ReadValue(const std::string& text, ValueKind kind) {
  if (text == "-") return {};
  switch (kind) {
    case ValueKind::Amount:
    case ValueKind::Rate:
      return *Decimal::Parse(text)->AtScale(RowOf(kind).scale);
    case ValueKind::Double:
      return std::stod(text);
    case ValueKind::Date:
      return *Date::Parse(text);
    case ValueKind::Stamp:
      return TimeZone{}.At(*Date::Parse(text), 12, 0);
    case ValueKind::String:
    case ValueKind::Memo:
      return text;
    default:
      return std::int64_t{std::stoll(text)};
  }
}

Variant Zero(const CatalogueColumn& column) {
  if (column.MayBeNull()) return {};
  if (column.kind == ValueKind::Date) return Date{};
  return RowOf(column.kind).storage == Storage::Text ? Variant("") : Variant(0);
}

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::stringstream stream(line);
  for (std::string cell; std::getline(stream, cell, '|');)
    cells.emplace_back(Trim(cell));
  return cells;
}

INSTANTIATE_TEST_SUITE_P(Engines, DialectOnEngine, testing::ValuesIn(TestEngines()),
                         TestEngineName);

}  // namespace

DialectWorld::DialectWorld(Engine engine) : engine_(engine), database_(EmptyDatabase(engine)) {
  std::string script;
  for (const CatalogueTable& table : SearchCatalogue())
    script += CreateTable(table, engine) + (engine == Engine::Sqlite ? CreateTrigrams(table) : "");
  const auto made = database_->RunScript(script);
  if (!made) throw std::runtime_error(made.GetFailure().text);
}

void DialectWorld::Run(std::vector<Statement> statements) {
  auto transaction = database_->Begin();
  if (!transaction) throw std::runtime_error(transaction.GetFailure().text);
  const auto done = (*transaction)->ExecuteAll(statements);
  if (!done) throw std::runtime_error(done.GetFailure().text);
  const auto committed = (*transaction)->Commit();
  if (!committed) throw std::runtime_error(committed.GetFailure().text);
}

void DialectWorld::Fill(const std::string& table, const std::string& rows) {
  std::stringstream stream(rows);
  std::vector<std::string> columns;
  std::vector<VariantArray> values;
  for (std::string line; std::getline(stream, line);) {
    if (IsBlank(line)) continue;
    const std::vector<std::string> cells = Cells(line);
    if (columns.empty()) {
      columns = cells;
      continue;
    }
    VariantArray row;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      row.push_back(ReadValue(cells[i], FindCatalogueTable(table)->Find(columns.at(i))->kind));
    }
    values.push_back(std::move(row));
  }
  FillRows(table, columns, values);
}

void DialectWorld::FillRows(const std::string& table, const std::vector<std::string>& columns,
                            const std::vector<VariantArray>& rows) {
  const CatalogueTable& listed = *FindCatalogueTable(table);
  std::vector<Statement> statements;
  for (const VariantArray& row : rows) {
    Statement insert;
    std::string names;
    std::string marks;
    const auto add = [&](const std::string& name, const Variant& value) {
      insert.params.push_back(value);
      names += (names.empty() ? "" : ", ") + name;
      marks += (marks.empty() ? "?" : ", ?") + std::to_string(insert.params.size());
    };
    for (const CatalogueColumn& column : listed.columns) {
      if (!column.expression.empty()) continue;
      const auto found = std::find(columns.begin(), columns.end(), column.name);
      const Variant value = found == columns.end()
                                ? Zero(column)
                                : row.at(static_cast<std::size_t>(found - columns.begin()));
      add(std::string(column.name), value);
      if (!column.Is(kFolded)) continue;
      const std::string* text = value.AsString();
      add("Fold" + std::string(column.name), text == nullptr ? Variant() : Variant(Fold(*text)));
    }
    insert.text =
        "insert into " + std::string(listed.stored) + " (" + names + ") values (" + marks + ")";
    statements.push_back(std::move(insert));
  }
  for (const CatalogueColumn& column : listed.keptNames) {
    const std::string fold = "Fold" + std::string(column.name);
    const std::string own(listed.stored);
    statements.push_back({"update " + own + " set " + fold + " = (select b." + fold +
                              " from BaseSupplyList b where b.SerialNumber = " + own +
                              ".SerialNumber)",
                          {},
                          {}});
  }
  const std::string index = engine_ == Engine::Sqlite ? TrigramsOf(listed).first : "";
  if (!index.empty()) {
    statements.push_back({"insert into " + index + " (" + index + ") values ('rebuild')", {}, {}});
  }
  Run(std::move(statements));
}

/// Everything that is in a rendered search, or the failure's sentence.
std::string AsText(const Answer<RenderedSearch>& search) {
  if (!search) return search.GetFailure().message;
  std::string text = search->statement.text + "\n";
  for (const Variant& param : search->statement.params)
    text += std::to_string(param.Raw().index()) + ":" + param.ToText() + "\n";
  for (const ResultColumn& column : search->statement.columns) {
    text += column.name + " " + std::string(RowOf(column.kind).name) + " " +
            std::to_string(column.size) + "\n";
  }
  for (const SearchOrder& order : search->order)
    text += std::to_string(order.column) + std::string(RowOf(order.kind).name) + " ";
  return text + std::to_string(search->shownColumns) + " " + std::to_string(search->rowLimit) +
         " " + std::to_string(search->fingerprint) + " " +
         std::to_string(search->statement.plannedForValues);
}

Answer<RenderedSearch> DialectWorld::Render(const std::string& sql, const Asking& asking) const {
  const SearchInput input{sql,
                          asking.params,
                          asking.rowLimit,
                          asking.continuation,
                          engine_,
                          [](const CatalogueTable&) { return true; },
                          [&](const CatalogueTable&) { return asking.predicate; },
                          *Date::FromYmd(2026, 3, 5),
                          TimeZone{}};
  auto search = RenderSearch(input);
  EXPECT_EQ(AsText(kept_.Render(input)), AsText(search)) << sql;
  EXPECT_EQ(AsText(kept_.Render(input)), AsText(search)) << "asked again: " << sql;
  return search;
}

DataPacket DialectWorld::Portion(const std::string& sql, const Asking& asking) {
  const auto search = Render(sql, asking);
  if (!search) throw std::runtime_error(search.GetFailure().message + "\n" + sql);
  auto packets = database_->ReadSnapshot({&search->statement, 1});
  if (!packets) throw std::runtime_error(packets.GetFailure().text + "\n" + search->statement.text);
  DataPacket portion = FinishPortion(*search, std::move(packets->front()));
  EXPECT_TRUE(portion.IsSound()) << sql;
  return portion;
}

std::string DialectWorld::Rows(const std::string& sql, const Asking& asking) {
  const auto search = Render(sql, asking);
  if (!search) return search.GetFailure().message;
  return RowsOf(Portion(sql, asking));
}

std::string DialectWorld::Plan(const std::string& sql, const Asking& asking) {
  const auto search = Render(sql, asking);
  if (!search) return search.GetFailure().message;
  Statement explain{"explain query plan " + search->statement.text, search->statement.params, {}};
  explain.columns = {{"id", ValueKind::Int32, 0},
                     {"parent", ValueKind::Int32, 0},
                     {"notused", ValueKind::Int32, 0},
                     {"detail", ValueKind::Memo, 0}};
  auto packets = database_->ReadSnapshot({&explain, 1});
  if (!packets) throw std::runtime_error(packets.GetFailure().text);
  std::string plan;
  for (std::size_t row = 0; row < packets->front().rowCount; ++row) {
    plan += packets->front().At(row, "detail").ToText() + "\n";
  }
  return plan;
}

std::string RowsOf(const DataPacket& packet) {
  std::string rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    rows += row == 0 ? "" : "; ";
    for (std::size_t column = 0; column < packet.columns.size(); ++column) {
      const Variant value = packet.At(row, column);
      rows += (column == 0 ? "" : " ") + (value.IsNull() ? "-" : value.ToText());
    }
  }
  return rows;
}

}  // namespace orvane::server
