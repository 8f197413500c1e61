#pragma once

#include <string>
#include <string_view>

namespace orvane {

/// Whether a currency of this name ("Лев", "Български лев", "BGN") is the lev.
bool IsLev(std::string_view currencyName);

/// A caption that speaks of the lev ("Левова сума на искането"): as it stands while the national
/// currency is the lev or has no name; for another one `plain` with its name: "Сума на искането в
/// евро".
std::string NationalCaption(std::string_view levCaption, std::string_view plain,
                            std::string_view currencyName);

}  // namespace orvane
