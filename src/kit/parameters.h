#pragma once

// Parameters of the store as screens read them.

#include <cstdint>
#include <string>

namespace orvane {

class TVosBaseForm;

/// A whole number; 0 when the parameter is unset, blank, or no whole number.
std::int64_t ParamNumber(const TVosBaseForm& form, int group, int number);

/// The mask of sums with the installation's decimals: "{{;-,;+}#,#}[*12[#]][;.[#[*1[#]]]]" for two.
std::string SumMask(int decimals);
/// The same without a sign or blanks: "[*8[#]][;.[#[*1[#]]]]" for eight digits and two decimals.
std::string UnsignedSumMask(int wholeDigits, int decimals);

}  // namespace orvane
