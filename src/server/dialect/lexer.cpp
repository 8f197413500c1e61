#include "server/dialect/lexer.h"

#include <optional>
#include <utility>

#include "packet/fold.h"

namespace orvane::server::dialect {
namespace {

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

class Lexer {
 public:
  explicit Lexer(std::string_view sql) : sql_(sql) {}

  Answer<std::vector<Token>> Run() {
    tokens_.reserve(sql_.size() / 4 + 1);
    while (true) {
      SkipBlanks();
      const Place place = place_;
      if (at_ == sql_.size()) {
        tokens_.push_back({TokenKind::End, {}, false, place, -1});
        return std::move(tokens_);
      }
      if (!ReadToken(place)) return *failure_;
    }
  }

 private:
  char Peek(std::size_t ahead = 0) const {
    return at_ + ahead < sql_.size() ? sql_[at_ + ahead] : '\0';
  }

  void Step() {
    const char c = sql_[at_++];
    if (c == '\n') {
      ++place_.line;
      place_.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0u) != 0x80u) {
      ++place_.column;
    }
  }

  void SkipBlanks() {
    while (at_ < sql_.size()) {
      if (IsSpace(Peek())) {
        Step();
      } else if (Peek() == '-' && Peek(1) == '-') {
        while (at_ < sql_.size() && Peek() != '\n')
          Step();
      } else {
        return;
      }
    }
  }

  bool Refuse(Place place, const std::string& what) {
    failure_ = NotUnderstood(place, what);
    return false;
  }

  bool ReadToken(Place place) {
    const char c = Peek();
    if (IsLetter(c)) {
      tokens_.push_back({TokenKind::Word, ReadName(), false, place, -1});
      return true;
    }
    if (IsDigit(c)) return ReadNumber(place);
    if (c == '\'') return ReadText(place);
    if (c == ':' || c == '@') {
      Step();
      if (!IsLetter(Peek())) return Refuse(place, "след „:“ или „@“ се очаква име на параметър");
      tokens_.push_back({TokenKind::Variable, ReadName(), c == '@', place, -1});
      return true;
    }
    return ReadSign(place);
  }

  std::string_view ReadName() {
    const std::size_t from = at_;
    while (IsLetter(Peek()) || IsDigit(Peek()))
      Step();
    return sql_.substr(from, at_ - from);
  }

  bool ReadNumber(Place place) {
    const std::size_t from = at_;
    while (IsDigit(Peek()))
      Step();
    TokenKind kind = TokenKind::Integer;
    if (Peek() == '.' && IsDigit(Peek(1))) {
      kind = TokenKind::Decimal;
      Step();
      while (IsDigit(Peek()))
        Step();
    }
    if (IsLetter(Peek())) return Refuse(place, "числото е слято с дума");
    tokens_.push_back({kind, sql_.substr(from, at_ - from), false, place, literals_++});
    return true;
  }

  bool ReadText(Place place) {
    Step();
    const std::size_t from = at_;
    while (at_ < sql_.size()) {
      if (Peek() == '\'') {
        Step();
        if (Peek() != '\'') {
          const std::string_view text = sql_.substr(from, at_ - 1 - from);
          tokens_.push_back({TokenKind::Text, text, false, place, literals_++});
          return true;
        }
      }
      Step();
    }
    return Refuse(place, "текстът в апострофи не е затворен");
  }

  bool ReadSign(Place place) {
    const char first = Peek();
    const char next = Peek(1);
    const bool two = (first == '<' && (next == '=' || next == '>')) ||
                     ((first == '>' || first == '!') && next == '=');
    const std::string_view sign = sql_.substr(at_, two ? 2 : 1);
    static constexpr std::string_view kSigns[] = {".",  ",",  "=",  "(",  ")", "<", ">",
                                                  "<=", ">=", "<>", "!=", "+", "-"};
    for (const std::string_view known : kSigns) {
      if (known != sign) continue;
      for (std::size_t i = 0; i < sign.size(); ++i)
        Step();
      tokens_.push_back(
          {TokenKind::Sign, sign == "!=" ? std::string_view("<>") : sign, false, place, -1});
      return true;
    }
    const std::string_view character = Utf8Cut(sql_.substr(at_), 1);
    return Refuse(place, "знакът " + Quoted(character) + " не се допуска");
  }

  std::string_view sql_;
  std::size_t at_ = 0;
  Place place_;
  std::vector<Token> tokens_;
  int literals_ = 0;
  std::optional<Failure> failure_;
};

}  // namespace

Failure NotUnderstood(Place place, const std::string& what) {
  return {FailureKind::BadRequest, "Търсенето не е разбрано на ред " + std::to_string(place.line) +
                                       ", позиция " + std::to_string(place.column) + ": " + what +
                                       "."};
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMostQuoted = 80;
  const std::string_view shown = Utf8Cut(text, kMostQuoted);
  return "„" + std::string(shown) + (shown.size() < text.size() ? "…“" : "“");
}

std::string Unquoted(std::string_view text) {
  std::string value;
  value.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    value += text[i];
    if (text[i] == '\'') ++i;  // the first of two
  }
  return value;
}

Answer<std::vector<Token>> Tokenise(std::string_view sql) {
  if (sql.size() > kLongestStatement) return NotUnderstood({}, "текстът е твърде дълъг");
  if (!IsUtf8(sql) || sql.find('\0') != std::string_view::npos) {
    return NotUnderstood({}, "текстът не е в UTF-8");
  }
  return Lexer(sql).Run();
}

}  // namespace orvane::server::dialect
