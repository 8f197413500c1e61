#pragma once

// What the purchases module brings to the host: its screen classes, its points and its siblings.

#include <memory>
#include <string_view>

#include "packet/floors.h"

namespace orvane::host {
class VosApplication;
}  // namespace orvane::host

namespace orvane::modules {

class TfOrvaneMain;

/// Keys of the two sibling modules that the documents call into.
inline constexpr std::string_view kSuppliesModule = "Supplies";
inline constexpr std::string_view kInvoicesModule = "Invoices";

/// Registers every screen class by name, in the module's order, and tells the host the module's
/// points and siblings. Classes without a factory answer that the screen is not available yet.
void RegisterOrvaneModule(VosApplication& app);

/// Opens the module for the logged-in user: creates its main form. Null when it refused to open
/// (the user was told why).
std::unique_ptr<TfOrvaneMain> StartOrvaneModule(VosApplication& app);

}  // namespace orvane::modules
