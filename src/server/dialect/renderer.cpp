#include "server/dialect/renderer.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "server/dialect/binder.h"
#include "server/dialect/portions.h"
#include "server/dialect/seen_first.h"

namespace orvane::server::dialect {
namespace {

/// PostgreSQL's type of a kind. SQLite needs none: its columns keep whole numbers, reals and texts.
std::string_view PostgresType(ValueKind kind) {
  switch (kind) {
    case ValueKind::Bool:
    case ValueKind::Byte:
    case ValueKind::Int16:
      return "smallint";
    case ValueKind::Int32:
      return "integer";
    case ValueKind::Code:
      return "bigint";
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
    case ValueKind::String:
    case ValueKind::Memo:
      return "text";
  }
  return "text";
}

/// Parameters are wide, so that a value beyond a column's range compares instead of failing.
std::string_view PostgresParameterType(ValueKind kind) {
  switch (kind) {
    case ValueKind::Bool:
    case ValueKind::Byte:
    case ValueKind::Int16:
    case ValueKind::Int32:
      return "bigint";
    case ValueKind::Amount:
    case ValueKind::Rate:
      return "numeric";
    default:
      return PostgresType(kind);
  }
}

class Renderer {
 public:
  explicit Renderer(const Rendering& rendering)
      : rendering_(rendering), postgres_(rendering.engine == Engine::Postgres) {}

  std::optional<Rendered> Run(const TypedSelect& select, const std::vector<TypedOrder>& order) {
    RenderedSearch search;
    search.shownColumns = select.items.size();
    search.rowLimit = rendering_.rowLimit;
    for (const TypedItem& item : select.items) {
      search.statement.columns.push_back({item.name, item.value->type, item.value->size});
    }
    std::vector<TermPtr> hidden;
    for (const TypedOrder& one : order) {
      search.order.push_back({one.value->type, ColumnOf(select, hidden, one.value)});
    }
    for (std::size_t i = 0; i < hidden.size(); ++i) {
      search.statement.columns.push_back({"~" + std::to_string(i + 1), hidden[i]->type, 0});
      if (hidden[i]->type == ValueKind::String) {
        search.statement.columns.back().kind = ValueKind::Memo;  // a fold has no size of its own
      }
    }
    WriteRows(select, hidden, order, search);
    if (text_.size() > kLongest || params_.size() > kMostParams) return std::nullopt;
    search.statement.text = std::move(text_);
    search.statement.params = std::move(params_);
    return Rendered{std::move(search), std::move(sources_)};
  }

 private:
  /// How a value of the order is written: as a term, or as a column of the distinct rows.
  struct OrderValue {
    TermPtr term;
    std::string column;  ///< empty: write the term
    bool descending = false;
  };

  /// What is bound is not too long; its order and its rows' predicates stand several times.
  static constexpr std::size_t kLongest = 4 * kMostWritten;
  /// Fewer than either engine takes.
  static constexpr std::size_t kMostParams = 30'000;

  void Add(std::string_view text) {
    if (text_.size() <= kLongest) text_ += text;
  }

  // --- statements

  /// Position of an order's value in the answer; adds it to the hidden columns when it is not
  /// shown.
  static std::size_t ColumnOf(const TypedSelect& select, std::vector<TermPtr>& hidden,
                              const TermPtr& value) {
    for (std::size_t i = 0; i < select.items.size(); ++i) {
      if (SameTerm(*select.items[i].value, *value)) return i;
    }
    hidden.push_back(value);
    return select.items.size() + hidden.size() - 1;
  }

  void WriteColumns(const TypedSelect& select, const std::vector<TermPtr>& hidden) {
    std::size_t number = 0;
    const auto write = [&](const Term& term) {
      Add(number == 0 ? "" : ", ");
      WriteShown(term);
      Add(" AS c" + std::to_string(++number));
    };
    for (const TypedItem& item : select.items)
      write(*item.value);
    for (const TermPtr& term : hidden)
      write(*term);
  }

