#include "server/dialect/binder.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "packet/fold.h"
#include "server/dialect/comparisons.h"
#include "server/dialect/document_rows.h"
#include "server/dialect/fold_of.h"
#include "server/dialect/given_values.h"
#include "server/dialect/like_pattern.h"

namespace orvane::server::dialect {
namespace {

class Binder {
 public:
  using Until = std::chrono::steady_clock::time_point;

  Binder(const SearchInput& input, int literals, Until until)
      : input_(input), given_(literals), until_(until) {}

  Answer<BoundSearch> Run(const SyntaxStatement& statement) {
    const bool bound = BindVariables(statement) && BindSelect(statement.select, bound_.select);
    if (!bound || failure_) return *failure_;
    bound_.parameters = given_.Parameters();
    bound_.open = given_.Open();
    return std::move(bound_);
  }

 private:
  struct Scope {
    const SyntaxSelect* syntax = nullptr;
    TypedSelect* select = nullptr;
    bool itemsBound = false;
  };
  struct Variable {
    std::string name;
    Variant value;
  };

  // --- refusals

  std::nullptr_t Refuse(Place place, const std::string& what) {
    if (!failure_) failure_ = NotUnderstood(place, what);
    return nullptr;
  }
  bool RefuseAll(Place place, const std::string& what) {
    Refuse(place, what);
    return false;
  }

  /// Counts what stands in one place more, so that no reuse of terms makes a long statement of a
  /// short one.
  bool Spend(std::size_t weight, Place place) {
    spent_ += weight;
    if (spent_ > kMostWritten) return RefuseAll(place, "заявката става твърде дълга");
    if (std::chrono::steady_clock::now() < until_) return true;
    return RefuseAll(place, "заявката се чете твърде дълго");
  }

  // --- DECLARE and SET

  bool BindVariables(const SyntaxStatement& statement) {
    for (const SyntaxVariable& variable : statement.variables)
      variables_.push_back({variable.name, {}});
    for (const SyntaxSet& set : statement.sets) {
      const TermPtr term = BindTerm(*set.value);
      if (!term) return false;
      const SyntaxVariable& variable = statement.variables[set.variable];
      std::optional<Variant> declared =
          DeclaredValue(variable.type, variable.size, term->value, input_.zone);
      if (!declared) {
        return RefuseAll(set.value->place, "стойността " + Quoted(term->value.ToText()) +
                                               " не е от вида на променливата " +
                                               Quoted("@" + variable.name));
      }
      variables_[set.variable].value = *std::move(declared);
    }
    return true;
  }

  // --- SELECT

  bool BindSelect(const SyntaxSelect& syntax, TypedSelect& select) {
    select.distinct = syntax.distinct;
    select.where = MakeTruth(Truth::True);
    scopes_.push_back({&syntax, &select, false});
    const bool bound = BindTables(syntax, select) && BindItems(syntax, select) &&
                       BindWhere(syntax, select) && BindOrder(syntax, select);
    scopes_.pop_back();
    if (!bound || !Spend(0, syntax.place)) return false;
    if (WeightOf(select) <= kMostWritten) return true;
    return RefuseAll(syntax.place, "заявката става твърде дълга");
  }

  bool BindTables(const SyntaxSelect& syntax, TypedSelect& select) {
    for (const SyntaxTable& written : syntax.tables) {
      TypedTable table;
      table.table = FindCatalogueTable(written.name);
      if (table.table == nullptr) {
        return RefuseAll(written.place, "непозната таблица " + Quoted(written.name));
      }
      if (!MayReadHere(*table.table)) return false;
      table.number = ++lastTable_;
      bound_.tables.emplace_back(table.number, table.table);
      table.alias = written.alias.empty() ? written.name : written.alias;
      table.join = written.join;
      const auto same = [&](const TypedTable& other) { return SameName(other.alias, table.alias); };
      if (std::any_of(select.tables.begin(), select.tables.end(), same)) {
        return RefuseAll(written.place,
                         "името " + Quoted(table.alias) + " е дадено на две таблици");
      }
      if (table.table->rows == RowsSeen::Visible)
        table.predicate = PredicateOf(*table.table, input_.visibility);
      select.tables.push_back(std::move(table));
      if (!written.on) continue;
      const ConditionPtr on = BindCondition(*written.on);
      if (!on) return false;
      select.tables.back().on = AsFilter(on);
    }
    return true;
  }

