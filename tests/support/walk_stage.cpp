#include "support/walk_stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "host/walk/scripted_toolkit.h"
#include "modules/purchases/frame/screens.h"
#include "modules/purchases/frame/tf_orvane_main.h"
#include "server/demo/demo_companies.h"
#include "server/demo/demo_users.h"
#include "server/sessions/user_admin.h"

namespace orvane::support {
namespace {

constexpr int kEighthOfMarch2026 = 20520;  // days since 1970; walks set their own clock
constexpr std::int64_t kMicrosPerDay = 86'400'000'000;
constexpr std::int64_t kRequests = 120;  // enough to move among

template <class T>
T Must(Answer<T> answer) {
  if (!answer) ADD_FAILURE() << answer.GetFailure().message;
  return *std::move(answer);
}

std::unique_ptr<TVosBaseForm> StartModules(VosApplication& app) {
  RegisterOrvaneModule(app);
  return StartOrvaneModule(app);
}

/// Each kind of company is made once and copied for every walk in it.
std::unique_ptr<Database> CompanyFor(TestEngine engine, const Clock& clock,
                                     const std::string& name) {
  return FilledDatabase(engine, "walks " + name, [&](Database& database) {
    DemoOptions company = Must(DemoCompanyNamed(name));
    company.passwordCost = PasswordCost::Lowest();
    company.documents = std::min(company.documents, kRequests);
    Must(MakeDemoCompany(database, clock, company));
  });
}

}  // namespace

WalkStage::WalkStage(TestEngine engine, WalkWay way, const std::string& company)
    : clock_({kEighthOfMarch2026 * kMicrosPerDay}), database_(CompanyFor(engine, clock_, company)) {
  ServerOptions options;
  options.sessions.passwordCost = PasswordCost::Lowest();
  options.sessions.steady = [this] { return clock_.Now().micros; };  // a walk's time passes
  server_ = std::make_unique<OrvaneServer>(*database_, clock_, options);
  if (way == WalkWay::InProcess) {
    door_ = std::make_unique<FaultyDoor>(*server_);
    return;
  }
  running_ = Must(StartServing(*server_, {.address = "127.0.0.1", .port = 0}));
  remote_ = Must(RemoteServer::Open({.address = "127.0.0.1:" + std::to_string(running_->Port())}));
  door_ = std::make_unique<FaultyDoor>(*remote_);
}

WalkWorld WalkStage::World() {
  const auto grant = [this](const std::string& login, std::int32_t point, TPointAccess rights) {
    return UserAdmin(*database_, clock_, PasswordCost::Lowest()).Grant(login, point, rights.Bits());
  };
  return {door_.get(), &clock_, TimeZone{}, &DemonstrationPassword, &StartModules, grant};
}

std::string DemonstrationPassword(std::string_view login) {
  for (const DemonstrationUser& user : DemonstrationUsers()) {
    if (user.login == login) return user.password;
  }
  return {};
}

std::string ReadWalkFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) ADD_FAILURE() << "cannot read " << path;
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::string RunScriptedWalk(const std::string& name, std::string_view text, WalkStage& stage) {
  const Answer<std::vector<WalkStep>> steps = ParseWalk(text);
  if (!steps) return steps.GetFailure().message;
  ScriptedToolkit toolkit;
  WalkRunner runner(name, *steps, toolkit, stage.World());
  toolkit.Attach(&runner);
  runner.RunAll();
  toolkit.Attach(nullptr);
  return runner.FailureText().value_or("");
}

}  // namespace orvane::support
