#include "desktop/reports/report_xlsx.h"

#include <xlsxwriter.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "desktop/qt_text.h"

namespace orvane::desktop {
namespace {

constexpr int kSheetNameLength = 31;
constexpr int kCellCharacters = 32'767;
constexpr int kA4 = 9;
constexpr int kLyingFrom = 95;  // characters of all columns together
constexpr double kLeastWidth = 6;
constexpr double kMostWidth = 80;
constexpr double kDateWidth = 11;
constexpr double kStampWidth = 17;
constexpr lxw_color_t kHeadingGround = 0xEBEEF3;
// Days from the day that a spreadsheet counts as 0 to 1 January 1970; right from 1 March 1900 on,
// since before it a 29 February is counted that was none.
constexpr int kDayZero = 25'569;
constexpr int kFirstRightDay = 61;
constexpr double kMicrosPerDay = 86'400'000'000.0;

/// A double holds any 15 digits.
bool HoldsDigits(Decimal value) {
  constexpr std::int64_t kMost = 999'999'999'999'999;
  std::int64_t mantissa = value.Mantissa();
  for (int scale = value.Scale(); scale > 0 && mantissa % 10 == 0; --scale)
    mantissa /= 10;
  return mantissa <= kMost && mantissa >= -kMost;
}

/// The number a cell holds; empty when the value goes as a text.
std::optional<double> NumberOf(const Variant& value, const TimeZone& zone) {
  if (const double* real = std::get_if<double>(&value.Raw())) return *real;
  const bool whole = std::holds_alternative<std::int64_t>(value.Raw());
  if (whole || std::holds_alternative<Decimal>(value.Raw())) {
    const Decimal decimal = *value.AsDecimal();
    return HoldsDigits(decimal) ? std::optional(decimal.ToDouble()) : std::nullopt;
  }
  double day = 0;
  if (const auto date = value.AsDate())
    day = date->days + kDayZero;
  else if (const auto stamp = value.AsStamp())
    day = static_cast<double>(zone.WallClockOf(*stamp)) / kMicrosPerDay + kDayZero;
  return day >= kFirstRightDay ? std::optional(day) : std::nullopt;
}

std::string PictureOf(const TextFormat& format) {
  switch (format.kind) {
    case ValueKind::Date:
      return "dd.mm.yyyy";
    case ValueKind::Stamp:
      return format.withSeconds ? "dd.mm.yyyy hh:mm:ss" : "dd.mm.yyyy hh:mm";
    case ValueKind::Byte:
    case ValueKind::Int16:
    case ValueKind::Int32:
    case ValueKind::Code:
      return format.grouped ? "#,##0" : "0";
    case ValueKind::Amount:
    case ValueKind::Rate:
    case ValueKind::Double:
      break;
    case ValueKind::Bool:
    case ValueKind::String:
    case ValueKind::Memo:
      return "General";
  }
  if (format.decimals < 0) return "General";
  std::string picture = format.grouped ? "#,##0" : "0";
  if (format.decimals > 0)
    picture.append(".").append(static_cast<std::size_t>(format.decimals), '0');
  return picture;
}

double WidthOf(const ReportColumn& column) {
  double least = kLeastWidth;
  if (column.format.kind == ValueKind::Date) least = kDateWidth;
  if (column.format.kind == ValueKind::Stamp) least = kStampWidth;
  for (const QString& word : Qs(column.title).split(QRegularExpression("[~ ]")))
    least = std::max(least, static_cast<double>(word.size()) + 2);
  return std::min(std::max(column.width + 2.0, least), kMostWidth);
}

int Lying(const ReportTable& table) {
  int width = 0;
  for (const ReportColumn& column : table.columns)
    width += column.width;
  return width > kLyingFrom;
}

std::string Fitting(const std::string& text) {
  const QString whole = Qs(text);
  return whole.size() <= kCellCharacters ? text : Utf8(whole.left(kCellCharacters - 1) + "…");
}

/// Texts of the sheet's margins: an ampersand begins a code there.
std::string MarginText(std::string_view text) {
  return Utf8(Qs(text).replace("&", "&&").left(80));
}

/// One workbook while it is written. The rows of a sheet go to the disk one by one, so that they
/// are written from the top down.
class Workbook {
 public:
  Workbook(const ReportSnapshot& report, const QString& path, const ReportProgress& progress)
      : report_(report), document_(report.Document()), progress_(progress) {
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    book_ = workbook_new_opt(QFile::encodeName(path).constData(), &options);
  }
  ~Workbook() { Close(); }
  Workbook(const Workbook&) = delete;
  Workbook& operator=(const Workbook&) = delete;