  bool MayReadHere(const CatalogueTable& table) {
    if (MayRead(input_, table)) return true;
    if (!failure_) {
      failure_ = Failure{FailureKind::NoRight, "Нямате право да търсите в таблица „" +
                                                   std::string(table.name) + "“ оттук."};
    }
    return false;
  }

  bool BindItems(const SyntaxSelect& syntax, TypedSelect& select) {
    const GivenValues::Deciding deciding(given_);
    const bool nested = scopes_.size() > 1;
    for (const SyntaxItem& written : syntax.items) {
      const TermPtr value = written.value->kind == SyntaxKind::Max && nested
                                ? BindMax(*written.value)
                                : BindTerm(*written.value);
      if (!value) return false;
      TypedItem item;
      item.value = Typed(value);
      item.name = written.alias;
      if (item.name.empty() && written.value->kind == SyntaxKind::Name) {
        item.name = written.value->text;
      }
      if (!nested && item.name.empty()) {
        return RefuseAll(written.place, "колоната няма име, дайте ѝ с AS");
      }
      const auto same = [&](const TypedItem& other) { return SameName(other.name, item.name); };
      if (!nested && std::any_of(select.items.begin(), select.items.end(), same)) {
        return RefuseAll(written.place, "две колони се казват " + Quoted(item.name));
      }
      select.items.push_back(std::move(item));
    }
    if (nested && select.items.size() != 1) {
      return RefuseAll(syntax.place, "вложената заявка чете точно една колона");
    }
    scopes_.back().itemsBound = true;
    return true;
  }

  bool BindWhere(const SyntaxSelect& syntax, TypedSelect& select) {
    if (!syntax.where) return true;
    const ConditionPtr where = BindCondition(*syntax.where);
    if (!where) return false;
    select.where = AsFilter(where);
    return true;
  }

  bool BindOrder(const SyntaxSelect& syntax, TypedSelect& select) {
    const GivenValues::Deciding deciding(given_);
    for (const SyntaxOrder& written : syntax.order) {
      const TypedItem* item = nullptr;
      if (written.value->kind == SyntaxKind::Name && written.value->table.empty()) {
        item = FindItem(select, written.value->text);
      } else if (written.value->kind == SyntaxKind::Integer) {
        return RefuseAll(written.value->place, "подрежда се по име на колона, не по номер");
      }
      const TermPtr value = item != nullptr ? item->value : BindTerm(*written.value);
      if (!value || !Spend(value->weight, written.value->place)) return false;
      if (select.distinct && item == nullptr && !IsAmongItems(select, *value)) {
        return RefuseAll(written.value->place, "при DISTINCT се подрежда само по прочетена колона");
      }
      if (!value->IsConstant()) select.order.push_back({value, written.descending});
    }
    return true;
  }

  static const TypedItem* FindItem(const TypedSelect& select, std::string_view name) {
    for (const TypedItem& item : select.items) {
      if (SameName(item.name, name)) return &item;
    }
    return nullptr;
  }

  static bool IsAmongItems(const TypedSelect& select, const Term& term) {
    return std::any_of(select.items.begin(), select.items.end(),
                       [&](const TypedItem& item) { return SameTerm(*item.value, term); });
  }

  // --- terms

  TermPtr BindTerm(const SyntaxExpr& syntax) {
    switch (syntax.kind) {
      case SyntaxKind::Integer:
      case SyntaxKind::Decimal:
        return BindNumber(syntax);
      case SyntaxKind::Text:
        return given_.MakeLiteral(syntax.text, syntax.place, syntax.literal);
      case SyntaxKind::Null:
        return MakeConstant({}, syntax.place);
      case SyntaxKind::Variable:
        return BindVariable(syntax);
      case SyntaxKind::Name:
        return BindName(syntax);
      case SyntaxKind::IsNullOf:
        return BindIsNullOf(syntax);
      case SyntaxKind::Max:
        return Refuse(syntax.place, "MAX се допуска само сам във вложена заявка");
      case SyntaxKind::CastText:
        return BindCastText(syntax);
      case SyntaxKind::CastInt:
        return BindCastInt(syntax);
      case SyntaxKind::Case:
        return BindCase(syntax);
      case SyntaxKind::Select:
        return BindScalar(syntax);
      case SyntaxKind::Negate:
        return BindNegate(syntax);
      case SyntaxKind::Add:
      case SyntaxKind::Subtract:
        return BindSum(syntax);
      default:
        return Refuse(syntax.place, "очаква се стойност вместо условие");
    }
  }

