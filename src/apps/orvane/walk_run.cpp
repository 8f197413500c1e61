#include "apps/orvane/walk_run.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "apps/orvane/walk_page.h"
#include "desktop/qt_text.h"
#include "desktop/qt_toolkit.h"
#include "desktop/walk_driver.h"
#include "modules/purchases/frame/screens.h"
#include "modules/purchases/frame/tf_orvane_main.h"
#include "server/demo/demo_users.h"
#include "server/sessions/user_admin.h"

namespace orvane::apps {
namespace {

constexpr int kFifthOfMarch2026 = 20517;  // days since 1970; walks set their own clock
constexpr std::int64_t kMicrosPerDay = 86'400'000'000;

std::string PasswordOf(std::string_view login) {
  const auto users = DemonstrationUsers();
  const auto found = std::ranges::find(users, login, &DemonstrationUser::login);
  return found == users.end() ? std::string() : found->password;
}

std::unique_ptr<TVosBaseForm> StartModules(VosApplication& app) {
  RegisterOrvaneModule(app);
  return StartOrvaneModule(app);
}

}  // namespace

std::string RunWalkFile(QtToolkit& toolkit, const WalkOptions& walk, BackendOptions options) {
  std::ifstream file(walk.file, std::ios::binary);
  if (!file) return "Файлът „" + walk.file + "“ не може да се прочете.";
  std::ostringstream text;
  text << file.rdbuf();
  auto steps = ParseWalk(text.str());
  if (!steps) return walk.file + ": " + steps.GetFailure().message;

  if (!walk.pictures.empty()) std::filesystem::create_directories(walk.pictures);
  SetClock clock({kFifthOfMarch2026 * kMicrosPerDay});
  options.demo = true;
  options.company = CompanyOfWalk(*steps);
  options.steady = [&clock] { return clock.Now().micros; };  // a walk's time passes
  auto backend = OpenBackend(options, clock);
  if (!backend) return backend.GetFailure().message;
  FaultyDoor door((*backend)->Server());
  UserAdmin admin(*(*backend)->InnerDatabase(), clock, PasswordCost::Lowest());
  const auto grant = [&admin](const std::string& login, std::int32_t point, TPointAccess rights) {
    return admin.Grant(login, point, rights.Bits());
  };
  QtWalkDriver driver(toolkit, Qs(walk.pictures));
  WalkRunner runner(walk.file, *std::move(steps), driver,
                    {&door, &clock, TimeZone{}, &PasswordOf, &StartModules, grant});
  std::string problem = driver.Go(runner);
  if (!walk.pictures.empty()) {
    std::ofstream page(std::filesystem::path(walk.pictures) / "index.html", std::ios::binary);
    page << WalkPage(text.str(), driver.Pictures(), problem);
  }
  return problem;
}

}  // namespace orvane::apps
