// A client and a server at the two ends of a real loopback link.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <random>
#include <string>
#include <thread>

#include "packet/faulty_door.h"
#include "wire/fake_server.h"
#include "wire/remote_server.h"
#include "wire/serving.h"

namespace orvane::wire {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

const Caller kCaller{"билет", 3, 31};

template <class T>
FailureKind KindOf(const Answer<T>& answer) {
  EXPECT_FALSE(answer.Ok());
  return answer ? FailureKind::Internal : answer.GetFailure().kind;
}

class LinkTest : public testing::Test {
 protected:
  void Serve(ServingOptions options = {}, int port = 0) {
    options.port = port;
    auto started = StartServing(fake, options);
    ASSERT_TRUE(started) << started.GetFailure().message;
    running = *std::move(started);
  }

  void Connect(RemoteOptions options = {}) {
    options.address = "127.0.0.1:" + std::to_string(running->Port());
    auto opened = RemoteServer::Open(std::move(options));
    ASSERT_TRUE(opened) << opened.GetFailure().message;
    remote = *std::move(opened);
  }

  void ServeAndConnect(RemoteOptions options = {}) {
    Serve();
    Connect(std::move(options));
  }

  void TearDown() override {
    fake.Release();
    remote.reset();
    running.reset();
  }

  FakeServer fake;
  std::unique_ptr<RunningServer> running;
  std::unique_ptr<RemoteServer> remote;
};

TEST_F(LinkTest, EveryVerbCarriesItsRequestAndItsAnswer) {
  ServeAndConnect();
  fake.greeting = {kProtocolVersion, "Образец АД", {{"ivanova", "тайна", "заявител"}}};
  const auto greeting = remote->Greet();
  ASSERT_TRUE(greeting);
  EXPECT_EQ(greeting->companyName, "Образец АД");
  ASSERT_EQ(greeting->demonstrationUsers.size(), 1u);
  EXPECT_EQ(greeting->demonstrationUsers[0].password, "тайна");

  fake.session.login = "ivanova";
  fake.session.userLevel = 3;
  fake.session.points = {{31, 15}, {32, 1}};
  fake.session.languageNames = {"български", "English"};
  fake.session.zone = {-150, false};
  const auto session = remote->LogIn({kProtocolVersion, "ivanova", "парола", "МАШИНА-1", "1.2"});
  ASSERT_TRUE(session);
  EXPECT_EQ(fake.loginSeen.password, "парола");
  EXPECT_EQ(fake.loginSeen.machineName, "МАШИНА-1");
  EXPECT_EQ(session->userLevel, 3);
  ASSERT_EQ(session->points.size(), 2u);
  EXPECT_EQ(session->points[0].rights, 15);
  EXPECT_EQ(session->languageNames, fake.session.languageNames);
  EXPECT_EQ(session->zone, fake.session.zone);

  fake.packets = {SamplePacket(), DataPacket()};
  FetchRequest units{"TsmCore", "dspUnits", {{"Код", 5}, {"Празно", {}}}, "", 80, "\xFF\x01"};
  FetchRequest search{"TsmSQL", "dspSQL", {}, "SELECT 1", 0, ""};
  const auto packets = remote->Fetch(kCaller, {units, search});
  ASSERT_TRUE(packets);
  EXPECT_EQ(*packets, fake.packets);
  EXPECT_EQ(fake.callerSeen.ticket, kCaller.ticket);
  EXPECT_EQ(fake.callerSeen.pointNo, kCaller.pointNo);
  ASSERT_EQ(fake.fetchSeen.size(), 2u);
  EXPECT_EQ(fake.fetchSeen[0].params, (NamedValues{{"Код", 5}, {"Празно", {}}}));
  EXPECT_EQ(fake.fetchSeen[0].continuation, "\xFF\x01");
  EXPECT_EQ(fake.fetchSeen[1].sql, "SELECT 1");

  const Change update{ChangeKind::Update, "к1", {{"Code", 1}}, {{"Name", "ново"}}};
  const Change removal{ChangeKind::Delete, "к2", {{"Code", 2}}, {}};
  const Delta delta{update, removal};
  fake.applyAnswer.outcomes.resize(2);
  fake.applyAnswer.outcomes[0] = {true, std::nullopt, {{"Code", 7}}, {}};
  fake.applyAnswer.outcomes[1].failure = Failure{FailureKind::Conflict, "сменен"};
  fake.applyAnswer.outcomes[1].present = {{"Name", "друго"}};
  fake.applyAnswer.headMoved = {{"Sum", Decimal(1, 4)}};
  const auto applied = remote->Apply(kCaller, {"TsmCore", "dspUnits", -1, SamplePacket(), delta});
  ASSERT_TRUE(applied);
  EXPECT_EQ(fake.applySeen.maxErrors, -1);
  EXPECT_EQ(fake.applySeen.ownerData, Variant(SamplePacket()));
  EXPECT_EQ(fake.applySeen.delta, delta);
  EXPECT_EQ(applied->outcomes[0].filled, fake.applyAnswer.outcomes[0].filled);
  EXPECT_EQ(applied->outcomes[1].failure, fake.applyAnswer.outcomes[1].failure);
  EXPECT_EQ(applied->outcomes[1].present, fake.applyAnswer.outcomes[1].present);
  EXPECT_EQ(applied->headMoved, fake.applyAnswer.headMoved);

  fake.results = EveryValue();
  const auto results = remote->Call(kCaller, {"TsmCore", "GetRec", EveryValue(), "key-1"});
  ASSERT_TRUE(results);
  EXPECT_EQ(*results, fake.results);
  EXPECT_EQ(fake.callSeen.arguments, fake.results);
  EXPECT_EQ(fake.callSeen.clientKey, "key-1");

  EXPECT_TRUE(remote->LogOut({"друг билет", 0, 0}));
  EXPECT_EQ(fake.callerSeen.ticket, "друг билет");
}

TEST_F(LinkTest, EveryKindOfFailureArrivesInsideTheAnswer) {
  ServeAndConnect();
  for (int kind = 0; kind <= static_cast<int>(FailureKind::Internal); ++kind) {
    fake.failure =
        Failure{static_cast<FailureKind>(kind), "!!Err_изречение " + std::to_string(kind)};
    const auto fetched = remote->Fetch(kCaller, {});
    ASSERT_FALSE(fetched);
    EXPECT_EQ(fetched.GetFailure(), *fake.failure);
    const auto applied = remote->Apply(kCaller, {});
    ASSERT_FALSE(applied);
    EXPECT_EQ(applied.GetFailure(), *fake.failure);
  }
}

TEST_F(LinkTest, AnExceptionInsideTheServerIsInternalAndReported) {
  std::string reported;
  ServingOptions options;
  options.report = [&](const std::string& text) { reported = text; };
  Serve(options);
  Connect();
  fake.throws = true;
  EXPECT_EQ(KindOf(remote->Call(kCaller, {})), FailureKind::Internal);
  EXPECT_EQ(reported, "thrown inside the server");
}

TEST_F(LinkTest, AHostileRequestIsRefusedAndTheServerLivesOn) {
  ServeAndConnect();
  Variant deep("дъно");
  for (int i = 0; i < 40; ++i)
    deep = VariantArray{std::move(deep)};
  EXPECT_EQ(KindOf(remote->Call(kCaller, {"TsmCore", "GetRec", {deep}})), FailureKind::BadRequest);

  DataPacket damaged = SamplePacket();
  damaged.columns[3].ends[0] = 4'000'000'000;
  EXPECT_EQ(KindOf(remote->Call(kCaller, {"TsmCore", "GetRec", {damaged}})),
            FailureKind::BadRequest);
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {"a", "b", 0, "\xFF", {}})), FailureKind::BadRequest);
  EXPECT_EQ(fake.Calls(), 0);
  EXPECT_TRUE(remote->Call(kCaller, {}));
}

