#pragma once

// Controls of a form, without drawing: they hold what is shown and how keys and typing change it.

#include <functional>
#include <string>
#include <string_view>

#include "host/keys.h"

namespace orvane {

class TVosBaseForm;
class CellEditor;
class TVosMTCombo;

enum class ControlKind : unsigned char { Grid, Inspector, KeyEdit, PageControl, Label };

/// Anything that can be placed on a form. Focus lives here, in the model: OnExit of the old
/// control, then OnEnter of the new one, once each, on a change of control only.
class Control {
 public:
  Control(TVosBaseForm& form, std::string_view name, ControlKind kind);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  TVosBaseForm& Form() const { return form_; }
  const std::string& Name() const { return name_; }
  ControlKind Kind() const { return kind_; }

  bool visible = true;
  std::function<void()> OnEnter;
  std::function<void()> OnExit;

  virtual bool CanFocus() const { return visible; }
  /// A key that is no live action's shortcut. True when the control used it.
  virtual bool HandleKey(KeyStroke) { return false; }
  /// Typed text (one or more characters).
  virtual bool HandleText(std::string_view) { return false; }
  /// The open in-place editor, null when none is.
  virtual CellEditor* Editor() { return nullptr; }
  /// The combo that is being edited in, null when none is.
  virtual TVosMTCombo* ActiveCombo() { return nullptr; }
  /// Takes the open editor's text into the field. Throws Abort when it was refused (the user was
  /// told; the editor stays open).
  virtual void CommitEditor() {}
  /// Called before the focus leaves: commits, cancels or posts as the control's rules say.
  virtual void BeforeLeave() {}

 private:
  TVosBaseForm& form_;
  std::string name_;
  ControlKind kind_;
};

}  // namespace orvane
