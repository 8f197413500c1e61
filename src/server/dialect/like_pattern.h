#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane::server::dialect {

enum class LikeKind : unsigned char {
  Exact,      ///< the whole text is `text`
  Beginning,  ///< it begins with `text`; with an empty `text`: any text
  Anywhere,   ///< it has `text` in it
  Pattern,    ///< anything else: `text` is a pattern of % and _ with \ before literal ones
};

struct LikePattern {
  LikeKind kind = LikeKind::Exact;
  std::string text;  ///< folded when asked for
  /// Of Anywhere and Pattern: what an index of trigrams is asked, "abc" AND "bcd". Every text that
  /// matches has all of them, and others may. Empty where no three characters stand together.
  std::string trigrams;

  /// A pattern of % and _ with \ before literal ones; of Anywhere and Pattern.
  std::string AsLike() const;
};

/// Reads a pattern in which % stands for any text, _ for any character, and [%], [_] and [[] for
/// the character itself. `folded` says whether the text it is held against is a fold. Empty for
/// other sets of characters, and beyond 4 KB, which no engine takes.
std::optional<LikePattern> ReadLikePattern(std::string_view pattern, bool folded);

}  // namespace orvane::server::dialect
