#pragma once

// Rows of grids: whether they may be typed, what an empty grid says, and how one is given up and
// deleted.

#include <string_view>

#include "packet/floors.h"

namespace orvane::host {
class TVosBaseForm;
class TVosDBGrid;
}  // namespace orvane::host

namespace orvane::kit {

/// A grid of rows as the document offers it.
struct OfferedRows {
  TVosDBGrid& grid;
  std::string_view none;  ///< "Няма материали и услуги."
  std::string_view key;   ///< " Insert добавя първия ред."
};

/// Settles whether rows may be changed and added. What an empty grid says of its key is said where
/// the key works.
void OfferRows(const OfferedRows& rows, bool writable, bool mayInsert);

/// There is a saved row in the grid that may be deleted.
bool HasRowToDelete(const TVosDBGrid& grid);

/// "Отказ", the user's own command: what is typed in the open editor is given up first, and then,
/// without a question, the row in edit. False when it was the editor's.
bool CancelRow(TVosBaseForm& form, TVosDBGrid& grid);

/// Deletes the current row after the host's question; nothing happens without rows.
void DeleteAsked(TVosBaseForm& form, TVosDBGrid& grid);

}  // namespace orvane::kit
