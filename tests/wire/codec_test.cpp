#include "wire/codec.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "wire/fake_server.h"

namespace orvane::wire {
namespace {

/// The value after a journey as bytes; empty when it was refused on arrival.
std::optional<Variant> Travelled(const Variant& value) {
  v1::Value sent;
  wire::Encode(value, sent);
  v1::Value received;
  EXPECT_TRUE(received.ParseFromString(sent.SerializeAsString()));
  Variant arrived;
  if (!wire::Decode(received, arrived)) return std::nullopt;
  return arrived;
}

/// An array within an array, `depth` deep.
Variant Nested(int depth) {
  Variant value("дъно");
  for (int i = 0; i < depth; ++i)
    value = VariantArray{std::move(value)};
  return value;
}

TEST(Codec, EveryValueArrivesAsItWasSent) {
  for (const Variant& value : EveryValue())
    EXPECT_EQ(Travelled(value), value) << value.ToText();
}

TEST(Codec, RefusesValuesThatAreNone) {
  const struct {
    const char* what;
    std::function<void(v1::Value&)> fill;
  } rows[] = {
      {"scale ten", [](auto& v) { v.mutable_decimal()->set_scale(10); }},
      {"huge scale", [](auto& v) { v.mutable_decimal()->set_scale(0xFFFFFFFF); }},
      {"not a number", [](auto& v) { v.set_real(std::nan("")); }},
      {"infinity", [](auto& v) { v.set_real(-std::numeric_limits<double>::infinity()); }},
      {"day before the first", [](auto& v) { v.set_date(-719163); }},
      {"day behind the last", [](auto& v) { v.set_date(2932897); }},
      {"moment before the first day", [](auto& v) { v.set_stamp(-719163 * 86'400'000'000 - 1); }},
      {"moment behind the last day", [](auto& v) { v.set_stamp(2932897 * 86'400'000'000); }},
      {"text that is no UTF-8", [](auto& v) { v.set_text("\xD0"); }},
      {"packet of no kind", [](auto& v) { v.mutable_packet()->add_columns(); }},
      {"packet of rows without columns", [](auto& v) { v.mutable_packet()->set_row_count(1); }},
      {"bad value in an array", [](auto& v) { v.mutable_array()->add_values()->set_text("\xFF"); }},
  };
  for (const auto& row : rows) {
    v1::Value message;
    row.fill(message);
    Variant value;
    EXPECT_FALSE(wire::Decode(message, value)) << row.what;
  }
}

TEST(Codec, ArraysNestEightDeepAndNoDeeper) {
  EXPECT_EQ(Travelled(Nested(8)), Nested(8));
  EXPECT_EQ(Travelled(Nested(9)), std::nullopt);
}

TEST(Codec, RefusesColumnsThatDoNotFitTogether) {
  const struct {
    const char* what;
    std::function<void(v1::Packet&)> damage;
  } rows[] = {
      {"unknown kind", [](auto& p) { p.mutable_columns(0)->set_kind(v1::ValueKind(13)); }},
      {"no kind", [](auto& p) { p.mutable_columns(0)->clear_kind(); }},
      {"another kind", [](auto& p) { p.mutable_columns(0)->set_kind(v1::VALUE_KIND_MEMO); }},
      {"size beyond its type", [](auto& p) { p.mutable_columns(3)->set_size(0x10014); }},
      {"size below the text", [](auto& p) { p.mutable_columns(3)->set_size(3); }},
      {"row count", [](auto& p) { p.set_row_count(3); }},
      {"row count near its end", [](auto& p) { p.set_row_count(~std::uint64_t{0}); }},
      {"a value too many", [](auto& p) { p.mutable_columns(0)->add_integers(1); }},
      {"offset beyond the heap", [](auto& p) { p.mutable_columns(3)->set_ends(0, 0xFFFFFFFF); }},
      {"heap cut", [](auto& p) { p.mutable_columns(3)->mutable_heap()->pop_back(); }},
      {"null bits beyond the rows", [](auto& p) { p.mutable_columns(0)->add_nulls(4); }},
      {"value under a null", [](auto& p) { p.mutable_columns(1)->set_integers(1, 9); }},
      {"day out of range", [](auto& p) { p.mutable_columns(4)->set_integers(0, 1ll << 40); }},
  };
  v1::Packet sound;
  wire::Encode(SamplePacket(), sound);
  DataPacket packet;
  v1::Packet untouched = sound;
  ASSERT_TRUE(wire::Decode(untouched, packet));
  ASSERT_EQ(packet, SamplePacket());
  for (const auto& row : rows) {
    v1::Packet damaged = sound;
    row.damage(damaged);
    DataPacket target;
    EXPECT_FALSE(wire::Decode(damaged, target)) << row.what;
  }
}

TEST(Codec, AFailureOfANewerServerIsInternal) {
  v1::Failure message;
  message.set_kind(v1::FailureKind(99));
  message.set_message("ново");
  EXPECT_EQ(wire::DecodeFailure(message), (Failure{FailureKind::Internal, "ново"}));
}

TEST(Codec, RefusesRequestsThatCannotBeMeant) {
  v1::ApplyRequest apply;
  apply.add_delta();  // a change of no kind
  ApplyRequest request;
  EXPECT_FALSE(wire::Decode(apply, request));

  v1::FetchRequest fetch;
  fetch.add_items()->set_row_limit(-1);
  std::vector<FetchRequest> requests;
  EXPECT_FALSE(wire::Decode(fetch, requests));

  v1::LogInReply reply;
  reply.mutable_zone()->set_offset_minutes(1440);
  SessionInfo session;
  EXPECT_FALSE(wire::Decode(reply, session));
}

}  // namespace
}  // namespace orvane::wire