  bool Write();

 private:
  struct Sheet {
    lxw_worksheet* sheet = nullptr;
    const ReportTable& table;
    std::vector<lxw_format*> formats = {};
    std::vector<lxw_format*> totalFormats = {};
    std::vector<bool> inexact = {};  ///< numbers that went as texts, which a formula would not add
    lxw_row_t row = 0;
  };

  bool Close();
  lxw_format* MakeFormat(const ReportColumn& column, bool total);
  void WriteHead(lxw_worksheet& sheet);
  bool WriteTable(Sheet sheet, std::size_t table);
  void SetUp(Sheet& sheet);
  void WriteHeading(Sheet& sheet);
  void WriteCell(Sheet& sheet, std::size_t column, const ReportCell& cell);
  void WriteTotals(Sheet& sheet, const ReportRow& totals, lxw_row_t firstRow);

  const ReportSnapshot& report_;
  const ReportDocument& document_;
  const ReportProgress& progress_;
  lxw_workbook* book_ = nullptr;
  bool failed_ = false;
  std::int64_t written_ = 0;
};

bool Workbook::Close() {
  if (book_ == nullptr) return false;
  const bool closed = workbook_close(book_) == LXW_NO_ERROR;
  book_ = nullptr;
  return closed;
}

lxw_format* Workbook::MakeFormat(const ReportColumn& column, bool total) {
  lxw_format* format = workbook_add_format(book_);
  format_set_num_format(format, PictureOf(column.format).c_str());
  const auto align = column.align == Align::Right    ? LXW_ALIGN_RIGHT
                     : column.align == Align::Center ? LXW_ALIGN_CENTER
                                                     : LXW_ALIGN_LEFT;
  format_set_align(format, static_cast<std::uint8_t>(align));
  format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
  if (column.align == Align::Left) format_set_text_wrap(format);
  if (!total) return format;
  format_set_bold(format);
  format_set_top(format, LXW_BORDER_THIN);
  return format;
}

bool Workbook::Write() {
  if (book_ == nullptr) return false;
  lxw_doc_properties properties{};
  std::string title = document_.title, company = document_.company, author = document_.printedBy;
  properties.title = title.data();
  properties.company = company.data();
  properties.author = author.data();
  workbook_set_properties(book_, &properties);
  const bool hasHead = !document_.facts.empty() || !document_.number.empty();
  std::vector<std::string> captions;
  if (hasHead) captions.push_back(document_.title);
  for (const ReportTable& table : document_.tables)
    captions.push_back(table.caption.empty() ? document_.title : table.caption);
  const std::vector<std::string> names = SheetNames(captions);
  std::size_t next = 0;
  if (hasHead) WriteHead(*workbook_add_worksheet(book_, names[next++].c_str()));
  for (std::size_t table = 0; table < document_.tables.size(); ++table) {
    lxw_worksheet* sheet = workbook_add_worksheet(book_, names[next++].c_str());
    if (sheet == nullptr || !WriteTable({sheet, document_.tables[table]}, table)) return false;
  }
  return Close() && !failed_;
}

void Workbook::WriteHead(lxw_worksheet& sheet) {
  constexpr double kLabels = 28, kValues = 60;
  lxw_format* strong = workbook_add_format(book_);
  format_set_bold(strong);
  lxw_format* wrapped = workbook_add_format(book_);
  format_set_text_wrap(wrapped);
  format_set_align(wrapped, LXW_ALIGN_VERTICAL_TOP);
  worksheet_set_column(&sheet, 0, 0, kLabels, nullptr);
  worksheet_set_column(&sheet, 1, 1, kValues, nullptr);
  lxw_row_t row = 0;
  const auto put = [&](const std::string& label, const std::string& value, lxw_format* format) {
    worksheet_write_string(&sheet, row, 0, Fitting(label).c_str(), format);
    worksheet_write_string(&sheet, row++, 1, Fitting(value).c_str(), wrapped);
  };
  put(document_.company, "", strong);
  put(document_.title, document_.number.empty() ? "" : "№ " + document_.number, strong);
  for (const ReportFact& fact : document_.facts)
    put(fact.label, fact.value, nullptr);
  for (const std::string& line : document_.footLines)
    put(line, "", nullptr);
  put("Отпечатал", document_.printedBy + ", " + document_.printedOn, nullptr);
}

void Workbook::SetUp(Sheet& sheet) {
  for (std::size_t i = 0; i < sheet.table.columns.size(); ++i) {
    const ReportColumn& column = sheet.table.columns[i];
    sheet.formats.push_back(MakeFormat(column, false));
    sheet.totalFormats.push_back(MakeFormat(column, true));
    sheet.inexact.push_back(false);
    const auto at = static_cast<lxw_col_t>(i);
    worksheet_set_column(sheet.sheet, at, at, WidthOf(column), nullptr);
  }
  worksheet_set_paper(sheet.sheet, kA4);
  if (Lying(sheet.table)) worksheet_set_landscape(sheet.sheet);
  worksheet_fit_to_pages(sheet.sheet, 1, 0);
  const std::string head =
      "&L" + MarginText(document_.company) + "&R" + MarginText(document_.title);
  const std::string foot =
      "&L" + MarginText(document_.printedBy) + ", " + document_.printedOn + "&RСтраница &P от &N";
  worksheet_set_header(sheet.sheet, head.c_str());
  worksheet_set_footer(sheet.sheet, foot.c_str());
}

void Workbook::WriteHeading(Sheet& sheet) {
  lxw_format* heading = workbook_add_format(book_);
  format_set_bold(heading);
  format_set_text_wrap(heading);
  format_set_align(heading, LXW_ALIGN_CENTER);
  format_set_align(heading, LXW_ALIGN_VERTICAL_CENTER);
  format_set_border(heading, LXW_BORDER_THIN);
  format_set_bg_color(heading, kHeadingGround);
  const std::vector<ReportColumn>& columns = sheet.table.columns;
  const bool grouped = std::ranges::any_of(
      columns, [](const ReportColumn& column) { return !column.group.empty(); });
  for (std::size_t i = 0; grouped && i < columns.size();) {
    std::size_t end = i + 1;
    while (end < columns.size() && columns[end].group == columns[i].group)
      ++end;
    const auto first = static_cast<lxw_col_t>(i), last = static_cast<lxw_col_t>(end - 1);
    const std::string& group = columns[i].group;
    if (!group.empty() && last > first)
      worksheet_merge_range(sheet.sheet, 0, first, 0, last, group.c_str(), heading);
    else if (!group.empty())
      worksheet_write_string(sheet.sheet, 0, first, group.c_str(), heading);
    i = end;
  }
  sheet.row = grouped ? 1 : 0;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string title = Utf8(Qs(columns[i].title).replace('~', '\n'));
    worksheet_write_string(sheet.sheet, sheet.row, static_cast<lxw_col_t>(i), title.c_str(),
                           heading);
  }
  worksheet_repeat_rows(sheet.sheet, 0, sheet.row);
  ++sheet.row;
  worksheet_freeze_panes(sheet.sheet, sheet.row, 0);
}

void Workbook::WriteCell(Sheet& sheet, std::size_t column, const ReportCell& cell) {
  if (cell.text.empty()) return;
  const ReportColumn& shown = sheet.table.columns[column];
  const auto at = static_cast<lxw_col_t>(column);
  const auto number = NumberOf(cell.value, shown.format.zone);
  lxw_error error = LXW_NO_ERROR;
  if (number) {
    error = worksheet_write_number(sheet.sheet, sheet.row, at, *number, sheet.formats[column]);
  } else {
    if (cell.value.AsString() == nullptr) sheet.inexact[column] = true;
    error = worksheet_write_string(sheet.sheet, sheet.row, at, Fitting(cell.text).c_str(),
                                   sheet.formats[column]);
  }
  failed_ = failed_ || error != LXW_NO_ERROR;
}

void Workbook::WriteTotals(Sheet& sheet, const ReportRow& totals, lxw_row_t firstRow) {
  const bool anyRow = sheet.row > firstRow;
  const lxw_row_t last = sheet.row - 1;
  sheet.formats = sheet.totalFormats;
  for (std::size_t i = 0; i < totals.size(); ++i) {
    const auto at = static_cast<lxw_col_t>(i);
    const auto number = NumberOf(totals[i].value, {});
    if (!number || !anyRow || sheet.inexact[i]) {
      WriteCell(sheet, i, totals[i]);
      continue;
    }
    char range[LXW_MAX_CELL_RANGE_LENGTH];
    lxw_rowcol_to_range(range, firstRow, at, last, at);
    const std::string formula = std::string("=SUM(").append(range).append(")");
    worksheet_write_formula_num(sheet.sheet, sheet.row, at, formula.c_str(), sheet.formats[i],
                                *number);
  }
}

bool Workbook::WriteTable(Sheet sheet, std::size_t table) {
  SetUp(sheet);
  WriteHeading(sheet);
  const lxw_row_t firstRow = sheet.row;
  ReportSnapshot::Reader reader(report_, table);
  while (reader.HasNext()) {
    const ReportRow row = reader.Next();
    if (row.size() != sheet.table.columns.size()) return false;
    for (std::size_t i = 0; i < row.size(); ++i)
      WriteCell(sheet, i, row[i]);
    ++sheet.row;
    const bool asked = ++written_ % static_cast<std::int64_t>(kReportPortion) == 0;
    if (failed_ || (asked && progress_ && !progress_(written_, report_.RowCount()))) return false;
  }
  const auto lastColumn = static_cast<lxw_col_t>(sheet.table.columns.size() - 1);
  if (sheet.row > firstRow)
    worksheet_autofilter(sheet.sheet, firstRow - 1, 0, sheet.row - 1, lastColumn);
  WriteTotals(sheet, report_.Totals(table), firstRow);
  return !failed_;
}

}  // namespace

std::vector<std::string> SheetNames(const std::vector<std::string>& captions) {
  QStringList names;
  for (const std::string& caption : captions) {
    QString name = Qs(caption);
    for (QChar& c : name) {
      if (QString("[]:*?/\\'~\n\r\t").contains(c)) c = ' ';
    }
    name = name.simplified().left(kSheetNameLength).trimmed();
    if (name.isEmpty()) name = "Справка";
    QString distinct = name;
    for (int copy = 2; names.contains(distinct, Qt::CaseInsensitive); ++copy) {
      const QString suffix = QString(" (%1)").arg(copy);
      distinct = name.left(kSheetNameLength - static_cast<int>(suffix.size())) + suffix;
    }
    names.push_back(distinct);
  }
  std::vector<std::string> found;
  for (const QString& name : names)
    found.push_back(Utf8(name));
  return found;
}

bool WriteXlsx(const ReportSnapshot& report, const QString& path, const ReportProgress& progress) {
  return Workbook(report, path, progress).Write();
}

}  // namespace orvane::desktop
