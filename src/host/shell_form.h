#pragma once

// The host's menu: the module's points that the user may open, one a row.

#include "host/controls/grid.h"
#include "host/form.h"

namespace orvane::host {

class TfVosShell : public TVosBaseForm {
 public:
  explicit TfVosShell(VosApplication& app);

  /// Reads the points that hold paOpen again.
  void FillPoints();

  std::string StatusText() const override;

 protected:
  void OnShow() override { FillPoints(); }
  std::span<const LiveRow> LiveRows() const override;
  /// Closing the menu closes every screen; one that refuses keeps the menu too.
  void OnClose() override;

 private:
  void OpenCurrent();

  TVosClientDataSet cdsPoints_;
  TDataSource dsPoints_;
  TVosDBGrid gPoints_;
};

}  // namespace orvane::host
