#include "server/server_case.h"

namespace orvane::server {

std::string Departments(TestServer& server) {
  const Statement select{"select Code, Name, Chief from Department order by Code",
                         {},
                         {{"Code", ValueKind::Int16, 0},
                          {"Name", ValueKind::String, 40},
                          {"Chief", ValueKind::String, 10}}};
  const auto packets = server.Base().ReadSnapshot({&select, 1});
  if (!packets) return packets.GetFailure().text;
  std::string text;
  for (std::size_t row = 0; row < packets->front().rowCount; ++row) {
    if (row > 0) text += "; ";
    text += packets->front().At(row, "Code").ToText() + " " +
            packets->front().At(row, "Name").ToText() + " " +
            packets->front().At(row, "Chief").ToText();
  }
  return text;
}

std::string Outcome(const Failure* failure) {
  if (!failure) return "ok";
  switch (failure->kind) {
    case FailureKind::Refused:
      return "Refused";
    case FailureKind::Conflict:
      return "Conflict";
    case FailureKind::NoRight:
      return "NoRight";
    case FailureKind::SessionEnded:
      return "SessionEnded";
    case FailureKind::LinkDown:
      return "LinkDown";
    case FailureKind::OutcomeUnknown:
      return "OutcomeUnknown";
    case FailureKind::BadRequest:
      return "BadRequest";
    case FailureKind::Internal:
      break;
  }
  return "Internal: " + failure->message;
}

std::string Outcome(const ChangeOutcome& outcome) {
  if (outcome.failure) return Outcome(&*outcome.failure);
  return outcome.applied ? "ok" : "-";
}

}  // namespace orvane::server
