#include "data/connection.h"

#include <cassert>
#include <string>
#include <utility>

#include "data/abort.h"
#include "packet/link_failure.h"

namespace orvane::data {
namespace {

template <class T>
T OrThrow(Answer<T> answer) {
  if (!answer) throw ServerError{answer.GetFailure()};
  return *std::move(answer);
}

}  // namespace

bool KeepsItsBytes(FailureKind kind) {
  return kind == FailureKind::LinkDown || kind == FailureKind::OutcomeUnknown ||
         kind == FailureKind::SessionEnded;
}

Caller TVosSQLConnection::MakeCaller() const {
  return {session_->info.ticket, point_.moduleNo, point_.pointNo};
}

std::vector<DataPacket> TVosSQLConnection::Fetch(const std::vector<FetchRequest>& requests) {
  assert(session_->server != nullptr);
  Open();
  ++session_->calls;
  std::vector<DataPacket> packets = OrThrow(session_->server->Fetch(MakeCaller(), requests));
  if (packets.size() != requests.size()) {
    throw ServerError{{FailureKind::Internal, "Сървърът не отговори на всички въпроси."}};
  }
  return packets;
}

Answer<ApplyAnswer> TVosSQLConnection::Apply(const ApplyRequest& request) {
  assert(session_->server != nullptr);
  Open();
  ++session_->calls;
  return session_->server->Apply(MakeCaller(), request);
}

Answer<VariantArray> TVosSQLConnection::Send(const MethodCall& call) {
  assert(session_->server != nullptr);
  Open();
  ++session_->calls;
  return session_->server->Call(MakeCaller(), call);
}

VariantArray TVosSQLConnection::Call(std::string_view method, VariantArray arguments) {
  MethodCall call{serverClassName_, std::string(method), std::move(arguments)};
  std::optional<MethodCall>& unsettled = session_->unsettledCall;
  const bool again = unsettled && unsettled->serverClass == call.serverClass &&
                     unsettled->method == call.method && unsettled->arguments == call.arguments;
  if (!again) {
    call.clientKey = session_->NextClientKey();
    unsettled = std::move(call);
  }
  auto answer = Send(*unsettled);
  if (answer || !KeepsItsBytes(answer.GetFailure().kind)) unsettled.reset();
  return OrThrow(std::move(answer));
}

VariantArray TVosSQLConnection::Ask(std::string_view method, VariantArray arguments) {
  Answer<VariantArray> answer = Send({serverClassName_, std::string(method), std::move(arguments)});
  const bool lost = !answer && answer.GetFailure().kind == FailureKind::OutcomeUnknown;
  return OrThrow(lost ? Answer<VariantArray>(AnswerIsLost()) : std::move(answer));
}

}  // namespace orvane::data
