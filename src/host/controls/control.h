#pragma once

// Controls of a form, without drawing: they hold what is shown and how keys and typing change it.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "host/keys.h"
#include "packet/variant.h"

namespace orvane::host {

class TVosBaseForm;
class CellEditor;
class TVosMTCombo;

enum class ControlKind : unsigned char { Grid, Inspector, KeyEdit, PageControl, Label };

/// Anything that can be placed on a form. Focus lives here, in the model: OnExit of the old
/// control, then OnEnter of the new one, once each, on a change of control only.
class Control {
 public:
  Control(TVosBaseForm& form, std::string_view name, ControlKind kind);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  TVosBaseForm& Form() const { return form_; }
  const std::string& Name() const { return name_; }
  ControlKind Kind() const { return kind_; }

  bool visible = true;
  std::function<void()> OnEnter;
  std::function<void()> OnExit;

  /// Grows whenever something a view would paint differently was changed since the last call; what
  /// the rows hold is told by the dataset's own Version.
  std::uint64_t Version() const;

  virtual bool CanFocus() const { return visible; }
  /// A key that is no live action's shortcut. True when the control used it. A printable key
  /// without Ctrl or Alt comes as text instead, never as both.
  virtual bool HandleKey(KeyStroke) { return false; }
  /// Typed text (one or more characters). Where nothing may be typed it is used up silently.
  virtual bool HandleText(std::string_view) { return false; }
  /// The open in-place editor, null when none is.
  virtual CellEditor* Editor() { return nullptr; }
  /// The combo that is being edited in, null when none is.
  virtual TVosMTCombo* ActiveCombo() { return nullptr; }
  /// Takes the open editor's text into the field. Throws Abort when it was refused (the user was
  /// told; the editor stays open).
  virtual void CommitEditor() {}
  /// Drops the open editor with what was typed.
  virtual void CancelEditor() {}
  /// Called before the focus leaves: commits, cancels or posts as the control's rules say.
  virtual void BeforeLeave() {}

  // --- told by the form -------------------------------------------------------------------------
  /// The control has got the focus; after OnEnter.
  virtual void Entered() {}
  /// The control is losing the focus; before OnExit.
  virtual void Left() {}
  /// The whole text of the open editor as a toolkit's own editor holds it. False when it may not
  /// stand there: the toolkit goes back to the editor's text.
  virtual bool EditorTextTyped(std::string_view) { return false; }
  /// The user pointed at a row and column (grid) or an item (inspector: `row`); -1 is none.
  virtual void PointAt(int /*row*/, int /*column*/, bool /*openEditor*/) {}
  /// An entry of the open combo list was picked.
  virtual void PickFromList(int) {}
  /// The list of the combo in use was asked for.
  virtual void OpenList() {}
  /// A view came near the last row that has arrived.
  virtual void NearEnd() {}

  // --- told by the combo in use -----------------------------------------------------------------
  /// A code was chosen outside of the editor: it goes into the field as if it had been typed.
  virtual void TakeFromCombo(const Variant&) {}
  /// What the user calls the place he is in: the column's title, the item's label.
  virtual std::string PlaceLabel() const { return {}; }

 protected:
  /// A number that differs when anything painted differs; see Version.
  virtual std::size_t LookHash() const;

 private:
  TVosBaseForm& form_;
  std::string name_;
  ControlKind kind_;
  mutable std::size_t seenLook_ = 0;
  mutable std::uint64_t version_ = 1;
};

/// Joins values into one number for LookHash.
class LookHasher {
 public:
  LookHasher& Add(std::size_t number) {
    hash_ = (hash_ ^ number) * 1099511628211ULL + 0x9e3779b97f4a7c15ULL;
    return *this;
  }
  LookHasher& Add(std::string_view text) { return Add(std::hash<std::string_view>{}(text)); }
  std::size_t Value() const { return hash_; }

 private:
  std::size_t hash_ = 14695981039346656037ULL;
};

}  // namespace orvane::host
