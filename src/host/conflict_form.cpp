#include "host/conflict_form.h"

#include "host/dialogs.h"
#include "host/form.h"
#include "host/grid.h"
#include "host/small_controls.h"

namespace orvane {
namespace {

constexpr std::string_view kTitle = "Променен от друг потребител";

constexpr auto Name = String("Name", 60, Key);
constexpr auto Label = Memo("Label", Plain, "Поле");
constexpr auto Mine = Memo("Mine", Plain, "Моето");
constexpr auto Theirs = Memo("Theirs", Plain, "Сега в базата");
constexpr auto Was = Memo("Was", Plain, "Беше");
constexpr auto Overwrite = Bit("Overwrite", Plain, "Запиши~моето");

struct Difference {
  std::string name;
  std::string label;
  std::string mine;
  std::string theirs;
  std::string was;
};

Variant ValueOf(const NamedValues& values, std::string_view name) {
  const Variant* value = FindValue(values, name);
  return value == nullptr ? Variant() : *value;
}

std::string LabelOf(const TField& field) {
  return field.DisplayLabel.empty() ? std::string(field.Name()) : field.DisplayLabel;
}

/// Fields that the user changed and that now hold something else than he typed. What the server
/// stamps is nobody's typing.
std::vector<Difference> Differences(TVosClientDataSet& dataSet, const ReconcileError& error) {
  std::vector<Difference> differences;
  for (const NamedValue& mine : error.mine) {
    const TField* field = dataSet.FindField(mine.name);
    if (field == nullptr || field->Def().Is(Stamped)) continue;
    const Variant theirs = ValueOf(error.present, mine.name);
    if (theirs == mine.value) continue;
    const Variant was = ValueOf(error.before, mine.name);
    differences.push_back({std::string(field->Name()), LabelOf(*field), field->TextOf(mine.value),
                           field->TextOf(theirs), field->TextOf(was)});
  }
  return differences;
}

/// "Код 7, Име Цех" of the key fields that the change names.
std::string RowName(TVosClientDataSet& dataSet, const ReconcileError& error) {
  std::string text;
  for (const TField* field : dataSet.Fields()) {
    const Variant* key = FindValue(error.before, field->Name());
    if (key == nullptr || !field->Def().Is(Key)) continue;
    text += (text.empty() ? "" : ", ") + LabelOf(*field) + " " + field->TextOf(*key);
  }
  return text.empty() ? "Записът" : "Записът „" + text + "“";
}

/// Who changed the row and when, as far as it is known.
std::string Who(const TVosBaseForm& form, const ReconcileError& error) {
  if (error.changedBy.empty()) return "друг потребител";
  return "„" + error.changedBy + "“ на " + form.App().Info().zone.ToText(error.changedOn);
}

constexpr LiveRow kLive[] = {
    {"acOverwrite", kAnywhere},
    {"acKeepTyping", kAnywhere},
    {"acDropMine", kAnywhere},
};

class TfVosConflict : public TVosBaseForm {
 public:
  TfVosConflict(TVosBaseForm& owner, std::string_view rowName, const std::string& who,
                const std::vector<Difference>& differences)
      : TVosBaseForm(DialogIdentity(owner), "TfVosConflict", kTitle),
        cdsDifferences_("cdsDifferences", {Name, Label, Mine, Theirs, Was, Overwrite}),
        dsDifferences_(cdsDifferences_),
        lWhat_(*this, "lWhat"),
        gDifferences_(*this, "gDifferences", dsDifferences_) {
    Fill(differences);
    lWhat_.text = std::string(rowName) + " е променен от " + who + ", след като сте го заредили.";
    gDifferences_.columns = {
        {.field = "Label", .width = 30, .title = "Поле", .readOnly = true},
        {.field = "Mine", .width = 30, .title = "Моето", .readOnly = true},
        {.field = "Theirs", .width = 30, .title = "Сега в базата", .readOnly = true},
        {.field = "Was", .width = 30, .title = "Беше", .readOnly = true},
        {.field = "Overwrite", .width = 8, .title = "Запиши~моето", .kind = ColumnKind::Check},
    };
    gDifferences_.cancelOnExit = false;
    AddChoice("acOverwrite", "Запиши отбелязаното", KeyCode::F9, "save", ReconcileAction::Merge);
    AddChoice("acKeepTyping", "Продължи върху тяхното", KeyCode::F6, "edit",
              ReconcileAction::Correct);
    AddChoice("acDropMine", "Откажи моето", KeyCode::F5, "cancel", ReconcileAction::Refresh);
    AddDialogExit(*this);
    ribbon = {
        {"Операции",
         {{"Промяната", {"acOverwrite", "acKeepTyping", "acDropMine"}}, {"Изход", {"acExit"}}}}};
    layout = ColumnOf({Of(lWhat_), Of(gDifferences_, 1)});
  }

