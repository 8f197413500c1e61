#include "contract/supplier_order.h"
#include "server/classes/server_classes.h"
#include "server/orders/order_report.h"

namespace orvane::server {

ServerClass TsmSuppManifacOrderReport() {
  return ServerClass(supplier_order::kReportClass)
      .UsedFrom({Point::SupplierOrders})
      .Operation(supplier_order::report_params::kName, Rule::Open, &GetOrderReportParams)
      .Operation(supplier_order::get_report::kName, Rule::Open, &GetOrderReport);
}

}  // namespace orvane::server
