// What the host gives every form: its actions, the texts of the status bar, a dialog's identity.

#include "host/calculator.h"
#include "host/controls/grid.h"
#include "host/dialogs.h"
#include "host/form.h"

namespace orvane::host {
namespace {

constexpr std::string_view kWaitingAction = "acWaiting";

constexpr std::string_view kGeneralHelp =
    "Enter – към следващото поле или клетка\n"
    "Tab, Shift+Tab – към следващото или предишното\n"
    "Alt+Down – отваря списъка на полето\n"
    "Escape – затваря редактора, после прозореца\n"
    "Клавишът на всяка операция стои до името ѝ.";

void ShowHelp(TVosBaseForm& form) {
  VosMessageDlg(form, 1, "Помощ", kGeneralHelp);
}

/// "Запис – F9" for each action of the form that is live now.
void ShowFormHelp(TVosBaseForm& form) {
  std::string text;
  for (const std::unique_ptr<TAction>& action : form.Actions()) {
    if (action->always || !action->enabled || !action->visible) continue;
    text += action->caption;
    if (!action->shortcut.IsNone()) text += " – " + KeyText(action->shortcut);
    text += '\n';
  }
  if (text.empty()) text = "Сега няма достъпни операции.\n";
  text.pop_back();
  VosMessageDlg(form, 1, form.caption, text);
}

void ShowAbout(TVosBaseForm& form) {
  const VosApplication& app = form.App();
  VosMessageDlg(form, 1, "Относно",
                "Orvane – управление на покупките\nВерсия " + app.program.version + "\n" +
                    app.Info().companyName);
}

/// Where the user decides what waits for him.
void OpenWaiting(TVosBaseForm& form) {
  const auto open = form.App().waiting.Open;
  if (open) open(form);
}

struct HostAction {
  std::string_view name;
  std::string_view caption;
  KeyStroke key;
  std::string_view icon;
  void (*execute)(TVosBaseForm& form);
};

constexpr HostAction kHostActions[] = {
    {"acExit", "Изход", Alt(KeyCode::F4), "exit", [](TVosBaseForm& form) { form.Close(); }},
    {"acHelp", "Помощ", KeyCode::F1, "help", &ShowHelp},
    {"acFormHelp", "Помощ за формата", Ctrl(KeyCode::F1), "help", &ShowFormHelp},
    {"acLanguage", "Смяна език", {}, "language", [](TVosBaseForm& form) { form.SwitchLanguage(); }},
    {"acCalculator", "Калкулатор", CtrlAlt(KeyCode::K), "", &RunCalculator},
    {"acAbout", "Относно", {}, "about", &ShowAbout},
    {"acStayOnTop", "Винаги отгоре", CtrlAlt(KeyCode::T), "",
     [](TVosBaseForm& form) { form.stayOnTop = !form.stayOnTop; }},
    {"acMin",
     "Минимизиране",
     {},
     "",
     [](TVosBaseForm& form) { form.windowRequest = WindowRequest::Minimize; }},
    {"acMax",
     "Максимизиране",
     {},
     "",
     [](TVosBaseForm& form) { form.windowRequest = WindowRequest::Maximize; }},
    {"acResetFormPosition",
     "Първоначална позиция на формата",
     {},
     "",
     [](TVosBaseForm& form) { form.windowRequest = WindowRequest::ResetPosition; }},
    {"acQuickApplicationClose",
     "Затваряне на програмата",
     {},
     "",
     [](TVosBaseForm& form) { form.App().CloseProgram(); }},
};

constexpr HostAction kWaitingRow = {kWaitingAction, "Документи, които чакат Вас", KeyCode::F12,
                                    "open", &OpenWaiting};

TAction& AddHostAction(TVosBaseForm& form, const HostAction& row) {
  TAction action;
  action.name = row.name;
  action.caption = row.caption;
  action.shortcut = row.key;
  action.icon = row.icon;
  action.always = true;
  action.OnExecute = [&form, execute = row.execute] { execute(form); };
  return form.AddAction(std::move(action));
}

/// The grid whose rows the status bar counts: the focused one, else the first.
const TVosDBGrid* CountedGrid(const TVosBaseForm& form) {
  const Control* active = form.ActiveControl();
  if (active != nullptr && active->Kind() == ControlKind::Grid)
    return static_cast<const TVosDBGrid*>(active);
  for (const Control* control : form.Controls()) {
    if (control->Kind() == ControlKind::Grid && control->visible)
      return static_cast<const TVosDBGrid*>(control);
  }
  return nullptr;
}

/// What gives way first where the status bar is narrow.
enum StatusWeight : int { kHelpWeight, kDayWeight, kTextWeight, kLinkWeight, kWaitingWeight };

/// Where the server is, and whether it can be reached now.
StatusPart LinkPart(const VosApplication& app) {
  const std::string& server = app.program.serverName;
  if (!app.IsConnected())
    return {server.empty() ? "○ Няма връзка" : "○ Няма връзка: " + server, "○ Няма връзка",
            kLinkWeight};
  return {"● Свързан: " + (server.empty() ? std::string("този компютър") : server), "●",
          kLinkWeight};
}

/// What waits, and the key that leads there.
StatusPart WaitingPart(const TVosBaseForm& form) {
  const WaitingWork& waiting = form.App().waiting;
  StatusPart part{waiting.text, waiting.brief, kWaitingWeight, true};
  const TAction* way = form.FindAction(kWaitingAction);
  if (way == nullptr || part.text.empty()) return part;
  part.text += " (" + KeyText(way->shortcut) + ")";
  part.action = way->name;
  return part;
}

}  // namespace

void AddHostActions(TVosBaseForm& form) {
  for (const HostAction& row : kHostActions)
    AddHostAction(form, row);
  // A screen over another one is closed before the user goes elsewhere.
  if (form.Identity().opener == nullptr) AddHostAction(form, kWaitingRow);
  if (form.App().AppNotMultiLang()) {
    TAction& language = *form.FindAction("acLanguage");
    language.always = false;
    language.visible = false;
  }
}

void AddDialogExit(TVosBaseForm& form) {
  AddHostAction(form, kHostActions[0]).secondShortcut = KeyCode::Escape;
}

std::string TVosBaseForm::StatusText() const {
  const TVosDBGrid* grid = CountedGrid(*this);
  if (grid == nullptr) return {};
  const std::size_t rows = grid->DataSet().RecordCount();
  const std::string count = std::to_string(rows);
  if (grid->DataSet().HasMore()) return "първите " + count + " реда";
  return count + (rows == 1 ? " ред" : " реда");
}

std::vector<StatusPart> StatusBar(const TVosBaseForm& form) {
  const VosApplication& app = form.App();
  std::vector<StatusPart> bar = {LinkPart(app), {form.StatusText(), {}, kTextWeight}};
  bar.push_back(WaitingPart(form));
  if (form.FindAction("acHelp") != nullptr)
    bar.push_back({"F1 Помощ", {}, kHelpWeight, true, "acHelp"});
  // The company's day is known once somebody has logged in.
  if (app.IsLoggedIn()) bar.push_back({app.Today().ToText(), {}, kDayWeight, true});
  std::erase_if(bar, [](const StatusPart& part) { return part.text.empty(); });
  return bar;
}

FormIdentity DialogIdentity(TVosBaseForm& owner) {
  FormIdentity identity = owner.Identity();
  identity.opener = &owner;
  identity.access = owner.Access();
  return identity;
}

}  // namespace orvane::host
