#pragma once

// Fields and providers as client and server both know them. A field is a typed constant, spelled
// once: the screen, the data module and the server's provider all name the same one.
//
//   namespace department {
//   inline constexpr auto Code = Int16("Code", Key | Required, "Код");
//   inline constexpr auto dspDepartment = Writes("dspDepartment", "Department", Code, Name);
//   }

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "packet/value_kind.h"

namespace orvane {

/// What a provider does with a field. Without flags a field is sent when it changed.
enum FieldFlags : std::uint8_t {
  Plain = 0,
  Key = 1,       ///< part of the row's key: sent in update, where and key
  Required = 2,  ///< the server refuses a row without it
  Joined = 4,    ///< supplied for display by the server, never sent
  Stamped = 8,   ///< whatever is sent, the server writes its own value (time, user)
  Folded = 16,   ///< the table keeps the fold of the text beside it, in the column Fold<name>
};

constexpr FieldFlags operator|(FieldFlags left, FieldFlags right) {
  return static_cast<FieldFlags>(static_cast<int>(left) | static_cast<int>(right));
}

struct FieldDef {
  std::string_view name;
  ValueKind kind = ValueKind::Int32;
  std::uint16_t size = 0;  ///< code points of a String
  FieldFlags flags = Plain;
  std::string_view label;  ///< what the user reads, in messages and titles

  constexpr bool Is(FieldFlags flag) const { return (flags & flag) != 0; }
};

constexpr FieldDef Bit(std::string_view name, FieldFlags flags = Plain,
                       std::string_view label = {}) {
  return {name, ValueKind::Bool, 0, flags, label};
}
constexpr FieldDef Byte(std::string_view name, FieldFlags flags = Plain,
                        std::string_view label = {}) {
  return {name, ValueKind::Byte, 0, flags, label};
}
constexpr FieldDef Int16(std::string_view name, FieldFlags flags = Plain,
                         std::string_view label = {}) {
  return {name, ValueKind::Int16, 0, flags, label};
}
constexpr FieldDef Int32(std::string_view name, FieldFlags flags = Plain,
                         std::string_view label = {}) {
  return {name, ValueKind::Int32, 0, flags, label};
}
constexpr FieldDef Code19(std::string_view name, FieldFlags flags = Plain,
                          std::string_view label = {}) {
  return {name, ValueKind::Code, 0, flags, label};
}
constexpr FieldDef Amount(std::string_view name, FieldFlags flags = Plain,
                          std::string_view label = {}) {
  return {name, ValueKind::Amount, 0, flags, label};
}
constexpr FieldDef Rate(std::string_view name, FieldFlags flags = Plain,
                        std::string_view label = {}) {
  return {name, ValueKind::Rate, 0, flags, label};
}
constexpr FieldDef Real(std::string_view name, FieldFlags flags = Plain,
                        std::string_view label = {}) {
  return {name, ValueKind::Double, 0, flags, label};
}
constexpr FieldDef Day(std::string_view name, FieldFlags flags = Plain,
                       std::string_view label = {}) {
  return {name, ValueKind::Date, 0, flags, label};
}
constexpr FieldDef Moment(std::string_view name, FieldFlags flags = Plain,
                          std::string_view label = {}) {
  return {name, ValueKind::Stamp, 0, flags, label};
}
constexpr FieldDef String(std::string_view name, std::uint16_t size, FieldFlags flags = Plain,
                          std::string_view label = {}) {
  return {name, ValueKind::String, size, flags, label};
}
/// Code points that may be typed into a memo: a document with all of its memos fits a message.
inline constexpr int kLongestMemo = 20'000;

constexpr FieldDef Memo(std::string_view name, FieldFlags flags = Plain,
                        std::string_view label = {}) {
  return {name, ValueKind::Memo, 0, flags, label};
}

/// A provider as both sides hold it: its rows' fields, and the table it writes (empty: reads only).
struct ProviderDef {
  std::string_view name;
  std::string_view table;
  std::span<const FieldDef> fields;

  constexpr bool Writable() const { return !table.empty(); }
};

/// Owns the fields of a provider; converts to the ProviderDef that code passes around.
template <std::size_t N>
struct ProviderFields {
  std::string_view name;
  std::string_view table;
  std::array<FieldDef, N> fields;

  constexpr operator ProviderDef() const { return {name, table, fields}; }
};

/// A provider that writes `table`: every field that is not Joined.
template <class... Fields>
constexpr ProviderFields<sizeof...(Fields)> Writes(std::string_view name, std::string_view table,
                                                   const Fields&... fields) {
  return {name, table, {fields...}};
}

/// A provider that only reads.
template <class... Fields>
constexpr ProviderFields<sizeof...(Fields)> Reads(std::string_view name, const Fields&... fields) {
  return {name, {}, {fields...}};
}

}  // namespace orvane
