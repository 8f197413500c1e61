// What a document's own steps may do inside an apply, tried on a class made for it.

#include "server/classes/server_classes.h"
#include "server/providers/value_text.h"
#include "server/server_case.h"

namespace orvane::server {
namespace {

int retriesWanted = 0;
int batches = 0;

Answer<Done, Setback> Before(WriteContext& context, std::span<PreparedChange> changes) {
  ++batches;
  for (PreparedChange& prepared : changes) {
    for (NamedValue& value : prepared.change.after) {
      if (value.value == Variant("забранено")) return Setback{Refused("Забранено име."), false};
    }
    if (prepared.change.kind != ChangeKind::Insert) continue;
    // The number comes from the server.
    const auto next = context.transaction.Query(
        {"select coalesce(max(Code), 0) + 1 from Department", {}, {{"Next", ValueKind::Int16, 0}}});
    if (!next) return ToSetback(next.GetFailure(), "numbering");
    prepared.change.after.push_back({"Code", next->At(0, std::size_t{0})});
    prepared.filled.push_back({"Code", next->At(0, std::size_t{0})});
  }
  return Done{};
}

Answer<Done, Setback> After(WriteContext& context, std::span<PreparedChange> changes) {
  if (retriesWanted > 0) {
    --retriesWanted;
    return Setback{{FailureKind::Conflict, "Опитайте отново."}, true};
  }
  const bool deleted = changes.front().change.kind == ChangeKind::Delete;
  context.ownerAnswer = deleted ? Variant() : Variant("документ " + context.ownerData.ToText());
  context.headMoved = {{"Status", 3}};
  return Done{};
}

inline constexpr auto Code = Int16("Code", Key);
inline constexpr auto Name = String("Name", 40, Required | Folded, "Име");
inline constexpr auto Chief = String("Chief", 10, Required, "Началник");
inline constexpr auto kDef = Writes("dspHooked", "Department", Code, Name, Chief);
constexpr char kSelect[] = "select Code, Name, Chief from Department order by Code";

class Hooks : public ServerCase {
 protected:
  Hooks() : test(GetParam()) {
    test.AddUser("ivanova");
    session = test.LogIn("ivanova");
    std::vector<ServerClass> classes;
    classes.push_back(ServerClass("TsmHooked")
                          .UsedFrom({Point::Departments})
                          .Provider(kDef, kSelect, {{}, {}, {}, &Before, &After}));
    ServerOptions options;
    server = std::make_unique<OrvaneServer>(test.Base(), test.Time(), options, std::move(classes));
    retriesWanted = 0;
    batches = 0;
  }
  static Change Named(const std::string& name) {
    return InsertOf({{"Name", name}, {"Chief", "ivanova"}});
  }
  Answer<ApplyAnswer> Apply(const Delta& delta, int maxErrors = 0) {
    return server->Apply(session.At(Point::Departments),
                         {"TsmHooked", "dspHooked", maxErrors, Variant("А"), delta});
  }

  TestServer test;
  TestSession session;
  std::unique_ptr<OrvaneServer> server;
};
INSTANTIATE_TEST_SUITE_P(Engines, Hooks, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Hooks, TheAnswerCarriesWhatTheServerFilledInAlsoWhenRepeated) {
  const Change change = Named("Една");
  for (int time = 0; time < 2; ++time) {
    const auto answer = Apply({change});
    ASSERT_TRUE(answer) << answer.GetFailure().message;
    EXPECT_EQ(Outcome(answer->outcomes.front()), "ok");
    EXPECT_EQ(answer->outcomes.front().filled, (NamedValues{{"Code", 1}}));
    EXPECT_EQ(answer->ownerData.ToText(), "документ А");
    EXPECT_EQ(answer->headMoved, (NamedValues{{"Status", 3}}));
  }
  EXPECT_EQ(Departments(test), "1 Една ivanova");
  EXPECT_EQ(batches, 1);
  const auto deleted = Apply({DeleteOf({{"Code", 1}, {"Name", "Една"}, {"Chief", "ivanova"}})});
  ASSERT_TRUE(deleted);
  EXPECT_TRUE(deleted->ownerData.IsNull());
}

TEST_P(Hooks, ARefusedBatchIsTriedAgainOneByOne) {
  const auto all = Apply({Named("Една"), Named("забранено"), Named("Три")}, 0);
  ASSERT_TRUE(all);
  EXPECT_EQ(Outcome(all->outcomes[0]), "-");
  EXPECT_EQ(all->outcomes[1].failure->message, "!!Err_Забранено име.");
  EXPECT_EQ(Departments(test), "");
  const auto each = Apply({Named("Една"), Named("забранено"), Named("Три")}, -1);
  ASSERT_TRUE(each);
  EXPECT_EQ(Outcome(each->outcomes[1]), "Refused");
  EXPECT_EQ(Departments(test), "1 Една ivanova; 2 Три ivanova");
}

TEST_P(Hooks, WhatStoodInTheWayIsTriedThreeTimesMore) {
  const Change change = Named("Една");
  retriesWanted = 3;
  const auto answer = Apply({change});
  ASSERT_TRUE(answer);
  EXPECT_EQ(Outcome(answer->outcomes.front()), "ok");
  EXPECT_EQ(batches, 4);
  EXPECT_EQ(Departments(test), "1 Една ivanova");
  retriesWanted = 100;
  EXPECT_EQ(Outcome(Apply({Named("Две")})), "Conflict");
  EXPECT_EQ(Departments(test), "1 Една ivanova");
}

TEST(ValueText, ReadsBackExactly) {
  const Variant values[] = {
      Variant(),
      Variant(true),
      Variant(std::int64_t{-9223372036854775807 - 1}),
      Variant(0.1),
      Variant(-0.0),
      Variant(Decimal(-12345, 4)),
      Variant(Date{-719162}),
      Variant(Stamp{1}),
      Variant(""),
      Variant("s3:абв\n"),
      Variant(VariantArray{Variant(1), Variant(VariantArray{}), Variant("x")})};
  for (const Variant& value : values) {
    const auto read = DecodeValue(EncodeValue(value));
    ASSERT_TRUE(read) << EncodeValue(value);
    EXPECT_EQ(*read, value) << EncodeValue(value);
  }
  for (const char* text : {"", "x", "i", "i1", "i1:i2:", "s5:abc",
                           "s-1:", "a2:i1:", "m1.99:", "a99999999999:", "i99999999999999999999:"}) {
    EXPECT_FALSE(DecodeValue(text)) << text;
  }
}

}  // namespace
}  // namespace orvane::server
