#include "house/source_text.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace orvane::house {
namespace {

bool IsWordChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool IsSpace(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsSpace(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back()))
    text.remove_suffix(1);
  return text;
}

/// Copies a file into its two texts, piece by piece.
class Emptier {
 public:
  Emptier(std::string_view text, SourceFile& file) : text_(text), file_(file) {}

  void Run() {
    while (at_ < text_.size()) {
      if (StartsWith("//")) {
        TakeComment(text_.find('\n', at_), 0);
      } else if (StartsWith("/*")) {
        TakeComment(text_.find("*/", at_ + 2), 2);
      } else if (StartsWith("R\"") && (at_ == 0 || !IsWordChar(text_[at_ - 1]))) {
        TakeRawString();
      } else if (text_[at_] == '"' && !InsideInclude()) {
        TakeLiteral('"');
      } else if (text_[at_] == '\'' && (at_ == 0 || !IsWordChar(text_[at_ - 1]))) {
        TakeLiteral('\'');  // after a digit the apostrophe separates thousands
      } else {
        Keep(text_[at_++]);
      }
    }
  }

 private:
  bool StartsWith(std::string_view start) const { return text_.substr(at_).starts_with(start); }

  void Keep(char c) {
    file_.prose += c;
    file_.code += c;
  }

  void TakeComment(std::size_t end, std::size_t endLength) {
    const std::size_t stop = end == std::string_view::npos ? text_.size() : end + endLength;
    for (; at_ < stop; ++at_) {
      file_.prose += text_[at_];
      file_.code += text_[at_] == '\n' ? '\n' : ' ';
    }
  }

  void TakeRawString() {
    const std::size_t open = text_.find('(', at_);
    const std::string close = ")" + std::string(text_.substr(at_ + 2, open - at_ - 2)) + "\"";
    const std::size_t end = text_.find(close, open);
    const std::size_t stop = end == std::string_view::npos ? text_.size() : end + close.size();
    Keep('"');
    for (; at_ < stop; ++at_) {
      if (text_[at_] == '\n') Keep('\n');
    }
    Keep('"');
  }

  void TakeLiteral(char quote) {
    Keep(quote);
    for (++at_; at_ < text_.size() && text_[at_] != quote && text_[at_] != '\n'; ++at_) {
      if (text_[at_] == '\\') ++at_;
    }
    if (at_ < text_.size()) Keep(text_[at_++]);
  }

  bool InsideInclude() const {
    const std::size_t start = text_.rfind('\n', at_) + 1;  // npos + 1 is the first character
    const std::string_view before = Trim(text_.substr(start, at_ - start));
    return before.starts_with("#") && before.find("include") != std::string_view::npos;
  }

  std::string_view text_;
  SourceFile& file_;
  std::size_t at_ = 0;
};

void ReadIncludes(SourceFile& file) {
  int line = 0;
  std::size_t start = 0;
  while (start < file.code.size()) {
    const std::size_t end = std::min(file.code.find('\n', start), file.code.size());
    std::string_view text = Trim(std::string_view(file.code).substr(start, end - start));
    ++line;
    start = end + 1;
    if (!text.starts_with("#")) continue;
    text = Trim(text.substr(1));
    if (!text.starts_with("include")) continue;
    file.includes.emplace_back(Trim(text.substr(std::string_view("include").size())));
    file.includeLines.push_back(line);
  }
  file.lines = line;
}

enum class Block { Scope, Function, Code, Table };

bool HasWord(std::string_view text, std::string_view word) {
  return !LinesWith(text, word).empty();
}

std::string_view LastWord(std::string_view text) {
  std::size_t start = text.size();
  while (start > 0 && IsWordChar(text[start - 1]))
    --start;
  return text.substr(start);
}

/// Without the template<…> in front, whose `class` is not the word of a class.
std::string_view WithoutTemplate(std::string_view head) {
  if (!head.starts_with("template")) return head;
  int depth = 0;
  for (std::size_t i = 0; i < head.size(); ++i) {
    if (head[i] == '<') ++depth;
    if (head[i] == '>' && --depth == 0) return Trim(head.substr(i + 1));
  }
  return head;
}

bool OpensScope(std::string_view head) {
  static constexpr std::array<std::string_view, 5> kWords = {"namespace", "class", "struct",
                                                             "union", "enum"};
  if (head.find('(') != std::string_view::npos && !head.starts_with("class") &&
      !head.starts_with("struct")) {
    return false;
  }
  if (head.find('=') != std::string_view::npos) return false;
  return head.starts_with("extern") ||
         std::ranges::any_of(kWords, [&](std::string_view word) { return HasWord(head, word); });
}

