#pragma once

#include <string>

namespace orvane {

/// Compares a page of docs/ with what the tables print. ORVANE_REWRITE=1 writes it anew; the
/// difference is then reviewed like any other.
void ExpectPage(const std::string& name, const std::string& printed);

}  // namespace orvane
