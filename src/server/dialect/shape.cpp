#include "server/dialect/shape.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <map>

#include "server/dialect/binder.h"
#include "server/dialect/continuation.h"
#include "server/dialect/document_rows.h"
#include "server/dialect/listed_names.h"
#include "server/dialect/parser.h"
#include "server/dialect/portions.h"

namespace orvane::server::dialect {
namespace {

/// A hash, eight bytes at a time, of everything that decides which rows the search has, and in
/// which order.
std::uint64_t Fingerprint(const SearchInput& input) {
  std::uint64_t hash = 14695981039346656037ull;
  const auto mix = [&](std::uint64_t word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ull;
    hash ^= hash >> 29;
  };
  const auto add = [&](std::string_view text) {
    mix(text.size());
    for (; !text.empty(); text.remove_prefix(std::min<std::size_t>(text.size(), 8))) {
      std::uint64_t word = 0;
      std::memcpy(&word, text.data(), std::min<std::size_t>(text.size(), 8));
      mix(word);
    }
  };
  add(input.sql);
  for (const NamedValue& value : input.params) {
    add(value.name);
    add(value.value.ToText());
  }
  return hash;
}

std::int32_t RowLimit(const SearchInput& input) {
  return input.rowLimit <= 0 ? kMostSearchRows : std::min(input.rowLimit, kMostSearchRows);
}

std::vector<const Token*> LiteralsOf(const std::vector<Token>& tokens) {
  std::vector<const Token*> literals;
  for (const Token& token : tokens) {
    if (token.literal >= 0) literals.push_back(&token);
  }
  return literals;
}

std::optional<Variant> LiteralValue(const Token& token) {
  if (token.kind == TokenKind::Text) return Variant(Unquoted(token.text));
  return NumberConstant(token.text, token.kind == TokenKind::Integer);
}

std::vector<Shape::Given> GivenOf(const BoundSearch& bound, const std::vector<Token>& tokens,
                                  const SearchInput& input) {
  std::vector<Shape::Given> given;
  for (const Token* literal : LiteralsOf(tokens))
    given.push_back({bound.open[given.size()], std::string(literal->text), {}, {}});
  for (const std::string& name : bound.parameters)
    given.push_back({bound.open[given.size()], {}, name, *FindValue(input.params, name)});
  return given;
}

/// Values for the sources of a shape, taken from another input.
class Filler {
 public:
  Filler(const Shape& shape, const std::vector<Token>& tokens, const SearchInput& input)
      : shape_(shape), tokens_(tokens), input_(input) {}

  std::optional<RenderedSearch> Run() {
    const std::uint64_t fingerprint = Fingerprint(input_);
    if (!TakeGiven() || !TakePredicates() || !TakeAfter(fingerprint)) return std::nullopt;
    RenderedSearch search = shape_.search;
    search.fingerprint = fingerprint;
    for (std::size_t i = 0; i < shape_.sources.size(); ++i) {
      if (!Put(shape_.sources[i], search.statement.params[i])) return std::nullopt;
    }
    return search;
  }

 private:
  bool TakeGiven() {
    const std::vector<const Token*> literals = LiteralsOf(tokens_);
    if (literals.size() != shape_.literals) return false;
    for (std::size_t i = 0; i < shape_.given.size(); ++i) {
      const Shape::Given& given = shape_.given[i];
      std::optional<Variant> value;
      if (i < literals.size()) {
        if (!given.open && literals[i]->text != given.literal) return false;
        if (given.open) value = LiteralValue(*literals[i]);
      } else {
        const Variant* parameter = FindValue(input_.params, given.name);
        if (parameter == nullptr || (!given.open && !(*parameter == given.value))) return false;
        if (given.open) value = PlainParameter(*parameter);
      }
      if (given.open && !value) return false;
      given_.push_back(value.value_or(Variant()));
    }
    return true;
  }

  bool TakePredicates() {
    for (const Shape::Table& table : shape_.tables) {
      if (!MayRead(input_, *table.table)) return false;
      if (table.table->rows != RowsSeen::Visible) continue;
      RowPredicate predicate = PredicateOf(*table.table, input_.visibility);
      if (predicate.text != table.predicate) return false;
      predicates_.emplace(table.number, std::move(predicate.params));
    }
    return true;
  }

  bool TakeAfter(std::uint64_t fingerprint) {
    if (input_.continuation.empty()) return shape_.after.empty();
    std::vector<ValueKind> kinds;
    for (const SearchOrder& order : shape_.search.order)
      kinds.push_back(order.kind);
    auto after = ReadContinuation(input_.continuation, fingerprint, kinds);
    if (!after || after->size() != shape_.after.size()) return false;
    for (std::size_t i = 0; i < after->size(); ++i) {
      if ((*after)[i].IsNull() != shape_.after[i].IsNull()) return false;
    }
    after_ = *std::move(after);
    return true;
  }

