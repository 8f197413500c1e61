#pragma once

// Capital-expenditure plan: the one position that is shown, and the moves between positions.

#include <functional>
#include <string>

#include "contract/workflow.h"
#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"

namespace orvane::modules {

class TdmCapExPlan : public TVosDataModule {
 public:
  explicit TdmCapExPlan(TVosDBForm& form);

  /// Asks for the position that a move leads to (one call) and, when there is one, loads it and
  /// tells its code. Answers the state: Between for an exact code or a whole move, First and Last
  /// at the ends, None for an unknown code.
  LoadCode GetRecord(Nav mode, int offset, const std::string& code);
  /// A new position under a code (digits, as the code box takes them) that the plan does not have.
  void StartPosition(const std::string& code);
  bool HasPosition() const { return !cdsCapExPlan.IsEmpty(); }

  /// A position was loaded.
  std::function<void(const std::string& code)> OnFound;

  TVosSQLConnection sqlcCapExPlan;
  TVosSQLConnection sqlcSQL;
  TVosClientDataSet cdsCapExPlan;
  TVosClientDataSet cdsSearch;
  TLookupTable search;
  TDataSource dsCapExPlan;
};

}  // namespace orvane::modules
