#include "server/contracts/contract_document.h"

#include "contract/supplies_contract.h"
#include "server/catalogue/active_contract.h"
#include "server/providers/arguments.h"

namespace orvane::server {
namespace {

namespace contract = supplies_contract;
using contract::get_rec::Ask;
using contract::get_rec::Tell;

/// A row without a name in the second language shows its first one. {active} stands for whether
/// the contract is in force today.
constexpr std::string_view kSelectContract =
    "select c.IdNumber, c.Supplier, p.Name, coalesce(p.Name2, p.Name), c.ContractNumber,"
    " c.ShortDescription, c.ShortDescription2, c.Description, c.Description2, c.ContractDate,"
    " c.FreezeDate, c.FinishDate, c.AutomaticRenewal, c.NoticePeriod, {active}, c.KindContract,"
    " k.Name, coalesce(k.Name2, k.Name), c.CapExPlanCode, c.DeliveryTimes, c.DeliveryTimes2,"
    " c.MinOrderDelivery, c.MinOrderDelivery2, c.ManifacOrder,"
    " c.SupplyRequestDescr, r.Name, coalesce(r.Name2, r.Name),"
    " c.SupplyArtVchDescr, v.Name, coalesce(v.Name2, v.Name),"
    " c.ToSupplyArtVchDescr, d.Name, coalesce(d.Name2, d.Name),"
    " c.SupplyInvoiceDescr, i.Name, coalesce(i.Name2, i.Name),"
    " c.SuppAdvInvDescr, a.Name, coalesce(a.Name2, a.Name),"
    " c.SuppDNoticeDescr, n.Name, coalesce(n.Name2, n.Name),"
    " c.SuppCNoticeDescr, m.Name, coalesce(m.Name2, m.Name),"
    " c.KindSupplyList, l.Name, coalesce(l.Name2, l.Name), c.KindSupplyChoice,"
    " c.InclTransportInPrice, c.UseQuantityRabat,"
    " c.SuppElKindPayment, e.Name, coalesce(e.Name2, e.Name), c.MaxTermOfPayment,"
    " c.CreatedFrom, c.CreatedOn, c.AmendFrom, c.AmendOn"
    " from SuppliesContracts c left join Partners p on p.Partner = c.Supplier"
    " left join KindSupplies k on k.Code = c.KindContract"
    " left join SupplyRequestDescr r on r.Code = c.SupplyRequestDescr"
    " left join SupplyArtVchDescr v on v.Code = c.SupplyArtVchDescr"
    " left join SupplyArtVchDescr d on d.Code = c.ToSupplyArtVchDescr"
    " left join SupplyInvoiceDescr i on i.Code = c.SupplyInvoiceDescr"
    " left join SupplyInvoiceDescr a on a.Code = c.SuppAdvInvDescr"
    " left join SupplyInvoiceDescr n on n.Code = c.SuppDNoticeDescr"
    " left join SupplyInvoiceDescr m on m.Code = c.SuppCNoticeDescr"
    " left join KindSupplyLists l on l.Code = c.KindSupplyList"
    " left join FreeNomElements e on e.FreeNomenclature = 15 and e.Element = c.SuppElKindPayment"
    " where c.IdNumber = {id}";

constexpr std::string_view kSelectSupplier =
    "select p.Partner, p.Name, coalesce(p.Name2, p.Name), s.KindInvoice from SuppliesContracts c"
    " join Partners p on p.Partner = c.Supplier"
    " left join SupplyInvoiceDescr s on s.Code = p.SupplyInvoiceDescr where c.IdNumber = {id}";

constexpr std::string_view kSelectPlanLine =
    "select l.Code, l.Name, coalesce(l.Name2, l.Name) from SuppliesContracts c"
    " join CapExPlan l on l.Code = c.CapExPlanCode where c.IdNumber = {id}";

constexpr DocumentPart kParts[] = {
    {contract::own_rows::kSupplier, kSelectSupplier},
    {contract::own_rows::kPlanLine, kSelectPlanLine},
};

}  // namespace

const Document& SuppliesContract() {
  static const std::string kSelect =
      Replaced(kSelectContract, "{active}", ActiveContract("c", ":Today"));
  static const Document kDocument{
      {contract::dspSuppliesContracts, kSelect}, kParts, kSeenContracts, {}};
  return kDocument;
}

Answer<VariantArray> GetSuppliesContract(Work& work, const VariantArray& ask) {
  constexpr Argument kAsked[] = {
      {"Operation", ValueKind::String, Need::Needed},
      {"Nav", ValueKind::Byte, Need::Needed},
      {"Step", ValueKind::Int16, Need::Optional},
      {"Id", ValueKind::Code, Need::Optional},
  };
  const auto sound = CheckArguments(contract::get_rec::kName, kAsked, ask);
  if (!sound) return sound.GetFailure();
  const auto place = ReadPlace(ask, {.nav = Ask::kNav, .step = Ask::kStep, .id = Ask::kId});
  if (!place) return place.GetFailure();
  auto loaded = LoadDocument(work, SuppliesContract(), *place, Language::First, {});
  if (!loaded) return loaded.GetFailure();
  VariantArray tell(Tell::kTellSize);
  tell[Tell::kCode] = static_cast<int>(loaded->code);
  tell[Tell::kFound] = loaded->code != LoadCode::None;
  std::size_t position = Tell::kContract;
  for (DataPacket& packet : loaded->packets)
    tell[position++] = Variant(std::move(packet));
  return tell;
}

}  // namespace orvane::server
