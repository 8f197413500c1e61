#include "modules/purchases/registers/levels_approval/tf_levels_approval.h"

#include <algorithm>

#include "contract/parameters.h"
#include "contract/system.h"
#include "host/dialogs.h"
#include "kit/action_table.h"
#include "kit/columns.h"
#include "kit/lookup_setup.h"
#include "kit/parameters.h"
#include "modules/core/lookups.h"

namespace orvane::modules {
namespace {

constexpr std::string_view kSupplyGroup = "Вид покупка";
constexpr std::string_view kLevelMask = "{1,2,3,4,5,6,7,8,9}[*2[#]]";
constexpr std::string_view _rNoBRM = "Липсва стойност на параметър \"Вид покупка ОСМ\"";
constexpr std::string_view _rNoWares = "Липсва стойност на параметър \"Вид покупка Стоки\"";
constexpr int kError = 0;
constexpr int kWholeDigits = 8;

constexpr RegisterReport kReport{35, 1, 1};
constexpr RegisterActions kActions{
    .searchByCode = "acSearch", .nomenclature = "Номенклатура", .operations = "Общи"};

}  // namespace

const LiveRow TfLevelsApproval::kLive[] = {
    // action, focus, state, needs, when
    {"acDelete", kAnywhere, InState::NotInsert, paDelete, &When<&TfLevelsApproval::HasRows>},
    {"acPrint", kAnywhere, InState::NotInsert},
    {"acCancel", kAnywhere, InState::Editing, {}, &When<&TfLevelsApproval::HasRows>},
    {"acSearch", "cbKindSupplies"},
    {"acSearchByName", "cbKindSupplies"},
    {"acSearchByPartName", "cbKindSupplies"},
    {"acNomenclature", "cbKindSupplies", InState::Any, {}, &AtComboOfRegister},
    {"acExit", kAnywhere},
};

std::span<const LiveRow> TfLevelsApproval::LiveRows() const {
  return kLive;
}

TfLevelsApproval::TfLevelsApproval(const FormIdentity& identity)
    : TVosDBForm(identity, "TfLevelsApproval", "Нива на одобрение"),
      dmLevelsApproval(std::make_unique<TdmLevelsApproval>(*this)),
      cbKindRegister(*this, "cbKindRegister", dmLevelsApproval->kindRegisters),
      cbKindSupplies(*this, "cbKindSupplies", dmLevelsApproval->kindSupplies),
      cbApproval(*this, "cbApproval", dmLevelsApproval->approvals),
      gLevelsApproval(*this, "gLevelsApproval", dmLevelsApproval->dsLevelsApproval),
      register_(*this, gLevelsApproval, kReport, kActions) {
  SetUpLookups();
  SetUpColumns();
  dmLevelsApproval->dsLevelsApproval.OnStateChange = [this] {
    register_.StateChange();
    dmLevelsApproval->FilterKindSupplies();  // a cancelled edit may have been of the kind
  };
  register_.AddTo();
}

void TfLevelsApproval::SetUpLookups() {
  SetUpLookup(cbKindRegister, core::NomInOfLanguage());
  SetUpLookup(cbApproval, core::NomInOfLanguage());
  cbKindSupplies.lookupNameField = "Name";
  cbKindSupplies.lookupTrNameField = "Name";
  cbKindSupplies.dlgCaption = "Търсене - Служители";
  cbKindSupplies.mask = kMaskCode4;
  cbKindSupplies.nomenclatureClass = "TfKindSupplies";
  dmLevelsApproval->kindSupplies.dlgSearchFields = {SearchBy("Code", "Код"),
                                                    SearchBy("Name", "Име").ByPart()};
}

void TfLevelsApproval::SetUpColumns() {
  gLevelsApproval.columns = {
      Column("lupKindRegister", 25, "Вид регистър").Edit(cbKindRegister),
      Column("KindSupply", 10, "Код").Under(kSupplyGroup).Edit(cbKindSupplies),
      Column("KindSupplyName", 30, "Име").Under(kSupplyGroup).ReadOnly(),
      Column("Level", 6, "Ниво").Mask(kLevelMask),
      Column("FromSum", 20, "От сума"),
      Column("ToSum", 20, "До сума"),
      Column("lupApproval", 25, "Одобряващ").Edit(cbApproval),
  };
  gLevelsApproval.fixedCols = 5;
  gLevelsApproval.emptyText = "Няма въведени нива на одобрение. Стрелка надолу добавя първото.";
}

/// Without the two kinds the screen opens all the same: they matter for supplier orders only.
void TfLevelsApproval::ReadParameters() {
  const auto own = [this](int number) { return ParamNumber(*this, system::kModuleGroup, number); };
  dmLevelsApproval->kindBRM = own(parameters::cpBRM);
  if (dmLevelsApproval->kindBRM == 0) VosMessageDlg(*this, kError, caption, _rNoBRM);
  dmLevelsApproval->kindWares = own(parameters::cpWares);
  if (dmLevelsApproval->kindWares == 0) VosMessageDlg(*this, kError, caption, _rNoWares);
}

void TfLevelsApproval::VosBaseFormShow() {
  ReadParameters();
  const int decimals =
      static_cast<int>(ParamNumber(*this, system::kHostGroup, parameters::kSumMaskDecimals));
  for (std::string_view sum : {"FromSum", "ToSum"}) {
    gLevelsApproval.FindColumn(sum)->mask = UnsignedSumMask(kWholeDigits, decimals);
    int& shown = dmLevelsApproval->cdsLevelsApproval.FieldByName(sum).Format.decimals;
    shown = std::max(shown, decimals);
  }
  dmLevelsApproval->Fetch();
}

Variant TfLevelsApproval::GetCurremtEmployee() {
  const std::int64_t employee = dmLevelsApproval->GetCurremtEmployee(App().UserName());
  return employee == 0 ? Variant() : Variant(employee);
}

}  // namespace orvane::modules