TEST_F(LinkTest, ADamagedAnswerIsRefusedByTheClient) {
  ServeAndConnect();
  fake.packets = {SamplePacket()};
  fake.packets[0].rowCount = 7;
  EXPECT_EQ(KindOf(remote->Fetch(kCaller, {{}})), FailureKind::BadRequest);
  fake.packets = {SamplePacket()};
  EXPECT_EQ(KindOf(remote->Fetch(kCaller, {{}, {}})), FailureKind::BadRequest);  // one for two
  fake.results = {std::string("\xFF")};
  EXPECT_EQ(KindOf(remote->Call(kCaller, {})), FailureKind::OutcomeUnknown);
}

TEST_F(LinkTest, LengthsAreLimitedOnBothSides) {
  ServingOptions serving;
  serving.maxMessageBytes = 100'000;
  Serve(serving);
  RemoteOptions options;
  options.maxRequestBytes = 50'000;
  Connect(options);
  const std::string text(60'000, 'a');
  EXPECT_EQ(KindOf(remote->Call(kCaller, {"c", "m", {text}})), FailureKind::BadRequest);
  EXPECT_EQ(fake.Calls(), 0);

  DataPacket packet;
  packet.AddColumn("Text", ValueKind::Memo);
  packet.AppendRow(std::vector<Variant>{text});
  fake.packets = {packet, packet};
  EXPECT_EQ(KindOf(remote->Fetch(kCaller, {{}, {}})), FailureKind::BadRequest);
  fake.packets = {packet};
  EXPECT_TRUE(remote->Fetch(kCaller, {{}}));
  fake.results = {text, text};  // what a write tells has happened, so it is told
  EXPECT_TRUE(remote->Call(kCaller, {}));
}

TEST_F(LinkTest, WhereNobodyListensNothingWasSent) {
  ServeAndConnect();
  running->Stop(0);
  const auto before = steady_clock::now();
  EXPECT_EQ(KindOf(remote->Greet()), FailureKind::LinkDown);
  EXPECT_EQ(KindOf(remote->Fetch(kCaller, {})), FailureKind::LinkDown);
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {})), FailureKind::LinkDown);
  EXPECT_EQ(KindOf(remote->Call(kCaller, {})), FailureKind::LinkDown);
  EXPECT_LT(steady_clock::now() - before, milliseconds(3'000));
}

TEST_F(LinkTest, WhetherTheServerCanBeReachedIsKnownWithoutACall) {
  const auto becomes = [this](bool reachable) {
    constexpr int kTries = 1'500;  // a resting link is looked at every five seconds
    for (int i = 0; i < kTries && remote->IsReachable() != reachable; ++i)
      std::this_thread::sleep_for(milliseconds(10));
    return remote->IsReachable() == reachable;
  };
  ServeAndConnect();
  EXPECT_FALSE(remote->IsReachable());
  ASSERT_TRUE(remote->Greet());
  EXPECT_TRUE(remote->IsReachable());
  const int port = running->Port();
  running.reset();
  EXPECT_TRUE(becomes(false));
  const auto greeting = remote->Greet();
  ASSERT_FALSE(greeting);
  EXPECT_EQ(greeting.GetFailure().message,
            "Няма връзка със сървъра 127.0.0.1:" + std::to_string(port) + ".");
  Serve({}, port);
  EXPECT_TRUE(becomes(true));
}

TEST_F(LinkTest, AServerStoppedInTheMiddleLeavesQuestionsDownAndWritesUnknown) {
  ServeAndConnect();
  fake.Hold();
  auto fetch = std::async(std::launch::async, [&] { return KindOf(remote->Fetch(kCaller, {})); });
  auto apply = std::async(std::launch::async, [&] { return KindOf(remote->Apply(kCaller, {})); });
  auto call = std::async(std::launch::async, [&] { return KindOf(remote->Call(kCaller, {})); });
  fake.WaitForCalls(3);
  auto stopping = std::async(std::launch::async, [&] { running->Stop(50); });
  EXPECT_EQ(fetch.get(), FailureKind::LinkDown);
  EXPECT_EQ(apply.get(), FailureKind::OutcomeUnknown);
  EXPECT_EQ(call.get(), FailureKind::OutcomeUnknown);
  fake.Release();
  stopping.get();
}

TEST_F(LinkTest, AGracefulStopLetsTheRunningCallFinish) {
  ServeAndConnect();
  fake.Hold();
  auto apply = std::async(std::launch::async, [&] { return remote->Apply(kCaller, {}).Ok(); });
  fake.WaitForCalls(1);
  auto stopping = std::async(std::launch::async, [&] { running->Stop(10'000); });
  std::this_thread::sleep_for(milliseconds(50));
  fake.Release();
  EXPECT_TRUE(apply.get());
  stopping.get();
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {})), FailureKind::LinkDown);
}

TEST_F(LinkTest, TheClientFindsAServerThatCameBackAtOnce) {
  ServeAndConnect();
  ASSERT_TRUE(remote->Greet());
  const int port = running->Port();
  for (int round = 0; round < 3; ++round) {
    running.reset();
    for (int i = 0; i < 5; ++i)
      EXPECT_EQ(KindOf(remote->Greet()), FailureKind::LinkDown);
    Serve({}, port);
    const auto before = steady_clock::now();
    EXPECT_TRUE(remote->Greet());
    EXPECT_LT(steady_clock::now() - before, milliseconds(1'000));
  }
}

TEST_F(LinkTest, ALateAnswerEndsTheCallAtItsDeadline) {
  RemoteOptions options;
  options.fetchMs = options.applyMs = options.callMs = 150;
  ServeAndConnect(options);
  fake.Hold();
  EXPECT_EQ(KindOf(remote->Fetch(kCaller, {})), FailureKind::LinkDown);
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {})), FailureKind::OutcomeUnknown);
  EXPECT_EQ(KindOf(remote->Call(kCaller, {})), FailureKind::OutcomeUnknown);
}