  TermPtr BindNumber(const SyntaxExpr& syntax) {
    std::optional<Variant> number = NumberConstant(syntax.text, syntax.kind == SyntaxKind::Integer);
    if (!number)
      return Refuse(syntax.place, "числото " + Quoted(syntax.text) + " е извън допустимото");
    return given_.MakeLiteral(*std::move(number), syntax.place, syntax.literal);
  }

  TermPtr BindVariable(const SyntaxExpr& syntax) {
    if (syntax.declared) {
      for (const Variable& variable : variables_) {
        if (SameName(variable.name, syntax.text)) {
          return MakeConstant(variable.value, syntax.place);
        }
      }
    }
    const Variant* value = FindValue(input_.params, syntax.text);
    if (value == nullptr) {
      return Refuse(syntax.place, "няма стойност за параметър " + Quoted(syntax.text));
    }
    std::optional<Variant> plain = PlainParameter(*value);
    if (!plain) {
      return Refuse(syntax.place, "параметърът " + Quoted(syntax.text) + " не е проста стойност");
    }
    return given_.MakeParameter(*std::move(plain), syntax.place, syntax.text);
  }

  TermPtr BindName(const SyntaxExpr& syntax) {
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
      std::vector<TermPtr> found = FindColumns(*scope->select, syntax);
      if (failure_) return nullptr;
      // An alias holds where the SELECT that gives it is searched and ordered, not further in.
      const bool plain = scopes_.size() == 1 && syntax.table.empty() && scope->itemsBound;
      const TypedItem* item = plain ? FindItem(*scope->select, syntax.text) : nullptr;
      if (found.size() == 1) return found.front();
      if (item != nullptr) {
        return Spend(item->value->weight, syntax.place) ? item->value : nullptr;
      }
      if (found.size() > 1) {
        return Refuse(syntax.place, "колоната " + Quoted(syntax.text) + " е в няколко таблици");
      }
    }
    const std::string name = syntax.table.empty() ? syntax.text : syntax.table + "." + syntax.text;
    return Refuse(syntax.place, "непозната колона " + Quoted(name));
  }

  std::vector<TermPtr> FindColumns(const TypedSelect& select, const SyntaxExpr& syntax) {
    std::vector<TermPtr> found;
    for (const TypedTable& table : select.tables) {
      if (!syntax.table.empty() && !SameName(table.alias, syntax.table)) continue;
      const CatalogueColumn* column = table.table->Find(syntax.text);
      if (column == nullptr) continue;
      found.push_back(MakeColumn(table.number, *column, table.join == JoinKind::Left));
    }
    return found;
  }

  TermPtr BindIsNullOf(const SyntaxExpr& syntax) {
    std::vector<TermPtr> parts = {BindTerm(*syntax.parts[0]), BindTerm(*syntax.parts[1])};
    if (!parts[0] || !parts[1]) return nullptr;
    if (parts[0]->IsNull()) return parts[1];
    if (!parts[0]->mayBeNull) return parts[0];
    Term term;
    term.kind = TermKind::FirstNotNull;
    if (!Unify(parts, term, syntax.place)) return nullptr;
    term.mayBeNull = parts[1]->mayBeNull;
    term.parts = std::move(parts);
    return Shared(std::move(term));
  }

