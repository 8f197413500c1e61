#include "packet/fold.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace orvane {
namespace {

using CodePoint = std::uint32_t;

constexpr CodePoint kInvalid = 0xFFFFFFFF;
constexpr CodePoint kHighestCodePoint = 0x10FFFF;
constexpr CodePoint kFirstSurrogate = 0xD800;
constexpr CodePoint kAfterSurrogates = 0xE000;

struct Decoded {
  CodePoint point;
  std::size_t length;
};

constexpr std::uint8_t ByteAt(std::string_view text, std::size_t at) {
  return static_cast<std::uint8_t>(text[at]);
}

/// The code point at `at`; kInvalid of length 1 for a byte that begins no well-formed sequence.
Decoded Decode(std::string_view text, std::size_t at) {
  const std::uint8_t lead = ByteAt(text, at);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || at + length > text.size()) return {kInvalid, 1};
  CodePoint point = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const std::uint8_t next = ByteAt(text, at + i);
    if ((next & 0xC0u) != 0x80) return {kInvalid, 1};
    point = point << 6 | (next & 0x3Fu);
  }
  constexpr CodePoint kLowestOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = point >= kFirstSurrogate && point < kAfterSurrogates;
  if (point < kLowestOfLength[length] || surrogate || point > kHighestCodePoint) {
    return {kInvalid, 1};
  }
  return {point, length};
}

/// The first position from `at` on that may hold no ASCII; skips eight bytes at a time.
std::size_t AfterAscii(std::string_view text, std::size_t at) {
  std::uint64_t eight = 0;
  while (at + sizeof eight <= text.size()) {
    std::memcpy(&eight, text.data() + at, sizeof eight);
    if ((eight & 0x8080808080808080u) != 0) break;
    at += sizeof eight;
  }
  return at;
}

