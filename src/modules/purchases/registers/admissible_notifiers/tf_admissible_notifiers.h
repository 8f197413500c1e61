#pragma once

// The register of admissible requesters ("Допустими заявители"): who may request for which cost
// centre.

#include <memory>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/form.h"
#include "kit/register_screen.h"
#include "modules/purchases/registers/admissible_notifiers/tdm_admissible_notifiers.h"

namespace orvane::modules {

class TfAdmissibleNotifiers : public TVosDBForm {
 public:
  explicit TfAdmissibleNotifiers(const FormIdentity& identity);

  TVosClientDataSet* MainDataSet() const override {
    return &dmAdmissibleNotifiers->cdsAdmissibleNotifiers;
  }

  std::unique_ptr<TdmAdmissibleNotifiers> dmAdmissibleNotifiers;
  TVosMTCombo cbCostCenter;
  TVosMTCombo cbEmployee;
  TVosDBGrid gAdmissibleNotifiers;

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { register_.ChangeAccess(); }
  std::span<const LiveRow> LiveRows() const override;

 private:
  void VosBaseFormShow() { dmAdmissibleNotifiers->Fetch(); }

  RegisterScreen register_;
};

}  // namespace orvane::modules
