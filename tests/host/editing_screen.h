#pragma once

// A screen with one grid, one inspector and a key edit on rows in memory, driven by keys as a
// person presses them. Rows of its tests read
//
//   keys            what a person sees then
//   Enter 'abc' F2  "2 Name edit [abc]"        row, column, state, the open editor's text
//
// followed by the messages shown meanwhile.

#include <sstream>

#include "data/lookup_table.h"
#include "host/controls/combo.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/form_fakes.h"

namespace orvane::host::fakes {

namespace goods {
inline constexpr auto Code = Int16("Code", Key | Required, "Код");
inline constexpr auto Name = String("Name", 10, Required, "Име");
inline constexpr auto Unit = Int16("Unit", Plain, "Мярка");
inline constexpr auto Sum = Amount("Sum", Plain, "Сума");
inline constexpr auto Done = Bit("Done", Plain, "Готово");
inline constexpr auto Note = Memo("Note", Plain, "Бележки");
}  // namespace goods

namespace units {
inline constexpr auto Code = Int16("Code", Key, "Код");
inline constexpr auto Name = String("Name", 30, Plain, "Име");
inline constexpr auto Name2 = String("Name2", 30, Plain, "Име 2");
}  // namespace units

class EditingScreen : public TVosBaseForm {
 public:
  explicit EditingScreen(Host& host, TPointAccess access = {paOpen, paEdit, paInsert, paDelete})
      : TVosBaseForm(host.Identity(access), "TfGoods", "Стоки"),
        cdsGoods("cdsGoods",
                 {goods::Code, goods::Name, goods::Unit, goods::Sum, goods::Done, goods::Note}),
        dsGoods(cdsGoods),
        cSQL(host.app.Session(), {11, 1}, "TsmSQL"),
        cdsUnits("cdsUnits", cSQL, {units::Code, units::Name, units::Name2}),
        lookupUnits(cdsUnits, "Code"),
        cbUnits(*this, "cbUnits", lookupUnits),
        eKey(*this, "eKey", "Идентификатор"),
        grid(*this, "grid", dsGoods),
        inspector(*this, "inspector", dsGoods),
        toolkit_(host.toolkit) {
    grid.columns = {
        {.field = "Code", .title = "Код~на стока", .mask = "{1,2,3,4,5,6,7,8,9}[*3[#]]"},
        {.field = "Name", .title = "Име", .mask = "[*10[@]]"},
        {.field = "Unit", .title = "Мярка", .combo = &cbUnits},
        {.field = "Sum", .title = "Сума", .mask = "{{;-,;+}#,#}[*12[#]][;.[#[*1[#]]]]"},
        {.field = "Done", .title = "Готово", .kind = ColumnKind::Check},
    };
    grid.canInsert = true;
    inspector.items = {
        {.field = "Code", .label = "Код"},
        {.field = "Name", .label = "Име на стоката"},
        {.field = "Unit", .label = "Мярка", .combo = &cbUnits},
        {.field = "Done", .label = "Готово", .kind = ItemKind::Check},
        {.field = "Note", .label = "Бележки", .kind = ItemKind::Memo},
    };
    cbUnits.lookupNameField = "Name";
    cbUnits.lookupTrNameField = "Name2";
    cbUnits.dlgCaption = "Търсене - Мерки";
    FillUnits();
    FillGoods();
    FocusControl(&grid);
  }

  TVosClientDataSet cdsGoods;
  TDataSource dsGoods;
  TVosSQLConnection cSQL;
  TVosClientDataSet cdsUnits;
  TLookupTable lookupUnits;
  TVosMTCombo cbUnits;
  TKeyEdit eKey;
  TVosDBGrid grid;
  TVosDataInspector inspector;

  /// Presses what `keys` names ("Enter Ctrl+End 'typed text'") and tells what a person sees.
  std::string See(std::string_view keys) {
    PressKeys(keys);
    return Seen() + TakeMessages();
  }

  std::string Seen() {
    constexpr std::string_view kStates[] = {"closed", "browse", "edit", "insert"};
    std::ostringstream seen;
    Control* control = ActiveControl();
    if (control == &grid)
      seen << cdsGoods.RecNo() + (cdsGoods.IsEmpty() ? 0 : 1) << '/' << cdsGoods.RecordCount()
           << ' ' << grid.columns[static_cast<std::size_t>(grid.CurrentColumn())].field;
    else if (control == &inspector)
      seen << inspector.items[static_cast<std::size_t>(inspector.CurrentItem())].field;
    else
      seen << control->Name();
    seen << ' ' << kStates[static_cast<std::size_t>(cdsGoods.State())];
    if (const CellEditor* editor = control->Editor()) seen << " [" << editor->Text() << ']';
    return seen.str();
  }

  /// All rows as "1 гайка 10 2,50 Да; 2 …".
  std::string Rows() {
    std::string rows;
    for (std::size_t row = 0; row < cdsGoods.RecordCount(); ++row) {
      if (row > 0) rows += "; ";
      for (const FieldDef& field : {goods::Code, goods::Name, goods::Unit})
        rows += (field.name == "Code" ? "" : " ") + cdsGoods.TextAt(row, cdsGoods[field]);
    }
    return rows;
  }

  void PressKeys(std::string_view keys) {
    while (!keys.empty()) {
      if (keys.front() == ' ') {
        keys.remove_prefix(1);
        continue;
      }
      const bool typed = keys.front() == '\'';
      if (typed) keys.remove_prefix(1);
      const std::size_t end = std::min(keys.find(typed ? '\'' : ' '), keys.size());
      const std::string_view word = keys.substr(0, end);
      if (typed)
        Type(*this, word);
      else
        Press(*this, *ParseKey(word));
      keys.remove_prefix(std::min(end + 1, keys.size()));
    }
  }

  std::string TakeMessages() {
    std::string texts;
    for (const MessageDialog& message : toolkit_.messages)
      texts += " !" + message.caption + ": " + message.text;
    toolkit_.messages.clear();
    return texts;
  }

  void FillUnits() {
    DataPacket packet;
    packet.AddColumn("Code", ValueKind::Int16);
    packet.AddColumn("Name", ValueKind::String, 30);
    packet.AddColumn("Name2", ValueKind::String, 30);
    const auto add = [&packet](int code, const char* name, const char* name2) {
      packet.AppendRow(std::vector<Variant>{code, name, name2});
    };
    add(1, "брой", "piece");
    add(10, "килограм", "kilogram");
    add(11, "километър", "kilometre");
    add(12, "метър", "metre");
    lookupUnits.TakeFilled(std::move(packet));
  }

  void FillGoods() {
    DataPacket packet;
    packet.AddColumn("Code", ValueKind::Int16);
    packet.AddColumn("Name", ValueKind::String, 10);
    packet.AddColumn("Unit", ValueKind::Int16);
    packet.AddColumn("Sum", ValueKind::Amount);
    const auto add = [&packet](int code, const char* name, int unit, std::int64_t cents) {
      packet.AppendRow(std::vector<Variant>{code, name, unit, Decimal(cents * 100, 4)});
    };
    add(1, "болт", 1, 250);
    add(3, "гайка", 1, 123456);
    add(5, "пирон", 10, 99);
    cdsGoods.LoadPacket(std::move(packet));
  }

 private:
  FakeToolkit& toolkit_;
};

}  // namespace orvane::host::fakes
