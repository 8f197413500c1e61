// Reports: what of a screen is printed, rows that are read once and forward, exact sums.

#include "host/report.h"

#include <gtest/gtest.h>

#include "data/abort.h"
#include "host/controls/grid.h"
#include "host/form_fakes.h"
#include "host/report_fakes.h"

namespace orvane::host {
namespace {

using fakes::Host;
using fakes::TextsOf;
using Texts = std::vector<std::vector<std::string>>;

constexpr auto Code = Int16("Code", Key, "Код");
constexpr auto Name = String("Name", 40, Plain, "Име");
constexpr auto UnitName = String("UnitName", 10, Joined, "Мярка");

/// A register of which the first 80 rows are on the screen.
class ReportTest : public ::testing::Test {
 protected:
  ReportTest() {
    host.LogIn();
    form = std::make_unique<TVosBaseForm>(host.Identity(), "TfDepartment", "Дирекции");
    connection.emplace(host.app.Session(), ScreenPoint{11, 1}, "TsmSQL");
    rows = std::make_unique<TVosClientDataSet>("cdsRows", *connection,
                                               std::initializer_list<FieldDef>{Code, Name});
    source = std::make_unique<TDataSource>(*rows);
    grid = std::make_unique<TVosDBGrid>(*form, "grid", *source);
    grid->columns = {{.field = "Name", .width = 40, .title = "Име~на цеха", .group = "Цех"},
                     {.field = "Code", .width = 6, .title = "Код"}};
    rows->RowLimit = 80;
  }

  static DataPacket Portion(int from, int to, std::string continuation = "") {
    DataPacket packet;
    packet.AddColumn("Code", ValueKind::Int16).AddColumn("Name", ValueKind::String, 40);
    for (int i = from; i <= to; ++i)
      packet.AppendRow(VariantArray{i, "Цех " + std::to_string(i)});
    packet.continuation = std::move(continuation);
    return packet;
  }

  const ReportSnapshot& Print() {
    GenerateReport(*form, {11, 22, 1}, *grid);
    return *host.toolkit.reports.back();
  }