TEST_F(LinkTest, AWaitingCallPumpsAndEscapeCancelsIt) {
  ServeAndConnect();
  int pumped = 0;
  remote->SetPump([&] { return ++pumped, true; });
  ASSERT_TRUE(remote->Fetch(kCaller, {}));
  EXPECT_EQ(pumped, 0);  // a quick call lets nothing in

  remote->SetPump([&] { return ++pumped < 10; });
  fake.Hold();
  const auto before = steady_clock::now();
  EXPECT_EQ(KindOf(remote->Fetch(kCaller, {})), FailureKind::LinkDown);
  EXPECT_EQ(pumped, 10);
  EXPECT_GE(steady_clock::now() - before, milliseconds(150));
  pumped = 0;
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {})), FailureKind::OutcomeUnknown);

  pumped = 0;
  remote->SetPump([&] {
    if (++pumped == 3) fake.Release();
    return true;
  });
  EXPECT_TRUE(remote->Fetch(kCaller, {}));
  EXPECT_GE(pumped, 3);
}

TEST_F(LinkTest, ABusyServerTurnsAwayWhatItDidNotCarryOut) {
  ServingOptions options;
  options.maxConcurrent = 2;
  options.longestWaitMs = 100;
  Serve(options);
  Connect();
  fake.Hold();
  auto first = std::async(std::launch::async, [&] { return remote->Apply(kCaller, {}).Ok(); });
  auto second = std::async(std::launch::async, [&] { return remote->Apply(kCaller, {}).Ok(); });
  fake.WaitForCalls(2);
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {})), FailureKind::LinkDown);
  EXPECT_EQ(fake.Calls(), 2);
  fake.Release();
  EXPECT_TRUE(first.get());
  EXPECT_TRUE(second.get());
  EXPECT_TRUE(remote->Apply(kCaller, {}));
}

