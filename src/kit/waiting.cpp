#include "kit/waiting.h"

#include "contract/system.h"
#include "data/abort.h"
#include "data/connection.h"
#include "host/application.h"

namespace orvane {

std::string WaitingText(std::int64_t documents) {
  if (documents <= 0) return {};
  return std::to_string(documents) +
         (documents == 1 ? " документ чака Вас" : " документа чакат Вас");
}

void RefreshWaiting(VosApplication& app) {
  TVosSQLConnection connection(app.Session(), {}, system::kLevelsApprovalClass);
  try {
    const VariantArray answer = connection.Call(system::kCountWaiting, {});
    app.waitingText = WaitingText(answer.empty() ? 0 : answer.front().AsInt().value_or(0));
  } catch (const ServerError&) {
    return;
  }
}

}  // namespace orvane
