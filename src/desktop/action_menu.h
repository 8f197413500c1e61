#pragma once

#include <QtCore/QPoint>
#include <string>
#include <vector>

class QWidget;

#include "packet/floors.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::desktop {

/// Opens a menu of a form's actions, with their keys, at a point of the screen. It closes by itself
/// and returns at once.
void OpenActionMenu(QWidget& owner, TVosBaseForm& form, const std::vector<std::string>& actions,
                    const QPoint& at);

}  // namespace orvane::desktop
