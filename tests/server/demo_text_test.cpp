#include "server/demo/demo_text.h"

#include <gtest/gtest.h>

namespace orvane::server {
namespace {

TEST(DemoText, NamesAreTransliteratedAsTheLawSays) {
  const struct {
    const char* bulgarian;
    const char* latin;
  } rows[] = {
      {"София", "Sofia"},
      {"България", "Balgaria"},
      {"Щръклево", "Shtraklevo"},
      {"Ивайло Жечев", "Ivaylo Zhechev"},
      {"Юлия Цонева", "Yulia Tsoneva"},
      {"Марияна", "Mariyana"},
      {"Кьосев", "Kyosev"},
      {"„Мария“ ООД", "“Maria” OOD"},
      {"ISO 9001", "ISO 9001"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(InLatin(row.bulgarian), row.latin);
}

TEST(DemoText, CheckDigitsOfCompanyNumbers) {
  const struct {
    const char* eight;
    const char* nine;
  } rows[] = {
      {"00069403", "000694037"},  // 6*4 + 9*5 + 4*6 + 3*8 = 117, 7 over 11
      {"10000008", "100000086"},  // 65 leaves 10; by the second weights 83 leaves 6
      {"00000030", "000000305"},  // 21 leaves 10; by the second weights 27 leaves 5
      {"10000055", "100000550"},  // 76 and 98 leave 10 both times: 0
      {"00000000", "000000000"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(WithCheckDigit(row.eight), row.nine);
}

}  // namespace
}  // namespace orvane::server
