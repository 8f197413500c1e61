#include "modules/purchases/registers/cap_ex_plan/tdm_cap_ex_plan.h"

#include <cassert>

#include "contract/cap_ex_plan.h"
#include "contract/system.h"
#include "kit/columns.h"
#include "kit/immediate_apply.h"
#include "kit/row_names.h"
#include "packet/fold.h"

namespace orvane::modules {

using namespace cap_ex_plan;

namespace {

/// A text of blanks is no text.
Answer<Variant> cdsCapExPlanNameSetText(std::string_view text) {
  return IsBlank(text) ? Variant() : Variant(text);
}

}  // namespace

TdmCapExPlan::TdmCapExPlan(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcCapExPlan(Session(), Point(), kServerClass),
      sqlcSQL(Session(), Point(), system::kSearchClass),
      cdsCapExPlan("cdsCapExPlan", sqlcCapExPlan, dspCapExPlan),
      cdsSearch("cdsSearch", sqlcSQL, {Code, Name, Name2}),
      search(cdsSearch, "Code"),
      dsCapExPlan(cdsCapExPlan) {
  for (const FieldDef& text : {Name, Name2, Description, Description2})
    cdsCapExPlan[text].OnSetText = &cdsCapExPlanNameSetText;
  NameRows(cdsCapExPlan, {{"Позиция", Code.name}});
  ApplyAtOnce(form, cdsCapExPlan, {.maxErrors = 0, .form = ApplyForm::Once});
  search.SetTemplate({"SELECT Code, Name, Name2", "FROM CapExPlan WITH(NOLOCK)", "{$W}", "{$O}"});
  search.dlgSearchFields = {
      SearchBy("Code", "Код"),
      SearchBy("Name", "Име").In(Visibility::fvFirstLang).ByPart(),
      SearchBy("Name2", "Име2").In(Visibility::fvSecondLang).ByPart(),
  };
}

LoadCode TdmCapExPlan::GetRecord(Nav mode, int offset, const std::string& code) {
  const VariantArray answer = sqlcCapExPlan.Ask(
      get_record::kName, {Variant(static_cast<int>(mode)), Variant(offset), Variant(code)});
  sqlcCapExPlan.Close();
  const DataPacket* data =
      answer.size() == get_record::kTellSize ? answer[get_record::kData].AsPacket() : nullptr;
  if (data == nullptr) {
    throw ServerError{{FailureKind::Internal, "Сървърът върна позиция от плана в непознат вид."}};
  }
  if (answer[get_record::kFound].AsBool().value_or(false)) {
    cdsCapExPlan.LoadPacket(*data);
    if (OnFound) OnFound(cdsCapExPlan[Code].AsString());
  }
  return static_cast<LoadCode>(answer[get_record::kState].AsInt().value_or(0));
}

void TdmCapExPlan::StartPosition(const std::string& code) {
  cdsCapExPlan.EmptyDataSet();
  cdsCapExPlan.Insert();
  const Answer<Variant> number = ParseValue(code, cdsCapExPlan[Code].Format);
  assert(number);
  cdsCapExPlan[Code].Set(*number);
}

}  // namespace orvane::modules
