#include "contract/admissible_notifiers.h"
#include "server/classes/server_classes.h"

namespace orvane::server {

using namespace admissible_notifiers;

namespace {

constexpr char kSelect[] =
    "select n.CostCenter, c.Name, n.Notifier, e.Name from AdmissibleNotifiers n"
    " join CostCenters c on c.CostCenter = n.CostCenter"
    " join Employees e on e.Employee = n.Notifier order by n.CostCenter, n.Notifier";

constexpr std::string_view kPair[] = {"CostCenter", "Notifier"};
constexpr UniqueRule kUnique[] = {
    {kPair,
     "Служител {Notifier} вече е допустим заявител за център на разход {CostCenter}. Изберете друг "
     "заявител или друг център."},
};
constexpr ReferenceRule kReferences[] = {
    {"CostCenter", "CostCenters", "CostCenter",
     "Няма център на разход {CostCenter}. Изберете друг център на разход."},
    {"Notifier", "Employees", "Employee", "Няма служител {Notifier}. Изберете друг заявител."},
};

}  // namespace

ServerClass TsmAdmissibleNotifiers() {
  return ServerClass(kServerClass)
      .UsedFrom({Point::AdmissibleNotifiers})
      .Provider(dspAdmissibleNotifiers, kSelect, {.unique = kUnique, .references = kReferences});
}

}  // namespace orvane::server
