#pragma once

#include <string>
#include <string_view>

namespace orvane::server {

/// A Bulgarian name in Latin letters, as the country's law on transliteration writes it; other
/// letters stay.
std::string InLatin(std::string_view bulgarian);

/// The nine digits of a Bulgarian company's identification number whose first eight are given: the
/// last is their check digit.
std::string WithCheckDigit(std::string_view eightDigits);

/// `pattern` with its one "%s" replaced; without one, as it is.
std::string Filled(std::string_view pattern, std::string_view text);

}  // namespace orvane::server
