#pragma once

// Rows whose names come from the server in the screen's language: switched, they are fetched anew,
// and every dataset stays on its row. While the form holds typing (TVosBaseForm::HoldsTyping) or a
// cell is being typed into, nothing is touched: the rows come when it is saved or given up.
//
//   LanguageSwitch language_{*this, {&cdsStructure}, [this] { dmStructure->Fetch(); }};
//   void AfterRefreshActions() override { language_.Settle(); }

#include <functional>
#include <vector>

#include "data/client_dataset.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::kit {

class LanguageSwitch {
 public:
  /// `dataSets`: all that `fetch` replaces, masters before their details.
  LanguageSwitch(TVosBaseForm& form, std::vector<TVosClientDataSet*> dataSets,
                 std::function<void()> fetch);

  /// At the end of each event: fetches, once the rows speak another language than the screen and
  /// nothing is being typed.
  void Settle();

 private:
  TVosBaseForm& form_;
  std::vector<TVosClientDataSet*> dataSets_;
  std::function<void()> fetch_;
  bool shownFirst_;  ///< the language that the rows came in
};

}  // namespace orvane::kit
