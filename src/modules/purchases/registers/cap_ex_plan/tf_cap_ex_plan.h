#pragma once

// The capital-expenditure plan ("План за  капиталови разходи"): one position at a time. A code in
// the code box opens its position or starts a new one; the rest is entered in the inspector below.

#include <memory>
#include <string>
#include <vector>

#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/form.h"
#include "kit/key_navigation.h"
#include "modules/purchases/registers/cap_ex_plan/tdm_cap_ex_plan.h"

namespace orvane::modules {

class TfCapExPlan : public TVosDBForm {
 public:
  explicit TfCapExPlan(const FormIdentity& identity);

  TVosClientDataSet* MainDataSet() const override { return &dmCapExPlan->cdsCapExPlan; }

 protected:
  void OnShow() override { VosBaseFormShow(); }
  void OnChangeAccess() override { SettleAccess(); }
  std::span<const LiveRow> LiveRows() const override;
  void AfterRefreshActions() override;
  bool HandleFormKey(KeyStroke key) override;

 private:
  static const LiveRow kLive[];

  void AddOwnActions();
  void SetUpItems();
  void VosBaseFormShow();
  void SettleAccess();

  void eCodeExit();
  void diExit();
  /// Checks and posts; Abort when a field is missing or the server refused.
  void Save();
  void Load(Nav mode, int offset);
  void Search(std::string_view field, bool partial);

  void acSaveExecute();
  void acCancelExecute();
  void acDeleteExecute();
  void acSearchExecute() { Search("Code", false); }
  void acSearchByNameExecute() { Search(NameField(), false); }
  void acSearchByPartNameExecute() { Search(NameField(), true); }
  std::string_view NameField() const { return FirstLanguage() ? "Name" : "Name2"; }

  /// A position is loaded, and the code box shows no other's number.
  bool HasPosition() const;
  bool IsTyping() const;

  std::unique_ptr<TdmCapExPlan> dmCapExPlan;
  TKeyEdit eCode;
  TVosDataInspector di;
  KeyNavigation navigation_;
  LoadCode state_ = LoadCode::Between;
};

}  // namespace orvane::modules
