#pragma once

// The register of employees financing supplies ("Служители, финансиращи доставки"): who it is for
// each kind of department.

#include <memory>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/form.h"
#include "kit/language_switch.h"
#include "kit/register_screen.h"
#include "modules/purchases/registers/employees_fin_supp/tdm_employees_fin_supp.h"

namespace orvane::modules {

class TfEmployeesFinSupp : public TVosDBForm {
 public:
  explicit TfEmployeesFinSupp(const FormIdentity& identity);

  TVosClientDataSet* MainDataSet() const override {
    return &dmEmployeesFinSupp->cdsEmployeesFinSupp;
  }
  bool HasRows() const { return !dmEmployeesFinSupp->cdsEmployeesFinSupp.IsEmpty(); }

  std::unique_ptr<TdmEmployeesFinSupp> dmEmployeesFinSupp;
  TVosMTCombo cbNomIn246;
  TVosMTCombo cbEmployees;
  TVosDBGrid gEmployeesFinSupp;

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { register_.ChangeAccess(); }
  void AfterRefreshActions() override { language_.Settle(); }
  std::span<const LiveRow> LiveRows() const override;

 private:
  void VosBaseFormShow() { dmEmployeesFinSupp->Fetch(); }

  RegisterScreen register_;
  LanguageSwitch language_{
      *this, {&dmEmployeesFinSupp->cdsEmployeesFinSupp}, [this] { dmEmployeesFinSupp->Fetch(); }};
};

}  // namespace orvane::modules
