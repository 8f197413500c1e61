#include "server/demo/demo_text.h"

#include <cassert>
#include <cstddef>

namespace orvane::server {
namespace {

struct Letter {
  std::string_view cyrillic;
  std::string_view latin;
};
constexpr Letter kLetters[] = {
    {"А", "A"},  {"Б", "B"},  {"В", "V"},  {"Г", "G"},  {"Д", "D"},   {"Е", "E"},  {"Ж", "Zh"},
    {"З", "Z"},  {"И", "I"},  {"Й", "Y"},  {"К", "K"},  {"Л", "L"},   {"М", "M"},  {"Н", "N"},
    {"О", "O"},  {"П", "P"},  {"Р", "R"},  {"С", "S"},  {"Т", "T"},   {"У", "U"},  {"Ф", "F"},
    {"Х", "H"},  {"Ц", "Ts"}, {"Ч", "Ch"}, {"Ш", "Sh"}, {"Щ", "Sht"}, {"Ъ", "A"},  {"Ь", "Y"},
    {"Ю", "Yu"}, {"Я", "Ya"}, {"а", "a"},  {"б", "b"},  {"в", "v"},   {"г", "g"},  {"д", "d"},
    {"е", "e"},  {"ж", "zh"}, {"з", "z"},  {"и", "i"},  {"й", "y"},   {"к", "k"},  {"л", "l"},
    {"м", "m"},  {"н", "n"},  {"о", "o"},  {"п", "p"},  {"р", "r"},   {"с", "s"},  {"т", "t"},
    {"у", "u"},  {"ф", "f"},  {"х", "h"},  {"ц", "ts"}, {"ч", "ch"},  {"ш", "sh"}, {"щ", "sht"},
    {"ъ", "a"},  {"ь", "y"},  {"ю", "yu"}, {"я", "ya"}, {"„", "“"},   {"“", "”"},
};

const Letter* LetterAt(std::string_view text) {
  for (const Letter& letter : kLetters) {
    if (text.starts_with(letter.cyrillic)) return &letter;
  }
  return nullptr;
}

bool EndsWord(std::string_view rest) {
  return LetterAt(rest) == nullptr || rest.starts_with("„") || rest.starts_with("“");
}

/// Sum of the digits weighed `first`, `first` + 1 …, modulo 11.
int Weighed(std::string_view digits, int first) {
  int sum = 0;
  for (const char digit : digits)
    sum += (digit - '0') * first++;
  return sum % 11;
}

}  // namespace

std::string InLatin(std::string_view bulgarian) {
  constexpr std::string_view kEnding = "ия";  // written "ia" at the end of a word
  std::string latin;
  for (std::size_t at = 0; at < bulgarian.size();) {
    const std::string_view rest = bulgarian.substr(at);
    if (rest.starts_with(kEnding) && EndsWord(rest.substr(kEnding.size()))) {
      latin += "ia";
      at += kEnding.size();
    } else if (const Letter* letter = LetterAt(rest)) {
      latin += letter->latin;
      at += letter->cyrillic.size();
    } else {
      latin += bulgarian[at++];
    }
  }
  return latin;
}

std::string WithCheckDigit(std::string_view eightDigits) {
  assert(eightDigits.size() == 8);
  int check = Weighed(eightDigits, 1);
  if (check == 10) check = Weighed(eightDigits, 3) % 10;
  return std::string(eightDigits) + static_cast<char>('0' + check);
}

std::string Filled(std::string_view pattern, std::string_view text) {
  const std::size_t mark = pattern.find("%s");
  if (mark == std::string_view::npos) return std::string(pattern);
  return std::string(pattern.substr(0, mark)) + std::string(text) +
         std::string(pattern.substr(mark + 2));
}

}  // namespace orvane::server
