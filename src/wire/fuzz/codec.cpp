// Whatever arrives as a request or an answer: the codec does not crash, and what it accepts goes
// out again as the same values.

#include "wire/codec.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace orvane;

void Must(bool holds) {
  if (!holds) std::abort();
}

void TryCall(const std::uint8_t* data, int size) {
  v1::CallRequest message;
  MethodCall call;
  if (!message.ParseFromArray(data, size) || !wire::Decode(message, call)) return;
  v1::CallRequest sent;
  wire::Encode(call, sent);
  MethodCall again;
  Must(wire::Decode(sent, again) && again.arguments == call.arguments);
}

void TryFetch(const std::uint8_t* data, int size) {
  v1::FetchReply message;
  std::vector<DataPacket> packets;
  if (!message.ParseFromArray(data, size) || !wire::Decode(message, packets)) return;
  for (const DataPacket& packet : packets) {
    for (std::size_t row = 0; row < packet.rowCount; ++row) {
      for (std::size_t column = 0; column < packet.columns.size(); ++column) {
        Must(!packet.At(row, column).AsArray());
      }
    }
  }
}

void TryApply(const std::uint8_t* data, int size) {
  v1::ApplyRequest message;
  ApplyRequest request;
  if (!message.ParseFromArray(data, size) || !wire::Decode(message, request)) return;
  v1::ApplyRequest sent;
  wire::Encode(request, sent);
  ApplyRequest again;
  Must(wire::Decode(sent, again) && again.delta == request.delta);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const int length = static_cast<int>(size) - 1;
  if (data[0] % 3 == 0) TryCall(data + 1, length);
  if (data[0] % 3 == 1) TryFetch(data + 1, length);
  if (data[0] % 3 == 2) TryApply(data + 1, length);
  return 0;
}
