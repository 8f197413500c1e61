#include "host/controls/combo.h"

#include <algorithm>

#include "data/text_format.h"
#include "host/controls/cell_editor.h"
#include "host/form.h"
#include "host/search_dialog.h"
#include "packet/fold.h"

namespace orvane::host {
namespace {

/// Entries listed at once; more come when the highlight reaches the end.
constexpr std::size_t kListPage = 80;

bool IsDigits(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool IsText(const TField& field) {
  return RowOf(field.Def().kind).storage == Storage::Text;
}

}  // namespace

TVosMTCombo::TVosMTCombo(TVosBaseForm& form, std::string_view name, TLookupTable& table)
    : form_(form), name_(name), table_(table) {}

const std::string& TVosMTCombo::GetLookupField() const {
  return table_.KeyField();
}

const std::string& TVosMTCombo::NameField() const {
  const bool second = !form_.FirstLanguage() && !lookupTrNameField.empty();
  return second ? lookupTrNameField : lookupNameField;
}

std::string TVosMTCombo::NameOf(const Variant& key) const {
  return TakesNames() ? table_.ValueOf(key, NameField()).ToText() : std::string();
}

// --- the list
// -------------------------------------------------------------------------------------

void TVosMTCombo::TextChanged(std::string_view text) {
  const std::string_view typed = Trim(text);
  if (typed.empty()) return CloseList();
  if (list_.open && !source_.whole && source_.text == typed) return;
  BuildList({.whole = false, .text = std::string(typed)}, kListPage);
  list_.open = !keys_.empty();
}

void TVosMTCombo::OpenWholeList(const Variant& current) {
  table_.FillIfStale();
  BuildList({.whole = true, .text = {}}, kListPage);
  const auto found = std::ranges::find(keys_, current);
  if (found != keys_.end()) list_.current = static_cast<int>(found - keys_.begin());
  list_.open = !keys_.empty();
}

/// Codes that begin so, then names that begin so, then names with it anywhere. Where the rows are
/// not all here, each is a call: the last one is made only when the others found nothing.
void TVosMTCombo::BuildList(const ListSource& source, std::size_t limit) {
  source_ = source;
  list_ = {};
  keys_.clear();
  ++listVersion_;
  const std::string text = source.text;
  if (source.whole) {
    AddToList(GetLookupField(), SearchMatch::Begins, {}, limit);
  } else {
    const bool codeFits = IsDigits(text) || IsText(table_.DataSet().FieldByName(GetLookupField()));
    if (codeFits) AddToList(GetLookupField(), SearchMatch::Begins, text, limit);
    if (TakesNames()) AddToList(NameField(), SearchMatch::Begins, text, limit);
    const bool anywhere = keys_.empty() || !table_.DataSet().HasMore();
    if (TakesNames() && anywhere) AddToList(NameField(), SearchMatch::Contains, text, limit);
  }
  SettleRows();
}

void TVosMTCombo::AddToList(std::string_view field, SearchMatch match, std::string_view text,
                            std::size_t limit) {
  if (keys_.size() >= limit) {
    list_.more = true;
    return;
  }
  bool more = false;
  for (const std::size_t position : table_.Narrow(field, match, text, limit, &more)) {
    const auto key = KeyAt(position);
    if (!key || std::ranges::find(keys_, *key) != keys_.end()) continue;
    if (keys_.size() == limit) {
      list_.more = true;
      return;
    }
    keys_.push_back(*key);
  }
  list_.more = list_.more || more;
}

void TVosMTCombo::SettleRows() {
  list_.rows.clear();
  for (const Variant& key : keys_)
    list_.rows.push_back(table_.DataSet().Find(GetLookupField(), key).value_or(0));
}

void TVosMTCombo::MoveInList(int by) {
  if (!list_.open) return;
  const int wanted = list_.current + by;
  if (wanted >= static_cast<int>(keys_.size()) && list_.more) {
    if (source_.whole && table_.DataSet().HasMore()) table_.FetchMore();
    const ListSource source = source_;
    BuildList(source, keys_.size() + kListPage);
    list_.open = true;
  }
  list_.current = std::clamp(wanted, 0, std::max(0, static_cast<int>(keys_.size()) - 1));
  ++listVersion_;
}

void TVosMTCombo::CloseList() {
  if (!list_.open && keys_.empty()) return;
  list_ = {};
  keys_.clear();
  ++listVersion_;
}

std::string TVosMTCombo::ListText(std::size_t index) const {
  if (index >= keys_.size()) return {};
  const TField& code = table_.DataSet().FieldByName(GetLookupField());
  const std::string name = NameOf(keys_[index]);
  return name.empty() ? code.TextOf(keys_[index]) : code.TextOf(keys_[index]) + "  " + name;
}

std::optional<Variant> TVosMTCombo::KeyAt(std::size_t position) const {
  const TVosClientDataSet& rows = table_.DataSet();
  if (position >= rows.RecordCount()) return std::nullopt;
  return rows.ValueAt(position, table_.DataSet().FieldByName(GetLookupField()));
}

// --- what was meant
// -------------------------------------------------------------------------------

Answer<Variant> TVosMTCombo::Resolve(std::string_view text) {
  if (list_.open && list_.current >= 0) return keys_[static_cast<std::size_t>(list_.current)];
  const std::string typed(Trim(text));
  if (typed.empty()) return Variant();
  if (auto code = FindCode(typed)) return *code;
  if (!TakesNames()) return NotListed(typed);
  return FindByName(typed);
}

std::optional<Variant> TVosMTCombo::FindCode(std::string_view text) {
  const TField& field = table_.DataSet().FieldByName(GetLookupField());
  const Answer<Variant> code = ParseValue(text, field.Format);
  if (!code) return std::nullopt;
  if (table_.LocateKey(*code)) return *code;
  if (!IsText(field)) return std::nullopt;
  // Codes that are texts are typed in either case.
  const auto found = table_.Narrow(GetLookupField(), SearchMatch::Equals, text, 2);
  return found.size() == 1 ? KeyAt(found.front()) : std::nullopt;
}

Answer<Variant> TVosMTCombo::FindByName(std::string_view text) {
  for (const SearchMatch match :
       {SearchMatch::Equals, SearchMatch::Begins, SearchMatch::Contains}) {
    const auto found = table_.Narrow(NameField(), match, text, 2);
    if (found.empty()) continue;
    if (found.size() == 1) return *KeyAt(found.front());
    return Failure{FailureKind::Refused, "„" + std::string(text) +
                                             "“ отговаря на няколко записа в списъка „" +
                                             ListTitle() + "“. Изберете един от тях."};
  }
  return NotListed(text);
}

Failure TVosMTCombo::NotListed(std::string_view text) const {
  return {FailureKind::Refused,
          "Няма „" + std::string(text) + "“ в списъка „" + ListTitle() + "“."};
}

/// The place that is edited names the list: a search may be captioned for another list than the one
/// it searches.
std::string TVosMTCombo::ListTitle() const {
  const Control* host = Host();
  const std::string place = host == nullptr ? std::string() : host->PlaceLabel();
  return place.empty() ? name_ : std::string(Trim(place));
}

// --- dialogs
// --------------------------------------------------------------------------------------

Control* TVosMTCombo::Host() const {
  Control* control = form_.ActiveControl();
  return control != nullptr && control->ActiveCombo() == this ? control : nullptr;
}

void TVosMTCombo::DoSearch(std::string_view field, bool partial) {
  Control* host = Host();
  if (host == nullptr) return;
  SearchSpec spec = SearchOf(table_);
  spec.caption = dlgCaption;
  spec.startField = field;
  spec.partial = partial;
  const CellEditor* editor = host->Editor();
  if (editor != nullptr && editor->IsChanged()) spec.startText = editor->Text();
  CloseList();
  const std::optional<NamedValues> row = RunSearchDialog(form_, spec);
  if (!row) return;
  const Variant* key = FindValue(*row, GetLookupField());
  if (key == nullptr || key->IsNull()) return;
  table_.LocateKey(*key);
  if (Host() == host) host->TakeFromCombo(*key);
}

void TVosMTCombo::SearchByName() {
  DoSearch(NameField(), false);
}

void TVosMTCombo::SearchByPartName() {
  DoSearch(NameField(), true);
}

bool TVosMTCombo::HasNomenclature() const {
  const VosApplication& app = form_.App();
  if (OnOpenNomenclature) return true;
  if (app.classes.Find(nomenclatureClass) == nullptr) return false;
  const auto own = std::ranges::find(app.points, nomenclatureClass, &ModulePoint::screenClass);
  return own == app.points.end() || own->access.Has(paOpen);
}

void TVosMTCombo::OpenNomenclature() {
  if (!HasNomenclature()) return;
  Control* host = Host();
  CloseList();
  if (OnOpenNomenclature) return OnOpenNomenclature();
  std::int32_t moduleNo = form_.ModuleNo();
  std::int32_t pointNo = form_.PointNo();
  ModulePoint* point = form_.Point();
  for (ModulePoint& own : form_.App().points) {
    // The register's own point, where it has one: its rights are the ones that count there.
    if (own.screenClass != nomenclatureClass) continue;
    moduleNo = own.moduleNo;
    pointNo = own.number;
    point = &own;
  }
  const auto screen =
      form_.App().CreateVosForm(&form_, nomenclatureClass, moduleNo, pointNo, point);
  if (screen == nullptr) return;
  if (TAction* choose = screen->FindAction(kChooseAction)) {
    screen->choiceField = GetLookupField();
    choose->visible = true;
  }
  screen->ShowModal();
  table_.Fill();
  const Variant chosen = screen->chosenCode;
  if (chosen.IsNull() || host == nullptr || Host() != host) return;
  if (table_.LocateKey(chosen)) host->TakeFromCombo(chosen);
}

}  // namespace orvane::host
