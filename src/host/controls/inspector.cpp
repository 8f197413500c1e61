#include "host/controls/inspector.h"

#include <algorithm>
#include <cassert>

#include "host/controls/combo.h"
#include "host/form.h"
#include "packet/fold.h"

namespace orvane::host {
namespace {

constexpr std::string_view kBullet = "•";

CellKind KindOf(ItemKind kind) {
  switch (kind) {
    case ItemKind::Check:
      return CellKind::Check;
    case ItemKind::Memo:
      return CellKind::Memo;
    case ItemKind::Password:
      return CellKind::Password;
    case ItemKind::Text:
      break;
  }
  return CellKind::Text;
}

std::string Bullets(std::string_view text) {
  std::string bullets;
  for (std::size_t i = 0; i < Utf8Length(text); ++i)
    bullets += kBullet;
  return bullets;
}

}  // namespace

TVosDataInspector::TVosDataInspector(TVosBaseForm& form, std::string_view name, TDataSource& source)
    : FieldControl(form, name, ControlKind::Inspector, source) {}

// --- items
// ----------------------------------------------------------------------------------------

InspectorItem* TVosDataInspector::FindItem(std::string_view field) {
  const auto found = std::ranges::find_if(
      items, [&](const InspectorItem& item) { return SameName(item.field, field); });
  return found == items.end() ? nullptr : &*found;
}

const InspectorItem* TVosDataInspector::ItemAt(int item) const {
  const auto index = static_cast<std::size_t>(item);
  return item >= 0 && index < items.size() ? &items[index] : nullptr;
}

int TVosDataInspector::VisibleFrom(int from, int direction) const {
  for (int item = from + direction; ItemAt(item) != nullptr; item += direction) {
    if (ItemAt(item)->visible) return item;
  }
  return -1;
}

int TVosDataInspector::CurrentItem() const {
  const InspectorItem* item = ItemAt(currentItem_);
  if (item != nullptr && item->visible) return currentItem_;
  const int last = static_cast<int>(items.size()) - 1;
  const int from = std::min(currentItem_, last);
  const int next = VisibleFrom(from, 1);
  return std::max(0, next >= 0 ? next : VisibleFrom(from + 1, -1));
}

TField& TVosDataInspector::CurrentField() {
  assert(!items.empty());
  return DataSet().FieldByName(items[static_cast<std::size_t>(CurrentItem())].field);
}

EditedCell TVosDataInspector::CurrentCell() const {
  const InspectorItem* item = ItemAt(CurrentItem());
  if (item == nullptr || !item->visible) return {};
  return {.field = DataSet().FindField(item->field),
          .mask = item->mask,
          .combo = item->combo,
          .kind = KindOf(item->kind),
          .readOnly = item->readOnly};
}

void TVosDataInspector::SetCurrentItem(int item) {
  const InspectorItem* wanted = ItemAt(item);
  if (wanted == nullptr || !wanted->visible) return;
  if (item != CurrentItem()) CommitEditor();
  currentItem_ = item;
  SettleCombo();
}

void TVosDataInspector::FocusField(std::string_view field) {
  Form().FocusControl(this);
  const InspectorItem* item = FindItem(field);
  if (item != nullptr) SetCurrentItem(static_cast<int>(item - items.data()));
}

std::string TVosDataInspector::LabelOf(std::string_view field) const {
  for (const InspectorItem& item : items) {
    if (SameName(item.field, field) && !item.label.empty()) return item.label;
  }
  const TField* unnamed = DataSet().FindField(field);
  return unnamed == nullptr ? std::string(field) : unnamed->DisplayLabel;
}

std::string TVosDataInspector::PlaceLabel() const {
  const InspectorItem* item = ItemAt(CurrentItem());
  return item == nullptr ? std::string() : LabelOf(item->field);
}

std::string TVosDataInspector::NameText(int item) const {
  const InspectorItem* shown = ItemAt(item);
  if (shown == nullptr) return {};
  const TField* field =
      DataSet().FindField(shown->nameField.empty() ? shown->field : shown->nameField);
  if (field == nullptr) return {};
  if (!shown->nameField.empty()) return field->Text();
  return shown->combo == nullptr ? std::string() : shown->combo->NameOf(field->Value());
}

std::string TVosDataInspector::DisplayText(int item) const {
  const InspectorItem* shown = ItemAt(item);
  const TField* field = shown == nullptr ? nullptr : DataSet().FindField(shown->field);
  if (field == nullptr) return {};
  return shown->kind == ItemKind::Password ? Bullets(field->AsString()) : field->Text();
}

std::string TVosDataInspector::EditorDisplayText() {
  const CellEditor* editor = Editor();
  if (editor == nullptr) return {};
  return CurrentCell().kind == CellKind::Password ? Bullets(editor->Text()) : editor->Text();
}

void TVosDataInspector::PointAt(int row, int /*column*/, bool openEditor) {
  SetCurrentItem(row);
  if (openEditor) Activate();
}

// --- keys
// -----------------------------------------------------------------------------------------

struct TVosDataInspector::KeyRow {
  KeyStroke key;
  bool (TVosDataInspector::*handle)();
};

const TVosDataInspector::KeyRow TVosDataInspector::kKeys[] = {
    {KeyCode::Enter, &TVosDataInspector::NextKey},
    {KeyCode::Tab, &TVosDataInspector::NextKey},
    {Shift(KeyCode::Tab), &TVosDataInspector::BackKey},
    {KeyCode::Up, &TVosDataInspector::UpKey},
    {KeyCode::Down, &TVosDataInspector::DownKey},
    {Ctrl(KeyCode::Home), &TVosDataInspector::FirstKey},
    {Ctrl(KeyCode::End), &TVosDataInspector::LastKey},
    {KeyCode::PageUp, &TVosDataInspector::FirstKey},
    {KeyCode::PageDown, &TVosDataInspector::LastKey},
    {KeyCode::Delete, &TVosDataInspector::ClearCell},
    {KeyCode::Backspace, &TVosDataInspector::ClearCell},
    {KeyCode::Space, &TVosDataInspector::SpaceKey},
    {KeyCode::F2, &TVosDataInspector::OpenForEdit},
    {Alt(KeyCode::Down), &TVosDataInspector::DropList},
};

bool TVosDataInspector::HandleKey(KeyStroke key) {
  if (items.empty()) return false;
  if (const auto used = HandleEditorKey(key)) return *used;
  const auto row = std::ranges::find(kKeys, key, &KeyRow::key);
  return row != std::end(kKeys) && (this->*row->handle)();
}

bool TVosDataInspector::NextKey() {
  CommitEditor();
  const int next = VisibleFrom(CurrentItem(), 1);
  if (next >= 0)
    SetCurrentItem(next);
  else if (!OnLastItem || !OnLastItem())
    Form().FocusNext();
  return true;
}

bool TVosDataInspector::BackKey() {
  CommitEditor();
  const int previous = VisibleFrom(CurrentItem(), -1);
  if (previous >= 0)
    SetCurrentItem(previous);
  else
    Form().FocusNext(true);
  return true;
}

bool TVosDataInspector::UpKey() {
  CommitEditor();
  SetCurrentItem(VisibleFrom(CurrentItem(), -1));
  return true;
}

bool TVosDataInspector::DownKey() {
  CommitEditor();
  SetCurrentItem(VisibleFrom(CurrentItem(), 1));
  return true;
}

bool TVosDataInspector::FirstKey() {
  SetCurrentItem(VisibleFrom(-1, 1));
  return true;
}

bool TVosDataInspector::LastKey() {
  SetCurrentItem(VisibleFrom(static_cast<int>(items.size()), -1));
  return true;
}

std::size_t TVosDataInspector::LookHash() const {
  LookHasher hasher;
  hasher.Add(FieldControl::LookHash()).Add(static_cast<std::size_t>(CurrentItem()));
  for (const InspectorItem& item : items) {
    hasher.Add(item.field).Add(item.label).Add(static_cast<std::size_t>(item.kind));
    hasher.Add((item.visible ? 1U : 0U) + (item.readOnly ? 2U : 0U) + (item.required ? 4U : 0U));
    if (item.combo != nullptr) hasher.Add(item.combo->Table().DataSet().Version());
  }
  return hasher.Value();
}

}  // namespace orvane::host