  /// The portion. SQLite plans without looking at values, so a part of a name is written both ways,
  /// and how many names have its trigrams decides which of them answers: the few are looked up and
  /// then ordered, of many the first are met soon in their order.
  void WriteRows(const TypedSelect& select, const std::vector<TermPtr>& hidden,
                 const std::vector<TypedOrder>& order, const RenderedSearch& search) {
    const std::string limit = std::to_string(rendering_.rowLimit + 1);
    const Condition* part = postgres_ ? nullptr : ByTrigrams(select, order);
    if (part == nullptr) {
      WriteSelect(select, hidden, order, search);
      return Add(" LIMIT " + limit);
    }
    const TypedSelect few = AmongTrigrams(select, *part);
    Add("SELECT * FROM (");
    WriteSelect(few, hidden, order, search);
    WriteLimit(*part, limit, "0");
    Add(") UNION ALL SELECT * FROM (");
    WriteSelect(select, hidden, order, search);
    WriteLimit(*part, "0", limit);
    Add(")");
  }

  void WriteSelect(const TypedSelect& select, const std::vector<TermPtr>& hidden,
                   const std::vector<TypedOrder>& order, const RenderedSearch& search) {
    select.distinct ? WriteDistinct(select, hidden, order, search)
                    : WritePlain(select, hidden, order);
  }

  void WriteLimit(const Condition& part, const std::string& ofFew, const std::string& ofMany) {
    // So many are looked up and ordered in a few milliseconds, and so is the page of more met.
    constexpr int kFew = 1000;
    Add(" LIMIT (SELECT CASE WHEN count(*) <= " + std::to_string(kFew) + " THEN " + ofFew +
        " ELSE " + ofMany + " END FROM (");
    WriteFound("1", *part.indexed, *part.parts[3]);
    Add(" LIMIT " + std::to_string(kFew + 1) + "))");
  }

  /// The rows that an index of trigrams finds.
  void WriteFound(std::string_view shown, const Term& indexed, const Term& asked) {
    const std::string index(indexed.column->trigrams);
    Add("SELECT " + std::string(shown) + " FROM " + index + " WHERE " + index + " MATCH ");
    Write(asked);
  }

  void WritePlain(const TypedSelect& select, const std::vector<TermPtr>& hidden,
                  const std::vector<TypedOrder>& order) {
    std::vector<OrderValue> values;
    values.reserve(order.size());
    for (const TypedOrder& one : order)
      values.push_back({one.value, {}, one.descending});
    Add("SELECT ");
    WriteColumns(select, hidden);
    WriteFromWhere(select, values);
    WriteOrder(values);
  }

  /// PostgreSQL orders DISTINCT rows by what they show only, so they are ordered from outside.
  void WriteDistinct(const TypedSelect& select, const std::vector<TermPtr>& hidden,
                     const std::vector<TypedOrder>& order, const RenderedSearch& search) {
    std::vector<OrderValue> values;
    for (std::size_t i = 0; i < order.size(); ++i) {
      values.push_back({order[i].value, "d.c" + std::to_string(search.order[i].column + 1),
                        order[i].descending});
    }
    Add("SELECT ");
    for (std::size_t i = 0; i < search.statement.columns.size(); ++i) {
      Add((i == 0 ? "d.c" : ", d.c") + std::to_string(i + 1));
    }
    Add(" FROM (SELECT DISTINCT ");
    WriteColumns(select, hidden);
    WriteFromWhere(select, {});
    Add(") d");
    if (!rendering_.after.empty()) {
      Add(" WHERE ");
      WriteAfter(values);
    }
    WriteOrder(values);
  }

  void WriteFromWhere(const TypedSelect& select, const std::vector<OrderValue>& order) {
    Add(" FROM ");
    const std::span<const TypedTable> tables(select.tables);
    for (std::size_t i = 0; i < tables.size(); ++i) {
      const TypedTable& table = tables[i];
      if (table.join != JoinKind::First) {
        Add(table.join == JoinKind::Left ? " LEFT JOIN " : " INNER JOIN ");
      }
      Add(table.table->stored);
      Add(" t" + std::to_string(table.number));
      if (table.join == JoinKind::First) continue;
      Add(" ON ");
      WriteFilters(table.on, table, tables.first(i + 1), {});
    }
    const bool filtered = !Is(select.where, Truth::True) || HasPredicate(select.tables.front()) ||
                          (!order.empty() && !rendering_.after.empty());
    if (!filtered) return;
    Add(" WHERE ");
    WriteFilters(select.where, select.tables.front(), tables, order);
  }

