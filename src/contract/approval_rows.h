#pragma once

// What approval rows of all kinds of documents tell beside their decision.

#include "contract/field.h"

namespace orvane::approval_rows {

/// Why whoever decided the level did so.
inline constexpr auto ApprovalNote = String("ApprovalNote", 200, Plain, "Причина");
/// Whose decision the level whose turn it is waits for today; told by loads of a whole document.
inline constexpr auto WaitsFor = String("WaitsFor", 250, Joined, "Чака решение от");

}  // namespace orvane::approval_rows
