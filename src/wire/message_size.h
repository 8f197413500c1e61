#pragma once

// What a message would take once it is decoded, counted on its bytes. Two bytes of an empty item
// become some hundred bytes of memory, so that a length alone limits nothing.

#include <cstdint>

namespace google::protobuf {
class Descriptor;
namespace io {
class ZeroCopyInputStream;
}  // namespace io
}  // namespace google::protobuf

namespace orvane::wire {

/// At most so many of each in one message.
struct MessageLimits {
  std::int64_t items = 0;    ///< things to fetch
  std::int64_t changes = 0;  ///< of an apply
  std::int64_t columns = 0;  ///< of all packets
  std::int64_t values = 0;   ///< named or not, arrays and unknown fields among them
  std::int64_t cells = 0;    ///< numbers, and bytes of packed numbers
};

/// Whether the bytes are a message of that kind within the limits; nothing is allocated for it.
bool FitsInto(const MessageLimits& limits, const google::protobuf::Descriptor& kind,
              google::protobuf::io::ZeroCopyInputStream& bytes);

}  // namespace orvane::wire
