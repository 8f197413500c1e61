#include "host/report_snapshot.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <optional>
#include <type_traits>
#include <utility>

namespace orvane::host {
namespace {

// A row in the file: its length in bytes, then its cells. A cell: a tag, the value, and its text
// where that is not what the column's format makes of the value.
using Length = std::uint32_t;
constexpr std::size_t kBufferBytes = 32 * 1024;

enum Tag : unsigned char { kNull, kBool, kInteger, kReal, kDecimal, kDay, kMoment, kText };
constexpr unsigned char kOwnText = 0x80;

template <class T>
void Put(std::string& bytes, T value) {
  static_assert(std::is_trivially_copyable_v<T>);
  char raw[sizeof value];
  std::memcpy(raw, &value, sizeof value);
  bytes.append(raw, sizeof value);
}

void PutText(std::string& bytes, std::string_view text) {
  Put(bytes, static_cast<Length>(text.size()));
  bytes += text;
}

/// Takes values off the front of bytes that PutCell made.
class Parts {
 public:
  explicit Parts(std::string_view bytes) : bytes_(bytes) {}

  template <class T>
  T Take() {
    T value{};
    std::memcpy(&value, bytes_.data(), sizeof value);
    bytes_.remove_prefix(sizeof value);
    return value;
  }
  std::string_view TakeText() {
    const auto length = Take<Length>();
    const std::string_view text = bytes_.substr(0, length);
    bytes_.remove_prefix(length);
    return text;
  }

 private:
  std::string_view bytes_;
};

Tag TagOf(const Variant& value) {
  struct Tags {
    Tag operator()(std::monostate) const { return kNull; }
    Tag operator()(bool) const { return kBool; }
    Tag operator()(std::int64_t) const { return kInteger; }
    Tag operator()(double) const { return kReal; }
    Tag operator()(const Decimal&) const { return kDecimal; }
    Tag operator()(const Date&) const { return kDay; }
    Tag operator()(const Stamp&) const { return kMoment; }
    Tag operator()(const std::string&) const { return kText; }
    Tag operator()(const std::shared_ptr<const DataPacket>&) const { return kNull; }
    Tag operator()(const std::shared_ptr<const VariantArray>&) const { return kNull; }
  };
  return std::visit(Tags{}, value.Raw());
}

void PutValue(std::string& bytes, Tag tag, const Variant& value) {
  switch (tag) {
    case kNull:
      break;
    case kBool:
      return Put(bytes, *std::get_if<bool>(&value.Raw()));
    case kInteger:
      return Put(bytes, *std::get_if<std::int64_t>(&value.Raw()));
    case kReal:
      return Put(bytes, *std::get_if<double>(&value.Raw()));
    case kDecimal: {
      const Decimal& decimal = *std::get_if<Decimal>(&value.Raw());
      Put(bytes, decimal.Mantissa());
      return Put(bytes, static_cast<std::int8_t>(decimal.Scale()));
    }
    case kDay:
      return Put(bytes, std::get_if<Date>(&value.Raw())->days);
    case kMoment:
      return Put(bytes, std::get_if<Stamp>(&value.Raw())->micros);
    case kText:
      return PutText(bytes, *value.AsString());
  }
}

Variant TakeValue(Parts& parts, Tag tag) {
  switch (tag) {
    case kNull:
      break;
    case kBool:
      return parts.Take<bool>();
    case kInteger:
      return parts.Take<std::int64_t>();
    case kReal:
      return parts.Take<double>();
    case kDecimal: {
      const auto mantissa = parts.Take<std::int64_t>();
      return Decimal(mantissa, parts.Take<std::int8_t>());
    }
    case kDay:
      return Date{parts.Take<std::int32_t>()};
    case kMoment:
      return Stamp{parts.Take<std::int64_t>()};
    case kText:
      return parts.TakeText();
  }
  return {};
}

void PutCell(std::string& bytes, const ReportCell& cell, const TextFormat& format) {
  const Tag tag = TagOf(cell.value);
  const bool own = cell.text != FormatValue(cell.value, format);
  bytes += static_cast<char>(own ? tag | kOwnText : tag);
  PutValue(bytes, tag, cell.value);
  if (own) PutText(bytes, cell.text);
}

ReportCell TakeCell(Parts& parts, const TextFormat& format) {
  const auto tag = parts.Take<unsigned char>();
  ReportCell cell;
  cell.value = TakeValue(parts, static_cast<Tag>(tag & ~kOwnText));
  cell.text =
      (tag & kOwnText) != 0 ? std::string(parts.TakeText()) : FormatValue(cell.value, format);
  return cell;
}

/// The sums of the columns that are summed, while rows go by.
class Sums {
 public:
  explicit Sums(const std::vector<ReportColumn>& columns) : columns_(columns) {
    for (const ReportColumn& column : columns)
      sums_.push_back(column.summed ? std::optional<Decimal>(Decimal()) : std::nullopt);
  }

  void Add(const ReportRow& row) {
    for (std::size_t i = 0; i < sums_.size(); ++i) {
      const auto value = sums_[i] ? row[i].value.AsDecimal() : std::nullopt;
      if (value) sums_[i] = sums_[i]->Plus(*value);
    }
  }

