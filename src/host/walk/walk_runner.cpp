#include "host/walk/walk_runner.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/dialogs.h"
#include "host/walk/walk_places.h"
#include "packet/fold.h"

namespace orvane::host {
namespace {

/// A step that could not be done or an expectation that did not hold.
struct WalkProblem {
  std::string text;
};

[[noreturn]] void Problem(std::string text) {
  throw WalkProblem{std::move(text)};
}

const std::string& WordAt(const std::vector<std::string>& words, std::size_t index) {
  if (index >= words.size()) Problem("на стъпката липсва дума");
  return words[index];
}

std::int64_t NumberAt(const std::vector<std::string>& words, std::size_t index) {
  const std::string& word = WordAt(words, index);
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) Problem(word + " не е число");
  return number;
}

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

/// Letters of the names that a walk remembers things by.
constexpr std::string_view kNameLetters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

/// Thin and no-break blanks, which part thousands, read as blanks.
std::string PlainBlanks(std::string_view text) {
  std::string plain(text);
  for (std::string_view blank : {"\u2009", "\u202f", "\u00a0"}) {
    for (std::size_t at = plain.find(blank); at != std::string::npos; at = plain.find(blank)) {
      plain.replace(at, blank.size(), " ");
    }
  }
  return plain;
}

void Compare(std::string_view what, std::string_view expected, std::string_view seen) {
  if (PlainBlanks(expected) == PlainBlanks(seen)) return;
  Problem("очаква се " + std::string(what) + " " + Quoted(expected) + ", на екрана е " +
          Quoted(seen));
}

struct RightWord {
  std::string_view word;
  PointAccessRight right;
};
constexpr RightWord kRights[] = {
    {"open", paOpen}, {"edit", paEdit}, {"insert", paInsert}, {"delete", paDelete}};

/// A label, a value, a heading or a cell of the report reads so.
bool IsPrinted(const ReportSnapshot& report, std::string_view expected) {
  const auto isIt = [expected](const std::string& text) {
    return PlainBlanks(text) == PlainBlanks(expected);
  };
  const ReportDocument& document = report.Document();
  const auto ofFact = [&isIt](const ReportFact& fact) {
    return isIt(fact.label) || isIt(fact.value);
  };
  bool printed = std::ranges::any_of(document.facts, ofFact);
  for (std::size_t table = 0; table < document.tables.size() && !printed; ++table) {
    printed = std::ranges::any_of(document.tables[table].columns, isIt, &ReportColumn::title);
    ReportSnapshot::Reader reader(report, table);
    while (!printed && reader.HasNext())
      printed = std::ranges::any_of(reader.Next(), isIt, &ReportCell::text);
  }
  return printed;
}

std::string StateWord(DataSetState state) {
  switch (state) {
    case DataSetState::Inactive:
      return "inactive";
    case DataSetState::Browse:
      return "browse";
    case DataSetState::Edit:
      return "edit";
    case DataSetState::Insert:
      return "insert";
  }
  return {};
}

}  // namespace

struct WalkRunner::Verb {
  std::string_view word;
  void (WalkRunner::*run)(const Words&);
};

const WalkRunner::Verb WalkRunner::kVerbs[] = {
    {"clock", &WalkRunner::DoClock},       {"user", &WalkRunner::DoUser},
    {"as", &WalkRunner::DoUser},           {"open", &WalkRunner::DoOpen},
    {"press", &WalkRunner::DoPress},       {"type", &WalkRunner::DoType},
    {"row", &WalkRunner::DoRow},           {"focus", &WalkRunner::DoFocus},
    {"choose", &WalkRunner::DoChoose},     {"answer", &WalkRunner::DoAnswer},
    {"expect", &WalkRunner::DoExpect},     {"server", &WalkRunner::DoServer},
    {"link", &WalkRunner::DoLink},         {"remember", &WalkRunner::DoRemember},
    {"picture", &WalkRunner::DoPicture},   {"close", &WalkRunner::DoClose},
    {"language", &WalkRunner::DoLanguage}, {"page", &WalkRunner::DoPage},
    {"company", &WalkRunner::DoCompany},   {"rights", &WalkRunner::DoRights},
    {"fill", &WalkRunner::DoFill},
};

