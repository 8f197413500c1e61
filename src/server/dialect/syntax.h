#pragma once

// A search statement as it is written, before its names are looked up.

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "server/dialect/lexer.h"

namespace orvane::server::dialect {

struct SyntaxSelect;

enum class SyntaxKind : unsigned char {
  Integer,  ///< `text` holds the digits
  Decimal,  ///< `text` holds digits, point, digits
  Text,     ///< `text` is the literal
  Null,
  Variable,  ///< `text` is the name
  Name,      ///< `table` (may be empty) and `text`
  IsNullOf,  ///< ISNULL(parts[0], parts[1])
  Max,       ///< MAX(parts[0])
  CastText,  ///< CAST(parts[0] AS VARCHAR(size))
  CastInt,   ///< CAST(parts[0] AS INT)
  Case,      ///< see SyntaxExpr::parts
  Select,    ///< a subselect as a value
  Negate,    ///< -parts[0]
  Add,
  Subtract,
  Compare,  ///< `text` is the sign
  Like,
  In,  ///< parts[0] IN the other parts, or in `select`
  IsNull,
  And,
  Or,
  Not,
};

struct SyntaxExpr {
  SyntaxKind kind = SyntaxKind::Null;
  Place place;
  std::string text;
  std::string table;
  bool declared = false;  ///< Variable written with @
  bool negated = false;   ///< NOT LIKE, NOT IN, IS NOT NULL
  int size = 0;
  int literal = -1;  ///< Integer, Decimal, Text: Token::literal
  /// Case: the operand (null pointer when there is none), then condition and value of every branch,
  /// then the value of ELSE (null pointer when there is none).
  std::vector<std::unique_ptr<SyntaxExpr>> parts;
  std::unique_ptr<SyntaxSelect> select;

  SyntaxExpr(SyntaxKind ofKind, Place at, std::string said = {})
      : kind(ofKind), place(at), text(std::move(said)) {}
};
using SyntaxPtr = std::unique_ptr<SyntaxExpr>;

struct SyntaxItem {
  SyntaxPtr value;
  std::string alias;  ///< empty when none was given
  Place place;
};

enum class JoinKind : unsigned char { First, Inner, Left };

struct SyntaxTable {
  std::string name;
  std::string alias;  ///< empty when none was given
  JoinKind join = JoinKind::First;
  SyntaxPtr on;  ///< null pointer for the first table
  Place place;
};

struct SyntaxOrder {
  SyntaxPtr value;
  bool descending = false;
};

struct SyntaxSelect {
  Place place;
  bool distinct = false;
  std::vector<SyntaxItem> items;
  std::vector<SyntaxTable> tables;
  SyntaxPtr where;  ///< null pointer when there is none
  std::vector<SyntaxOrder> order;
};

enum class DeclaredType : unsigned char { Bit, Integer, Text, Date };

/// DECLARE @name type. Null until a SET gives it a value.
struct SyntaxVariable {
  std::string name;
  DeclaredType type = DeclaredType::Integer;
  int size = 0;  ///< of Text
  Place place;
};

/// SET @name = value; carried out in the order in which they are written.
struct SyntaxSet {
  std::size_t variable = 0;  ///< position among the declared ones
  SyntaxPtr value;
};

struct SyntaxStatement {
  int literals = 0;  ///< numbers and texts that are written in it
  std::vector<SyntaxVariable> variables;
  std::vector<SyntaxSet> sets;
  SyntaxSelect select;
};

}  // namespace orvane::server::dialect
