#include "wire/serving.h"

#include <grpcpp/ext/proto_server_reflection_plugin.h>
#include <grpcpp/grpcpp.h>
#include <grpcpp/health_check_service_interface.h>
#include <grpcpp/resource_quota.h>
#include <malloc.h>

#include <atomic>
#include <chrono>
#include <exception>
#include <type_traits>
#include <utility>

#include "orvane.grpc.pb.h"
#include "wire/codec.h"
#include "wire/loopback.h"
#include "wire/text_file.h"

namespace orvane {
namespace {

/// Threads of the transport itself, besides those that work on requests.
constexpr int kSpareThreads = 8;
/// Clients ask in this rhythm whether a silent link still stands.
constexpr int kShortestPingMs = 10'000;

Failure Damaged() {
  return {FailureKind::BadRequest, "Заявката към сървъра е повредена."};
}

/// Nothing was carried out, so that the client may simply ask again.
Failure Busy() {
  return {FailureKind::LinkDown, "Сървърът е зает с други заявки."};
}

Failure TooLong() {
  return {FailureKind::BadRequest, "Отговорът на сървъра е твърде голям. Стеснете търсенето."};
}

/// Requests come on many threads and each takes and gives back some hundred kilobytes. Given back
/// to the system every time, these cost a fifth of a document's load in page faults.
void KeepFreedMemory() {
#ifdef __GLIBC__
  constexpr int kKept = 16 << 20;       // bytes of an arena's end that stay
  constexpr int kMappedFrom = 4 << 20;  // bytes from which an allocation is mapped by itself
  mallopt(M_TRIM_THRESHOLD, kKept);
  mallopt(M_MMAP_THRESHOLD, kMappedFrom);
#endif
}

/// Counts the requests in work.
class Place {
 public:
  Place(std::atomic<int>& taken, int places) : taken_(taken), free_(++taken <= places) {}
  ~Place() { --taken_; }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  bool IsFree() const { return free_; }

 private:
  std::atomic<int>& taken_;
  const bool free_;
};

/// Turns messages into calls of the application server and its answers into messages.
class WireService final : public v1::ApplicationServer::Service {
 public:
  WireService(IApplicationServer& server, const ServingOptions& options)
      : server_(server), options_(options) {}

  grpc::Status Greet(grpc::ServerContext*, const v1::GreetRequest*,
                     v1::GreetReply* reply) override {
    return Carry(*reply, [&] { return server_.Greet(); });
  }

  grpc::Status LogIn(grpc::ServerContext*, const v1::LogInRequest* message,
                     v1::LogInReply* reply) override {
    return Carry(*reply, [&]() -> Answer<SessionInfo> {
      LoginRequest request;
      if (!wire::Decode(Mutable(message), request)) return Damaged();
      return server_.LogIn(request);
    });
  }

  grpc::Status LogOut(grpc::ServerContext*, const v1::LogOutRequest* message,
                      v1::LogOutReply* reply) override {
    return Carry(*reply, [&] { return server_.LogOut(CallerOf(message)); });
  }

  grpc::Status Fetch(grpc::ServerContext*, const v1::FetchRequest* message,
                     v1::FetchReply* reply) override {
    return Carry(*reply, [&]() -> Answer<std::vector<DataPacket>> {
      std::vector<FetchRequest> requests;
      if (!wire::Decode(Mutable(message), requests)) return Damaged();
      return server_.Fetch(CallerOf(message), requests);
    });
  }

  grpc::Status Apply(grpc::ServerContext*, const v1::ApplyRequest* message,
                     v1::ApplyReply* reply) override {
    return Carry(*reply, [&]() -> Answer<ApplyAnswer> {
      ApplyRequest request;
      if (!wire::Decode(Mutable(message), request)) return Damaged();
      return server_.Apply(CallerOf(message), request);
    });
  }

  grpc::Status Call(grpc::ServerContext*, const v1::CallRequest* message,
                    v1::CallReply* reply) override {
    return Carry(*reply, [&]() -> Answer<VariantArray> {
      MethodCall call;
      if (!wire::Decode(Mutable(message), call)) return Damaged();
      return server_.Call(CallerOf(message), call);
    });
  }

 private:
  /// Requests belong to the call and nobody reads them after it: texts are moved out of them.
  template <class Message>
  static Message& Mutable(const Message* message) {
    return const_cast<Message&>(*message);
  }

  template <class Message>
  static Caller CallerOf(const Message* message) {
    return wire::DecodeCaller(*Mutable(message).mutable_caller());
  }

