// What somebody without a session, or with bad intentions, can have of a server: little.

#include <arpa/inet.h>
#include <grpcpp/generic/generic_stub.h>
#include <grpcpp/grpcpp.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <future>
#include <string>
#include <thread>

#include "orvane.grpc.pb.h"
#include "wire/fake_server.h"
#include "wire/front.h"
#include "wire/metadata.h"
#include "wire/remote_server.h"
#include "wire/serving.h"

namespace orvane::wire {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

const Caller kCaller{"билет", 3, 31};

class Strangers : public testing::Test {
 protected:
  void Serve(ServingOptions options) {
    options.port = 0;
    auto started = StartServing(fake, options);
    ASSERT_TRUE(started) << started.GetFailure().message;
    running = *std::move(started);
    address = "127.0.0.1:" + std::to_string(running->Port());
    remote = Client();
    // What is not read is not taken off the server's hands either.
    grpc::ChannelArguments arguments;
    arguments.SetInt(GRPC_ARG_HTTP2_BDP_PROBE, 0);
    arguments.SetInt(GRPC_ARG_HTTP2_STREAM_LOOKAHEAD_BYTES, 65'536);
    arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
    channel = grpc::CreateCustomChannel(address, grpc::InsecureChannelCredentials(), arguments);
  }
  std::unique_ptr<RemoteServer> Client() const {
    RemoteOptions options;
    options.address = address;
    return *RemoteServer::Open(options);
  }
  void TearDown() override {
    fake.Release();
    remote.reset();
    running.reset();
  }

  /// A Fetch as a client of one's own would send it.
  grpc::Status Send(const v1::FetchRequest& message, grpc_compression_algorithm algorithm,
                    v1::FetchReply& reply) const {
    grpc::ClientContext context;
    context.set_compression_algorithm(algorithm);
    context.AddMetadata(wire::kTicketMetadata, kCaller.ticket);
    context.set_deadline(std::chrono::system_clock::now() + seconds(20));
    return v1::ApplicationServer::NewStub(channel)->Fetch(&context, message, &reply);
  }

  /// A stream that is opened and over which nothing is said; what it ended with.
  grpc::Status OpenSilently(const std::string& method, seconds patience = seconds(20)) const {
    grpc::GenericStub stub(channel);
    grpc::ClientContext context;
    context.AddMetadata(wire::kTicketMetadata, kCaller.ticket);
    context.set_deadline(std::chrono::system_clock::now() + patience);
    grpc::CompletionQueue queue;
    const auto call = stub.PrepareCall(&context, method, &queue);
    grpc::Status status;
    void* tag = nullptr;
    bool ok = false;
    call->StartCall(&status);
    queue.Next(&tag, &ok);
    call->Finish(&status, &status);
    queue.Next(&tag, &ok);
    return status;
  }

  /// A Fetch whose answer is not read before `readOn`; what it ended with.
  grpc::Status FetchAndWait(const std::shared_future<void>& readOn) const {
    v1::FetchRequest request;
    request.add_items();
    const grpc::Slice bytes(request.SerializeAsString());
    grpc::GenericStub stub(channel);
    grpc::ClientContext context;
    context.AddMetadata(wire::kTicketMetadata, kCaller.ticket);
    grpc::CompletionQueue queue;
    const auto call = stub.PrepareCall(&context, "/orvane.v1.ApplicationServer/Fetch", &queue);
    grpc::Status status;
    grpc::ByteBuffer answer;
    void* tag = nullptr;
    bool ok = false;
    call->StartCall(&status);
    queue.Next(&tag, &ok);
    call->WriteLast(grpc::ByteBuffer(&bytes, 1), {}, &status);
    queue.Next(&tag, &ok);
    readOn.wait();
    call->Read(&answer, &status);
    queue.Next(&tag, &ok);
    call->Finish(&status, &status);
    queue.Next(&tag, &ok);
    return status;
  }

  /// A connection over which nothing is said.
  int Connect() const {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<in_port_t>(running->Port()));
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connect(connection, reinterpret_cast<sockaddr*>(&to), sizeof to), 0);
    return connection;
  }

  template <class Condition>
  static bool Becomes(Condition condition) {
    for (int i = 0; i < 200 && !condition(); ++i)
      std::this_thread::sleep_for(milliseconds(50));
    return condition();
  }

  FakeServer fake;
  std::unique_ptr<RunningServer> running;
  std::unique_ptr<RemoteServer> remote;
  std::shared_ptr<grpc::Channel> channel;
  std::string address;
};