  static bool HasPredicate(const TypedTable& table) { return !table.predicate.text.empty(); }

  /// The condition of `table`, its predicate and what comes after the last portion, joined by AND.
  /// What could tell of rows that are not seen is tried on those of `tables` that are.
  void WriteFilters(const ConditionPtr& condition, const TypedTable& table,
                    std::span<const TypedTable> tables, const std::vector<OrderValue>& order) {
    const bool fenced = std::any_of(tables.begin(), tables.end(), HasPredicate);
    std::vector<ConditionPtr> first;
    std::vector<ConditionPtr> behind;
    for (const ConditionPtr& part : Conjuncts(condition))
      (fenced && !TellsNothing(*part) ? behind : first).push_back(part);
    const bool continues = !order.empty() && !rendering_.after.empty();
    const bool continuesBehind =
        continues && fenced && std::any_of(order.begin(), order.end(), [](const OrderValue& value) {
          return !TellsNothing(*value.term);
        });
    bool any = false;
    const auto next = [&] {
      Add(any ? " AND " : "");
      any = true;
    };
    if (!first.empty()) {
      next();
      WriteJoined(first, " AND ");
    }
    if (HasPredicate(table)) {
      next();
      WritePredicate(table);
    }
    if (continues && !continuesBehind) {
      next();
      WriteAfter(order);
    }
    if (!behind.empty() || continuesBehind) {
      next();
      Add("CASE WHEN ");
      WriteSeen(table, tables);
      Add(" THEN ");
      if (!behind.empty()) WriteJoined(behind, " AND ");
      if (continuesBehind) {
        Add(behind.empty() ? "" : " AND ");
        WriteAfter(order);
      }
      Add(" ELSE FALSE END");
    }
    if (!any) Add("1 = 1");
  }

  /// That the rows of the tables are seen, where they are there at all. `table` is the one whose
  /// condition is written.
  void WriteSeen(const TypedTable& table, std::span<const TypedTable> tables) {
    bool any = false;
    for (const TypedTable& seen : tables) {
      if (!HasPredicate(seen)) continue;
      Add(any ? " AND " : "");
      any = true;
      const bool maybeMissing = seen.join == JoinKind::Left && seen.number != table.number;
      if (maybeMissing)
        Add("(t" + std::to_string(seen.number) + "." + KeyOf(*seen.table) + " IS NULL OR ");
      WritePredicate(seen);
      if (maybeMissing) Add(")");
    }
  }

  static std::string KeyOf(const CatalogueTable& table) {
    const auto key = std::find_if(table.columns.begin(), table.columns.end(),
                                  [](const CatalogueColumn& one) { return one.Is(kKeyColumn); });
    assert(key != table.columns.end());
    return std::string(key->name);
  }

  void WritePredicate(const TypedTable& table) {
    const std::size_t before = params_.size();
    params_.insert(params_.end(), table.predicate.params.begin(), table.predicate.params.end());
    for (std::size_t i = 0; i < table.predicate.params.size(); ++i)
      sources_.push_back({ParamSource::From::Predicate, {}, table.number, i});
    Add("(");
    std::string_view text = table.predicate.text;
    while (!text.empty()) {
      const std::size_t mark = text.find_first_of("{?");
      Add(text.substr(0, mark));
      if (mark == std::string_view::npos) break;
      text.remove_prefix(mark);
      if (text.starts_with("{t}")) {
        Add("t" + std::to_string(table.number));
        text.remove_prefix(3);
        continue;
      }
      std::size_t number = 0;
      const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
      assert(text.front() == '?' && error == std::errc() && number >= 1 &&
             number <= table.predicate.params.size());
      Add("?" + std::to_string(before + number));
      text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    }
    Add(")");
  }

  // --- order and continuation

  void WriteValue(const OrderValue& value) {
    if (value.column.empty()) {
      Write(*value.term);
    } else {
      Add(value.column);
    }
  }

  /// Texts are ordered byte by byte on both engines.
  void WriteOrdered(const OrderValue& value) {
    WriteValue(value);
    if (postgres_ && IsText(*value.term)) Add(" COLLATE \"C\"");
  }

