// Print form 25: a purchase request.

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "contract/parameters.h"
#include "contract/purchase_request.h"
#include "contract/system.h"
#include "data/screen_fetch.h"
#include "host/form.h"
#include "host/report.h"
#include "kit/documents/document_load.h"
#include "kit/parameters.h"
#include "modules/core/document_blank.h"
#include "modules/core/lookups.h"
#include "modules/core/supply_rows.h"
#include "modules/core/tdm_user_blanks_orvane.h"

namespace orvane::modules {
namespace {

namespace pr = purchase_request;

constexpr auto StatusName = String("StatusName", 30, Joined, "Статус");
constexpr auto KindName = String("KindName", 40, Joined, "Вид покупка");
constexpr auto CurrencyName = String("CurrencyName", 20, Joined, "Вид валута");
constexpr auto TransportName = String("TransportName", 30, Joined, "Включен транспорт в цената");
constexpr auto ApprovalName = String("ApprovalName", 30, Joined, "Одобряващ");

constexpr PrintedColumn kRows[] = {
    {pr::det::RowNumber.name, "№", 5},          {pr::det::SerialNumber.name, "Пореден~номер", 10},
    {pr::det::bslName.name, "Име", 36},         {pr::det::MsrName.name, "Мярка", 10},
    {pr::det::Quantity.name, "Количество", 12},
};
constexpr PrintedColumn kSchedule[] = {
    {pr::del::DeliveryDate.name, "Дата на доставка", 16},
    {pr::del::DateOfLoading.name, "Дата на товарене", 16},
    {pr::del::Delivered.name, "Доставено", 10},
};
constexpr PrintedColumn kPlan[] = {
    {pr::pay::RowNumber.name, "№", 5},
    {pr::pay::InvoiceDate.name, "Дата на фактура", 16},
    {pr::pay::SumWithVAT.name, "Сума с ДДС", 14, true},
    {pr::pay::AdvancePayment.name, "Авансово~плащане", 10},
    {pr::pay::AdvanceStatement.name, "Авансов~отчет", 10},
    {pr::pay::PaymentDate.name, "Дата на плащане", 16},
};
constexpr PrintedColumn kApprovals[] = {
    {pr::adm::ConfirmationLevel.name, "Ниво", 6},
    {ApprovalName.name, "Одобряващ", 24},
    {pr::adm::EmpName.name, "Име", 40},
    {pr::adm::ConfermedOn.name, "На", 20},
    {StatusName.name, "Статус", 18},
    {pr::adm::ApprovalNote.name, "Причина", 30},
};

/// A request as it is printed: its parts and the nomenclatures behind its codes.
class PurchaseOrderBlank {
 public:
  explicit PurchaseOrderBlank(TVosBaseForm& owner);

  /// False when there is no such request for the user.
  bool Load(std::int64_t id, int version);
  ReportDocument Document(int variant);

 private:
  void AddNames();
  bool Foreign() { return IsForeign(owner_, head_[pr::head::KindCurrency]); }
  std::string InCurrency(std::string_view words);
  std::vector<ReportFact> Facts();
  std::vector<PrintedColumn> RowColumns(const std::string& sumTitle) const;

