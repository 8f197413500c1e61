#pragma once

// The register of structure deputies ("Заместници"): structural units above, the dated deputies of
// the current unit below.

#include <memory>
#include <string_view>

#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/form.h"
#include "kit/language_switch.h"
#include "kit/register_screen.h"
#include "modules/purchases/registers/structure_deputies/tdm_structure_deputies.h"

namespace orvane::modules {

class TfStructureDeputies : public TVosDBForm {
 public:
  explicit TfStructureDeputies(const FormIdentity& identity);

  /// Of the grid in use.
  TVosClientDataSet* MainDataSet() const override { return &register_.GridInUse().DataSet(); }

  /// Only the code of the unit's own type may be typed; 0 is no type yet, and no code.
  void ActiveColsDependOnUnitType(std::int64_t type);

  std::unique_ptr<TdmStructureDeputies> dmStructureDeputies;
  TVosMTCombo cbNomIn245;
  TVosMTCombo cbCostCenters;
  TVosMTCombo cbDepartments;
  TVosMTCombo cbSections;
  TVosMTCombo cbEmployees;
  TVosDBGrid gStructDeputies;
  TVosDBGrid gStructDepDates;
  RegisterScreen register_;

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { register_.ChangeAccess(); }
  void AfterRefreshActions() override { language_.Settle(); }
  std::span<const LiveRow> LiveRows() const override;

 private:
  void VosBaseFormShow() { dmStructureDeputies->Fetch(); }
  void gStructDeputiesRowChanged();
  std::string_view ColumnOfType() const;
  void RefuseUnitWithPeriods();
  TAction OtherGridAction();
  LanguageSwitch language_{
      *this,
      {&dmStructureDeputies->cdsStructureDeputies, &dmStructureDeputies->cdsStructDepDates},
      [this] { dmStructureDeputies->Fetch(); }};
};

}  // namespace orvane::modules
