#include "server/demo/demo_writer.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <utility>

#include "packet/fold.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

/// Rows of one statement; what is left over goes row by row.
constexpr std::size_t kRowsTogether = 32;
/// Statements of one round trip.
constexpr std::size_t kStatementsTogether = 64;

std::string InsertText(const DemoTable& table, const std::vector<bool>& present, std::size_t rows) {
  std::string columns;
  const auto add = [&](std::string_view prefix, std::string_view name) {
    columns += columns.empty() ? "" : ", ";
    columns += std::string(prefix) + std::string(name);
  };
  std::size_t width = 0;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    if (!present[i]) continue;
    add("", table.columns[i].name);
    ++width;
    if (!table.columns[i].folded) continue;
    add("Fold", table.columns[i].name);
    ++width;
  }
  std::string text = "insert into " + std::string(table.name) + " (" + columns + ") values ";
  std::size_t number = 0;
  for (std::size_t row = 0; row < rows; ++row) {
    text += row == 0 ? "(" : ", (";
    for (std::size_t i = 0; i < width; ++i)
      text += (i == 0 ? "?" : ", ?") + std::to_string(++number);
    text += ")";
  }
  return text;
}

}  // namespace

DemoWriter::Shape& DemoWriter::ShapeOf(const DemoTable& table, const VariantArray& row) {
  auto pending = std::find_if(pending_.begin(), pending_.end(),
                              [&](const Pending& own) { return own.table == &table; });
  if (pending == pending_.end()) pending = pending_.insert(pending_.end(), {&table, {}});
  for (Shape& shape : pending->shapes) {
    bool same = true;
    for (std::size_t i = 0; same && i < row.size(); ++i)
      same = shape.present[i] != row[i].IsNull();
    if (same) return shape;
  }
  Shape& shape = pending->shapes.emplace_back();
  for (std::size_t i = 0; i < row.size(); ++i) {
    shape.present.push_back(!row[i].IsNull());
    if (row[i].IsNull()) continue;
    shape.width += table.columns[i].folded ? 2 : 1;
  }
  return shape;
}

void DemoWriter::Add(const DemoTable& table, VariantArray row) {
  assert(row.size() == table.columns.size());
  Shape& shape = ShapeOf(table, row);
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (row[i].IsNull()) continue;
    const std::string* text = table.columns[i].folded ? row[i].AsString() : nullptr;
    assert(!table.columns[i].folded || text);
    std::string fold = text ? Fold(*text) : "";
    shape.values.push_back(std::move(row[i]));
    if (table.columns[i].folded) shape.values.emplace_back(std::move(fold));
  }
}

EngineAnswer<Done> DemoWriter::Send(Transaction& transaction, const DemoTable& table,
                                    Shape& shape) {
  const std::size_t rows = shape.width == 0 ? 0 : shape.values.size() / shape.width;
  const std::string many = InsertText(table, shape.present, kRowsTogether);
  const std::string one = InsertText(table, shape.present, 1);
  std::vector<Statement> statements;
  auto next = std::make_move_iterator(shape.values.begin());
  for (std::size_t row = 0; row < rows;) {
    const std::size_t together = rows - row >= kRowsTogether ? kRowsTogether : 1;
    const auto end = next + static_cast<std::ptrdiff_t>(together * shape.width);
    statements.push_back({together == 1 ? one : many, VariantArray(next, end), {}});
    next = end;
    row += together;
    if (row < rows && statements.size() < kStatementsTogether) continue;
    const auto written = transaction.ExecuteAll(statements);
    if (!written) return written.GetFailure();
    statements.clear();
  }
  written_ += static_cast<std::int64_t>(rows);
  shape.values.clear();
  return Done{};
}

EngineAnswer<Done> DemoWriter::Flush(Transaction& transaction) {
  for (Pending& pending : pending_) {
    for (Shape& shape : pending.shapes) {
      if (const auto sent = Send(transaction, *pending.table, shape); !sent) return sent;
    }
  }
  return Done{};
}

}  // namespace orvane::server
