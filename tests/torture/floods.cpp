#include "torture/floods.h"

#include <grpcpp/grpcpp.h>
#include <sys/resource.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "orvane.grpc.pb.h"
#include "torture/cutting_proxy.h"

namespace orvane::torture {
namespace {

using Stub = v1::ApplicationServer::Stub;

constexpr int kBombsAtOnce = 4;
constexpr int kUnpackedBytes = 60 << 20;
constexpr int kEmptyItems = 1'000'000;
constexpr int kSilent = 1'100;
constexpr int kStrangers = 70;

/// A link of its own: the library would share one between all that ask for the same server.
std::unique_ptr<Stub> StubFor(const std::string& address) {
  grpc::ChannelArguments arguments;
  arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
  arguments.SetMaxSendMessageSize(-1);
  return v1::ApplicationServer::NewStub(
      grpc::CreateCustomChannel(address, grpc::InsecureChannelCredentials(), arguments));
}

void Guess(Stub& stub, const std::string& login) {
  grpc::ClientContext context;
  context.set_deadline(std::chrono::system_clock::now() + std::chrono::seconds(20));
  v1::LogInRequest request;
  request.set_protocol_version(1);
  request.set_login(login);
  request.set_password("wrong");
  request.set_machine_name("STRANGER");
  v1::LogInReply reply;
  stub.LogIn(&context, request, &reply);
}

void TogetherRun(int count, const std::function<void(int)>& work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i)
    threads.emplace_back([&work, i] { work(i); });
  for (std::thread& thread : threads)
    thread.join();
}

std::vector<int> SilentConnections(int port) {
  rlimit files{};
  getrlimit(RLIMIT_NOFILE, &files);
  files.rlim_cur = files.rlim_max;
  setrlimit(RLIMIT_NOFILE, &files);
  std::vector<int> sockets;
  for (int i = 0; i < kSilent; ++i) {
    const int socket = ConnectTo(port);
    if (socket >= 0) sockets.push_back(socket);
  }
  return sockets;
}

}  // namespace

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
  const std::vector<int> silent =
      SilentConnections(std::stoi(address.substr(address.rfind(':') + 1)));
  const auto end = std::chrono::steady_clock::now() + time;
  TogetherRun(kStrangers, [&](int i) {
    const auto stub = StubFor(address);
    while (std::chrono::steady_clock::now() < end) {
      Guess(*stub, "guess" + std::to_string(i % 10));
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
  for (const int socket : silent)
    close(socket);
}

}  // namespace orvane::torture
