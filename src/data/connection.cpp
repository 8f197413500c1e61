#include "data/connection.h"

#include <cassert>
#include <string>
#include <utility>

#include "data/abort.h"
#include "packet/link_failure.h"

namespace orvane {
namespace {

template <class T>
T OrThrow(Answer<T> answer) {
  if (!answer) throw ServerError{answer.GetFailure()};
  return *std::move(answer);
}

}  // namespace

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

Answer<VariantArray> TVosSQLConnection::CallMethod(std::string_view method,
                                                   VariantArray arguments) {
  assert(session_->server != nullptr);
  Open();
  ++session_->calls;
  const MethodCall call{serverClassName_, std::string(method), std::move(arguments)};
  return session_->server->Call(MakeCaller(), call);
}

VariantArray TVosSQLConnection::Call(std::string_view method, VariantArray arguments) {
  return OrThrow(CallMethod(method, std::move(arguments)));
}

VariantArray TVosSQLConnection::Ask(std::string_view method, VariantArray arguments) {
  Answer<VariantArray> answer = CallMethod(method, std::move(arguments));
  const bool lost = !answer && answer.GetFailure().kind == FailureKind::OutcomeUnknown;
  return OrThrow(lost ? Answer<VariantArray>(AnswerIsLost()) : std::move(answer));
}

}  // namespace orvane
