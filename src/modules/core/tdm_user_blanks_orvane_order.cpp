// Print form 26: a supplier order.

#include <string>
#include <vector>

#include "contract/parameters.h"
#include "contract/supplier_order.h"
#include "contract/system.h"
#include "host/form.h"
#include "kit/current_employee.h"
#include "kit/documents/document_load.h"
#include "kit/documents/rates.h"
#include "kit/parameters.h"
#include "modules/core/document_blank.h"
#include "modules/core/supply_rows.h"
#include "modules/core/tdm_user_blanks_orvane.h"

namespace orvane::modules {
namespace {

namespace so = supplier_order;

constexpr auto StatusName = String("StatusName", 30, Joined, "Статус");
constexpr auto TransportName = String("TransportName", 30, Joined, "Включен транспорт в цената");

constexpr PrintedColumn kRows[] = {
    {so::det::RowNumber.name, "№", 5},
    {so::det::SerialNumber.name, "Пореден~номер", 10},
    {so::det::Name.name, "Име", 36},
    {so::det::MeasureName.name, "Мярка", 10},
    {so::det::Quantity.name, "Количество", 14},
};
constexpr PrintedColumn kApprovals[] = {
    {so::adm::ConfirmationLevel.name, "Ниво", 6}, {so::adm::ApprovalName.name, "Одобряващ", 24},
    {so::adm::ConfirmedFromName.name, "Име", 40}, {so::adm::ConfermedOn.name, "На", 20},
    {so::adm::StatusName.name, "Статус", 18},     {so::adm::ApprovalNote.name, "Причина", 30},
};
constexpr PrintedColumn kRequests[] = {
    {so::requests::DocumentDate.name, "Дата на доставка", 16},
    {so::requests::POIdNumber.name, "Номер", 10},
    {so::requests::POVersion.name, "Версия", 8},
    {so::requests::Description.name, "Описание", 40},
};

/// An order as it is printed: its parts and the nomenclatures behind its codes.
class ManifactureOrderBlank {
 public:
  explicit ManifactureOrderBlank(TVosBaseForm& owner);

  /// False when there is no such order for the user.
  bool Load(std::int64_t id);
  ReportDocument Document(int variant);

 private:
  VariantArray Ask(std::int64_t id);
  std::vector<ReportFact> Facts();
  std::vector<PrintedColumn> RowColumns() const;

