#include "modules/purchases/registers/kind_supplies/tf_kind_supplies.h"

#include "kit/columns.h"
#include "kit/lookup_setup.h"

namespace orvane::modules {
namespace {

constexpr std::string_view kNameMask = "[*40[@]]";
constexpr RegisterReport kReport{26, 2, 3};
constexpr RegisterActions kActions{.searchByCode = {}};  // nothing here is looked up

}  // namespace

TfKindSupplies::TfKindSupplies(const FormIdentity& identity)
    : TVosDBForm(identity, "TfKindSupplies", "Видове покупки"),
      dmKindSupplies(std::make_unique<TdmKindSupplies>(*this)),
      gKindSupplies(*this, "gKindSupplies", dmKindSupplies->dsKindSupplies),
      register_(*this, gKindSupplies, kReport, kActions) {
  gKindSupplies.columns = {
      Column("Code", 10, "Код").Mask(kMaskCode4),
      Column("Name", 40, "Име").Mask(kNameMask),
      Column("Name2", 40, "Име").Mask(kNameMask),
  };
  gKindSupplies.emptyText = "Няма въведени видове покупки. Стрелка надолу добавя първия.";
  dmKindSupplies->dsKindSupplies.OnStateChange = [this] { register_.StateChange(); };
  register_.AddTo();
  dmKindSupplies->Fetch();
}

void TfKindSupplies::VosBaseFormShow() {
  dmKindSupplies->cdKindSupplies.Close();
  LanguageColumns languages;
  languages.secondOnly = {"Name2"};
  languages.titled = {{"Name", 1}, {"Name2", 2}};
  ChooseLanguageColumns(*this, gKindSupplies, languages);
  dmKindSupplies->Fetch();
}

}  // namespace orvane::modules
