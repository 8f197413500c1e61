// What must hold of every picture: captions whole, contrast, what may be typed told from what may
// not, and windows that remember their places.

#include <gtest/gtest.h>

#include <QtCore/QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <set>

#include "desktop/form_parts.h"
#include "desktop/grids/grid_view.h"
#include "desktop/grids/inspector_view.h"
#include "desktop/ribbon_view.h"
#include "desktop/screen.h"
#include "desktop/small_views.h"
#include "desktop/theme.h"

namespace orvane::desktop {
namespace {

using sample::Screen;

double Channel(double value) {
  return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color) {
  return 0.2126 * Channel(color.redF()) + 0.7152 * Channel(color.greenF()) +
         0.0722 * Channel(color.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one) + 0.05;
  const double b = Luminance(other) + 0.05;
  return std::max(a, b) / std::min(a, b);
}

TEST(DesktopLook, EveryTextCanBeReadOnEveryGroundItStandsOn) {
  struct Row {
    Role text;
    std::vector<Role> grounds;
  };
  const Row rows[] = {
      {Role::Text,
       {Role::Window, Role::Bar, Role::Panel, Role::Field, Role::FieldReadOnly, Role::FieldFixed,
        Role::RowCurrent, Role::RowEdit, Role::Head, Role::AccentSoft}},
      {Role::TextDim,
       {Role::Panel, Role::Field, Role::FieldReadOnly, Role::RowCurrent, Role::RowEdit,
        Role::AccentSoft, Role::FieldFixed}},
      {Role::TextDisabled, {Role::Panel, Role::FieldReadOnly}},
      {Role::StripText, {Role::Strip}},
      {Role::StripDim, {Role::Strip}},
      {Role::Required, {Role::FieldFixed, Role::RowCurrent}},
      {Role::ChipText, {Role::ChipGround}},
  };
  constexpr double kLeast = 4.5;
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    for (const Row& row : rows) {
      for (const Role ground : row.grounds) {
        EXPECT_GE(Contrast(ColorOf(row.text, theme), ColorOf(ground, theme)), kLeast)
            << "text role " << static_cast<int>(row.text) << " on " << static_cast<int>(ground)
            << (theme == Theme::Light ? " light" : " dark");
      }
    }
  }
}

TEST(DesktopLook, TheRibbonCutsNothingAtAnyWidth) {
  Screen screen;
  RibbonView& ribbon = *screen.View().Ribbon();
  std::set<std::string> all;
  for (const RibbonGroup& group : screen.form->ribbon.front().groups)
    all.insert(group.actions.begin(), group.actions.end());
  for (int width = 120; width <= 1600; width += 37) {
    screen.View().resize(width, 700);
    ribbon.resize(width, ribbon.height());
    std::set<std::string> found;
    for (const RibbonView::Item& item : ribbon.Items()) {
      found.insert(item.action);
      EXPECT_GE(item.captionRoom, item.captionWidth) << item.action << " at " << width;
      EXPECT_LE(item.place.right(), width) << item.action << " at " << width;
    }
    for (const std::string& folded : ribbon.FoldedActions())
      EXPECT_TRUE(found.insert(folded).second) << folded;
    EXPECT_EQ(found, all) << width;
  }
}

TEST(DesktopLook, TheStatusBarCutsNothingAndTellsWhatWaitsAtEveryWidth) {
  Screen screen;
  screen.app.program.serverName = "orders.example.bg:8011";
  int led = 0;
  screen.app.waiting = {112, "112 документа чакат Вас", "112 чакат Вас",
                        [&](TVosBaseForm&) { ++led; }};
  StatusLine& status = screen.View().Status();
  status.Look();
  for (int width = 110; width <= 1600; width += 7) {
    status.resize(width, status.height());
    const StatusLine::Place* waiting = nullptr;
    QRect former;
    std::vector<StatusLine::Place> places = status.Places();
    std::ranges::sort(places, {}, [](const auto& place) { return place.rect.left(); });
    for (const StatusLine::Place& place : places) {
      EXPECT_GE(place.rect.width(), ScreenMetrics().horizontalAdvance(place.text)) << width;
      EXPECT_TRUE(former.isNull() || place.rect.left() > former.right()) << width;
      EXPECT_GE(place.rect.left(), 0) << width;
      EXPECT_LT(place.rect.right(), width) << width;
      former = place.rect;
      if (place.text.startsWith("112 ")) waiting = &place;
    }
    ASSERT_NE(waiting, nullptr) << width;
    if (width % 5 != 0) continue;
    const int before = led;
    Click(status, waiting->rect);
    EXPECT_EQ(led, before + 1) << width;
  }
}

TEST(DesktopLook, TheRibbonDoesNotMoveWhenF9ChangesItsOwner) {
  Screen screen;
  RibbonView& ribbon = *screen.View().Ribbon();
  const QRect before = ribbon.ActionRect("acPrint").isEmpty() ? ribbon.ActionRect("acAnnul")
                                                              : ribbon.ActionRect("acPrint");
  TAction& save = *screen.form->FindAction("acSave");
  save.shortcut = {};
  screen.PointAt(screen.form->gRows, 0, 1);
  const QRect after = ribbon.ActionRect("acPrint").isEmpty() ? ribbon.ActionRect("acAnnul")
                                                             : ribbon.ActionRect("acPrint");
  EXPECT_EQ(before.size(), after.size());
}

TEST(DesktopLook, ColumnsAndLabelsHoldTheirTitles) {
  Screen screen;
  auto& rows = static_cast<GridView&>(screen.View().ViewOf(screen.form->gRows)->Widget());
  for (const int width : {1600, 1366, 900, 500}) {
    screen.View().showNormal();
    screen.View().resize(width, 700);
    QApplication::processEvents();
    const GridColumns& columns = rows.Columns();
    for (int column = 0; column < columns.Count(); ++column)
      EXPECT_GE(columns.Width(column), columns.TitleNeed(column)) << column << " at " << width;
    for (const ColumnGroup& group : columns.Groups()) {
      const int has =
          columns.Left(group.last) + columns.Width(group.last) - columns.Left(group.first);
      EXPECT_GE(has, ScreenMetrics(true).horizontalAdvance(group.title)) << width;
    }
  }
  const auto& head =
      static_cast<InspectorView&>(screen.View().ViewOf(screen.form->diMain)->Widget());
  for (const InspectorItem& item : screen.form->diMain.items) {
    const QString label = Qs(item.label + (item.required ? " •" : ""));
    EXPECT_GE(head.LabelWidth(), ScreenMetrics().horizontalAdvance(label) + 2 * kPadding);
  }
}

TEST(DesktopLook, ATextThatDoesNotFitTakesRoomFromThoseThatLeaveSome) {
  const std::string remarks = "Сертификат 3.1, доставка на две части до склада на цех 4";
  Screen screen;
  TVosClientDataSet& rows = screen.form->cdsRows_;
  screen.form->RunInGate([&] {
    rows.Edit();
    rows.FieldByName("Remarks").Set(remarks);
    rows.Post();
  });
  GridColumns columns;
  columns.Measure(screen.form->gRows, [](int) { return 0; });
  constexpr int kRoom = 1340;
  columns.FitTo(kRoom);
  EXPECT_GE(columns.Width(9), ScreenMetrics().horizontalAdvance(Qs(remarks)));
  EXPECT_LE(columns.Total(), kRoom);
}

TEST(DesktopLook, ADocumentStandsWholeOnTheSmallestScreen) {
  Screen screen;
  const FormView& view = screen.View();
  EXPECT_LE(view.width(), 1366);
  EXPECT_LE(view.height(), 768);
  auto& head = static_cast<InspectorView&>(screen.View().ViewOf(screen.form->diMain)->Widget());
  EXPECT_GE(head.height(), head.sizeHint().height());
  const auto& rows = static_cast<GridView&>(screen.View().ViewOf(screen.form->gRows)->Widget());
  EXPECT_LE(rows.Columns().Total(), rows.viewport()->width());
}

/// Colour in the middle of a row's place, left of any text.
QColor GroundAt(GridView& grid, int row, int column) {
  const QRect place = grid.BringIntoSight(row, column);
  return grid.grab().toImage().pixelColor(place.left() + 2, place.top() + 4);
}

TEST(DesktopLook, WhatMayBeTypedIsToldFromWhatMayNot) {
  Screen screen;
  auto& rows = static_cast<GridView&>(screen.View().ViewOf(screen.form->gRows)->Widget());
  EXPECT_EQ(GroundAt(rows, 3, 1), ColorOf(Role::Field));
  EXPECT_EQ(GroundAt(rows, 3, 2), ColorOf(Role::FieldReadOnly));
  EXPECT_EQ(GroundAt(rows, 3, 0), ColorOf(Role::FieldFixed));
  EXPECT_EQ(GroundAt(rows, 0, 3), ColorOf(Role::RowCurrent));
  screen.PointAt(screen.form->gRows, 3, 7);
  screen.Type("5");
  screen.Press(KeyCode::Enter);
  EXPECT_EQ(GroundAt(rows, 3, 3), ColorOf(Role::RowEdit));
  screen.form->gRows.readOnly = true;
  screen.form->Dispatch(KeyPressed{KeyCode::Up});
  EXPECT_EQ(GroundAt(rows, 4, 1), ColorOf(Role::FieldReadOnly));
}

TEST(DesktopLook, APageIsChosenByItsTab) {
  Screen screen;
  auto& pages = static_cast<PageView&>(screen.View().ViewOf(screen.form->pcTables)->Widget());
  Click(pages, pages.TabRect(1));
  EXPECT_EQ(screen.form->ActiveControl(), &screen.form->gDates);
  EXPECT_TRUE(screen.View().ViewOf(screen.form->gDates)->Widget().isVisible());
  EXPECT_FALSE(screen.View().ViewOf(screen.form->gRows)->Widget().isVisible());
}

TEST(DesktopLook, ColumnWidthsAndPlacesAreRemembered) {
  const QTemporaryDir folder;
  const QString file = folder.filePath("orvane.ini");
  {
    Screen screen(std::make_unique<FormMemory>(file));
    auto& rows = static_cast<GridView&>(screen.View().ViewOf(screen.form->gRows)->Widget());
    const GridColumns& columns = rows.Columns();
    const int border = columns.Left(1) + columns.Width(1);
    const auto send = [&](QEvent::Type type, int x) {
      QMouseEvent event(type, QPointF(x, 10), rows.viewport()->mapToGlobal(QPointF(x, 10)),
                        Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(rows.viewport(), &event);
    };
    const int before = columns.Width(1);
    send(QEvent::MouseButtonPress, border);
    send(QEvent::MouseMove, border + 60);
    send(QEvent::MouseButtonRelease, border + 60);
    EXPECT_EQ(columns.Width(1), before + 60);
    screen.View().showNormal();
    screen.View().setGeometry(40, 50, 900, 500);
    QApplication::processEvents();
    screen.form->Dispatch(CloseWanted());
  }
  Screen again(std::make_unique<FormMemory>(file));
  const auto& rows = static_cast<GridView&>(again.View().ViewOf(again.form->gRows)->Widget());
  Screen fresh;
  const auto& other = static_cast<GridView&>(fresh.View().ViewOf(fresh.form->gRows)->Widget());
  EXPECT_EQ(rows.Columns().Width(1), other.Columns().Width(1) + 60);
  EXPECT_EQ(again.View().size(), QSize(900, 500));
}

}  // namespace
}  // namespace orvane::desktop
