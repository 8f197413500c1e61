#include "modules/purchases/registers/department/tdm_department.h"

#include "contract/department.h"
#include "contract/system.h"
#include "data/lookup_completion.h"
#include "data/screen_fetch.h"
#include "kit/immediate_apply.h"
#include "kit/row_names.h"

namespace orvane::modules {

using namespace department;

namespace {

constexpr auto ChiefName = String("ChiefName", 40, Joined, "Име");
constexpr auto ChiefName2 = String("ChiefName2", 40, Joined, "Име");

}  // namespace

TdmDepartment::TdmDepartment(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqDepartment(Session(), Point(), kServerClass),
      sqlcSQL(Session(), Point(), system::kSearchClass),
      cdsDepartment("cdsDepartment", sqDepartment, dspDepartment),
      cdsSysUsers("cdsSysUsers", sqlcSQL, {system::ShortName, system::UserName, system::UserName2}),
      sysUsers(cdsSysUsers, "ShortName"),
      dsDepartment(cdsDepartment),
      form_(form) {
  cdsDepartment.SetIndexFieldNames("Code");
  cdsDepartment.AddLookup(ChiefName, cdsSysUsers, "Chief", "ShortName", "UserName");
  cdsDepartment.AddLookup(ChiefName2, cdsSysUsers, "Chief", "ShortName", "UserName2");
  cdsDepartment.BeforePost = [this] { cdsDepartmentBeforePost(); };
  NameRows(cdsDepartment, {{"Дирекция", Code.name}});
  ApplyAtOnce(form_, cdsDepartment, {.maxErrors = 0, .form = ApplyForm::Once});
}

void TdmDepartment::Fetch() {
  FetchTogether({&sysUsers}, {&cdsDepartment});
  CompleteLookups(
      {{cdsDepartment, "ChiefName", sysUsers}, {cdsDepartment, "ChiefName2", sysUsers}});
}

void TdmDepartment::cdsDepartmentBeforePost() {
  form_.RefuseIf(cdsDepartment[Chief].IsEmpty(), "Изберете стойност в поле 'Началник(В.И.Д.)'");
  form_.RefuseIf(cdsDepartment[Name].IsBlank(), "Попълнете стойност в поле 'Име'");
}

}  // namespace orvane::modules