struct WalkRunner::Expectation {
  std::string_view word;
  void (WalkRunner::*run)(const Words&);
};

const WalkRunner::Expectation WalkRunner::kExpectations[] = {
    {"dialog", &WalkRunner::ExpectDialog},   {"action", &WalkRunner::ExpectAction},
    {"rows", &WalkRunner::ExpectRows},       {"focus", &WalkRunner::ExpectFocus},
    {"calls", &WalkRunner::ExpectCalls},     {"form", &WalkRunner::ExpectForm},
    {"report", &WalkRunner::ExpectReport},   {"state", &WalkRunner::ExpectState},
    {"columns", &WalkRunner::ExpectColumns}, {"name", &WalkRunner::ExpectName},
    {"label", &WalkRunner::ExpectLabel},     {"status", &WalkRunner::ExpectStatus},
    {"filled", &WalkRunner::ExpectFilled},   {"printed", &WalkRunner::ExpectPrinted},
};

WalkRunner::WalkRunner(std::string fileName, std::vector<WalkStep> steps, IWalkDriver& driver,
                       WalkWorld world)
    : fileName_(std::move(fileName)),
      steps_(std::move(steps)),
      driver_(driver),
      world_(std::move(world)) {}

WalkRunner::~WalkRunner() = default;

void WalkRunner::RunAll() {
  RunUntil([] { return false; });
  Finish();
}

void WalkRunner::RunUntil(const std::function<bool()>& done) {
  while (!done() && RunNext()) {
  }
}

bool WalkRunner::RunNext() {
  if (IsOver()) return false;
  const WalkStep& step = steps_[next_++];
  RunStep(step);
  return !failure_.has_value();
}

void WalkRunner::RunStep(const WalkStep& step) {
  try {
    const Words words = Replaced(step.words);
    const auto* verb = std::find_if(std::begin(kVerbs), std::end(kVerbs),
                                    [&](const Verb& row) { return row.word == words.front(); });
    if (verb == std::end(kVerbs)) Problem("непозната стъпка " + Quoted(words.front()));
    (this->*verb->run)(words);
  } catch (const WalkProblem& problem) {
    Fail(step, problem.text);
  }
}

void WalkRunner::Finish() {
  if (failure_) return;
  for (MessageDialog& dialog : driver_.TakeMessages())
    unread_.push_back(std::move(dialog));
  if (unread_.empty()) return;
  const int line = steps_.empty() ? 0 : steps_.back().line;
  failure_ = fileName_ + ":" + std::to_string(line) + ": останало е непрочетено съобщение " +
             Quoted(unread_.front().text);
}

void WalkRunner::Fail(const WalkStep& step, const std::string& what) {
  if (failure_) return;
  std::string seen;
  for (const MessageDialog& dialog : driver_.TakeMessages())
    unread_.push_back(dialog);
  for (const MessageDialog& dialog : unread_)
    seen += "; показано е " + Quoted(dialog.text);
  if (const MessageDialog* question = driver_.Question()) {
    seen += "; чака отговор " + Quoted(question->text);
  }
  failure_ = fileName_ + ":" + std::to_string(step.line) + ": " + step.text + ": " + what + seen;
}

/// What was remembered may stand inside a longer text too: "Документ $request не е намерен!".
WalkRunner::Words WalkRunner::Replaced(const Words& words) const {
  Words replaced = words;
  for (std::string& word : replaced) {
    for (std::size_t at = word.find('$'); at != std::string::npos; at = word.find('$', at + 1)) {
      const std::size_t end = std::min(word.find_first_not_of(kNameLetters, at + 1), word.size());
      const auto found = remembered_.find(word.substr(at + 1, end - at - 1));
      if (found != remembered_.end()) word.replace(at, end - at, found->second);
    }
  }
  return replaced;
}

