#pragma once

// Columns, inspector items and search fields as they read in a screen's layout:
//
//   Column("Chief", 10, "Код").Under("Началник(В.И.Д.)").Mask("[*10[@]]").Edit(cbSysUser)
//   Item("CostCenter", "Център за разход").Edit(cbCostCenters).Required()
//   SearchBy("UserName", "Име").In(Visibility::fvFirstLang).ByPart()

#include <string_view>

#include "data/search_template.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"

namespace orvane::kit {

struct Column : GridColumn {
  Column(std::string_view fieldName, int widthChars, std::string_view columnTitle) {
    field = fieldName;
    width = widthChars;
    title = columnTitle;
  }
  Column& Under(std::string_view groupTitle) {
    group = groupTitle;
    return *this;
  }
  Column& Mask(std::string_view picture) {
    mask = picture;
    return *this;
  }
  Column& Edit(TVosMTCombo& with) {
    combo = &with;
    return *this;
  }
  Column& Shown(ColumnKind how) {
    kind = how;
    return *this;
  }
  Column& ReadOnly() {
    readOnly = true;
    return *this;
  }
  /// Its sum stands at the end of the printed list.
  Column& Summed() {
    summed = true;
    return *this;
  }
};

struct Item : InspectorItem {
  Item(std::string_view fieldName, std::string_view itemLabel) {
    field = fieldName;
    label = itemLabel;
  }
  Item& Mask(std::string_view picture) {
    mask = picture;
    return *this;
  }
  Item& Edit(TVosMTCombo& with) {
    combo = &with;
    return *this;
  }
  /// A field shown behind the value.
  Item& Named(std::string_view field2) {
    nameField = field2;
    return *this;
  }
  Item& Shown(ItemKind how) {
    kind = how;
    return *this;
  }
  Item& Required() {
    required = true;
    return *this;
  }
  /// So high; the text wraps.
  Item& Lines(int count) {
    lines = count;
    return *this;
  }
  Item& ReadOnly() {
    readOnly = true;
    return *this;
  }
};

/// An item labelled as its field.
inline Item ItemOf(const FieldDef& field) {
  return {field.name, field.label};
}

struct SearchBy : SearchField {
  SearchBy(std::string_view column, std::string_view title) {
    name = column;
    displayName = title;
  }
  SearchBy& In(Visibility when) {
    visibility = when;
    return *this;
  }
  /// A part of the text may be searched for, and is unless the user says otherwise.
  SearchBy& ByPart(SearchPos position = SearchPos::spBegin) {
    allowPartSearch = true;
    defaultPartSearch = true;
    defaultSearchPos = position;
    return *this;
  }
};

}  // namespace orvane::kit
