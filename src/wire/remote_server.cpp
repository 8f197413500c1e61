#include "wire/remote_server.h"

#include <google/protobuf/arena.h>
#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <utility>

#include "orvane.grpc.pb.h"
#include "packet/link_failure.h"
#include "wire/codec.h"
#include "wire/loopback.h"
#include "wire/metadata.h"
#include "wire/text_file.h"

namespace orvane::wire {
namespace {

using SystemTime = std::chrono::system_clock;
using std::chrono::milliseconds;

constexpr milliseconds kBeforePump{100};
constexpr milliseconds kBetweenPumps{10};
constexpr int kFirstBackoffMs = 100;
constexpr int kLongestBackoffMs = 1'000;
/// A silent link with a call on it is asked after so long whether it still stands.
constexpr int kKeepaliveMs = 30'000;
constexpr int kKeepaliveTimeoutMs = 10'000;

Failure Cancelled() {
  return {FailureKind::LinkDown, "Заявката беше прекъсната."};
}

Failure RequestTooLong() {
  return {FailureKind::BadRequest, "Заявката е твърде голяма и не беше изпратена."};
}

/// What became of a call whose status is not good. Nothing certain is known of a write, whatever
/// the status says: it was sent.
Failure FailureOf(Verb verb, const grpc::Status& status) {
  switch (status.error_code()) {
    case grpc::StatusCode::UNIMPLEMENTED:
      return {FailureKind::BadRequest,
              "Сървърът не познава тази заявка: той и програмата са от "
              "различни версии."};
    case grpc::StatusCode::CANCELLED:
      return IsWrite(verb) ? OutcomeIsUnknown() : Cancelled();
    case grpc::StatusCode::UNAVAILABLE:
    case grpc::StatusCode::DEADLINE_EXCEEDED:
    case grpc::StatusCode::RESOURCE_EXHAUSTED:
      return IsWrite(verb) ? OutcomeIsUnknown() : LinkIsDown();
    default:
      break;
  }
  if (IsWrite(verb)) return OutcomeIsUnknown();
  return {FailureKind::Internal, "Неочакван отговор от сървъра: " + status.error_message()};
}

/// What travels beside a message.
struct Metadata {
  const char* name;
  std::string value;
};

Metadata TicketOf(const Caller& caller) {
  return {wire::kTicketMetadata, caller.ticket};
}

/// The queue of one call. Its destructor waits for what was started on it.
class Waiting {
 public:
  explicit Waiting(const std::function<bool()>& pump) : pump_(pump) {}
  ~Waiting() {
    queue_.Shutdown();
    void* tag = nullptr;
    bool ok = false;
    while (queue_.Next(&tag, &ok)) {
    }
  }
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;

  grpc::CompletionQueue& Queue() { return queue_; }

  /// Waits for the one event that is under way, pumping; calls `cancel` once when the user wants to
  /// stop, and goes on waiting. Answers whether the event is a good one.
  template <class Cancel>
  bool ForEvent(Cancel cancel) {
    void* tag = nullptr;
    bool ok = false;
    while (queue_.AsyncNext(&tag, &ok, pump_ ? nextPump_ : SystemTime::time_point::max()) ==
           grpc::CompletionQueue::TIMEOUT) {
      if (!stopped_ && !pump_()) {
        stopped_ = true;
        cancel();
      }
      nextPump_ = SystemTime::now() + kBetweenPumps;
    }
    return ok;
  }

  bool Stopped() const { return stopped_; }

 private:
  const std::function<bool()>& pump_;
  grpc::CompletionQueue queue_;
  SystemTime::time_point nextPump_ = SystemTime::now() + kBeforePump;
  bool stopped_ = false;
};

grpc::ChannelArguments ArgumentsFor(const RemoteOptions& options) {
  grpc::ChannelArguments arguments;
  arguments.SetMaxReceiveMessageSize(options.maxMessageBytes);
  arguments.SetInt(GRPC_ARG_INITIAL_RECONNECT_BACKOFF_MS, kFirstBackoffMs);
  arguments.SetInt(GRPC_ARG_MIN_RECONNECT_BACKOFF_MS, options.connectMs);
  arguments.SetInt(GRPC_ARG_MAX_RECONNECT_BACKOFF_MS, kLongestBackoffMs);
  arguments.SetInt(GRPC_ARG_KEEPALIVE_TIME_MS, kKeepaliveMs);
  arguments.SetInt(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, kKeepaliveTimeoutMs);
  arguments.SetInt(GRPC_ARG_ENABLE_HTTP_PROXY, 0);  // the server stands in the house
  arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
  return arguments;
}

}  // namespace

/// The channel to the server and what is said over it.
class RemoteServer::Link {
 public:
  Link(RemoteOptions options, std::shared_ptr<grpc::ChannelCredentials> credentials)
      : options_(std::move(options)), credentials_(std::move(credentials)) {}

