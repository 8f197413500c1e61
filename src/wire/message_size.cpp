#include "wire/message_size.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/io/coded_stream.h>

#include "orvane.pb.h"

namespace orvane::wire {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::io::CodedInputStream;

/// Deeper than any array may be nested, and no danger to the stack.
constexpr int kDeepest = 64;

class Counting {
 public:
  Counting(const MessageLimits& limits, CodedInputStream& in) : left_(limits), in_(in) {}

  bool Message(const Descriptor& kind, int depth) {
    if (depth > kDeepest) return false;
    while (const std::uint32_t tag = in_.ReadTag()) {
      const FieldDescriptor* field = kind.FindFieldByNumber(static_cast<int>(tag >> 3));
      if (!field && --left_.values < 0) return false;
      if (!Field(field, tag & 7, depth)) return false;
    }
    return in_.ConsumedEntireMessage();
  }

 private:
  bool Field(const FieldDescriptor* field, std::uint32_t wireType, int depth) {
    std::uint64_t number = 0;
    std::uint32_t length = 0;
    switch (wireType) {
      case 0:
        return --left_.cells >= 0 && in_.ReadVarint64(&number);
      case 1:
        return --left_.cells >= 0 && in_.Skip(8);
      case 5:
        return --left_.cells >= 0 && in_.Skip(4);
      case 2:
        return in_.ReadVarint32(&length) && length <= INT32_MAX &&
               Bytes(field, static_cast<int>(length), depth);
      default:
        return false;  // groups
    }
  }

  bool Bytes(const FieldDescriptor* field, int length, int depth) {
    const Descriptor* kind = field ? field->message_type() : nullptr;
    if (!kind) {
      if (field && field->is_packable()) left_.cells -= length;
      return left_.cells >= 0 && in_.Skip(length);
    }
    if (--Left(*kind) < 0) return false;
    const CodedInputStream::Limit outer = in_.PushLimit(length);
    if (in_.BytesUntilLimit() < length) return false;  // longer than what is around it
    if (!Message(*kind, depth + 1)) return false;
    in_.PopLimit(outer);
    return true;
  }

  std::int64_t& Left(const Descriptor& kind) {
    if (&kind == v1::FetchItem::descriptor()) return left_.items;
    if (&kind == v1::Change::descriptor()) return left_.changes;
    if (&kind == v1::Column::descriptor()) return left_.columns;
    return left_.values;
  }

  MessageLimits left_;
  CodedInputStream& in_;
};

}  // namespace

bool FitsInto(const MessageLimits& limits, const Descriptor& kind,
              google::protobuf::io::ZeroCopyInputStream& bytes) {
  CodedInputStream in(&bytes);
  return Counting(limits, in).Message(kind, 0);
}

}  // namespace orvane::wire
