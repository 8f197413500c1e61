#pragma once

// A sample document in its window, driven as a person drives it: keys, characters, clicks.

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/control_view.h"
#include "desktop/form_memory.h"
#include "desktop/form_view.h"
#include "desktop/message_view.h"
#include "desktop/qt_text.h"
#include "desktop/qt_toolkit.h"
#include "desktop/sample_document.h"
#include "desktop/walk_driver.h"

namespace orvane::desktop::sample {

class Screen {
 public:
  explicit Screen(std::unique_ptr<FormMemory> memory = std::make_unique<FormMemory>())
      : toolkit(std::move(memory)), app(server, toolkit, clock) {
    (void)app.LogIn("ivanova", "парола");
    form = std::make_unique<TfSample>(app);
    toolkit.Show(*form);
    QApplication::processEvents();
  }

  FormView& View() { return *toolkit.ViewOf(*form); }
  void Press(KeyStroke key) { PressKey(View().KeyTarget(), key); }
  void Type(const std::string& text) {
    for (const QChar c : Qs(text))
      TypeKeys(View().KeyTarget(), Utf8(QString(c)));
  }
  void PointAt(Control& control, int row, int column, bool twice = false) {
    ControlView& view = *View().ViewOf(control);
    Click(view.Surface(), view.BringIntoSight(row, column), twice);
  }
  /// The line edit that is open; null when none is.
  QLineEdit* Line() {
    for (QLineEdit* edit : View().findChildren<QLineEdit*>()) {
      if (!edit->isHidden()) return edit;
    }
    return nullptr;
  }
  QPlainTextEdit* Lines() {
    for (QPlainTextEdit* edit : View().findChildren<QPlainTextEdit*>()) {
      if (!edit->isHidden()) return edit;
    }
    return nullptr;
  }
  /// What stands in the open line edit; "(none)" when none is open.
  std::string EditorText() { return Line() == nullptr ? "(none)" : Utf8(Line()->text()); }
  /// Does `work` once the loop of a dialog runs.
  static void Inside(std::function<void()> work) { QTimer::singleShot(0, std::move(work)); }

  SampleServer server;
  SetClock clock{Stamp{1'772'694'000'000'000}};  // 05.03.2026 09:00 in Sofia
  QtToolkit toolkit;
  VosApplication app;
  std::unique_ptr<TfSample> form;
};

}  // namespace orvane::desktop::sample