  TermPtr BindCastText(const SyntaxExpr& syntax) {
    TermPtr inner = BindTerm(*syntax.parts[0]);
    if (!inner) return nullptr;
    inner = Typed(inner);
    const auto size = static_cast<std::uint16_t>(syntax.size);
    const bool isText = IsText(*inner);
    if (!isText && !inner->IsNull() && SortOf(inner->type) != Sort::Number) {
      return Refuse(syntax.place, "само текст и цяло число стават на VARCHAR");
    }
    if (inner->IsConstant()) {
      if (inner->IsNull()) return MakeTyped({}, ValueKind::String, size);
      return MakeTyped(Utf8Cut(inner->value.ToText(), size), ValueKind::String, size);
    }
    if (inner->type == ValueKind::String && inner->size <= size) return inner;
    Term term;
    term.kind = isText ? TermKind::Cut : TermKind::NumberText;
    term.typed = true;
    term.type = ValueKind::String;
    term.size = size;
    term.mayBeNull = inner->mayBeNull;
    term.parts = {std::move(inner)};
    return Shared(std::move(term));
  }

  TermPtr BindCastInt(const SyntaxExpr& syntax) {
    const TermPtr inner = BindTerm(*syntax.parts[0]);
    if (!inner) return nullptr;
    if (inner->IsNull()) return MakeTyped({}, ValueKind::Int32, 0);
    TermPtr typed = Typed(inner);
    if (SortOf(typed->type) != Sort::Number) {
      return Refuse(syntax.place, "само цяло число става на INT");
    }
    if (typed->type == ValueKind::Code || typed->type == ValueKind::Int32) return typed;
    Term term = *typed;  // whole numbers differ in their range only
    term.type = ValueKind::Int32;
    return Shared(std::move(term));
  }

  TermPtr BindCase(const SyntaxExpr& syntax) {
    const GivenValues::Deciding deciding(given_);
    TermPtr operand;
    if (syntax.parts.front()) {
      operand = BindTerm(*syntax.parts.front());
      if (!operand) return nullptr;
    }
    Term term;
    term.kind = TermKind::Case;
    std::vector<TermPtr> values;
    bool decided = false;
    for (std::size_t i = 1; i + 1 < syntax.parts.size(); i += 2) {
      const ConditionPtr when =
          operand ? BindEqual(operand, *syntax.parts[i]) : BindCondition(*syntax.parts[i]);
      const TermPtr value = when ? BindTerm(*syntax.parts[i + 1]) : nullptr;
      if (!value) return nullptr;
      if (decided || Is(when, Truth::False) || Is(when, Truth::Unknown)) continue;
      decided = Is(when, Truth::True);
      if (!decided) term.conditions.push_back(when);
      values.push_back(value);
    }
    TermPtr otherwise = MakeConstant({}, syntax.place);
    if (syntax.parts.back()) otherwise = BindTerm(*syntax.parts.back());
    if (!otherwise) return nullptr;
    if (!decided) values.push_back(std::move(otherwise));
    if (term.conditions.empty()) return values.front();
    if (!Unify(values, term, syntax.place)) return nullptr;
    term.mayBeNull = std::any_of(values.begin(), values.end(),
                                 [](const TermPtr& value) { return value->mayBeNull; });
    term.parts = std::move(values);
    return Shared(std::move(term));
  }

  ConditionPtr BindEqual(const TermPtr& operand, const SyntaxExpr& syntax) {
    const TermPtr value = BindTerm(syntax);
    return value ? Compare(operand, "=", value, syntax.place) : nullptr;
  }

  /// Brings alternatives to one kind and sets it on `term`.
  bool Unify(std::vector<TermPtr>& parts, Term& term, Place place) {
    std::optional<ValueKind> kind;
    for (const TermPtr& part : parts) {
      if (!part->typed) continue;
      kind = kind ? Common(*kind, part->type) : part->type;
      if (!kind) return RefuseAll(place, "стойностите са от различен вид");
    }
    for (const TermPtr& part : parts) {
      if (kind) break;
      if (!part->IsNull()) kind = OwnKind(part->value);
    }
    term.typed = true;
    term.type = kind.value_or(ValueKind::Int32);
    for (const TermPtr& part : parts) {
      if (part->IsConstant()) term.type = WideEnough(term.type, part->value);
    }
    for (TermPtr& part : parts) {
      if (!part->IsConstant()) {
        term.size = std::max(term.size, part->size);
        continue;
      }
      const std::optional<Variant> value = Conform(part->value, term.type, input_.zone);
      if (!value) return RefuseUnlike(place, *part);
      part = MakeTyped(*value, term.type, part->size);
      const std::string* text = value->AsString();
      if (text == nullptr) continue;
      const std::size_t length = Utf8Length(*text);
      if (length > 0xFFFF) return RefuseAll(place, "текстът е твърде дълъг");
      term.size = std::max(term.size, static_cast<std::uint16_t>(length));
    }
    if (term.type != ValueKind::String) term.size = 0;
    return true;
  }

