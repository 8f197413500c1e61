#include "modules/purchases/registers/employees_fin_supp/tdm_employees_fin_supp.h"

#include "contract/employees_fin_supp.h"
#include "contract/system.h"
#include "data/screen_fetch.h"
#include "kit/immediate_apply.h"
#include "kit/name_fills.h"
#include "kit/required_fields.h"
#include "kit/row_names.h"
#include "modules/core/lookups.h"
#include "modules/purchases/registers/employees_fin_supp/tf_employees_fin_supp.h"

namespace orvane::modules {

using namespace employees_fin_supp;

namespace {

constexpr auto lupKindSectionName = String("lupKindSectionName", 30, Joined, "Вид отдел");

}  // namespace

TdmEmployeesFinSupp::TdmEmployeesFinSupp(TfEmployeesFinSupp& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcEmployeesFinSupp(Session(), Point(), kServerClass),
      cSQL(Session(), Point(), system::kSearchClass),
      cdsEmployeesFinSupp("cdsEmployeesFinSupp", sqlcEmployeesFinSupp, dspEmployeesFinSupp),
      cdsEmployees("cdsEmployees", cSQL, {core::Employee, core::Name30, core::Name30Second}),
      cdsNomIn246("cdsNomIn246", cSQL, {core::Element, core::Name30, core::Name30Second}),
      employees(cdsEmployees, "Employee"),
      nomIn246(cdsNomIn246, "Element"),
      dsEmployeesFinSupp(cdsEmployeesFinSupp),
      form_(form) {
  cdsEmployeesFinSupp.SetIndexFieldNames("LocateKindSection;Employee");
  cdsEmployeesFinSupp.AddLookup(lupKindSectionName, cdsNomIn246, "LocateKindSection", "Element",
                                "Name");
  NameRows(cdsEmployeesFinSupp, {{"Служител", Employee.name}, {"отдел", lupKindSectionName.name}});
  ApplyAtOnce(form_, cdsEmployeesFinSupp, {.maxErrors = -1, .form = ApplyForm::Repeated});
  FillNames(form_, cdsEmployeesFinSupp, {{"Employee", employees, "EmpName"}});
  cdsEmployeesFinSupp[LocateKindSection].OnChange = [this] {
    cdsEmployeesFinSuppLocateKindSectionChange();
  };
  cdsEmployeesFinSupp.BeforePost = [this] { cdsEmployeesFinSuppBeforePost(); };
}

void TdmEmployeesFinSupp::Fetch() {
  const int language = NamesLanguage(form_);
  cdsEmployeesFinSupp.SetLookupResult(lupKindSectionName, language == 2 ? "Name2" : "Name");
  cdsEmployeesFinSupp.SetParam(LNG.name, language);
  FetchTogether({&employees, &nomIn246}, {&cdsEmployeesFinSupp});
}

void TdmEmployeesFinSupp::cdsEmployeesFinSuppLocateKindSectionChange() {
  cdsEmployeesFinSupp[KindSection].Set(cdsEmployeesFinSupp[LocateKindSection].Value());
}

void TdmEmployeesFinSupp::cdsEmployeesFinSuppBeforePost() {
  if (!cdsEmployeesFinSupp[Employee].IsEmpty()) return;
  RefuseAt(form_, form_.gEmployeesFinSupp, Employee.name, "Поле \"Служител\" не е попълнено!",
           kErrorMessage);
}

}  // namespace orvane::modules
