#pragma once

#include "packet/floors.h"

namespace orvane::desktop {

class ControlView;

/// Tells screen readers of the views: they can have the focus although no click gives it to them,
/// their name is the place the cursor is in, their value what stands there. Once a program.
void InstallAccessibleViews();
/// The cursor of the focused view moved, or what stands there changed.
void AnnouncePlace(ControlView& view);

}  // namespace orvane::desktop
