#pragma once

// Forms: a screen as the user lives in it, without drawing. Every event enters through Dispatch,
// the one gate: rules run, a refusal ends in Abort there and nowhere else, then the live actions
// are settled once and the changes announced.

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "data/abort.h"
#include "data/data_module.h"
#include "host/access.h"
#include "host/action.h"
#include "host/application.h"
#include "host/controls/control.h"
#include "host/dialogs.h"
#include "host/layout.h"

namespace orvane::host {

// --- events -------------------------------------------------------------------------------------

/// A key as pressed. Live actions' shortcuts come first, then the focused control, then the form.
struct KeyPressed {
  KeyStroke key;
};
/// Characters typed into the focused control.
struct TextTyped {
  std::string text;
};
/// The whole text of the open in-place editor changed (a toolkit with an editor of its own).
struct EditorTextChanged {
  std::string text;
};
/// An action chosen from ribbon, bar or menu.
struct ActionChosen {
  std::string action;
};
/// The user pointed at a control, or at a place in it (grid: row and column; inspector: item).
struct Pointed {
  Control* control = nullptr;
  int row = -1;
  int column = -1;
  bool openEditor = false;  ///< double click
};
/// An entry of the open combo list was picked.
struct ListPicked {
  int index = 0;
};
/// The list under a combo was asked for (button, Alt+Down).
struct ListWanted {};
struct PageChosen {
  std::string pageControl;
  std::string page;
};
/// A view came near the last row that has arrived.
struct EndNeared {
  Control* control = nullptr;
};
struct CloseWanted {};

using Event = std::variant<KeyPressed, TextTyped, EditorTextChanged, ActionChosen, Pointed,
                           ListPicked, ListWanted, PageChosen, EndNeared, CloseWanted>;

// --- forms --------------------------------------------------------------------------------------

/// What an action of the host asks of the window; the toolkit does it and clears the request.
enum class WindowRequest : std::uint8_t { None, Minimize, Maximize, ResetPosition };

/// Status of a form, kept by the host.
enum FormStatus : std::uint8_t { fsInserting = 1 };

class TVosBaseForm {
 public:
  TVosBaseForm(const FormIdentity& identity, std::string_view className, std::string_view caption);
  virtual ~TVosBaseForm();
  TVosBaseForm(const TVosBaseForm&) = delete;
  TVosBaseForm& operator=(const TVosBaseForm&) = delete;

  VosApplication& App() const { return *identity_.app; }
  const std::string& ClassName() const { return className_; }
  std::string caption;
  std::int32_t ModuleNo() const { return identity_.moduleNo; }
  std::int32_t PointNo() const { return identity_.pointNo; }
  ModulePoint* Point() const { return identity_.point; }
  const FormIdentity& Identity() const { return identity_; }

  // --- rights and status ------------------------------------------------------------------------
  TPointAccess Access() const { return access_; }
  bool May(PointAccessRight right) const { return access_.Has(right); }
  /// The host or an opener sets the rights; runs OnChangeAccess.
  void SetAccess(TPointAccess access);
  std::uint8_t Status() const { return status_; }
  void SetVosFormStatus(FormStatus status, bool on);

  // --- the gate ---------------------------------------------------------------------------------
  /// Never throws. Nested calls (a modal dialog inside an event) are fine. A failure of the server
  /// is told by its kind; whatever was typed stays.
  void Dispatch(const Event& event) noexcept;
  /// Runs `work` through the same gate: construction steps, OnShow, answers of the toolkit.
  void RunInGate(const std::function<void()>& work) noexcept;
  /// An event of the form is being handled: the form must not be freed now.
  bool IsBusy() const { return gateDepth_ > 0; }
  /// Tells the user of a failure; after an ended session the same user may log in again here.
  void ShowFailure(const Failure& failure, Typing typing);
  /// The same; what became of the typing is what HasUnsavedTyping says.
  void ShowFailure(const Failure& failure);
  /// Tells why reading failed; true when it shall be tried again.
  bool MayReadAgain(const Failure& failure);