  TVosBaseForm& owner_;
  bool second_;
  TVosSQLConnection connection_;
  TVosClientDataSet head_, det_, adm_, requests_;
  TVosClientDataSet statuses_, noYes_, currencies_;
};

ManifactureOrderBlank::ManifactureOrderBlank(TVosBaseForm& owner)
    : owner_(owner),
      second_(!owner.FirstLanguage()),
      connection_(owner.App().Session(), {owner.ModuleNo(), owner.PointNo()}, so::kServerClass),
      head_("head", connection_, so::head::dspSuppManifacOrder),
      det_("det", connection_, so::det::dspSuppManOrderDet),
      adm_("adm", connection_, so::adm::dspSuppManOrderAdmin),
      requests_("requests", connection_, so::requests::dspPurchaseOrder),
      statuses_("statuses", connection_, so::opening_rows::kNomenclature),
      noYes_("noYes", connection_, so::opening_rows::kNomenclature),
      currencies_("currencies", connection_, so::opening_rows::kCurrency) {
  const std::string_view name = second_ ? "Name2" : "Name";
  head_.AddLookup(StatusName, statuses_, "Status", "Element", name);
  head_.AddLookup(TransportName, noYes_, "IncTranspInPrice", "Element", name);
  ShowQuantities(det_, {});
  adm_[so::adm::ConfermedOn].Format.withSeconds = true;
  const int decimals =
      static_cast<int>(ParamNumber(owner, system::kHostGroup, parameters::kAmountDecimals));
  ShowOrderRate(head_[so::head::RateOfExchange]);
  for (const FieldDef& amount : {so::head::SumManifacOrder, so::head::CurrSumManifacOrder})
    head_[amount].Format.decimals = decimals;
}

VariantArray ManifactureOrderBlank::Ask(std::int64_t id) {
  const VosApplication& app = owner_.App();
  VariantArray data(so::get_record::kAskSize);
  data[so::get_record::kMode] = static_cast<int>(Nav::ByKey);
  data[so::get_record::kStep] = 0;
  data[so::get_record::kIdText] = std::to_string(id);
  data[so::get_record::kEmployee] = app.vCurrentEmployee.ToText();
  data[so::get_record::kBelowThree] = !NeedsEmployee(app);
  data[so::get_record::kLogin] = app.UserName();
  data[so::get_record::kFirstLanguage] = !second_;
  data[so::get_record::kViewOnly] = true;
  CallOperations(connection_, so::get_record::kName, data);
  return data;
}

bool ManifactureOrderBlank::Load(std::int64_t id) {
  const VariantArray answer = Ask(id);
  const LoadTold told = ReadLoadTold(answer, so::get_record::kPosition, so::get_record::kFound);
  if (!told.found || told.code == LoadCode::None) return false;
  VariantArray names{owner_.App().vCurrentEmployee, !second_};
  CallOperations(connection_, so::get_params::kName, names);
  LoadPackets(names, so::get_params::kStatuses, {&statuses_, &noYes_, &currencies_});
  LoadPackets(answer, so::get_record::kHead, {&head_});
  LoadPackets(answer, so::get_record::kRows, {&det_, &adm_, &requests_});
  return true;
}

std::vector<ReportFact> ManifactureOrderBlank::Facts() {
  using namespace so::head;
  const bool foreign = IsForeign(owner_, head_[KindCurrency]);
  return WithoutEmpty({
      {"Дата на документ", head_[DocumentDate].Text()},
      {"Статус",
       head_[AnnulOn].IsEmpty() ? head_.FieldByName(StatusName.name).Text() : "Анулирана"},
      {"Период", head_[FromDate].Text() + " – " + head_[ToDate].Text()},
      {"Заявител", CodeAndName(head_[Notifier], head_[NotifierName].Text())},
      {"Център за разход", CodeAndName(head_[CostCenter], head_[CostCenterName].Text())},
      {"Вид покупка", head_[KindSupplyName].Text()},
      {"Доставчик", CodeAndName(head_[Supplier], head_[SupplierName].Text())},
      {"Идентификатор на договор", CodeAndName(head_[ContractId], head_[ContractName].Text())},
      {"Включен транспорт в цената", head_.FieldByName(TransportName.name).Text()},
      {"Вид валута", head_[KindCurrencyName].Text()},
      {"Валутен курс", foreign ? head_[RateOfExchange].Text() : ""},
      {"Сума на поръчката (" + head_[KindCurrencyName].Text() + ")",
       foreign ? head_[CurrSumManifacOrder].Text() : ""},
      {NationalSumLabel(owner_, head_[KindCurrency],
                        {.plain = "Сума на поръчката", .lev = "Левова сума на поръчката"},
                        currencies_),
       head_[SumManifacOrder].Text()},
      {"Описание", head_[second_ ? Description2 : Description].Text()},
      {"Обосновка", head_[second_ ? Rationale2 : Rationale].Text()},
      {"Създаден", StampOf(head_[CreatedFrom], head_[CreatedFromName], head_[CreatedOn])},
      {"Последна корекция", StampOf(head_[AmendFrom], head_[AmendFromName], head_[AmendOn])},
      {"Анулиран", StampOf(head_[AnnulFrom], head_[AnnulFromName], head_[AnnulOn])},
  });
}

/// Remarks are printed in the language of the reader.
std::vector<PrintedColumn> ManifactureOrderBlank::RowColumns() const {
  std::vector<PrintedColumn> columns(std::begin(kRows), std::end(kRows));
  columns.push_back({second_ ? so::det::Remarks2.name : so::det::Remarks.name, "Бележки", 24});
  return columns;
}

ReportDocument ManifactureOrderBlank::Document(int variant) {
  const std::string title =
      TitleOf("Поръчка за производство", head_[so::head::AnnulOn], "АНУЛИРАНА");
  ReportDocument report =
      BeginBlank(owner_, kManifactureOrderBlank, variant, title, head_[so::head::IdNumber].Text());
  report.facts = Facts();
  report.tables.push_back(PrintedTable("Материали и услуги", det_, RowColumns()));
  if (!adm_.IsEmpty()) report.tables.push_back(PrintedTable("Одобрения", adm_, kApprovals));
  if (!requests_.IsEmpty())
    report.tables.push_back(PrintedTable("Искания за покупка", requests_, kRequests));
  return report;
}

}  // namespace

void TdmUserBlanksOrvane::PrintManifactureOrder(int documentCode, const Variant& kindSupply,
                                                std::int64_t id) {
  if (documentCode != kManifactureOrderBlank) return;
  ManifactureOrderBlank blank(owner_);
  if (!blank.Load(id)) return TellNoDocument(owner_, id);
  const auto variant = static_cast<int>(kindSupply.AsInt().value_or(0));
  owner_.App().Toolkit().PreviewReport(owner_, blank.Document(variant));
}

}  // namespace orvane::modules
