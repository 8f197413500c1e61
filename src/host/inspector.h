#pragma once

// A column of labelled items on one record: the head of a document, a filter, the parameters.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "data/picture_mask.h"
#include "host/cell_editor.h"
#include "host/control.h"

namespace orvane {

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
};

class TVosDataInspector : public Control {
 public:
  TVosDataInspector(TVosBaseForm& form, std::string_view name, TDataSource& source);

  TVosClientDataSet& DataSet() const { return source_.DataSet(); }
  TDataSource& Source() const { return source_; }

  std::vector<InspectorItem> items;
  bool readOnly = false;
  /// Enter or Tab in the last visible item, or wherever the screen wants to leave; true when used.
  std::function<bool()> OnLastItem;

  InspectorItem* FindItem(std::string_view field);
  int CurrentItem() const { return currentItem_; }
  TField& CurrentField();
  void SetCurrentItem(int item);
  void FocusField(std::string_view field);
  bool CanEditItem() const;
  /// What stands behind the value: the combo's name of the code, or the name field.
  std::string NameText(int item) const;
  /// Takes the open editor's text without leaving.
  void FlushChanges() { CommitEditor(); }

  bool HandleKey(KeyStroke key) override;
  bool HandleText(std::string_view text) override;
  CellEditor* Editor() override { return editor_.IsOpen() ? &editor_ : nullptr; }
  TVosMTCombo* ActiveCombo() override;
  void CommitEditor() override;
  void BeforeLeave() override;
  void OpenEditor();
  void CloseEditor();
  void ToggleCheck();

 private:
  TDataSource& source_;
  int currentItem_ = 0;
  CellEditor editor_;
};

}  // namespace orvane