WalkRunner::Session& WalkRunner::Current() {
  const auto found = sessions_.find(currentUser_);
  if (found == sessions_.end()) Problem("никой не е влязъл");
  return found->second;
}

TVosBaseForm& WalkRunner::Form() {
  TVosBaseForm* form = driver_.ActiveForm(*Current().app);
  if (form == nullptr) Problem("няма отворен екран");
  if (driver_.Question() != nullptr) Problem("отворен е въпрос");
  return *form;
}

// --- steps --------------------------------------------------------------------------------------

/// Whoever made the world of the walk has read it.
void WalkRunner::DoCompany(const Words&) {
  if (next_ != 1) Problem("дружеството се назовава в самото начало");
}

void WalkRunner::DoClock(const Words& words) {
  const std::optional<Date> day = Date::Parse(WordAt(words, 1));
  const std::string time = words.size() > 2 ? words[2] : "09:00";
  if (!day || time.size() != 5) Problem("часовникът иска дд.мм.гггг чч:мм");
  const int hour = std::stoi(time.substr(0, 2));
  const int minute = std::stoi(time.substr(3, 2));
  world_.clock->Set(world_.zone.At(*day, hour, minute));
}

void WalkRunner::DoUser(const Words& words) {
  const std::string& login = WordAt(words, 1);
  currentUser_ = login;
  Session& session = sessions_[login];
  if (session.app != nullptr) return;
  session.app = std::make_unique<VosApplication>(*world_.door, driver_.Toolkit(), *world_.clock);
  const std::string password = words.size() > 2 ? words[2] : world_.passwordOf(login);
  const Answer<Done> answer = session.app->LogIn(login, password);
  if (!answer) Problem("влизането е отказано: " + answer.GetFailure().message);
  session.mainForm = world_.startModules(*session.app);
  session.callsSeen = session.app->Session().calls;
}

void WalkRunner::DoOpen(const Words& words) {
  VosApplication& app = *Current().app;
  const std::string& className = WordAt(words, 1);
  for (const ModulePoint& point : app.points) {
    if (point.screenClass != className) continue;
    app.OpenPoint(point.name);
    return;
  }
  Problem("няма точка с екран " + className);
}

void WalkRunner::DoPress(const Words& words) {
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::optional<KeyStroke> key = ParseKey(words[i]);
    if (!key) Problem("няма клавиш " + Quoted(words[i]));
    driver_.Press(Form(), *key);
  }
}

void WalkRunner::DoType(const Words& words) {
  TVosBaseForm& form = Form();
  const std::string& name = WordAt(words, 1);
  const std::string& text = WordAt(words, 2);
  const std::optional<FieldPlace> place = FindPlace(form, name);
  if (!place) Problem("на екрана няма поле " + name);
  driver_.PointAt(form, *place->control, place->row, place->column);
  if (form.ActiveControl() != place->control) Problem("полето " + name + " не прие фокуса");
  if (text.empty()) {
    driver_.Press(form, KeyCode::Delete);
  } else {
    driver_.TypeText(form, text);
  }
  driver_.Press(form, KeyCode::Enter);
}

void WalkRunner::DoRow(const Words& words) {
  TVosBaseForm& form = Form();
  TVosDBGrid* grid = FindGrid(form, words.size() > 2 ? words[2] : "");
  if (grid == nullptr) Problem("няма таблица с фокус");
  const std::string& which = WordAt(words, 1);
  if (which == "new") {
    if (form.ActiveControl() != grid) driver_.PointAt(form, *grid, -1, -1);
    driver_.Press(form, Ctrl(KeyCode::End));
    driver_.Press(
        form, grid->DataSet().IsEmpty() ? KeyStroke(KeyCode::Insert) : KeyStroke(KeyCode::Down));
    if (grid->DataSet().State() != DataSetState::Insert) Problem("не може да се добави ред");
    return;
  }
  const std::int64_t row = NumberAt(words, 1);
  driver_.PointAt(form, *grid, static_cast<int>(row) - 1, grid->CurrentColumn());
}

