#pragma once

// What every screen's data module has: its own connection, the shared search connection, and
// fetches that travel together.

#include <initializer_list>
#include <memory>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "data/connection.h"

namespace orvane::data {

/// Fetches several datasets with one call and loads each; closes the connections of all.
void FetchTogether(std::initializer_list<TVosClientDataSet*> dataSets);
void FetchTogether(const std::vector<TVosClientDataSet*>& dataSets);

/// Base of the screens' data modules.
class TVosDataModule {
 public:
  TVosDataModule(ClientSession& session, ScreenPoint point) : session_(session), point_(point) {}
  virtual ~TVosDataModule() = default;
  TVosDataModule(const TVosDataModule&) = delete;
  TVosDataModule& operator=(const TVosDataModule&) = delete;

  ClientSession& Session() const { return session_; }
  ScreenPoint Point() const { return point_; }

 private:
  ClientSession& session_;
  ScreenPoint point_;
};

}  // namespace orvane::data
