#include "desktop/reports/report_csv.h"

#include <algorithm>

namespace orvane::desktop {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kFormulaBeginnings = "=+-@\t\r";

std::string Quoted(std::string_view text) {
  const bool plain = text.find_first_of(";\"\r\n") == std::string_view::npos &&
                     !text.starts_with(' ') && !text.ends_with(' ');
  if (plain) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string TextField(std::string_view text) {
  const bool formula = !text.empty() && kFormulaBeginnings.find(text[0]) != std::string_view::npos;
  return Quoted(formula ? "'" + std::string(text) : std::string(text));
}

std::string Field(const ReportCell& cell, const ReportColumn& column) {
  const Variant& value = cell.value;
  const bool text = value.AsString() != nullptr || value.IsNull();
  if (text) return TextField(cell.text);
  TextFormat plain = column.format;
  plain.grouped = false;
  return Quoted(FormatValue(value, plain));
}

std::string Title(const ReportColumn& column) {
  std::string title = column.group.empty() ? column.title : column.group + " " + column.title;
  std::ranges::replace(title, '~', ' ');
  return TextField(title);
}

std::string Line(const ReportRow& row, const std::vector<ReportColumn>& columns) {
  std::string line;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) line += ';';
    if (i < row.size()) line += Field(row[i], columns[i]);
  }
  return line.append(kLineEnd);
}

std::string HeadLines(const ReportDocument& document) {
  if (document.facts.empty() && document.number.empty()) return {};
  std::string lines = TextField(document.title);
  if (!document.number.empty()) lines += ";" + TextField(document.number);
  lines += kLineEnd;
  for (const ReportFact& fact : document.facts)
    lines += TextField(fact.label) + ";" + TextField(fact.value) + std::string(kLineEnd);
  return lines.append(kLineEnd);
}

std::string HeadingLines(const ReportTable& table) {
  std::string lines;
  if (!table.caption.empty()) lines = TextField(table.caption) + std::string(kLineEnd);
  for (std::size_t i = 0; i < table.columns.size(); ++i)
    lines += (i == 0 ? "" : ";") + Title(table.columns[i]);
  return lines.append(kLineEnd);
}

}  // namespace

bool WriteCsv(const ReportSnapshot& report, const std::function<bool(std::string_view)>& sink,
              const ReportProgress& progress) {
  const ReportDocument& document = report.Document();
  if (!sink(std::string(kMark) + HeadLines(document))) return false;
  std::int64_t written = 0;
  for (std::size_t i = 0; i < document.tables.size(); ++i) {
    const ReportTable& table = document.tables[i];
    std::string lines = i == 0 ? std::string() : std::string(kLineEnd);
    lines += HeadingLines(table);
    ReportSnapshot::Reader reader(report, i);
    while (reader.HasNext()) {
      const ReportRow row = reader.Next();
      if (row.empty() && !table.columns.empty()) return false;
      lines += Line(row, table.columns);
      if (++written % static_cast<std::int64_t>(kReportPortion) != 0) continue;
      if (progress && !progress(written, report.RowCount())) return false;
      if (!sink(lines)) return false;
      lines.clear();
    }
    if (!report.Totals(i).empty()) lines += Line(report.Totals(i), table.columns);
    if (!sink(lines)) return false;
  }
  std::string foot;
  for (const std::string& line : document.footLines)
    foot += TextField(line) + std::string(kLineEnd);
  return foot.empty() || sink(std::string(kLineEnd) + foot);
}

}  // namespace orvane::desktop
