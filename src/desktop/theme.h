#pragma once

// Colours and type of every view, from one table of roles. Views ask for a role, never for a
// colour; the light and the dark palette differ in the table only.

#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QFontMetrics>
#include <cstdint>

#include "packet/floors.h"

class QApplication;

namespace orvane::desktop {

enum class Theme : std::uint8_t { Light, Dark };

enum class Role : std::uint8_t {
  Window,         ///< ground between the parts of a form
  Strip,          ///< title strip
  StripText,      ///< on Strip
  StripDim,       ///< on Strip: company, user, language
  Bar,            ///< ribbon tabs, status bar, inactive pages
  Panel,          ///< ribbon, dialogs
  Line,           ///< frames
  LineSoft,       ///< between cells and rows
  Text,           ///< on every ground but Strip
  TextDim,        ///< names behind codes, keys, group captions
  TextDisabled,   ///< actions that are not live
  Field,          ///< what may be typed into
  FieldReadOnly,  ///< what may not
  FieldFixed,     ///< fixed columns and label columns
  RowCurrent,     ///< the row that the cursor is on
  RowEdit,        ///< the row in edit
  Head,           ///< grid heads
  Accent,         ///< border of the current cell, focus
  AccentSoft,     ///< the action that owns F9, hover, selection
  AccentLine,     ///< frame of AccentSoft
  EditMark,       ///< mark and border of the row in edit
  Required,       ///< mark at a caption
  ChipGround,
  ChipLine,
  ChipText,
  IconBlue,
  IconGreen,
  IconRed,
  IconAmber,
  IconGrey,  ///< of an action that is not live
  IconSign,  ///< the sign in a coloured icon
  Count
};

/// Colour of a role in the theme in use.
QColor ColorOf(Role role);
/// Colour of a role in a given theme.
QColor ColorOf(Role role, Theme theme);
Theme CurrentTheme();
/// Sets the theme for every view painted from now on, and the application's palette and font.
void ApplyTheme(QApplication& application, Theme theme);
/// Dark when the desktop's own window colour is dark.
Theme ThemeOfDesktop(const QApplication& application);

/// Noto Sans of 12 pixels, the type of everything on the screen.
QFont ScreenFont(bool bold = false);
QFontMetrics ScreenMetrics(bool bold = false);
/// Average width of a character, by which columns count.
int CharWidth();

inline constexpr int kRowHeight = 23;
inline constexpr int kPadding = 7;  ///< between a cell's border and its text
inline constexpr int kMargin = 8;   ///< between the parts of a form

}  // namespace orvane::desktop