void WalkRunner::DoFocus(const Words& words) {
  TVosBaseForm& form = Form();
  const std::string& name = WordAt(words, 1);
  Control* control = form.FindControl(name);
  if (control != nullptr) {
    driver_.PointAt(form, *control, -1, -1);
    if (form.ActiveControl() != control) Problem(name + " не прие фокуса");
    return;
  }
  const std::optional<FieldPlace> place = FindPlace(form, name);
  if (!place) Problem("на екрана няма " + name);
  driver_.PointAt(form, *place->control, place->row, place->column);
}

void WalkRunner::DoChoose(const Words& words) {
  TVosBaseForm& form = Form();
  const std::string& name = WordAt(words, 1);
  const TAction* action = form.FindAction(name);
  if (action == nullptr || !action->visible) Problem("няма действие " + name);
  if (!action->enabled) Problem("действието " + name + " не е активно");
  driver_.Choose(form, name);
}

void WalkRunner::DoAnswer(const Words& words) {
  if (driver_.Question() == nullptr) Problem("няма въпрос за отговор");
  struct AnswerRow {
    std::string_view word;
    int answer;
  };
  constexpr AnswerRow kAnswers[] = {{"Да", kAnswerYes}, {"Не", kAnswerNo}, {"Назад", kAnswerBack}};
  const auto row = std::ranges::find(kAnswers, WordAt(words, 1), &AnswerRow::word);
  if (row == std::end(kAnswers)) Problem("отговорът е Да, Не или Назад");
  if (row->answer == kAnswerBack && !driver_.Question()->mayGoBack) Problem("няма връщане назад");
  driver_.AnswerQuestion(row->answer);
}

void WalkRunner::DoFill(const Words& words) {
  if (!driver_.LineText()) Problem("няма въпрос, който приема текст");
  driver_.FillLine(WordAt(words, 1));
}

void WalkRunner::DoServer(const Words& words) {
  if (WordAt(words, 1) == "stop") return world_.door->Stop();
  if (words[1] == "start") return world_.door->Start();
  Problem("server stop или server start");
}

void WalkRunner::DoLink(const Words& words) {
  if (WordAt(words, 1) != "cut" || WordAt(words, 3) != "commit")
    Problem("link cut before|after commit");
  if (words[2] == "before") return world_.door->CutBeforeNextCommit();
  if (words[2] == "after") return world_.door->CutAfterNextCommit();
  Problem("link cut before|after commit");
}

void WalkRunner::DoRemember(const Words& words) {
  const std::optional<std::string> value = ReadValue(Form(), WordAt(words, 1));
  if (!value) Problem("на екрана няма " + words[1]);
  if (WordAt(words, 2) != "as") Problem("remember име as дума");
  remembered_[WordAt(words, 3)] = *value;
}

void WalkRunner::DoPicture(const Words& words) {
  driver_.Picture(WordAt(words, 1));
}

void WalkRunner::DoClose(const Words&) {
  TVosBaseForm& form = Form();
  driver_.Choose(form, "acExit");
  if (!form.IsClosed()) Problem("екранът остана отворен");
  Current().app->FreeClosedForms();
}

void WalkRunner::DoLanguage(const Words&) {
  driver_.Choose(Form(), "acLanguage");
}

/// The page of a name, of whichever page control of the form has it.
void WalkRunner::DoPage(const Words& words) {
  TVosBaseForm& form = Form();
  for (Control* control : form.Controls()) {
    auto* pages = dynamic_cast<TPageControl*>(control);
    const TabPage* page = pages == nullptr ? nullptr : pages->FindPage(WordAt(words, 1));
    if (page == nullptr) continue;
    if (!page->visible) Problem("страницата " + words[1] + " не се вижда");
    return driver_.ChoosePage(form, pages->Name(), page->name);
  }
  Problem("няма страница " + words[1]);
}

