#include "contract/department.h"
#include "server/classes/server_classes.h"

namespace orvane::server {
namespace {

constexpr char kSelect[] = "select Code, Name, Name2, Chief from Department order by Code";

constexpr std::string_view kCode[] = {"Code"};
constexpr UniqueRule kUnique[] = {
    {kCode, "Вече има дирекция с код {Code}. Изберете друг код."},
};
constexpr ReferenceRule kReferences[] = {
    {"Chief", "WSysUsers", "ShortName",
     "Няма потребител „{Chief}“, който да е началник на дирекцията. Изберете друг началник."},
};

constexpr UsedByRule kUsedBy[] = {
    {"Code", "Structure", "Department",
     "Дирекция {Code} е в организационната структура на център за разход {used}. Изберете първо "
     "друга дирекция за него.",
     "CostCenter"},
    {"Code", "StructureDeputies", "Department",
     "За дирекция {Code} са посочени заместници. Изтрийте първо заместниците ѝ."},
};

}  // namespace

ServerClass TsmDepartment() {
  return ServerClass(department::kServerClass)
      .UsedFrom({Point::Departments})
      .Provider(department::dspDepartment, kSelect,
                {.unique = kUnique, .references = kReferences, .usedBy = kUsedBy});
}

}  // namespace orvane::server
