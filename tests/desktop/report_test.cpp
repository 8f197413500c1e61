// Reports on paper: nothing lost between pages, headings repeated, sums under their columns.

#include "desktop/report_pages.h"

#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <numeric>

#include "desktop/barcode.h"

namespace orvane {
namespace {

using Part = ReportPages::Part;

ReportDocument SampleReport(int rows, int nameWidth = 30) {
  ReportDocument report;
  report.company = "Демонстрационно дружество";
  report.title = "Искане за покупка";
  report.number = "2417";
  report.printedBy = "Мария Иванова";
  report.printedOn = "05.03.2026 09:00";
  report.facts = {{"Дата на документ", "05.03.2026"}, {"Доставчик", "20117 Стил Трейд ООД"}};
  ReportTable table;
  table.caption = "Материали и услуги";
  table.columns = {{"Номер~на ред", "", 6, Align::Right},
                   {"Име", "Материал", nameWidth, Align::Left},
                   {"Мярка", "Материал", 8, Align::Left},
                   {"Количество", "", 12, Align::Right}};
  for (int i = 1; i <= rows; ++i) {
    const std::string name = i % 5 == 0 ? "Много дълго име на материал, което не се събира на един "
                                          "ред и се пренася на следващия"
                                        : "Ламарина";
    table.rows.push_back({std::to_string(i), name, "кг", "1 250,5"});
  }
  table.totals = {"", "Общо", "", "6 252,50"};
  report.tables = {table};
  report.footLines = {"Одобрил: Георги Петров, 06.03.2026 10:15"};
  return report;
}

TEST(DesktopReport, EveryRowStandsOnceUnderAHeading) {
  for (const int rows : {0, 1, 30, 35, 36, 37, 400}) {
    const ReportPages pages(SampleReport(rows));
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
  EXPECT_FALSE(ReportPages(SampleReport(3, 30)).IsLying());
  EXPECT_TRUE(ReportPages(SampleReport(3, 120)).IsLying());
}

TEST(DesktopReport, IsWrittenAsAPdfWithItsText) {
  const QTemporaryDir folder;
  const QString path = folder.filePath("искане.pdf");
  ASSERT_TRUE(RenderPdf(SampleReport(80), path));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.read(5) == "%PDF-");
  EXPECT_GT(file.size(), 5000);
}

TEST(DesktopReport, SaysWhenTheFileCannotBeWritten) {
  const auto saved = RenderPdf(SampleReport(1), "/няма/такава/папка/искане.pdf");
  ASSERT_FALSE(saved);
  EXPECT_EQ(saved.GetFailure().message,
            "Файлът „/няма/такава/папка/искане.pdf“ не може да се запише. Изберете друго място.");
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
}  // namespace orvane
