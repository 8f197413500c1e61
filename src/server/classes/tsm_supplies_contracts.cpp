#include "contract/supplies_contract.h"
#include "server/classes/server_classes.h"
#include "server/contracts/contract_apply.h"
#include "server/contracts/contract_document.h"

namespace orvane::server {

using namespace supplies_contract;

namespace {

/// Operations: element 0 names the question.
Answer<VariantArray> Operations(Work& work, const VariantArray& arguments) {
  const std::string* name = arguments.empty() ? nullptr : arguments[0].AsString();
  if (name && *name == get_rec::kName) return GetSuppliesContract(work, arguments);
  return Failure{FailureKind::BadRequest, "Непозната операция на „Договори за доставки“."};
}

}  // namespace

ServerClass TsmSuppliesContracts() {
  return ServerClass(kServerClass)
      .UsedFrom({Point::SuppliesContracts})
      .Provider(dspSuppliesContracts, {}, ContractRules())
      .Operation(kOperations, Rule::Open, &Operations);
}

}  // namespace orvane::server
