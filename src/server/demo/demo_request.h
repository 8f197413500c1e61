#pragma once

// Requests of the demonstration company: each a pure function of its number, so that a thousand and
// a million of them are made the same way.

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "contract/workflow.h"
#include "packet/date.h"
#include "packet/decimal.h"
#include "server/demo/demo_contracts.h"
#include "server/demo/demo_orders.h"
#include "server/demo/demo_random.h"
#include "server/demo/demo_units.h"
#include "server/demo/demo_world.h"

namespace orvane::server {

struct DemoRequestRow {
  const DemoEntry* entry = nullptr;
  std::int16_t measure = 0;
  std::int64_t quantity = 0;   ///< in smallest units
  std::int64_t currCents = 0;  ///< without VAT, in the request's currency
  std::int32_t order = 0;      ///< 0: none
  bool remarked = false;
};

struct DemoDecision {
  int level = 0;
  ApproverKind approver = ApproverKind::CostCenterHead;
  int status = ApprovalWaiting;
  std::int64_t head = 0;  ///< the employee who decided or whose turn it is
  Stamp when;             ///< of a decision
};

struct DemoPayment {
  Date invoice;
  std::int64_t currCents = 0;  ///< with VAT
  bool advance = false;
  Date due;
};

struct DemoRequest {
  std::int32_t id = 0;
  int version = 1;
  bool oldVersion = false;
  Date day;
  DemoKind kind = kOtherMaterials;
  const DemoCostCenter* center = nullptr;
  std::int64_t notifier = 0;
  std::string_view creator;
  const DemoPartner* supplier = nullptr;   ///< null: none
  const DemoContract* contract = nullptr;  ///< null: none
  std::int16_t currency = kEuro;
  Decimal rate;
  std::vector<DemoRequestRow> rows;
  std::int64_t currCents = 0;
  std::int64_t cents = 0;  ///< in the national currency
  int status = Entered;
  bool annulled = false;
  int sendings = 0;
  Stamp created;
  Stamp sent;
  std::string_view amender;  ///< empty: nobody
  Stamp amended;
  Stamp annulledOn;
  std::vector<DemoDecision> decisions;
  std::vector<std::int64_t> turns;  ///< employees to whom the turn ever came, each once
  std::vector<Date> deliveries;     ///< planned, ascending
  bool delivered = false;
  std::vector<DemoPayment> payments;
  std::string description;
  std::string description2;
  std::string rationale;
  std::string rationale2;
};

class DemoRequests {
 public:
  /// What it is given outlives it.
  DemoRequests(const DemoWorld& world, const std::vector<DemoContract>& contracts,
               const std::vector<DemoOrder>& orders, std::int64_t documents);

  std::int64_t Count() const { return documents_; }
  /// Versions of the request with this number, from 1 to Count(): one, or an old and a current one.
  std::vector<DemoRequest> Make(std::int64_t number) const;

 private:
  void ChooseUnit(DemoRequest& request, DemoRandom& random) const;
  void ChooseSupplier(DemoRequest& request, DemoRandom& random) const;
  void ChooseRows(DemoRequest& request, DemoRandom& random) const;
  void TakeOrder(DemoRequest& request) const;
  void SetPrice(DemoRequest& request, DemoRequestRow& row, DemoRandom& random) const;
  void ChooseStatus(DemoRequest& request, DemoRandom& random) const;
  const DemoContract* ContractOn(const DemoPartner& supplier, Date day) const;
  /// The order against which the request with this number is made; null for most.
  const DemoOrder* OrderOf(std::int64_t number) const;
  std::string_view CreatorFor(const DemoRequest& request, DemoRandom& random) const;
  /// Notes who changed it last: whoever sent it or, when it is completed, the cost centre's head.
  void Amend(DemoRequest& request) const;

  const DemoWorld& world_;
  const std::vector<DemoOrder>& orders_;
  const std::int64_t documents_;
  std::map<std::int64_t, std::vector<std::int64_t>> notifiers_;  ///< by cost centre
  std::map<std::int64_t, std::string_view> logins_;              ///< by employee
  std::map<DemoKind, std::vector<const DemoPartner*>> suppliers_;
  std::map<DemoKind, std::vector<const DemoEntry*>> entries_;
  std::map<std::int64_t, std::vector<const DemoEntry*>> offers_;        ///< by supplier
  std::map<std::int64_t, std::vector<const DemoContract*>> contracts_;  ///< by supplier
};

/// Last day of the demonstration's past.
inline constexpr Date kDemoLastDay{20516};  // 4 March 2026

/// Fills descriptions and rationale in both languages.
void DescribeRequest(DemoRequest& request, DemoRandom& random);
/// Sends it, decides what its status needs, annuls it: everything behind the status. A status that
/// its levels do not allow becomes the nearest one.
void FollowWorkflow(DemoRequest& request, DemoRandom& random);
/// Delivery schedule and payment plan.
void PlanRequest(DemoRequest& request, DemoRandom& random);

}  // namespace orvane::server
