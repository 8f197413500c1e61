#pragma once

// A column of labelled items on one record: the head of a document, a filter, the parameters.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "host/controls/field_control.h"

namespace orvane::host {

enum class ItemKind : unsigned char { Text, Check, Memo, Password };

struct InspectorItem {
  std::string field = {};
  std::string label = {};
  std::string mask = {};
  TVosMTCombo* combo = nullptr;
  /// A field shown behind the value (a name beside its code); empty: the combo's name, or nothing.
  std::string nameField = {};
  ItemKind kind = ItemKind::Text;
  bool readOnly = false;
  bool visible = true;
  bool required = false;  ///< marked at the label
  int lines = 1;          ///< height; the text wraps where there are several
};

class TVosDataInspector : public FieldControl {
 public:
  TVosDataInspector(TVosBaseForm& form, std::string_view name, TDataSource& source);

  std::vector<InspectorItem> items;
  /// Enter or Tab in the last visible item; true when used. Otherwise the next control gets the
  /// focus.
  std::function<bool()> OnLastItem;

  InspectorItem* FindItem(std::string_view field);
  /// A visible item, as long as there is one.
  int CurrentItem() const;
  TField& CurrentField();
  /// Goes to an item, when it is visible; commits an open editor first.
  void SetCurrentItem(int item);
  /// Focuses the inspector and goes to the field's item.
  void FocusField(std::string_view field);
  bool CanEditItem() const { return CanEditCurrent(); }
  /// The label of a field's item, for messages; the field's own when it has no item.
  std::string LabelOf(std::string_view field) const;
  /// What stands behind the value: the combo's name of the code, or the name field.
  std::string NameText(int item) const;
  /// The value as it is painted; a password as one bullet a character.
  std::string DisplayText(int item) const;
  /// The open editor's text as it is painted; empty when none is open.
  std::string EditorDisplayText();
  /// Takes the open editor's text without leaving.
  void FlushChanges() { CommitEditor(); }

  bool HandleKey(KeyStroke key) override;
  void BeforeLeave() override { CommitEditor(); }
  void PointAt(int row, int column, bool openEditor) override;
  std::string PlaceLabel() const override;

 protected:
  EditedCell CurrentCell() const override;
  std::size_t LookHash() const override;

 private:
  struct KeyRow;
  static const KeyRow kKeys[];

  bool NextKey();
  bool BackKey();
  bool UpKey();
  bool DownKey();
  bool FirstKey();
  bool LastKey();

  /// The next visible item in a direction (1 or -1) from, but not at, `from`; -1 when none is.
  int VisibleFrom(int from, int direction) const;
  const InspectorItem* ItemAt(int item) const;

  int currentItem_ = 0;
};

}  // namespace orvane::host