  void WriteOrder(const std::vector<OrderValue>& order) {
    for (std::size_t i = 0; i < order.size(); ++i) {
      Add(i == 0 ? " ORDER BY " : ", ");
      WriteOrdered(order[i]);
      if (order[i].descending) Add(" DESC");
      // Nulls are lowest, as SQLite has them.
      if (postgres_ && order[i].term->mayBeNull) {
        Add(order[i].descending ? " NULLS LAST" : " NULLS FIRST");
      }
    }
  }

  void WriteAfter(const std::vector<OrderValue>& order) {
    const VariantArray& after = rendering_.after;
    const bool descending = order.front().descending;
    bool oneRange = true;
    for (std::size_t i = 0; i < order.size(); ++i) {
      oneRange = oneRange && order[i].descending == descending && !after[i].IsNull() &&
                 !(descending && order[i].term->mayBeNull);
    }
    if (!oneRange) return WriteAfterFrom(order, 0);
    Add("(");
    for (std::size_t i = 0; i < order.size(); ++i) {
      Add(i == 0 ? "" : ", ");
      WriteOrdered(order[i]);
    }
    Add(descending ? ") < (" : ") > (");
    for (std::size_t i = 0; i < order.size(); ++i) {
      Add(i == 0 ? "" : ", ");
      WriteParameter(after[i], order[i].term->type, {ParamSource::From::After, {}, 0, i});
    }
    Add(")");
  }

  /// Rows behind the last one by the order's values from number `i` on.
  void WriteAfterFrom(const std::vector<OrderValue>& order, std::size_t i) {
    const OrderValue& value = order[i];
    const bool last = i + 1 == order.size();
    const bool isNull = rendering_.after[i].IsNull();
    Add("(");
    if (isNull && value.descending) {
      Add("1 = 0");
    } else if (isNull) {
      WriteValue(value);
      Add(" IS NOT NULL");
    } else {
      WriteOrdered(value);
      Add(value.descending ? " < " : " > ");
      WriteParameter(rendering_.after[i], value.term->type, {ParamSource::From::After, {}, 0, i});
      if (value.descending && value.term->mayBeNull) {
        Add(" OR ");
        WriteValue(value);
        Add(" IS NULL");
      }
    }
    if (!last) {
      Add(" OR (");
      WriteValue(value);
      Add(isNull ? " IS NULL" : " = ");
      if (!isNull) {
        WriteParameter(rendering_.after[i], value.term->type, {ParamSource::From::After, {}, 0, i});
      }
      Add(" AND ");
      WriteAfterFrom(order, i + 1);
      Add(")");
    }
    Add(")");
  }

  // --- terms

  void WriteParameter(const Variant& value, ValueKind kind, ParamSource source) {
    params_.push_back(value);
    sources_.push_back(source);
    const std::string mark = "?" + std::to_string(params_.size());
    if (postgres_) {
      Add("CAST(" + mark + " AS " + std::string(PostgresParameterType(kind)) + ")");
    } else {
      Add(mark);
    }
  }

  /// A column of the answer: of exactly the kind that the packet's column has.
  void WriteShown(const Term& term) {
    const bool exact = term.kind == TermKind::Column && term.column->expression.empty() &&
                       term.type == term.column->kind;
    if (!postgres_ || exact) return Write(term);
    Add("CAST(");
    Write(term);
    Add(" AS " + std::string(PostgresType(term.type)) + ")");
  }

  void Write(const Term& term) {
    switch (term.kind) {
      case TermKind::Constant:
        return WriteConstant(term);
      case TermKind::Column:
        return WriteColumn(term);
      case TermKind::Case:
        return WriteCase(term);
      case TermKind::FirstNotNull:
        return WriteCall("coalesce(", term.parts);
      case TermKind::Cut:
        return WriteCut(term);
      case TermKind::NumberText:
        Add("substr(CAST(");
        Write(*term.parts[0]);
        return Add(" AS text), 1, " + std::to_string(term.size) + ")");
      case TermKind::Add:
      case TermKind::Subtract:
        return WriteSum(term);
      case TermKind::Max:
        return WriteCall("max(", term.parts);
      case TermKind::Scalar:
        return WriteSubselect(*term.select);
    }
  }

