// Reads the whole tree against the rules of the house. The second half plants a fault for each
// rule, so that a rule which has gone blind is seen.
#include <gtest/gtest.h>

#include "house/house_rules.h"

namespace orvane::house {
namespace {

const Files& Tree() {
  static const Files tree = ReadTree(ORVANE_SOURCE_DIR, {"src", "tests", "bench"});
  return tree;
}

void ExpectNone(const Findings& findings) {
  for (const std::string& finding : findings)
    ADD_FAILURE() << finding;
}

TEST(House, TheTreeIsRead) {
  EXPECT_GT(Tree().size(), 5U);
}

TEST(House, EachFloorIncludesOnlyWhatStandsBelowIt) {
  ExpectNone(CheckFloors(Tree()));
}

TEST(House, FoldersOfTheServerStandInTheirOrderAndFoldersStaySmall) {
  ExpectNone(CheckServerFolders(Tree()));
  ExpectNone(CheckFolderSizes(Tree()));
}

TEST(House, ATypeNameHasOneDefinition) {
  ExpectNone(CheckTypeNames(Tree()));
}

TEST(House, HeadersAreReadOnceAndFirstByTheirOwnUnit) {
  ExpectNone(CheckHeaders(Tree()));
}

TEST(House, EveryHeaderHasAReader) {
  ExpectNone(CheckUnreadHeaders(Tree()));
}

TEST(House, NoWordStandsWhereSomethingBetterIsMeant) {
  ExpectNone(CheckWords(Tree()));
}

TEST(House, FunctionsFitOnOneScreenAndFilesStayShort) {
  ExpectNone(CheckLengths(Tree()));
}

struct Planted {
  std::string_view path;
  std::string_view text;
  std::string_view finding;  // beginning of the only finding; empty: none
};

void CheckPlanted(Findings (*rule)(const Files&), const std::vector<Planted>& rows) {
  for (const Planted& row : rows) {
    const Files files = {ReadSource(std::string(row.path), row.text),
                         ReadSource("src/packet/date.h", "#pragma once\n"),
                         ReadSource("src/host/form.h", "#pragma once\n")};
    const Findings findings = rule(files);
    const std::string first = findings.empty() ? "" : findings.front();
    EXPECT_EQ(findings.size(), row.finding.empty() ? 0U : 1U) << row.text << first;
    EXPECT_TRUE(first.starts_with(row.finding)) << row.text << first;
  }
}

TEST(HouseRules, ATrespassBetweenFloorsIsFound) {
  CheckPlanted(&CheckFloors,
               {
                   {"src/kit/a.h", "#include \"host/form.h\"\n", ""},
                   {"src/data/a.h", "\n#include \"host/form.h\"\n",
                    "src/data/a.h:2: #include \"host/form.h\""},
                   {"src/server/a.h", "#include \"host/form.h\"\n", "src/server/a.h:1:"},
                   {"src/wire/a.h", "#include \"host/form.h\"\n", "src/wire/a.h:1:"},
                   {"src/apps/a.cpp", "#include \"host/form.h\"\n", ""},
                   {"src/host/a.h", "#  include <QString>\n", "src/host/a.h:1: #include <QString>"},
                   {"src/host/a.h", "#include <string>\n", ""},
                   {"src/host/a.h", "// #include <QString>\n", ""},
                   {"src/desktop/a.h", "#include <QtCore/QString>\n", ""},
                   {"src/desktop/a.h", "#include \"form.h\"\n", "src/desktop/a.h:1:"},
                   {"src/server/a.h", "#include <packet/date.h>\n", "src/server/a.h:1:"},
                   {"src/server/a.h", "#include \"packet/time.h\"\n", "src/server/a.h:1:"},
                   {"src/extra/a.h", "", "src/extra/a.h:1: belongs to no floor"},
                   {"tests/data/a.cpp", "#include \"host/form.h\"\n", ""},
               });
}

TEST(HouseRules, WhatRunsUpAndWhatIsNamedTwiceIsFound) {
  CheckPlanted(&CheckServerFolders,
               {
                   {"src/server/orders/a.h", "#include \"server/documents/b.h\"\n", ""},
                   {"src/server/documents/a.h", "\n#include \"server/orders/b.h\"\n",
                    "src/server/documents/a.h:2: #include \"server/orders/b.h\""},
                   {"src/server/orvane_server.cpp", "#include \"server/orders/b.h\"\n", ""},
                   {"tests/server/a.cpp", "#include \"server/check/b.h\"\n", ""},
               });
  CheckPlanted(&CheckTypeNames,
               {
                   {"src/server/a.h", "struct A;\nclass A final {\n  struct B {\n", ""},
                   {"src/kit/a.h", "class A {\n};\nstruct A {\n", "src/kit/a.h:3: a second"},
                   {"src/kit/a.h", "class A {\nstruct A::B {\n", ""},
                   {"src/kit/a.cpp", "class A {\nstruct A {\n", ""},
               });
  const Files many(41, ReadSource("src/kit/a.h", ""));
  EXPECT_EQ(CheckFolderSizes(many).size(), 1U);
  EXPECT_TRUE(CheckFolderSizes(Files(many.begin(), many.end() - 1)).empty());
}

TEST(HouseRules, HeadersAreWatched) {
  CheckPlanted(&CheckHeaders,
               {
                   {"src/packet/date.cpp", "#include \"packet/date.h\"\n#include <string>\n", ""},
                   {"src/packet/date.cpp", "#include <string>\n#include \"packet/date.h\"\n",
                    "src/packet/date.cpp:1: the first include"},
                   {"src/packet/date.cpp", "", "src/packet/date.cpp:1: the first include"},
                   {"src/packet/a.h", "// #pragma once\n", "src/packet/a.h:1: can be read twice"},
               });
  const Files tree = {ReadSource("src/packet/date.h", ""), ReadSource("src/packet/clock.h", ""),
                      ReadSource("src/packet/date.cpp", "#include \"packet/date.h\"\n"),
                      ReadSource("src/data/a.cpp", "#include \"packet/clock.h\"\n")};
  ASSERT_EQ(CheckUnreadHeaders(tree).size(), 1U);
  EXPECT_TRUE(CheckUnreadHeaders(tree).front().starts_with("src/packet/date.h:1:"));
}

TEST(HouseRules, BannedWordsAreFoundOnlyWhereTheyAreMeant) {
  CheckPlanted(
      &CheckWords,
      {
          {"src/kit/a.cpp", "int a;\n// TODO: b\n", "src/kit/a.cpp:2: 'TODO'"},
          {"tests/kit/a.cpp", "/* FIXME */", "tests/kit/a.cpp:1: 'FIXME'"},
          {"src/kit/a.cpp", "auto t = \"TODO\"; // MASTODON", ""},
          {"src/host/a.cpp", "std::cout << 1;", "src/host/a.cpp:1: 'std::cout'"},
          {"src/apps/a.cpp", "std::cout << 1;", ""},
          {"src/host/a.cpp", "// std::cout\n\"std::cout\"", ""},
          {"src/host/a.cpp", "snprintf(b, n, f); operand(1);", ""},
          {"src/host/a.cpp", "auto x = R\"sql(\n\" new )sql\"; auto y = new int;",
           "src/host/a.cpp:2: 'new'"},
          {"src/desktop/a.cpp", "auto* w = new QWidget(this);", ""},
          {"src/kit/a.cpp", "int n = 1'000; float d; char c = '\\'';", "src/kit/a.cpp:1: 'float'"},
          {"src/data/a.cpp", "std::thread worker;", "src/data/a.cpp:1: 'std::thread'"},
          {"src/server/a.cpp", "std::thread worker;", ""},
      });
}

std::string Lines(int count, std::string_view line) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += std::string(line) + "\n";
  return text;
}

TEST(HouseRules, LongFunctionsAreFoundWithoutBlamingTables) {
  const std::string body = Lines(69, "  ++a;");
  const std::string shortBody = Lines(68, "  ++a;");
  const std::string table = Lines(90, "    {1, 2},");
  const std::vector<std::pair<std::string, int>> rows = {
      // text, line of the finding; 0: none
      {"int A() {\n" + shortBody + "}\n", 0},
      {"\nint A() {\n" + body + "}\n", 2},
      {"namespace x {\nstruct B {\n  void C() const override {\n" + body + "  }\n};\n}\n", 3},
      {"A::A(int a)\n    : a_(a), b_{a} {\n" + body + "}\n", 1},
      {"template <class T>\nauto A(T a) -> std::vector<T> {\n" + body + "}\n", 1},
      {"void A() {\n  auto f = [&](int b) {\n" + body + "  };\n}\n", 1},
      {"void A() {\n  for (int i = 0; i < 3; ++i) {\n" + body + "  }\n}\n", 1},
      {"constexpr Row kRows[] = {\n" + table + "};\n", 0},
      {"void A() {\n  static const Row kRows[] = {\n" + table + "  };\n  B();\n}\n", 0},
      {"Layout A() {\n  return Ribbon{\n" + table + "  };\n}\n", 0},
      {"void A() {\n  Use({\n" + table + "  });\n" + body + "}\n", 1},
      {"C A() {\n  return C()\n" + Lines(90, "      .Row(1)") + "      ;\n}\n", 0},
      {"const char* kSql = R\"(\n" + Lines(90, "select {") + ")\";\nint A() {\n  return 1;\n}\n",
       0},
      {"#define A {\nint B() {\n" + body + "}\n", 2},
      {"class A {\n" + Lines(90, "  int b();") + "};\n", 0},
      {"enum class A {\n" + Lines(90, "  B,") + "};\n", 0},
  };
  for (const auto& [text, line] : rows) {
    const Findings findings = CheckLengths({ReadSource("src/kit/a.cpp", text)});
    EXPECT_EQ(findings.size(), line == 0 ? 0U : 1U) << text;
    if (line == 0 || findings.empty()) continue;
    EXPECT_TRUE(
        findings.front().starts_with("src/kit/a.cpp:" + std::to_string(line) + ": a function"))
        << findings.front() << "\n"
        << text;
  }
  EXPECT_TRUE(CheckLengths({ReadSource("src/kit/a.cpp", Lines(700, "int a;"))}).empty());
  EXPECT_EQ(CheckLengths({ReadSource("src/kit/a.cpp", Lines(701, "int a;"))}).size(), 1U);
}

}  // namespace
}  // namespace orvane::house
