#include "server/dialect/parser.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "packet/variant.h"

namespace orvane::server::dialect {
namespace {

/// Words that cannot be names: those of the dialect, and those with which another dialect would go
/// on, so that the refusal names the word itself.
constexpr auto kReserved = std::to_array<std::string_view>({
    "SELECT",  "DISTINCT", "FROM",   "WHERE",  "ORDER",     "BY",        "ASC",    "DESC",
    "INNER",   "LEFT",     "OUTER",  "JOIN",   "ON",        "AND",       "OR",     "NOT",
    "IN",      "IS",       "NULL",   "LIKE",   "CASE",      "WHEN",      "THEN",   "ELSE",
    "END",     "AS",       "CAST",   "WITH",   "DECLARE",   "SET",       "UNION",  "INTO",
    "EXCEPT",  "GROUP",    "HAVING", "TOP",    "INTERSECT", "EXEC",      "INSERT", "UPDATE",
    "DELETE",  "DROP",     "CREATE", "ALTER",  "TRUNCATE",  "MERGE",     "USE",    "GO",
    "EXECUTE", "RIGHT",    "FULL",   "CROSS",  "APPLY",     "BETWEEN",   "EXISTS", "ANY",
    "ALL",     "SOME",     "FOR",    "OPTION", "WAITFOR",   "ESCAPE",    "GRANT",  "REVOKE",
    "ATTACH",  "PRAGMA",   "LIMIT",  "OFFSET", "RETURNING", "OPENQUERY",
});

bool IsReserved(std::string_view word) {
  return std::any_of(kReserved.begin(), kReserved.end(), [&](std::string_view known) {
    return known.size() == word.size() && SameName(known, word);
  });
}

struct TypeName {
  std::string_view name;
  DeclaredType type;
};
constexpr TypeName kDeclaredTypes[] = {
    {"BIT", DeclaredType::Bit},          {"TINYINT", DeclaredType::Integer},
    {"SMALLINT", DeclaredType::Integer}, {"INT", DeclaredType::Integer},
    {"BIGINT", DeclaredType::Integer},   {"VARCHAR", DeclaredType::Text},
    {"NVARCHAR", DeclaredType::Text},    {"DATE", DeclaredType::Date},
    {"DATETIME", DeclaredType::Date},
};

/// Recursive descent. A function that fails records the first refusal and returns an empty pointer
/// or false; callers hand that on.
class Parser {
 public:
  explicit Parser(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

  Answer<SyntaxStatement> Run() {
    SyntaxStatement statement;
    for (const Token& token : tokens_)
      statement.literals = std::max(statement.literals, token.literal + 1);
    const bool read = ReadVariables(statement) && ReadSelect(statement.select, false) &&
                      (Now().kind == TokenKind::End || Unexpected("край на заявката"));
    if (!read) return *failure_;
    return statement;
  }

 private:
  // --- tokens

  const Token& Now() const { return tokens_[at_]; }
  const Token& Next() const { return tokens_[std::min(at_ + 1, tokens_.size() - 1)]; }
  void Step() {
    if (at_ + 1 < tokens_.size()) ++at_;
  }

  bool IsWord(std::string_view word) const {
    const Token& token = Now();
    return token.kind == TokenKind::Word && token.text.size() == word.size() &&
           SameName(token.text, word);
  }
  bool IsSign(std::string_view sign) const {
    return Now().kind == TokenKind::Sign && Now().text == sign;
  }
  bool TakeWord(std::string_view word) {
    if (!IsWord(word)) return false;
    Step();
    return true;
  }
  bool TakeSign(std::string_view sign) {
    if (!IsSign(sign)) return false;
    Step();
    return true;
  }
  bool NeedWord(std::string_view word) { return TakeWord(word) || Unexpected(std::string(word)); }
  bool NeedSign(std::string_view sign) {
    return TakeSign(sign) || Unexpected("„" + std::string(sign) + "“");
  }

  bool Refuse(Place place, const std::string& what) {
    if (!failure_) failure_ = NotUnderstood(place, what);
    return false;
  }

  bool Unexpected(const std::string& wanted) {
    const Token& token = Now();
    if (token.kind == TokenKind::Word && IsReserved(token.text)) {
      return Refuse(token.place,
                    "думата " + Quoted(token.text) + " не се допуска тук, очаква се " + wanted);
    }
    if (token.kind == TokenKind::End) {
      return Refuse(token.place, "заявката свършва, а се очаква " + wanted);
    }
    return Refuse(token.place, "очаква се " + wanted + " вместо " + Quoted(token.text));
  }

  SyntaxPtr Node(SyntaxKind kind, Place place, std::string text = {}) {
    if (++nodes_ > kMostNodes) {
      Refuse(place, "заявката има твърде много части");
      return nullptr;
    }
    return std::make_unique<SyntaxExpr>(kind, place, std::move(text));
  }

  std::optional<std::string> ReadName(const std::string& wanted) {
    if (Now().kind != TokenKind::Word || IsReserved(Now().text)) {
      Unexpected(wanted);
      return std::nullopt;
    }
    std::string name(Now().text);
    Step();
    return name;
  }

  std::optional<int> ReadSize() {
    if (!NeedSign("(")) return std::nullopt;
    if (Now().kind != TokenKind::Integer || Now().text.size() > 4 || Now().text == "0") {
      Unexpected("дължина от 1 до 9999");
      return std::nullopt;
    }
    const int size = std::stoi(std::string(Now().text));
    Step();
    if (!NeedSign(")")) return std::nullopt;
    return size;
  }

  // --- DECLARE and SET

  bool ReadVariables(SyntaxStatement& statement) {
    while (IsWord("DECLARE") || IsWord("SET")) {
      const bool declares = IsWord("DECLARE");
      Step();
      if (!(declares ? ReadDeclare(statement) : ReadSet(statement))) return false;
    }
    return true;
  }

  bool ReadDeclare(SyntaxStatement& statement) {
    do {
      if (!IsDeclared()) return Unexpected("променлива с „@“");
      SyntaxVariable variable;
      variable.name = Now().text;
      variable.place = Now().place;
      if (FindVariable(statement, variable.name) != nullptr) {
        return Refuse(variable.place,
                      "променливата " + Quoted("@" + variable.name) + " е обявена два пъти");
      }
      Step();
      TakeWord("AS");
      const auto* type = std::find_if(std::begin(kDeclaredTypes), std::end(kDeclaredTypes),
                                      [&](const TypeName& known) { return IsWord(known.name); });
      if (type == std::end(kDeclaredTypes)) return Unexpected("вид на променлива");
      Step();
      variable.type = type->type;
      if (type->type == DeclaredType::Text) {
        const std::optional<int> size = ReadSize();
        if (!size) return false;
        variable.size = *size;
      }
      statement.variables.push_back(std::move(variable));
      if (statement.variables.size() > kMostTables) {
        return Refuse(Now().place, "твърде много променливи");
      }
    } while (TakeSign(","));
    return true;
  }

  bool ReadSet(SyntaxStatement& statement) {
    if (!IsDeclared()) return Unexpected("променлива с „@“");
    const SyntaxVariable* variable = FindVariable(statement, Now().text);
    if (variable == nullptr) {
      return Refuse(Now().place,
                    "променливата " + Quoted("@" + std::string(Now().text)) + " не е обявена");
    }
    Step();
    if (!NeedSign("=")) return false;
    SyntaxPtr value = ReadPrimary();
    if (!value) return false;
    static constexpr SyntaxKind kSimple[] = {SyntaxKind::Integer, SyntaxKind::Decimal,
                                             SyntaxKind::Text, SyntaxKind::Null,
                                             SyntaxKind::Variable};
    if (std::find(std::begin(kSimple), std::end(kSimple), value->kind) == std::end(kSimple)) {
      return Refuse(value->place, "на променлива се дава само параметър или стойност");
    }
    // What is declared further down is not known here yet: the name is a parameter's.
    if (value->declared) value->declared = FindVariable(statement, value->text) != nullptr;
    statement.sets.push_back(
        {static_cast<std::size_t>(variable - statement.variables.data()), std::move(value)});
    return true;
  }

  bool IsDeclared() const { return Now().kind == TokenKind::Variable && Now().declared; }

  static const SyntaxVariable* FindVariable(const SyntaxStatement& statement,
                                            std::string_view name) {
    for (const SyntaxVariable& variable : statement.variables) {
      if (SameName(variable.name, name)) return &variable;
    }
    return nullptr;
  }

  // --- SELECT

  bool ReadSelect(SyntaxSelect& select, bool nested) {
    select.place = Now().place;
    if (!NeedWord("SELECT")) return false;
    select.distinct = TakeWord("DISTINCT");
    if (!ReadItems(select) || !NeedWord("FROM") || !ReadTables(select)) return false;
    if (TakeWord("WHERE")) {
      select.where = ReadCondition();
      if (!select.where) return false;
    }
    if (nested || !TakeWord("ORDER")) return true;
    return NeedWord("BY") && ReadOrder(select);
  }

  bool ReadItems(SyntaxSelect& select) {
    do {
      SyntaxItem item;
      item.place = Now().place;
      item.value = ReadSum();
      if (!item.value) return false;
      const bool named = TakeWord("AS");
      if (named || (Now().kind == TokenKind::Word && !IsReserved(Now().text))) {
        const std::optional<std::string> alias = ReadName("име на колона");
        if (!alias) return false;
        item.alias = *alias;
      }
      select.items.push_back(std::move(item));
      if (select.items.size() > kMostColumns) {
        return Refuse(select.items.back().place, "заявката чете твърде много колони");
      }
    } while (TakeSign(","));
    return true;
  }

  bool ReadTables(SyntaxSelect& select) {
    if (!ReadTable(select, JoinKind::First)) return false;
    while (true) {
      JoinKind join = JoinKind::Inner;
      if (TakeWord("LEFT")) {
        TakeWord("OUTER");
        join = JoinKind::Left;
      } else if (!TakeWord("INNER") && !IsWord("JOIN")) {
        return true;
      }
      if (!NeedWord("JOIN") || !ReadTable(select, join) || !NeedWord("ON")) return false;
      select.tables.back().on = ReadCondition();
      if (!select.tables.back().on) return false;
    }
  }

  bool ReadTable(SyntaxSelect& select, JoinKind join) {
    SyntaxTable table;
    table.join = join;
    table.place = Now().place;
    if (++tables_ > kMostTables) return Refuse(table.place, "заявката чете твърде много таблици");
    if (IsWord("dbo") && Next().kind == TokenKind::Sign && Next().text == ".") {
      Step();
      Step();
    }
    const std::optional<std::string> name = ReadName("име на таблица");
    if (!name || !SkipHint()) return false;
    table.name = *name;
    const bool named = TakeWord("AS");
    if (named || (Now().kind == TokenKind::Word && !IsReserved(Now().text))) {
      const std::optional<std::string> alias = ReadName("кратко име на таблица");
      if (!alias || !SkipHint()) return false;
      table.alias = *alias;
    }
    select.tables.push_back(std::move(table));
    return true;
  }

  /// WITH (NOLOCK) and (NOLOCK) ask the engine not to wait for writers; ours never do.
  bool SkipHint() {
    if (!TakeWord("WITH") && !IsSign("(")) return true;
    return NeedSign("(") && NeedWord("NOLOCK") && NeedSign(")");
  }

  bool ReadOrder(SyntaxSelect& select) {
    do {
      SyntaxOrder order;
      order.value = ReadSum();
      if (!order.value) return false;
      order.descending = TakeWord("DESC");
      if (!order.descending) TakeWord("ASC");
      select.order.push_back(std::move(order));
      if (select.order.size() > kMostColumns) {
        return Refuse(select.order.back().value->place, "заявката подрежда по твърде много колони");
      }
    } while (TakeSign(","));
    return true;
  }

  // --- conditions: OR, AND, NOT, comparison, sum, primary

  SyntaxPtr ReadCondition() {
    if (++depth_ > kDeepestNesting) {
      Refuse(Now().place, "заявката е вложена твърде дълбоко");
      return nullptr;
    }
    SyntaxPtr condition = ReadChain(SyntaxKind::Or, "OR", &Parser::ReadAnd);
    --depth_;
    return condition;
  }

  SyntaxPtr ReadAnd() { return ReadChain(SyntaxKind::And, "AND", &Parser::ReadNot); }

  SyntaxPtr ReadChain(SyntaxKind kind, std::string_view word, SyntaxPtr (Parser::*part)()) {
    SyntaxPtr first = (this->*part)();
    if (!first || !IsWord(word)) return first;
    SyntaxPtr chain = Node(kind, first->place);
    if (!chain) return nullptr;
    chain->parts.push_back(std::move(first));
    while (TakeWord(word)) {
      SyntaxPtr next = (this->*part)();
      if (!next) return nullptr;
      chain->parts.push_back(std::move(next));
    }
    return chain;
  }

  SyntaxPtr ReadNot() {
    const Place place = Now().place;
    bool negated = false;
    bool any = false;
    while (TakeWord("NOT")) {
      negated = !negated;
      any = true;
    }
    SyntaxPtr condition = ReadPredicate();
    if (!condition || !any || !negated) return condition;
    SyntaxPtr node = Node(SyntaxKind::Not, place);
    if (node) node->parts.push_back(std::move(condition));
    return node;
  }

  SyntaxPtr ReadPredicate() {
    SyntaxPtr left = ReadSum();
    if (!left) return nullptr;
    const Token token = Now();
    static constexpr std::string_view kComparisons[] = {"=", "<>", "<", ">", "<=", ">="};
    if (token.kind == TokenKind::Sign && std::find(std::begin(kComparisons), std::end(kComparisons),
                                                   token.text) != std::end(kComparisons)) {
      Step();
      return Pair(SyntaxKind::Compare, std::move(left), ReadSum(), std::string(token.text));
    }
    if (TakeWord("IS")) {
      SyntaxPtr node = Node(SyntaxKind::IsNull, token.place);
      if (!node) return nullptr;
      node->negated = TakeWord("NOT");
      if (!NeedWord("NULL")) return nullptr;
      node->parts.push_back(std::move(left));
      return node;
    }
    const bool negated = TakeWord("NOT");
    if (TakeWord("LIKE")) {
      SyntaxPtr node = Pair(SyntaxKind::Like, std::move(left), ReadSum());
      if (node) node->negated = negated;
      return node;
    }
    if (TakeWord("IN")) return ReadIn(std::move(left), negated);
    if (negated) {
      Unexpected("LIKE или IN");
      return nullptr;
    }
    return left;
  }

  SyntaxPtr ReadIn(SyntaxPtr left, bool negated) {
    SyntaxPtr node = Node(SyntaxKind::In, left->place);
    if (!node || !NeedSign("(")) return nullptr;
    node->negated = negated;
    node->parts.push_back(std::move(left));
    if (IsWord("SELECT")) {
      node->select = ReadSubselect();
      return node->select ? std::move(node) : nullptr;
    }
    do {
      SyntaxPtr value = ReadSum();
      if (!value) return nullptr;
      node->parts.push_back(std::move(value));
    } while (TakeSign(","));
    return NeedSign(")") ? std::move(node) : nullptr;
  }

  /// SELECT up to and with the closing bracket.
  std::unique_ptr<SyntaxSelect> ReadSubselect() {
    if (++depth_ > kDeepestNesting) {
      Refuse(Now().place, "заявката е вложена твърде дълбоко");
      return nullptr;
    }
    auto select = std::make_unique<SyntaxSelect>();
    const bool read = ReadSelect(*select, true) && NeedSign(")");
    --depth_;
    return read ? std::move(select) : nullptr;
  }

  SyntaxPtr Pair(SyntaxKind kind, SyntaxPtr left, SyntaxPtr right, std::string text = {}) {
    if (!left || !right) return nullptr;
    SyntaxPtr node = Node(kind, left->place, std::move(text));
    if (!node) return nullptr;
    node->parts.push_back(std::move(left));
    node->parts.push_back(std::move(right));
    return node;
  }

  SyntaxPtr ReadSum() {
    SyntaxPtr sum = ReadPrimary();
    int length = 0;
    while (sum && (IsSign("+") || IsSign("-"))) {
      const bool adds = IsSign("+");
      Step();
      if (++length > kDeepestNesting) {
        Refuse(Now().place, "сборът е твърде дълъг");
        return nullptr;
      }
      sum = Pair(adds ? SyntaxKind::Add : SyntaxKind::Subtract, std::move(sum), ReadPrimary());
    }
    return sum;
  }

  SyntaxPtr ReadPrimary() {
    const Token token = Now();
    if (++depth_ > kDeepestNesting) {
      Refuse(token.place, "заявката е вложена твърде дълбоко");
      return nullptr;
    }
    SyntaxPtr primary = ReadPrimaryOf(token);
    --depth_;
    return primary;
  }

  SyntaxPtr ReadPrimaryOf(const Token& token) {
    switch (token.kind) {
      case TokenKind::Integer:
        return ReadLiteral(SyntaxKind::Integer, token);
      case TokenKind::Decimal:
        return ReadLiteral(SyntaxKind::Decimal, token);
      case TokenKind::Text:
        return ReadLiteral(SyntaxKind::Text, token);
      case TokenKind::Variable: {
        Step();
        SyntaxPtr node = Node(SyntaxKind::Variable, token.place, std::string(token.text));
        if (node) node->declared = token.declared;
        return node;
      }
      case TokenKind::Sign:
        return ReadSigned(token);
      case TokenKind::Word:
        return ReadWord(token);
      case TokenKind::End:
        break;
    }
    Unexpected("стойност");
    return nullptr;
  }

  SyntaxPtr ReadLiteral(SyntaxKind kind, const Token& token) {
    Step();
    const bool quoted = kind == SyntaxKind::Text;
    SyntaxPtr node =
        Node(kind, token.place, quoted ? Unquoted(token.text) : std::string(token.text));
    if (node) node->literal = token.literal;
    return node;
  }

  SyntaxPtr ReadSigned(const Token& token) {
    if (TakeSign("+")) return ReadPrimary();
    if (TakeSign("-")) {
      SyntaxPtr node = Node(SyntaxKind::Negate, token.place);
      SyntaxPtr value = node ? ReadPrimary() : nullptr;
      if (!value) return nullptr;
      node->parts.push_back(std::move(value));
      return node;
    }
    if (!TakeSign("(")) {
      Unexpected("стойност");
      return nullptr;
    }
    if (IsWord("SELECT")) {
      SyntaxPtr node = Node(SyntaxKind::Select, token.place);
      if (!node) return nullptr;
      node->select = ReadSubselect();
      return node->select ? std::move(node) : nullptr;
    }
    SyntaxPtr inner = ReadCondition();
    return inner && NeedSign(")") ? std::move(inner) : nullptr;
  }

  SyntaxPtr ReadWord(const Token& token) {
    if (IsWord("CASE")) return ReadCase();
    if (IsWord("CAST")) return ReadCast();
    if (TakeWord("NULL")) return Node(SyntaxKind::Null, token.place);
    const std::optional<std::string> name = ReadName("стойност");
    if (!name) return nullptr;
    if (IsSign("(")) return ReadCall(*name, token.place);
    SyntaxPtr node = Node(SyntaxKind::Name, token.place, *name);
    if (!node || !TakeSign(".")) return node;
    const std::optional<std::string> column = ReadName("име на колона");
    if (!column) return nullptr;
    node->table = std::exchange(node->text, *column);
    return node;
  }

  SyntaxPtr ReadCall(const std::string& name, Place place) {
    const bool isNull = SameName(name, "ISNULL");
    if (!isNull && !SameName(name, "MAX")) {
      Refuse(place, "функцията " + Quoted(name) + " не се допуска");
      return nullptr;
    }
    SyntaxPtr node = Node(isNull ? SyntaxKind::IsNullOf : SyntaxKind::Max, place);
    if (!node || !NeedSign("(")) return nullptr;
    for (int argument = 0; argument < (isNull ? 2 : 1); ++argument) {
      if (argument > 0 && !NeedSign(",")) return nullptr;
      SyntaxPtr value = ReadSum();
      if (!value) return nullptr;
      node->parts.push_back(std::move(value));
    }
    return NeedSign(")") ? std::move(node) : nullptr;
  }

  SyntaxPtr ReadCast() {
    const Place place = Now().place;
    Step();
    SyntaxPtr node = Node(SyntaxKind::CastInt, place);
    if (!node || !NeedSign("(")) return nullptr;
    SyntaxPtr value = ReadSum();
    if (!value || !NeedWord("AS")) return nullptr;
    node->parts.push_back(std::move(value));
    if (TakeWord("VARCHAR") || TakeWord("NVARCHAR")) {
      node->kind = SyntaxKind::CastText;
      const std::optional<int> size = ReadSize();
      if (!size) return nullptr;
      node->size = *size;
    } else if (!TakeWord("INT")) {
      Unexpected("VARCHAR(дължина) или INT");
      return nullptr;
    }
    return NeedSign(")") ? std::move(node) : nullptr;
  }

  SyntaxPtr ReadCase() {
    SyntaxPtr node = Node(SyntaxKind::Case, Now().place);
    if (!node) return nullptr;
    Step();
    SyntaxPtr operand;
    if (!IsWord("WHEN")) {
      operand = ReadSum();
      if (!operand) return nullptr;
    }
    const bool simple = operand != nullptr;
    node->parts.push_back(std::move(operand));
    if (!IsWord("WHEN")) {
      Unexpected("WHEN");
      return nullptr;
    }
    while (TakeWord("WHEN")) {
      SyntaxPtr when = simple ? ReadSum() : ReadCondition();
      if (!when || !NeedWord("THEN")) return nullptr;
      SyntaxPtr then = ReadSum();
      if (!then) return nullptr;
      node->parts.push_back(std::move(when));
      node->parts.push_back(std::move(then));
    }
    SyntaxPtr otherwise;
    if (TakeWord("ELSE")) {
      otherwise = ReadSum();
      if (!otherwise) return nullptr;
    }
    node->parts.push_back(std::move(otherwise));
    return NeedWord("END") ? std::move(node) : nullptr;
  }

  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  std::optional<Failure> failure_;
  int depth_ = 0;
  int nodes_ = 0;
  std::size_t tables_ = 0;
};

}  // namespace

Answer<SyntaxStatement> Parse(std::vector<Token> tokens) {
  return Parser(std::move(tokens)).Run();
}

}  // namespace orvane::server::dialect
