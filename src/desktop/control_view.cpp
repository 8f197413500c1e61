#include "desktop/control_view.h"

#include "host/form.h"

namespace orvane::desktop {

bool ControlView::HasFocus() const {
  return control_.Form().ActiveControl() == &control_;
}

bool ControlView::Look() {
  const std::uint64_t control = control_.Version();
  const std::uint64_t shown = ShownVersion();
  const bool focus = HasFocus();
  if (Widget().isHidden() == control_.visible) Widget().setVisible(control_.visible);
  if (control == seenControl_ && shown == seenShown_ && focus == seenFocus_) return false;
  seenControl_ = control;
  seenShown_ = shown;
  seenFocus_ = focus;
  Changed();
  return true;
}

}  // namespace orvane::desktop
