#include "server/log/log_text.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/spdlog.h>

#include <memory>
#include <regex>

#include "packet/fold.h"

namespace orvane::server {
namespace {

constexpr std::size_t kLongestValue = 100;  ///< code points
/// Engines write long messages, and nobody reads longer ones.
constexpr std::size_t kLongestLine = 2000;  ///< code points

bool IsControl(unsigned char byte) {
  return byte < 32 || byte == 127;
}

void AppendEscaped(std::string& text, unsigned char byte) {
  constexpr char kDigits[] = "0123456789abcdef";
  text += "\\x";
  text += kDigits[byte >> 4];
  text += kDigits[byte & 15];
}

/// `special` are escaped too. Control characters beyond ASCII (U+0080 to U+009F) end lines on some
/// terminals, as do U+2028 and U+2029.
std::string Escaped(std::string_view text, std::string_view special) {
  const bool whole = IsUtf8(text);
  std::string escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool upper = text.substr(i, 1) == "\xC2" && i + 1 < text.size() &&
                       static_cast<unsigned char>(text[i + 1]) < 0xA0;
    const bool separator =
        text.substr(i, 3) == "\xE2\x80\xA8" || text.substr(i, 3) == "\xE2\x80\xA9";
    if (IsControl(byte) || upper || separator || (!whole && byte >= 128) ||
        special.find(text[i]) != std::string_view::npos) {
      AppendEscaped(escaped, byte);
      if (upper) AppendEscaped(escaped, static_cast<unsigned char>(text[++i]));
      if (separator) {
        AppendEscaped(escaped, 0x80);
        AppendEscaped(escaped, static_cast<unsigned char>(text[i + 2]));
        i += 2;
      }
    } else {
      escaped += text[i];
    }
  }
  return escaped;
}

std::string Cut(std::string_view text, std::size_t longest) {
  const std::string_view cut = Utf8Cut(text, longest);
  return std::string(cut) + (cut.size() < text.size() ? "…" : "");
}

/// The pattern's %v, guarded.
class GuardedPayload final : public spdlog::custom_flag_formatter {
 public:
  void format(const spdlog::details::log_msg& message, const std::tm&,
              spdlog::memory_buf_t& line) override {
    const std::string_view payload(message.payload.data(), message.payload.size());
    const std::string text = Escaped(WithoutPasswords(Cut(payload, kLongestLine)), "");
    line.append(text.data(), text.data() + text.size());
  }
  std::unique_ptr<spdlog::custom_flag_formatter> clone() const override {
    return std::make_unique<GuardedPayload>();
  }
};

}  // namespace

std::string LogText(std::string_view value) {
  return '"' + Escaped(Cut(value, kLongestValue), "\"\\") + '"';
}

std::string WithoutPasswords(std::string_view text) {
  static const std::regex kNamed(R"((password\s*=\s*)('(?:[^'\\]|\\.)*'?|[^\s&'"“”]+))",
                                 std::regex::icase);
  // Up to the last @ before the path: a password may hold one that nobody escaped.
  static const std::regex kInAddress(R"((://[^\s:/@?]*:)[^\s/]*@)");
  const std::string named = std::regex_replace(std::string(text), kNamed, "$1***");
  return std::regex_replace(named, kInAddress, "$1***@");
}

void GuardLog() {
  auto formatter = std::make_unique<spdlog::pattern_formatter>();
  formatter->add_flag<GuardedPayload>('*').set_pattern("[%Y-%m-%d %H:%M:%S.%e] [%l] %*");
  spdlog::set_formatter(std::move(formatter));
}

}  // namespace orvane::server