void Encode(CodePoint point, std::string& out) {
  const auto tail = [&](int shift) { out += static_cast<char>(0x80u | (point >> shift & 0x3Fu)); };
  if (point < 0x80) {
    out += static_cast<char>(point);
  } else if (point < 0x800) {
    out += static_cast<char>(0xC0u | point >> 6);
    tail(0);
  } else if (point < 0x10000) {
    out += static_cast<char>(0xE0u | point >> 12);
    tail(6);
    tail(0);
  } else {
    out += static_cast<char>(0xF0u | point >> 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

/// How the capitals of a range become small: by a distance, or, where a capital and its small
/// letter stand side by side, by going from the even (or odd) one to the next.
enum class Step : std::uint8_t { Distance, FromEven, FromOdd };

struct FoldRange {
  CodePoint first;
  CodePoint last;
  Step step;
  std::int32_t distance = 0;
};

constexpr FoldRange kRanges[] = {
    // Latin; U+0130 is the I with a dot above, U+017F the long s
    {0x0041, 0x005A, Step::Distance, 0x20},
    {0x00C0, 0x00D6, Step::Distance, 0x20},
    {0x00D8, 0x00DE, Step::Distance, 0x20},
    {0x0100, 0x012F, Step::FromEven},
    {0x0130, 0x0130, Step::Distance, 0x69 - 0x130},
    {0x0132, 0x0137, Step::FromEven},
    {0x0139, 0x0148, Step::FromOdd},
    {0x014A, 0x0177, Step::FromEven},
    {0x0178, 0x0178, Step::Distance, 0xFF - 0x178},
    {0x0179, 0x017E, Step::FromOdd},
    {0x017F, 0x017F, Step::Distance, 0x73 - 0x17F},
    // Greek; the final sigma, U+03C2, has the capital of the other one
    {0x0386, 0x0386, Step::Distance, 0x26},
    {0x0388, 0x038A, Step::Distance, 0x25},
    {0x038C, 0x038C, Step::Distance, 0x40},
    {0x038E, 0x038F, Step::Distance, 0x3F},
    {0x0391, 0x03A1, Step::Distance, 0x20},
    {0x03A3, 0x03AB, Step::Distance, 0x20},
    {0x03C2, 0x03C2, Step::Distance, 1},
    // Cyrillic
    {0x0400, 0x040F, Step::Distance, 0x50},
    {0x0410, 0x042F, Step::Distance, 0x20},
    {0x0460, 0x0481, Step::FromEven},
    {0x048A, 0x04BF, Step::FromEven},
    {0x04C0, 0x04C0, Step::Distance, 0x0F},
    {0x04C1, 0x04CE, Step::FromOdd},
    {0x04D0, 0x052F, Step::FromEven},
    // Latin with two marks; U+1E9E is the capital sharp s
    {0x1E00, 0x1E95, Step::FromEven},
    {0x1E9E, 0x1E9E, Step::Distance, 0xDF - 0x1E9E},
    {0x1EA0, 0x1EFF, Step::FromEven},
};

constexpr CodePoint FoldByRanges(CodePoint point) {
  for (const FoldRange& range : kRanges) {
    if (point < range.first || point > range.last) continue;
    if (range.step == Step::FromEven) return point | 1u;
    if (range.step == Step::FromOdd) return point + (point & 1u);
    return static_cast<CodePoint>(static_cast<std::int32_t>(point) + range.distance);
  }
  return point;
}

/// The ranges up to the end of Cyrillic, letter by letter: folding is the innermost loop of
/// sorting.
constexpr auto kLetters = [] {
  std::array<std::uint16_t, 0x530> letters{};
  for (CodePoint point = 0; point < letters.size(); ++point) {
    letters[point] = static_cast<std::uint16_t>(FoldByRanges(point));
  }
  return letters;
}();

CodePoint FoldLetter(CodePoint point) {
  return point < kLetters.size() ? kLetters[point] : FoldByRanges(point);
}

constexpr std::string_view kBlanks[] = {" ", "\t", "\r", "\n", "\u00A0", "\u202F"};

std::string_view WithoutBlanksBefore(std::string_view text) {
  for (std::size_t i = 0; i < std::size(kBlanks);) {
    const std::string_view blank = kBlanks[i];
    const bool found = text.starts_with(blank);
    if (found) text.remove_prefix(blank.size());
    i = found ? 0 : i + 1;
  }
  return text;
}

std::string_view WithoutBlanksBehind(std::string_view text) {
  for (std::size_t i = 0; i < std::size(kBlanks);) {
    const std::string_view blank = kBlanks[i];
    const bool found = text.ends_with(blank);
    if (found) text.remove_suffix(blank.size());
    i = found ? 0 : i + 1;
  }
  return text;
}

/// Bytes before the last code point, or before the last byte when that is no well-formed one.
std::size_t StartOfLast(std::string_view text) {
  for (std::size_t length = 1; length <= 4 && length <= text.size(); ++length) {
    const Decoded decoded = Decode(text, text.size() - length);
    if (decoded.point != kInvalid && decoded.length == length) return text.size() - length;
  }
  return text.size() - 1;
}

}  // namespace

std::string Fold(std::string_view text) {
  text = WithoutBlanksBehind(text);
  std::string folded;
  folded.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Decoded decoded = Decode(text, at);
    if (decoded.point == kInvalid) {
      folded += text[at];
    } else {
      Encode(FoldLetter(decoded.point), folded);
    }
    at += decoded.length;
  }
  return folded;
}

std::string PrefixUpperBound(std::string_view prefix) {
  // The next code point, not the next byte: engines refuse a bound that is no UTF-8. The order of
  // code points is the order of their bytes.
  const bool wellFormed = IsUtf8(prefix);
  for (; !prefix.empty(); prefix = prefix.substr(0, StartOfLast(prefix))) {
    std::string bound(prefix.substr(0, wellFormed ? StartOfLast(prefix) : prefix.size() - 1));
    if (!wellFormed) {
      if (prefix.back() == '\xFF') continue;
      return bound += static_cast<char>(ByteAt(prefix, prefix.size() - 1) + 1);
    }
    const CodePoint last = Decode(prefix, bound.size()).point;
    if (last == kHighestCodePoint) continue;
    Encode(last + 1 == kFirstSurrogate ? kAfterSurrogates : last + 1, bound);
    return bound;
  }
  return {};
}

std::size_t Utf8Length(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count)
    at += Decode(text, at).length;
  return count;
}

std::string_view Utf8Cut(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  for (; count > 0 && at < text.size(); --count)
    at += Decode(text, at).length;
  return text.substr(0, at);
}

bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    at = AfterAscii(text, at);
    if (at == text.size()) return true;
    const Decoded decoded = Decode(text, at);
    if (decoded.point == kInvalid) return false;
    at += decoded.length;
  }
  return true;
}

bool IsBlank(std::string_view text) {
  return WithoutBlanksBefore(text).empty();
}

std::string_view Trim(std::string_view text) {
  return WithoutBlanksBehind(WithoutBlanksBefore(text));
}

}  // namespace orvane
