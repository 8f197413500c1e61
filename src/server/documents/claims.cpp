#include "server/documents/claims.h"

#include <spdlog/spdlog.h>

namespace orvane::server {
namespace {

Failure Denied(const Work& work, std::string_view what) {
  spdlog::warn("session {} of {} claims another {}", work.Who().sessionName, work.Who().login,
               what);
  return {FailureKind::NoRight,
          "Заявката не е от името на влезлия потребител. Влезте отново в системата."};
}

}  // namespace

Answer<Done> CheckClaims(const Work& work, const Claims& claims) {
  const Session& who = work.Who();
  const std::string* login = claims.login.AsString();
  if (login && *login != who.login) return Denied(work, "login");
  const std::int64_t employee = claims.employee.AsInt().value_or(0);
  if (employee != 0 && employee != who.Employee().value_or(0)) return Denied(work, "employee");
  const auto needs = claims.needsEmployee.AsBool();
  if (needs && !*needs && who.userLevel >= kFirstBoundLevel) return Denied(work, "level");
  return Done{};
}

}  // namespace orvane::server
