#pragma once

// The register of approval levels ("Нива на одобрение"): one grid, saved row by row. The screen is
// also created once at the module's start, never shown then: it asks for the current employee.

#include <memory>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/form.h"
#include "kit/language_switch.h"
#include "kit/register_screen.h"
#include "modules/purchases/registers/levels_approval/tdm_levels_approval.h"

namespace orvane::modules {

class TfLevelsApproval : public TVosDBForm {
 public:
  explicit TfLevelsApproval(const FormIdentity& identity);

  /// The employee code of the logged-in user; Null when he has no employee record, -1 when he has
  /// more than one.
  Variant GetCurremtEmployee();

  TVosClientDataSet* MainDataSet() const override { return &dmLevelsApproval->cdsLevelsApproval; }

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { register_.ChangeAccess(); }
  void AfterRefreshActions() override { language_.Settle(); }
  std::span<const LiveRow> LiveRows() const override;

 private:
  static const LiveRow kLive[];

  void VosBaseFormShow();
  void SetUpLookups();
  void SetUpColumns();
  void ReadParameters();
  bool HasRows() const { return dmLevelsApproval->HasRows(); }

  std::unique_ptr<TdmLevelsApproval> dmLevelsApproval;
  TVosMTCombo cbKindRegister;
  TVosMTCombo cbKindSupplies;
  TVosMTCombo cbApproval;
  TVosDBGrid gLevelsApproval;
  RegisterScreen register_;
  LanguageSwitch language_{
      *this, {&dmLevelsApproval->cdsLevelsApproval}, [this] { dmLevelsApproval->Fetch(); }};
};

}  // namespace orvane::modules
