#pragma once

// The register of kinds of supplies ("Видове покупки"): one grid, saved row by row.

#include <memory>

#include "host/controls/grid.h"
#include "host/form.h"
#include "kit/register_screen.h"
#include "modules/purchases/registers/kind_supplies/tdm_kind_supplies.h"

namespace orvane::modules {

class TfKindSupplies : public TVosDBForm {
 public:
  explicit TfKindSupplies(const FormIdentity& identity);

  TVosClientDataSet* MainDataSet() const override { return &dmKindSupplies->cdKindSupplies; }

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { register_.ChangeAccess(); }
  std::span<const LiveRow> LiveRows() const override { return kRegisterLive; }

 private:
  void VosBaseFormShow();

  std::unique_ptr<TdmKindSupplies> dmKindSupplies;
  TVosDBGrid gKindSupplies;
  RegisterScreen register_;
};

}  // namespace orvane::modules