TEST_F(LinkTest, AboveThePlacesACallWaitsForItsTurn) {
  ServingOptions options;
  options.maxConcurrent = 1;
  options.longestWaitMs = 60'000;
  Serve(options);
  Connect();
  fake.Hold();
  std::vector<std::future<bool>> calls;
  for (int i = 0; i < 3; ++i)
    calls.push_back(std::async(std::launch::async, [&] { return remote->Call(kCaller, {}).Ok(); }));
  fake.WaitForCalls(1);
  std::this_thread::sleep_for(milliseconds(50));
  EXPECT_EQ(fake.Calls(), 1);
  fake.Release();
  for (auto& call : calls)
    EXPECT_TRUE(call.get());
}

TEST_F(LinkTest, ManyThreadsShareOneClient) {
  ServeAndConnect();
  fake.packets = {SamplePacket()};
  std::vector<std::future<int>> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.push_back(std::async(std::launch::async, [&] {
      int good = 0;
      for (int i = 0; i < 50; ++i)
        good += remote->LogOut(kCaller).Ok() ? 1 : 0;
      return good;
    }));
  }
  for (auto& thread : threads)
    EXPECT_EQ(thread.get(), 50);
}

TEST_F(LinkTest, ADoorThatLosesAnswersLooksTheSameThroughTheWire) {
  FaultyDoor door(fake);
  auto started = StartServing(door, {.port = 0});
  ASSERT_TRUE(started);
  running = *std::move(started);
  Connect();
  door.CutAfterNextCommit();
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {})), FailureKind::OutcomeUnknown);
  EXPECT_EQ(fake.Calls(), 1);
  door.Stop();
  EXPECT_EQ(KindOf(remote->Fetch(kCaller, {})), FailureKind::LinkDown);
}

