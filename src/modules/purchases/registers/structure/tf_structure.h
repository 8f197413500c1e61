#pragma once

// The register of the organisational structure ("Организационна структура"): for each cost centre
// its department and its section. F8 leads to the deputies of its units.

#include <memory>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/form.h"
#include "kit/language_switch.h"
#include "kit/register_screen.h"
#include "modules/purchases/registers/structure/tdm_structure.h"

namespace orvane::modules {

class TfStructure : public TVosDBForm {
 public:
  explicit TfStructure(const FormIdentity& identity);

  TVosClientDataSet* MainDataSet() const override { return &dmStructure->cdsStructure; }
  /// The cursor stands beside the key of a row that is there: what acts on the whole row is
  /// offered.
  bool IsBesideCostCenter() const;
  bool MayPrint() const;

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { register_.ChangeAccess(); }
  void AfterRefreshActions() override { language_.Settle(); }
  std::span<const LiveRow> LiveRows() const override;

 private:
  void VosBaseFormShow();

  std::unique_ptr<TdmStructure> dmStructure;
  TVosMTCombo cbCostCenters;
  TVosMTCombo cbDepartments;
  TVosMTCombo cbSections;
  TVosDBGrid gStructure;
  RegisterScreen register_;
  LanguageSwitch language_{*this, {&dmStructure->cdsStructure}, [this] { dmStructure->Fetch(); }};
};

}  // namespace orvane::modules
