#include "host/search_dialog.h"

#include <algorithm>

#include "data/lookup_table.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"

namespace orvane::host {
namespace {

struct MatchRow {
  SearchMatch match;
  std::string_view action;
  std::string_view caption;
  KeyStroke key;
  std::string_view text;  ///< behind the condition
};

constexpr MatchRow kMatches[] = {
    {SearchMatch::Begins, "acBegins", "Започва с", Ctrl(KeyCode::Digit1), "започва с"},
    {SearchMatch::Contains, "acContains", "Съдържа", Ctrl(KeyCode::Digit2), "съдържа"},
    {SearchMatch::Equals, "acWhole", "Съвпада", Ctrl(KeyCode::Digit3), "съвпада"},
};

std::string_view TextOf(SearchMatch match) {
  return std::ranges::find(kMatches, match, &MatchRow::match)->text;
}

/// "an.CostCenter" of a template answers in the column "CostCenter".
std::string_view ColumnOfName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? name : name.substr(dot + 1);
}

bool IsText(ValueKind kind) {
  return kind == ValueKind::String || kind == ValueKind::Memo;
}

/// A field of the template that is offered, with the column it answers in.
struct Offer {
  SearchField field;
  FieldDef column;
  std::string matchField;  ///< of the conditions: the way of searching in words
  SearchMatch match = SearchMatch::Equals;
  bool matchIsFree = false;  ///< the user may choose the way of searching
};

void SettleMatch(Offer& offer, const SearchSpec& spec) {
  const bool parts = offer.field.allowPartSearch || offer.field.defaultPartSearch;
  const bool start = SameName(ColumnOfName(spec.startField), offer.column.name);
  if (!IsText(offer.column.kind)) return;
  offer.matchIsFree = parts || (start && spec.partial);
  if (!offer.matchIsFree) return;
  if (start)
    offer.match = spec.partial ? SearchMatch::Contains : SearchMatch::Begins;
  else if (offer.field.defaultPartSearch && offer.field.defaultSearchPos == SearchPos::spAnywhere)
    offer.match = SearchMatch::Contains;
  else
    offer.match = SearchMatch::Begins;
}

std::vector<Offer> OffersOf(const SearchSpec& spec, bool multiLanguage, bool firstLanguage) {
  std::vector<Offer> offers;
  for (const SearchField& field : spec.fields) {
    if (!IsOffered(field, multiLanguage, firstLanguage)) continue;
    for (const FieldDef& column : spec.columns) {
      if (!SameName(column.name, ColumnOfName(field.name))) continue;
      Offer& offer = offers.emplace_back(Offer{
          .field = field, .column = column, .matchField = std::string(column.name) + "Match"});
      SettleMatch(offer, spec);
    }
  }
  return offers;
}

std::vector<FieldDef> ConditionFields(const std::vector<Offer>& offers) {
  std::vector<FieldDef> fields;
  for (const Offer& offer : offers) {
    FieldDef field = offer.column;
    field.flags = Plain;
    field.label = offer.field.displayName;
    fields.push_back(field);
    fields.push_back(String(offer.matchField, 20));
  }
  return fields;
}

int WidthOf(const FieldDef& column) {
  constexpr int kCodeWidth = 14;
  constexpr int kWidestText = 50;
  if (!IsText(column.kind)) return kCodeWidth;
  return column.size == 0 ? kWidestText : std::min<int>(column.size, kWidestText);
}

class TfVosSearch : public TVosBaseForm {
 public:
  TfVosSearch(TVosBaseForm& owner, const SearchSpec& spec)
      : TVosBaseForm(DialogIdentity(owner), "TfVosSearch", spec.caption),
        spec_(spec),
        offers_(OffersOf(spec, !owner.App().AppNotMultiLang(), owner.FirstLanguage())),
        conditionFields_(ConditionFields(offers_)),
        connection_(App().Session(), {ModuleNo(), PointNo()}, system::kSearchClass),
        cdsConditions_("cdsConditions", connection_, ProviderDef{"", "", conditionFields_}),
        dsConditions_(cdsConditions_),
        cdsResult_("cdsResult", connection_, ProviderDef{spec_.provider, "", spec_.columns}),
        dsResult_(cdsResult_),
        diConditions_(*this, "diConditions", dsConditions_),
        lResult_(*this, "lResult"),
        gResult_(*this, "gResult", dsResult_) {
    cdsConditions_.Append();
    for (const Offer& offer : offers_) {
      cdsConditions_.FieldByName(offer.matchField).Set(MatchText(offer));
      diConditions_.items.push_back({.field = std::string(offer.column.name),
                                     .label = offer.field.displayName,
                                     .nameField = offer.matchField});
      gResult_.columns.push_back({.field = std::string(offer.column.name),
                                  .width = WidthOf(offer.column),
                                  .title = offer.field.displayName});
    }
    for (const auto& [column, text] : spec_.texts)
      cdsResult_.FieldByName(column).OnGetText = text;
    gResult_.readOnly = true;
    gResult_.emptyText = "Въведете условие и натиснете F9. Без условие се показват всички.";
    AddOwnActions();
    layout = ColumnOf({Of(diConditions_), Of(lResult_), Of(gResult_, 1)});
  }

