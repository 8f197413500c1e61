#include "kit/document_load.h"

#include "data/abort.h"

namespace orvane {

const DataPacket& PacketAt(const VariantArray& answer, std::size_t position) {
  const DataPacket* packet = position < answer.size() ? answer[position].AsPacket() : nullptr;
  if (packet == nullptr) {
    throw ServerError{
        {FailureKind::Internal, "Отговорът на сървъра не е пълен. Обадете се на администратора."}};
  }
  return *packet;
}

void LoadPackets(const VariantArray& answer, std::size_t first,
                 std::initializer_list<TVosClientDataSet*> dataSets) {
  for (std::size_t i = 0; i < dataSets.size(); ++i)
    PacketAt(answer, first + i);
  std::size_t position = first;
  for (TVosClientDataSet* dataSet : dataSets)
    dataSet->LoadPacket(PacketAt(answer, position++));
}

void TakeShownRows(const VariantArray& answer, std::initializer_list<ShownRowAt> rows) {
  for (const ShownRowAt& row : rows)
    row.table.TakeShown(PacketAt(answer, row.position));
}

}  // namespace orvane
