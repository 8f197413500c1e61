#include "torture/floods.h"

#include <grpcpp/generic/generic_stub.h>
#include <grpcpp/grpcpp.h>
#include <sys/resource.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "contract/system.h"
#include "orvane.grpc.pb.h"
#include "torture/cutting_proxy.h"
#include "wire/codec.h"
#include "wire/metadata.h"
#include "wire/remote_server.h"

namespace orvane::torture {
namespace {

using Stub = v1::ApplicationServer::Stub;

constexpr int kBombsAtOnce = 4;
constexpr int kUnpackedBytes = 60 << 20;
constexpr int kEmptyItems = 1'000'000;
constexpr int kSilent = 1'100;
constexpr int kStrangers = 70;
/// One running search, eight waiting ones, and those that are turned away.
constexpr int kDear = 12;
constexpr int kUnread = 30;

/// A link of its own: the library would share one between all that ask for the same server.
std::unique_ptr<Stub> StubFor(const std::string& address) {
  grpc::ChannelArguments arguments;
  arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
  arguments.SetMaxSendMessageSize(-1);
  return v1::ApplicationServer::NewStub(
      grpc::CreateCustomChannel(address, grpc::InsecureChannelCredentials(), arguments));
}

void Guess(Stub& stub, const std::string& name) {
  grpc::ClientContext context;
  context.set_deadline(std::chrono::system_clock::now() + std::chrono::seconds(20));
  v1::LogInRequest login;
  login.set_protocol_version(kProtocolVersion);
  login.set_login(name);
  login.set_password("wrong");
  login.set_machine_name("STRANGER");
  context.AddMetadata(wire::kLogInMetadata, login.SerializeAsString());
  v1::LogInReply reply;
  stub.LogIn(&context, v1::LogInRequest(), &reply);
}

void TogetherRun(int count, const std::function<void(int)>& work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i)
    threads.emplace_back([&work, i] { work(i); });
  for (std::thread& thread : threads)
    thread.join();
}

std::string Repeated(const std::string& text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i)
    repeated += (i == 0 ? "" : ", ") + text + std::to_string(i);
  return repeated;
}

FetchRequest SearchFor(const std::string& sql) {
  return {std::string(system::kSearchClass), std::string(system::kSearchProvider), {}, sql, 0, {}};
}

/// Walks all rows of five tables and finds none.
FetchRequest DearSearch() {
  return SearchFor(
      "SELECT a.Element FROM NomIn a INNER JOIN NomIn b ON 1=1 INNER JOIN NomIn c ON 1=1 "
      "INNER JOIN NomIn d ON 1=1 INNER JOIN NomIn e ON 1=1 "
      "WHERE a.Element + b.Element + c.Element + d.Element + e.Element = -1");
}

/// Thousands of rows and some twenty megabytes.
FetchRequest LargeSearch() {
  return SearchFor("SELECT " + Repeated("a.Name n", 200) +
                   " FROM NomIn a INNER JOIN NomIn b ON 1=1 INNER JOIN NomIn c ON 1=1");
}

/// Asks and never reads the answer, until then.
void AskWithoutReading(const std::string& address, const Caller& caller,
                       std::chrono::system_clock::time_point until) {
  grpc::ChannelArguments arguments;
  arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
  arguments.SetInt(GRPC_ARG_HTTP2_BDP_PROBE, 0);  // takes no more than it must
  arguments.SetInt(GRPC_ARG_HTTP2_STREAM_LOOKAHEAD_BYTES, 65'536);
  grpc::GenericStub stub(
      grpc::CreateCustomChannel(address, grpc::InsecureChannelCredentials(), arguments));
  v1::FetchRequest request;
  wire::Encode(caller, *request.mutable_caller());
  wire::Encode(std::vector<FetchRequest>{LargeSearch()}, request);
  const grpc::Slice bytes(request.SerializeAsString());

  grpc::ClientContext context;
  context.AddMetadata(wire::kTicketMetadata, caller.ticket);
  context.set_deadline(until);
  grpc::CompletionQueue queue;
  const auto call = stub.PrepareCall(&context, "/orvane.v1.ApplicationServer/Fetch", &queue);
  grpc::Status status;
  void* tag = nullptr;
  bool ok = false;
  call->StartCall(&status);
  queue.Next(&tag, &ok);
  call->WriteLast(grpc::ByteBuffer(&bytes, 1), {}, &status);
  queue.Next(&tag, &ok);
  call->Finish(&status, &status);
  queue.Next(&tag, &ok);
}

}  // namespace

SilentCrowd::SilentCrowd(const std::string& address) {
  rlimit files{};
  getrlimit(RLIMIT_NOFILE, &files);
  files.rlim_cur = files.rlim_max;
  setrlimit(RLIMIT_NOFILE, &files);
  const int port = std::stoi(address.substr(address.rfind(':') + 1));
  for (int i = 0; i < kSilent; ++i) {
    const int socket = ConnectTo(port);
    if (socket >= 0) sockets_.push_back(socket);
  }
}

SilentCrowd::~SilentCrowd() {
  for (const int socket : sockets_)
    close(socket);
}

void Starve(const std::string& address, const Caller& caller, std::chrono::seconds time) {
  const auto until = std::chrono::system_clock::now() + time;
  TogetherRun(kDear + kUnread, [&](int i) {
    if (i < kUnread) {
      AskWithoutReading(address, caller, until);
      return;
    }
    wire::RemoteOptions options;
    options.address = address;
    const auto server = wire::RemoteServer::Open(options);
    while (server && std::chrono::system_clock::now() < until) {
      const auto answer = (*server)->Fetch(caller, {DearSearch()});
      if (!answer) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
}

void StrangerGuesses(const std::string& address, const std::string& login, int times) {
  const auto stub = StubFor(address);
  for (int i = 0; i < times; ++i)
    Guess(*stub, login);
}

void ThrowBombs(const std::string& address) {
  TogetherRun(kBombsAtOnce, [&](int) {
    const auto stub = StubFor(address);
    grpc::ClientContext context;
    context.set_deadline(std::chrono::system_clock::now() + std::chrono::seconds(60));
    context.set_compression_algorithm(GRPC_COMPRESS_GZIP);
    v1::LogInRequest request;
    request.set_login(std::string(kUnpackedBytes, ' '));
    v1::LogInReply reply;
    stub->LogIn(&context, request, &reply);
  });
  TogetherRun(kBombsAtOnce, [&](int) {
    const auto stub = StubFor(address);
    grpc::ClientContext context;
    context.set_deadline(std::chrono::system_clock::now() + std::chrono::seconds(60));
    v1::FetchRequest request;
    for (int i = 0; i < kEmptyItems; ++i)
      request.add_items();
    v1::FetchReply reply;
    stub->Fetch(&context, request, &reply);
  });
}

void Flood(const std::string& address, std::chrono::seconds time) {
  const SilentCrowd crowd(address);
  const auto end = std::chrono::steady_clock::now() + time;
  TogetherRun(kStrangers, [&](int i) {
    const auto stub = StubFor(address);
    while (std::chrono::steady_clock::now() < end) {
      Guess(*stub, "guess" + std::to_string(i % 10));
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
}

}  // namespace orvane::torture
