#include "wire/exchange.h"

#include <grpcpp/grpcpp.h>
#include <grpcpp/support/proto_buffer_reader.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <iterator>
#include <map>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "wire/codec.h"
#include "wire/message_size.h"
#include "wire/metadata.h"

namespace orvane::wire {
namespace {

using std::chrono::steady_clock;

/// Logins at once. Two, so that the next is read while the first one's password is compared.
constexpr int kStrangerThreads = 2;
constexpr std::size_t kStrangersWaiting = 256;
constexpr std::size_t kStrangersOfOneAddress = 32;
/// A login that waits longer has been given up by its client.
constexpr int kStrangerWaitMs = 15'000;
constexpr std::size_t kWaitingPerThread = 4;
constexpr std::size_t kWaitingOfOneSession = 32;
/// One of this size ends no other of its session.
constexpr std::size_t kSmallAnswer = std::size_t{64} * 1024;

enum class Kind { Greet, LogIn, LogOut, Fetch, Apply, Call };

struct VerbRow {
  std::string_view path;
  Kind kind;
};
constexpr VerbRow kVerbs[] = {
    {"/orvane.v1.ApplicationServer/Greet", Kind::Greet},
    {"/orvane.v1.ApplicationServer/LogIn", Kind::LogIn},
    {"/orvane.v1.ApplicationServer/LogOut", Kind::LogOut},
    {"/orvane.v1.ApplicationServer/Fetch", Kind::Fetch},
    {"/orvane.v1.ApplicationServer/Apply", Kind::Apply},
    {"/orvane.v1.ApplicationServer/Call", Kind::Call},
};

/// What a message of each kind may hold: more than any screen sends, and some megabytes decoded.
constexpr MessageLimits kFetchLimits{
    .items = 64, .changes = 0, .columns = 0, .values = 20'000, .cells = 50'000};
constexpr MessageLimits kApplyLimits{
    .items = 0, .changes = 20'000, .columns = 2'000, .values = 500'000, .cells = 4'000'000};
constexpr MessageLimits kCallLimits{
    .items = 0, .changes = 0, .columns = 2'000, .values = 200'000, .cells = 4'000'000};
constexpr MessageLimits kLogInLimits{
    .items = 0, .changes = 0, .columns = 0, .values = 0, .cells = 8};

/// Programs that say in the message who logs in speak this version, and the server tells them so.
constexpr std::int32_t kProtocolInMessages = 1;

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

Failure TooMuch() {
  return {FailureKind::BadRequest, "Заявката към сървъра е твърде голяма или е повредена."};
}

Failure NoSession() {
  return {FailureKind::SessionEnded, "Сесията е приключила. Влезте отново."};
}

std::string MetadataOf(const grpc::ServerContextBase& context, const char* name) {
  const auto& all = context.client_metadata();
  const auto found = all.find(name);
  return found == all.end() ? std::string()
                            : std::string(found->second.data(), found->second.size());
}

}  // namespace

/// One call. It deletes itself when the transport is done with it.
class Exchange final : public grpc::ServerGenericBidiReactor {
 public:
  Exchange(ExchangeService& service, grpc::GenericCallbackServerContext* context)
      : service_(service), context_(context) {
    const std::lock_guard lock(service_.mutex_);
    service_.open_.insert(this);
  }

  void Begin() {
    const auto verb = std::find_if(std::begin(kVerbs), std::end(kVerbs), [&](const VerbRow& row) {
      return row.path == context_->method();
    });
    if (verb == std::end(kVerbs)) {
      Finish(grpc::Status(grpc::StatusCode::UNIMPLEMENTED, "no such verb"));
      return;
    }
    kind_ = verb->kind;
    ticket_ = MetadataOf(*context_, kTicketMetadata);
    const auto& remembers = service_.options_.remembersTicket;
    const bool asked = kind_ != Kind::Greet && kind_ != Kind::LogIn;
    const bool known = asked && (!remembers || (!ticket_.empty() && remembers(ticket_)));
    const std::string address = service_.hear_(context_->peer(), known);
    if (known) {
      Welcome();
      return;
    }
    service_.strangers_.Give(address, [this, address](bool inTime) {
      if (inTime) {
        ServeStranger(address);
      } else {
        Reply(Busy());
      }
    });
  }

  void OnReadDone(bool ok) override {
    if (!ok) {
      Finish(grpc::Status(grpc::StatusCode::CANCELLED, "no message"));
      return;
    }
    since_ = steady_clock::time_point::max();
    if (request_.Length() > static_cast<std::size_t>(service_.options_.maxRequestBytes)) {
      Reply(TooMuch());
      return;
    }
    Work([this] { ServeMessage(); });
  }

  void OnCancel() override { givenUp_ = true; }

  void OnDone() override {
    Owe(0);
    {
      const std::lock_guard lock(service_.mutex_);
      service_.open_.erase(this);
    }
    delete this;
  }

