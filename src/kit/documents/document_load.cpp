#include "kit/documents/document_load.h"

#include <string>
#include <utility>

#include "data/abort.h"
#include "data/connection_scope.h"

namespace orvane::kit {

void CallOperations(TVosSQLConnection& connection, std::string_view method, VariantArray& data) {
  ConnectionScope scope(&connection);
  data = connection.Ask(method, std::move(data));
}

LoadTold ReadLoadTold(const VariantArray& answer, std::size_t codeAt, std::size_t foundAt) {
  constexpr auto kNone = static_cast<std::int64_t>(LoadCode::None);
  const std::int64_t told = codeAt < answer.size() ? answer[codeAt].AsInt().value_or(kNone) : kNone;
  LoadTold read;
  read.code = told >= 0 && told <= kNone ? static_cast<LoadCode>(told) : LoadCode::Between;
  read.found = foundAt < answer.size() && answer[foundAt].AsBool().value_or(false);
  return read;
}

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

void TakeShownNames(TVosClientDataSet& head, std::initializer_list<ShownName> names) {
  for (const ShownName& shown : names) {
    const TField& code = head.FieldByName(shown.code);
    const TField& name = head.FieldByName(std::string(shown.code) + "Name");
    const TField* second = head.FindField(std::string(name.Name()) + "2");
    DataPacket row;
    row.AddColumn(shown.table.KeyField(), code.Def().kind, code.Def().size);
    for (const char* column : {"Name", "Name2"})
      row.AddColumn(column, name.Def().kind, name.Def().size);
    const Variant values[] = {code.Value(), name.Value(), (second ? *second : name).Value()};
    if (!code.IsNull()) row.AppendRow(values);
    shown.table.TakeShown(std::move(row));
  }
}

}  // namespace orvane::kit