  bool RefuseUnlike(Place place, const Term& part) {
    if (part.typed) return RefuseAll(place, "стойностите са от различен вид");
    return RefuseAll(part.place,
                     "стойността " + Quoted(part.value.ToText()) + " е от различен вид");
  }

  TermPtr BindMax(const SyntaxExpr& syntax) {
    const TermPtr inner = BindTerm(*syntax.parts[0]);
    if (!inner) return nullptr;
    const TermPtr typed = Typed(inner);
    if (IsText(*typed)) return Refuse(syntax.place, "MAX чете само числа и дати");
    const auto& tables = scopes_.back().select->tables;
    bool own = false;
    VisitColumns(*typed, [&](const Term& column) {
      own = own || std::any_of(tables.begin(), tables.end(), [&](const TypedTable& table) {
              return table.number == column.table;
            });
    });
    if (!own) return Refuse(syntax.place, "MAX чете колона от своята вложена заявка");
    Term term;
    term.kind = TermKind::Max;
    term.typed = true;
    term.type = typed->type;
    term.parts = {typed};
    return Shared(std::move(term));
  }

  std::shared_ptr<TypedSelect> BindSubselect(const SyntaxSelect& syntax) {
    auto select = std::make_shared<TypedSelect>();
    if (!BindSelect(syntax, *select)) return nullptr;
    return select;
  }

  TermPtr BindScalar(const SyntaxExpr& syntax) {
    const auto select = BindSubselect(*syntax.select);
    if (!select) return nullptr;
    if (select->items.front().value->kind != TermKind::Max) {
      return Refuse(syntax.place, "вложена заявка е стойност само с MAX");
    }
    return MakeScalar(select);
  }

  static TermPtr MakeScalar(const std::shared_ptr<TypedSelect>& select) {
    Term term;
    term.kind = TermKind::Scalar;
    term.typed = true;
    term.type = select->items.front().value->type;
    term.select = select;
    return Shared(std::move(term));
  }

  TermPtr BindNegate(const SyntaxExpr& syntax) {
    TermPtr inner = BindTerm(*syntax.parts[0]);
    if (!inner) return nullptr;
    if (!inner->IsConstant() || inner->typed) {
      return Refuse(syntax.place, "знак минус се допуска само пред число");
    }
    if (inner->IsNull()) return inner;
    const std::optional<Decimal> number = inner->value.AsDecimal();
    if (number) {
      const std::optional<Decimal> negative = Decimal(0, number->Scale()).Minus(*number);
      if (!negative) return Refuse(syntax.place, "числото е извън допустимото");
      if (inner->value.AsInt()) return MakeConstant(*Variant(*negative).AsInt(), syntax.place);
      return MakeConstant(*negative, syntax.place);
    }
    const std::optional<double> real = inner->value.AsDouble();
    if (!real) return Refuse(syntax.place, "знак минус се допуска само пред число");
    return MakeConstant(0.0 - *real, syntax.place);  // there is no minus zero
  }

  TermPtr BindSum(const SyntaxExpr& syntax) {
    std::vector<TermPtr> parts = {BindTerm(*syntax.parts[0]), BindTerm(*syntax.parts[1])};
    if (!parts[0] || !parts[1]) return nullptr;
    const bool adds = syntax.kind == SyntaxKind::Add;
    Term term;
    term.kind = adds ? TermKind::Add : TermKind::Subtract;
    if (!Unify(parts, term, syntax.place)) return nullptr;
    const Sort sort = SortOf(term.type);
    if (sort == Sort::Text || sort == Sort::Day || sort == Sort::Moment) {
      return Refuse(syntax.place, "събират се и се изваждат само числа");
    }
    for (const TermPtr& part : parts) {
      // Far from where either engine runs out of digits.
      constexpr double kMostAdded = 1e14;
      if (!part->IsConstant() || std::abs(part->value.AsDouble().value_or(0)) <= kMostAdded)
        continue;
      return Refuse(syntax.place,
                    "числото " + Quoted(part->value.ToText()) + " е извън допустимото");
    }
    if (sort == Sort::Number) term.type = ValueKind::Code;
    if (parts[0]->IsConstant() && parts[1]->IsConstant()) {
      if (parts[0]->IsNull() || parts[1]->IsNull()) return MakeConstant({}, syntax.place);
      const auto sum = SumOf(parts[0]->value, parts[1]->value, adds);
      if (!sum) return Refuse(syntax.place, "числото е извън допустимото");
      return MakeConstant(*sum, syntax.place);
    }
    // What does not fit 64 bits has no sum.
    term.mayBeNull = sort != Sort::Real || parts[0]->mayBeNull || parts[1]->mayBeNull;
    term.parts = std::move(parts);
    return Shared(std::move(term));
  }

