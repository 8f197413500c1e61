#pragma once

// The search dialog: conditions on the fields a template offers, the rows that fit in portions, and
// the row the user chose.
//
//   SearchSpec spec = SearchOf(table);               // template, parameters, fields of a lookup
//   spec.caption = "Търсене - Доставчици";
//   spec.startField = "Name";
//   if (const auto row = RunSearchDialog(form, spec)) code = *FindValue(*row, "Partner");

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/field.h"
#include "contract/system.h"
#include "data/search_template.h"
#include "host/form.h"

namespace orvane::data {
class TLookupTable;
}  // namespace orvane::data

namespace orvane::host {

/// What is searched and how the dialog opens.
struct SearchSpec {
  std::string caption;
  std::vector<std::string> lines;  ///< of the template
  NamedValues params;              ///< of the template
  std::vector<SearchField> fields;
  /// Columns that the template answers with, hidden ones too; they give the kinds of the
  /// conditions. Names of the definitions must outlive the call.
  std::vector<FieldDef> columns;
  std::string startField;  ///< has the focus at first; empty: the first field offered
  std::string startText;   ///< searched at once when given
  /// Search on the start field for a part of the text, whatever its own default; otherwise its text
  /// must begin with what is typed.
  bool partial = false;
  std::int32_t portion = 80;
  /// Provider of the search class that runs the statement.
  std::string_view provider = system::kSearchProvider;
  /// How values of columns read where their format does not say it (quantities in their unit).
  std::map<std::string, std::function<std::string(const Variant&)>> texts = {};
};

/// Template, parameters, fields and columns of a lookup table.
SearchSpec SearchOf(TLookupTable& table);

/// Runs the dialog over `owner`, in the language the owner works in. The chosen row with all
/// columns of the answer, or empty when the user left without choosing.
std::optional<NamedValues> RunSearchDialog(TVosBaseForm& owner, const SearchSpec& spec);

}  // namespace orvane::host
