#include "server/engine/postgres_errors.h"

#include <libpq-fe.h>

#include "packet/fold.h"

namespace orvane::server {
namespace {

struct StateRow {
  std::string_view beginning;  ///< of the five-letter SQLSTATE
  EngineErrorKind kind;
};

/// The first row that fits counts.
constexpr StateRow kStates[] = {
    {"23505", EngineErrorKind::Unique},      // unique_violation
    {"23503", EngineErrorKind::ForeignKey},  // foreign_key_violation
    {"23502", EngineErrorKind::NotNull},     // not_null_violation
    {"23514", EngineErrorKind::Check},       // check_violation
    {"P0001", EngineErrorKind::Check},       // raise_exception
    {"40001", EngineErrorKind::Retry},       // serialization_failure
    {"40P01", EngineErrorKind::Retry},       // deadlock_detected
    {"55P03", EngineErrorKind::Locked},      // lock_not_available
    {"53100", EngineErrorKind::Full},        // disk_full
    {"57014", EngineErrorKind::Limit},       // query_canceled
    {"08P01", EngineErrorKind::Other},       // protocol_violation: a fault of ours
    {"08", EngineErrorKind::LinkDown},       // connection exceptions
    {"57P", EngineErrorKind::LinkDown},      // shut down, starting up
    {"53300", EngineErrorKind::LinkDown},    // too_many_connections
};

std::string Field(const PGresult* result, int field) {
  const char* text = PQresultErrorField(result, field);
  return text == nullptr ? "" : text;
}

/// "Key (login, point)=(a, 1) already exists." of table userrights → "userrights.login,
/// userrights.point"; the words around the parentheses depend on the server's language.
std::string UniqueColumns(const PGresult* result) {
  const std::string table = Field(result, PG_DIAG_TABLE_NAME);
  const std::string detail = Field(result, PG_DIAG_MESSAGE_DETAIL);
  const std::size_t open = detail.find('(');
  const std::size_t close = detail.find(")=(");
  if (open == std::string::npos || close == std::string::npos || close < open) {
    return Field(result, PG_DIAG_CONSTRAINT_NAME);
  }
  std::string columns = table + '.';
  for (const char letter : detail.substr(open + 1, close - open - 1)) {
    columns += letter;
    if (letter == ' ') columns += table + '.';
  }
  return columns;
}

std::string ConstraintOf(EngineErrorKind kind, const PGresult* result) {
  switch (kind) {
    case EngineErrorKind::Unique:
      return Fold(UniqueColumns(result));
    case EngineErrorKind::NotNull:
      return Fold(Field(result, PG_DIAG_TABLE_NAME) + '.' + Field(result, PG_DIAG_COLUMN_NAME));
    case EngineErrorKind::Check: {
      const std::string constraint = Field(result, PG_DIAG_CONSTRAINT_NAME);
      return constraint.empty() ? Field(result, PG_DIAG_MESSAGE_PRIMARY) : Fold(constraint);
    }
    default:
      return Fold(Field(result, PG_DIAG_CONSTRAINT_NAME));
  }
}

}  // namespace

EngineErrorKind KindOfSqlState(std::string_view state) {
  for (const StateRow& row : kStates) {
    if (state.starts_with(row.beginning)) return row.kind;
  }
  return EngineErrorKind::Other;
}

EngineError PostgresErrorOf(const pg_result* result) {
  EngineError error;
  const std::string state = Field(result, PG_DIAG_SQLSTATE);
  error.kind = KindOfSqlState(state);
  error.constraint = ConstraintOf(error.kind, result);
  error.text = state + ' ' + Field(result, PG_DIAG_MESSAGE_PRIMARY);
  const std::string detail = Field(result, PG_DIAG_MESSAGE_DETAIL);
  if (!detail.empty()) error.text += ": " + detail;
  return error;
}

}  // namespace orvane::server