  template <class Reply, class Work>
  grpc::Status Carry(Reply& reply, Work work) {
    const Place place(inWork_, options_.maxConcurrent);
    if (!place.IsFree()) {
      wire::Encode(Busy(), *reply.mutable_failure());
      return grpc::Status::OK;
    }
    try {
      auto answer = work();
      if (answer) {
        wire::Encode(*std::move(answer), reply);
      } else {
        wire::Encode(answer.GetFailure(), *reply.mutable_failure());
      }
      CapLength(reply);
    } catch (const std::exception& unexpected) {
      if (options_.report) options_.report(unexpected.what());
      reply.Clear();
      wire::Encode(Failure{FailureKind::Internal, "Неочаквана грешка в сървъра."},
                   *reply.mutable_failure());
    }
    return grpc::Status::OK;
  }

  /// An answer to a question may be refused for its length. One to a write is sent whatever it is:
  /// what it tells has happened.
  template <class Reply>
  void CapLength(Reply& reply) const {
    if constexpr (std::is_same_v<Reply, v1::FetchReply> || std::is_same_v<Reply, v1::GreetReply>) {
      if (reply.ByteSizeLong() <= static_cast<std::size_t>(options_.maxMessageBytes)) return;
      reply.Clear();
      wire::Encode(TooLong(), *reply.mutable_failure());
    }
  }

  IApplicationServer& server_;
  const ServingOptions options_;
  std::atomic<int> inWork_ = 0;
};

class GrpcServer final : public RunningServer {
 public:
  GrpcServer(IApplicationServer& server, const ServingOptions& options)
      : service_(server, options), quota_("orvane") {
    quota_.SetMaxThreads(options.maxConcurrent + kSpareThreads);
  }
  ~GrpcServer() override { Stop(0); }

  /// False when the port cannot be had.
  bool Start(const ServingOptions& options,
             const std::shared_ptr<grpc::ServerCredentials>& credentials) {
    grpc::ServerBuilder builder;
    builder.AddListeningPort(AddressOf(options.address, options.port), credentials, &port_);
    builder.RegisterService(&service_);
    builder.SetMaxReceiveMessageSize(options.maxMessageBytes);
    builder.SetResourceQuota(quota_);
    builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);  // two servers never share a port
    builder.AddChannelArgument(GRPC_ARG_HTTP2_MIN_RECV_PING_INTERVAL_WITHOUT_DATA_MS,
                               kShortestPingMs);
    server_ = builder.BuildAndStart();
    return server_ && port_ > 0;
  }

  int Port() const override { return port_; }

  void Stop(int graceMs) override {
    if (!server_) return;
    server_->GetHealthCheckService()->SetServingStatus(false);
    server_->Shutdown(std::chrono::system_clock::now() + std::chrono::milliseconds(graceMs));
    server_->Wait();
  }

  void Wait() override { server_->Wait(); }

 private:
  WireService service_;
  grpc::ResourceQuota quota_;
  std::unique_ptr<grpc::Server> server_;
  int port_ = 0;
};

Failure Misconfigured(std::string sentence) {
  return {FailureKind::Refused, std::move(sentence)};
}

Answer<std::shared_ptr<grpc::ServerCredentials>> CredentialsFor(const ServingOptions& options) {
  if (options.certificatePath.empty() && options.keyPath.empty()) {
    if (IsLoopback(options.address)) return grpc::InsecureServerCredentials();
    return Misconfigured("За адрес " + options.address +
                         " са нужни сертификат и ключ (TLS). Посочете ги в настройките на сървъра "
                         "или използвайте адрес 127.0.0.1.");
  }
  grpc::SslServerCredentialsOptions::PemKeyCertPair pair;
  for (const auto& [path, content] : {std::pair(&options.certificatePath, &pair.cert_chain),
                                      std::pair(&options.keyPath, &pair.private_key)}) {
    const auto read = ReadTextFile(*path);
    if (!read || read->empty()) {
      return Misconfigured("Файлът \"" + *path +
                           "\" не може да бъде прочетен. За TLS са нужни и сертификат, и ключ.");
    }
    *content = *read;
  }
  grpc::SslServerCredentialsOptions ssl;
  ssl.pem_key_cert_pairs.push_back(std::move(pair));
  return grpc::SslServerCredentials(ssl);
}

}  // namespace

Answer<std::unique_ptr<RunningServer>> StartServing(IApplicationServer& server,
                                                    const ServingOptions& options) {
  const auto credentials = CredentialsFor(options);
  if (!credentials) return credentials.GetFailure();
  static const bool processIsReady = [] {
    KeepFreedMemory();
    grpc::EnableDefaultHealthCheckService(true);
    grpc::reflection::InitProtoReflectionServerBuilderPlugin();
    return true;
  }();
  static_cast<void>(processIsReady);

  auto running = std::make_unique<GrpcServer>(server, options);
  if (!running->Start(options, *credentials)) {
    return Misconfigured("Сървърът не може да слуша на " +
                         AddressOf(options.address, options.port) +
                         ". Портът е зает, адресът не е на тази машина или сертификатът и ключът "
                         "не са един за друг.");
  }
  return std::unique_ptr<RunningServer>(std::move(running));
}

}  // namespace orvane
