#include "modules/purchases/registers/levels_approval/tdm_levels_approval.h"

#include "contract/levels_approval.h"
#include "contract/system.h"
#include "data/screen_fetch.h"
#include "kit/immediate_apply.h"
#include "kit/name_fills.h"
#include "kit/row_names.h"
#include "modules/core/lookups.h"

namespace orvane::modules {

using namespace levels_approval;

namespace {

constexpr auto lupKindRegister = String("lupKindRegister", 30, Joined, "Вид регистър");
constexpr auto lupApproval = String("lupApproval", 30, Joined, "Одобряващ");

/// The column's name in the language of the screen; of the two kinds without sums, or of all.
std::vector<std::string> KindSuppliesSql(bool ofOrders) {
  std::vector<std::string> lines = {
      "DECLARE @FirstLanguage BIT",
      "SET @FirstLanguage = :FirstLanguage",
      "",
      "SELECT Code, ",
      "  CASE WHEN @FirstLanguage = 1 THEN Name ELSE Name2 END AS Name",
      "FROM KindSupplies WITH(NOLOCK)"};
  if (ofOrders) lines.emplace_back("WHERE Code IN (:BRM, :Wares)");
  lines.emplace_back(ofOrders ? "{$WA}" : "{$W}");
  lines.emplace_back("{$O} ");
  return lines;
}

}  // namespace

TdmLevelsApproval::TdmLevelsApproval(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcLevelsApproval(Session(), Point(), kServerClass),
      cSQL(Session(), Point(), system::kSearchClass),
      cdsLevelsApproval("cdsLevelsApproval", sqlcLevelsApproval, dspLevelsApproval),
      cdsKindRegister("cdsKindRegister", cSQL, {core::Element, core::Name30}),
      cdsApproval("cdsApproval", cSQL, {core::Element, core::Name30}),
      cdsKindSupplies("cdsKindSupplies", cSQL, {core::Code, core::Name40}),
      kindRegisters(cdsKindRegister, "Element"),
      approvals(cdsApproval, "Element"),
      kindSupplies(cdsKindSupplies, "Code"),
      dsLevelsApproval(cdsLevelsApproval),
      form_(form) {
  cdsLevelsApproval.SetIndexFieldNames("KindRegister;KindSupply;Level;FromSum");
  cdsLevelsApproval.AddLookup(lupKindRegister, cdsKindRegister, "KindRegister", "Element", "Name");
  cdsLevelsApproval.AddLookup(lupApproval, cdsApproval, "Approval", "Element", "Name");
  cdsLevelsApproval[KindRegister].OnChange = [this] { cdsLevelsApprovalKindRegisterChange(); };
  cdsLevelsApproval[FromSum].OnChange = [this] { KeepWithoutSum(FromSum.name); };
  cdsLevelsApproval[ToSum].OnChange = [this] { KeepWithoutSum(ToSum.name); };
  cdsLevelsApproval.AfterScroll = [this] { FilterKindSupplies(); };
  cdsLevelsApproval.BeforePost = [this] { cdsLevelsApprovalBeforePost(); };
  NameRows(cdsLevelsApproval, {{"Ниво", Level.name},
                               {"регистър", lupKindRegister.name},
                               {"вид покупка", KindSupply.name},
                               {"от сума", FromSum.name}});
  ApplyAtOnce(form_, cdsLevelsApproval,
              {.maxErrors = 0, .form = ApplyForm::Once, .tellsWarnings = true});
  FillNames(form_, cdsLevelsApproval, {{KindSupply.name, kindSupplies, KindSupplyName.name}},
            FillLanguage::First);
}

void TdmLevelsApproval::Fetch() {
  kindRegisters.SetParam("NomIn", core::kKindsOfRegister);
  approvals.SetParam("NomIn", core::kKindsOfApprover);
  for (TLookupTable* list : {&kindRegisters, &approvals})
    list->SetParam("NomInLanguage", form_.GetLanguageNumber());
  cdsLevelsApproval.SetParam(FirstLanguage.name, form_.FirstLanguage());
  kindSupplies.SetTemplate(KindSuppliesSql(false));
  kindSupplies.SetParam(FirstLanguage.name, form_.FirstLanguage());
  FetchTogether({&kindRegisters, &approvals, &kindSupplies}, {&cdsLevelsApproval});
}

bool TdmLevelsApproval::HasSumsNow() {
  return HasSums(cdsLevelsApproval[KindRegister].AsInt().value_or(0));
}

void TdmLevelsApproval::FilterKindSupplies() {
  const bool ofOrders = !HasSumsNow();
  const std::vector<std::string> sql = KindSuppliesSql(ofOrders);
  if (kindSupplies.dlgSQL == sql) return;
  kindSupplies.SetTemplate(sql);
  if (!ofOrders) return;
  kindSupplies.SetParam("BRM", kindBRM);
  kindSupplies.SetParam("Wares", kindWares);
}

void TdmLevelsApproval::cdsLevelsApprovalKindRegisterChange() {
  if (!HasSumsNow()) {
    cdsLevelsApproval[FromSum].Set(Decimal(0, 4));
    cdsLevelsApproval[ToSum].Set(Decimal(0, 4));
  }
  FilterKindSupplies();
}

/// Where there are no sums both stay 0 whatever is typed.
void TdmLevelsApproval::KeepWithoutSum(std::string_view field) {
  TField& sum = cdsLevelsApproval.FieldByName(field);
  if (!HasSumsNow() && !sum.AsDecimal().value_or(Decimal()).IsZero()) sum.Set(Decimal(0, 4));
}

void TdmLevelsApproval::cdsLevelsApprovalBeforePost() {
  form_.RefuseIf(cdsLevelsApproval[ToSum].IsEmpty(), "Изберете стойност в поле 'До сума'");
  form_.RefuseIf(cdsLevelsApproval[Approval].IsEmpty(), "Изберете стойност в поле 'Одобряващ'");
  const auto from = cdsLevelsApproval[FromSum].AsDecimal();
  form_.RefuseIf(from && *from > *cdsLevelsApproval[ToSum].AsDecimal(), kRangeUpsideDown);
}

std::int64_t TdmLevelsApproval::GetCurremtEmployee(std::string_view userName) {
  const VariantArray answer =
      sqlcLevelsApproval.Ask(system::kGetCurrentEmployee, {Variant(userName)});
  sqlcLevelsApproval.Close();
  return answer.empty() ? 0 : answer.front().AsInt().value_or(0);
}

}  // namespace orvane::modules
