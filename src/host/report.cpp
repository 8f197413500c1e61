#include "host/report.h"

#include "host/form.h"
#include "host/grid.h"

namespace orvane {
namespace {

Align AlignOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::Bool:
    case ValueKind::Date:
    case ValueKind::Stamp:
      return Align::Center;
    case ValueKind::String:
    case ValueKind::Memo:
      return Align::Left;
    default:
      return Align::Right;
  }
}

ReportTable TableOf(const TVosDBGrid& grid) {
  TVosClientDataSet& dataSet = grid.DataSet();
  ReportTable table;
  std::vector<const TField*> fields;
  for (const GridColumn& column : grid.columns) {
    const TField& field = dataSet.FieldByName(column.field);
    fields.push_back(&field);
    table.columns.push_back({.title = column.title,
                             .group = column.group,
                             .width = column.width,
                             .align = AlignOf(field.Def().kind),
                             .kind = field.Def().kind});
  }
  for (std::size_t row = 0; row < dataSet.RecordCount(); ++row) {
    std::vector<std::string>& texts = table.rows.emplace_back();
    for (const TField* field : fields)
      texts.push_back(dataSet.TextAt(row, *field));
  }
  return table;
}

}  // namespace

void GenerateReport(TVosBaseForm& form, ReportKey key, const TVosDBGrid& grid,
                    std::string_view caption) {
  while (grid.DataSet().HasMore())
    grid.DataSet().FetchMore();
  const VosApplication& app = form.App();
  const SessionInfo& info = app.Info();
  ReportDocument report;
  report.key = key;
  report.company = info.companyName;
  report.title = caption.empty() ? form.caption : std::string(caption);
  report.printedBy =
      form.FirstLanguage() || info.userName2.empty() ? info.userName : info.userName2;
  report.printedOn = info.zone.ToText(app.Now());
  report.tables.push_back(TableOf(grid));
  app.Toolkit().PreviewReport(form, report);
}

}  // namespace orvane
