#include "host/walk/walk_places.h"

#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/form.h"
#include "packet/variant.h"

namespace orvane::host {
namespace {

std::optional<FieldPlace> PlaceIn(Control& control, std::string_view name) {
  if (const auto* grid = dynamic_cast<const TVosDBGrid*>(&control)) {
    for (std::size_t i = 0; i < grid->columns.size(); ++i) {
      if (!SameName(grid->columns[i].field, name)) continue;
      return FieldPlace{&control, static_cast<int>(grid->DataSet().RecNo()), static_cast<int>(i)};
    }
  }
  if (const auto* inspector = dynamic_cast<const TVosDataInspector*>(&control)) {
    for (std::size_t i = 0; i < inspector->items.size(); ++i) {
      const InspectorItem& item = inspector->items[i];
      if (!item.visible || !SameName(item.field, name)) continue;
      return FieldPlace{&control, static_cast<int>(i), 0};
    }
  }
  if (control.Kind() == ControlKind::KeyEdit && SameName(control.Name(), name)) {
    return FieldPlace{&control, 0, 0};
  }
  return std::nullopt;
}

TVosClientDataSet* DataSetOf(const Control& control) {
  if (const auto* grid = dynamic_cast<const TVosDBGrid*>(&control)) return &grid->DataSet();
  if (const auto* inspector = dynamic_cast<const TVosDataInspector*>(&control)) {
    return &inspector->DataSet();
  }
  return nullptr;
}

std::optional<std::string> TextIn(const Control& control, std::string_view name) {
  if (const auto* edit = dynamic_cast<const TKeyEdit*>(&control)) {
    if (SameName(edit->Name(), name)) return edit->Text();
  }
  if (const auto* label = dynamic_cast<const TLabel*>(&control)) {
    if (SameName(label->Name(), name)) return label->text;
  }
  TVosClientDataSet* dataSet = DataSetOf(control);
  if (dataSet == nullptr) return std::nullopt;
  const TField* field = dataSet->FindField(name);
  if (field == nullptr) return std::nullopt;
  return field->Text();
}

/// The focused control first, then the others in order.
template <class Found>
auto FirstOf(const TVosBaseForm& form, Found found) -> decltype(found(std::declval<Control&>())) {
  if (form.ActiveControl() != nullptr) {
    if (auto here = found(*form.ActiveControl())) return here;
  }
  for (Control* control : form.Controls()) {
    if (auto there = found(*control)) return there;
  }
  return {};
}

}  // namespace

std::optional<FieldPlace> FindPlace(const TVosBaseForm& form, std::string_view name) {
  return FirstOf(form, [&](Control& control) -> std::optional<FieldPlace> {
    return control.visible ? PlaceIn(control, name) : std::nullopt;
  });
}

std::optional<std::string> ReadValue(const TVosBaseForm& form, std::string_view name) {
  return FirstOf(form, [&](const Control& control) { return TextIn(control, name); });
}

TVosDBGrid* FindGrid(const TVosBaseForm& form, std::string_view name) {
  if (!name.empty()) return dynamic_cast<TVosDBGrid*>(form.FindControl(name));
  if (auto* grid = dynamic_cast<TVosDBGrid*>(form.ActiveControl())) return grid;
  for (Control* control : form.Controls()) {
    if (auto* grid = dynamic_cast<TVosDBGrid*>(control)) return grid;
  }
  return nullptr;
}

}  // namespace orvane::host