  ReportRow Row() const {
    if (std::ranges::none_of(columns_, &ReportColumn::summed)) return {};
    ReportRow row(columns_.size());
    std::size_t widest = columns_.size();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (sums_[i]) row[i] = {*sums_[i], FormatValue(*sums_[i], columns_[i].format)};
      if (columns_[i].summed) continue;
      if (widest == columns_.size() || columns_[i].width > columns_[widest].width) widest = i;
    }
    if (widest < columns_.size()) row[widest] = {"Общо", "Общо"};
    return row;
  }

 private:
  const std::vector<ReportColumn>& columns_;
  std::vector<std::optional<Decimal>> sums_;
};

}  // namespace

// --- taking
// ---------------------------------------------------------------------------------------

Answer<TakenReport> ReportSnapshot::Take(ReportDocument document, const ReportProgress& progress) {
  const Failure noRoom{FailureKind::Refused,
                       "Няма място на диска за редовете на справката. Освободете място и опитайте "
                       "отново."};
  auto snapshot = std::make_shared<ReportSnapshot>();
  snapshot->document_ = std::move(document);
  snapshot->file_.reset(std::tmpfile());
  if (snapshot->file_ == nullptr) return noRoom;
  for (ReportTable& table : snapshot->document_.tables) {
    const bool whole = snapshot->TakeTable(table, progress);
    if (snapshot->full_) return noRoom;
    if (!whole) return Failure{FailureKind::Refused, "Справката е спряна."};
  }
  if (std::fflush(snapshot->file_.get()) != 0) return noRoom;
  return TakenReport(std::move(snapshot));
}

bool ReportSnapshot::TakeTable(ReportTable& table, const ReportProgress& progress) {
  TableRows& taken = tables_.emplace_back();
  taken.begin = written_;
  Sums sums(table.columns);
  while (table.source != nullptr) {
    const std::vector<ReportRow> rows = table.source->Next();
    if (rows.empty()) break;
    std::string bytes;
    for (const ReportRow& row : rows) {
      const std::size_t start = bytes.size();
      Put(bytes, Length{0});
      for (std::size_t i = 0; i < table.columns.size(); ++i)
        PutCell(bytes, row[i], table.columns[i].format);
      const auto length = static_cast<Length>(bytes.size() - start - sizeof(Length));
      std::memcpy(bytes.data() + start, &length, sizeof length);
      sums.Add(row);
    }
    taken.rows += static_cast<std::int64_t>(rows.size());
    if (!Write(bytes)) return false;
    if (progress && !progress(RowCount(), 0)) return false;
  }
  table.source.reset();
  taken.totals = sums.Row();
  return true;
}

bool ReportSnapshot::Write(const std::string& bytes) {
  full_ = std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size();
  written_ += static_cast<std::int64_t>(bytes.size());
  return !full_;
}

std::int64_t ReportSnapshot::RowCount() const {
  return std::accumulate(tables_.begin(), tables_.end(), std::int64_t{0},
                         [](std::int64_t sum, const TableRows& table) { return sum + table.rows; });
}

// --- reading
// --------------------------------------------------------------------------------------

ReportSnapshot::Reader::Reader(const ReportSnapshot& snapshot, std::size_t table)
    : Reader(snapshot, table, {0, snapshot.tables_[table].begin}) {}

ReportSnapshot::Reader::Reader(const ReportSnapshot& snapshot, std::size_t table, Mark from)
    : snapshot_(snapshot), table_(table), at_(from), bufferStart_(from.offset) {}

bool ReportSnapshot::Reader::HasNext() const {
  return at_.row < snapshot_.tables_[table_].rows;
}

std::string_view ReportSnapshot::Reader::Bytes(std::size_t count) {
  const auto from = static_cast<std::size_t>(at_.offset - bufferStart_);
  if (from + count <= buffer_.size()) return std::string_view(buffer_).substr(from, count);
  std::FILE* file = snapshot_.file_.get();
  buffer_.resize(std::max(count, kBufferBytes));
  bufferStart_ = at_.offset;
  const bool there = std::fseek(file, static_cast<long>(at_.offset), SEEK_SET) == 0;
  buffer_.resize(there ? std::fread(buffer_.data(), 1, buffer_.size(), file) : 0);
  return std::string_view(buffer_).substr(0, count);
}

ReportRow ReportSnapshot::Reader::Next() {
  ++at_.row;
  const std::string_view head = Bytes(sizeof(Length));
  if (head.size() < sizeof(Length)) return {};
  const std::size_t whole = sizeof(Length) + Parts(head).Take<Length>();
  const std::string_view bytes = Bytes(whole);
  if (bytes.size() < whole) return {};
  at_.offset += static_cast<std::int64_t>(whole);
  Parts parts(bytes.substr(sizeof(Length)));
  ReportRow row;
  for (const ReportColumn& column : snapshot_.document_.tables[table_].columns)
    row.push_back(TakeCell(parts, column.format));
  return row;
}

}  // namespace orvane::host
