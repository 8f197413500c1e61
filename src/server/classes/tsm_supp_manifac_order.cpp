#include "contract/supplier_order.h"
#include "server/classes/server_classes.h"
#include "server/documents/rates.h"
#include "server/orders/order_apply.h"
#include "server/orders/order_document.h"
#include "server/orders/order_load.h"

namespace orvane::server {
namespace {

namespace order = supplier_order;

constexpr auto kFirstLanguage = Bit("FirstLanguage");
constexpr auto kIdNumber = Int32("IdNumber");

}  // namespace

// The providers travel with the load too; by themselves they are read to refresh a part.
ServerClass TsmSuppManifacOrder() {
  return ServerClass(order::kServerClass)
      .UsedFrom({Point::SupplierOrders})
      .DecidedFrom({Point::ApprovalQueue})
      .ReadFrom({Point::PurchaseRequests})
      .Provider(order::head::dspSuppManifacOrder, order_select::Head(), OrderHeadRules(),
                {kFirstLanguage, kIdNumber})
      .Provider(order::det::dspSuppManOrderDet, order_select::Rows(), OrderRowRules(),
                {Bit("IdentityWithNom"), kFirstLanguage, kIdNumber})
      .Provider(order::adm::dspSuppManOrderAdmin, order_select::Approvals(), OrderApprovalRules(),
                {kFirstLanguage, Int16("NomInLanguage"), Int16("NomInApproval"),
                 Int16("NomInStatus"), kIdNumber})
      .ReadOnly(order::requests::dspPurchaseOrder, order_select::Requests(),
                {kFirstLanguage, kIdNumber})
      .ReadOnly(dspRatesOfExchange, kRateOnDay, {Code19("Bank"), Int16("Currency"), Day("Day")})
      .Operation(order::get_params::kName, Rule::Open, &GetOrderParams)
      .Operation(order::get_record::kName, Rule::Open, &GetOrder);
}

}  // namespace orvane::server
