#include <fmt/format.h>

#include <string>
#include <vector>

#include "core/errors.h"
#include "platform/workbook.h"
#include "reports/report_period.h"
#include "support/program_test.h"

namespace zrt {
namespace {

TEST(ReportPeriod, EndsBeforeTheLastDayWhenTheShiftChangesAtMidnight) {
  struct Case {
    ReportSpan span;
    const char* from;
    const char* to;
  };
  const Case kCases[] = {
      {{8, {2026, 11, 14}, {2026, 11, 15}}, "2026-11-14 08:00:00", "2026-11-15 07:59:59"},
      {{0, {2026, 11, 14}, {2026, 11, 15}}, "2026-11-14 00:00:00", "2026-11-14 23:59:59"},
      {{1, {2025, 12, 31}, {2026, 1, 1}}, "2025-12-31 01:00:00", "2026-01-01 00:59:59"},
      {{0, {2024, 2, 28}, {2024, 3, 1}}, "2024-02-28 00:00:00", "2024-02-29 23:59:59"},
      {{23, {2026, 11, 30}, {2026, 12, 1}}, "2026-11-30 23:00:00", "2026-12-01 22:59:59"},
  };
  for (const Case& one : kCases) {
    const ReportPeriod period = ReportPeriodBounds(one.span, {});
    EXPECT_EQ(period.from, one.from);
    EXPECT_EQ(period.to, one.to);
  }
}

TEST(Workbook, NeedsAFileThatCanBeWritten) {
  Workbook book;
  book.Cell(1, 1, "текст");
  EXPECT_THROW(book.SaveAs("/no/such/folder/book.xlsx"), FileError);
}

// Screens

class ReportScreensTest : public test::ProgramTest {
 protected:
  static std::string Look(const Workbook& book) {
    std::string look;
    for (const auto& span : book.ColumnWidths) look += fmt::format("{}-{}:{} ", span.first, span.last, span.width);
    for (const auto& row : book.RowHeights) look += fmt::format("row {}:{} ", row.row, row.height);
    return look;
  }
};

TEST_F(ReportScreensTest, TheFirstLineGoesToPaperWithoutWhatStandsBeyondTheReportsWidth) {
  Start();
  Click(app_->Main.mnuSystem);
  Form9& form = app_->Reports.TextReports;
  form.List1.AddItem(std::string(42, 'x') + "yz");
  Click(form.CmdPrint);
  ASSERT_EQ(printer_.Jobs.size(), 1U);
  const auto& lines = printer_.Jobs.front().lines;
  ASSERT_EQ(lines.size(), 4U);  // the moment and a blank line above, a blank line below
  EXPECT_EQ(lines[2], (std::vector<PrintedPiece>{{0, std::string(42, 'x')}}));
}

TEST_F(ReportScreensTest, AReportThatIsStoppedSaysSoAndLeavesNoFile) {
  Start();
  shop_.Sql("UPDATE CONST SET N8=8 WHERE COD=5");
  for (int cod = 1; cod <= 3; ++cod) {
    shop_.Sql(fmt::format("INSERT INTO TOVAR (COD,NAME,OST,KOL,PRISE,BARCODE) VALUES ({0},'Т{0}',0,0,100,'')", cod));
  }
  Click(app_->Main.mnuSystem);
  Form9& form = app_->Reports.TextReports;
  Click(form.CmdDat);
  const std::vector<std::string> whole = form.List1.Items();
  ASSERT_GT(whole.size(), 6U);
  desktop_.StopAfter = 4;
  Click(form.CmdDat);
  std::vector<std::string> stopped(whole.begin(), whole.begin() + 5);
  stopped.emplace_back("отчёт остановлен, дальше не считалось");
  EXPECT_EQ(form.List1.Items(), stopped);
  desktop_.StopAfter = -1;
  Click(form.CmdDat);
  EXPECT_EQ(form.List1.Items(), whole);

  Click(app_->Main.mnuReportSaldo);
  FormTabOst& table = app_->Reports.Balances;
  Do([&] { table.Output.Check3->UserTick(true); });
  desktop_.StopAfter = 1;
  Click(table.CmdOst);
  EXPECT_TRUE(spreadsheet_.Books.empty());
  EXPECT_EQ(table.Output.Label4.Caption(), "остановлено");
  desktop_.StopAfter = -1;
  Click(table.CmdOst);
  ASSERT_EQ(spreadsheet_.Books.size(), 1U);
  EXPECT_EQ(Look(spreadsheet_.Books[0]), "1-1:4 2-2:6 3-3:40 4-4:18 5-9:9 row 3:23 row 7:23 ");
  EXPECT_EQ(spreadsheet_.Books[0].Cells.at(9).text, "ЦенаЗак");
  EXPECT_EQ(spreadsheet_.Books[0].Cells.at(18).text, "-100%");
}

TEST_F(ReportScreensTest, AProductOfCodeZeroIsAProduct) {
  Start();
  shop_.Sql(
      "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,RUN,REZ) VALUES (1,1,0,2000,0,2000,'2026-11-11 "
      "10:00:00',1,0)");
  Click(app_->Main.mnuReportRun);
  FormTabRun& form = app_->Reports.Movements;
  Do([&] { form.Output.Check3->UserTick(true); });
  form.CmdRun.Enabled = true;
  desktop_.Expect("Не выбран товар!!!", BoxAnswer::kOk);
  Click(form.CmdRun);

  app_->Stock.BroadcastToForm(0, 0, 0, form_code::kMovementReport);
  Click(form.CmdRun);
  ASSERT_EQ(spreadsheet_.Books.size(), 1U);
  EXPECT_EQ(spreadsheet_.Books[0].Cells[0].text, "ДВИЖЕНИЕ ТОВАРА 0  ПО ДОКУМЕНТАМ");
  EXPECT_EQ(Look(spreadsheet_.Books[0]), "1-1:20 2-2:6 3-3:18 4-8:11 row 3:23 row 5:23 ");
  shop_.Sql("INSERT INTO TOVAR (COD,COD1,NAME) VALUES (0,1,'Пакет')");
  Click(form.CmdRunAll);
  ASSERT_EQ(spreadsheet_.Books.size(), 2U);
  EXPECT_EQ(Look(spreadsheet_.Books[1]), "1-1:6 2-2:40 3-7:12 row 3:23 ");
}

}  // namespace
}  // namespace zrt
