#include "packet/fold.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/seed.h"

namespace orvane {
namespace {

/// Texts of letters that fold, of blanks, of stray bytes, of anything.
std::string RandomText(std::mt19937& random) {
  static const char* const kPieces[] = {
      "А", "Я", "ѝ", "Ѝ",    "ё", "A", "z",    "0",        " ",          "\t",       "İ", "\u00A0",
      "Ÿ", "Σ", "ς", "\xD0", "ẞ", "€", "\x80", "\xE2\x80", "\U0001F600", "\xF0\x9F", "Ђ"};
  std::string text;
  for (auto left = random() % 8; left > 0; --left)
    text += kPieces[random() % std::size(kPieces)];
  return text;
}

TEST(Fold, MakesCapitalsSmallAndDropsTrailingBlanks) {
  const struct {
    const char* text;
    const char* folded;
  } rows[] = {
      {"Щъркел ЕООД", "щъркел еоод"},
      {"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЬЮЯ", "абвгдежзийклмнопрстуфхцчшщъьюя"},
      {"ЀЁЂЃЄЅІЇЈЉЊЋЌЍЎЏ", "ѐёђѓєѕіїјљњћќѝўџ"},
      {"ѢѪҐӀӁӐ", "ѣѫґӏӂӑ"},
      {"ABCXYZ @[`{", "abcxyz @[`{"},
      {"ÀÖØÞß×", "àöøþß×"},
      {"ĀİĶĹŇŊŶŸŹŽſ", "āiķĺňŋŷÿźžs"},
      {"ĸıŉ", "ĸıŉ"},
      {"ΑΣςΩΆΈΌΎΏΪ", "ασσωάέόύώϊ"},
      {"ẀẞẼỲ", "ẁßẽỳ"},
      {"Ламарина 2 мм  \t\r\n\u00A0\u202F", "ламарина 2 мм"},
      {"  отпред", "  отпред"},
      {"   ", ""},
      {"", ""},
      {"\xFF\xD0Я", "\xFF\xD0я"},
      {"漢字€😀", "漢字€😀"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Fold(row.text), row.folded) << row.text;
}

TEST(Fold, IsIdempotentNeverLongerAndKeepsBeginnings) {
  std::mt19937 random(Seed());
  for (int i = 0; i < 20'000; ++i) {
    const std::string text = RandomText(random);
    const std::string folded = Fold(text);
    ASSERT_EQ(Fold(folded), folded);
    ASSERT_LE(Utf8Length(folded), Utf8Length(text));
    const std::string_view beginning = Utf8Cut(text, random() % (Utf8Length(text) + 1));
    if (Trim(beginning).end() != beginning.end()) continue;  // ends in blanks
    ASSERT_TRUE(folded.starts_with(Fold(beginning))) << text << " / " << beginning;
  }
}

TEST(Fold, EveryCapitalOfBulgarianHasItsSmallLetter) {
  for (char32_t capital = 0x410; capital <= 0x42F; ++capital) {
    const auto utf8 = [](char32_t point) {
      return std::string{static_cast<char>(0xC0u | point >> 6),
                         static_cast<char>(0x80u | (point & 0x3Fu))};
    };
    EXPECT_EQ(Fold(utf8(capital)), utf8(capital + 0x20));
    EXPECT_EQ(Fold(utf8(capital + 0x20)), utf8(capital + 0x20));
  }
}

TEST(PrefixUpperBound, StandsBehindEveryTextOfThatBeginning) {
  const struct {
    const char* prefix;
    const char* bound;
  } rows[] = {
      {"а", "б"},
      {"п", "р"},  // the byte after п is no UTF-8
      {"стома", "стомб"},
      {"z", "{"},
      {"\x7F", "\u0080"},
      {"\uD7FF", "\uE000"},
      {"\uFFFF", "\U00010000"},
      {"a\U0010FFFF", "b"},
      {"\U0010FFFF", ""},
      {"", ""},
      {"a\xFF", "b"},
      {"\xD0", "\xD1"},
      {"\xFF\xFF", ""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(PrefixUpperBound(row.prefix), row.bound) << row.prefix;

  std::mt19937 random(Seed());
  for (int i = 0; i < 5'000; ++i) {
    const std::string prefix = RandomText(random);
    const std::string bound = PrefixUpperBound(prefix);
    if (bound.empty()) continue;
    ASSERT_GT(bound, prefix + RandomText(random));
    ASSERT_TRUE(IsUtf8(bound) || !IsUtf8(prefix)) << prefix;
  }
}

TEST(Utf8, RefusesWhatIsNotWellFormed) {
  const struct {
    const char* bytes;
    bool wellFormed;
  } rows[] = {
      {"", true},
      {"Ламарина €😀", true},
      {"\xEF\xBF\xBF", true},
      {"\xF4\x8F\xBF\xBF", true},
      {"\xC0\x80", false},          // overlong
      {"\xE0\x9F\xBF", false},      // overlong
      {"\xF0\x8F\xBF\xBF", false},  // overlong
      {"\xED\xA0\x80", false},      // surrogate
      {"\xF4\x90\x80\x80", false},  // beyond the last
      {"\xD0", false},
      {"\x80", false},
      {"\xE2\x82", false},
      {"\xFE", false},
  };
  for (const auto& row : rows)
    EXPECT_EQ(IsUtf8(row.bytes), row.wellFormed) << row.bytes;
}

TEST(Utf8, CountsAndCutsCodePoints) {
  EXPECT_EQ(Utf8Length("Щит €😀"), 6u);
  EXPECT_EQ(Utf8Cut("Щит €😀", 5), "Щит €");
  EXPECT_EQ(Utf8Cut("Щит", 9), "Щит");
  EXPECT_EQ(Utf8Cut("Щит", 0), "");
}

TEST(Blanks, AreSpacesTabsLineEndsAndNoBreakBlanks) {
  EXPECT_TRUE(IsBlank(""));
  EXPECT_TRUE(IsBlank(" \t\r\n\u00A0\u202F"));
  EXPECT_FALSE(IsBlank("\u00A0."));
  EXPECT_EQ(Trim("\u00A0 \tиме с интервал\n "), "име с интервал");
}

}  // namespace
}  // namespace orvane