  // --- conditions

  ConditionPtr BindCondition(const SyntaxExpr& syntax) {
    switch (syntax.kind) {
      case SyntaxKind::Compare:
        return BindCompare(syntax);
      case SyntaxKind::Like:
        return BindLike(syntax);
      case SyntaxKind::In:
        return syntax.select ? BindInSelect(syntax) : BindInList(syntax);
      case SyntaxKind::IsNull:
        return BindIsNull(syntax);
      case SyntaxKind::And:
      case SyntaxKind::Or: {
        std::vector<ConditionPtr> parts;
        for (const SyntaxPtr& part : syntax.parts) {
          parts.push_back(BindCondition(*part));
          if (!parts.back()) return nullptr;
        }
        return syntax.kind == SyntaxKind::And ? MakeAnd(std::move(parts))
                                              : MakeOr(std::move(parts));
      }
      case SyntaxKind::Not: {
        ConditionPtr inner = BindCondition(*syntax.parts[0]);
        return inner ? MakeNot(std::move(inner)) : nullptr;
      }
      default:
        return Refuse(syntax.place, "очаква се условие вместо стойност");
    }
  }

  ConditionPtr BindCompare(const SyntaxExpr& syntax) {
    const TermPtr left = BindTerm(*syntax.parts[0]);
    const TermPtr right = left ? BindTerm(*syntax.parts[1]) : nullptr;
    return right ? Compare(left, syntax.text, right, syntax.place) : nullptr;
  }

  ConditionPtr Compare(const TermPtr& left, std::string sign, const TermPtr& right, Place place) {
    if (!Spend(left->weight + right->weight, place)) return nullptr;
    const ConditionPtr condition = CompareTerms(
        left, std::move(sign), right, [this](const TermPtr& text) { return Folded(text); },
        input_.zone);
    if (!condition) return RefuseCompare(place, *left, *right);
    return left->IsConstant() ? given_.OpenCompare(condition, right, *left)
                              : given_.OpenCompare(condition, left, *right);
  }

  /// Names the literal or parameter that does not fit, where there is one.
  ConditionPtr RefuseCompare(Place place, const Term& left, const Term& right) {
    for (const Term* side : {&right, &left}) {
      if (!side->IsConstant() || side->typed) continue;
      RefuseUnlike(place, *side);
      return nullptr;
    }
    return Refuse(place, "сравняват се стойности от различен вид");
  }

  TermPtr Folded(const TermPtr& text) {
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
      if (TermPtr fold = FoldOf(text, scope->select->tables)) return fold;
    }
    return nullptr;
  }

  ConditionPtr BindLike(const SyntaxExpr& syntax) {
    const TermPtr text = BindTerm(*syntax.parts[0]);
    const TermPtr pattern = text ? BindTerm(*syntax.parts[1]) : nullptr;
    if (!pattern || !Spend(2 * text->weight, syntax.place)) return nullptr;
    if (text->IsNull() || pattern->IsNull()) return MakeTruth(Truth::Unknown);
    const std::string* written = pattern->value.AsString();
    if (!pattern->IsConstant() || written == nullptr) {
      return Refuse(syntax.parts[1]->place, "след LIKE се очаква текст или параметър");
    }
    if (!IsText(*text) || text->IsConstant()) {
      return Refuse(syntax.parts[0]->place, "LIKE търси само в текстови колони");
    }
    const TermPtr fold = Folded(text);
    const std::optional<LikePattern> like = ReadLikePattern(*written, fold != nullptr);
    if (!like)
      return Refuse(syntax.parts[1]->place,
                    "шаблонът " + Quoted(*written) + " след LIKE не е разбран");
    ConditionPtr condition =
        given_.OpenLike(LikeCondition(fold ? fold : text, *like), *pattern, fold != nullptr, *like);
    return syntax.negated ? MakeNot(std::move(condition)) : condition;
  }

