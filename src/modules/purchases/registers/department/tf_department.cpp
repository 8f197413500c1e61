#include "modules/purchases/registers/department/tf_department.h"

#include "kit/columns.h"

namespace orvane::modules {
namespace {

constexpr std::string_view kChiefGroup = "Началник(В.И.Д.)";
constexpr std::string_view kChiefMask = "[*10[@]]";
constexpr std::string_view kNameMask = "[*40[@]]";

}  // namespace

TfDepartment::TfDepartment(const FormIdentity& identity)
    : TVosDBForm(identity, "TfDepartment", "Дирекции"),
      dmDepartment(std::make_unique<TdmDepartment>(*this)),
      cbSysUser(*this, "cbSysUser", dmDepartment->sysUsers),
      gDepartment(*this, "gDepartment", dmDepartment->dsDepartment),
      register_(*this, gDepartment,
                {.number = 22, .variantOneLanguage = 0, .variantTwoLanguages = 1}) {
  cbSysUser.lookupNameField = "UserName";
  cbSysUser.lookupTrNameField = "UserName2";
  cbSysUser.mask = kChiefMask;
  cbSysUser.dlgCaption = "Търсене - Дирекции";
  dmDepartment->sysUsers.SetTemplate(
      {"select ShortName,UserName,UserName2 ", "from WSysUsers {$WN}", "{$W}", "{$O}"});
  dmDepartment->sysUsers.dlgSearchFields = {
      SearchBy("ShortName", "Код"),
      SearchBy("UserName", "Име").In(Visibility::fvFirstLang).ByPart(),
      SearchBy("UserName2", "Име 2").In(Visibility::fvSecondLang).ByPart(),
  };

  gDepartment.columns = {
      Column("Code", 10, "Код").Mask("{1,2,3,4,5,6,7,8,9}[*3[#]]"),
      Column("Name", 40, "Име").Mask(kNameMask),
      Column("Name2", 40, "Име").Mask(kNameMask),
      Column("Chief", 10, "Код").Under(kChiefGroup).Mask(kChiefMask).Edit(cbSysUser),
      Column("ChiefName", 40, "Име").Under(kChiefGroup).ReadOnly(),
      Column("ChiefName2", 40, "Име").Under(kChiefGroup).ReadOnly(),
  };
  gDepartment.emptyText = "Няма въведени дирекции. Стрелка надолу добавя първата.";
  dmDepartment->dsDepartment.OnStateChange = [this] { register_.StateChange(); };
  register_.AddTo();
  dmDepartment->Fetch();
}

void TfDepartment::VosBaseFormShow() {
  dmDepartment->cdsDepartment.Close();
  LanguageColumns languages;
  languages.firstOnly = {"ChiefName"};
  languages.secondOnly = {"Name2", "ChiefName2"};
  languages.titled = {{"Name", 1}, {"Name2", 2}, {"ChiefName2", 2}};
  ChooseLanguageColumns(*this, gDepartment, languages);
  dmDepartment->Fetch();
}

}  // namespace orvane::modules