/// rights kolev PurchaseRequests open edit
void WalkRunner::DoRights(const Words& words) {
  const ModulePoint* point = Current().app->FindPoint(WordAt(words, 2));
  if (point == nullptr) Problem("няма точка " + words[2]);
  TPointAccess rights;
  for (std::size_t i = 3; i < words.size(); ++i) {
    const auto* row = std::find_if(std::begin(kRights), std::end(kRights),
                                   [&](const RightWord& right) { return right.word == words[i]; });
    if (row == std::end(kRights)) Problem("няма право " + words[i]);
    rights = rights.With(row->right);
  }
  const Answer<Done> granted = world_.grant(words[1], point->number, rights);
  if (!granted) Problem(granted.GetFailure().message);
}

// --- expectations -------------------------------------------------------------------------------

void WalkRunner::DoExpect(const Words& words) {
  const std::string& what = WordAt(words, 1);
  const auto* row =
      std::find_if(std::begin(kExpectations), std::end(kExpectations),
                   [&](const Expectation& expectation) { return expectation.word == what; });
  if (row != std::end(kExpectations)) return (this->*row->run)(words);
  ExpectValue(words);
}

void WalkRunner::ExpectDialog(const Words& words) {
  const std::string& text = WordAt(words, 2);
  if (const MessageDialog* question = driver_.Question()) {
    return Compare("въпрос", text, question->text);
  }
  for (MessageDialog& dialog : driver_.TakeMessages())
    unread_.push_back(std::move(dialog));
  if (unread_.empty()) Problem("няма съобщение");
  const MessageDialog first = unread_.front();
  unread_.erase(unread_.begin());
  Compare("съобщение", text, first.text);
  if (words.size() > 3) Compare("заглавие", words[3], first.caption);
}

void WalkRunner::ExpectFilled(const Words& words) {
  const std::optional<std::string> line = driver_.LineText();
  if (!line) Problem("няма въпрос, който приема текст");
  Compare("текст във въпроса", WordAt(words, 2), *line);
}

void WalkRunner::ExpectAction(const Words& words) {
  const TAction* action = Form().FindAction(WordAt(words, 2));
  if (action == nullptr) Problem("няма действие " + words[2]);
  Compare("действие", WordAt(words, 3), action->enabled ? "enabled" : "disabled");
}

void WalkRunner::ExpectRows(const Words& words) {
  const bool named = words.size() > 3;
  TVosDBGrid* grid = FindGrid(Form(), named ? words[2] : "");
  if (grid == nullptr) Problem("няма такава таблица");
  Compare("редове", WordAt(words, named ? 3 : 2), std::to_string(grid->DataSet().RecordCount()));
}

void WalkRunner::ExpectFocus(const Words& words) {
  TVosBaseForm& form = Form();
  const std::string& expected = WordAt(words, 2);
  const Control* control = form.ActiveControl();
  if (control == nullptr) Problem("нищо не е на фокус");
  if (control->Name() == expected || form.FocusName() == expected) return;
  std::string field;
  if (const auto* grid = dynamic_cast<const TVosDBGrid*>(control)) {
    field = grid->columns[static_cast<std::size_t>(grid->CurrentColumn())].field;
  }
  if (const auto* inspector = dynamic_cast<const TVosDataInspector*>(control)) {
    field = inspector->items[static_cast<std::size_t>(inspector->CurrentItem())].field;
  }
  if (SameName(field, expected)) return;
  Problem("фокусът е на " + form.FocusName() + (field.empty() ? "" : ", поле " + field));
}

void WalkRunner::ExpectCalls(const Words& words) {
  Session& session = Current();
  const std::int64_t calls = session.app->Session().calls;
  const std::int64_t since = calls - session.callsSeen;
  session.callsSeen = calls;
  Compare("обръщения към сървъра", WordAt(words, 2), std::to_string(since));
}