  // --- life -------------------------------------------------------------------------------------
  /// First showing: OnShow, first focus. Called by the toolkit before it draws.
  void BeShown();
  bool IsShown() const { return shown_; }
  /// Asks the form to close: unsaved typing is asked about, OnClose may refuse; a refusal is an
  /// Abort.
  void Close();
  bool IsClosed() const { return closed_; }
  /// Shows it modally; returns when it is closed.
  void ShowModal();
  /// Field whose value a lookup that opened this register asks for; empty: nobody asks.
  std::string choiceField;
  /// What is handed back to it; Null: nothing was chosen.
  Variant chosenCode;
  WindowRequest windowRequest = WindowRequest::None;
  bool stayOnTop = false;

  // --- actions ----------------------------------------------------------------------------------
  TAction& AddAction(TAction action);
  TAction* FindAction(std::string_view name) const;
  const std::vector<std::unique_ptr<TAction>>& Actions() const { return actions_; }
  /// Runs a live action; false when it is not live.
  bool Execute(std::string_view name);
  /// Settles which actions are live from the live table; every event ends with it.
  void RefreshActions();
  /// The live action that a key belongs to: of several the first in the live table; null when none.
  TAction* LiveActionFor(KeyStroke key) const;
  /// Keys that more than one live action has now ("F9: acSave, acForConfirmation"): a mistake of
  /// the live table.
  std::vector<std::string> DuplicateLiveKeys() const;
  std::vector<RibbonTab> ribbon;
  LayoutNode layout;

  // --- controls and focus -----------------------------------------------------------------------
  const std::vector<Control*>& Controls() const { return controls_; }
  Control* FindControl(std::string_view name) const;
  Control* ActiveControl() const { return activeControl_; }
  /// OnExit of the old control, OnEnter of the new one; no events when it has the focus already. A
  /// rule of the old control that throws Abort, or asks for the focus elsewhere, wins.
  void FocusControl(Control* control);
  /// To the next (or previous) control of the layout's order that can take the focus.
  void FocusNext(bool backwards = false);
  /// The control that had the focus before the active one; null when there was none.
  Control* CameFrom() const { return cameFrom_; }
  /// Something was typed into the open editor.
  bool IsTypingInEditor() const;
  /// Gives up what was typed into the open editor; false when nothing was.
  bool UndoInEditor();
  /// Name of the combo in use, else of the active control.
  std::string FocusName() const;

  // --- what was typed ---------------------------------------------------------------------------
  /// Whoever saves a dataset's changes on the server tells the form how what waits in its log is
  /// sent. In the order of these calls: a document's head before its rows.
  void Keeps(TVosClientDataSet& dataSet, std::function<void()> send);
  /// Changes that did not reach the server wait in a log.
  bool HasWaiting() const;
  /// Sends them. Whatever makes what is shown give way to something else (another document, another
  /// unit, a move) calls it first: an Abort when the user gives up, and he stays.
  void SendWaiting();
  /// Something typed into a kept dataset has not reached the server: a changed row in edit, or what
  /// waits.
  bool HoldsTyping() const;

  // --- language ---------------------------------------------------------------------------------
  /// Number of the language that the screen works in, from 1; the screens it opens begin in it.
  int GetLanguageNumber() const { return language_; }
  /// True when the screen works in the first language.
  bool FirstLanguage() const { return language_ == 1; }
  /// To the other of the first two languages, on this screen alone. Nothing happens where there is
  /// one language.
  void SwitchLanguage();

  // --- messages ---------------------------------------------------------------------------------
  /// Error with the form's caption, then Abort.
  [[noreturn]] void Refuse(std::string_view text);
  void RefuseIf(bool condition, std::string_view text) {
    if (condition) Refuse(text);
  }

  /// To the document of that identifier, on a screen that shows documents. Refused while something
  /// typed is not saved yet.
  void GoToDocument(std::int64_t id);

