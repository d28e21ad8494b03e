#include <fmt/format.h>

#include <string>
#include <vector>

#include "support/program_test.h"

namespace zrt::test {
namespace {

class ReportScreensTest : public ProgramTest {
 protected:
  /// Opens the screen of a menu entry.
  void Open(Menu& entry) {
    Do([&] { entry.UserClick(); });
  }
};

TEST_F(ReportScreensTest, TheFirstLineGoesToPaperWithoutWhatStandsBeyondTheReportsWidth) {
  Start();
  Open(app_->Main.mnuSystem);
  Form9& form = app_->Reports.TextReports;
  const std::string wide = std::string(42, 'x') + "yz";
  form.List1.AddItem(wide);
  form.List1.AddItem(wide);
  Click(form.CmdPrint);
  ASSERT_EQ(printer_.Jobs.size(), 1U);
  const auto& lines = printer_.Jobs.front().lines;
  ASSERT_EQ(lines.size(), 5U);  // the moment and a blank line above, a blank line below
  EXPECT_EQ(lines[2], (std::vector<PrintedPiece>{{0, std::string(42, 'x')}}));
  EXPECT_EQ(lines[3].back(), (PrintedPiece{3100, std::string(10, 'x') + "yz"}));
}

TEST_F(ReportScreensTest, TheDayOfTheFirstShiftLeadsToTheButtonOfTheLast) {
  Start();
  Open(app_->Main.mnuSystem);
  PeriodChoice& period = app_->Reports.TextReports.Period;
  Click(period.First.CmdPlus);
  Do([&] { period.First.Month.UserPick({2026, 11, 10}); });
  EXPECT_EQ(desktop_.Focused(), &period.Last.CmdPlus);
}

TEST_F(ReportScreensTest, AReportThatIsStoppedSaysSoAndLeavesNoFile) {
  Start();
  shop_.Sql("UPDATE CONST SET N8=8 WHERE COD=5");
  for (int cod = 1; cod <= 3; ++cod) {
    shop_.Sql(fmt::format("INSERT INTO TOVAR (COD,NAME,OST,KOL,PRISE,BARCODE) VALUES ({0},'Т{0}',0,0,100,'')", cod));
  }
  Open(app_->Main.mnuSystem);
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

  Open(app_->Main.mnuReportSaldo);
  FormTabOst& table = app_->Reports.Balances;
  Do([&] { table.Output.Check3->UserTick(true); });
  desktop_.StopAfter = 1;
  Click(table.CmdOst);
  EXPECT_TRUE(spreadsheet_.Books.empty());
  EXPECT_EQ(table.Output.Label4.Caption(), "остановлено");
}

TEST_F(ReportScreensTest, AProductOfCodeZeroIsAProduct) {
  Start();
  shop_.Sql(
      "INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,RUN,REZ) VALUES (1,1,0,2000,0,2000,'2026-11-11 "
      "10:00:00',1,0)");
  Open(app_->Main.mnuReportRun);
  FormTabRun& form = app_->Reports.Movements;
  Do([&] { form.Output.Check3->UserTick(true); });
  form.CmdRun.Enabled = true;
  desktop_.Expect("Не выбран товар!!!", BoxAnswer::kOk);
  Click(form.CmdRun);

  app_->Stock.BroadcastToForm(0, 0, 0, form_code::kMovementReport);
  Click(form.CmdRun);
  ASSERT_EQ(spreadsheet_.Books.size(), 1U);
  EXPECT_EQ(spreadsheet_.Books.front().Cells.front().text, "ДВИЖЕНИЕ ТОВАРА 0  ПО ДОКУМЕНТАМ");
}

}  // namespace
}  // namespace zrt::test
