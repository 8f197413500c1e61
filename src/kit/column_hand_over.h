#pragma once

// Columns that Enter or Tab leave for another one than the next:
//
//   HandOverColumns(gStructure, {
//       {.from = "CostCenter", .to = "Department", .states = InState::Insert},
//       {.from = "Section", .to = "Department", .states = InState::NotInsert, .nextRow = true},
//   });

#include <functional>
#include <string_view>
#include <vector>

#include "host/action.h"

namespace orvane::host {
class TVosDBGrid;
}  // namespace orvane::host

namespace orvane::kit {

/// One column and where its keys lead. The first row of the table that fits is taken; where none
/// does, the grid goes its own way.
struct HandOver {
  std::string_view from;
  std::string_view to = {};
  InState states = InState::Any;
  bool onDown = false;   ///< the arrow down does the same
  bool nextRow = false;  ///< to the column of the next row; the last row keeps the grid's own way
  /// In place of `to` where the row decides: an empty answer is no column of ours.
  std::function<std::string_view()> choose = {};
};

/// Binds OnKeyDown of the grid. What is typed in the column is taken first; Shift alone goes back,
/// as everywhere.
void HandOverColumns(TVosDBGrid& grid, std::vector<HandOver> table);

}  // namespace orvane::kit
