#pragma once

// The document that a screen shows, by its identifier edit: whoever comes to the edit from a head
// with typing in it is asked whether to save it; then it shows what the server holds. A typed
// identifier leads to its document.
//
//   shown_.KeyEditEnter();          // OnEnter of the key edits
//   shown_.IdentifierTyped(text);   // OnEditClosed of the identifier edit
//   shown_.EventEnds();             // AfterRefreshActions

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "contract/workflow.h"
#include "data/client_dataset.h"
#include "kit/documents/document_apply.h"

namespace orvane::host {
class TKeyEdit;
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::kit {

/// A whole number typed as a key; empty when the text is none.
std::optional<std::int32_t> ReadKey(std::string_view text);

/// What differs between documents in being shown.
struct ShownDocumentRules {
  std::string_view notFound;         ///< message; %s is the identifier
  std::function<std::int64_t()> id;  ///< last loaded; 0: none
  /// Saves the head being typed with all its checks; a refusal is an Abort.
  std::function<void()> save;
  /// Loads the shown document anew by its key.
  std::function<void()> reload;
  /// Loads another document by its identifier.
  std::function<LoadCode(std::int64_t id)> load;
  /// What was typed into the head was given up.
  std::function<void()> typingDropped;
  /// The number of the shown document, typed again, loads it anew; without it nothing happens then.
  bool numberLoadsAgain = false;
};

/// Shows one given document over another screen and returns when it is closed. `load` loads it;
/// when there is none for the user he is told over `owner`, in the words of `notFound` (%s:
/// identifier).
void ShowOneDocument(TVosBaseForm& owner, TVosBaseForm& screen, std::string_view notFound,
                     std::int64_t id, const std::function<LoadCode()>& load);

class ShownDocument {
 public:
  ShownDocument(TVosBaseForm& form, TKeyEdit& edit, TVosClientDataSet& head,
                ShownDocumentRules rules);

  /// A load filled the screen: the same event needs no further one.
  void WasLoaded() { fresh_ = true; }
  /// What is shown is no longer what was loaded.
  void IsOutdated() { fresh_ = false; }
  void EventEnds() {
    fresh_ = false;
    givesUp_ = false;
  }

  /// Loads the shown document again, unless that was just done in this event. What a broken link
  /// left behind goes first: it may be the shown document itself, still without an identifier.
  void Reload();
  void KeyEditEnter();
  /// The user's command to give up what he typed into the head: first what is typed in the open
  /// editor, then the rest, back to the edit without a question.
  void GiveUp();
  /// Posts a move of the head: a refused one leaves nothing of it in edit and ends the event.
  void PostMove(DocumentHead& head);
  /// Shows another document; false, after telling the user, when there is none for him.
  bool Show(std::int64_t id);
  /// Shows the document of that identifier. A text that is no identifier is refused; without such a
  /// document the shown one stays.
  void IdentifierTyped(std::string_view text);
  /// The identifier in the edit, also while it is being typed. Refused when it is none.
  std::int32_t TypedIdentifier() const;

 private:
  /// Ends the head's edit: saved or given up. True when it was given up.
  bool GiveUpHead();
  bool SavesHead();

  TVosBaseForm& form_;
  TKeyEdit& edit_;
  TVosClientDataSet& head_;
  ShownDocumentRules rules_;
  bool fresh_ = false;    ///< loaded during the event that is being handled
  bool givesUp_ = false;  ///< the event gives the head's typing up
};

}  // namespace orvane::kit
