#include "kit/register_screen.h"

#include <algorithm>
#include <utility>

#include "data/abort.h"
#include "host/controls/combo.h"
#include "host/controls/inspector.h"
#include "host/dialogs.h"
#include "host/form.h"
#include "kit/grid_rows.h"

namespace orvane::kit {

namespace {

TVosMTCombo* ComboInUse(const TVosBaseForm& form) {
  Control* control = form.ActiveControl();
  return control == nullptr ? nullptr : control->ActiveCombo();
}

/// The combo that has the focus; Abort when none has.
TVosMTCombo& FocusedCombo(const TVosBaseForm& form) {
  TVosMTCombo* combo = ComboInUse(form);
  if (combo == nullptr) throw Abort{};
  return *combo;
}

void Add(TVosBaseForm& form, std::string_view name, std::string_view caption, KeyStroke key,
         std::string_view icon, std::function<void()> execute) {
  TAction action;
  action.name = name;
  action.caption = caption;
  action.shortcut = key;
  action.icon = icon;
  action.OnExecute = std::move(execute);
  form.AddAction(std::move(action));
}

}  // namespace

bool AtSearchableCombo(const TVosBaseForm& form) {
  const TVosMTCombo* combo = ComboInUse(form);
  return combo != nullptr && combo->mode != LookupMode::lmNomenclature;
}

bool AtComboOfRegister(const TVosBaseForm& form) {
  const TVosMTCombo* combo = ComboInUse(form);
  return combo != nullptr && combo->HasNomenclature();
}

std::vector<std::string> AddLookupActions(TVosBaseForm& form, const RegisterActions& actions) {
  if (actions.searchByCode.empty()) return {};
  std::vector<std::string> names = {std::string(actions.searchByName),
                                    std::string(actions.searchByPartName),
                                    std::string(actions.searchByCode)};
  Add(form, actions.searchByCode, "Търсене", KeyCode::F2, "search", [&form] {
    TVosMTCombo& combo = FocusedCombo(form);
    combo.DoSearch(combo.GetLookupField(), false);
  });
  Add(form, actions.searchByName, "Търсене по име", Shift(KeyCode::F2), "search",
      [&form] { FocusedCombo(form).SearchByName(); });
  Add(form, actions.searchByPartName, "Търсене по част от име", Ctrl(KeyCode::F2), "search",
      [&form] { FocusedCombo(form).SearchByPartName(); });
  if (actions.nomenclature.empty()) return names;
  Add(form, actions.openNomenclature, actions.nomenclature, Ctrl(KeyCode::F12), "open",
      [&form] { FocusedCombo(form).OpenNomenclature(); });
  names.emplace_back(actions.openNomenclature);
  return names;
}

void RegisterScreen::AddTo() {
  const bool printed = report_.number != 0;
  Add(form_, "acDelete", "Изтриване", KeyCode::F5, "delete", [this] { Delete(); });
  if (printed) Add(form_, "acPrint", "Печат", KeyCode::F7, "print", [this] { Print(); });
  Add(form_, "acCancel", "Отказ", Ctrl(KeyCode::Z), "cancel",
      [this] { CancelRow(form_, GridInUse()); });
  Add(form_, kChooseAction, "Избор", KeyCode::F9, "confirm", [this] { Choose(); });
  TAction& choose = *form_.FindAction(kChooseAction);
  choose.visible = false;
  choose.always = true;
  const std::vector<std::string> searches = AddLookupActions(form_, actions_);
  AddHostActions(form_);

  std::vector<std::string> operations = {"acCancel", "acDelete", std::string(kChooseAction)};
  if (printed) operations.insert(operations.begin(), "acPrint");
  std::vector<RibbonGroup> groups = {{std::string(actions_.operations), operations}};
  if (!searches.empty()) groups.push_back({"Търсене", searches});
  groups.push_back({"Изход", {"acExit"}});
  form_.ribbon = {{"Операции", groups}};
  std::vector<LayoutNode> places;
  for (TVosDBGrid* grid : grids_)
    places.push_back(Of(*grid, 1));
  form_.layout = ColumnOf(std::move(places));
}

void RegisterScreen::AddOperation(TAction action) {
  form_.ribbon.front().groups.front().actions.push_back(action.name);
  form_.AddAction(std::move(action));
}

TVosDBGrid& RegisterScreen::GridInUse() const {
  const auto focused = std::ranges::find(grids_, form_.ActiveControl());
  return focused == grids_.end() ? *grids_.front() : **focused;
}

void RegisterScreen::StateChange() {
  bool anyInserting = false;
  for (TVosDBGrid* grid : grids_) {
    const bool inserting = grid->DataSet().State() == DataSetState::Insert;
    grid->readOnly = !inserting && !form_.May(paEdit);
    anyInserting = anyInserting || inserting;
  }
  form_.SetVosFormStatus(fsInserting, anyInserting);
}

void RegisterScreen::ChangeAccess() {
  for (TVosDBGrid* grid : grids_) {
    grid->canInsert = form_.May(paInsert);
    grid->insertWhenReadOnly = true;
  }
  StateChange();
}

void RegisterScreen::Delete() {
  TVosClientDataSet& dataSet = GridInUse().DataSet();
  if (dataSet.IsEmpty()) return;
  if (BeforeDelete) BeforeDelete();
  DeleteAsked(form_, GridInUse());
}

void RegisterScreen::Print() {
  const int variant =
      form_.App().AppNotMultiLang() ? report_.variantOneLanguage : report_.variantTwoLanguages;
  GenerateReport(form_, {kRegisterReportGroup, report_.number, variant}, *grids_.front());
}

/// What is being typed is written first: a row that is refused cannot be chosen.
void RegisterScreen::Choose() {
  TVosDBGrid& grid = *grids_.front();
  TVosClientDataSet& dataSet = grid.DataSet();
  grid.PostRow();
  if (dataSet.Editing() || dataSet.IsEmpty()) throw Abort{};
  form_.chosenCode = dataSet.FieldByName(form_.choiceField).Value();
  form_.Close();
}

std::string LanguageTitle(const TVosBaseForm& form, std::string_view label, int language,
                          LanguageMark mark) {
  const std::string name = form.App().LanguageName(language);
  return std::string(label) +
         (mark == LanguageMark::Angles ? " <" + name + ">" : " (" + name + ")");
}

void ChooseLanguageColumns(const TVosBaseForm& form, TVosDBGrid& grid,
                           const LanguageColumns& columns) {
  if (form.App().AppNotMultiLang()) {
    for (std::string_view field : columns.secondOnly)
      grid.RemoveColumn(field);
    return;
  }
  for (std::string_view field : columns.firstOnly)
    grid.RemoveColumn(field);
  for (const LanguageColumn& column : columns.titled) {
    TField& field = grid.DataSet().FieldByName(column.field);
    field.DisplayLabel = LanguageTitle(form, "Име", column.language);
    if (GridColumn* shown = grid.FindColumn(column.field)) shown->title = field.DisplayLabel;
  }
}

void ChooseLanguageItems(const TVosBaseForm& form, TVosDataInspector& inspector,
                         std::initializer_list<std::string_view> fields, LanguageMark mark) {
  for (std::string_view field : fields) {
    InspectorItem& first = *inspector.FindItem(field);
    InspectorItem& second = *inspector.FindItem(std::string(field) + "2");
    second.visible = !form.App().AppNotMultiLang();
    if (!second.visible) continue;
    first.label = LanguageTitle(form, first.label, 1, mark);
    second.label = LanguageTitle(form, second.label, 2, mark);
  }
}

void ChooseLanguageTexts(const TVosBaseForm& form, TVosDBGrid& grid,
                         std::initializer_list<std::string_view> fields, LanguageMark mark) {
  for (std::string_view field : fields) {
    const std::string second = std::string(field) + "2";
    if (form.App().AppNotMultiLang()) {
      grid.RemoveColumn(second);
      continue;
    }
    GridColumn& column = *grid.FindColumn(field);
    column.title = LanguageTitle(form, column.title, 1, mark);
    GridColumn& secondColumn = *grid.FindColumn(second);
    secondColumn.title = LanguageTitle(form, secondColumn.title, 2, mark);
  }
}

}  // namespace orvane::kit