  /// Text of the left half of the status bar beside the connection.
  virtual std::string StatusText() const;
  /// The main dataset, whose state the live table reads; null when there is none.
  virtual TVosClientDataSet* MainDataSet() const { return nullptr; }

 protected:
  virtual void OnShow() {}
  virtual void OnChangeAccess() {}
  /// The form's own live table.
  virtual std::span<const LiveRow> LiveRows() const { return {}; }
  /// After the table: what the table cannot say (shared keys). Rarely needed.
  virtual void AfterRefreshActions() {}
  /// Keys that neither an action nor the control used.
  virtual bool HandleFormKey(KeyStroke) { return false; }
  virtual void OnLanguageChanged() {}
  /// Shows the document of that identifier, where the screen shows documents.
  virtual void ShowDocument(std::int64_t) {}
  /// Before the form closes; may throw Abort.
  virtual void OnClose() {}
  /// Whether closing would lose something the user typed. By default: what HoldsTyping tells, a row
  /// in edit of the main dataset or of the focused control's, or an open editor.
  virtual bool HasUnsavedTyping() const;
  /// Drops what HasUnsavedTyping told of.
  virtual void DropTyping();

 private:
  friend class Control;
  void Read();
  void Handle(const Event& event);
  void HandleKey(KeyStroke key);
  void HandlePointed(const Pointed& event);
  void LeaveActiveControl();
  bool GoesToEditor(KeyStroke key) const;
  bool FocusMatches(std::string_view word) const;
  bool Matches(const LiveRow& row) const;
  /// Live actions, those of the live table first and in its order, each once.
  std::vector<TAction*> LiveActions() const;
  std::vector<Control*> FocusOrder() const;
  void RunGuarded(const std::function<void()>& work) noexcept;
  /// The same user, after his session ended; false when he gave up.
  bool LogInAgain();

  struct Kept {
    TVosClientDataSet* dataSet;
    std::function<void()> send;
  };

  FormIdentity identity_;
  std::string className_;
  TPointAccess access_;
  std::uint8_t status_ = 0;
  std::vector<std::unique_ptr<TAction>> actions_;
  std::vector<Control*> controls_;
  Control* activeControl_ = nullptr;
  Control* cameFrom_ = nullptr;
  Control* focusTarget_ = nullptr;
  bool leaving_ = false;
  int gateDepth_ = 0;
  int language_ = 1;
  bool shown_ = false;
  bool closed_ = false;
  std::vector<Kept> kept_;
};

/// A part of the status bar. Where there is no room for all, those of the least weight give way
/// first: to their brief form, or whole where they have none.
struct StatusPart {
  std::string text;
  std::string brief = {};
  int weight = 0;
  bool atRight = false;
  std::string action = {};  ///< chosen by a click on the part; empty: it only tells

  bool operator==(const StatusPart&) const = default;
};
/// "● Свързан: 127.0.0.1:8011", "5 реда"; at the right what waits, help key, date.
std::vector<StatusPart> StatusBar(const TVosBaseForm& form);

/// Identity of a dialog over a form: the form's own, with the form as opener.
FormIdentity DialogIdentity(TVosBaseForm& owner);

/// A form over a data module of its own.
class TVosDBForm : public TVosBaseForm {
 public:
  using TVosBaseForm::TVosBaseForm;
  ScreenPoint DataPoint() const { return {ModuleNo(), PointNo()}; }
};

/// Main form of a module.
class TVosModuleForm : public TVosBaseForm {
 public:
  using TVosBaseForm::TVosBaseForm;
};

/// Adds the host's own actions (exit, help, language, about …) that every screen shows. They are
/// live wherever the focus is and need no rows of the live table.
void AddHostActions(TVosBaseForm& form);
/// Adds only acExit, for dialogs: Escape closes it beside Alt+F4.
void AddDialogExit(TVosBaseForm& form);

}  // namespace orvane::host
