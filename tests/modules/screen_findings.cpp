#include "modules/screen_findings.h"

#include <algorithm>

#include "host/controls/combo.h"
#include "packet/fold.h"
#include "server/dialect/binder.h"
#include "server/dialect/fold_of.h"
#include "server/dialect/lexer.h"
#include "server/dialect/parser.h"
#include "support/test_databases.h"

namespace orvane::modules {
namespace {

using namespace server;

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

// --- what a statement searches

std::set<std::string> FoldsIn(Database& database) {
  const bool postgres = database.Kind() == Engine::Postgres;
  const Statement select{
      postgres ? "select table_name, column_name from information_schema.columns where "
                 "column_name like 'fold%'"
               : "select m.name, x.name from sqlite_schema m, pragma_table_xinfo(m.name) x where "
                 "m.type = 'table' and x.name like 'Fold%'",
      {},
      {{"TableName", ValueKind::Memo, 0}, {"ColumnName", ValueKind::Memo, 0}}};
  const auto packets = database.ReadSnapshot({&select, 1});
  std::set<std::string> folds;
  for (std::size_t row = 0; row < packets->front().rowCount; ++row) {
    folds.insert(
        Fold(packets->front().At(row, 0).ToText() + "." + packets->front().At(row, 1).ToText()));
  }
  return folds;
}

/// Values for all parameters that the statement names: the given ones where there are any.
NamedValues ParametersOf(const std::string& sql, const NamedValues& given) {
  NamedValues params;
  const auto tokens = dialect::Tokenise(sql);
  for (std::size_t i = 0; tokens && i < tokens->size(); ++i) {
    const dialect::Token& token = (*tokens)[i];
    if (token.kind != dialect::TokenKind::Variable || token.declared) continue;
    const std::string name(token.text);
    const Variant* value = FindValue(given, name);
    const bool date = name.find("Date") != std::string::npos;
    params.push_back({name, value != nullptr && !value->IsNull() ? *value
                            : date                               ? Variant(Date{20'000})
                                                                 : Variant(1)});
  }
  return params;
}

using Texts = std::vector<const dialect::Term*>;

void Collect(const dialect::Term& term, Texts& texts) {
  dialect::VisitColumns(term, [&](const dialect::Term& column) {
    const ValueKind kind = column.column->kind;
    if (kind == ValueKind::String || kind == ValueKind::Memo) texts.push_back(&column);
  });
}

/// Texts that are compared or searched; whether one is there at all needs no fold.
void Collect(const dialect::Condition& condition, Texts& texts) {
  if (condition.kind == dialect::ConditionKind::IsNull) return;
  for (const auto& part : condition.parts)
    Collect(*part, texts);
  for (const auto& part : condition.conditions)
    Collect(*part, texts);
  if (!condition.select) return;
  Collect(*condition.select->where, texts);
  for (const auto& item : condition.select->items)
    Collect(*item.value, texts);
}

/// The stored column behind a text; empty when it is derived from folds.
std::string StoredColumn(const dialect::BoundSearch& bound, const dialect::Term& text) {
  if (!text.column->expression.empty())
    return text.column->foldExpression.empty() ? std::string(text.column->name) : "";
  std::string name;
  for (const auto& [number, table] : bound.tables) {
    if (number == text.table) name = table->stored;
  }
  return name.append(".Fold").append(text.column->name);
}

}  // namespace

std::set<std::string> StoredFolds() {
  std::set<std::string> folds;
  for (const TestEngine engine : TestEngines()) {
    const std::set<std::string> own = FoldsIn(*FreshDatabase(engine));
    if (folds.empty()) folds = own;
    std::erase_if(folds, [&](const std::string& fold) { return own.count(fold) == 0; });
  }
  return folds;
}

ScreenFindings::ScreenFindings(TVosBaseForm& form, const std::vector<server::ServerClass>& classes,
                               const std::set<std::string>& folds)
    : form_(form), classes_(classes), folds_(folds) {
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
  CheckSearch(std::string(combo.Name()), SearchOf(table));
}

void ScreenFindings::CheckSearch(const std::string& name, const SearchSpec& spec) {
  for (const SearchField& field : spec.fields) {
    const auto column = std::ranges::find_if(spec.columns, [&](const FieldDef& def) {
      return SameName(def.name, WithoutAlias(field.name));
    });
    const bool text = column != spec.columns.end() &&
                      (column->kind == ValueKind::String || column->kind == ValueKind::Memo);
    if (text) CheckFold(name, spec, field);
  }
}

void ScreenFindings::CheckFold(const std::string& name, const SearchSpec& spec,
                               const SearchField& field) {
  ComposedSearch search = ComposeSearch(spec.lines, spec.params,
                                        {{field.name, SearchMatch::Contains, "ян"}}, field.name);
  const NamedValues params = ParametersOf(search.sql, search.params);
  SearchInput input{search.sql, params};
  input.mayRead = [](const CatalogueTable&) { return true; };
  input.visibility = [](const CatalogueTable&) { return RowPredicate{}; };
  const auto tokens = dialect::Tokenise(search.sql);
  const auto syntax = tokens ? dialect::Parse(*tokens) : tokens.GetFailure();
  const auto bound =
      syntax ? dialect::Bind(*syntax, input, std::chrono::steady_clock::time_point::max())
             : syntax.GetFailure();
  if (!bound) return Add("S012", name, Quoted(field.name) + " " + bound.GetFailure().message);
  const dialect::TypedSelect& select = bound->select;
  Texts texts;
  Collect(*select.where, texts);
  if (TakesConditions(spec.lines) && texts.empty())
    Add("S012", name, Quoted(field.name) + " is not searched");
  std::vector<dialect::TermPtr> order;
  for (const dialect::TypedOrder& one : select.order)
    order.push_back(dialect::OrderOf(one.value, select.tables, select.distinct));
  for (const dialect::TermPtr& one : order)
    Collect(*one, texts);
  std::set<std::string> missing;
  for (const dialect::Term* text : texts) {
    const std::string stored = StoredColumn(*bound, *text);
    if (!text->folded || (!stored.empty() && folds_.count(Fold(stored)) == 0))
      missing.insert(stored);
  }
  for (const std::string& stored : missing)
    Add("S012", name, Quoted(field.name) + " is searched without " + stored);
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
