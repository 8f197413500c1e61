// A packet on its way through the codec, against protobuf moving the same arrays.

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "pairs.h"
#include "wire/codec.h"

namespace orvane::bench {
namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

/// A list of a register: codes, sums, a quantity, days, names; every tenth value is missing.
DataPacket ListOf(std::size_t rows) {
  DataPacket packet;
  packet.AddColumn("Code", ValueKind::Code).AddColumn("Year", ValueKind::Int16);
  packet.AddColumn("Status", ValueKind::Byte).AddColumn("Partner", ValueKind::Int32);
  packet.AddColumn("Active", ValueKind::Bool).AddColumn("Sum", ValueKind::Amount);
  packet.AddColumn("Rate", ValueKind::Rate).AddColumn("Quantity", ValueKind::Double);
  packet.AddColumn("On", ValueKind::Date).AddColumn("Name", ValueKind::String, 60);
  packet.AddColumn("Name2", ValueKind::String, 60).AddColumn("Note", ValueKind::Memo);
  std::mt19937_64 random(1);
  const auto below = [&](std::uint64_t limit) {
    return static_cast<std::int64_t>(random() % limit);
  };
  for (std::size_t row = 0; row < rows; ++row) {
    const std::string number = std::to_string(row);
    std::vector<Variant> values{static_cast<std::int64_t>(random() >> 4), below(100) + 1990};
    values.insert(values.end(), {below(8), below(500'000), below(2) == 1});
    values.insert(values.end(), {Decimal(below(100'000'000), 4), Decimal(19'558'300, 7)});
    values.insert(values.end(), {static_cast<double>(below(10'000)) / 4, Date{20'000}});
    values.insert(values.end(),
                  {"Ламарина студеновалцувана " + number, "Cold rolled " + number, ""});
    if (row % 10 == 0) values[row / 10 % values.size()] = Variant();
    packet.AppendRow(values);
  }
  return packet;
}

/// The arrays as protobuf has them, out and in again, with nothing looked at.
double ThroughBareProtobuf(const DataPacket& packet) {
  return Seconds([&] {
    v1::Packet sent;
    for (const PacketColumn& column : packet.columns) {
      v1::Column& message = *sent.add_columns();
      message.mutable_nulls()->Add(column.nulls.begin(), column.nulls.end());
      message.mutable_integers()->Add(column.integers.begin(), column.integers.end());
      message.mutable_reals()->Add(column.reals.begin(), column.reals.end());
      message.set_heap(column.heap);
      message.mutable_ends()->Add(column.ends.begin(), column.ends.end());
    }
    v1::Packet received;
    Require(received.ParseFromString(sent.SerializeAsString()));
    std::vector<PacketColumn> columns(packet.columns.size());
    for (int i = 0; i < received.columns_size(); ++i) {
      v1::Column& message = *received.mutable_columns(i);
      PacketColumn& column = columns[static_cast<std::size_t>(i)];
      column.nulls.assign(message.nulls().begin(), message.nulls().end());
      column.integers.assign(message.integers().begin(), message.integers().end());
      column.reals.assign(message.reals().begin(), message.reals().end());
      column.heap = std::move(*message.mutable_heap());
      column.ends.assign(message.ends().begin(), message.ends().end());
    }
    Require(columns.size() == packet.columns.size());
  });
}

double ThroughCodec(DataPacket packet) {
  return Seconds([&] {
    v1::Packet sent;
    wire::Encode(std::move(packet), sent);
    v1::Packet received;
    Require(received.ParseFromString(sent.SerializeAsString()));
    DataPacket arrived;
    Require(wire::Decode(received, arrived));
  });
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) {
  using namespace orvane;
  using namespace orvane::bench;
  const DataPacket page = ListOf(80);
  const DataPacket whole = ListOf(100'000);
  AddPair("Packet/EncodeDecode/80", 2.5, 501,
          {[&] { return ThroughCodec(page); }, [&] { return ThroughBareProtobuf(page); }});
  AddPair("Packet/EncodeDecode/100000", 1.5, 51,
          {[&] { return ThroughCodec(whole); }, [&] { return ThroughBareProtobuf(whole); }});
  return RunPairs(argc, argv);
}
