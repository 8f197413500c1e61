#pragma once

// What shows one control of a form. The form asks every view to look at its model after each event;
// a view repaints only when what it would paint has changed.

#include <QtCore/QRect>
#include <QtWidgets/QWidget>
#include <cstdint>

#include "host/controls/control.h"

namespace orvane::desktop {

class FormMemory;

class ControlView {
 public:
  explicit ControlView(Control& control) : control_(control) {}
  virtual ~ControlView() = default;
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;

  Control& Model() const { return control_; }
  /// The widget in the form's layout; it takes the keyboard while its control has the focus and no
  /// editor is open.
  virtual QWidget& Widget() = 0;
  /// The widget in whose coordinates places are told.
  virtual QWidget& Surface() { return Widget(); }

  /// Takes over what was changed in the model. True when something was.
  bool Look();
  bool HasFocus() const;

  /// Where the open editor stands on the surface, cut to what is visible; empty when out of sight.
  virtual QRect EditorPlace() const { return {}; }
  virtual Qt::Alignment EditorAlignment() const { return Qt::AlignLeft; }
  /// The open editor hides what it shows.
  virtual bool EditorIsSecret() const { return false; }
  /// Brings a place into sight and returns it, on the surface; -1 is the current one. Empty when
  /// there is no such place.
  virtual QRect BringIntoSight(int /*row*/, int /*column*/) { return Surface().rect(); }
  /// The current place's value as text, for the clipboard.
  virtual QString CurrentText() const { return {}; }

 protected:
  /// Something that is painted differs from last time.
  virtual void Changed() { Surface().update(); }
  /// Grows with what the view shows beside the control itself.
  virtual std::uint64_t ShownVersion() const { return 0; }

 private:
  Control& control_;
  std::uint64_t seenControl_ = 0;
  std::uint64_t seenShown_ = 0;
  bool seenFocus_ = false;
};

}  // namespace orvane::desktop
