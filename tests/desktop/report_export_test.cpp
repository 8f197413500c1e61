// Reports as files: real numbers and days in workbooks, what a spreadsheet makes of the text, and
// nothing half written.

#include "desktop/reports/report_export.h"

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>

#include "desktop/qt_text.h"
#include "desktop/reports/report_xlsx.h"
#include "desktop/screen.h"
#include "host/report_fakes.h"

namespace orvane::desktop {
namespace {

std::unique_ptr<const ReportPages> PagesOf(ReportDocument document) {
  return ReportPages::Plan(*ReportSnapshot::Take(std::move(document)));
}

std::unique_ptr<const ReportPages> ListPages(std::int64_t rows) {
  fakes::SourceCounts counts;
  return PagesOf(fakes::ListOf(rows, counts));
}

QString Content(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// A part of a workbook.
QString PartOf(const QString& path, const QString& part) {
  QProcess unzip;
  unzip.start("unzip", {"-p", path, part});
  EXPECT_TRUE(unzip.waitForFinished()) << "unzip is among the packages of the tests";
  return QString::fromUtf8(unzip.readAllStandardOutput());
}

/// What a cell of a sheet's XML holds: "n 12.5", "s Ламарина", "f SUM(A1:A2) = 3"; empty when the
/// cell is not there.
std::string CellIn(const QString& sheet, const QString& cell) {
  const QRegularExpression whole("<c r=\"" + cell + "\"([^>]*)>(.*?)</c>",
                                 QRegularExpression::DotMatchesEverythingOption);
  const auto found = whole.match(sheet);
  if (!found.hasMatch()) return {};
  const auto inside = [&](const QString& tag) {
    return QRegularExpression("<" + tag + "(?: [^>]*)?>(.*?)</" + tag + ">",
                              QRegularExpression::DotMatchesEverythingOption)
        .match(found.captured(2));
  };
  if (found.captured(1).contains("inlineStr")) return "s " + Utf8(inside("t").captured(1));
  const std::string value = Utf8(inside("v").captured(1));
  if (!inside("f").hasMatch()) return "n " + value;
  return "f " + Utf8(inside("f").captured(1)) + " = " + value;
}

TEST(ReportXlsx, HoldsRealNumbersDaysMomentsAndSums) {
  const QTemporaryDir folder;
  const QString path = folder.filePath("материали.xlsx");
  ASSERT_TRUE(SaveXlsx(*ListPages(3), path));
  const QString sheet = PartOf(path, "xl/worksheets/sheet1.xml");
  struct Row {
    const char* cell;
    const char* holds;
  };
  const Row rows[] = {
      {"B1", "s Материал"},  {"A2", "s Номер\nна ред"},
      {"A3", "n 1"},         {"B3", "s 1234567890123456789"},  // a double would round it
      {"B4", "n 2"},         {"C3", "s Ламарина 1"},
      {"D3", "n 123450"},    {"E3", "n 46086"},  // 05.03.2026
      {"F3", "n 46086.375"},                     // 05.03.2026 09:00 in Sofia
      {"C6", "s Общо"},      {"D6", "f SUM(D3:D5) = 370350"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(CellIn(sheet, row.cell), row.holds) << row.cell;
  EXPECT_TRUE(sheet.contains("ySplit=\"2\"") && sheet.contains("state=\"frozen\""));
  EXPECT_TRUE(sheet.contains("<mergeCell ref=\"B1:C1\"/>"));
  const QString styles = PartOf(path, "xl/styles.xml");
  for (const char* picture : {"dd.mm.yyyy", "dd.mm.yyyy hh:mm"})
    EXPECT_TRUE(styles.contains(QString("formatCode=\"%1\"").arg(picture))) << picture;
  EXPECT_TRUE(sheet.contains(QRegularExpression("<col min=\"3\" max=\"3\" width=\"32")));
  const QString book = PartOf(path, "xl/workbook.xml");
  EXPECT_TRUE(book.contains("<sheet name=\"Материали\""));
  EXPECT_TRUE(book.contains("Print_Titles\" localSheetId=\"0\">'Материали'!$1:$2<"));
}

TEST(ReportXlsx, NamesOfSheetsAreWhatTheyMayBe) {
  const std::string shares = "Приход/разход: [дялове] на всички дружества";
  EXPECT_EQ(SheetNames({"Одобрения", "одобрения", "", "'Име'", shares, shares}),
            (std::vector<std::string>{"Одобрения", "одобрения (2)", "Справка", "Име",
                                      "Приход разход дялове на всички",
                                      "Приход разход дялове на вси (2)"}));
}

TEST(ReportXlsx, ADocumentHasASheetOfFactsAndOnePerTable) {
  ReportDocument document;
  document.title = "Искане за покупка";
  document.number = "2417";
  document.facts = {{"Доставчик", "20117 Стил Трейд ООД"}};
  for (const char* caption : {"Материали и услуги", "Одобрения"}) {
    ReportTable& table = document.tables.emplace_back();
    table.caption = caption;
    table.columns.resize(1);
    table.source = fakes::TextRows({{caption}});
  }
  const QTemporaryDir folder;
  const QString path = folder.filePath("искане.xlsx");
  ASSERT_TRUE(SaveXlsx(*PagesOf(std::move(document)), path));
  const QString facts = PartOf(path, "xl/worksheets/sheet1.xml");
  EXPECT_EQ(CellIn(facts, "B2"), "s № 2417");
  EXPECT_EQ(CellIn(facts, "A3"), "s Доставчик");
  EXPECT_EQ(CellIn(PartOf(path, "xl/worksheets/sheet3.xml"), "A2"), "s Одобрения");
}

TEST(ReportCsv, IsWhatABulgarianSpreadsheetReads) {
  ReportDocument document;
  ReportTable& table = document.tables.emplace_back();
  table.columns.resize(2);
  table.columns[0].title = "Име~на цеха";
  table.columns[0].group = "Цех";
  table.columns[1].title = "Сума";
  table.columns[1].format.kind = ValueKind::Amount;
  table.columns[1].format.grouped = true;
  table.columns[1].format.decimals = 2;
  struct Row {
    const char* text;
    Variant number;
    const char* line;
  };
  const Row rows[] = {
      {"Цех 1", Decimal(-123'456'700, 2), "Цех 1;-1234567,00"},
      {"Цех \"Север\"; 2", Variant(), "\"Цех \"\"Север\"\"; 2\";"},
      {"=1+1", Decimal(15, 1), "'=1+1;1,50"},
      {"+359 2 123", "-7", "'+359 2 123;'-7"},
      {"-тире", Date{20'517}, "'-тире;05.03.2026"},
      {"@сума", Variant(), "'@сума;"},
      {"два\nреда", fakes::kLongCode, "\"два\nреда\";1234567890123456789"},
  };
  std::vector<ReportRow> made;
  QString expected = "\uFEFFЦех Име на цеха;Сума\r\n";
  for (const Row& row : rows) {
    const std::string shown = FormatValue(row.number, table.columns[1].format);
    made.push_back({{row.text, row.text}, {row.number, shown}});
    expected += QString(row.line) + "\r\n";
  }
  table.source = RowsAtHand(std::move(made));
  const QTemporaryDir folder;
  const QString path = folder.filePath("цехове.csv");
  ASSERT_TRUE(SaveCsv(*PagesOf(std::move(document)), path));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(Utf8(QString::fromUtf8(file.readAll())), Utf8(expected));
}

// --- long ones, and those that cannot be written -----------------------------

using Save = Answer<Done> (*)(const ReportPages&, const QString&, const ReportProgress&);
constexpr std::pair<const char*, Save> kKinds[] = {
    {"pdf", &SavePdf}, {"xlsx", &SaveXlsx}, {"csv", &SaveCsv}};

TEST(ReportExport, ALongReportIsWrittenWholeFromRowsOnTheDisk) {
  constexpr std::int64_t kRows = 20'000;
  constexpr std::int64_t kMostBytes = 8 << 20;
  const auto pages = ListPages(kRows);
  const QTemporaryDir folder;
  const auto path = [&folder](const char* kind) { return folder.filePath("дълга.") + kind; };
  for (const auto& [kind, save] : kKinds) {
    const std::int64_t before = fakes::HeldBytes();
    std::int64_t mostHeld = before;
    std::int64_t asked = 0;
    ASSERT_TRUE(save(*pages, path(kind), [&](std::int64_t done, std::int64_t all) {
      EXPECT_LE(done, all);
      ++asked;
      mostHeld = std::max(mostHeld, fakes::HeldBytes());
      return true;
    })) << kind;
    EXPECT_GE(asked, 40) << kind;
    if (std::string(kind) != "pdf") {
      EXPECT_LT(mostHeld - before, kMostBytes) << kind;
    }
  }
  const QString sheet = PartOf(path("xlsx"), "xl/worksheets/sheet1.xml");
  EXPECT_EQ(sheet.count("<row "), kRows + 3);
  EXPECT_EQ(CellIn(sheet, "D20002"), "n 123450");
  EXPECT_EQ(CellIn(sheet, "D20003"), "f SUM(D3:D20002) = 2469000000");
  const QStringList lines = Content(path("csv")).split("\r\n");
  EXPECT_EQ(lines.size(), kRows + 3);  // the heading, the sums, and nothing after the last end
  EXPECT_EQ(Utf8(lines[20'000]),
            "20000;20000;Ламарина 20000;123450,00;05.03.2026;05.03.2026 09:00");
  QFile pdf(path("pdf"));
  ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
  const QByteArray bytes = pdf.readAll();
  EXPECT_TRUE(bytes.startsWith("%PDF-"));
  EXPECT_EQ(QString::fromLatin1(bytes).count(QRegularExpression("/Type /Page\\b(?!s)")),
            pages->Count());
}

TEST(ReportExport, WhatCannotBeWrittenIsToldAndLeavesNothing) {
  const auto pages = ListPages(5'000);
  for (const auto& [kind, save] : kKinds) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("справка");
    const auto nowhere = save(*pages, "/няма/такава/папка/справка", {});
    ASSERT_FALSE(nowhere) << kind;
    EXPECT_EQ(nowhere.GetFailure().message,
              "Файлът „/няма/такава/папка/справка“ не може да се запише. Изберете друго място.");
    EXPECT_FALSE(save(*pages, folder.path(), {})) << "a folder";
    {
      const fakes::SmallFiles small(2'000);
      EXPECT_FALSE(save(*pages, path, {})) << "the disk is full: " << kind;
    }
    const auto stopped =
        save(*pages, path, [](std::int64_t done, std::int64_t) { return done == 0; });
    ASSERT_FALSE(stopped) << kind;
    EXPECT_EQ(stopped.GetFailure().message, "Записът е спрян. Файлът не е създаден.");
    EXPECT_TRUE(QDir(folder.path()).isEmpty()) << kind;
    QFile former(path);
    ASSERT_TRUE(former.open(QIODevice::WriteOnly) && former.write("стара") > 0);
    former.close();
    EXPECT_FALSE(save(*pages, path, [](std::int64_t done, std::int64_t) { return done == 0; }));
    EXPECT_EQ(Utf8(Content(path)), "стара") << kind;
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 1) << kind;
  }
}

TEST(ReportExport, EachKeyOfThePreviewSavesItsKindOfFile) {
  sample::Screen screen;
  const QTemporaryDir folder;
  const auto preview = []() -> QWidget* {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && window->windowTitle() == "Материали") return window;
    }
    return nullptr;
  };
  fakes::SourceCounts counts;
  sample::Screen::Inside([&] {
    QWidget* window = preview();
    ASSERT_NE(window, nullptr);
    for (const KeyStroke key : {Ctrl(KeyCode::S), Ctrl(KeyCode::E), Ctrl(KeyCode::T)}) {
      sample::Screen::Inside([&folder] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(dialog->selectedFiles().front().contains("/Материали."));
        dialog->setDirectory(folder.path());
        dialog->selectFile("нова");
        static_cast<QDialog*>(dialog)->done(QDialog::Accepted);
      });
      PressKey(*window, key);
    }
    PressKey(*window, KeyCode::Escape);
  });
  screen.toolkit.PreviewReport(*screen.form, fakes::ListOf(2, counts));
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files, QDir::Name),
            (QStringList{"нова.csv", "нова.pdf", "нова.xlsx"}));
}

}  // namespace
}  // namespace orvane::desktop
