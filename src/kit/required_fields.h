#pragma once

// Fields that must be filled before a row or head is saved: the first missing one is told and gets
// the focus.

#include <initializer_list>
#include <string_view>

#include "packet/floors.h"

namespace orvane::host {
class TVosBaseForm;
class TVosDBGrid;
class TVosDataInspector;
}  // namespace orvane::host

namespace orvane::kit {

/// Kinds of message.
inline constexpr int kErrorMessage = 0;
inline constexpr int kWarningMessage = 2;

/// Refuses (message and Abort) at the first field that is empty, in the order given. `text` holds
/// one %s for the column's title or the item's label. The focus goes to the field.
void RequireFields(TVosBaseForm& form, TVosDBGrid& grid, std::string_view text,
                   std::initializer_list<std::string_view> fields, int kind = kWarningMessage);
void RequireFields(TVosBaseForm& form, TVosDataInspector& inspector, std::string_view text,
                   std::initializer_list<std::string_view> fields, int kind = kWarningMessage);

/// Message with the form's caption, then the focus on the column, then Abort.
[[noreturn]] void RefuseAt(TVosBaseForm& form, TVosDBGrid& grid, std::string_view field,
                           std::string_view text, int kind = kWarningMessage);
[[noreturn]] void RefuseAt(TVosBaseForm& form, TVosDataInspector& inspector, std::string_view field,
                           std::string_view text, int kind = kWarningMessage);

}  // namespace orvane::kit
