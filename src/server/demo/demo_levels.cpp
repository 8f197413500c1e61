#include "server/demo/demo_levels.h"

#include "server/demo/demo_goods.h"

namespace orvane::server {
namespace {

constexpr ApproverKind kCenter = ApproverKind::CostCenterHead;
constexpr ApproverKind kSection = ApproverKind::SectionHead;
constexpr ApproverKind kDepartment = ApproverKind::DepartmentHead;

constexpr DemoLevel kRequests[] = {{1, 0, kCenter}, {2, 1000, kSection}, {3, 10000, kDepartment}};
constexpr DemoLevel kCapitalRequests[] = {
    {1, 0, kCenter}, {2, 0, kSection}, {3, 5000, kDepartment}};
constexpr DemoLevel kSmallRequests[] = {
    {1, 0, kCenter}, {2, 3000, kSection}, {3, 20000, kDepartment}};
constexpr DemoLevel kOrders[] = {{1, 0, kSection}};
constexpr DemoLevel kDeliveries[] = {{1, 0, kCenter}, {2, 5000, kSection}};
constexpr DemoLevel kInvoices[] = {{1, 0, kCenter}, {2, 5000, kDepartment}};

}  // namespace

std::span<const DemoLevel> DemoLevels(DocumentKind document, int kindSupply) {
  if (kindSupply == kEntertainment) return {};
  switch (document) {
    case DocumentKind::SupplierOrder:
      if (kindSupply == kRawMaterials || kindSupply == kWares) return kOrders;
      return {};
    case DocumentKind::PurchaseRequest:
      if (kindSupply == kCapital) return kCapitalRequests;
      if (kindSupply == kServices || kindSupply == kRepairs) return kSmallRequests;
      return kRequests;
    case DocumentKind::Delivery:
      return kDeliveries;
    case DocumentKind::SupplierInvoice:
      return kInvoices;
  }
  return {};
}

}  // namespace orvane::server
