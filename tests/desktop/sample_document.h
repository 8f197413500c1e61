#pragma once

// A document screen over datasets in memory: key edits with navigation, two inspectors, pages with
// grids, actions that change with the focus. It is shaped like the purchase documents and knows
// nothing of them.

#include <memory>
#include <string>
#include <vector>

#include "data/lookup_table.h"
#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/form.h"
#include "packet/application_server.h"
#include "packet/clock.h"

namespace orvane::desktop::sample {

/// Answers logins; the sample fetches nothing.
class SampleServer final : public IApplicationServer {
 public:
  Answer<Greeting> Greet() override { return Greeting{}; }
  Answer<SessionInfo> LogIn(const LoginRequest& request) override;
  Answer<Done> LogOut(const Caller&) override { return Done(); }
  Answer<std::vector<DataPacket>> Fetch(const Caller&, const std::vector<FetchRequest>&) override;
  Answer<ApplyAnswer> Apply(const Caller&, const ApplyRequest&) override;
  Answer<VariantArray> Call(const Caller&, const MethodCall&) override { return VariantArray(); }
};

class TfSample : public TVosBaseForm {
 public:
  explicit TfSample(VosApplication& app);
  ~TfSample() override;

  TVosClientDataSet* MainDataSet() const override { return &cdsHead_; }

  mutable TVosClientDataSet cdsHead_;
  TDataSource dsHead_;
  TVosClientDataSet cdsRows_;
  TDataSource dsRows_;
  TVosClientDataSet cdsDates_;
  TDataSource dsDates_;
  TVosSQLConnection connection_;
  TVosClientDataSet cdsUnits_;
  TLookupTable units_;
  TVosClientDataSet cdsCenters_;
  TLookupTable centers_;

  TVosMTCombo cbUnits;
  TVosMTCombo cbCenters;
  TKeyEdit eIdNum;
  TKeyEdit eVersion;
  TLabel lStatus;
  TVosDataInspector diMain;
  TVosDataInspector diAdmin;
  TVosDBGrid gRows;
  TVosDBGrid gDates;
  TPageControl pcTables;

  std::vector<std::string> executed;  ///< names of actions, as they ran
  bool askBeforeDelete = false;

 protected:
  std::span<const LiveRow> LiveRows() const override;
  void OnShow() override { FocusControl(&eIdNum); }

 private:
  void AddSampleActions();
  void FillDatasets();
  void PlaceControls();
};

}  // namespace orvane::desktop::sample
