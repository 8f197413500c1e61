#include "contract/structure.h"
#include "server/classes/server_classes.h"

namespace orvane::server {

using namespace structure;

namespace {

constexpr char kSelect[] =
    "select s.CostCenter,"
    " case when :LNG = 2 then coalesce(c.Name2, c.Name) else c.Name end,"
    " s.Department,"
    " case when :LNG = 2 then coalesce(d.Name2, d.Name) else d.Name end,"
    " s.Section,"
    " case when :LNG = 2 then coalesce(x.Name2, x.Name) else x.Name end"
    " from Structure s join CostCenters c on c.CostCenter = s.CostCenter"
    " left join Department d on d.Code = s.Department"
    " left join Sections x on x.Section = s.Section order by s.CostCenter";

constexpr std::string_view kCostCenter[] = {"CostCenter"};
constexpr UniqueRule kUnique[] = {
    {kCostCenter,
     "Център на разход {CostCenter} вече е в организационната структура. Променете неговия ред."},
};
constexpr ReferenceRule kReferences[] = {
    {"CostCenter", "CostCenters", "CostCenter",
     "Няма център на разход {CostCenter}. Изберете друг център на разход."},
    {"Department", "Department", "Code", "Няма дирекция {Department}. Изберете друга дирекция."},
    {"Section", "Sections", "Section", "Няма отдел {Section}. Изберете друг отдел."},
};

}  // namespace

ServerClass TsmStructure() {
  return ServerClass(kServerClass)
      .UsedFrom({Point::Structure})
      .Provider(dspStructure, kSelect, {.unique = kUnique, .references = kReferences}, {LNG});
}

}  // namespace orvane::server
