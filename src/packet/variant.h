#pragma once

// One value of any kind, as it stands in a row, a parameter or a server method's array.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "packet/date.h"
#include "packet/decimal.h"
#include "packet/failure.h"
#include "packet/value_kind.h"

namespace orvane {

class DataPacket;
class Variant;
using VariantArray = std::vector<Variant>;

/// A value or Null. Integers of every size are 64-bit; Amount and Rate are Decimals of their scale.
/// Packets and arrays occur only in server-method arguments, answers and owner data; they are
/// shared and never changed after they were put in.
class Variant {
 public:
  Variant() = default;
  Variant(bool value) : value_(value) {}
  Variant(int value) : value_(static_cast<std::int64_t>(value)) {}
  Variant(std::int64_t value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(Decimal value) : value_(value) {}
  Variant(Date value) : value_(value) {}
  Variant(Stamp value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(std::string_view value) : value_(std::string(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(DataPacket packet);
  /// A pointer is no value: without this one it would become a bool.
  template <class T>
  Variant(T*) = delete;
  Variant(VariantArray array);

  bool IsNull() const { return std::holds_alternative<std::monostate>(value_); }
  /// Null, an empty text, or a text of blanks only.
  bool IsEmpty() const;

  /// Readers: empty for Null and for a value that is not of that kind. AsInt reads bool and whole
  /// decimals too; AsDouble any number; AsDecimal integers and decimals; AsBool integers.
  std::optional<bool> AsBool() const;
  std::optional<std::int64_t> AsInt() const;
  std::optional<double> AsDouble() const;
  std::optional<Decimal> AsDecimal() const;
  std::optional<Date> AsDate() const;
  std::optional<Stamp> AsStamp() const;
  /// The text itself; null pointer when it is no text.
  const std::string* AsString() const { return std::get_if<std::string>(&value_); }
  const DataPacket* AsPacket() const;
  const VariantArray* AsArray() const;

  /// Any scalar as plain text: digits, point for decimals, dd.mm.yyyy, UTC stamps in ISO form,
  /// empty for Null. For logs, history and messages; screens format by field.
  std::string ToText() const;

  /// The value as a field of `kind` keeps it (texts longer than `size` code points, fractions that
  /// would be lost and values out of range are refused as BadRequest in a Bulgarian sentence
  /// without field name). A size of 0 does not limit. Null stays Null. Numbers and texts are not
  /// turned into each other.
  Answer<Variant> As(ValueKind kind, int size = 0) const;

  /// Same kind and same value; Decimals compare by value, 2.50 equals 2.5.
  bool operator==(const Variant& other) const;

  /// Order within one column: Null first, numbers by value, texts byte by byte. Values that cannot
  /// be compared count as equal.
  static int Compare(const Variant& left, const Variant& right);

  using Storage =
      std::variant<std::monostate, bool, std::int64_t, double, Decimal, Date, Stamp, std::string,
                   std::shared_ptr<const DataPacket>, std::shared_ptr<const VariantArray>>;
  const Storage& Raw() const { return value_; }

 private:
  Storage value_;
};

/// A named value: a parameter, or a column of a change.
struct NamedValue {
  std::string name;
  Variant value;

  bool operator==(const NamedValue&) const = default;
};
using NamedValues = std::vector<NamedValue>;

/// Names of fields, columns and parameters do not depend on case (ASCII).
bool SameName(std::string_view left, std::string_view right);
/// The value under that name; null pointer when there is none.
const Variant* FindValue(const NamedValues& values, std::string_view name);

}  // namespace orvane
