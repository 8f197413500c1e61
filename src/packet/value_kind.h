#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

namespace orvane {

/// What a field holds. Decides how a value is kept in memory, in a packet, and in each engine.
enum class ValueKind : std::uint8_t {
  Bool,    ///< 0 or 1
  Byte,    ///< 0 to 255
  Int16,   ///< -32768 to 32767
  Int32,   ///< 32-bit integer
  Code,    ///< code of up to 19 digits, 64-bit integer
  Amount,  ///< exact decimal with 4 places
  Rate,    ///< exact decimal with 7 places
  Double,  ///< a quantity, in the smallest unit of its block
  Date,    ///< a day
  Stamp,   ///< a moment
  String,  ///< text with a limit of code points
  Memo,    ///< text; how long a new one may be is the contract's
};

/// How values of a kind are kept: as 64-bit integers (for decimals the mantissa), doubles or text.
enum class Storage : std::uint8_t { Integer, Real, Text };

struct ValueKindRow {
  ValueKind kind;
  std::string_view name;
  Storage storage;
  int scale;  ///< decimals of Amount and Rate, 0 for the others
  std::int64_t lowest;
  std::int64_t highest;
};

inline constexpr std::int64_t kLowest64 = std::numeric_limits<std::int64_t>::min();
inline constexpr std::int64_t kHighest64 = std::numeric_limits<std::int64_t>::max();

/// The table of value types, in the order of the enumeration.
inline constexpr ValueKindRow kValueKinds[] = {
    {ValueKind::Bool, "Bool", Storage::Integer, 0, 0, 1},
    {ValueKind::Byte, "Byte", Storage::Integer, 0, 0, 255},
    {ValueKind::Int16, "Int16", Storage::Integer, 0, -32768, 32767},
    {ValueKind::Int32, "Int32", Storage::Integer, 0, -2147483647 - 1, 2147483647},
    {ValueKind::Code, "Code", Storage::Integer, 0, kLowest64, kHighest64},
    {ValueKind::Amount, "Amount", Storage::Integer, 4, kLowest64, kHighest64},
    {ValueKind::Rate, "Rate", Storage::Integer, 7, kLowest64, kHighest64},
    {ValueKind::Double, "Double", Storage::Real, 0, 0, 0},
    {ValueKind::Date, "Date", Storage::Integer, 0, -719162, 2932896},
    {ValueKind::Stamp, "Stamp", Storage::Integer, 0, kLowest64, kHighest64},
    {ValueKind::String, "String", Storage::Text, 0, 0, 0},
    {ValueKind::Memo, "Memo", Storage::Text, 0, 0, 0},
};

constexpr const ValueKindRow& RowOf(ValueKind kind) {
  return kValueKinds[static_cast<std::size_t>(kind)];
}

}  // namespace orvane
