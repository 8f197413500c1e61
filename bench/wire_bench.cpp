// Calls over loopback through the door, against the generated client on the same server.

#include <grpcpp/grpcpp.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "orvane.grpc.pb.h"
#include "pairs.h"
#include "wire/remote_server.h"
#include "wire/serving.h"

namespace orvane::bench {
namespace {

/// Answers at once; a fetch gives one page of a list.
class QuickServer final : public IApplicationServer {
 public:
  QuickServer() {
    page_.AddColumn("Code", ValueKind::Code).AddColumn("Sum", ValueKind::Amount);
    page_.AddColumn("On", ValueKind::Date).AddColumn("Name", ValueKind::String, 60);
    for (int row = 0; row < 80; ++row) {
      page_.AppendRow(std::vector<Variant>{row, Decimal(row, 4), Date{row}, "Ламарина 2 мм"});
    }
  }
  Answer<Greeting> Greet() override { return Greeting{}; }
  Answer<SessionInfo> LogIn(const LoginRequest&) override { return SessionInfo{}; }
  Answer<Done> LogOut(const Caller&) override { return Done{}; }
  Answer<std::vector<DataPacket>> Fetch(const Caller&,
                                        const std::vector<FetchRequest>& requests) override {
    return std::vector<DataPacket>(requests.size(), page_);
  }
  Answer<ApplyAnswer> Apply(const Caller&, const ApplyRequest&) override { return ApplyAnswer{}; }
  Answer<VariantArray> Call(const Caller&, const MethodCall&) override { return VariantArray{}; }

 private:
  DataPacket page_;
};

void Must(bool holds) {
  if (!holds) std::abort();
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) {
  using namespace orvane;
  using namespace orvane::bench;
  QuickServer server;
  const auto running = StartServing(server, {.port = 0});
  Must(running.Ok());
  RemoteOptions options;
  options.address = "127.0.0.1:" + std::to_string((*running)->Port());
  const auto remote = RemoteServer::Open(options);
  Must(remote.Ok());
  const auto stub = v1::ApplicationServer::NewStub(
      grpc::CreateChannel(options.address, grpc::InsecureChannelCredentials()));

  const auto bareEmpty = [&] {
    return Seconds([&] {
      grpc::ClientContext context;
      v1::LogOutReply reply;
      Must(stub->LogOut(&context, {}, &reply).ok());
    });
  };
  const auto ourEmpty = [&] { return Seconds([&] { Must((*remote)->LogOut({}).Ok()); }); };
  const auto ourPage = [&] { return Seconds([&] { Must((*remote)->Fetch({}, {{}}).Ok()); }); };
  AddPair("Wire/EmptyCall", 1.5, 2001, ourEmpty, bareEmpty);
  AddPair("Wire/PageOf80AgainstEmptyCall", 2.0, 2001, ourPage, bareEmpty);
  return RunPairs(argc, argv);
}
