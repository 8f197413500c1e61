#include "packet/data_packet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/seed.h"

namespace orvane {
namespace {

Variant RandomValue(std::mt19937_64& random, ValueKind kind) {
  if (random() % 5 == 0) return {};
  const ValueKindRow& row = RowOf(kind);
  const auto wide = static_cast<std::int64_t>(random());
  const auto inRange = [&] {
    return row.lowest == kLowest64
               ? wide
               : row.lowest +
                     static_cast<std::int64_t>(
                         random() % static_cast<std::uint64_t>(row.highest - row.lowest + 1));
  };
  switch (kind) {
    case ValueKind::Bool:
      return random() % 2 == 0;
    case ValueKind::Amount:
    case ValueKind::Rate:
      return Decimal(wide, row.scale);
    case ValueKind::Double:
      return static_cast<double>(wide) / 1024.0;
    case ValueKind::Date:
      return Date{static_cast<std::int32_t>(inRange())};
    case ValueKind::Stamp:
      return Stamp{wide};
    case ValueKind::String:
    case ValueKind::Memo:
      return std::vector<std::string>{"", "Щит", "a", "Ламарина 2 мм €"}[random() % 4];
    default:
      return inRange();
  }
}

DataPacket EveryKind() {
  DataPacket packet;
  for (const ValueKindRow& row : kValueKinds)
    packet.AddColumn(row.name, row.kind, 20);
  return packet;
}

/// Three rows: whole, with nulls, whole.
DataPacket Sample() {
  DataPacket packet;
  packet.AddColumn("Code", ValueKind::Int16).AddColumn("Price", ValueKind::Amount);
  packet.AddColumn("Quantity", ValueKind::Double).AddColumn("Name", ValueKind::String, 5);
  packet.AppendRow(std::vector<Variant>{1, Decimal(25000, 4), 0.5, "Щит"});
  packet.AppendRow(std::vector<Variant>{2, {}, {}, {}});
  packet.AppendRow(std::vector<Variant>{3, Decimal(1, 4), 2.0, "мотор"});
  return packet;
}

TEST(DataPacket, GivesBackEveryValueOfEveryKind) {
  std::mt19937_64 random(Seed());
  DataPacket packet = EveryKind();
  std::vector<std::vector<Variant>> rows(300);
  for (auto& row : rows) {
    for (const ValueKindRow& kind : kValueKinds)
      row.push_back(RandomValue(random, kind.kind));
    packet.AppendRow(row);
  }
  ASSERT_TRUE(packet.IsSound());
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t column = 0; column < packet.columns.size(); ++column) {
      ASSERT_EQ(packet.At(row, column), rows[row][column])
          << packet.columns[column].name << " of row " << row;
    }
  }
}

TEST(DataPacket, FindsColumnsWhateverTheCase) {
  const DataPacket packet = Sample();
  EXPECT_EQ(packet.FindColumn("PRICE"), 1u);
  EXPECT_EQ(packet.FindColumn("Prices"), std::nullopt);
  EXPECT_EQ(packet.At(0, "name"), Variant("Щит"));
  EXPECT_TRUE(packet.At(0, "missing").IsNull());
  EXPECT_TRUE(packet.At(1, "name").IsNull());
}

TEST(DataPacket, IntegersAndBitsOfAnEngineFitTheirColumns) {
  DataPacket packet;
  packet.AddColumn("Flag", ValueKind::Bool).AddColumn("Price", ValueKind::Amount);
  packet.AppendRow(std::vector<Variant>{1, 3});
  EXPECT_EQ(packet.At(0, "Flag"), Variant(true));
  EXPECT_EQ(packet.At(0, "Price"), Variant(Decimal(3, 0)));
}

TEST(DataPacket, EqualsByColumnsValuesAndContinuation) {
  DataPacket other = Sample();
  EXPECT_EQ(Sample(), other);
  other.columns[0].nulls = {0};  // no null, however it is written
  EXPECT_EQ(Sample(), other);
  other.continuation = "next";
  EXPECT_FALSE(Sample() == other);
}

TEST(DataPacket, IsUnsoundWhateverIsDamaged) {
  const struct {
    const char* what;
    std::function<void(DataPacket&)> damage;
  } rows[] = {
      {"more rows than values", [](DataPacket& p) { p.rowCount = 4; }},
      {"fewer rows than values", [](DataPacket& p) { p.rowCount = 2; }},
      {"rows without columns", [](DataPacket& p) { p.columns.clear(); }},
      {"an array of another storage", [](DataPacket& p) { p.columns[0].reals.resize(3); }},
      {"a heap without a text column", [](DataPacket& p) { p.columns[0].heap = "x"; }},
      {"integer above its kind", [](DataPacket& p) { p.columns[0].integers[0] = 32768; }},
      {"integer below its kind", [](DataPacket& p) { p.columns[0].integers[0] = -32769; }},
      {"real that is no number", [](DataPacket& p) { p.columns[2].reals[0] = std::nan(""); }},
      {"real without end",
       [](DataPacket& p) { p.columns[2].reals[0] = std::numeric_limits<double>::infinity(); }},
      {"value under a null", [](DataPacket& p) { p.columns[1].integers[1] = 5; }},
      {"real under a null", [](DataPacket& p) { p.columns[2].reals[1] = 5; }},
      {"text under a null", [](DataPacket& p) { p.columns[3].nulls = {1}; }},
      {"null beyond the rows", [](DataPacket& p) { p.columns[0].nulls = {8}; }},
      {"null words beyond the rows",
       [](DataPacket& p) {
         p.columns[0].nulls = {0, 0};
       }},
      {"offsets going back",
       [](DataPacket& p) { std::swap(p.columns[3].ends[0], p.columns[3].ends[2]); }},
      {"offset beyond the heap", [](DataPacket& p) { p.columns[3].ends[2] += 1; }},
      {"heap longer than its texts", [](DataPacket& p) { p.columns[3].heap += "x"; }},
      {"offset within a letter", [](DataPacket& p) { p.columns[3].ends[0] -= 1; }},
      {"text longer than the column", [](DataPacket& p) { p.columns[3].size = 4; }},
      {"text that is no UTF-8", [](DataPacket& p) { p.columns[3].heap[0] = '\xFF'; }},
      {"zero byte in a text",
       [](DataPacket& p) { p.columns[3].heap[0] = p.columns[3].heap[1] = '\0'; }},
      {"size of a column without one", [](DataPacket& p) { p.columns[0].size = 3; }},
      {"name that is no UTF-8", [](DataPacket& p) { p.columns[0].name = "\xC3"; }},
  };
  ASSERT_TRUE(Sample().IsSound());
  ASSERT_TRUE(DataPacket().IsSound());
  for (const auto& row : rows) {
    DataPacket packet = Sample();
    row.damage(packet);
    EXPECT_FALSE(packet.IsSound()) << row.what;
  }
}

TEST(DataPacket, KeepsNullBitsAcrossWords) {
  DataPacket packet;
  packet.AddColumn("Code", ValueKind::Code);
  for (int row = 0; row < 200; ++row) {
    packet.AppendRow(std::vector<Variant>{row % 63 == 0 ? Variant() : Variant(row)});
  }
  ASSERT_TRUE(packet.IsSound());
  for (std::size_t row = 0; row < 200; ++row) {
    EXPECT_EQ(packet.columns[0].IsNull(row), row % 63 == 0) << row;
  }
}

}  // namespace
}  // namespace orvane
