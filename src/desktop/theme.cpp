#include "desktop/theme.h"

#include <QtGui/QPalette>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>
#include <iterator>

namespace orvane::desktop {
namespace {

struct RoleRow {
  Role role;
  QRgb light;
  QRgb dark;
};

/// In the order of the enumeration.
constexpr RoleRow kRoles[] = {
    {Role::Window, 0xFFEEF1F6, 0xFF1A1F27},        {Role::Strip, 0xFF17324D, 0xFF0E2236},
    {Role::StripText, 0xFFFFFFFF, 0xFFF5F8FC},     {Role::StripDim, 0xFFC9D6E4, 0xFFB4C4D6},
    {Role::Bar, 0xFFDDE3EC, 0xFF222933},           {Role::Panel, 0xFFF9FAFC, 0xFF262D38},
    {Role::Line, 0xFFC3CBD7, 0xFF4A5564},          {Role::LineSoft, 0xFFE2E6ED, 0xFF343D4A},
    {Role::Text, 0xFF1A202C, 0xFFE9EDF3},          {Role::TextDim, 0xFF465063, 0xFFB7C1CF},
    {Role::TextDisabled, 0xFF667085, 0xFF94A0B2},  {Role::Field, 0xFFFFFFFF, 0xFF12161C},
    {Role::FieldReadOnly, 0xFFF3F5F9, 0xFF1F2630}, {Role::FieldFixed, 0xFFEAEEF5, 0xFF28303C},
    {Role::RowCurrent, 0xFFE3EFFA, 0xFF1C3550},    {Role::RowEdit, 0xFFFFF8E6, 0xFF3A3320},
    {Role::Head, 0xFFE5E9F1, 0xFF2C3542},          {Role::Accent, 0xFF1F66B0, 0xFF6FB0F5},
    {Role::AccentSoft, 0xFFDCE9F8, 0xFF24415F},    {Role::AccentLine, 0xFF8DB4E2, 0xFF4D7FB5},
    {Role::EditMark, 0xFFB7791F, 0xFFE0A84A},      {Role::Required, 0xFFC0261C, 0xFFFF8A80},
    {Role::ChipGround, 0xFFFFF3CD, 0xFF4A3C12},    {Role::ChipLine, 0xFFD9B44A, 0xFF9C7F2C},
    {Role::ChipText, 0xFF5F4200, 0xFFFFE29A},      {Role::IconBlue, 0xFF2B6CB0, 0xFF5B9BDD},
    {Role::IconGreen, 0xFF2F855A, 0xFF58B384},     {Role::IconRed, 0xFFB3363B, 0xFFE0777B},
    {Role::IconAmber, 0xFFB7791F, 0xFFDDA147},     {Role::IconGrey, 0xFFB9C1CE, 0xFF566274},
    {Role::IconSign, 0xFFFFFFFF, 0xFF12161C},
};
static_assert(std::size(kRoles) == static_cast<std::size_t>(Role::Count));

Theme theThemeInUse = Theme::Light;

QPalette PaletteOf(Theme theme) {
  QPalette palette;
  const auto set = [&](QPalette::ColorRole role, Role from) {
    palette.setColor(role, ColorOf(from, theme));
  };
  set(QPalette::Window, Role::Window);
  set(QPalette::WindowText, Role::Text);
  set(QPalette::Base, Role::Field);
  set(QPalette::AlternateBase, Role::FieldReadOnly);
  set(QPalette::Text, Role::Text);
  set(QPalette::Button, Role::Panel);
  set(QPalette::ButtonText, Role::Text);
  set(QPalette::ToolTipBase, Role::Panel);
  set(QPalette::ToolTipText, Role::Text);
  set(QPalette::Highlight, Role::Accent);
  set(QPalette::HighlightedText, Role::Field);
  set(QPalette::PlaceholderText, Role::TextDisabled);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, ColorOf(Role::TextDisabled, theme));
  return palette;
}

}  // namespace

QColor ColorOf(Role role, Theme theme) {
  const RoleRow& row = kRoles[static_cast<std::size_t>(role)];
  return QColor::fromRgba(theme == Theme::Light ? row.light : row.dark);
}

QColor ColorOf(Role role) {
  return ColorOf(role, theThemeInUse);
}

Theme CurrentTheme() {
  return theThemeInUse;
}

void ApplyTheme(QApplication& application, Theme theme) {
  theThemeInUse = theme;
  if (QStyle* style = QStyleFactory::create("Fusion")) application.setStyle(style);
  application.setPalette(PaletteOf(theme));
  application.setFont(ScreenFont());
}

Theme ThemeOfDesktop(const QApplication& application) {
  constexpr int kMiddle = 128;
  const QColor window = application.palette().color(QPalette::Window);
  return window.lightness() < kMiddle ? Theme::Dark : Theme::Light;
}

QFont ScreenFont(bool bold) {
  constexpr int kPixels = 12;
  QFont font("Noto Sans");
  font.setPixelSize(kPixels);
  font.setBold(bold);
  return font;
}

QFontMetrics ScreenMetrics(bool bold) {
  return QFontMetrics(ScreenFont(bold));
}

int CharWidth() {
  return ScreenMetrics().averageCharWidth();
}

}  // namespace orvane::desktop