  std::optional<NamedValues> chosen;

 protected:
  std::span<const LiveRow> LiveRows() const override { return kLive; }

  void AfterRefreshActions() override {
    // Enter finds while conditions are typed and chooses among what was found.
    FindAction("acFind")->secondShortcut =
        ActiveControl() == &gResult_ ? KeyStroke() : KeyStroke(KeyCode::Enter);
    lResult_.text = ResultText();
  }

  void OnShow() override {
    FocusStart();
    if (spec_.startText.empty() || offers_.empty()) return;
    if (cdsConditions_.FieldByName(Start().column.name).SetText(spec_.startText)) Find();
  }

  bool HasUnsavedTyping() const override { return false; }

 private:
  static bool MayChooseMatch(const TVosBaseForm& form) {
    const auto& dialog = static_cast<const TfVosSearch&>(form);
    const Offer* offer = dialog.CurrentOffer();
    return offer != nullptr && offer->matchIsFree;
  }
  static bool HasResult(const TVosBaseForm& form) {
    return !static_cast<const TfVosSearch&>(form).cdsResult_.IsEmpty();
  }

  static constexpr LiveRow kLive[] = {
      {"acChoose", "gResult", InState::Any, {}, &HasResult},
      {"acFind", kAnywhere},
      {"acBegins", "diConditions", InState::Any, {}, &MayChooseMatch},
      {"acContains", "diConditions", InState::Any, {}, &MayChooseMatch},
      {"acWhole", "diConditions", InState::Any, {}, &MayChooseMatch},
  };

  void AddOwnActions() {
    Add("acFind", "Търси", KeyCode::F9, "search", [this] { Find(); });
    Add("acChoose", "Избор", KeyCode::Enter, "confirm", [this] { Choose(); });
    for (const MatchRow& row : kMatches)
      Add(row.action, row.caption, row.key, "", [this, match = row.match] { SetMatch(match); });
    AddDialogExit(*this);
    ribbon = {{"Търсене",
               {{"Операции", {"acFind", "acChoose"}},
                {"Начин на търсене", {"acBegins", "acContains", "acWhole"}},
                {"Изход", {"acExit"}}}}};
  }

  void Add(std::string_view name, std::string_view text, KeyStroke key, std::string_view icon,
           std::function<void()> execute) {
    TAction action;
    action.name = name;
    action.caption = text;
    action.shortcut = key;
    action.icon = icon;
    action.OnExecute = std::move(execute);
    AddAction(std::move(action));
  }

  static std::string MatchText(const Offer& offer) {
    return offer.matchIsFree ? std::string(TextOf(offer.match)) : std::string();
  }

  const Offer* CurrentOffer() const {
    const auto item = static_cast<std::size_t>(diConditions_.CurrentItem());
    return item < offers_.size() ? &offers_[item] : nullptr;
  }

  /// The field the dialog opens on; there is at least one offer.
  const Offer& Start() const {
    for (const Offer& offer : offers_) {
      if (SameName(offer.column.name, ColumnOfName(spec_.startField))) return offer;
    }
    return offers_.front();
  }

