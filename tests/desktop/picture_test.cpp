// Pictures of the sample document, and what must hold of every one of them.

#include <gtest/gtest.h>

#include <QtWidgets/QApplication>

#include "desktop/form_memory.h"
#include "desktop/form_view.h"
#include "desktop/qt_toolkit.h"
#include "desktop/sample_document.h"
#include "desktop/theme.h"

namespace orvane {
namespace {

TEST(Picture, OfASampleDocument) {
  sample::SampleServer server;
  QtToolkit toolkit(std::make_unique<FormMemory>());
  SetClock clock{Stamp{1'772'694'000'000'000}};
  VosApplication app(server, toolkit, clock);
  ASSERT_TRUE(app.LogIn("ivanova", "x"));
  sample::TfSample form(app);
  toolkit.Show(form);
  QApplication::processEvents();
  toolkit.ViewOf(form)->grab().save("/tmp/desktop-light.png");
  form.Execute("acRows");
  form.Dispatch(KeyPressed{KeyCode::F6});
  form.Dispatch(Pointed{&form.gRows, 1, 5, false});
  form.Dispatch(TextTyped{"2"});
  QApplication::processEvents();
  toolkit.ViewOf(form)->grab().save("/tmp/desktop-light2.png");
}

}  // namespace
}  // namespace orvane
