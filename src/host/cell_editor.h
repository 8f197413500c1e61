#pragma once

#include <string>
#include <string_view>

#include "data/client_dataset.h"
#include "data/picture_mask.h"

namespace orvane {

class TVosMTCombo;

/// The in-place editor of a grid cell, an inspector item or a key edit: the text being typed, its
/// mask and, for lookups, the combo. Opening takes the field's text; nothing reaches the field
/// before the editor is committed.
class CellEditor {
 public:
  bool IsOpen() const { return open_; }
  const std::string& Text() const { return text_; }
  TVosMTCombo* Combo() const { return combo_; }
  TField* Field() const { return field_; }

  void Open(TField& field, const PictureMask& mask, TVosMTCombo* combo);
  /// For editors without a field (key edits).
  void OpenText(std::string_view text, const PictureMask& mask);
  void Close();
  /// Replaces the whole text. False (and nothing changes) when the mask cannot lead to a match from
  /// it or the field's size is exceeded.
  bool SetText(std::string_view text);
  /// Appends typed text; the first typing after opening replaces what was there.
  bool Type(std::string_view text);
  bool Backspace();
  /// The text may be left: complete under the mask (or empty). Otherwise a sentence for the user.
  Answer<Done> CheckComplete() const;
  bool IsChanged() const { return changed_; }

 private:
  bool open_ = false;
  bool fresh_ = false;
  bool changed_ = false;
  std::string text_;
  PictureMask mask_;
  TField* field_ = nullptr;
  TVosMTCombo* combo_ = nullptr;
};

}  // namespace orvane
