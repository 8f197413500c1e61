#include "modules/purchases/registers/structure/tf_structure.h"

#include "kit/action_table.h"
#include "kit/column_hand_over.h"
#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "modules/core/lookups.h"
#include "modules/purchases/registers/structure_deputies/open_structure_deputies.h"

namespace orvane::modules {
namespace {

constexpr std::string_view kCostCenterGroup = "Център на разход";
constexpr std::string_view kDepartmentGroup = "Дирекция";
constexpr std::string_view kSectionGroup = "Отдел";

constexpr auto kBeside = &When<&TfStructure::IsBesideCostCenter>;
constexpr LiveRow kLive[] = {
    // action                focus      state               needs     when
    {"acDelete", kAnywhere, InState::NotInsert, paDelete, kBeside},
    {"acPrint", kAnywhere, InState::NotInsert, {}, &When<&TfStructure::MayPrint>},
    {"acCancel", kAnywhere, InState::Insert, {}},
    {"acCancel", kAnywhere, InState::NotInsert, paEdit, kBeside},
    {"acStructureDeputies", kAnywhere, InState::NotInsert, {}, kBeside},
    {"acSearchByCode", kAtCombo},
    {"acSearchByName", kAtCombo},
    {"acSearchByPartName", kAtCombo},
    {"acNomenclature", kAtCombo, InState::Any, {}, &AtComboOfRegister},
    {"acExit", kAnywhere},
};

/// Cost centres and sections have a register behind their list here; departments are next door.
LookupSetup DepartmentsOnly() {
  LookupSetup setup = core::Departments();
  setup.nomenclatureClass.clear();
  return setup;
}

}  // namespace

TfStructure::TfStructure(const FormIdentity& identity)
    : TVosDBForm(identity, "TfStructure", "Организационна структура"),
      dmStructure(std::make_unique<TdmStructure>(*this)),
      cbCostCenters(*this, "cbCostCenters", dmStructure->costCenters),
      cbDepartments(*this, "cbDepartments", dmStructure->departments),
      cbSections(*this, "cbSections", dmStructure->sections),
      gStructure(*this, "gStructure", dmStructure->dsStructure),
      register_(*this, gStructure,
                {.number = 33, .variantOneLanguage = 1, .variantTwoLanguages = 1},
                {.nomenclature = "Номенклатура"}) {
  SetUpLookup(cbCostCenters, core::CostCenters());
  SetUpLookup(cbDepartments, DepartmentsOnly());
  SetUpLookup(cbSections, core::Sections());
  gStructure.columns = {
      Column("CostCenter", 20, "Код").Under(kCostCenterGroup).Edit(cbCostCenters),
      Column("CCName", 30, "Име").Under(kCostCenterGroup).ReadOnly(),
      Column("Department", 10, "Код").Under(kDepartmentGroup).Edit(cbDepartments),
      Column("DepName", 30, "Име").Under(kDepartmentGroup).ReadOnly(),
      Column("Section", 20, "Код").Under(kSectionGroup).Edit(cbSections),
      Column("SCName", 30, "Име").Under(kSectionGroup).ReadOnly(),
  };
  gStructure.emptyText = "Няма въведена структура. Стрелка надолу добавя първия център на разход.";
  HandOverColumns(
      gStructure,
      {{.from = "CostCenter", .to = "Department", .states = InState::Insert},
       {.from = "Section", .to = "Department", .states = InState::NotInsert, .nextRow = true},
       {.from = "SCName", .to = "Department", .states = InState::NotInsert, .nextRow = true}});
  dmStructure->dsStructure.OnStateChange = [this] { register_.StateChange(); };
  register_.AddTo();
  register_.AddOperation(StructureDeputiesAction(*this));
}

/// The cursor begins beside the key, where the row can be acted upon.
void TfStructure::VosBaseFormShow() {
  dmStructure->Fetch();
  gStructure.FocusField("Department");
}

std::span<const LiveRow> TfStructure::LiveRows() const {
  return kLive;
}

bool TfStructure::IsBesideCostCenter() const {
  const auto column = static_cast<std::size_t>(gStructure.CurrentColumn());
  return gStructure.columns[column].field != "CostCenter";
}

bool TfStructure::MayPrint() const {
  return IsBesideCostCenter() && !dmStructure->cdsStructure.IsEmpty();
}

}  // namespace orvane::modules
