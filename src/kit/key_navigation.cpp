#include "kit/key_navigation.h"

#include <utility>

#include "host/controls/small_controls.h"
#include "host/form.h"

namespace orvane::kit {
namespace {

struct MoveRow {
  std::string_view name;
  std::string_view hint;
  KeyStroke key;
  Nav nav;
  int step;
};

constexpr MoveRow kMoves[] = {
    {"acFirst", "Преход към първи запис", Shift(KeyCode::F3), Nav::First, 0},
    {"acPriorPage", "Преход преди 10 записа", Ctrl(KeyCode::F3), Nav::Step, -10},
    {"acPrior", "Преход към предишен запис", KeyCode::F3, Nav::Previous, 0},
    {"acNext", "Преход към следващ запис", KeyCode::F4, Nav::Next, 0},
    {"acNextPage", "Преход след 10 записа", Ctrl(KeyCode::F4), Nav::Step, 10},
    {"acLast", "Преход към последен запис", Shift(KeyCode::F4), Nav::Last, 0},
};

bool IsBackward(const MoveRow& move) {
  return move.nav == Nav::First || move.nav == Nav::Previous || move.step < 0;
}

}  // namespace

KeyNavigation::KeyNavigation(TVosBaseForm& form, TKeyEdit& edit, std::string_view suffix, Load load)
    : form_(form), edit_(edit), suffix_(suffix), load_(std::move(load)) {}

void KeyNavigation::AddTo() {
  for (const MoveRow& move : kMoves) {
    TAction action;
    action.name = std::string(move.name) + suffix_;
    action.caption = move.hint;
    action.hint = move.hint;
    action.shortcut = move.key;
    action.OnExecute = [this, nav = move.nav, step = move.step] { load_(nav, step); };
    form_.AddAction(std::move(action));
  }
}

std::vector<std::string> KeyNavigation::ActionNames() const {
  std::vector<std::string> names;
  for (const MoveRow& move : kMoves)
    names.push_back(std::string(move.name) + suffix_);
  return names;
}

void KeyNavigation::Refresh(LoadCode lastLoad, bool oneDocument) {
  const bool focused = form_.ActiveControl() == &edit_ && !oneDocument;
  for (const MoveRow& move : kMoves) {
    TAction* action = form_.FindAction(std::string(move.name) + suffix_);
    const LoadCode end = IsBackward(move) ? LoadCode::First : LoadCode::Last;
    action->enabled = focused && lastLoad != end;
  }
}

}  // namespace orvane::kit
