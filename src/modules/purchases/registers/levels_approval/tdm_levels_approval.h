#pragma once

// Approval levels: the dataset of the register with its lists, the rules of a row, and the question
// who the current employee is, which the module asks at start.

#include <cstdint>
#include <string_view>

#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"

namespace orvane::modules {

class TdmLevelsApproval : public TVosDataModule {
 public:
  explicit TdmLevelsApproval(TVosDBForm& form);

  /// Fetches levels and lists in one call, names in the language of the screen.
  void Fetch();
  /// Offers the kinds of supply that the current row may have: where there are no sums only ОСМ and
  /// goods.
  void FilterKindSupplies();
  bool HasRows() const { return !cdsLevelsApproval.IsEmpty(); }

  /// Code of the employee with that login; 0 when there is none, -1 when there is more than one.
  std::int64_t GetCurremtEmployee(std::string_view userName);

  /// Kinds of supply for ОСМ and for goods, by the module's parameters; 0 while they are not set.
  std::int64_t kindBRM = 0;
  std::int64_t kindWares = 0;

  TVosSQLConnection sqlcLevelsApproval;
  TVosSQLConnection cSQL;
  TVosClientDataSet cdsLevelsApproval;
  TVosClientDataSet cdsKindRegister;
  TVosClientDataSet cdsApproval;
  TVosClientDataSet cdsKindSupplies;
  TLookupTable kindRegisters;
  TLookupTable approvals;
  TLookupTable kindSupplies;
  TDataSource dsLevelsApproval;

 private:
  bool HasSumsNow();
  void cdsLevelsApprovalKindRegisterChange();
  void KeepWithoutSum(std::string_view field);
  void cdsLevelsApprovalBeforePost();

  TVosDBForm& form_;
};

}  // namespace orvane::modules
