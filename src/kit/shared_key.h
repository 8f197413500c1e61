#pragma once

// One key, several actions, one owner at a time. The old owner lets go before the new one takes the
// key, or neither would answer to it.
//
//   constexpr SharedKey kF9{KeyCode::F9, {"acForConfirmation", "acSave"}};
//   void AfterRefreshActions() override { SettleKey(*this, kF9); }

#include <array>
#include <string_view>

#include "host/keys.h"
#include "packet/floors.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::kit {

/// A key and the two actions that share it. They are never live together.
struct SharedKey {
  KeyStroke key;
  std::array<std::string_view, 2> owners;
};

/// Gives the key to the owner that is live now: its hint becomes its caption. The other one has no
/// key then and hints at it: "Запис (F9)". While neither is live the key stays where it is.
void SettleKey(TVosBaseForm& form, const SharedKey& shared);

}  // namespace orvane::kit
