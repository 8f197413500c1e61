#pragma once

// Kinds of supplies: the dataset of the register and the check of a row.

#include "data/data_module.h"
#include "host/form.h"

namespace orvane::modules {

class TdmKindSupplies : public TVosDataModule {
 public:
  explicit TdmKindSupplies(TVosDBForm& form);

  /// Fetches the kinds in one call.
  void Fetch();

  TVosSQLConnection sqKindSupplies;
  TVosClientDataSet cdKindSupplies;
  TDataSource dsKindSupplies;

 private:
  TVosDBForm& form_;
};

}  // namespace orvane::modules
