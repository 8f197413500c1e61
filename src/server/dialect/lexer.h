#pragma once

// Words of a search statement with their places.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "packet/failure.h"

namespace orvane::server::dialect {

/// Where something stands in the statement: line and column, counted from 1, in code points.
struct Place {
  int line = 1;
  int column = 1;
};

/// The refusal of a statement: BadRequest with the place in front of the sentence's rest.
Failure NotUnderstood(Place place, const std::string& what);
/// A piece of the statement in a refusal: in quotes, and no more than its first 80 characters.
std::string Quoted(std::string_view text);

enum class TokenKind : unsigned char {
  Word,      ///< identifier or keyword
  Variable,  ///< :Name or @Name, `text` is the name without its mark
  Integer,
  Decimal,
  Text,  ///< string literal, `text` is what stands between the quotes (Unquoted)
  Sign,  ///< one of = < > <= >= <> ( ) , . + -
  End,
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::string_view text;  ///< of the statement, which must outlive it
  bool declared = false;  ///< Variable written with @
  Place place;
  int literal = -1;  ///< number of an Integer, Decimal or Text among those of the statement
};

/// The value of a string literal: two apostrophes in it stand for one.
std::string Unquoted(std::string_view text);

/// Longest statement, in bytes.
inline constexpr std::size_t kLongestStatement = std::size_t{32} * 1024;

/// Tokens of the statement, the last of kind End. Refuses statements that are too long, are not
/// UTF-8, or hold a character that no token begins with.
Answer<std::vector<Token>> Tokenise(std::string_view sql);

}  // namespace orvane::server::dialect