  Host host;
  std::unique_ptr<TVosBaseForm> form;
  std::optional<TVosSQLConnection> connection;
  std::unique_ptr<TVosClientDataSet> rows;
  std::unique_ptr<TDataSource> source;
  std::unique_ptr<TVosDBGrid> grid;
};

TEST_F(ReportTest, SaysWhoPrintedWhatAndWhenWithTheColumnsShown) {
  host.server.packets = {Portion(1, 3)};
  rows->Open();
  const ReportSnapshot& report = Print();
  const ReportDocument& document = report.Document();
  EXPECT_EQ(document.title, "Дирекции");
  EXPECT_EQ(document.company, "Демонстрационно дружество");
  EXPECT_EQ(document.printedBy, "Мария Иванова");
  EXPECT_EQ(document.printedOn, "05.03.2026 09:00");
  EXPECT_EQ(document.key, (ReportKey{11, 22, 1}));
  EXPECT_EQ(document.tables[0].columns[1].align, Align::Right);
  EXPECT_EQ(document.tables[0].columns[0].group, "Цех");
  EXPECT_EQ(TextsOf(report), (Texts{{"Цех 1", "1"}, {"Цех 2", "2"}, {"Цех 3", "3"}}));
}

TEST_F(ReportTest, PortionsThatTheScreenDoesNotShowArePrintedAndStayOffIt) {
  TVosClientDataSet units("cdsUnits", {Code, Name});
  units.LoadPacket(Portion(1, 90));
  rows->AddLookup(UnitName, units, "Code", "Code", "Name");
  (*rows)[Name].OnGetText = [](const Variant& value) { return "„" + value.ToText() + "“"; };
  grid->columns.push_back({.field = "UnitName", .title = "Мярка"});
  host.server.packets = {Portion(1, 80, "80"), Portion(81, 83, "83"), Portion(84, 85)};
  rows->Open();
  rows->SetRecNo(7);
  const std::uint64_t version = rows->Version();
  const Texts printed = TextsOf(Print());
  ASSERT_EQ(printed.size(), 85U);
  EXPECT_EQ(printed[0], (std::vector<std::string>{"„Цех 1“", "1", "Цех 1"}));
  EXPECT_EQ(printed[84], (std::vector<std::string>{"„Цех 85“", "85", "Цех 85"}));
  EXPECT_EQ(rows->RecordCount(), 80U);
  EXPECT_EQ(rows->Version(), version);
  EXPECT_EQ(rows->Continuation(), "80");
  EXPECT_EQ(host.server.fetches[1].continuation, "80");
  EXPECT_EQ(host.server.fetches[2].continuation, "83");
  EXPECT_FALSE(connection->Connected());
}

TEST_F(ReportTest, TextsMadeOfAPlaceAndOrdersOfTheScreensOwnTakeAllRowsToIt) {
  for (const bool ordered : {false, true}) {
    host.server.packets = {Portion(5, 6, "6"), Portion(1, 2)};
    rows->SetIndexFieldNames(ordered ? "Code" : "");
    rows->Open();
    if (!ordered) {
      (*rows)[Name].OnGetRowText = [](const RowReader& row) {
        return "ред " + row(Code.name).ToText();
      };
    }
    EXPECT_EQ(TextsOf(Print()).back(), (ordered ? std::vector<std::string>{"Цех 6", "6"}
                                                : std::vector<std::string>{"ред 2", "2"}));
    EXPECT_EQ(rows->RecordCount(), 4U);
    (*rows)[Name].OnGetRowText = nullptr;
  }
}

TEST_F(ReportTest, AServerThatFailsHalfwayPrintsNothing) {
  host.server.packets = {Portion(1, 80, "80"), Failure{FailureKind::LinkDown, "x"}};
  rows->Open();
  EXPECT_THROW(Print(), ServerError);
  EXPECT_TRUE(host.toolkit.reports.empty());
  EXPECT_EQ(rows->RecordCount(), 80U);
}

TEST(ReportCells, AFieldWithItsOwnTextIsWhatTheTextSays) {
  EXPECT_EQ(CellOf("1\u2009250,50", ValueKind::Double).value, Variant(Decimal(125050, 2)));
  EXPECT_EQ(CellOf("41 8/12", ValueKind::Double).value, Variant("41 8/12"));
  EXPECT_EQ(CellOf("0412", ValueKind::String).value, Variant("0412")) << "a text keeps its zeros";
  EXPECT_TRUE(CellOf("", ValueKind::Code).value.IsNull());
}

// --- the snapshot ------------------------------------------------------------

ReportSnapshot::Mark MarkOf(const ReportSnapshot& report, std::int64_t row) {
  ReportSnapshot::Reader reader(report, 0);
  while (reader.At().row < row)
    (void)reader.Next();
  return reader.At();
}

TEST(ReportSnapshots, GiveBackEveryKindOfValueAndTheTextItHad) {
  ReportDocument document;
  const Variant values[] = {
      Variant(),      true,     std::int64_t{-7}, fakes::kLongCode, 0.125,
      Decimal(-5, 9), Date{-3}, Stamp{-1},        "Ламарина",       std::string(100'000, 'x')};
  std::vector<ReportRow> rows;
  for (const Variant& value : values)
    rows.push_back({{value, FormatValue(value, {})}, {value, "свой текст"}, {value, ""}});
  ReportTable& table = document.tables.emplace_back();
  table.columns.resize(3);
  table.source = RowsAtHand(rows);
  const TakenReport report = *ReportSnapshot::Take(std::move(document));
  ASSERT_EQ(report->RowCount(0), std::ssize(values));
  for (std::int64_t from = 0; from < std::ssize(values); ++from) {
    ReportSnapshot::Reader reader(*report, 0, MarkOf(*report, from));
    for (auto row = static_cast<std::size_t>(from); reader.HasNext(); ++row)
      EXPECT_EQ(reader.Next(), rows[row]) << row << " from " << from;
  }
}

TEST(ReportSnapshots, OfAHundredThousandRowsHoldNoMoreThanAPortion) {
  constexpr std::int64_t kRows = 100'000;
  constexpr std::int64_t kMostBytes = 3 << 20;  // the rows together take a hundred times as much
  fakes::SourceCounts counts;
  const std::int64_t before = fakes::HeldBytes();
  const TakenReport report = *ReportSnapshot::Take(fakes::ListOf(kRows, counts));
  EXPECT_EQ(counts.handedOut, kRows);
  EXPECT_LE(counts.largestPortion, kReportPortion);
  EXPECT_LT(counts.mostHeld - before, kMostBytes);
  EXPECT_LT(fakes::HeldBytes() - before, kMostBytes);
  ReportSnapshot::Reader reader(*report, 0);
  std::int64_t read = 0;
  std::int64_t mostHeld = 0;
  while (reader.HasNext()) {
    const ReportRow row = reader.Next();
    if (++read % 10'000 != 0) continue;
    EXPECT_EQ(row, fakes::ManyKindsRow(read));
    mostHeld = std::max(mostHeld, fakes::HeldBytes());
  }
  EXPECT_EQ(read, kRows);
  EXPECT_LT(mostHeld - before, kMostBytes);
}

TEST(ReportSnapshots, SumWhatIsExactAndLeaveOutWhatOutgrowsIt) {
  fakes::SourceCounts counts;
  const TakenReport report = *ReportSnapshot::Take(fakes::ListOf(3, counts));
  const ReportRow& totals = report->Totals(0);
  ASSERT_EQ(totals.size(), 6U);
  EXPECT_EQ(totals[3].text, "370\u2009350,00");
  EXPECT_EQ(totals[3].value, Variant(Decimal(37'035'000, 2)));
  EXPECT_EQ(totals[2].text, "Общо");

  ReportDocument large;
  ReportTable& table = large.tables.emplace_back();
  table.columns.resize(2);
  table.columns[0].summed = true;
  table.source = RowsAtHand({{{kHighest64, ""}, {}}, {{1, ""}, {}}, {{2, ""}, {}}});
  EXPECT_TRUE((*ReportSnapshot::Take(std::move(large)))->Totals(0)[0].value.IsNull());
}

TEST(ReportSnapshots, SayWhenTheDiskIsFull) {
  fakes::SourceCounts counts;
  const fakes::SmallFiles small(100'000);
  const auto full = ReportSnapshot::Take(fakes::ListOf(10'000, counts));
  ASSERT_FALSE(full);
  EXPECT_TRUE(full.GetFailure().message.starts_with("Няма място на диска"));
  EXPECT_LT(counts.handedOut, 10'000);
}

TEST(ReportSnapshots, AreStoppedBetweenPortions) {
  fakes::SourceCounts counts;
  int asked = 0;
  const auto stopped = ReportSnapshot::Take(
      fakes::ListOf(10'000, counts), [&asked](std::int64_t done, std::int64_t) {
        EXPECT_EQ(done, ++asked * static_cast<std::int64_t>(kReportPortion));
        return asked < 3;
      });
  ASSERT_FALSE(stopped);
  EXPECT_EQ(stopped.GetFailure().message, "Справката е спряна.");
  EXPECT_EQ(counts.handedOut, 1500);
}

}  // namespace
}  // namespace orvane::host
