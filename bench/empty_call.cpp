#include "empty_call.h"

#include <grpcpp/grpcpp.h>

#include <cstdlib>
#include <string>

#include "orvane.grpc.pb.h"
#include "quick_server.h"
#include "wire/serving.h"

namespace orvane::bench {

struct EmptyCall::Link {
  QuickServer server;
  std::unique_ptr<RunningServer> running;
  std::unique_ptr<v1::ApplicationServer::Stub> stub;
};

EmptyCall::EmptyCall() : link_(std::make_unique<Link>()) {
  auto running = StartServing(link_->server, {.port = 0});
  if (!running) std::abort();
  link_->running = *std::move(running);
  link_->stub = v1::ApplicationServer::NewStub(grpc::CreateChannel(
      "127.0.0.1:" + std::to_string(link_->running->Port()), grpc::InsecureChannelCredentials()));
}

EmptyCall::~EmptyCall() = default;

void EmptyCall::operator()() const {
  grpc::ClientContext context;
  v1::LogOutReply reply;
  if (!link_->stub->LogOut(&context, {}, &reply).ok()) std::abort();
}

}  // namespace orvane::bench
