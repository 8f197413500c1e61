#include "host/keys.h"

#include <iterator>

namespace orvane::host {
namespace {

/// In the order of KeyCode, after None.
constexpr std::string_view kKeyNames[] = {
    "F1",  "F2",     "F3",        "F4",     "F5",     "F6", "F7",   "F8",   "F9",    "F10",
    "F11", "F12",    "A",         "B",      "C",      "D",  "E",    "F",    "G",     "H",
    "I",   "J",      "K",         "L",      "M",      "N",  "O",    "P",    "Q",     "R",
    "S",   "T",      "U",         "V",      "W",      "X",  "Y",    "Z",    "0",     "1",
    "2",   "3",      "4",         "5",      "6",      "7",  "8",    "9",    "Enter", "Escape",
    "Tab", "Space",  "Backspace", "Insert", "Delete", "Up", "Down", "Left", "Right", "Home",
    "End", "PageUp", "PageDown",  "`",
};
static_assert(std::size(kKeyNames) == static_cast<std::size_t>(KeyCode::BackQuote));

struct ModifierName {
  KeyModifiers modifier;
  std::string_view prefix;
};

constexpr ModifierName kModifierNames[] = {
    {CtrlKey, "Ctrl+"},
    {ShiftKey, "Shift+"},
    {AltKey, "Alt+"},
};

constexpr std::string_view kNoKey = "(none)";

}  // namespace

std::string KeyText(KeyStroke key) {
  if (key.IsNone()) return std::string(kNoKey);
  std::string text;
  for (const ModifierName& row : kModifierNames) {
    if ((key.modifiers & row.modifier) != 0) text += row.prefix;
  }
  return text += kKeyNames[static_cast<std::size_t>(key.code) - 1];
}

std::optional<KeyStroke> ParseKey(std::string_view text) {
  if (text == kNoKey) return KeyStroke();
  std::uint8_t modifiers = NoModifier;
  for (const ModifierName& row : kModifierNames) {
    if (!text.starts_with(row.prefix)) continue;
    modifiers = static_cast<std::uint8_t>(modifiers | row.modifier);
    text.remove_prefix(row.prefix.size());
  }
  for (std::size_t i = 0; i < std::size(kKeyNames); ++i) {
    if (text == kKeyNames[i]) return KeyStroke(static_cast<KeyCode>(i + 1), modifiers);
  }
  return std::nullopt;
}

}  // namespace orvane::host
