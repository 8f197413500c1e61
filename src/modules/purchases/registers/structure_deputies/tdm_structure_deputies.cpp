#include "modules/purchases/registers/structure_deputies/tdm_structure_deputies.h"

#include "contract/structure_deputies.h"
#include "contract/system.h"
#include "data/screen_fetch.h"
#include "kit/immediate_apply.h"
#include "kit/name_fills.h"
#include "kit/required_fields.h"
#include "kit/row_names.h"
#include "modules/core/lookups.h"
#include "modules/purchases/registers/structure_deputies/tf_structure_deputies.h"

namespace orvane::modules {

using namespace structure_deputies;

namespace {

constexpr auto lupStructUTName = String("lupStructUTName", 30, Joined, "Тип");
constexpr ImmediateApply kEveryRow{.maxErrors = -1, .form = ApplyForm::Repeated};

}  // namespace

TdmStructureDeputies::TdmStructureDeputies(TfStructureDeputies& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcStructureDeputies(Session(), Point(), kServerClass),
      cSQL(Session(), Point(), system::kSearchClass),
      cdsStructureDeputies("cdsStructureDeputies", sqlcStructureDeputies, dspStructureDeputies),
      cdsStructDepDates("cdsStructDepDates", sqlcStructureDeputies, dspStructDepDates),
      cdsStructDeptMaxId("cdsStructDeptMaxId", sqlcStructureDeputies, dspStructDeptMaxId),
      cdsCostCenters("cdsCostCenters", cSQL, {core::CostCenter, core::Name30, core::Name30Second}),
      cdsDepartments("cdsDepartments", cSQL, {core::Code, core::Name40, core::Name40Second}),
      cdsSections("cdsSections", cSQL, {core::Section, core::Name30, core::Name30Second}),
      cdsEmployees("cdsEmployees", cSQL, {core::Employee, core::Name30, core::Name30Second}),
      cdsNomIn245("cdsNomIn245", cSQL, {core::Element, core::Name30, core::Name30Second}),
      costCenters(cdsCostCenters, "CostCenter"),
      departments(cdsDepartments, "Code"),
      sections(cdsSections, "Section"),
      employees(cdsEmployees, "Employee"),
      nomIn245(cdsNomIn245, "Element"),
      dsStructureDeputies(cdsStructureDeputies),
      dsStructDepDates(cdsStructDepDates),
      periodsOfUnit(form, cdsStructureDeputies, cdsStructDepDates,
                    {.masterKey = IdNumber.name,
                     .param = IdNumber.name,
                     .detailKey = period::StructDepId.name,
                     .noMaster = "Изберете или запишете първо структурна единица, за която е "
                                 "заместникът."}),
      form_(form) {
  cdsStructureDeputies.SetIndexFieldNames("StructuralUnitType");
  cdsStructDepDates.SetIndexFieldNames("FromDate");
  cdsStructureDeputies.AddLookup(lupStructUTName, cdsNomIn245, "StructuralUnitType", "Element",
                                 "Name");
  NameRows(cdsStructureDeputies,
           {{"Център на разход", CCName.name}, {"Отдел", SCName.name}, {"Дирекция", DepName.name}});
  NameRows(cdsStructDepDates, {{"Заместване от", period::FromDate.name}});
  ApplyAtOnce(form_, cdsStructureDeputies, kEveryRow);
  ApplyAtOnce(form_, cdsStructDepDates, kEveryRow);
  FillNames(form_, cdsStructureDeputies,
            {{"CostCenter", costCenters, "CCName"},
             {"Department", departments, "DepName"},
             {"Section", sections, "SCName"}});
  FillNames(form_, cdsStructDepDates, {{"Deputy", employees, "EmpName"}});
  cdsStructureDeputies[StructuralUnitType].OnChange = [this] { StructuralUnitTypeChange(); };
  cdsStructureDeputies.BeforePost = [this] { cdsStructureDeputiesBeforePost(); };
  cdsStructDepDates.BeforePost = [this] { cdsStructDepDatesBeforePost(); };
}

void TdmStructureDeputies::Fetch() {
  const int language = NamesLanguage(form_);
  cdsStructureDeputies.SetLookupResult(lupStructUTName, language == 2 ? "Name2" : "Name");
  cdsStructureDeputies.SetParam(LNG.name, language);
  cdsStructDepDates.SetParam(LNG.name, language);
  periodsOfUnit.MakeStale();
  FetchTogether({&costCenters, &departments, &sections, &employees, &nomIn245},
                {&cdsStructureDeputies});
}

/// Codes of other types have no place in the unit any more.
void TdmStructureDeputies::StructuralUnitTypeChange() {
  const std::int64_t type = cdsStructureDeputies[StructuralUnitType].AsInt().value_or(0);
  for (const UnitType& row : kUnitTypes) {
    if (row.type != type) cdsStructureDeputies[row.code].Clear();
  }
  form_.ActiveColsDependOnUnitType(type);
}

/// Two users may get the same number; the server takes one of them, and the other posts again.
void TdmStructureDeputies::cdsStructureDeputiesBeforePost() {
  if (cdsStructureDeputies.State() != DataSetState::Insert) return;
  FetchTogether({&cdsStructDeptMaxId});
  cdsStructureDeputies[IdNumber].Set(cdsStructDeptMaxId[MaxId].AsInt().value_or(0) + 1);
}

void TdmStructureDeputies::cdsStructDepDatesBeforePost() {
  if (cdsStructDepDates[period::Deputy].IsEmpty())
    RefuseAt(form_, form_.gStructDepDates, period::Deputy.name,
             "Поле \"Заместник\" не е попълнено!", kErrorMessage);
  periodsOfUnit.Adopt();
}

}  // namespace orvane::modules
