#pragma once

// The small signs beside captions, drawn from a table of strokes.

#include <QtCore/QRect>
#include <string_view>

#include "packet/floors.h"

class QPainter;

namespace orvane::desktop {

inline constexpr int kIconSide = 14;

/// Paints the icon of that name, 14 pixels square; a small plain square when there is none of
/// that name.
/// Actions that are not live are grey.
void PaintIcon(QPainter& painter, const QPoint& topLeft, std::string_view name, bool live);

}  // namespace orvane::desktop
