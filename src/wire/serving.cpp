#include "wire/serving.h"

#include <grpcpp/ext/proto_server_reflection_plugin.h>
#include <grpcpp/generic/async_generic_service.h>
#include <grpcpp/grpcpp.h>
#include <grpcpp/health_check_service_interface.h>
#include <grpcpp/impl/server_builder_option.h>
#include <grpcpp/resource_quota.h>
#include <malloc.h>

#include <chrono>
#include <utility>
#include <vector>

#include "wire/exchange.h"
#include "wire/front.h"
#include "wire/loopback.h"
#include "wire/metadata.h"
#include "wire/text_file.h"

namespace orvane::wire {
namespace {

/// Threads of the transport itself.
constexpr int kTransportThreads = 16;
/// What the transport may keep of messages that are on their way.
constexpr std::size_t kTransportBytes = 128u << 20;
/// Calls of one connection at once; a client has a handful.
constexpr int kCallsOfConnection = 64;
/// Clients ask in this rhythm whether a silent link still stands.
constexpr int kShortestPingMs = 10'000;

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

/// The library gives reflection to every server of a program that is linked with it, unasked.
class ReflectionAsConfigured final : public grpc::ServerBuilderOption {
 public:
  explicit ReflectionAsConfigured(bool on) : on_(on) {}

  void UpdateArguments(grpc::ChannelArguments*) override {}
  void UpdatePlugins(std::vector<std::unique_ptr<grpc::ServerBuilderPlugin>>* plugins) override {
    auto own = std::make_unique<grpc::reflection::ProtoServerReflectionPlugin>();
    std::erase_if(*plugins, [&](const auto& plugin) { return plugin->name() == own->name(); });
    if (on_) plugins->push_back(std::move(own));
  }

 private:
  const bool on_;
};

/// Whether certificate and key are one for the other: tried on a port of this machine, because
/// connections that are handed over would tell it only to those who connect.
bool CanSecure(const std::shared_ptr<grpc::ServerCredentials>& credentials) {
  v1::ApplicationServer::Service nothing;
  grpc::ServerBuilder builder;
  int port = 0;
  builder.AddListeningPort("127.0.0.1:0", credentials, &port);
  builder.RegisterService(&nothing);
  builder.SetOption(std::make_unique<ReflectionAsConfigured>(false));
  const auto server = builder.BuildAndStart();
  if (server) server->Shutdown();
  return server && port > 0;
}

class GrpcServer final : public RunningServer {
 public:
  GrpcServer(IApplicationServer& server, const ServingOptions& options)
      : front_({.connections = options.maxConnections,
                .ofOneAddress = options.maxConnectionsOfOne,
                .silentGuestMs = options.silentGuestMs}),
        service_(server, options,
                 [this](const std::string& peer, bool proven) {
                   const wire::Peer from = wire::ParsePeer(peer);
                   front_.Heard(from, proven);
                   return from.address;
                 }),
        quota_("orvane") {
    quota_.SetMaxThreads(kTransportThreads).Resize(kTransportBytes);
  }
  ~GrpcServer() override {
    Stop(0);
    front_.Halt();
  }

  /// False when the port cannot be had.
  bool Start(const ServingOptions& options,
             const std::shared_ptr<grpc::ServerCredentials>& credentials) {
    if (!options.certificatePath.empty() && !CanSecure(credentials)) return false;
    if (!front_.Listen(options.address, options.port)) return false;
    grpc::ServerBuilder builder;
    acceptor_ = builder.experimental().AddExternalConnectionAcceptor(
        grpc::ServerBuilder::experimental_type::ExternalConnectionType::FROM_FD, credentials);
    builder.RegisterService(&described_);
    builder.RegisterCallbackGenericService(&service_);
    builder.SetMaxReceiveMessageSize(options.maxRequestBytes);
    builder.SetResourceQuota(quota_);
    for (const auto algorithm : {GRPC_COMPRESS_DEFLATE, GRPC_COMPRESS_GZIP})
      builder.SetCompressionAlgorithmSupportStatus(algorithm, false);
    builder.SetOption(std::make_unique<ReflectionAsConfigured>(options.reflection));
    const std::pair<const char*, int> arguments[] = {
        {GRPC_ARG_ENABLE_PER_MESSAGE_DECOMPRESSION, 0},
        {GRPC_ARG_MAX_METADATA_SIZE, wire::kLongestMetadata},
        {GRPC_ARG_MAX_CONCURRENT_STREAMS, kCallsOfConnection},
        {GRPC_ARG_SERVER_HANDSHAKE_TIMEOUT_MS, options.handshakeMs},
        {GRPC_ARG_HTTP2_BDP_PROBE, 0},  // it would let a stranger send megabytes that nobody reads
        {GRPC_ARG_HTTP2_MIN_RECV_PING_INTERVAL_WITHOUT_DATA_MS, kShortestPingMs},
        {GRPC_ARG_KEEPALIVE_TIME_MS, options.pingMs},
        {GRPC_ARG_KEEPALIVE_TIMEOUT_MS, options.pingAnswerMs},
        {GRPC_ARG_KEEPALIVE_PERMIT_WITHOUT_CALLS, 1},
        {GRPC_ARG_HTTP2_MAX_PINGS_WITHOUT_DATA, 0}};
    for (const auto& [name, value] : arguments)
      builder.AddChannelArgument(name, value);
    server_ = builder.BuildAndStart();
    if (!server_) return false;
    front_.Start(
        [this](int listener, int connection) {
          grpc::experimental::ExternalConnectionAcceptor::NewConnectionParameters given;
          given.listener_fd = listener;
          given.fd = connection;
          acceptor_->HandleNewConnection(&given);
        },
        [this] { service_.Tick(); });
    return true;
  }

  int Port() const override { return front_.Port(); }
  int Connections() override { return front_.Connections(); }

  void Stop(int graceMs) override {
    if (!server_) return;
    front_.StopListening();
    server_->GetHealthCheckService()->SetServingStatus(false);
    server_->Shutdown(std::chrono::system_clock::now() + std::chrono::milliseconds(graceMs));
    server_->Wait();
  }

  void Wait() override { server_->Wait(); }

 private:
  wire::Front front_;
  wire::ExchangeService service_;
  wire::DescribedService described_;
  grpc::ResourceQuota quota_;
  std::unique_ptr<grpc::experimental::ExternalConnectionAcceptor> acceptor_;
  std::unique_ptr<grpc::Server> server_;
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
                                                    const ServingOptions& given) {
  ServingOptions options = given;
  options.address = HostOf(given.address);
  const auto credentials = CredentialsFor(options);
  if (!credentials) return credentials.GetFailure();
  static const bool processIsReady = [] {
    KeepFreedMemory();
    grpc::EnableDefaultHealthCheckService(true);
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

}  // namespace orvane::wire