  ConditionPtr BindIsNull(const SyntaxExpr& syntax) {
    const TermPtr term = BindTerm(*syntax.parts[0]);
    if (!term) return nullptr;
    ConditionPtr condition;
    if (term->IsConstant()) {
      condition = MakeTruth(term->IsNull() ? Truth::True : Truth::False);
    } else {
      condition = NullTest(term);
    }
    return syntax.negated ? MakeNot(std::move(condition)) : condition;
  }

  ConditionPtr BindInList(const SyntaxExpr& syntax) {
    const TermPtr left = BindTerm(*syntax.parts[0]);
    if (!left) return nullptr;
    std::vector<TermPtr> values;
    bool plain = !left->IsConstant();
    for (std::size_t i = 1; i < syntax.parts.size(); ++i) {
      values.push_back(BindTerm(*syntax.parts[i]));
      if (!values.back()) return nullptr;
      plain = plain && values.back()->IsConstant() && !values.back()->IsNull();
    }
    std::vector<ConditionPtr> equal;
    for (std::size_t i = 0; i < values.size(); ++i) {
      equal.push_back(Compare(left, "=", values[i], syntax.parts[i + 1]->place));
      if (!equal.back()) return nullptr;
    }
    ConditionPtr condition = plain && equal.size() > 1 ? ListOf(equal) : MakeOr(std::move(equal));
    return syntax.negated ? MakeNot(std::move(condition)) : condition;
  }

  ConditionPtr BindInSelect(const SyntaxExpr& syntax) {
    TermPtr left = BindTerm(*syntax.parts[0]);
    if (!left) return nullptr;
    const auto select = BindSubselect(*syntax.select);
    if (!select) return nullptr;
    TermPtr& right = select->items.front().value;
    if (left->IsConstant()) {
      const std::optional<Variant> value = Conform(left->value, right->type, input_.zone);
      if (!value) return RefuseCompare(syntax.place, *left, *right);
      if (value->IsNull()) return MakeTruth(Truth::Unknown);
      left = MakeTyped(*value, right->type, 0);
    }
    if (!right->IsNull() && !Comparable(left->type, right->type))
      return RefuseCompare(syntax.place, *left, *right);
    if (IsText(*left) && !right->IsNull()) {
      const TermPtr leftFold = Folded(left);
      const TermPtr rightFold = FoldOf(right, select->tables);
      if (leftFold && rightFold) {
        left = leftFold;
        right = rightFold;
      }
    }
    if (left->kind == TermKind::Column && right->kind == TermKind::Max) {  // one value: an equality
      ConditionPtr equal = MakeCompare(left, "=", MakeScalar(select));
      return syntax.negated ? MakeNot(std::move(equal)) : equal;
    }
    Condition condition;
    condition.kind = ConditionKind::InSelect;
    condition.parts = {std::move(left)};
    condition.select = select;
    ConditionPtr made = Shared(std::move(condition));
    return syntax.negated ? MakeNot(std::move(made)) : made;
  }

  const SearchInput& input_;
  std::vector<Variable> variables_;
  std::vector<Scope> scopes_;
  std::optional<Failure> failure_;
  int lastTable_ = 0;
  BoundSearch bound_;
  GivenValues given_;
  const Until until_;
  std::size_t spent_ = 0;
};

}  // namespace

bool MayRead(const SearchInput& input, const CatalogueTable& table) {
  const bool may = input.mayRead ? input.mayRead(table) : table.readers.empty();
  return may && (table.rows == RowsSeen::All || input.visibility);
}

Answer<BoundSearch> Bind(const SyntaxStatement& statement, const SearchInput& input,
                         std::chrono::steady_clock::time_point until) {
  return Binder(input, statement.literals, until).Run(statement);
}

}  // namespace orvane::server::dialect
