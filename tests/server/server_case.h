#pragma once

#include <gtest/gtest.h>

#include "contract/department.h"
#include "contract/system.h"
#include "support/test_databases.h"
#include "support/test_server.h"

namespace orvane::server {

/// A case of the server that holds on every engine.
class ServerCase : public testing::TestWithParam<Engine> {};

inline ApplyRequest DepartmentApply(Delta delta, std::int32_t maxErrors = 0) {
  return {"TsmDepartment", "dspDepartment", maxErrors, {}, std::move(delta)};
}

inline FetchRequest DepartmentFetch() {
  FetchRequest request;
  request.serverClass = "TsmDepartment";
  request.provider = "dspDepartment";
  return request;
}

inline NamedValues Department(int code, const std::string& name, const std::string& chief) {
  return {{"Code", code}, {"Name", name}, {"Name2", Variant()}, {"Chief", chief}};
}

/// "1 Едно ivanova; 2 Две petrov": the table as it stands.
std::string Departments(TestServer& server);
/// Names of failure kinds, and "ok".
std::string Outcome(const Failure* failure);
template <class T>
std::string Outcome(const Answer<T>& answer) {
  return Outcome(answer ? nullptr : &answer.GetFailure());
}
/// "ok", "Refused: …", or "-" for a change that was not tried.
std::string Outcome(const ChangeOutcome& outcome);

}  // namespace orvane::server
