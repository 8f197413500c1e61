#pragma once

// Actions: what a user can do on a screen, with caption, key and whether it is live now. Which are
// live is a table of the screen, evaluated at the end of every event.

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"
#include "host/access.h"
#include "host/keys.h"

namespace orvane::host {

class TVosBaseForm;

struct TAction {
  std::string name;
  std::string caption;
  std::string hint;  ///< caption when empty
  KeyStroke shortcut;
  std::string icon;  ///< name of a drawing of the toolkit: "save", "print", … ; may be empty
  bool enabled = false;
  bool visible = true;
  std::function<void()> OnExecute;
  KeyStroke secondShortcut{};  ///< another key for the same ("Escape" beside Alt+F4 in dialogs)
  bool always = false;         ///< live everywhere without a row of the live table
};

/// States of the main dataset in which a row of the live table holds.
enum class InState : std::uint8_t {
  Any = 15,
  Browse = 1,
  Edit = 2,
  Insert = 4,
  Inactive = 8,
  NotInsert = 1 | 2 | 8,
  Editing = 2 | 4,
};

/// One row of a screen's live table: the action is live while the focus is there, the main dataset
/// is in one of the states, the screen holds the rights and the condition (when given) holds. Rows
/// of one action are or-ed; an action without a row is never live.
struct LiveRow {
  std::string_view action;
  /// Name of a control, of a combo inside a grid or inspector, or one of the words below.
  std::string_view focus;
  InState states = InState::Any;
  TPointAccess needs{};
  bool (*when)(const TVosBaseForm& form) = nullptr;
};

/// Name of the action by which a register hands the code of its current row back to the lookup that
/// opened it; only seen there.
inline constexpr std::string_view kChooseAction = "acChoose";

/// Words for LiveRow::focus.
inline constexpr std::string_view kAnywhere{};
/// While any lookup combo has the focus.
inline constexpr std::string_view kAtCombo = "*combo";
/// While any key edit has the focus.
inline constexpr std::string_view kAtKeyEdit = "*key";

}  // namespace orvane::host
