#pragma once

// Reports as a page-independent document; the toolkit lays them out, previews, prints and exports.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"

namespace orvane {

class TVosBaseForm;
class TVosDBGrid;

enum class Align : unsigned char { Left, Right, Center };

/// Identifies a report of the generator: group, number and variant, as registers state them.
struct ReportKey {
  int group = 0;
  int number = 0;
  int variant = 0;
  bool operator==(const ReportKey&) const = default;
};

struct ReportColumn {
  std::string title;  ///< '~' breaks the line
  std::string group;
  int width = 10;  ///< characters
  Align align = Align::Left;
  ValueKind kind = ValueKind::String;
};

/// A labelled value of the report's head ("Доставчик: 20117 Стил Трейд ООД").
struct ReportFact {
  std::string label;
  std::string value;
};

/// A table of a report with its own heading.
struct ReportTable {
  std::string caption;
  std::vector<ReportColumn> columns;
  std::vector<std::vector<std::string>> rows;
  std::vector<std::string> totals;  ///< empty, or one text per column
};

struct ReportDocument {
  ReportKey key;
  std::string company;
  std::string title;
  std::string number;  ///< printed large with its barcode; empty for lists
  std::string printedBy;
  std::string printedOn;
  std::vector<ReportFact> facts;
  std::vector<ReportTable> tables;
  std::vector<std::string> footLines;
};

/// Prints a register: the columns its grid shows, all rows, in the order shown, under `caption`
/// (the form's caption when empty). Opens the toolkit's preview.
void GenerateReport(TVosBaseForm& form, ReportKey key, const TVosDBGrid& grid,
                    std::string_view caption = {});

}  // namespace orvane