  /// The fold of a cut text is the cut of its fold, without the blanks that Fold leaves out at an
  /// end.
  void WriteCut(const Term& term) {
    if (term.folded) Add("rtrim(");
    Add("substr(");
    Write(*term.parts[0]);
    Add(", 1, " + std::to_string(term.size) + ")");
    if (term.folded) Add(", ' \t\r\n\u00A0\u202F')");
  }

  void WriteConstant(const Term& term) {
    if (!term.value.IsNull()) {
      const auto from = term.open.IsOpen() ? ParamSource::From::Open : ParamSource::From::Fixed;
      return WriteParameter(term.value, term.type, {from, term.open});
    }
    if (!postgres_) return Add("NULL");
    Add("CAST(NULL AS " + std::string(PostgresType(term.type)) + ")");
  }

  void WriteColumn(const Term& term) {
    const std::string alias = "t" + std::to_string(term.table);
    if (term.column->expression.empty()) {
      Add(alias + (term.folded ? ".Fold" : "."));
      return Add(term.column->name);
    }
    const CatalogueColumn& column = *term.column;
    const bool mayBeMissing = term.optional && !column.presence.empty();
    if (mayBeMissing) {
      Add("CASE WHEN " + alias + "." + std::string(column.presence) + " IS NULL THEN NULL ELSE ");
    }
    Add("(");
    std::string_view text = term.folded ? column.foldExpression : column.expression;
    while (!text.empty()) {
      const std::size_t mark = text.find('{');
      Add(text.substr(0, mark));
      if (mark == std::string_view::npos) break;
      text.remove_prefix(mark);
      if (text.starts_with("{t}")) {
        Add(alias);
      } else {
        assert(text.starts_with("{today}"));
        WriteParameter(rendering_.today, ValueKind::Date, {ParamSource::From::Today});
      }
      text.remove_prefix(text.find('}') + 1);
    }
    Add(mayBeMissing ? ") END" : ")");
  }

  void WriteCase(const Term& term) {
    Add("CASE");
    for (std::size_t i = 0; i < term.conditions.size(); ++i) {
      Add(" WHEN ");
      Write(*term.conditions[i]);
      Add(" THEN ");
      Write(*term.parts[i]);
    }
    Add(" ELSE ");
    Write(*term.parts.back());
    Add(" END");
  }

  void WriteCall(std::string_view opening, const std::vector<TermPtr>& parts) {
    Add(opening);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      Add(i == 0 ? "" : ", ");
      Write(*parts[i]);
    }
    Add(")");
  }

  void WriteSum(const Term& term) {
    if (term.type != ValueKind::Double)
      return postgres_ ? WriteFittingSum(term) : WriteCheckedSum(term);
    // Quantities are added at six decimals, the same digits on both engines.
    Add(postgres_ ? "(round((" : "orvane_quantity(");
    WriteOperands(term, "");
    Add(")");
    if (postgres_) Add(" * CAST(1e6 AS double precision)) / CAST(1e6 AS double precision))");
  }

  void WriteOperands(const Term& term, std::string_view type) {
    if (!type.empty()) Add("CAST(");
    Write(*term.parts[0]);
    if (!type.empty()) Add(" AS " + std::string(type) + ")");
    Add(term.kind == TermKind::Add ? " + " : " - ");
    Write(*term.parts[1]);
  }

  /// SQLite goes on with a real where 64 bits end; the function answers null for it.
  void WriteCheckedSum(const Term& term) {
    Add("orvane_whole(");
    WriteOperands(term, "");
    Add(")");
  }

  /// PostgreSQL fails where 64 bits end. Its numeric does not: what is beyond an end is brought to
  /// one beyond it, and that is null.
  void WriteFittingSum(const Term& term) {
    const int scale = RowOf(term.type).scale;
    const std::string above = Pointed("9223372036854775808", scale);
    const std::string below = Pointed("-9223372036854775809", scale);
    const bool whole = term.type == ValueKind::Code;
    if (whole) Add("CAST(");
    Add("nullif(nullif(greatest(least(");
    WriteOperands(term, "numeric");
    Add(", " + above + "), " + below + "), " + above + "), " + below + ")");
    if (whole) Add(" AS bigint)");
  }

