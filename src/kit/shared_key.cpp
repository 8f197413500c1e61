#include "kit/shared_key.h"

#include "host/form.h"

namespace orvane::kit {
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
  // At first both have it: one key stands at one caption only.
  TAction& second = *form.FindAction(shared.owners[1]);
  if (form.FindAction(shared.owners[0])->shortcut == second.shortcut) TakeKey(second, shared.key);
}

}  // namespace orvane::kit