  ReconcileAction Chosen() const { return chosen_; }

  /// Names of the fields whose present value stays.
  std::vector<std::string> GivenUp() {
    std::vector<std::string> names;
    const TField& name = cdsDifferences_[Name];
    const TField& overwrite = cdsDifferences_[Overwrite];
    for (std::size_t row = 0; row < cdsDifferences_.RecordCount(); ++row) {
      if (!cdsDifferences_.ValueAt(row, overwrite).AsBool().value_or(false))
        names.push_back(cdsDifferences_.ValueAt(row, name).ToText());
    }
    return names;
  }

  TVosClientDataSet* MainDataSet() const override { return nullptr; }

 protected:
  std::span<const LiveRow> LiveRows() const override { return kLive; }
  void OnShow() override { gDifferences_.FocusField("Overwrite"); }

 private:
  void Fill(const std::vector<Difference>& differences) {
    for (const Difference& row : differences) {
      cdsDifferences_.Append();
      cdsDifferences_[Name].Set(row.name);
      cdsDifferences_[Label].Set(row.label);
      cdsDifferences_[Mine].Set(row.mine);
      cdsDifferences_[Theirs].Set(row.theirs);
      cdsDifferences_[Was].Set(row.was);
      cdsDifferences_[Overwrite].Set(true);
      cdsDifferences_.Post();
    }
    cdsDifferences_.First();
  }

  void AddChoice(std::string_view name, std::string_view text, KeyStroke key, std::string_view icon,
                 ReconcileAction choice) {
    TAction action;
    action.name = name;
    action.caption = text;
    action.shortcut = key;
    action.icon = icon;
    action.OnExecute = [this, choice] {
      if (cdsDifferences_.Editing()) cdsDifferences_.Post();
      chosen_ = choice;
      Close();
    };
    AddAction(std::move(action));
  }

  TVosClientDataSet cdsDifferences_;
  TDataSource dsDifferences_;
  TLabel lWhat_;
  TVosDBGrid gDifferences_;
  ReconcileAction chosen_ = ReconcileAction::Correct;  // leaving loses nothing
};

}  // namespace

ReconcileAction RunConflictForm(TVosBaseForm& form, TVosClientDataSet& dataSet,
                                const ReconcileError& error) {
  const std::string row = RowName(dataSet, error);
  const std::string who = Who(form, error);
  if (error.present.empty()) {
    VosMessageDlg(form, 0, form.caption,
                  row + " вече е изтрит от " + who + ". Промяната Ви не може да се запише.");
    return ReconcileAction::Refresh;
  }
  if (error.kind == ChangeKind::Delete) {
    VosMessageDlg(form, 0, form.caption,
                  row + " е променен от " + who +
                      " и не беше изтрит. Прегледайте го и "
                      "повторете изтриването, ако още е нужно.");
    return ReconcileAction::Refresh;
  }
  const std::vector<Difference> differences = Differences(dataSet, error);
  if (differences.empty()) return ReconcileAction::Merge;  // both typed the same
  TfVosConflict dialog(form, row, who, differences);
  dialog.ShowModal();
  if (dialog.Chosen() == ReconcileAction::Merge) error.givenUp = dialog.GivenUp();
  return dialog.Chosen();
}

}  // namespace orvane
