#pragma once

// Finding things on a form by the names a walk uses: fields, columns, items, key edits.

#include <optional>
#include <string>
#include <string_view>

#include "packet/floors.h"

namespace orvane::host {

class Control;
class TVosBaseForm;
class TVosDBGrid;

/// Where a field can be typed into: a control and what is pointed at in it, as in Pointed.
struct FieldPlace {
  Control* control = nullptr;
  int row = 0;     ///< the grid's current record, or the inspector's item
  int column = 0;  ///< of a grid
};

/// The place of a field or key edit of that name: first in the focused control, then on the form.
/// Empty when no visible one has it.
std::optional<FieldPlace> FindPlace(const TVosBaseForm& form, std::string_view name);

/// What a person reads at that name: a key edit's text, or the current row's text of a field of any
/// dataset on the form. Empty when the form has no such name.
std::optional<std::string> ReadValue(const TVosBaseForm& form, std::string_view name);

/// The grid of that name, or the focused one for an empty name; null when there is none.
TVosDBGrid* FindGrid(const TVosBaseForm& form, std::string_view name);

}  // namespace orvane::host
