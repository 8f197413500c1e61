#pragma once

// A report whose rows are made as they are asked for, with every kind of value that a table holds;
// counts what is handed out and what the program holds meanwhile.

#include <malloc.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "host/report_snapshot.h"

namespace orvane::host::fakes {

/// Bytes that the program has taken from the heap.
inline std::int64_t HeldBytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
}

/// While it lives, no file takes more than so many bytes: a disk that is full.
class SmallFiles {
 public:
  explicit SmallFiles(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
  }
  ~SmallFiles() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  SmallFiles(const SmallFiles&) = delete;
  SmallFiles& operator=(const SmallFiles&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int) = nullptr;
};

inline constexpr std::int64_t kLongCode = 1'234'567'890'123'456'789;

inline std::vector<ReportColumn> ManyKinds() {
  const auto column = [](std::string title, ValueKind kind, Align align, int width) {
    ReportColumn made;
    made.title = std::move(title);
    made.align = align;
    made.width = width;
    made.format.kind = kind;
    return made;
  };
  std::vector<ReportColumn> columns = {
      column("Номер~на ред", ValueKind::Int32, Align::Right, 6),
      column("Код", ValueKind::Code, Align::Right, 20),
      column("Име", ValueKind::String, Align::Left, 30),
      column("Сума", ValueKind::Amount, Align::Right, 14),
      column("Дата", ValueKind::Date, Align::Center, 10),
      column("Променен на", ValueKind::Stamp, Align::Center, 16),
  };
  columns[1].group = columns[2].group = "Материал";
  columns[3].format.decimals = 2;
  columns[3].format.grouped = true;
  columns[3].summed = true;
  return columns;
}

/// Row `number` of the report, from 1.
inline ReportRow ManyKindsRow(std::int64_t number) {
  static const std::vector<ReportColumn> columns = ManyKinds();
  const std::vector<Variant> values = {
      number,
      number % 2 == 0 ? number : kLongCode,
      "Ламарина " + std::to_string(number),
      Decimal(1'234'500'000, 4),
      Date{20'517},                  // 05.03.2026
      Stamp{1'772'694'000'000'000},  // 05.03.2026 09:00 in Sofia
  };
  ReportRow row;
  for (std::size_t i = 0; i < values.size(); ++i)
    row.push_back({values[i], FormatValue(values[i], columns[i].format)});
  return row;
}

struct SourceCounts {
  std::int64_t handedOut = 0;
  std::size_t largestPortion = 0;
  std::int64_t mostHeld = 0;  ///< bytes of the heap, seen when rows were asked for
};

class MadeRows final : public IReportSource {
 public:
  MadeRows(std::int64_t count, SourceCounts& counts) : count_(count), counts_(counts) {}

  std::vector<ReportRow> Next() override {
    counts_.mostHeld = std::max(counts_.mostHeld, HeldBytes());
    std::vector<ReportRow> rows;
    while (rows.size() < kReportPortion && counts_.handedOut < count_)
      rows.push_back(ManyKindsRow(++counts_.handedOut));
    counts_.largestPortion = std::max(counts_.largestPortion, rows.size());
    return rows;
  }

 private:
  std::int64_t count_;
  SourceCounts& counts_;
};

inline ReportDocument ListOf(std::int64_t rows, SourceCounts& counts) {
  ReportDocument report;
  report.company = "Демонстрационно дружество";
  report.title = "Материали";
  report.printedBy = "Мария Иванова";
  report.printedOn = "05.03.2026 09:00";
  report.tables.push_back({"", ManyKinds(), std::make_unique<MadeRows>(rows, counts)});
  return report;
}

/// Rows of texts.
inline std::unique_ptr<IReportSource> TextRows(const std::vector<std::vector<std::string>>& texts) {
  std::vector<ReportRow> rows;
  for (const std::vector<std::string>& line : texts) {
    ReportRow& row = rows.emplace_back();
    for (const std::string& text : line)
      row.push_back({text, text});
  }
  return RowsAtHand(std::move(rows));
}

/// A table of a report as it stands on paper, without its sums.
inline std::vector<std::vector<std::string>> TextsOf(const ReportSnapshot& report,
                                                     std::size_t table = 0) {
  std::vector<std::vector<std::string>> texts;
  ReportSnapshot::Reader reader(report, table);
  while (reader.HasNext()) {
    std::vector<std::string>& line = texts.emplace_back();
    for (const ReportCell& cell : reader.Next())
      line.push_back(cell.text);
  }
  return texts;
}

}  // namespace orvane::host::fakes
