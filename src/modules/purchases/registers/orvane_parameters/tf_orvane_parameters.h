#pragma once

// The module's parameters ("Параметри"): one record in an inspector, written back parameter by
// parameter.

#include <memory>
#include <vector>

#include "host/controls/combo.h"
#include "host/controls/inspector.h"
#include "host/form.h"
#include "modules/purchases/registers/orvane_parameters/tdm_orvane_parameters.h"

namespace orvane::modules {

class TfOrvaneParameters : public TVosDBForm {
 public:
  explicit TfOrvaneParameters(const FormIdentity& identity);

  TVosClientDataSet* MainDataSet() const override { return &dmOrvaneParameters->cdsParameters; }

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { di.readOnly = !May(paEdit); }
  std::span<const LiveRow> LiveRows() const override;

 private:
  static const LiveRow kLive[];

  void AddOwnActions();
  void SetUpItems();
  void VosBaseFormShow();
  void acSaveExecute();
  void acCancelExecute();
  /// An open editor is an edit of the row, though the row does not hold it yet.
  bool IsTyping() const;

  std::unique_ptr<TdmOrvaneParameters> dmOrvaneParameters;
  std::vector<std::unique_ptr<TVosMTCombo>> combos_;
  TVosDataInspector di;
};

}  // namespace orvane::modules
