#include "desktop/qt_keys.h"

#include <QtGui/QKeyEvent>
#include <algorithm>
#include <iterator>

#include "desktop/qt_text.h"

namespace orvane::desktop {
namespace {

struct KeyRow {
  int qtKey;
  KeyCode code;
};

/// What is neither a letter, a digit nor a function key. The first row of a code is the one pressed
/// for it.
constexpr KeyRow kKeys[] = {
    {Qt::Key_Return, KeyCode::Enter},
    {Qt::Key_Enter, KeyCode::Enter},
    {Qt::Key_Escape, KeyCode::Escape},
    {Qt::Key_Tab, KeyCode::Tab},
    {Qt::Key_Backtab, KeyCode::Tab},
    {Qt::Key_Space, KeyCode::Space},
    {Qt::Key_Backspace, KeyCode::Backspace},
    {Qt::Key_Insert, KeyCode::Insert},
    {Qt::Key_Delete, KeyCode::Delete},
    {Qt::Key_Up, KeyCode::Up},
    {Qt::Key_Down, KeyCode::Down},
    {Qt::Key_Left, KeyCode::Left},
    {Qt::Key_Right, KeyCode::Right},
    {Qt::Key_Home, KeyCode::Home},
    {Qt::Key_End, KeyCode::End},
    {Qt::Key_PageUp, KeyCode::PageUp},
    {Qt::Key_PageDown, KeyCode::PageDown},
    {Qt::Key_QuoteLeft, KeyCode::BackQuote},
    {Qt::Key_AsciiTilde, KeyCode::BackQuote},
};

/// Rows of a PC keyboard as X and Wayland number their keys.
struct ScanRow {
  quint32 first;
  const char* keys;
};
constexpr ScanRow kScanRows[] = {
    {10, "1234567890"},
    {24, "QWERTYUIOP"},
    {38, "ASDFGHJKL"},
    {52, "ZXCVBNM"},
};
constexpr quint32 kScanBackQuote = 49;

KeyCode Counted(KeyCode first, int by) {
  return static_cast<KeyCode>(static_cast<int>(first) + by);
}

KeyCode OfLatin(int key) {
  if (key >= Qt::Key_A && key <= Qt::Key_Z) return Counted(KeyCode::A, key - Qt::Key_A);
  if (key >= Qt::Key_0 && key <= Qt::Key_9) return Counted(KeyCode::Digit0, key - Qt::Key_0);
  return KeyCode::None;
}

/// By the place of the key: what a Cyrillic layout types says nothing about the Latin letter.
KeyCode OfPlace([[maybe_unused]] const QKeyEvent& event) {
#ifdef Q_OS_WIN
  constexpr quint32 kVirtualBackQuote = 0xC0;
  if (event.nativeVirtualKey() == kVirtualBackQuote) return KeyCode::BackQuote;
  return OfLatin(static_cast<int>(event.nativeVirtualKey()));
#else
  const quint32 scan = event.nativeScanCode();
  if (scan == kScanBackQuote) return KeyCode::BackQuote;
  for (const ScanRow& row : kScanRows) {
    const std::string_view keys = row.keys;
    if (scan >= row.first && scan < row.first + keys.size())
      return OfLatin(static_cast<unsigned char>(keys[scan - row.first]));
  }
  return KeyCode::None;
#endif
}

KeyCode CodeOf(const QKeyEvent& event) {
  const int key = event.key();
  if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return Counted(KeyCode::F1, key - Qt::Key_F1);
  const auto row = std::ranges::find(kKeys, key, &KeyRow::qtKey);
  if (row != std::end(kKeys)) return row->code;
  const KeyCode latin = OfLatin(key);
  return latin != KeyCode::None ? latin : OfPlace(event);
}

}  // namespace

KeyStroke StrokeOf(const QKeyEvent& event) {
  std::uint8_t modifiers = NoModifier;
  if (event.modifiers() & Qt::ShiftModifier) modifiers |= ShiftKey;
  if (event.modifiers() & Qt::ControlModifier) modifiers |= CtrlKey;
  if (event.modifiers() & Qt::AltModifier) modifiers |= AltKey;
  if (event.key() == Qt::Key_Backtab) modifiers |= ShiftKey;
  return {CodeOf(event), modifiers};
}

std::string TypedBy(const QKeyEvent& event) {
  if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return {};
  const QString text = event.text();
  if (text.isEmpty() ||
      !std::ranges::all_of(text, [](QChar c) { return c.isPrint() || c.isSurrogate(); }))
    return {};
  return Utf8(text);
}

int QtKeyOf(KeyStroke stroke) {
  const int code = static_cast<int>(stroke.code);
  const auto within = [code](KeyCode first, KeyCode last) {
    return code >= static_cast<int>(first) && code <= static_cast<int>(last);
  };
  if (stroke == Shift(KeyCode::Tab)) return Qt::Key_Backtab;
  if (within(KeyCode::F1, KeyCode::F12)) return Qt::Key_F1 + code - static_cast<int>(KeyCode::F1);
  if (within(KeyCode::A, KeyCode::Z)) return Qt::Key_A + code - static_cast<int>(KeyCode::A);
  if (within(KeyCode::Digit0, KeyCode::Digit9))
    return Qt::Key_0 + code - static_cast<int>(KeyCode::Digit0);
  const auto row = std::ranges::find(kKeys, stroke.code, &KeyRow::code);
  return row == std::end(kKeys) ? 0 : row->qtKey;
}

}  // namespace orvane::desktop
