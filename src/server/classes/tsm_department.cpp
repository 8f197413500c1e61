#include "contract/department.h"
#include "server/classes/server_classes.h"

namespace orvane {
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

}  // namespace

ServerClass TsmDepartment() {
  return ServerClass(department::kServerClass)
      .UsedFrom({Point::Departments})
      .Provider(department::dspDepartment, kSelect, {.unique = kUnique, .references = kReferences});
}

}  // namespace orvane
