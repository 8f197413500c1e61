#pragma once

// The register of departments ("Дирекции"): one grid, saved row by row. The simplest screen of the
// module and the pattern of all registers.

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/form.h"
#include "kit/register_screen.h"
#include "modules/purchases/registers/department/tdm_department.h"

namespace orvane::modules {

class TfDepartment : public TVosDBForm {
 public:
  explicit TfDepartment(const FormIdentity& identity);

  TVosClientDataSet* MainDataSet() const override { return &dmDepartment->cdsDepartment; }

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { register_.ChangeAccess(); }
  std::span<const LiveRow> LiveRows() const override { return kRegisterLive; }

 private:
  void VosBaseFormShow();

  std::unique_ptr<TdmDepartment> dmDepartment;
  TVosMTCombo cbSysUser;
  TVosDBGrid gDepartment;
  RegisterScreen register_;
};

}  // namespace orvane::modules