  bool Put(const ParamSource& source, Variant& param) {
    switch (source.from) {
      case ParamSource::From::Fixed:
        return true;
      case ParamSource::From::Today:
        param = input_.today;
        return true;
      case ParamSource::From::After:
        param = after_[source.at];
        return true;
      case ParamSource::From::Predicate:
        param = predicates_.at(source.table).at(source.at);
        return true;
      case ParamSource::From::Open:
        break;
    }
    std::optional<Variant> value =
        ReadOpen(source.open, given_[static_cast<std::size_t>(source.open.given)], input_.zone);
    if (!value) return false;
    param = *std::move(value);
    return true;
  }

  const Shape& shape_;
  const std::vector<Token>& tokens_;
  const SearchInput& input_;
  VariantArray given_;
  VariantArray after_;
  std::map<int, VariantArray> predicates_;
};

}  // namespace

std::size_t Shape::Bytes() const {
  const auto sizeOf = [](const Variant& value) {
    const std::string* text = value.AsString();
    return sizeof(Variant) + (text == nullptr ? 0 : text->size());
  };
  std::size_t bytes = sizeof(Shape) + search.statement.text.size() +
                      sources.size() * sizeof(ParamSource) +
                      search.order.size() * sizeof(SearchOrder);
  for (const VariantArray* values : {&search.statement.params, &after}) {
    for (const Variant& value : *values)
      bytes += sizeOf(value);
  }
  for (const ResultColumn& column : search.statement.columns)
    bytes += sizeof(ResultColumn) + column.name.size();
  for (const Given& one : given)
    bytes += sizeof(Given) + one.literal.size() + one.name.size() + sizeOf(one.value);
  for (const Table& table : tables)
    bytes += sizeof(Table) + table.predicate.size();
  return bytes;
}

std::string ShapeKey(const std::vector<Token>& tokens, const SearchInput& input) {
  std::string key;
  key.reserve(input.sql.size() + 64);
  for (const Token& token : tokens) {
    switch (token.kind) {
      case TokenKind::Integer:
      case TokenKind::Decimal:
      case TokenKind::Text:
        key += static_cast<char>('0' + static_cast<int>(token.kind));  // begins no other token
        break;
      case TokenKind::Variable:
        key += token.declared ? '@' : ':';
        key += token.text;
        break;
      default:
        key += token.text;
    }
    key += ' ';
  }
  for (const int number : {static_cast<int>(input.engine), static_cast<int>(RowLimit(input)),
                           static_cast<int>(input.zone.offsetMinutes),
                           static_cast<int>(input.zone.europeanSummerTime)}) {
    key += std::to_string(number) + '\n';
  }
  return key;
}

Answer<Shape> MakeShape(const std::vector<Token>& tokens, const SearchInput& input) {
  const auto until =
      std::chrono::steady_clock::now() + std::chrono::milliseconds(input.readMilliseconds);
  Answer<SyntaxStatement> statement = Parse(tokens);
  if (!statement) return statement.GetFailure();
  Answer<BoundSearch> bound = Bind(*statement, input, until);
  if (!bound) return bound.GetFailure();
  TypedSelect& select = bound->select;
  Shape shape;
  for (const auto& [number, table] : bound->tables) {
    const bool seen = table->rows == RowsSeen::Visible;
    shape.tables.push_back(
        {number, table, seen ? PredicateOf(*table, input.visibility).text : std::string()});
  }
  DropUnusedSettings(select);
  ReplaceDistinct(select);
  UseListedNames(select);
  const std::vector<TypedOrder> order = PortionOrder(select);

  Rendering rendering;
  rendering.engine = input.engine;
  rendering.today = input.today;
  rendering.rowLimit = RowLimit(input);
  const std::uint64_t fingerprint = Fingerprint(input);
  if (!input.continuation.empty()) {
    std::vector<ValueKind> kinds;
    kinds.reserve(order.size());
    for (const TypedOrder& one : order)
      kinds.push_back(one.value->type);
    std::optional<VariantArray> after = ReadContinuation(input.continuation, fingerprint, kinds);
    if (!after) {
      return Failure{FailureKind::BadRequest,
                     "Продължението не е от това търсене. Започнете търсенето отначало."};
    }
    rendering.after = *std::move(after);
  }
  std::optional<Rendered> rendered = Render(select, order, rendering);
  if (!rendered) return NotUnderstood(statement->select.place, "заявката става твърде дълга");
  shape.search = std::move(rendered->search);
  shape.search.fingerprint = fingerprint;
  shape.search.statement.plannedForValues = ValuesDecideThePlan(select, order);
  shape.sources = std::move(rendered->sources);
  shape.literals = static_cast<std::size_t>(statement->literals);
  shape.given = GivenOf(*bound, tokens, input);
  for (ParamSource& source : shape.sources) {
    const bool open = source.from == ParamSource::From::Open;
    if (open && !bound->open[static_cast<std::size_t>(source.open.given)])
      source.from = ParamSource::From::Fixed;
  }
  shape.after = std::move(rendering.after);
  return shape;
}

std::optional<RenderedSearch> Fill(const Shape& shape, const std::vector<Token>& tokens,
                                   const SearchInput& input) {
  return Filler(shape, tokens, input).Run();
}

}  // namespace orvane::server::dialect
