#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "packet/floors.h"

namespace orvane::host {

enum class KeyCode : std::uint8_t {
  None,
  F1,
  F2,
  F3,
  F4,
  F5,
  F6,
  F7,
  F8,
  F9,
  F10,
  F11,
  F12,
  A,
  B,
  C,
  D,
  E,
  F,
  G,
  H,
  I,
  J,
  K,
  L,
  M,
  N,
  O,
  P,
  Q,
  R,
  S,
  T,
  U,
  V,
  W,
  X,
  Y,
  Z,
  Digit0,
  Digit1,
  Digit2,
  Digit3,
  Digit4,
  Digit5,
  Digit6,
  Digit7,
  Digit8,
  Digit9,
  Enter,
  Escape,
  Tab,
  Space,
  Backspace,
  Insert,
  Delete,
  Up,
  Down,
  Left,
  Right,
  Home,
  End,
  PageUp,
  PageDown,
  BackQuote,  ///< virtual code C0 hex, left of the digit 1
};

enum KeyModifiers : std::uint8_t { NoModifier = 0, ShiftKey = 1, CtrlKey = 2, AltKey = 4 };

/// A key with its modifiers, as a shortcut or as pressed. Letters are the key's Latin place
/// whatever the keyboard's layout.
struct KeyStroke {
  KeyCode code = KeyCode::None;
  std::uint8_t modifiers = NoModifier;

  constexpr KeyStroke() = default;
  constexpr KeyStroke(KeyCode keyCode, std::uint8_t keyModifiers = NoModifier)
      : code(keyCode), modifiers(keyModifiers) {}
  constexpr bool operator==(const KeyStroke&) const = default;
  constexpr bool IsNone() const { return code == KeyCode::None; }
};

constexpr KeyStroke Ctrl(KeyCode code) {
  return {code, CtrlKey};
}
constexpr KeyStroke Shift(KeyCode code) {
  return {code, ShiftKey};
}
constexpr KeyStroke Alt(KeyCode code) {
  return {code, AltKey};
}
constexpr KeyStroke CtrlAlt(KeyCode code) {
  return {code, CtrlKey | AltKey};
}

/// "Ctrl+F2", "Shift+Tab", "F9"; "(none)" for no key.
std::string KeyText(KeyStroke key);
/// Reads what KeyText writes; empty for anything else.
std::optional<KeyStroke> ParseKey(std::string_view text);

}  // namespace orvane::host
