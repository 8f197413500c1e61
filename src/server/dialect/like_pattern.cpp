#include "server/dialect/like_pattern.h"

#include <vector>

#include "packet/fold.h"

namespace orvane::server::dialect {
namespace {

/// A run of literal text, or (when `wild` is not 0) one % or _.
struct Piece {
  char wild = 0;
  std::string text;
};

std::optional<std::vector<Piece>> Split(std::string_view pattern) {
  std::vector<Piece> pieces;
  const auto literal = [&](char c) {
    if (pieces.empty() || pieces.back().wild != 0) pieces.push_back({});
    pieces.back().text += c;
  };
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (c == '[') {
      if (i + 2 >= pattern.size() || pattern[i + 2] != ']') return std::nullopt;
      const char inner = pattern[i + 1];
      if (inner != '%' && inner != '_' && inner != '[') return std::nullopt;
      literal(inner);
      i += 2;
    } else if (c == '%' && !pieces.empty() && pieces.back().wild == '%') {
      continue;
    } else if (c == '%' || c == '_') {
      pieces.push_back({c, {}});
    } else {
      literal(c);
    }
  }
  return pieces;
}

/// The fold of text in the middle of a text: its trailing blanks count.
std::string FoldInside(const std::string& text) {
  std::string folded = Fold(text + "|");
  folded.pop_back();
  return folded;
}

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '%' || c == '_' || c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/// Where the characters of a text begin, and its end.
std::vector<std::size_t> Bounds(std::string_view text) {
  std::vector<std::size_t> bounds;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool begins = (static_cast<unsigned char>(text[i]) & 0xC0u) != 0x80u;
    if (begins) bounds.push_back(i);
  }
  bounds.push_back(text.size());
  return bounds;
}

std::vector<std::string> TrigramsOf(const std::vector<Piece>& pieces) {
  std::vector<std::string> trigrams;
  for (const Piece& piece : pieces) {
    if (piece.wild != 0 || !IsUtf8(piece.text)) continue;
    const std::vector<std::size_t> bounds = Bounds(piece.text);
    for (std::size_t i = 0; i + 3 < bounds.size(); ++i)
      trigrams.push_back(piece.text.substr(bounds[i], bounds[i + 3] - bounds[i]));
  }
  return trigrams;
}

/// What is found is held against the pattern itself, so some trigrams of a long one are enough.
std::string AskForAll(const std::vector<std::string>& trigrams) {
  constexpr std::size_t kMost = 8;
  const std::size_t step = (trigrams.size() + kMost - 1) / kMost;
  std::string asked;
  for (std::size_t i = 0; i < trigrams.size(); i += step) {
    asked += asked.empty() ? "\"" : " AND \"";
    for (const char c : trigrams[i])
      asked += c == '"' ? std::string("\"\"") : std::string(1, c);
    asked += '"';
  }
  return asked;
}

}  // namespace

std::string LikePattern::AsLike() const {
  return kind == LikeKind::Anywhere ? "%" + Escaped(text) + "%" : text;
}

std::optional<LikePattern> ReadLikePattern(std::string_view pattern, bool folded) {
  constexpr std::size_t kLongest = 4096;
  if (pattern.size() > kLongest) return std::nullopt;
  std::optional<std::vector<Piece>> pieces = Split(pattern);
  if (!pieces) return std::nullopt;
  for (std::size_t i = 0; folded && i < pieces->size(); ++i) {
    Piece& piece = (*pieces)[i];
    piece.text = i + 1 == pieces->size() ? Fold(piece.text) : FoldInside(piece.text);
  }
  const std::size_t count = pieces->size();
  const auto isText = [&](std::size_t i) { return (*pieces)[i].wild == 0; };
  const auto isAny = [&](std::size_t i) { return (*pieces)[i].wild == '%'; };
  if (count == 0) return LikePattern{LikeKind::Exact, {}, {}};
  if (count == 1 && isText(0)) return LikePattern{LikeKind::Exact, (*pieces)[0].text, {}};
  if (count == 1 && isAny(0)) return LikePattern{LikeKind::Beginning, {}, {}};
  if (count == 2 && isText(0) && isAny(1)) {
    return LikePattern{LikeKind::Beginning, (*pieces)[0].text, {}};
  }
  if (count == 3 && isAny(0) && isText(1) && isAny(2)) {
    return LikePattern{LikeKind::Anywhere, (*pieces)[1].text, AskForAll(TrigramsOf(*pieces))};
  }
  LikePattern general{LikeKind::Pattern, {}, AskForAll(TrigramsOf(*pieces))};
  for (const Piece& piece : *pieces) {
    general.text += piece.wild != 0 ? std::string(1, piece.wild) : Escaped(piece.text);
  }
  return general;
}

}  // namespace orvane::server::dialect
