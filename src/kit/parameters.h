#pragma once

// Parameters of the store as screens read them.

#include <cstdint>
#include <string>
#include <string_view>

#include "packet/floors.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::kit {

/// A whole number; 0 when the parameter is unset, blank, or no whole number.
std::int64_t ParamNumber(const TVosBaseForm& form, int group, int number);

/// The same where the screen cannot work without it: refuses (message and Abort) while it is unset.
std::int64_t RequiredParam(TVosBaseForm& form, int group, int number, std::string_view refusal);

/// The mask of rates of exchange: six digits and seven behind the comma.
inline constexpr std::string_view kRateMask = "[*6[#]][;,[*7[#]]]";
/// The mask of sums with the installation's decimals: "{{;-,;+}#,#}[*12[#]][;.[#[*1[#]]]]" for two.
std::string SumMask(int decimals);
/// The same without a sign or blanks: "[*8[#]][;.[#[*1[#]]]]" for eight digits and two decimals.
std::string UnsignedSumMask(int wholeDigits, int decimals);

}  // namespace orvane::kit