  TVosBaseForm& owner_;
  bool second_;
  TVosSQLConnection connection_;
  TVosSQLConnection search_;
  TVosClientDataSet head_, det_, del_, pay_, adm_;
  TVosClientDataSet kinds_, currencies_, noYes_, statuses_, approvalStatuses_, approvers_;
  DataPacket costCenter_, partner_, contract_;
};

PurchaseOrderBlank::PurchaseOrderBlank(TVosBaseForm& owner)
    : owner_(owner),
      second_(!owner.FirstLanguage()),
      connection_(owner.App().Session(), {owner.ModuleNo(), owner.PointNo()}, pr::kServerClass),
      search_(owner.App().Session(), {owner.ModuleNo(), owner.PointNo()}, system::kSearchClass),
      head_("head", connection_, pr::head::dspPurchaseOrder),
      det_("det", connection_, pr::det::dspPurchaseOrderDet),
      del_("del", connection_, pr::del::dspPurchaseOrderDel),
      pay_("pay", connection_, pr::pay::dspPurchaseOrderPayPl),
      adm_("adm", connection_, pr::adm::dspPurchaseOrderAdm),
      kinds_("kinds", search_, {core::Code, core::Name40, core::Name40Second}),
      currencies_("currencies", search_, {core::Code, core::Name20, core::Name20Second}),
      noYes_("noYes", search_, {core::Element, core::Name30, core::Name30Second}),
      statuses_("statuses", connection_, pr::dspNomIn249),
      approvalStatuses_("approvalStatuses", connection_, pr::dspNomIn251),
      approvers_("approvers", connection_, pr::dspNomIn245) {
  AddNames();
  ShowQuantities(det_, {.roundQuantity = pr::det::roundQNT.name, .noQuantity = "0"});
  adm_[pr::adm::ConfermedOn].Format.withSeconds = true;
  const int decimals =
      static_cast<int>(ParamNumber(owner, system::kHostGroup, parameters::kAmountDecimals));
  for (TField* amount : {&head_[pr::head::SumPurchaseOrder], &head_[pr::head::CurrSumPurchaseOrder],
                         &det_[pr::det::CurrSumWithoutVAT], &pay_[pr::pay::SumWithVAT]})
    amount->Format.decimals = decimals;
}

void PurchaseOrderBlank::AddNames() {
  const std::string_view name = second_ ? "Name2" : "Name";
  head_.AddLookup(StatusName, statuses_, "Status", "Element", name);
  head_.AddLookup(KindName, kinds_, "KindSupply", "Code", name);
  head_.AddLookup(CurrencyName, currencies_, "KindCurrency", "Code", name);
  head_.AddLookup(TransportName, noYes_, "IncTranspInPrice", "Element", name);
  adm_.AddLookup(StatusName, approvalStatuses_, "Status", "Element", name);
  adm_.AddLookup(ApprovalName, approvers_, "Approval", "Element", name);
}

bool PurchaseOrderBlank::Load(std::int64_t id, int version) {
  VosApplication& app = owner_.App();
  const VariantArray answer = connection_.Ask(
      pr::kOperations,
      {pr::get_rec::kName, second_ ? 2 : 1, static_cast<int>(Nav::ByKey), 0, id, version,
       app.UserName(), app.vCurrentEmployee, app.UserCategory() >= 3, false});
  connection_.Close();
  if (answer.size() <= pr::get_rec::kFound) return false;
  const bool none = answer[pr::get_rec::kCode].AsInt() == static_cast<std::int64_t>(LoadCode::None);
  if (none || !answer[pr::get_rec::kFound].AsBool().value_or(false)) return false;
  TLookupTable kinds(kinds_, "Code"), currencies(currencies_, "Code"), noYes(noYes_, "Element");
  kinds.SetTemplate(core::KindSupplies().sql);
  currencies.SetTemplate(core::Currencies().sql);
  noYes.SetTemplate(core::NomIn().sql);
  noYes.SetParam("Nom", core::kNoYes);
  FetchTogether({&kinds, &currencies, &noYes}, {&statuses_, &approvalStatuses_, &approvers_});
  LoadPackets(answer, pr::get_rec::kFirstPacket, {&head_, &det_, &del_, &pay_, &adm_});
  costCenter_ = PacketAt(answer, pr::get_rec::kCostCenterRow);
  partner_ = PacketAt(answer, pr::get_rec::kPartnerRow);
  contract_ = PacketAt(answer, pr::get_rec::kContractRow);
  return true;
}

/// "Сума без ДДС (Евро)" where the request is in a foreign currency.
std::string PurchaseOrderBlank::InCurrency(std::string_view words) {
  const std::string currency = head_.FieldByName(CurrencyName.name).Text();
  return !Foreign() || currency.empty() ? std::string(words)
                                        : std::string(words) + " (" + currency + ")";
}

/// Remarks are printed in the language of the reader.
std::vector<PrintedColumn> PurchaseOrderBlank::RowColumns(const std::string& sumTitle) const {
  std::vector<PrintedColumn> columns(std::begin(kRows), std::end(kRows));
  columns.push_back({pr::det::CurrSumWithoutVAT.name, sumTitle, 14, true});
  columns.push_back({second_ ? pr::det::Remarks2.name : pr::det::Remarks.name, "Бележки", 24});
  return columns;
}

std::vector<ReportFact> PurchaseOrderBlank::Facts() {
  using namespace pr::head;
  std::vector<ReportFact> facts = {
      {"Версия", head_[POVersion].Text()},
      {"Дата на документ", head_[DocumentDate].Text()},
      {"Статус",
       head_[AnnulOn].IsEmpty() ? head_.FieldByName(StatusName.name).Text() : "Анулирано"},
      {"Заявител", CodeAndName(head_[Notifier], head_[NtfName].Text())},
      {"Център за разход", CodeAndName(head_[CostCenter], NameIn(costCenter_, second_))},
      {"Вид покупка", head_.FieldByName(KindName.name).Text()},
      {"Доставчик", CodeAndName(head_[Supplier], NameIn(partner_, second_))},
      {"Идентификатор на договор",
       CodeAndName(head_[ContractId], NameIn(contract_, second_, "ShortDescription"))},
      {"Включен транспорт в цената", head_.FieldByName(TransportName.name).Text()},
      {"Вид валута", head_.FieldByName(CurrencyName.name).Text()},
      {"Валутен курс", Foreign() ? head_[RateOfExchange].Text() : ""},
      {InCurrency("Сума на искането"), Foreign() ? head_[CurrSumPurchaseOrder].Text() : ""},
      {NationalSumLabel(owner_, head_[KindCurrency],
                        {.plain = "Сума на искането", .lev = "Левова сума на искането"},
                        currencies_),
       head_[SumPurchaseOrder].Text()},
      {"Описание", head_[second_ ? Description2 : Description].Text()},
      {"Обосновка", head_[second_ ? Rationale2 : Rationale].Text()},
      {"Създаден", StampOf(head_[CreatedFrom], head_[CrtFrmName], head_[CreatedOn])},
      {"Последна корекция", StampOf(head_[AmendFrom], head_[AmndFrmName], head_[AmendOn])},
      {"Анулиран", StampOf(head_[AnnulFrom], head_[AnnulFrmName], head_[AnnulOn])},
      {"Стара версия", head_[OldVersion].AsBool() ? "Да" : ""},
  };
  return facts;
}

ReportDocument PurchaseOrderBlank::Document(int variant) {
  const std::string title = TitleOf("Искане за покупка", head_[pr::head::AnnulOn], "АНУЛИРАНО",
                                    head_[pr::head::OldVersion].AsBool());
  ReportDocument report =
      BeginBlank(owner_, kPurchaseOrderBlank, variant, title, head_[pr::head::POIdNumber].Text());
  report.facts = WithoutEmpty(Facts());
  report.tables.push_back(
      PrintedTable("Материали и услуги", det_, RowColumns(InCurrency("Сума без ДДС"))));
  const auto add = [&](std::string_view caption, TVosClientDataSet& rows,
                       std::span<const PrintedColumn> columns) {
    if (!rows.IsEmpty()) report.tables.push_back(PrintedTable(caption, rows, columns));
  };
  add("Дати на доставка", del_, kSchedule);
  const std::string planSum = InCurrency("Сума с ДДС");
  std::vector<PrintedColumn> plan(std::begin(kPlan), std::end(kPlan));
  std::ranges::find(plan, pr::pay::SumWithVAT.name, &PrintedColumn::field)->title = planSum;
  add("План за плащане", pay_, plan);
  add("Одобрения", adm_, kApprovals);
  return report;
}

}  // namespace

void TdmUserBlanksOrvane::PrintPurchaseOrder(int documentCode, const Variant& kindSupply,
                                             std::int64_t id, int version) {
  if (documentCode != kPurchaseOrderBlank) return;
  PurchaseOrderBlank blank(owner_);
  if (!blank.Load(id, version)) return TellNoDocument(owner_, id);
  const auto variant = static_cast<int>(kindSupply.AsInt().value_or(0));
  owner_.App().Toolkit().PreviewReport(owner_, blank.Document(variant));
}

}  // namespace orvane::modules
