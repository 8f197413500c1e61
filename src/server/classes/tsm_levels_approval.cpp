#include "contract/levels_approval.h"
#include "contract/system.h"
#include "server/classes/levels_rules.h"
#include "server/classes/server_classes.h"
#include "server/providers/arguments.h"
#include "server/providers/work.h"
#include "server/queue/waiting.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

constexpr char kSelect[] =
    "select l.KindRegister, l.KindSupply, l.Level, l.FromSum, l.ToSum, l.Approval,"
    " case when :FirstLanguage = 1 then k.Name else coalesce(k.Name2, k.Name) end"
    " from LevelsApproval l join KindSupplies k on k.Code = l.KindSupply"
    " order by l.KindRegister, l.KindSupply, l.Level, l.FromSum";
constexpr char kSelectEmployees[] =
    "select Employee from Employees where Login = ?1 order by Employee limit 2";

/// The employee behind the session's login: his code, 0 when there is none, -1 when there are more.
Answer<VariantArray> GetCurrentEmployee(Work& work, const VariantArray& arguments) {
  constexpr Argument kAsked[] = {{"Login", ValueKind::String, Need::Needed}};
  const auto sound = CheckArguments(system::kGetCurrentEmployee, kAsked, arguments);
  if (!sound) return sound.GetFailure();
  const Statement select =
      Select(kSelectEmployees, {work.Who().login}, {{"Employee", ValueKind::Code, 0}});
  auto packets = work.Read({&select, 1});
  if (!packets) return packets.GetFailure();
  if (arguments[0] != Variant(work.Who().login)) {
    return Failure{FailureKind::NoRight,
                   "Текущият служител се определя само за собственото ви потребителско име."};
  }
  const DataPacket& employees = packets->front();
  if (employees.rowCount == 0) return VariantArray{Variant(0)};
  if (employees.rowCount > 1) return VariantArray{Variant(-1)};
  return VariantArray{employees.At(0, "Employee")};
}

}  // namespace

ServerClass TsmLevelsApproval() {
  return ServerClass(system::kLevelsApprovalClass)
      .UsedFrom({Point::LevelsApproval})
      .Provider(levels_approval::dspLevelsApproval, kSelect, LevelsApprovalRules(),
                {levels_approval::FirstLanguage})
      .Operation(system::kGetCurrentEmployee, Rule::Session, &GetCurrentEmployee)
      .Operation(system::kCountWaiting, Rule::Session, &CountWaiting);
}

}  // namespace orvane::server