  /// Whether the other side has been owing a message, or the reading of one, for too long.
  bool IsLate(steady_clock::time_point oldest) const { return since_.load() < oldest; }
  steady_clock::time_point Since() const { return since_.load(); }
  /// Of the answer that is on its way.
  std::size_t UnreadBytes() const { return unread_.load(); }
  const std::string& Ticket() const { return ticket_; }
  void Cancel() {
    Owe(0);
    context_->TryCancel();
  }

 private:
  /// So much of an answer is on its way from now on.
  void Owe(std::size_t bytes) { service_.unread_ += bytes - unread_.exchange(bytes); }

  /// Of a caller with a session the message is read.
  void Welcome() {
    if (kind_ == Kind::LogOut) {
      Work([this] {
        Carry<v1::LogOutReply>([&] { return service_.server_.LogOut({ticket_, 0, 0}); });
      });
      return;
    }
    since_ = steady_clock::now();
    StartRead(&request_);
  }

  void Work(std::function<void()> work) {
    service_.work_.Give(ticket_, [this, work = std::move(work)](bool inTime) {
      if (givenUp_) {
        Finish(grpc::Status::CANCELLED);
      } else if (inTime && !service_.LeavesUnread(ticket_)) {
        work();
      } else {
        Reply(Busy());
      }
    });
  }

  void ServeStranger(const std::string& address) {
    if (givenUp_) {
      Finish(grpc::Status::CANCELLED);
    } else if (kind_ == Kind::Greet) {
      Carry<v1::GreetReply>([&] { return service_.server_.Greet(); });
    } else if (kind_ == Kind::LogIn) {
      Carry<v1::LogInReply>([&] { return LogIn(address); });
    } else if (!ticket_.empty() && service_.options_.knowsTicket &&
               service_.options_.knowsTicket(ticket_)) {
      service_.hear_(context_->peer(), true);
      Welcome();
    } else {
      Reply(NoSession());
    }
  }

  Answer<SessionInfo> LogIn(const std::string& address) {
    const std::string bytes = MetadataOf(*context_, kLogInMetadata);
    grpc::Slice slice(bytes);
    grpc::ByteBuffer buffer(&slice, 1);
    v1::LogInRequest message;
    LoginRequest request;
    if (bytes.empty()) {
      request.protocolVersion = kProtocolInMessages;
    } else if (!Parse(buffer, kLogInLimits, message) || !Decode(message, request)) {
      return Damaged();
    }
    auto answer = service_.options_.logIn ? service_.options_.logIn(address, request)
                                          : service_.server_.LogIn(request);
    if (answer) service_.hear_(context_->peer(), true);
    return answer;
  }

  void ServeMessage() {
    IApplicationServer& server = service_.server_;
    if (kind_ == Kind::Fetch) {
      Decoded<v1::FetchRequest, v1::FetchReply, std::vector<FetchRequest>>(
          kFetchLimits,
          [&](const Caller& caller, const auto& asked) { return server.Fetch(caller, asked); });
    } else if (kind_ == Kind::Apply) {
      Decoded<v1::ApplyRequest, v1::ApplyReply, ApplyRequest>(
          kApplyLimits,
          [&](const Caller& caller, const auto& asked) { return server.Apply(caller, asked); });
    } else {
      Decoded<v1::CallRequest, v1::CallReply, MethodCall>(
          kCallLimits,
          [&](const Caller& caller, const auto& asked) { return server.Call(caller, asked); });
    }
  }

  template <class Message>
  static bool Parse(grpc::ByteBuffer& bytes, const MessageLimits& limits, Message& message) {
    {
      grpc::ProtoBufferReader reader(&bytes);
      if (!reader.status().ok() || !FitsInto(limits, *Message::descriptor(), reader)) return false;
    }
    return grpc::SerializationTraits<Message>::Deserialize(&bytes, &message).ok();
  }

  template <class Message, class ReplyMessage, class Asked, class Serve>
  void Decoded(const MessageLimits& limits, Serve serve) {
    Message message;
    Asked asked;
    if (!Parse(request_, limits, message)) {
      Reply(TooMuch());
      return;
    }
    Caller caller = DecodeCaller(*message.mutable_caller());
    caller.ticket = ticket_;  // the one that was looked at
    if (!Decode(message, asked)) {
      Reply(Damaged());
      return;
    }
    Carry<ReplyMessage>([&] { return serve(caller, asked); });
  }

  template <class ReplyMessage, class Serve>
  void Carry(Serve serve) {
    ReplyMessage reply;
    try {
      auto answer = serve();
      if (answer) {
        Encode(*std::move(answer), reply);
      } else {
        Encode(answer.GetFailure(), *reply.mutable_failure());
      }
      CapLength(reply);
    } catch (const std::exception& unexpected) {
      if (service_.options_.report) service_.options_.report(unexpected.what());
      reply.Clear();
      Encode(Failure{FailureKind::Internal, "Неочаквана грешка в сървъра."},
             *reply.mutable_failure());
    }
    Send(reply);
  }

