#pragma once

// What tests of the engines do all the time, with the engine's failure in the test's output.

#include <string>
#include <string_view>
#include <vector>

#include "server/engine/database.h"
#include "support/floors.h"

namespace orvane::support {

Statement Sql(std::string text, VariantArray params = {}, std::vector<ResultColumn> columns = {});
/// Runs it in a transaction of its own; the failure is the test's.
void Do(Database& database, const Statement& statement);
/// First value of the first row; Null when there is none. A failure is the test's.
Variant Ask(Database& database, std::string text, ValueKind kind, VariantArray params = {});
std::int64_t AskNumber(Database& database, std::string text, VariantArray params = {});
/// "Unique department.code"; "-" when it went well.
template <class T>
std::string Outcome(const EngineAnswer<T>& answer);
std::string NameOf(EngineErrorKind kind);

template <class T>
std::string Outcome(const EngineAnswer<T>& answer) {
  if (answer) return "-";
  const EngineError& error = answer.GetFailure();
  return NameOf(error.kind) + (error.constraint.empty() ? "" : " " + error.constraint);
}

}  // namespace orvane::support
