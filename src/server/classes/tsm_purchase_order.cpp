#include "contract/purchase_request.h"
#include "server/classes/server_classes.h"
#include "server/documents/rates.h"
#include "server/providers/work.h"
#include "server/requests/request_apply.h"
#include "server/requests/request_load.h"
#include "server/requests/request_sums.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;

constexpr char kAdmissible[] =
    "select distinct Notifier from AdmissibleNotifiers where Notifier = :Notifier";
constexpr char kStatuses[] =
    "select Element, Name, Name2 from NomIn where Nomenclature = 249 order by Element";
constexpr char kApprovalStatuses[] =
    "select Element, Name, Name2 from NomIn where Nomenclature = 251 order by Element";
constexpr char kApprovers[] =
    "select Element, Name, Name2 from NomIn where Nomenclature = 245 order by Element";

/// Operations: element 0 names the question.
Answer<VariantArray> Operations(Work& work, const VariantArray& arguments) {
  const std::string* name = arguments.empty() ? nullptr : arguments[0].AsString();
  if (name && *name == request::get_rec::kName) return GetPurchaseRequest(work, arguments);
  if (name && *name == request::sum_check::kName) return CheckRequestSums(work, arguments);
  return Failure{FailureKind::BadRequest, "Непозната операция на „Искане за покупка“."};
}

}  // namespace

ServerClass TsmPurchaseOrder() {
  return ServerClass(request::kServerClass)
      .UsedFrom({Point::PurchaseRequests})
      .DecidedFrom({Point::ApprovalQueue})
      .Provider(request::head::dspPurchaseOrder, {}, RequestHeadRules())
      .Provider(request::det::dspPurchaseOrderDet, {}, RequestRowRules())
      .Provider(request::del::dspPurchaseOrderDel, {}, RequestScheduleRules())
      .Provider(request::pay::dspPurchaseOrderPayPl, {}, RequestPlanRules())
      .Provider(request::adm::dspPurchaseOrderAdm, {}, RequestApprovalRules())
      .ReadOnly(request::deliveries::dspDeliveries, {})
      .ReadOnly(request::roles::dspGetSuppDocConfirm, {})
      .ReadOnly(request::dspCheckAdmNotifiers, kAdmissible, {Code19("Notifier")})
      .ReadOnly(dspRatesOfExchange, kRateOnDay, {Code19("Bank"), Int16("Currency"), Day("Day")})
      .ReadOnly(request::dspNomIn245, kApprovers)
      .ReadOnly(request::dspNomIn249, kStatuses)
      .ReadOnly(request::dspNomIn251, kApprovalStatuses)
      .Operation(request::kOperations, Rule::Open, &Operations);
}

}  // namespace orvane::server