  const RemoteOptions& Options() const { return options_; }

  /// On the way from one state to another the former answer holds: a link that rested is taken up
  /// again without ever having been lost.
  bool IsUp() {
    const std::lock_guard lock(mutex_);
    if (!channel_) return up_;
    const auto state = channel_->GetState(true);
    if (state == GRPC_CHANNEL_READY) up_ = !silent_;
    if (state == GRPC_CHANNEL_TRANSIENT_FAILURE || state == GRPC_CHANNEL_SHUTDOWN) up_ = false;
    return up_;
  }
  void SetPump(std::function<bool()> pump) { options_.pump = std::move(pump); }

  /// `Start` is the generated function of the verb that starts a call on a queue.
  template <class Value, class Reply, class Request, class Start>
  Answer<Value> Ask(Verb verb, int timeoutMs, const Metadata& metadata, Request& request,
                    Start start) {
    if (metadata.value.size() > wire::kLongestLogIn) return RequestTooLong();
    if (request.ByteSizeLong() > static_cast<std::size_t>(options_.maxRequestBytes)) {
      return RequestTooLong();
    }
    Waiting waiting(options_.pump);
    const std::shared_ptr<grpc::Channel> channel = Connected(waiting);
    if (!channel) return waiting.Stopped() ? Cancelled() : Told(LinkIsDown());

    grpc::ClientContext context;
    context.set_wait_for_ready(false);
    if (!metadata.value.empty()) context.AddMetadata(metadata.name, metadata.value);
    context.set_deadline(SystemTime::now() + milliseconds(timeoutMs));
    const auto stub = v1::ApplicationServer::NewStub(channel);
    const auto reader = (stub.get()->*start)(&context, request, &waiting.Queue());
    // A reply of many columns is many small messages: they are laid out together and dropped at
    // once.
    google::protobuf::Arena arena;
    Reply& reply = *google::protobuf::Arena::CreateMessage<Reply>(&arena);
    grpc::Status status;
    reader->Finish(&reply, &status, this);
    waiting.ForEvent([&] { context.TryCancel(); });
    silent_ = status.error_code() == grpc::StatusCode::DEADLINE_EXCEEDED;
    if (!status.ok()) return Told(FailureOf(verb, status));
    if (reply.has_failure()) return wire::DecodeFailure(*reply.mutable_failure());
    Value value;
    if (wire::Decode(reply, value)) return value;
    if (IsWrite(verb)) return OutcomeIsUnknown();
    return Failure{FailureKind::BadRequest, "Отговорът на сървъра е повреден."};
  }

 private:
  /// A link that is down is told with the address it leads to.
  Failure Told(Failure failure) const {
    if (failure == LinkIsDown())
      failure.message = "Няма връзка със сървъра " + options_.address + ".";
    return failure;
  }

  /// A channel over which a server was reached; null when none is. A request is sent only over such
  /// a one, so that before it nothing can have arrived.
  std::shared_ptr<grpc::Channel> Connected(Waiting& waiting) {
    std::shared_ptr<grpc::Channel> channel = UsableChannel();
    const SystemTime::time_point deadline = SystemTime::now() + milliseconds(options_.connectMs);
    auto state = channel->GetState(true);
    while (state != GRPC_CHANNEL_READY) {
      if (state == GRPC_CHANNEL_TRANSIENT_FAILURE || state == GRPC_CHANNEL_SHUTDOWN) return nullptr;
      const SystemTime::time_point step = std::min(deadline, SystemTime::now() + kBetweenPumps * 2);
      channel->NotifyOnStateChange(state, step, &waiting.Queue(), this);
      waiting.ForEvent([] {});
      if (waiting.Stopped() || SystemTime::now() >= deadline) return nullptr;
      state = channel->GetState(true);
    }
    return channel;
  }

  /// A channel that failed waits before it tries again; who calls wants to know now, so it is
  /// replaced by a fresh one.
  std::shared_ptr<grpc::Channel> UsableChannel() {
    const std::lock_guard lock(mutex_);
    const bool failed = channel_ && channel_->GetState(false) == GRPC_CHANNEL_TRANSIENT_FAILURE;
    if (!channel_ || failed) {
      channel_ = grpc::CreateCustomChannel(options_.address, credentials_, ArgumentsFor(options_));
    }
    return channel_;
  }

