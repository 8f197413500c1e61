#include "packet/variant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "packet/data_packet.h"

namespace orvane {
namespace {

constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

/// The value as text when the field takes it, "!" and the sentence when not.
std::string Kept(const Variant& value, ValueKind kind, int size = 0) {
  const Answer<Variant> kept = value.As(kind, size);
  if (kept) return kept->ToText();
  EXPECT_EQ(kept.GetFailure().kind, FailureKind::BadRequest);
  return "!" + kept.GetFailure().message;
}

constexpr char kRange[] = "!Стойността е извън допустимите граници.";
constexpr char kFraction[] = "!Стойността има повече десетични знаци от допустимите.";
constexpr char kKind[] = "!Стойността не е от очаквания вид.";
constexpr char kBytes[] = "!Текстът съдържа недопустими знаци.";

TEST(Variant, IsKeptAsItsFieldKeepsItOrRefused) {
  const struct {
    Variant value;
    ValueKind kind;
    int size;
    std::string kept;
  } rows[] = {
      {Variant(), ValueKind::Code, 0, ""},
      {Variant(1), ValueKind::Bool, 0, "1"},
      {Variant(2), ValueKind::Bool, 0, kRange},
      {Variant(true), ValueKind::Byte, 0, "1"},
      {Variant(255), ValueKind::Byte, 0, "255"},
      {Variant(256), ValueKind::Byte, 0, kRange},
      {Variant(-1), ValueKind::Byte, 0, kRange},
      {Variant(-32769), ValueKind::Int16, 0, kRange},
      {Variant(std::int64_t{1} << 31), ValueKind::Int32, 0, kRange},
      {Variant(kHighest), ValueKind::Code, 0, "9223372036854775807"},
      {Variant(Decimal(500, 2)), ValueKind::Int32, 0, "5"},
      {Variant(Decimal(501, 2)), ValueKind::Int32, 0, kFraction},
      {Variant(5.0), ValueKind::Int32, 0, "5"},
      {Variant(5.5), ValueKind::Int32, 0, kFraction},
      {Variant(9.3e18), ValueKind::Code, 0, kRange},
      {Variant(std::nan("")), ValueKind::Code, 0, kRange},
      {Variant("5"), ValueKind::Int32, 0, kKind},
      {Variant(5), ValueKind::Amount, 0, "5.0000"},
      {Variant(Decimal(123456, 5)), ValueKind::Amount, 0, kFraction},
      {Variant(Decimal(12345000, 7)), ValueKind::Amount, 0, "1.2345"},
      {Variant(kHighest), ValueKind::Amount, 0, kRange},
      {Variant(0.1), ValueKind::Amount, 0, "0.1000"},
      {Variant(0.12345), ValueKind::Amount, 0, kFraction},
      {Variant(1.95583), ValueKind::Rate, 0, "1.9558300"},
      {Variant(1e15), ValueKind::Amount, 0, kRange},
      {Variant("1"), ValueKind::Amount, 0, kKind},
      {Variant(true), ValueKind::Amount, 0, kKind},
      {Variant(3), ValueKind::Double, 0, "3"},
      {Variant(std::numeric_limits<double>::infinity()), ValueKind::Double, 0, kRange},
      {Variant(Date{20517}), ValueKind::Date, 0, "05.03.2026"},
      {Variant(Date{2932897}), ValueKind::Date, 0, kRange},
      {Variant(20517), ValueKind::Date, 0, kKind},
      {Variant(Date{1}), ValueKind::Stamp, 0, kKind},
      {Variant("Щит"), ValueKind::String, 3, "Щит"},
      {Variant("Щитове"), ValueKind::String, 3, "!Текстът е по-дълъг от 3 знака."},
      {Variant("Щитове"), ValueKind::String, 0, "Щитове"},
      {Variant("Щитове"), ValueKind::Memo, 3, "Щитове"},
      {Variant("\xD0"), ValueKind::String, 9, kBytes},
      {Variant(std::string("a\0b", 3)), ValueKind::Memo, 0, kBytes},
      {Variant(5), ValueKind::String, 9, kKind},
      {Variant(VariantArray{}), ValueKind::Memo, 0, kKind},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Kept(row.value, row.kind, row.size), row.kept)
        << row.value.ToText() << " as " << RowOf(row.kind).name;
  }
  EXPECT_TRUE(std::holds_alternative<bool>((*Variant(1).As(ValueKind::Bool)).Raw()));
  EXPECT_TRUE((*Variant().As(ValueKind::Bool)).IsNull());
}

TEST(Variant, IsReadOnlyAsWhatItIs) {
  EXPECT_EQ(Variant(true).AsInt(), 1);
  EXPECT_EQ(Variant(0).AsBool(), false);
  EXPECT_EQ(Variant(Decimal(200, 2)).AsInt(), 2);
  EXPECT_EQ(Variant(Decimal(201, 2)).AsInt(), std::nullopt);
  EXPECT_EQ(Variant(2.0).AsInt(), std::nullopt);
  EXPECT_EQ(Variant(Decimal(25, 1)).AsDouble(), 2.5);
  EXPECT_EQ(Variant(2.5).AsDecimal(), std::nullopt);
  EXPECT_EQ(Variant("2").AsInt(), std::nullopt);
  EXPECT_EQ(Variant("2").AsBool(), std::nullopt);
  EXPECT_EQ(Variant(2).AsString(), nullptr);
  EXPECT_EQ(Variant(2).AsArray(), nullptr);
  EXPECT_EQ(Variant(Date{3}).AsStamp(), std::nullopt);
}

TEST(Variant, OrdersNullsFirstNumbersByValueTextsByBytes) {
  const struct {
    Variant left;
    Variant right;
    int order;
  } rows[] = {
      {Variant(), Variant(), 0},
      {Variant(), Variant(-5), -1},
      {Variant(""), Variant(), 1},
      {Variant(2), Variant(Decimal(250, 2)), -1},
      {Variant(Decimal(250, 2)), Variant(2.5), 0},
      {Variant(kHighest), Variant(kHighest - 1), 1},
      {Variant(kHighest), Variant(9223372036854775808.0), -1},
      {Variant(false), Variant(1), -1},
      {Variant("Б"), Variant("а"), -1},
      {Variant("аб"), Variant("а"), 1},
      {Variant(Date{1}), Variant(Date{2}), -1},
      {Variant(Stamp{3}), Variant(Stamp{2}), 1},
      {Variant("1"), Variant(2), 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Variant::Compare(row.left, row.right), row.order)
        << row.left.ToText() << " ? " << row.right.ToText();
    EXPECT_EQ(Variant::Compare(row.right, row.left), -row.order);
  }
}

TEST(Variant, EqualsTheSameKindAndValueOnly) {
  EXPECT_EQ(Variant(Decimal(250, 2)), Variant(Decimal(25, 1)));
  EXPECT_NE(Variant(2), Variant(2.0));
  EXPECT_NE(Variant(1), Variant(true));
  EXPECT_NE(Variant(""), Variant());
  EXPECT_NE(Variant("а "), Variant("а"));  // byte for byte: the conflict check stands on it
  EXPECT_EQ(Variant(VariantArray{1, "x"}), Variant(VariantArray{1, "x"}));
  EXPECT_NE(Variant(VariantArray{1, "x"}), Variant(VariantArray{1, "y"}));
  DataPacket packet;
  packet.AddColumn("Code", ValueKind::Int32);
  EXPECT_EQ(Variant(packet), Variant(packet));
  DataPacket longer = packet;
  longer.AppendRow(std::vector<Variant>{7});
  EXPECT_NE(Variant(packet), Variant(longer));
}

TEST(Variant, HasAPlainText) {
  EXPECT_EQ(Variant(Stamp{1774746000'000000}).ToText(), "2026-03-29T01:00:00Z");
  EXPECT_EQ(Variant(Stamp{-1}).ToText(), "1969-12-31T23:59:59.999999Z");
  EXPECT_EQ(Variant(100000.0).ToText(), "100000");
  EXPECT_EQ(Variant(0.1).ToText(), "0.1");
  EXPECT_EQ(Variant(1e-7).ToText(), "0.0000001");
  EXPECT_EQ(Variant(Decimal(-5, 2)).ToText(), "-0.05");
  EXPECT_EQ(Variant(true).ToText(), "1");
}

TEST(Variant, IsEmptyWhenNothingWasTyped) {
  EXPECT_TRUE(Variant().IsEmpty());
  EXPECT_TRUE(Variant(" \u00A0").IsEmpty());
  EXPECT_FALSE(Variant(0).IsEmpty());
  EXPECT_FALSE(Variant("0").IsEmpty());
}

TEST(NamedValues, AreFoundWhateverTheCase) {
  const NamedValues values{{"SerialNumber", 5}, {"code", 6}};
  ASSERT_NE(FindValue(values, "SERIALNUMBER"), nullptr);
  EXPECT_EQ(*FindValue(values, "SERIALNUMBER"), Variant(5));
  EXPECT_EQ(FindValue(values, "Serial"), nullptr);
  EXPECT_FALSE(SameName("Код", "код"));  // names are ASCII
}

}  // namespace
}  // namespace orvane
