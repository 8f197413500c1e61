#include "kit/documents/shown_document.h"

#include <charconv>
#include <utility>

#include "data/abort.h"
#include "host/controls/small_controls.h"
#include "host/dialogs.h"
#include "host/form.h"
#include "kit/message_text.h"
#include "kit/required_fields.h"
#include "packet/fold.h"

namespace orvane::kit {
namespace {

constexpr std::string_view kUnsavedHead = "Документът не е записан. Да се запише ли?";
constexpr std::string_view _rWrongIdentifier =
    "Въведете коректна стойност за поле \"Идентификатор\"!";

}  // namespace

std::optional<std::int32_t> ReadKey(std::string_view text) {
  const std::string_view typed = Trim(text);
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), number);
  if (error != std::errc() || end != typed.data() + typed.size()) return std::nullopt;
  return number;
}

void ShowOneDocument(TVosBaseForm& owner, TVosBaseForm& screen, std::string_view notFound,
                     std::int64_t id, const std::function<LoadCode()>& load) {
  screen.SetAccess(owner.Access());
  if (load() != LoadCode::None) return screen.ShowModal();
  VosMessageDlg(owner, kErrorMessage, screen.caption, Filled(notFound, {std::to_string(id)}));
}

ShownDocument::ShownDocument(TVosBaseForm& form, TKeyEdit& edit, TVosClientDataSet& head,
                             ShownDocumentRules rules)
    : form_(form), edit_(edit), head_(head), rules_(std::move(rules)) {}

void ShownDocument::Reload() {
  form_.SendWaiting();
  if (rules_.id() == 0 || fresh_) return;
  rules_.reload();
}

/// A head that cannot be saved, or that the user wants to go on with, has the focus again.
bool ShownDocument::SavesHead() {
  Control* head = form_.CameFrom();
  try {
    if (!SavesBeforeLeaving(form_, kUnsavedHead)) return false;
    rules_.save();
    return true;
  } catch (...) {
    if (head_.Editing() && form_.ActiveControl()->Kind() == ControlKind::KeyEdit)
      form_.FocusControl(head);
    throw;
  }
}

bool ShownDocument::GiveUpHead() {
  if (!head_.Editing()) return false;
  if (head_.Modified() && !givesUp_ && SavesHead()) return false;
  head_.Cancel();
  return true;
}

void ShownDocument::GiveUp() {
  if (form_.UndoInEditor()) return;
  givesUp_ = true;
  form_.FocusControl(&edit_);
}

void ShownDocument::KeyEditEnter() {
  const bool dropped = GiveUpHead();
  Reload();
  if (dropped) rules_.typingDropped();
}

void ShownDocument::PostMove(DocumentHead& head) {
  if (head.Post()) return;
  givesUp_ = true;
  KeyEditEnter();
  throw Abort{};
}

bool ShownDocument::Show(std::int64_t id) {
  const bool there = id == rules_.id() && !rules_.numberLoadsAgain;
  if (there || rules_.load(id) != LoadCode::None) return true;
  VosMessageDlg(form_, kWarningMessage, form_.caption,
                Filled(rules_.notFound, {std::to_string(id)}));
  return false;
}

void ShownDocument::IdentifierTyped(std::string_view text) {
  const std::optional<std::int32_t> id = ReadKey(text);
  form_.RefuseIf(!id, _rWrongIdentifier);
  Show(*id);
  edit_.SetText(rules_.id() == 0 ? std::string() : std::to_string(rules_.id()));
}

std::int32_t ShownDocument::TypedIdentifier() const {
  const std::optional<std::int32_t> id = ReadKey(edit_.TypedText());
  form_.RefuseIf(!id, _rWrongIdentifier);
  return *id;
}

}  // namespace orvane::kit