  RemoteOptions options_;
  const std::shared_ptr<grpc::ChannelCredentials> credentials_;
  std::mutex mutex_;
  std::shared_ptr<grpc::Channel> channel_;
  bool up_ = false;
  std::atomic<bool> silent_ = false;  ///< the last call was not answered in time
};

RemoteServer::RemoteServer(std::unique_ptr<Link> link) : link_(std::move(link)) {}
RemoteServer::~RemoteServer() = default;

Answer<std::unique_ptr<RemoteServer>> RemoteServer::Open(RemoteOptions options) {
  std::shared_ptr<grpc::ChannelCredentials> credentials;
  grpc::SslCredentialsOptions ssl;
  if (!options.rootCertificatePath.empty()) {
    const auto certificate = ReadTextFile(options.rootCertificatePath);
    if (!certificate || certificate->empty()) {
      return Failure{FailureKind::BadRequest, "Сертификатът \"" + options.rootCertificatePath +
                                                  "\" не може да бъде прочетен."};
    }
    ssl.pem_root_certs = *certificate;
  } else if (IsLoopback(HostOf(options.address))) {
    credentials = grpc::InsecureChannelCredentials();
  }
  if (!credentials) credentials = grpc::SslCredentials(ssl);
  auto link = std::make_unique<Link>(std::move(options), std::move(credentials));
  return std::unique_ptr<RemoteServer>(new RemoteServer(std::move(link)));
}

bool RemoteServer::IsReachable() const {
  return link_->IsUp();
}

void RemoteServer::SetPump(std::function<bool()> pump) {
  link_->SetPump(std::move(pump));
}

Answer<Greeting> RemoteServer::Greet() {
  v1::GreetRequest message;
  return link_->Ask<Greeting, v1::GreetReply>(Verb::Greet, link_->Options().greetMs,
                                              {wire::kTicketMetadata, ""}, message,
                                              &v1::ApplicationServer::Stub::AsyncGreet);
}

Answer<SessionInfo> RemoteServer::LogIn(const LoginRequest& request) {
  v1::LogInRequest message;
  wire::Encode(request, message);
  const Metadata metadata{wire::kLogInMetadata, message.SerializeAsString()};
  message.Clear();
  return link_->Ask<SessionInfo, v1::LogInReply>(Verb::LogIn, link_->Options().logInMs, metadata,
                                                 message, &v1::ApplicationServer::Stub::AsyncLogIn);
}

Answer<Done> RemoteServer::LogOut(const Caller& caller) {
  v1::LogOutRequest message;
  wire::Encode(caller, *message.mutable_caller());
  return link_->Ask<Done, v1::LogOutReply>(Verb::LogOut, link_->Options().logOutMs,
                                           TicketOf(caller), message,
                                           &v1::ApplicationServer::Stub::AsyncLogOut);
}

Answer<std::vector<DataPacket>> RemoteServer::Fetch(const Caller& caller,
                                                    const std::vector<FetchRequest>& requests) {
  v1::FetchRequest message;
  wire::Encode(caller, *message.mutable_caller());
  wire::Encode(requests, message);
  auto answer = link_->Ask<std::vector<DataPacket>, v1::FetchReply>(
      Verb::Fetch, link_->Options().fetchMs, TicketOf(caller), message,
      &v1::ApplicationServer::Stub::AsyncFetch);
  if (answer && answer->size() != requests.size()) {
    return Failure{FailureKind::BadRequest, "Отговорът на сървъра е повреден."};
  }
  return answer;
}

Answer<ApplyAnswer> RemoteServer::Apply(const Caller& caller, const ApplyRequest& request) {
  v1::ApplyRequest message;
  wire::Encode(caller, *message.mutable_caller());
  wire::Encode(request, message);
  auto answer = link_->Ask<ApplyAnswer, v1::ApplyReply>(Verb::Apply, link_->Options().applyMs,
                                                        TicketOf(caller), message,
                                                        &v1::ApplicationServer::Stub::AsyncApply);
  if (answer && answer->outcomes.size() != request.delta.size()) return OutcomeIsUnknown();
  return answer;
}

Answer<VariantArray> RemoteServer::Call(const Caller& caller, const MethodCall& call) {
  v1::CallRequest message;
  wire::Encode(caller, *message.mutable_caller());
  wire::Encode(call, message);
  return link_->Ask<VariantArray, v1::CallReply>(Verb::Call, link_->Options().callMs,
                                                 TicketOf(caller), message,
                                                 &v1::ApplicationServer::Stub::AsyncCall);
}

}  // namespace orvane::wire
