#pragma once

#include <string>
#include <string_view>

#include "data/client_dataset.h"
#include "data/picture_mask.h"

namespace orvane::host {

class TVosMTCombo;

/// What is pasted into one line: its line ends and tabs become blanks, those at its end go.
std::string OneLine(std::string_view text);
/// What the user is told of a text that is too long for the place of that label.
std::string TooLong(std::string_view label, std::size_t size);

/// The in-place editor of a grid cell, an inspector item or a key edit: the text being typed, its
/// mask and, for lookups, the combo. Opening takes the field's text; nothing reaches the field
/// before the editor is committed.
class CellEditor {
 public:
  bool IsOpen() const { return open_; }
  const std::string& Text() const { return text_; }
  TVosMTCombo* Combo() const { return combo_; }
  TField* Field() const { return field_; }

  /// What the user calls the place being edited; named in CheckComplete's sentence. Opening sets it
  /// to the field's label.
  std::string label;
  /// Takes line ends too. Opening clears it.
  bool multiLine = false;

  void Open(TField& field, const PictureMask& mask, TVosMTCombo* combo);
  /// For editors without a field (key edits).
  void OpenText(std::string_view text, const PictureMask& mask);
  void Close();
  /// The first typing goes after what was there instead of replacing it.
  void KeepText() { fresh_ = false; }
  /// Starts with nothing, for what is never shown (passwords); this is no change yet.
  void StartEmpty() { text_.clear(); }
  /// Replaces the whole text. One character more is refused (false, and nothing changes) when the
  /// mask cannot lead to a match from it or the field's size is exceeded; what is pasted or taken
  /// away stays and is judged when the place is left. Numbers take everything. The combo's list
  /// follows.
  bool SetText(std::string_view text);
  /// Appends typed text; the first typing after opening replaces what was there.
  bool Type(std::string_view text);
  /// Takes the last character away; false when there is none.
  bool Backspace();
  /// The text may be left: complete under the mask (or empty), a number when written plainly.
  /// Otherwise a sentence for the user.
  Answer<Done> CheckComplete() const;
  bool IsChanged() const { return changed_; }

 private:
  bool IsOfNumber() const;
  Answer<Done> CheckNumber() const;
  bool Fits(std::string_view text) const;
  void Accept(std::string text);

  bool open_ = false;
  bool fresh_ = false;
  bool changed_ = false;
  std::string text_;
  PictureMask mask_;
  TField* field_ = nullptr;
  TVosMTCombo* combo_ = nullptr;
};

}  // namespace orvane::host
