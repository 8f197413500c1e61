#include "modules/core/get_quant.h"

#include <algorithm>
#include <string>
#include <vector>

#include "host/controls/grid.h"
#include "host/controls/small_controls.h"
#include "host/form.h"
#include "kit/columns.h"

namespace orvane::modules {
namespace {

constexpr auto Code = Int16("Code", Key, "Мярка");
constexpr auto Name = String("Name", 20, Plain, "Име");
constexpr auto Size = Int32("Size", Plain, "Размер");
constexpr auto Count = Code19("Count", Plain, "Брой");

constexpr std::string_view kSmallestUnit = "най-малки единици";
constexpr std::string_view kWholeMask = "[*9[#]]";
constexpr std::int64_t kHighestQuantity = 999'999'999;

struct Unit {
  std::int64_t code = 0;
  std::string name;
  std::int64_t size = 1;
};

/// Units not larger than the row's own, largest first; the last one has size 1, so that every whole
/// quantity can be taken apart.
std::vector<Unit> UnitsOf(TVosClientDataSet& units, const Variant& measure, bool firstLanguage) {
  const TField& code = units.FieldByName("Code");
  const TField& size = units.FieldByName("Numerator");
  const TField& name = units.FieldByName(firstLanguage ? "Name" : "Name2");
  const auto own = units.Find("Code", measure);
  const std::int64_t largest = own ? units.ValueAt(*own, size).AsInt().value_or(1) : 1;
  std::vector<Unit> found;
  for (std::size_t row = 0; row < units.RecordCount(); ++row) {
    const std::int64_t numerator = units.ValueAt(row, size).AsInt().value_or(0);
    if (numerator < 1 || numerator > largest) continue;
    const bool known = std::ranges::find(found, numerator, &Unit::size) != found.end();
    const bool isOwn = own && row == *own;
    if (known && !isOwn) continue;
    std::erase_if(found, [&](const Unit& unit) { return unit.size == numerator; });
    found.push_back({units.ValueAt(row, code).AsInt().value_or(0),
                     units.ValueAt(row, name).ToText(), numerator});
  }
  std::ranges::sort(found, std::ranges::greater(), &Unit::size);
  if (found.empty() || found.back().size != 1) found.push_back({0, std::string(kSmallestUnit), 1});
  return found;
}

class TfGetQuant : public TVosBaseForm {
 public:
  TfGetQuant(TVosBaseForm& owner, const std::vector<Unit>& units, std::int64_t quantity)
      : TVosBaseForm(DialogIdentity(owner), "TfGetQuant", "Количество"),
        cdsUnits_("cdsUnits", {Code, Name, Size, Count}),
        dsUnits_(cdsUnits_),
        gUnits_(*this, "gUnits", dsUnits_),
        lTotal_(*this, "lTotal") {
    Fill(units, quantity);
    cdsUnits_[Count].OnChange = [this] { ShowTotal(); };
    gUnits_.columns = {
        Column("Name", 22, "Мярка").ReadOnly(),
        Column("Size", 12, "Размер").ReadOnly(),
        Column("Count", 12, "Брой").Mask(kWholeMask),
    };
    gUnits_.fixedCols = 2;
    gUnits_.cancelOnExit = false;
    gUnits_.OnLastColumn = [this] { return GoToNextCount(); };
    AddConfirm();
    AddDialogExit(*this);
    ribbon = {{"Количество", {{"Операции", {"acConfirm"}}, {"Изход", {"acExit"}}}}};
    layout = ColumnOf({Of(gUnits_, 1), Of(lTotal_)});
    ShowTotal();
  }

  std::optional<std::int64_t> chosen;

 protected:
  std::span<const LiveRow> LiveRows() const override { return kLive; }
  void OnShow() override { gUnits_.FocusField("Count"); }
  bool HasUnsavedTyping() const override { return false; }

 private:
  static constexpr LiveRow kLive[] = {
      {"acConfirm", kAnywhere},
  };

  void AddConfirm() {
    TAction action;
    action.name = "acConfirm";
    action.caption = "Приемане";
    action.shortcut = KeyCode::F9;
    action.icon = "confirm";
    action.OnExecute = [this] { Confirm(); };
    AddAction(std::move(action));
  }

  void Fill(const std::vector<Unit>& units, std::int64_t quantity) {
    std::int64_t rest = quantity;
    for (const Unit& unit : units) {
      cdsUnits_.Append();
      cdsUnits_[Code].Set(Variant(unit.code));
      cdsUnits_[Name].Set(Variant(unit.name));
      cdsUnits_[Size].Set(Variant(unit.size));
      cdsUnits_[Count].Set(Variant(rest / unit.size));
      cdsUnits_.Post();
      rest %= unit.size;
    }
    cdsUnits_.First();
  }

  /// Enter goes down the counts and confirms behind the last one.
  bool GoToNextCount() {
    if (cdsUnits_.RecNo() + 1 >= cdsUnits_.RecordCount()) {
      Confirm();
      return true;
    }
    gUnits_.GoToRow(cdsUnits_.RecNo() + 1);
    gUnits_.FocusField("Count");
    return true;
  }

  std::int64_t Total() {
    std::int64_t total = 0;
    TVosClientDataSet& rows = cdsUnits_;
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
      total += rows.ValueAt(row, rows[Count]).AsInt().value_or(0) *
               rows.ValueAt(row, rows[Size]).AsInt().value_or(0);
    }
    return total;
  }

  void ShowTotal() { lTotal_.text = "Общо в най-малки единици: " + std::to_string(Total()); }

  void Confirm() {
    gUnits_.CommitEditor();
    RefuseIf(Total() > kHighestQuantity, "Количеството е твърде голямо.");
    chosen = Total();
    Close();
  }

  TVosClientDataSet cdsUnits_;
  TDataSource dsUnits_;
  TVosDBGrid gUnits_;
  TLabel lTotal_;
};

}  // namespace

std::optional<std::int64_t> GetQuant(TVosBaseForm& owner, const Variant& measure,
                                     std::int64_t quantity, TVosClientDataSet& units) {
  TfGetQuant dialog(owner, UnitsOf(units, measure, owner.FirstLanguage()), quantity);
  dialog.ShowModal();
  return dialog.chosen;
}

}  // namespace orvane::modules
