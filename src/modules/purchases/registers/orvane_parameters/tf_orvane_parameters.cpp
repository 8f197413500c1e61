#include "modules/purchases/registers/orvane_parameters/tf_orvane_parameters.h"

#include "kit/action_table.h"
#include "kit/columns.h"
#include "kit/register_screen.h"
#include "modules/core/lookups.h"

namespace orvane::modules {

using namespace parameters;

namespace {

constexpr RegisterActions kLookups{.nomenclature = "Преход към номенклатура"};

/// An item of the inspector: a lookup with its combo and search caption, or a mask to type by.
struct ParameterItem {
  Module number;
  std::string_view combo = {};
  std::string_view dlgCaption = {};
  std::string_view mask = {};
};

constexpr std::string_view kCountMask = "*9[#]";

constexpr ParameterItem kItems[] = {
    {cpCar, "cbCar", "Търсене - Вид покупка \"Капиталов разход\"", kMaskCode9},
    {cpBRM, "cbBRM", "Търсене - Вид покупка \"ОСМ\"", kMaskCode9},
    {cpWares, "cbWares", "Търсене - Вид покупка \"Стоки\"", kMaskCode9},
    {cpSuppOtherMS, "cbSuppOtherMS", "Търсене - Вид покупка „Други материали“", kMaskCode9},
    {cpMixedKindSupp, "cbMixedKindSupp", "Търсене - Вид покупка \"Стоки\"", kMaskCode9},
    {cpSuppServ, "cbSuppServ", "Търсене - Вид покупка \"Услуги с цени\"", kMaskCode9},
    {cpKindSupplyList, "cbKindSupplyList", "Търсене - Вид списък за доставка", kMaskCode4},
    {cpKindSupplyChoice, "cbNomIn90", {}, kMaskCode4},
    {cpKindDocInvBRM, "cbKindDocInvBRM", "Търсене - Складов документ - приход на ОСМ", kMaskCode4},
    {cpKindDocInvWares, "cbKindDocInvWares", "Търсене - Складов документ - приход на стоки",
     kMaskCode4},
    {cpKindDocOtherMS, "cbKindDocOtherMS",
     "Търсене - Складов документ - приход на други материали ", kMaskCode4},
    {.number = cpMaxTermOfPayment, .mask = "{1,2,3,4,5,6,7,8,9}[*1[#]]"},
    {.number = cpPOTolerance, .mask = "{{+}#,#}[*1[#]][;.[#[*1[#]]]]"},
    {cpServiceUser, "cbEmployees", "Търсене - Служители", kMaskCode9},
    {cpAlgoritmPrice, "cbNomIn283", {}, kMaskCode4},
    {.number = cpLastNumIniEval, .mask = kCountMask},
    {.number = cpLastNumPerEval, .mask = kCountMask},
    {.number = cpMinPointsIniEval, .mask = kCountMask},
    {.number = cpMinPointsPerEval, .mask = kCountMask},
};

LookupSetup SetupFor(Refers refers) {
  switch (refers) {
    case Refers::KindSupplies:
      return core::KindSupplies();
    case Refers::KindSupplyLists:
      return core::KindSupplyLists();
    case Refers::InventoryReceipts:
      return core::InventoryReceipts();
    case Refers::Employees:
      return core::Employees();
    case Refers::WaysOfChoosing:
    case Refers::PriceAlgorithms:
    case Refers::Nothing:
      break;
  }
  return core::NomIn();
}

}  // namespace

const LiveRow TfOrvaneParameters::kLive[] = {
    // action, focus, state, needs, when
    {"acSave", kAnywhere, InState::Editing, paEdit},
    {"acSave", "di", InState::Any, paEdit, &When<&TfOrvaneParameters::IsTyping>},
    {"acCancel", kAnywhere, InState::Editing, paEdit},
    {"acCancel", "di", InState::Any, paEdit, &When<&TfOrvaneParameters::IsTyping>},
    {"acSearchByCode", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByPartName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acNomenclature", kAtCombo, InState::Any, {}, &AtComboOfRegister},
    {"acExit", kAnywhere},
};

std::span<const LiveRow> TfOrvaneParameters::LiveRows() const {
  return kLive;
}

TfOrvaneParameters::TfOrvaneParameters(const FormIdentity& identity)
    : TVosDBForm(identity, "TfOrvaneParameters", "Параметри"),
      dmOrvaneParameters(std::make_unique<TdmOrvaneParameters>(*this)),
      di(*this, "di", dmOrvaneParameters->dsParameters) {
  SetUpItems();
  AddOwnActions();
}

void TfOrvaneParameters::AddOwnActions() {
  using Self = TfOrvaneParameters;
  static constexpr ActionRow<Self> kActions[] = {
      {"acSave", "Запис", KeyCode::F9, &Self::acSaveExecute, "save"},
      {"acCancel", "Отказ", Ctrl(KeyCode::Z), &Self::acCancelExecute, "cancel"},
  };
  AddActions(*this, kActions);
  const std::vector<std::string> lookups = AddLookupActions(*this, kLookups);
  AddHostActions(*this);
  ribbon = {{"Операции",
             {{"Основни", {"acSave", "acCancel"}}, {"Търсене", lookups}, {"Изход", {"acExit"}}}}};
  layout = ColumnOf({Of(di, 1)});
}

void TfOrvaneParameters::SetUpItems() {
  for (const ParameterItem& row : kItems) {
    const ModuleParameter& parameter = *FindModuleParameter(row.number);
    Item item(parameter.field.name, parameter.field.label);
    item.Mask(row.mask);
    if (ParameterList* list = dmOrvaneParameters->ListOf(row.number)) {
      auto combo = std::make_unique<TVosMTCombo>(*this, row.combo, list->table);
      SetUpLookup(*combo, SetupFor(parameter.refers));
      combo->dlgCaption = row.dlgCaption;
      combo->mask = row.mask;
      item.Edit(*combo);
      combos_.push_back(std::move(combo));
    }
    di.items.push_back(item);
  }
  const auto nomenclature = [this](Module number, core::Nomenclature nom) {
    dmOrvaneParameters->ListOf(number)->table.SetParam("Nom", static_cast<int>(nom));
  };
  nomenclature(cpKindSupplyChoice, core::kWaysOfChoosing);
  nomenclature(cpAlgoritmPrice, core::kPriceAlgorithms);
}

void TfOrvaneParameters::VosBaseFormShow() {
  dmOrvaneParameters->GetParams();
  dmOrvaneParameters->FetchLists();
}

bool TfOrvaneParameters::IsTyping() const {
  return ActiveControl() != nullptr && ActiveControl()->Editor() != nullptr;
}

void TfOrvaneParameters::acSaveExecute() {
  di.FlushChanges();
  dmOrvaneParameters->Save();
}

void TfOrvaneParameters::acCancelExecute() {
  if (!UndoInEditor()) dmOrvaneParameters->Cancel();
}

}  // namespace orvane::modules
