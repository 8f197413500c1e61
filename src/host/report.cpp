#include "host/report.h"

#include <algorithm>
#include <utility>

#include "data/connection_scope.h"
#include "host/controls/grid.h"
#include "host/form.h"

namespace orvane::host {
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

class HeldRows final : public IReportSource {
 public:
  explicit HeldRows(std::vector<ReportRow> rows) : rows_(std::move(rows)) {}

  std::vector<ReportRow> Next() override {
    const auto from = rows_.begin() + static_cast<std::ptrdiff_t>(next_);
    const std::size_t count = std::min(kReportPortion, rows_.size() - next_);
    next_ += count;
    return {from, from + static_cast<std::ptrdiff_t>(count)};
  }

 private:
  std::vector<ReportRow> rows_;
  std::size_t next_ = 0;
};

class DataSetRows final : public IReportSource {
 public:
  DataSetRows(TVosClientDataSet& dataSet, std::vector<std::string> fields)
      : dataSet_(dataSet), fields_(std::move(fields)) {
    // Rows in an order of the screen's own, or with texts made from their place on it, must stand
    // on it first.
    while (dataSet_.HasMore() && (dataSet_.HasIndex() || HasRowTexts()))
      dataSet_.FetchMore();
    continuation_ = dataSet_.Continuation();
  }

  std::vector<ReportRow> Next() override {
    if (next_ < dataSet_.RecordCount()) {
      const std::size_t from = next_;
      next_ = std::min(next_ + kReportPortion, dataSet_.RecordCount());
      return Read(dataSet_, from, next_);
    }
    std::vector<ReportRow> rows;
    while (rows.empty() && !continuation_.empty())
      rows = FetchPortion();
    return rows;
  }

 private:
  bool HasRowTexts() const {
    return std::ranges::any_of(fields_, [this](const std::string& name) {
      return dataSet_.FieldByName(name).OnGetRowText != nullptr;
    });
  }

  std::vector<ReportRow> Read(const TVosClientDataSet& from, std::size_t begin,
                              std::size_t end) const {
    std::vector<const TField*> fields;
    for (const std::string& name : fields_)
      fields.push_back(&from.FieldByName(name));
    std::vector<ReportRow> rows;
    for (std::size_t row = begin; row < end; ++row) {
      ReportRow& cells = rows.emplace_back();
      for (const TField* field : fields)
        cells.push_back(CellOf(from, row, *field));
    }
    return rows;
  }

  std::vector<ReportRow> FetchPortion() {
    if (twin_ == nullptr) twin_ = dataSet_.EmptyTwin();
    const ConnectionScope scope(dataSet_.Connection());
    DataPacket packet =
        dataSet_.FetchPortion(static_cast<std::int32_t>(kReportPortion), continuation_);
    continuation_ = packet.continuation;
    twin_->LoadPacket(std::move(packet));
    return Read(*twin_, 0, twin_->RecordCount());
  }

  TVosClientDataSet& dataSet_;
  const std::vector<std::string> fields_;
  std::size_t next_ = 0;
  std::string continuation_;
  std::unique_ptr<TVosClientDataSet> twin_;
};

}  // namespace

ReportColumn ColumnOf(const TField& field, std::string_view title, int width) {
  ReportColumn column;
  column.title = title;
  column.width = width;
  column.align = AlignOf(field.Def().kind);
  column.format = field.Format;
  return column;
}

ReportCell CellOf(const TVosClientDataSet& rows, std::size_t position, const TField& field) {
  std::string text = rows.TextAt(position, field);
  if (field.OnGetText || field.OnGetRowText) return CellOf(std::move(text), field.Def().kind);
  return {rows.ValueAt(position, field), std::move(text)};
}

ReportCell CellOf(std::string text, ValueKind kind) {
  if (text.empty()) return {};
  Variant value{std::string_view(text)};
  const bool numeric = AlignOf(kind) == Align::Right;
  if (const auto number = numeric ? Decimal::Parse(text) : std::nullopt) value = *number;
  return {std::move(value), std::move(text)};
}

std::unique_ptr<IReportSource> RowsAtHand(std::vector<ReportRow> rows) {
  return std::make_unique<HeldRows>(std::move(rows));
}

std::unique_ptr<IReportSource> RowsOf(TVosClientDataSet& dataSet, std::vector<std::string> fields) {
  return std::make_unique<DataSetRows>(dataSet, std::move(fields));
}

void GenerateReport(TVosBaseForm& form, ReportKey key, const TVosDBGrid& grid,
                    std::string_view caption) {
  const VosApplication& app = form.App();
  const SessionInfo& info = app.Info();
  ReportDocument report;
  report.key = key;
  report.company = info.companyName;
  report.title = caption.empty() ? form.caption : std::string(caption);
  report.printedBy =
      form.FirstLanguage() || info.userName2.empty() ? info.userName : info.userName2;
  report.printedOn = info.zone.ToText(app.Now());
  ReportTable& table = report.tables.emplace_back();
  std::vector<std::string> fields;
  for (const GridColumn& shown : grid.columns) {
    ReportColumn& column = table.columns.emplace_back(
        ColumnOf(grid.DataSet().FieldByName(shown.field), shown.title, shown.width));
    column.group = shown.group;
    column.summed = shown.summed;
    fields.push_back(shown.field);
  }
  table.source = RowsOf(grid.DataSet(), std::move(fields));
  app.Toolkit().PreviewReport(form, std::move(report));
}

}  // namespace orvane::host