  /// A number of smallest units with its point.
  static std::string Pointed(std::string digits, int scale) {
    if (scale > 0) digits.insert(digits.size() - static_cast<std::size_t>(scale), ".");
    return digits;
  }

  void WriteSubselect(const TypedSelect& select) {
    Add("(SELECT ");
    if (select.items.empty()) Add("1");
    if (!select.items.empty()) Write(*select.items.front().value);
    WriteFromWhere(select, {});
    Add(")");
  }

  // --- conditions

  void Write(const Condition& condition) {
    switch (condition.kind) {
      case ConditionKind::Constant:
        if (condition.truth == Truth::Unknown) return Add("NULL = 1");
        return Add(condition.truth == Truth::True ? "1 = 1" : "1 = 0");
      case ConditionKind::Compare:
        return WriteCompare(condition);
      case ConditionKind::Contains:
      case ConditionKind::Matches:
        return WriteLike(condition);
      case ConditionKind::Among:
        Write(*condition.parts[0]);
        Add(" IN (");
        WriteFound("rowid", *condition.indexed, *condition.parts[1]);
        return Add(")");
      case ConditionKind::InList:
        Write(*condition.parts[0]);
        return WriteCall(" IN (", {condition.parts.begin() + 1, condition.parts.end()});
      case ConditionKind::InSelect:
        Write(*condition.parts[0]);
        Add(" IN ");
        return WriteSubselect(*condition.select);
      case ConditionKind::Exists:
        Add("EXISTS ");
        return WriteSubselect(*condition.select);
      case ConditionKind::IsNull:
        Write(*condition.parts[0]);
        return Add(" IS NULL");
      case ConditionKind::And:
        return WriteJoined(condition.conditions, " AND ");
      case ConditionKind::Or:
        return WriteJoined(condition.conditions, " OR ");
      case ConditionKind::Not:
        return WriteNot(*condition.conditions.front());
    }
  }

  void WriteLike(const Condition& condition) {
    const TermPtr& text = condition.parts[0];
    if (postgres_ && condition.indexed) {  // a word that its index of trigrams knows
      Write(*condition.indexed);
      Add(" LIKE ");
      return Write(*condition.parts[2]);
    }
    if (condition.kind == ConditionKind::Contains) {
      WriteCall(postgres_ ? "strpos(" : "instr(", {text, condition.parts[1]});
      return Add(" > 0");
    }
    Write(*text);
    Add(" LIKE ");
    Write(*condition.parts[1]);
    Add(" ESCAPE '\\'");
  }

  void WriteNot(const Condition& condition) {
    if (condition.kind == ConditionKind::IsNull) {  // as partial indexes say it
      Write(*condition.parts[0]);
      return Add(" IS NOT NULL");
    }
    Add("NOT (");
    Write(condition);
    Add(")");
  }

  void WriteCompare(const Condition& condition) {
    Write(*condition.parts[0]);
    const bool ordered = condition.sign != "=" && condition.sign != "<>";
    if (postgres_ && ordered && IsText(*condition.parts[0])) Add(" COLLATE \"C\"");
    Add(" " + condition.sign + " ");
    Write(*condition.parts[1]);
  }

  /// In brackets, and where there are many as a tree: engines count how deep a chain is.
  void WriteJoined(std::span<const ConditionPtr> parts, std::string_view word) {
    constexpr std::size_t kLongestChain = 64;
    if (parts.size() == 1) return Write(*parts.front());
    Add("(");
    if (parts.size() > kLongestChain) {
      WriteJoined(parts.first(parts.size() / 2), word);
      Add(word);
      WriteJoined(parts.subspan(parts.size() / 2), word);
      return Add(")");
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
      Add(i == 0 ? "" : word);
      Write(*parts[i]);
    }
    Add(")");
  }

  const Rendering& rendering_;
  bool postgres_;
  std::string text_;
  VariantArray params_;
  std::vector<ParamSource> sources_;
};

}  // namespace

std::optional<Rendered> Render(const TypedSelect& select, const std::vector<TypedOrder>& order,
                               const Rendering& rendering) {
  return Renderer(rendering).Run(select, order);
}

}  // namespace orvane::server::dialect
