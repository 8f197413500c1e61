#include "kit/shared_key.h"

#include "host/form.h"

namespace orvane {

void HandOverKey(TVosBaseForm& form, KeyStroke key, std::string_view owner,
                 std::initializer_list<std::string_view> others) {
  for (std::string_view name : others) {
    TAction* other = form.FindAction(name);
    if (other == nullptr) continue;
    other->enabled = false;
    other->shortcut = {};
    other->hint = other->caption + " (" + KeyText(key) + ")";
  }
  TAction* action = form.FindAction(owner);
  if (action == nullptr) return;
  action->shortcut = key;
  action->hint = action->caption;
}

}  // namespace orvane