TEST_F(Strangers, WithoutASessionNoMessageIsRead) {
  ServingOptions options;
  options.remembersTicket = [](const std::string&) { return false; };
  options.knowsTicket = [](const std::string& ticket) { return ticket == kCaller.ticket; };
  Serve(options);
  const MethodCall large{"c", "m", {std::string(4'000'000, 'a')}};
  for (const char* ticket : {"", "чужд"}) {
    const auto answer = remote->Call({ticket, 3, 31}, large);
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.GetFailure().kind, FailureKind::SessionEnded);
  }
  EXPECT_EQ(fake.Calls(), 0);
  EXPECT_TRUE(remote->Call(kCaller, large));
  EXPECT_EQ(fake.callerSeen.ticket, kCaller.ticket);
  LoginRequest login;
  login.password = std::string(100'000, 'a');
  EXPECT_FALSE(remote->LogIn(login));
  EXPECT_EQ(fake.Calls(), 1);
}

TEST_F(Strangers, WhatBecomesLargeDecodedIsRefusedBefore) {
  Serve({});
  v1::FetchReply reply;
  v1::FetchRequest bomb;
  for (int i = 0; i < 100'000; ++i)
    bomb.add_items();
  EXPECT_EQ(Send(bomb, GRPC_COMPRESS_GZIP, reply).error_code(), grpc::StatusCode::UNIMPLEMENTED);
  EXPECT_TRUE(Send(bomb, GRPC_COMPRESS_NONE, reply).ok());
  EXPECT_EQ(reply.failure().kind(), v1::FAILURE_KIND_BAD_REQUEST);

  VariantArray many(300'000);
  DataPacket wide;
  for (int i = 0; i < 3'000; ++i)
    wide.AddColumn("c" + std::to_string(i), ValueKind::Code);
  EXPECT_FALSE(remote->Call(kCaller, {"c", "m", many}));
  EXPECT_FALSE(remote->Call(kCaller, {"c", "m", {wide}}));
  EXPECT_FALSE(remote->Apply(kCaller, {"c", "p", 0, {}, Delta(30'000)}));
  v1::FetchRequest unknown;
  unknown.GetReflection()->MutableUnknownFields(&unknown)->AddVarint(99, 1);
  for (int i = 0; i < 30'000; ++i)
    unknown.GetReflection()->MutableUnknownFields(&unknown)->AddVarint(99, 1);
  EXPECT_TRUE(Send(unknown, GRPC_COMPRESS_NONE, reply).ok());
  EXPECT_EQ(reply.failure().kind(), v1::FAILURE_KIND_BAD_REQUEST);
  EXPECT_EQ(fake.Calls(), 0);
  fake.packets.resize(64);
  EXPECT_TRUE(remote->Fetch(kCaller, std::vector<FetchRequest>(64)));
}

TEST_F(Strangers, SilentConnectionsKeepNobodyOutAndEnd) {
  ServingOptions options;
  options.maxConnections = 12;
  options.maxConnectionsOfOne = 10;
  options.silentGuestMs = 1'500;
  Serve(options);
  ASSERT_TRUE(remote->Fetch(kCaller, {}));  // proven: it makes room for nobody
  std::vector<int> silent;
  for (int i = 0; i < 40; ++i)
    silent.push_back(Connect());
  EXPECT_TRUE(Client()->Greet()) << "a newcomer finds room";
  EXPECT_LE(running->Connections(), 10);
  EXPECT_TRUE(Becomes([&] { return running->Connections() == 1; })) << running->Connections();
  for (const int connection : silent) {
    char bytes[256];
    ssize_t count = 1;
    while (count > 0)
      count = recv(connection, bytes, sizeof bytes, MSG_DONTWAIT);
    EXPECT_TRUE(count == 0 || errno != EAGAIN) << "still open";
    close(connection);
  }
  EXPECT_TRUE(Client()->Greet());
  EXPECT_TRUE(remote->Fetch(kCaller, {}));
}

TEST_F(Strangers, LoginsDoNotHoldUpThoseWhoWork) {
  std::promise<void> compared;
  const std::shared_future<void> done = compared.get_future().share();
  ServingOptions options;
  options.maxConcurrent = 2;
  options.logIn = [&](const std::string& from, const LoginRequest&) -> Answer<SessionInfo> {
    EXPECT_EQ(from, "127.0.0.1");
    done.wait();
    return Failure{FailureKind::Refused, "грешна"};
  };
  Serve(options);
  std::vector<std::future<void>> logins;
  for (int i = 0; i < 12; ++i) {
    logins.push_back(std::async(std::launch::async, [&] { EXPECT_FALSE(remote->LogIn({})); }));
  }
  std::this_thread::sleep_for(milliseconds(100));
  for (int i = 0; i < 20; ++i)
    EXPECT_TRUE(remote->Fetch(kCaller, {}));
  compared.set_value();
  for (auto& login : logins)
    login.get();
}

TEST_F(Strangers, StreamsOverWhichNothingComesEndAndHoldNoPlace) {
  ServingOptions options;
  options.maxConcurrent = 1;
  options.slowMessageMs = 500;
  Serve(options);
  std::vector<std::future<grpc::StatusCode>> streams;
  for (int i = 0; i < 20; ++i) {
    streams.push_back(std::async(std::launch::async, [&] {
      return OpenSilently("/orvane.v1.ApplicationServer/Call").error_code();
    }));
  }
  EXPECT_TRUE(remote->Call(kCaller, {}));
  for (auto& stream : streams)
    EXPECT_EQ(stream.get(), grpc::StatusCode::CANCELLED);
}

TEST_F(Strangers, AnswersThatNobodyReadsEndAndHoldNeitherPlaceNorMemory) {
  constexpr int kUnread = 10;
  struct Row {
    int slowMessageMs;
    std::size_t maxUnreadBytes;
    int left;  ///< of the answers
  };
  fake.packets.resize(1);
  fake.packets[0].AddColumn("Text", ValueKind::Memo);
  fake.packets[0].AppendRow(std::vector<Variant>{std::string(4'000'000, 'a')});
  // By time, and by size: three of them fit, or two beside somebody else's.
  for (const Row& row : {Row{500, 1'000'000'000, 0}, Row{60'000, 13'000'000, 2}}) {
    ServingOptions options;
    options.maxConcurrent = 4;
    options.slowMessageMs = row.slowMessageMs;
    options.maxUnreadBytes = row.maxUnreadBytes;
    Serve(options);
    const int before = fake.Calls();
    std::promise<void> read;
    const std::shared_future<void> readOn = read.get_future().share();
    std::vector<std::future<grpc::Status>> answers;
    for (int i = 0; i < kUnread; ++i)
      answers.push_back(std::async(std::launch::async, [&] { return FetchAndWait(readOn); }));
    fake.WaitForCalls(before + kUnread);
    std::this_thread::sleep_for(seconds(2));  // the last is on its way, and too late by now
    EXPECT_TRUE(remote->Fetch({"друг", 3, 31}, std::vector<FetchRequest>(1)));
    read.set_value();
    int left = 0;
    for (auto& answer : answers) {
      const auto code = answer.get().error_code();
      EXPECT_TRUE(code == grpc::StatusCode::OK || code == grpc::StatusCode::CANCELLED) << code;
      left += code == grpc::StatusCode::OK ? 1 : 0;
    }
    EXPECT_EQ(left, row.left);
    TearDown();
  }
}

TEST_F(Strangers, ALinkWhoseOtherEndHasVanishedEnds) {
  ServingOptions options;
  options.pingMs = 300;
  options.pingAnswerMs = 300;
  Serve(options);
  const int vanished = Connect();
  // The beginning of a conversation, and then not even an answer to a ping.
  const std::string hello("PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n\0\0\0\4\0\0\0\0\0", 33);
  ASSERT_EQ(send(vanished, hello.data(), hello.size(), MSG_NOSIGNAL), 33);
  ASSERT_TRUE(Becomes([&] { return running->Connections() == 1; }));
  EXPECT_TRUE(Becomes([&] { return running->Connections() == 0; }));
  EXPECT_TRUE(remote->Greet());
  close(vanished);
}

TEST_F(Strangers, AProgramOfBeforeIsToldItsVersion) {
  Serve({});
  fake.failure = Failure{FailureKind::Refused, "Обновете програмата."};
  grpc::ClientContext context;
  v1::LogInRequest login;
  login.set_protocol_version(1);
  login.set_login("ivanova");
  v1::LogInReply reply;
  ASSERT_TRUE(v1::ApplicationServer::NewStub(channel)->LogIn(&context, login, &reply).ok());
  EXPECT_EQ(reply.failure().message(), "Обновете програмата.");
  EXPECT_EQ(fake.loginSeen.protocolVersion, 1);
  EXPECT_LT(fake.loginSeen.protocolVersion, kProtocolVersion);
  EXPECT_EQ(fake.loginSeen.login, "") << "what a stranger's message holds is not read";
}

TEST_F(Strangers, ReflectionIsOffUnlessConfigured) {
  constexpr char kReflection[] = "/grpc.reflection.v1alpha.ServerReflection/ServerReflectionInfo";
  Serve({});
  EXPECT_EQ(OpenSilently(kReflection).error_code(), grpc::StatusCode::UNIMPLEMENTED);
  running.reset();
  ServingOptions options;
  options.reflection = true;
  Serve(options);
  EXPECT_EQ(OpenSilently(kReflection, seconds(1)).error_code(),
            grpc::StatusCode::DEADLINE_EXCEEDED);
}

TEST(Peers, AreToldApartByAddressAndPort) {
  const auto shown = [](const char* peer) { return wire::ParsePeer(peer).Key(); };
  EXPECT_EQ(shown("ipv4:10.0.0.5:51234"), "10.0.0.5|51234");
  EXPECT_EQ(shown("ipv6:%5B::1%5D:51234"), "::1|51234");
  EXPECT_EQ(shown("ipv6:[fe80::1%25eth0]:5"), "fe80::1|5");
}

}  // namespace
}  // namespace orvane::wire
