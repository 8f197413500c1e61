#include "packet/faulty_door.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane {
namespace {

/// Answers everything well and remembers how often it was reached.
class Reached final : public IApplicationServer {
 public:
  Answer<Greeting> Greet() override { return ++times, Greeting{}; }
  Answer<SessionInfo> LogIn(const LoginRequest&) override { return ++times, SessionInfo{}; }
  Answer<Done> LogOut(const Caller&) override { return ++times, Done{}; }
  Answer<std::vector<DataPacket>> Fetch(const Caller&, const std::vector<FetchRequest>&) override {
    return ++times, std::vector<DataPacket>{};
  }
  Answer<ApplyAnswer> Apply(const Caller&, const ApplyRequest&) override {
    return ++times, ApplyAnswer{};
  }
  Answer<VariantArray> Call(const Caller&, const MethodCall&) override {
    return ++times, VariantArray{};
  }

  int times = 0;
};

class FaultyDoorTest : public testing::Test {
 protected:
  /// What a call gave: "ok", "down" or "unknown", and how often the server was reached by it.
  template <class T>
  std::string Seen(const Answer<T>& answer) {
    const std::string reached = std::to_string(std::exchange(server.times, 0));
    if (answer) return "ok " + reached;
    return (answer.GetFailure().kind == FailureKind::LinkDown ? "down " : "unknown ") + reached;
  }
  std::string Fetch() { return Seen(door.Fetch({}, {})); }
  std::string Apply() { return Seen(door.Apply({}, {})); }
  std::string Call() { return Seen(door.Call({}, {})); }

  Reached server;
  FaultyDoor door{server};
};

TEST_F(FaultyDoorTest, NothingPassesAStoppedDoor) {
  door.Stop();
  EXPECT_EQ(Seen(door.Greet()), "down 0");
  EXPECT_EQ(Seen(door.LogIn({})), "down 0");
  EXPECT_EQ(Seen(door.LogOut({})), "down 0");
  EXPECT_EQ(Fetch(), "down 0");
  EXPECT_EQ(Apply(), "down 0");
  EXPECT_EQ(Call(), "down 0");
  door.Start();
  EXPECT_EQ(Apply(), "ok 1");
  EXPECT_EQ(door.Counts(), (CallCounts{1, 1, 1, 1, 2, 1}));
}

TEST_F(FaultyDoorTest, ACutHitsTheNextWriteOnce) {
  door.CutBeforeNextCommit();
  EXPECT_EQ(Fetch(), "ok 1");
  EXPECT_EQ(Apply(), "unknown 0");
  EXPECT_EQ(Apply(), "ok 1");
  door.CutAfterNextCommit();
  EXPECT_EQ(Call(), "unknown 1");
  EXPECT_EQ(Call(), "ok 1");
}

TEST_F(FaultyDoorTest, ACutCanWaitForOneKindOfWrite) {
  door.CutAfterNextCommit(CutAt::Apply);
  EXPECT_EQ(Call(), "ok 1");
  EXPECT_EQ(Apply(), "unknown 1");
}

TEST_F(FaultyDoorTest, AnyCallCanBeBrokenByItsNumber) {
  door.BreakCall(3, LinkBreak::AfterCall);
  EXPECT_EQ(Fetch(), "ok 1");
  EXPECT_EQ(Fetch(), "ok 1");
  EXPECT_EQ(Fetch(), "down 1");
  EXPECT_EQ(Fetch(), "ok 1");
  door.BreakCall(1, LinkBreak::BeforeCall);
  EXPECT_EQ(Call(), "unknown 0");
}

}  // namespace
}  // namespace orvane
