// Reports on paper: nothing lost between pages, headings repeated, sums under their columns.

#include "desktop/reports/report_pages.h"

#include <gtest/gtest.h>

#include <numeric>

#include "desktop/reports/barcode.h"
#include "host/report_fakes.h"

namespace orvane::desktop {
namespace {

using Part = ReportPages::Part;

TakenReport SampleReport(int rows, int nameWidth = 30) {
  ReportDocument report;
  report.company = "Демонстрационно дружество";
  report.title = "Искане за покупка";
  report.number = "2417";
  report.printedBy = "Мария Иванова";
  report.printedOn = "05.03.2026 09:00";
  report.facts = {{"Дата на документ", "05.03.2026"}, {"Доставчик", "20117 Стил Трейд ООД"}};
  ReportTable table;
  table.caption = "Материали и услуги";
  const auto column = [&table](std::string title, std::string group, int width, Align align) {
    ReportColumn& added = table.columns.emplace_back();
    added.title = std::move(title);
    added.group = std::move(group);
    added.width = width;
    added.align = align;
  };
  column("Номер~на ред", "", 6, Align::Right);
  column("Име", "Материал", nameWidth, Align::Left);
  column("Мярка", "Материал", 8, Align::Left);
  column("Количество", "", 12, Align::Right);
  table.columns.back().summed = true;
  std::vector<ReportRow> made;
  for (int i = 1; i <= rows; ++i) {
    const std::string name = i % 5 == 0 ? "Много дълго име на материал, което не се събира на един "
                                          "ред и се пренася на следващия"
                                        : "Ламарина";
    made.push_back({CellOf(std::to_string(i), ValueKind::Int32), CellOf(name, ValueKind::String),
                    CellOf("кг", ValueKind::String), CellOf("1 250,5", ValueKind::Double)});
  }
  table.source = RowsAtHand(std::move(made));
  report.tables.push_back(std::move(table));
  report.footLines = {"Одобрил: Георги Петров, 06.03.2026 10:15"};
  return *ReportSnapshot::Take(std::move(report));
}

std::unique_ptr<const ReportPages> PagesOf(TakenReport report) {
  return ReportPages::Plan(std::move(report));
}

TEST(DesktopReport, EveryRowStandsOnceUnderAHeading) {
  for (const int rows : {0, 1, 30, 35, 36, 37, 400}) {
    const auto planned = PagesOf(SampleReport(rows));
    const ReportPages& pages = *planned;
    int next = 0;
    int totals = 0;
    for (int page = 0; page < pages.Count(); ++page) {
      bool heading = false;
      int bottom = 0;
      for (const ReportPages::Placed& at : pages.PartsOf(page)) {
        EXPECT_GE(at.top, bottom) << "page " << page << " of " << rows;
        bottom = at.top + at.height;
        heading = heading || at.part == Part::Heading;
        if (at.part == Part::Row) {
          EXPECT_EQ(at.row, next++);
          EXPECT_EQ(at.cells[0].text, std::to_string(next));
        }
        if (at.part == Part::Totals) ++totals;
        if (at.part == Part::Row || at.part == Part::Totals) {
          EXPECT_TRUE(heading) << page;
        }
      }
      EXPECT_LE(bottom, pages.PageSize().height() - 400);
      EXPECT_FALSE(pages.PartsOf(page).empty());
    }
    EXPECT_EQ(next, rows);
    EXPECT_EQ(totals, 1);
  }
}

TEST(DesktopReport, TooManyColumnsTurnThePage) {
  EXPECT_FALSE(PagesOf(SampleReport(3, 30))->IsLying());
  EXPECT_TRUE(PagesOf(SampleReport(3, 120))->IsLying());
}

TEST(DesktopReport, PagesKeepWhereTheyBeginAndNoRows) {
  constexpr std::int64_t kRows = 20'000;
  constexpr std::int64_t kBytesOfAPage = 200;
  fakes::SourceCounts counts;
  const TakenReport report = *ReportSnapshot::Take(fakes::ListOf(kRows, counts));
  (void)PagesOf(SampleReport(40));  // the letters are measured once
  const std::int64_t before = fakes::HeldBytes();
  const auto pages = PagesOf(report);
  EXPECT_LT(fakes::HeldBytes() - before, pages->Count() * kBytesOfAPage + 10'000);
  const auto last = pages->PartsOf(pages->Count() - 1);
  EXPECT_EQ(last.back().part, Part::Totals);
  EXPECT_EQ(last.back().cells[3].text, "2\u2009469\u2009000\u2009000,00");
  EXPECT_EQ(last[last.size() - 2].row, kRows - 1);
}

TEST(DesktopReport, PlanningIsStoppedBetweenPages) {
  int asked = 0;
  const auto pages = ReportPages::Plan(SampleReport(400), [&asked](std::int64_t, std::int64_t all) {
    EXPECT_EQ(all, 400);
    return ++asked < 3;
  });
  EXPECT_EQ(pages, nullptr);
  EXPECT_EQ(asked, 3);
}

TEST(DesktopReport, BarcodeSymbolsAreElevenModulesWide) {
  constexpr int kSymbol = 11;
  constexpr int kStop = 13;
  struct Row {
    std::string text;
    int symbols;  ///< with start and check, without stop
  };
  const Row rows[] = {
      {"2417", 4},  // two pairs
      {"241", 5},   // an odd count goes digit by digit
      {"PJJ123C", 9},
  };
  for (const Row& row : rows) {
    const auto widths = Code128(row.text);
    ASSERT_TRUE(widths) << row.text;
    EXPECT_EQ(std::accumulate(widths->begin(), widths->end(), 0), row.symbols * kSymbol + kStop);
    for (std::size_t symbol = 0; symbol + 7 < widths->size(); symbol += 6) {
      // Bars are even in sum, gaps odd: what a reader checks first.
      EXPECT_EQ(((*widths)[symbol] + (*widths)[symbol + 2] + (*widths)[symbol + 4]) % 2, 0);
    }
  }
  // The check symbol of PJJ123C in set B has the value 55.
  const auto widths = *Code128("PJJ123C");
  const std::vector<int> check(widths.end() - 13, widths.end() - 7);
  EXPECT_EQ(check, (std::vector<int>{3, 1, 1, 3, 2, 1}));
  EXPECT_FALSE(Code128("№ 7"));
  EXPECT_FALSE(Code128(""));
}

}  // namespace
}  // namespace orvane::desktop