  void FocusStart() {
    FocusControl(&diConditions_);
    if (!offers_.empty()) diConditions_.FocusField(Start().column.name);
  }

  void SetMatch(SearchMatch match) {
    const auto item = static_cast<std::size_t>(diConditions_.CurrentItem());
    diConditions_.FlushChanges();
    offers_[item].match = match;
    EditConditions();
    cdsConditions_.FieldByName(offers_[item].matchField).Set(MatchText(offers_[item]));
  }

  void EditConditions() {
    if (!cdsConditions_.Editing()) cdsConditions_.Edit();
  }

  std::vector<SearchCondition> Conditions() {
    std::vector<SearchCondition> conditions;
    for (const Offer& offer : offers_) {
      const Variant value = cdsConditions_.FieldByName(offer.column.name).Value();
      if (!value.IsEmpty()) conditions.push_back({offer.field.name, offer.match, value});
    }
    return conditions;
  }

  /// Rows come ordered by the field searched by: the one being typed, else the first with a
  /// condition, else the one the dialog opened on.
  const Offer& OrderOffer(const std::vector<SearchCondition>& conditions) const {
    const auto isSearched = [&conditions](const Offer& offer) {
      return std::ranges::any_of(
          conditions, [&](const SearchCondition& row) { return row.field == offer.field.name; });
    };
    const Offer* current = CurrentOffer();
    if (current != nullptr && isSearched(*current)) return *current;
    const auto first = std::ranges::find_if(offers_, isSearched);
    return first == offers_.end() ? Start() : *first;
  }

  void Find() {
    diConditions_.FlushChanges();
    if (offers_.empty()) return;
    const std::vector<SearchCondition> conditions = Conditions();
    const SearchField& order = OrderOffer(conditions).field;
    ComposedSearch search =
        ComposeSearch(spec_.lines, spec_.params, conditions, order.name, order.defaultDescSearch);
    cdsResult_.Sql = std::move(search.sql);
    cdsResult_.Params = std::move(search.params);
    cdsResult_.RowLimit = spec_.portion;
    searched_ = true;
    cdsResult_.EmptyDataSet();
    cdsResult_.Open();
    connection_.Close();
    if (!cdsResult_.IsEmpty()) FocusControl(&gResult_);
  }

  std::string ResultText() const {
    if (!searched_) return {};
    const std::size_t rows = cdsResult_.RecordCount();
    if (rows == 0) return "Няма намерени записи. Променете условията и търсете отново.";
    if (cdsResult_.HasMore())
      return "Показани са първите " + std::to_string(rows) +
             " записа. Останалите идват с придвижването надолу; по-точно условие ги намалява.";
    return rows == 1 ? "Намерен е 1 запис." : "Намерени са " + std::to_string(rows) + " записа.";
  }

  void Choose() {
    NamedValues row;
    for (const TField* field : cdsResult_.Fields())
      row.push_back({std::string(field->Name()), field->Value()});
    chosen = std::move(row);
    Close();
  }

  const SearchSpec spec_;
  std::vector<Offer> offers_;
  std::vector<FieldDef> conditionFields_;
  TVosSQLConnection connection_;
  TVosClientDataSet cdsConditions_;
  TDataSource dsConditions_;
  TVosClientDataSet cdsResult_;
  TDataSource dsResult_;
  TVosDataInspector diConditions_;
  TLabel lResult_;
  TVosDBGrid gResult_;
  bool searched_ = false;
};

}  // namespace

SearchSpec SearchOf(TLookupTable& table) {
  SearchSpec spec;
  spec.lines = table.dlgSQL;
  spec.params = table.Params();
  spec.fields = table.dlgSearchFields;
  for (const TField* field : table.DataSet().Fields()) {
    if (field->IsLookup()) continue;
    spec.columns.push_back(field->Def());
    if (field->OnGetText) spec.texts[std::string(field->Name())] = field->OnGetText;
  }
  return spec;
}

std::optional<NamedValues> RunSearchDialog(TVosBaseForm& owner, const SearchSpec& spec) {
  TfVosSearch dialog(owner, spec);
  dialog.ShowModal();
  return std::move(dialog.chosen);
}

}  // namespace orvane::host
