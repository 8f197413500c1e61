#pragma once

// Reports as a page-independent document: what stands in the head, and tables whose rows are read
// forward, a portion at a time, so that a report of a hundred thousand rows costs no more memory
// than one of a page. The toolkit lays it out, previews, prints and exports it.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/client_dataset.h"

namespace orvane::host {

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
  TextFormat format;    ///< kind of the values and how they are shown
  bool summed = false;  ///< the sum of its exact numbers stands below the rows
};

/// A value and the text that shows it on paper.
struct ReportCell {
  Variant value;
  std::string text;
  bool operator==(const ReportCell&) const = default;
};
using ReportRow = std::vector<ReportCell>;

/// Rows that a source hands out at once, at most.
inline constexpr std::size_t kReportPortion = 500;

/// The rows of a table from the first to the last, read once.
class IReportSource {
 public:
  virtual ~IReportSource() = default;
  /// The next rows, at most kReportPortion; none at the end. Throws ServerError when they had to
  /// be fetched and were not.
  virtual std::vector<ReportRow> Next() = 0;
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
  std::unique_ptr<IReportSource> source;  ///< null: no rows
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

/// Told how far long work has come; false stops it. `total` is 0 while it is not known.
using ReportProgress = std::function<bool(std::int64_t done, std::int64_t total)>;

/// A column that shows a field, aligned as its kind is.
ReportColumn ColumnOf(const TField& field, std::string_view title, int width);
/// A field in the row at `position`. Where the field makes its own text, the value is what the text
/// says: its number when it is one, else the text.
ReportCell CellOf(const TVosClientDataSet& rows, std::size_t position, const TField& field);
/// The same for a text that somebody else made of a value of that kind.
ReportCell CellOf(std::string text, ValueKind kind);
/// Rows that are there already.
std::unique_ptr<IReportSource> RowsAtHand(std::vector<ReportRow> rows);
/// Fields of all rows of a dataset in the order shown: of those it holds, then of the portions that
/// have not arrived, which are fetched as they are asked for and do not come into the dataset.
std::unique_ptr<IReportSource> RowsOf(TVosClientDataSet& dataSet, std::vector<std::string> fields);

/// Prints a register: the columns its grid shows, all rows, in the order shown, under `caption`
/// (the form's caption when empty). Opens the toolkit's preview.
void GenerateReport(TVosBaseForm& form, ReportKey key, const TVosDBGrid& grid,
                    std::string_view caption = {});

}  // namespace orvane::host
