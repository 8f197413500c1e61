#include "modules/screen_findings.h"

#include <algorithm>

#include "host/controls/combo.h"

namespace orvane::modules {
namespace {

std::string Quoted(std::string_view name) {
  std::string quoted = "'";
  quoted.append(name).append("'");
  return quoted;
}

std::string WithoutAlias(const std::string& column) {
  return column.substr(column.find('.') == std::string::npos ? 0 : column.find('.') + 1);
}

bool IsNameLetter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Whether the name stands in the statement as a word of its own.
bool Names(const std::vector<std::string>& statement, std::string_view name) {
  for (const std::string& line : statement) {
    for (std::size_t at = line.find(name); at != std::string::npos; at = line.find(name, at + 1)) {
      const std::size_t end = at + name.size();
      const bool whole = (at == 0 || !IsNameLetter(line[at - 1])) &&
                         (end == line.size() || !IsNameLetter(line[end]));
      if (whole) return true;
    }
  }
  return false;
}

}  // namespace

ScreenFindings::ScreenFindings(TVosBaseForm& form, const std::vector<server::ServerClass>& classes)
    : form_(form), classes_(classes) {
  for (Control* control : form.Controls()) {
    if (auto* grid = dynamic_cast<TVosDBGrid*>(control)) CheckGrid(*grid);
    if (auto* inspector = dynamic_cast<TVosDataInspector*>(control)) CheckInspector(*inspector);
  }
  for (const RibbonTab& tab : form.ribbon) {
    for (const RibbonGroup& group : tab.groups)
      CheckActions("ribbon", group.actions);
  }
  CheckLayout(form.layout);
  CheckPlaces();
  CheckKeys();
}

void ScreenFindings::Add(std::string_view number, const std::string& where,
                         const std::string& what) {
  std::string finding(number);
  finding.append(" ").append(form_.ClassName());
  if (!where.empty()) finding.append(".").append(where);
  all_.push_back(finding.append(": ").append(what));
}

void ScreenFindings::CheckGrid(TVosDBGrid& grid) {
  for (const GridColumn& column : grid.columns) {
    CheckField(grid, grid.DataSet(), column.field, column.combo);
    if (column.title.empty()) Add("S008", grid.Name(), Quoted(column.field) + " has no title");
  }
  CheckDataSet(grid.DataSet(), &grid.Source());
}

void ScreenFindings::CheckInspector(TVosDataInspector& inspector) {
  for (const InspectorItem& item : inspector.items) {
    CheckField(inspector, inspector.DataSet(), item.field, item.combo);
    if (!item.nameField.empty())
      CheckField(inspector, inspector.DataSet(), item.nameField, nullptr);
    if (item.label.empty()) Add("S008", inspector.Name(), Quoted(item.field) + " has no label");
  }
  CheckDataSet(inspector.DataSet(), nullptr);
}

void ScreenFindings::CheckField(const Control& control, TVosClientDataSet& rows,
                                std::string_view field, TVosMTCombo* combo) {
  if (rows.FindField(field) == nullptr)
    Add("S001", control.Name(), Quoted(field) + " names no field of " + rows.Name());
  if (combo != nullptr) CheckCombo(*combo);
}

void ScreenFindings::CheckCombo(TVosMTCombo& combo) {
  if (!seen_.insert(&combo).second) return;
  TLookupTable& table = combo.Table();
  TVosClientDataSet& offered = table.DataSet();
  std::vector<std::string> names = {combo.lookupNameField, combo.lookupTrNameField};
  for (const SearchField& search : table.dlgSearchFields)
    names.push_back(WithoutAlias(search.name));
  for (const std::string& name : names) {
    if (!name.empty() && offered.FindField(name) == nullptr)
      Add("S003", combo.Name(), Quoted(name) + " names no field of " + offered.Name());
  }
  if (combo.mask.empty()) Add("S004", combo.Name(), "no mask");
  if (table.dlgSQL.empty()) return;
  for (const TField* field : offered.Fields()) {
    if (!field->IsLookup() && !Names(table.dlgSQL, field->Name()))
      Add("S005", combo.Name(), Quoted(field->Name()) + " is not in its statement");
  }
}

void ScreenFindings::CheckDataSet(TVosClientDataSet& rows, const TDataSource* source) {
  if (rows.Connection() == nullptr || !seen_.insert(&rows).second) return;
  const FetchRequest request = rows.MakeFetchRequest();
  const auto own = std::ranges::find(classes_, std::string_view(request.serverClass),
                                     &server::ServerClass::Name);
  if (own == classes_.end())
    return Add("S002", rows.Name(), "there is no server class " + request.serverClass);
  if (!own->UseFrom(form_.PointNo()))
    Add("S011", rows.Name(), request.serverClass + " is not for this point");
  const server::ProviderRow* provider = own->FindProvider(request.provider);
  if (rows.OnFetchPortion) return;  // the answers of a method
  if (provider == nullptr) return Add("S002", rows.Name(), "no provider " + request.provider);
  if (provider->search) return;
  for (const TField* field : rows.Fields()) {
    const bool known = std::ranges::any_of(provider->def.fields, [&](const FieldDef& def) {
      return SameName(def.name, field->Name()) && def.kind == field->Def().kind;
    });
    if (!known && !field->IsLookup())
      Add("S002", rows.Name(), Quoted(field->Name()) + " is not in " + request.provider);
  }
  if (!provider->def.Writable()) return;
  if (!rows.AfterPost) Add("S010", rows.Name(), "AfterPost");
  if (!rows.OnReconcileError) Add("S010", rows.Name(), "OnReconcileError");
  if (source != nullptr && form_.MainDataSet() == &rows && !source->OnStateChange)
    Add("S010", rows.Name(), "OnStateChange");
}

void ScreenFindings::CheckActions(const std::string& where,
                                  const std::vector<std::string>& actions) {
  for (const std::string& action : actions) {
    placed_.insert(action);
    if (form_.FindAction(action) == nullptr) Add("S006", where, "no action " + action);
  }
}

void ScreenFindings::CheckLayout(const LayoutNode& node) {
  CheckActions("bar", node.actions);
  for (const LayoutNode& child : node.children)
    CheckLayout(child);
}

void ScreenFindings::CheckPlaces() {
  for (const auto& action : form_.Actions()) {
    if (!action->always && !placed_.contains(action->name)) Add("S007", action->name, "no place");
    if (action->caption.empty()) Add("S008", action->name, "no caption");
    if (!action->OnExecute) Add("S010", action->name, "OnExecute");
  }
}

void ScreenFindings::CheckKeys() {
  for (Control* control : form_.Controls()) {
    form_.RunInGate([&] { form_.FocusControl(control); });
    CheckKeysAt(control->Name());
    auto* grid = dynamic_cast<TVosDBGrid*>(control);
    if (grid == nullptr || form_.ActiveControl() != grid) continue;
    for (const bool inserting : {false, true}) {
      if (inserting) form_.RunInGate([&] { grid->AppendRow(); });
      for (const GridColumn& column : grid->columns) {
        form_.RunInGate([&] { grid->FocusField(column.field); });
        CheckKeysAt(grid->Name() + (inserting ? " new " : " ") + column.field);
      }
      if (grid->DataSet().Editing()) grid->DataSet().Cancel();
    }
  }
}

void ScreenFindings::CheckKeysAt(const std::string& place) {
  for (const std::string& keys : form_.DuplicateLiveKeys())
    Add("S009", place, keys);
}

}  // namespace orvane::modules
