#include "modules/purchases/registers/structure_deputies/tf_structure_deputies.h"

#include "contract/structure_deputies.h"
#include "kit/column_hand_over.h"
#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "modules/core/lookups.h"

namespace orvane::modules {

using namespace structure_deputies;

namespace {

constexpr std::string_view kDepartmentGroup = "Дирекция";
constexpr std::string_view kSectionGroup = "Отдел";
constexpr std::string_view kCostCenterGroup = "Център на рзход";
constexpr std::string_view kDeputyGroup = "Заместник";

constexpr auto kLive = WithRow(kRegisterLive, {"acRows", kAnywhere});

}  // namespace

TfStructureDeputies::TfStructureDeputies(const FormIdentity& identity)
    : TVosDBForm(identity, "TfStructureDeputies", "Заместници"),
      dmStructureDeputies(std::make_unique<TdmStructureDeputies>(*this)),
      cbNomIn245(*this, "cbNomIn245", dmStructureDeputies->nomIn245),
      cbCostCenters(*this, "cbCostCenters", dmStructureDeputies->costCenters),
      cbDepartments(*this, "cbDepartments", dmStructureDeputies->departments),
      cbSections(*this, "cbSections", dmStructureDeputies->sections),
      cbEmployees(*this, "cbEmployees", dmStructureDeputies->employees),
      gStructDeputies(*this, "gStructDeputies", dmStructureDeputies->dsStructureDeputies),
      gStructDepDates(*this, "gStructDepDates", dmStructureDeputies->dsStructDepDates),
      register_(*this, {&gStructDeputies, &gStructDepDates}, {}, {.nomenclature = "Номенклатура"}) {
  SetUpLookup(cbNomIn245, core::NomIn());
  dmStructureDeputies->nomIn245.SetParam("Nom", core::kKindsOfApprover);
  SetUpLookup(cbCostCenters, core::CostCenters());
  SetUpLookup(cbDepartments, core::Departments());
  SetUpLookup(cbSections, core::Sections());
  SetUpLookup(cbEmployees, core::Employees());
  gStructDeputies.columns = {
      Column("lupStructUTName", 20, "Тип").Edit(cbNomIn245),
      Column("Department", 10, "Код").Under(kDepartmentGroup).Edit(cbDepartments),
      Column("DepName", 30, "Име").Under(kDepartmentGroup).ReadOnly(),
      Column("Section", 10, "Код").Under(kSectionGroup).Edit(cbSections),
      Column("SCName", 30, "Име").Under(kSectionGroup).ReadOnly(),
      Column("CostCenter", 20, "Код").Under(kCostCenterGroup).Edit(cbCostCenters),
      Column("CCName", 30, "Име").Under(kCostCenterGroup).ReadOnly(),
  };
  gStructDeputies.emptyText =
      "Няма структурни единици със заместници. Стрелка надолу добавя първата.";
  gStructDepDates.columns = {
      Column("FromDate", 10, "От дата"),
      Column("ToDate", 10, "До дата"),
      Column("Deputy", 20, "Код").Under(kDeputyGroup).Edit(cbEmployees),
      Column("EmpName", 30, "Име").Under(kDeputyGroup).ReadOnly(),
  };
  gStructDepDates.emptyText = "Няма заместници на тази единица. Стрелка надолу добавя първия.";
  // A row that was typed whole is kept when the other grid is entered: it belongs to what is there.
  gStructDeputies.cancelOnExit = false;
  gStructDepDates.cancelOnExit = false;
  HandOverColumns(gStructDeputies,
                  {{.from = "lupStructUTName", .choose = [this] { return ColumnOfType(); }}});
  register_.BeforeDelete = [this] { RefuseUnitWithPeriods(); };
  register_.AddTo();
  register_.AddOperation(OtherGridAction());
  dmStructureDeputies->periodsOfUnit.OnMasterMoved = [this] { gStructDeputiesRowChanged(); };
  dmStructureDeputies->dsStructureDeputies.OnStateChange = [this] {
    register_.StateChange();
    gStructDeputiesRowChanged();
  };
  dmStructureDeputies->dsStructDepDates.OnStateChange = [this] { register_.StateChange(); };
}

std::span<const LiveRow> TfStructureDeputies::LiveRows() const {
  return kLive;
}

/// Between the units and the periods by keyboard; what was typed whole is saved on the way.
TAction TfStructureDeputies::OtherGridAction() {
  TAction action;
  action.name = "acRows";
  action.caption = "Периоди";
  action.shortcut = KeyCode::F6;
  action.icon = "rows";
  action.OnExecute = [this] {
    const bool below = &register_.GridInUse() == &gStructDepDates;
    FocusControl(below ? &gStructDeputies : &gStructDepDates);
  };
  return action;
}

void TfStructureDeputies::ActiveColsDependOnUnitType(std::int64_t type) {
  for (const UnitType& row : kUnitTypes) {
    GridColumn& column = *gStructDeputies.FindColumn(row.code.name);
    column.readOnly = row.type != type;
    column.combo->readOnly = row.type != type;
  }
}

void TfStructureDeputies::gStructDeputiesRowChanged() {
  if (gStructDeputies.readOnly) return;
  const TField& type = dmStructureDeputies->cdsStructureDeputies[StructuralUnitType];
  ActiveColsDependOnUnitType(type.AsInt().value_or(0));
}

std::string_view TfStructureDeputies::ColumnOfType() const {
  const TField& field = dmStructureDeputies->cdsStructureDeputies[StructuralUnitType];
  const UnitType* type = FindUnitType(field.AsInt().value_or(0));
  return type == nullptr ? std::string_view() : type->code.name;
}

void TfStructureDeputies::RefuseUnitWithPeriods() {
  if (&register_.GridInUse() != &gStructDeputies) return;
  RefuseIf(!dmStructureDeputies->cdsStructDepDates.IsEmpty(),
           "В таблица \"Структура - заместници - дати\" има въведени редове, изтриването е "
           "забранено!");
}

}  // namespace orvane::modules