/// `head` is what stands between the last statement and the brace.
Block KindOf(std::string_view head, Block around) {
  static constexpr std::array<std::string_view, 9> kBeforeBody = {
      "const", "noexcept", "override", "final", "mutable", "try", "else", "do", "constexpr"};
  head = WithoutTemplate(Trim(head));
  if (around == Block::Scope && OpensScope(head)) return Block::Scope;
  const bool returnsArrow = head.rfind("->") != std::string_view::npos &&
                            head.rfind("->") > head.rfind(')') && head.back() != '=';
  const bool bodyFollows = head.empty() || head.back() == ')' || head.back() == ']' ||
                           head.back() == ':' || returnsArrow ||
                           std::ranges::find(kBeforeBody, LastWord(head)) != kBeforeBody.end();
  if (around == Block::Scope) {
    const bool afterInitializers = head.ends_with("}") && head.find(')') != std::string_view::npos;
    return (bodyFollows && !head.empty()) || afterInitializers ? Block::Function : Block::Table;
  }
  if (around == Block::Table) {
    return bodyFollows && !head.empty() && head.find('[') != std::string_view::npos ? Block::Code
                                                                                    : Block::Table;
  }
  return bodyFollows ? Block::Code : Block::Table;
}

/// Walks over the braces of a file and measures what opens as a function.
class FunctionReader {
 public:
  explicit FunctionReader(std::string_view code) : code_(code) {}

  std::vector<FunctionLength> Run() {
    for (; at_ < code_.size(); ++at_) {
      switch (code_[at_]) {
        case '#':
          SkipDirective();
          break;
        case '\n':
          EndLine();
          break;
        case '(':
          ++parens_;
          break;
        case ')':
          --parens_;
          break;
        case ';':
          if (parens_ <= 0) headStart_ = at_ + 1;
          break;
        case '{':
          Open();
          break;
        case '}':
          Close();
          break;
        default:
          break;
      }
    }
    return std::move(found_);
  }

 private:
  struct Level {
    Block kind;
    std::size_t headStart;
    int parens;
  };

  Block Around() const { return levels_.empty() ? Block::Scope : levels_.back().kind; }

  void SkipDirective() {
    at_ = std::min(code_.find('\n', at_), code_.size()) - 1;
    headStart_ = at_ + 1;
  }

  void EndLine() {
    const std::string_view text = Trim(code_.substr(lineStart_, at_ - lineStart_));
    // A row of a table, or of a declaration written as a chain of calls.
    const bool row = tableAtLineStart_ || text.starts_with(".");
    if (inFunction_ && !row) ++current_.lines;
    ++line_;
    lineStart_ = at_ + 1;
    tableAtLineStart_ = Around() == Block::Table;
  }

  void Open() {
    const Block kind = KindOf(code_.substr(headStart_, at_ - headStart_), Around());
    levels_.push_back({kind, headStart_, parens_});
    if (kind == Block::Function) BeginFunction();
    headStart_ = at_ + 1;
    parens_ = 0;
  }

  void BeginFunction() {
    std::size_t start = headStart_;
    while (start < at_ && IsSpace(code_[start]))
      ++start;
    const auto headLines =
        static_cast<int>(std::count(code_.begin() + static_cast<std::ptrdiff_t>(start),
                                    code_.begin() + static_cast<std::ptrdiff_t>(at_), '\n'));
    current_ = {line_ - headLines, headLines};
    inFunction_ = true;
  }

  void Close() {
    if (levels_.empty()) return;
    const Level level = levels_.back();
    levels_.pop_back();
    parens_ = level.parens;
    if (level.kind == Block::Function) {
      ++current_.lines;  // the line of the brace
      found_.push_back(current_);
      inFunction_ = false;
    }
    // What stood before a table still belongs to the statement that goes on behind it.
    const bool statementGoesOn = level.kind == Block::Table || parens_ > 0;
    headStart_ = statementGoesOn ? level.headStart : at_ + 1;
  }

  std::string_view code_;
  std::vector<FunctionLength> found_;
  std::vector<Level> levels_;
  FunctionLength current_;
  bool inFunction_ = false;
  bool tableAtLineStart_ = false;
  std::size_t at_ = 0;
  std::size_t headStart_ = 0;
  std::size_t lineStart_ = 0;
  int line_ = 1;
  int parens_ = 0;
};

}  // namespace

SourceFile ReadSource(std::string path, std::string_view text) {
  SourceFile file;
  file.path = std::move(path);
  Emptier(text, file).Run();
  ReadIncludes(file);
  return file;
}

std::vector<FunctionLength> Functions(std::string_view code) {
  return FunctionReader(code).Run();
}

std::vector<int> LinesWith(std::string_view text, std::string_view word) {
  std::vector<int> lines;
  if (word.empty()) return lines;
  std::size_t counted = 0;
  int line = 1;
  for (std::size_t at = text.find(word); at != std::string_view::npos;
       at = text.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    const bool insideBefore = IsWordChar(word.front()) && at > 0 && IsWordChar(text[at - 1]);
    const bool insideAfter = IsWordChar(word.back()) && end < text.size() && IsWordChar(text[end]);
    if (insideBefore || insideAfter) continue;
    line += static_cast<int>(std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                                        text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
    counted = at;
    if (lines.empty() || lines.back() != line) lines.push_back(line);
  }
  return lines;
}

}  // namespace orvane::house
