#pragma once

// Runs a walk against real screens. The same runner serves the scripted toolkit and Qt: what
// differs is the driver, which presses keys, points and takes pictures. A modal call hands the walk
// on: the next steps run inside the dialog until it closes, then the caller goes on.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/access.h"
#include "host/application.h"
#include "host/form.h"
#include "host/report_snapshot.h"
#include "host/walk/walk_script.h"
#include "packet/clock.h"
#include "packet/faulty_door.h"

namespace orvane::host {

/// How steps reach the screens.
class IWalkDriver {
 public:
  virtual ~IWalkDriver() = default;

  /// The toolkit that shows the forms of this walk.
  virtual IToolkit& Toolkit() = 0;
  /// The form the user is in: the innermost open one of that application; null when none is open.
  virtual TVosBaseForm* ActiveForm(VosApplication& app) = 0;
  virtual void Press(TVosBaseForm& form, KeyStroke key) = 0;
  virtual void TypeText(TVosBaseForm& form, std::string_view text) = 0;
  virtual void PointAt(TVosBaseForm& form, Control& control, int row, int column) = 0;
  virtual void Choose(TVosBaseForm& form, std::string_view action) = 0;
  /// Picks the tab of a page.
  virtual void ChoosePage(TVosBaseForm& form, std::string_view pageControl, std::string_view page) {
    form.Dispatch(PageChosen{std::string(pageControl), std::string(page)});
  }
  /// The question that is up; null when none is.
  virtual const MessageDialog* Question() const = 0;
  /// Answers the question that is up (toolkit.h).
  virtual void AnswerQuestion(int answer) = 0;
  /// What stands in the line of the question that is up; nothing when it has none.
  virtual std::optional<std::string> LineText() const = 0;
  /// Types into that line, in place of what stands there.
  virtual void FillLine(std::string_view text) = 0;
  /// Takes the messages shown since the last call, in order.
  virtual std::vector<MessageDialog> TakeMessages() = 0;
  /// Takes the reports previewed since the last call.
  virtual std::vector<TakenReport> TakeReports() = 0;
  /// Saves what is on the screen; drivers without a screen do nothing.
  virtual void Picture(std::string_view name) = 0;
};

/// What a walk runs in: the door to the server with its faults, the clock of both sides, and how a
/// user's module is started.
struct WalkWorld {
  FaultyDoor* door = nullptr;
  SetClock* clock = nullptr;
  TimeZone zone;
  std::function<std::string(std::string_view login)> passwordOf;
  /// Registers and starts the modules for a user just logged in; the main form is kept until the
  /// end.
  std::function<std::unique_ptr<TVosBaseForm>(VosApplication& app)> startModules;
  /// Gives a user exactly these rights at a point, as an administrator does meanwhile.
  std::function<Answer<Done>(const std::string& login, std::int32_t point, TPointAccess rights)>
      grant = nullptr;
};

class WalkRunner {
 public:
  WalkRunner(std::string fileName, std::vector<WalkStep> steps, IWalkDriver& driver,
             WalkWorld world);
  ~WalkRunner();

  /// Runs all steps; for drivers without an event loop of their own.
  void RunAll();
  /// Runs steps until `done`, the end or a failure; called by modal calls of the scripted toolkit.
  void RunUntil(const std::function<bool()>& done);
  /// Runs the next step; false when there is none left or the walk failed. May be re-entered.
  bool RunNext();
  bool IsOver() const { return failure_.has_value() || next_ >= steps_.size(); }
  /// Checks what must hold at the end (no message left unread).
  void Finish();

  /// "file:line: what was expected and what a person would have seen"; empty when all went well.
  const std::optional<std::string>& FailureText() const { return failure_; }
  std::size_t StepsRun() const { return next_; }

 private:
  struct Session {
    std::unique_ptr<VosApplication> app;
    std::unique_ptr<TVosBaseForm> mainForm;
    std::int64_t callsSeen = 0;
  };
  struct Verb;
  struct Expectation;
  static const Verb kVerbs[];
  static const Expectation kExpectations[];
  using Words = std::vector<std::string>;

  void Fail(const WalkStep& step, const std::string& what);
  void RunStep(const WalkStep& step);
  Words Replaced(const Words& words) const;
  /// The form in use; throws WalkProblem when none is open.
  TVosBaseForm& Form();
  Session& Current();

  void DoCompany(const Words& words);
  void DoClock(const Words& words);
  void DoUser(const Words& words);
  void DoOpen(const Words& words);
  void DoPress(const Words& words);
  void DoType(const Words& words);
  void DoRow(const Words& words);
  void DoFocus(const Words& words);
  void DoChoose(const Words& words);
  void DoAnswer(const Words& words);
  void DoFill(const Words& words);
  void DoExpect(const Words& words);
  void DoServer(const Words& words);
  void DoLink(const Words& words);
  void DoRemember(const Words& words);
  void DoPicture(const Words& words);
  void DoClose(const Words& words);
  void DoLanguage(const Words& words);
  void DoPage(const Words& words);
  void DoRights(const Words& words);

  void ExpectDialog(const Words& words);
  void ExpectFilled(const Words& words);
  void ExpectAction(const Words& words);
  void ExpectRows(const Words& words);
  void ExpectFocus(const Words& words);
  void ExpectCalls(const Words& words);
  void ExpectForm(const Words& words);
  void ExpectReport(const Words& words);
  void ExpectPrinted(const Words& words);
  void ExpectState(const Words& words);
  void ExpectColumns(const Words& words);
  void ExpectName(const Words& words);
  void ExpectLabel(const Words& words);
  void ExpectStatus(const Words& words);
  void ExpectValue(const Words& words);

  std::string fileName_;
  std::vector<WalkStep> steps_;
  std::size_t next_ = 0;
  IWalkDriver& driver_;
  WalkWorld world_;
  std::map<std::string, Session> sessions_;
  std::string currentUser_;
  std::map<std::string, std::string> remembered_;
  std::vector<MessageDialog> unread_;
  TakenReport printed_;  ///< the report last expected
  std::optional<std::string> failure_;
};

}  // namespace orvane::host
