#include "kit/required_fields.h"

#include <string>

#include "data/abort.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/dialogs.h"
#include "host/form.h"
#include "kit/message_text.h"

namespace orvane::kit {
namespace {

std::string TitleOf(TVosDBGrid& grid, std::string_view field) {
  return grid.TitleOf(field);
}

std::string TitleOf(TVosDataInspector& inspector, std::string_view field) {
  const InspectorItem* item = inspector.FindItem(field);
  if (item == nullptr) return std::string(field);
  // "Период · От дата": the group stands before its item.
  constexpr std::string_view kGroupEnds = " · ";
  const std::size_t group = item->label.find(kGroupEnds);
  return group == std::string::npos ? item->label : item->label.substr(group + kGroupEnds.size());
}

template <class Place>
[[noreturn]] void Refuse(TVosBaseForm& form, Place& place, std::string_view field,
                         std::string_view text, int kind) {
  VosMessageDlg(form, kind, form.caption, text);
  form.FocusControl(&place);
  place.FocusField(field);
  throw Abort{};
}

template <class Place>
void Require(TVosBaseForm& form, Place& place, std::string_view text,
             std::initializer_list<std::string_view> fields, int kind) {
  for (std::string_view field : fields) {
    if (!place.DataSet().FieldByName(field).IsEmpty()) continue;
    Refuse(form, place, field, Filled(text, {TitleOf(place, field)}), kind);
  }
}

}  // namespace

void RequireFields(TVosBaseForm& form, TVosDBGrid& grid, std::string_view text,
                   std::initializer_list<std::string_view> fields, int kind) {
  Require(form, grid, text, fields, kind);
}

void RequireFields(TVosBaseForm& form, TVosDataInspector& inspector, std::string_view text,
                   std::initializer_list<std::string_view> fields, int kind) {
  Require(form, inspector, text, fields, kind);
}

void RefuseAt(TVosBaseForm& form, TVosDBGrid& grid, std::string_view field, std::string_view text,
              int kind) {
  Refuse(form, grid, field, text, kind);
}

void RefuseAt(TVosBaseForm& form, TVosDataInspector& inspector, std::string_view field,
              std::string_view text, int kind) {
  Refuse(form, inspector, field, text, kind);
}

}  // namespace orvane::kit