  /// An answer to a question may be refused for its length. One to a write is sent whatever it is:
  /// what it tells has happened.
  template <class ReplyMessage>
  void CapLength(ReplyMessage& reply) const {
    if constexpr (std::is_same_v<ReplyMessage, v1::FetchReply> ||
                  std::is_same_v<ReplyMessage, v1::GreetReply>) {
      const auto longest = static_cast<std::size_t>(service_.options_.maxMessageBytes);
      if (reply.ByteSizeLong() <= longest) return;
      reply.Clear();
      Encode(TooLong(), *reply.mutable_failure());
    }
  }

  /// Every reply has its failure in the same field.
  void Reply(const Failure& failure) {
    v1::LogOutReply reply;
    Encode(failure, *reply.mutable_failure());
    Send(reply);
  }

  template <class ReplyMessage>
  void Send(const ReplyMessage& reply) {
    bool own = false;
    request_.Clear();
    const grpc::Status written =
        grpc::SerializationTraits<ReplyMessage>::Serialize(reply, &reply_, &own);
    if (!written.ok()) {
      Finish(written);
      return;
    }
    since_ = steady_clock::now();
    Owe(reply_.Length());
    service_.MakeRoomFor(*this);
    StartWriteAndFinish(&reply_, grpc::WriteOptions(), grpc::Status::OK);
  }

  ExchangeService& service_;
  grpc::GenericCallbackServerContext* const context_;
  Kind kind_ = Kind::Greet;
  std::string ticket_;
  grpc::ByteBuffer request_;
  grpc::ByteBuffer reply_;
  std::atomic<bool> givenUp_{false};  ///< nobody waits for the answer any more
  /// When the other side began to owe something; far ahead while it owes nothing.
  std::atomic<steady_clock::time_point> since_{steady_clock::time_point::max()};
  std::atomic<std::size_t> unread_{0};
};

ExchangeService::ExchangeService(IApplicationServer& server, const ServingOptions& options,
                                 Hear hear)
    : server_(server),
      options_(options),
      hear_(std::move(hear)),
      work_({.threads = options.maxConcurrent,
             .waiting = static_cast<std::size_t>(options.maxConcurrent) * kWaitingPerThread,
             .waitingOfOne = kWaitingOfOneSession,
             .longestWaitMs = options.longestWaitMs}),
      strangers_({.threads = kStrangerThreads,
                  .waiting = kStrangersWaiting,
                  .waitingOfOne = kStrangersOfOneAddress,
                  .longestWaitMs = kStrangerWaitMs}) {}

grpc::ServerGenericBidiReactor* ExchangeService::CreateReactor(
    grpc::GenericCallbackServerContext* context) {
  auto* exchange = new Exchange(*this, context);
  exchange->Begin();
  return exchange;
}

bool ExchangeService::LeavesUnread(const std::string& ticket) {
  if (unread_ <= options_.maxUnreadOfSession) return false;
  const std::lock_guard lock(mutex_);
  std::size_t bytes = 0;
  for (const Exchange* exchange : open_) {
    if (exchange->UnreadBytes() > 0 && exchange->Ticket() == ticket)
      bytes += exchange->UnreadBytes();
  }
  return bytes > options_.maxUnreadOfSession;
}

void ExchangeService::MakeRoomFor(const Exchange& own) {
  if (unread_ <= std::min(options_.maxUnreadOfSession, options_.maxUnreadBytes)) return;
  const std::lock_guard lock(mutex_);
  std::vector<Exchange*> writing;
  std::map<std::string_view, std::size_t> ofSession;
  for (Exchange* exchange : open_) {
    if (exchange->UnreadBytes() == 0) continue;
    if (exchange != &own) writing.push_back(exchange);
    ofSession[exchange->Ticket()] += exchange->UnreadBytes();
  }
  std::ranges::sort(writing, {}, &Exchange::Since);
  while (!ofSession.empty()) {
    auto most = ofSession.find(own.Ticket());
    const bool itsOwn = own.UnreadBytes() > kSmallAnswer && most != ofSession.end() &&
                        most->second > options_.maxUnreadOfSession;
    if (!itsOwn && unread_ <= options_.maxUnreadBytes) return;
    if (!itsOwn)
      most = std::ranges::max_element(ofSession, {}, [](auto& row) { return row.second; });
    const auto oldest = std::ranges::find(writing, most->first, &Exchange::Ticket);
    if (oldest == writing.end()) {  // none is left but the new one
      ofSession.erase(most);
      continue;
    }
    most->second -= std::min(most->second, (*oldest)->UnreadBytes());
    (*oldest)->Cancel();
    writing.erase(oldest);
  }
}

void ExchangeService::Tick() {
  work_.TurnAwayLate();
  strangers_.TurnAwayLate();
  const auto oldest = steady_clock::now() - std::chrono::milliseconds(options_.slowMessageMs);
  const std::lock_guard lock(mutex_);
  for (Exchange* exchange : open_) {
    if (exchange->IsLate(oldest)) exchange->Cancel();
  }
}

}  // namespace orvane::wire
