#pragma once

// Admissible requesters ("Допустими заявители"): which employees may request purchases for which
// cost centre.

#include "contract/field.h"

namespace orvane::admissible_notifiers {

inline constexpr auto CostCenter = Code19("CostCenter", Key | Required, "Център на разход");
inline constexpr auto CostCenterName =
    String("CostCenterName", 30, Joined, "Център на разход - Име");
inline constexpr auto Notifier = Code19("Notifier", Key | Required, "Заявител");
inline constexpr auto NotifierName = String("NotifierName", 30, Joined, "Заявител - Име");

inline constexpr std::string_view kServerClass = "TsmAdmissibleNotifiers";
/// Names are of the first language.
inline constexpr auto dspAdmissibleNotifiers =
    Writes("dspAdmissibleNotifiers", "AdmissibleNotifiers", CostCenter, CostCenterName, Notifier,
           NotifierName);

}  // namespace orvane::admissible_notifiers
