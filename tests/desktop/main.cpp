#include <gtest/gtest.h>

#include <QtWidgets/QApplication>

#include "desktop/theme.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  orvane::desktop::ApplyTheme(application, orvane::desktop::Theme::Light);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