void WalkRunner::ExpectForm(const Words& words) {
  const TVosBaseForm* form = driver_.ActiveForm(*Current().app);
  Compare("екран", WordAt(words, 2), form == nullptr ? "none" : form->ClassName());
}

/// A part of the status bar reads so; with "no" before it, none speaks of it.
void WalkRunner::ExpectStatus(const Words& words) {
  const bool absent = WordAt(words, 2) == "no";
  const std::string& text = WordAt(words, absent ? 3 : 2);
  std::string seen;
  bool found = false;
  for (const StatusPart& part : StatusBar(Form())) {
    seen += (seen.empty() ? "" : " | ") + part.text;
    found = found || (absent ? part.text.find(text) != std::string::npos : part.text == text);
  }
  if (found == absent) Problem("в реда на състоянието е " + Quoted(seen));
}

void WalkRunner::ExpectReport(const Words& words) {
  const std::vector<TakenReport> reports = driver_.TakeReports();
  if (reports.empty()) Problem("няма отпечатана справка");
  printed_ = reports.back();
  const ReportSnapshot& report = *printed_;
  Compare("справка", WordAt(words, 2), report.Document().title);
  if (words.size() < 5 || words[3] != "rows") return;
  const std::int64_t rows = report.Document().tables.empty() ? 0 : report.RowCount(0);
  Compare("редове в справката", words[4], std::to_string(rows));
}

void WalkRunner::ExpectPrinted(const Words& words) {
  if (printed_ == nullptr) Problem("няма отпечатана справка");
  if (!IsPrinted(*printed_, WordAt(words, 2))) Problem("не е отпечатано " + Quoted(words[2]));
}

void WalkRunner::ExpectState(const Words& words) {
  const TVosClientDataSet* dataSet = Form().MainDataSet();
  if (dataSet == nullptr) Problem("екранът няма основни данни");
  Compare("състояние", WordAt(words, 2), StateWord(dataSet->State()));
}

void WalkRunner::ExpectColumns(const Words& words) {
  const TVosDBGrid* grid = FindGrid(Form(), "");
  if (grid == nullptr) Problem("няма таблица");
  std::string seen;
  for (const GridColumn& column : grid->columns)
    seen += (seen.empty() ? "" : " ") + column.field;
  std::string expected;
  for (std::size_t i = 2; i < words.size(); ++i)
    expected += (i == 2 ? "" : " ") + words[i];
  Compare("колони", expected, seen);
}

/// What stands behind the value of an inspector's item.
void WalkRunner::ExpectName(const Words& words) {
  const std::optional<FieldPlace> place = FindPlace(Form(), WordAt(words, 2));
  const auto* inspector = place ? dynamic_cast<const TVosDataInspector*>(place->control) : nullptr;
  if (inspector == nullptr) Problem("няма поле " + words[2] + " с име зад стойността");
  Compare("име", WordAt(words, 3), inspector->NameText(place->row));
}

/// The label of an item or the title of a column; "" when none is shown.
void WalkRunner::ExpectLabel(const Words& words) {
  const std::optional<FieldPlace> place = FindPlace(Form(), WordAt(words, 2));
  std::string seen;
  if (place) {
    if (const auto* grid = dynamic_cast<const TVosDBGrid*>(place->control))
      seen = grid->TitleOf(words[2]);
    if (const auto* inspector = dynamic_cast<const TVosDataInspector*>(place->control))
      seen = inspector->LabelOf(words[2]);
  }
  Compare("надпис", WordAt(words, 3), seen);
}

void WalkRunner::ExpectValue(const Words& words) {
  const std::optional<std::string> value = ReadValue(Form(), words[1]);
  if (!value) Problem("на екрана няма " + words[1]);
  Compare(words[1], WordAt(words, 2), *value);
}

}  // namespace orvane::host
