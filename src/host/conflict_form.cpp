#include "host/conflict_form.h"

#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/dialogs.h"
#include "host/form.h"

namespace orvane::host {
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

/// What both changed, and not to the same.
struct Differing {
  std::vector<Difference> shown;
  /// Fields that no user knows: they follow from others and are the server's to fill.
  std::vector<std::string> hidden;
};

/// The row with these values in it; what they do not name is as the user left it.
RowReader Row(TVosClientDataSet& dataSet, const ReconcileError& error, const NamedValues& values) {
  return [&values, local = dataSet.RowAt(error.row)](std::string_view field) {
    const Variant* value = FindValue(values, field);
    return value == nullptr ? local(field) : *value;
  };
}

/// The field in which the user sees the value of `field`: a name looked up for it, or itself.
const TField& ShownFor(TVosClientDataSet& dataSet, const TField& field) {
  for (TField* other : dataSet.Fields()) {
    if (other->IsLookup() && &other->Written() == &field) return *other;
  }
  return field;
}

/// Title of the field's column or item on the form; empty when it has none.
std::string TitleOn(const TVosBaseForm& form, TVosClientDataSet& dataSet, const TField& field) {
  const auto shows = [&](const std::string& name) {
    TField* shown = dataSet.FindField(name);
    return shown != nullptr && &shown->Written() == &field;
  };
  for (Control* control : form.Controls()) {
    if (control->Kind() == ControlKind::Grid) {
      const auto& grid = static_cast<const TVosDBGrid&>(*control);
      for (const GridColumn& column : grid.columns) {
        if (&grid.DataSet() == &dataSet && shows(column.field)) return grid.TitleOf(column.field);
      }
    } else if (control->Kind() == ControlKind::Inspector) {
      const auto& inspector = static_cast<const TVosDataInspector&>(*control);
      for (const InspectorItem& item : inspector.items) {
        if (&inspector.DataSet() == &dataSet && shows(item.field)) return item.label;
      }
    }
  }
  return {};
}

std::string LabelOf(const TVosBaseForm& form, TVosClientDataSet& dataSet, const TField& field) {
  return field.DisplayLabel.empty() ? TitleOn(form, dataSet, field) : field.DisplayLabel;
}

/// What the server stamps is nobody's typing.
Differing Differences(const TVosBaseForm& form, TVosClientDataSet& dataSet,
                      const ReconcileError& error) {
  Differing differing;
  for (const NamedValue& mine : error.mine) {
    const TField* field = dataSet.FindField(mine.name);
    const Variant* theirs = FindValue(error.present, mine.name);
    if (field == nullptr || field->Def().Is(Stamped) || theirs == nullptr) continue;
    const Variant* was = FindValue(error.before, mine.name);
    if (*theirs == mine.value || (was != nullptr && *theirs == *was)) continue;
    const std::string label = LabelOf(form, dataSet, *field);
    if (label.empty()) {
      differing.hidden.emplace_back(field->Name());
      continue;
    }
    const TField& shown = ShownFor(dataSet, *field);
    const auto text = [&](const NamedValues& values) {
      return shown.TextIn(Row(dataSet, error, values));
    };
    differing.shown.push_back({std::string(field->Name()), label, text(error.mine),
                               text(error.present), text(error.before)});
  }
  return differing;
}

/// "Записът „Код 7“", "Записът „Искане за покупка 17, версия 1, ред 3“".
std::string RowName(const TVosBaseForm& form, TVosClientDataSet& dataSet,
                    const ReconcileError& error) {
  const RowReader row = Row(dataSet, error, error.before);
  if (dataSet.OnNameRow) return "Записът „" + dataSet.OnNameRow(row) + "“";
  std::string text;
  for (const TField* field : dataSet.Fields()) {
    if (!field->Def().Is(Key) || FindValue(error.before, field->Name()) == nullptr) continue;
    const std::string label = LabelOf(form, dataSet, *field);
    if (label.empty()) continue;
    text += (text.empty() ? "" : ", ") + label + " " + ShownFor(dataSet, *field).TextIn(row);
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
      cdsDifferences_[Overwrite].Set(false);  // theirs stays until the user says otherwise
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
  const std::string row = RowName(form, dataSet, error);
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
  Differing differing = Differences(form, dataSet, error);
  ReconcileAction chosen = ReconcileAction::Merge;  // when both typed the same
  if (!differing.shown.empty()) {
    TfVosConflict dialog(form, row, who, differing.shown);
    dialog.ShowModal();
    chosen = dialog.Chosen();
    if (chosen == ReconcileAction::Merge) error.givenUp = dialog.GivenUp();
  }
  if (chosen == ReconcileAction::Merge)
    error.givenUp.insert(error.givenUp.end(), differing.hidden.begin(), differing.hidden.end());
  return chosen;
}

}  // namespace orvane::host