TEST_F(LinkTest, TwoServersNeverShareAPort) {
  Serve();
  const auto second = StartServing(fake, {.port = running->Port()});
  ASSERT_FALSE(second);
  EXPECT_NE(second.GetFailure().message.find(std::to_string(running->Port())), std::string::npos);
}

/// Certificates of one authority for this machine, and one of a stranger.
class TlsTest : public LinkTest {
 protected:
  void SetUp() override {
    folder =
        std::filesystem::temp_directory_path() / ("tls" + std::to_string(std::random_device{}()));
    std::filesystem::create_directories(folder);
    Make("server");
    Make("stranger");
  }
  void TearDown() override {
    LinkTest::TearDown();
    std::filesystem::remove_all(folder);
  }

  std::string Path(const std::string& file) const { return (folder / file).string(); }

  void Make(const std::string& name) const {
    const std::string command =
        "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 "
        "-subj /CN=" +
        name + " -addext subjectAltName=DNS:localhost,IP:127.0.0.1 -keyout '" +
        Path(name + ".key") + "' -out '" + Path(name + ".pem") + "' 2>/dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
  }

  ServingOptions Tls() const {
    ServingOptions options;
    options.certificatePath = Path("server.pem");
    options.keyPath = Path("server.key");
    return options;
  }

  std::filesystem::path folder;
};

TEST_F(TlsTest, ATrustedCertificateConnectsAndAStrangersDoesNot) {
  Serve(Tls());
  RemoteOptions trusting;
  trusting.rootCertificatePath = Path("server.pem");
  Connect(trusting);
  EXPECT_TRUE(remote->Greet());

  RemoteOptions deceived;
  deceived.rootCertificatePath = Path("stranger.pem");
  Connect(deceived);
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {})), FailureKind::LinkDown);
  Connect();  // in the clear
  EXPECT_EQ(KindOf(remote->Apply(kCaller, {})), FailureKind::LinkDown);
  EXPECT_EQ(fake.Calls(), 1);
}

TEST_F(TlsTest, BeyondThisMachineNothingIsServedInTheClear) {
  for (const char* address : {"0.0.0.0", "::", "192.0.2.1"}) {
    const auto refused = StartServing(fake, {.address = address, .port = 0});
    ASSERT_FALSE(refused) << address;
    EXPECT_NE(refused.GetFailure().message.find("TLS"), std::string::npos);
  }
  ServingOptions everywhere = Tls();
  everywhere.address = "0.0.0.0";
  Serve(everywhere);
  RemoteOptions trusting;
  trusting.rootCertificatePath = Path("server.pem");
  Connect(trusting);
  EXPECT_TRUE(remote->Greet());
}

TEST_F(TlsTest, FilesThatAreNoCertificateAreNamed) {
  ServingOptions options = Tls();
  options.keyPath = Path("missing.key");
  auto refused = StartServing(fake, options);
  ASSERT_FALSE(refused);
  EXPECT_NE(refused.GetFailure().message.find("missing.key"), std::string::npos);
  options.keyPath.clear();
  EXPECT_FALSE(StartServing(fake, options));
  options = Tls();
  options.port = 0;
  options.keyPath = Path("stranger.key");
  EXPECT_FALSE(StartServing(fake, options));

  RemoteOptions remoteOptions;
  remoteOptions.address = "127.0.0.1:1";
  remoteOptions.rootCertificatePath = Path("missing.pem");
  EXPECT_FALSE(RemoteServer::Open(remoteOptions));
}

}  // namespace
}  // namespace orvane::wire
