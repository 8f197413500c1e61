#pragma once

// Keys between Qt and the model.

#include <string>

#include "host/keys.h"
#include "packet/floors.h"

class QKeyEvent;

namespace orvane::desktop {

/// The key pressed, letters by their Latin place whatever the keyboard's layout; None for keys that
/// the model does not know and for modifiers alone.
KeyStroke StrokeOf(const QKeyEvent& event);

/// The printable characters the key types; empty for keys that type none and for chords with Ctrl
/// or Alt.
std::string TypedBy(const QKeyEvent& event);

/// Qt's key of a stroke, and whether Shift is held, for those who press keys themselves. Shift+Tab
/// is Qt's Backtab.
int QtKeyOf(KeyStroke stroke);

}  // namespace orvane::desktop
