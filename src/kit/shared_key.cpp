#include "kit/shared_key.h"

#include "host/form.h"

namespace orvane {
namespace {

void TakeKey(TAction& action, KeyStroke key) {
  action.enabled = false;
  action.shortcut = {};
  action.hint = action.caption + " (" + KeyText(key) + ")";
}

void GiveKey(TAction& action, KeyStroke key) {
  action.shortcut = key;
  action.hint = action.caption;
}

}  // namespace

void SettleKey(TVosBaseForm& form, const SharedKey& shared) {
  for (std::size_t owner = 0; owner < shared.owners.size(); ++owner) {
    TAction* action = form.FindAction(shared.owners[owner]);
    if (!action->enabled) continue;
    TakeKey(*form.FindAction(shared.owners[1 - owner]), shared.key);
    return GiveKey(*action, shared.key);
  }
}

}  // namespace orvane
