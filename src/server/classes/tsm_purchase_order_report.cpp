#include "contract/purchase_request.h"
#include "server/classes/server_classes.h"
#include "server/providers/work.h"
#include "server/requests/request_copies.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;

Answer<VariantArray> Operations(Work& work, const VariantArray& arguments) {
  const std::string* name = arguments.empty() ? nullptr : arguments[0].AsString();
  if (name && *name == request::new_rec::kName) return MakeRequestFrom(work, arguments);
  return Failure{FailureKind::BadRequest, "Непозната операция на „Искания за покупка“."};
}

}  // namespace

// The grid's rows are found by the statement that the screen's filter makes.
ServerClass TsmPurchaseOrderReport() {
  return ServerClass(request::kReportClass)
      .UsedFrom({Point::PurchaseRequests})
      .ReadFrom({Point::PurchaseRequestReport, Point::ApprovalQueue})
      .SearchProvider(request::report::dspResult.name)
      .Operation(request::kOperations, Rule::Insert, &Operations);
}

}  // namespace orvane::server
