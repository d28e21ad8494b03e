// bench_reports HOST SCHEMA: what the reports take in the real window, drawn off screen, beside the time that their
// statements alone take on the bare client library; and how fast a large table becomes a file.

#include <QApplication>
#include <iostream>

#include "../bare_client.h"
#include "app/app.h"
#include "platform/system_clock.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"

namespace {

using zrt::bench::Median;
using zrt::bench::Seconds;

constexpr int kRounds = 5;

class Recorder final : public zrt::FaultSource {
 public:
  Verdict BeforeStatement(std::string_view sql) override {
    statements.emplace_back(sql);
    return Verdict::kRun;
  }
  std::vector<std::string> statements;
};

/// The desktop of an operator who agrees to every box.
class Agreeing final : public zrt::QtDesktop {
 public:
  using zrt::QtDesktop::QtDesktop;

 protected:
  zrt::BoxAnswer DoMsgBox(const std::string& text, zrt::BoxIcon icon, zrt::BoxButtons, const std::string&) override {
    if (icon == zrt::BoxIcon::kCritical) throw std::runtime_error(text);
    return zrt::BoxAnswer::kOk;
  }
};

/// The report beside its own statements, which are taken down on the way.
void Compare(const char* what, Recorder& recorder, zrt::bench::BareClient& client,
             const std::function<void()>& report) {
  std::vector<double> program;
  std::vector<double> bare;
  report();  // what both need is in the server's memory from here on
  for (int round = 0; round < kRounds; ++round) {
    recorder.statements.clear();
    program.push_back(Seconds(report));
    bare.push_back(Seconds([&] {
      for (const std::string& statement : recorder.statements) mysql_free_result(client.Run(statement));
    }));
  }
  std::cout << fmt::format("| {}, {} statements | {:.2f} s | {:.2f} s | {:.2f} |\n", what, recorder.statements.size(),
                           Median(program), Median(bare), Median(program) / Median(bare));
}

void LargeFile(const zrt::DriveMap& drives) {
  constexpr int kRows = 100'000;
  zrt::ReportTable table;
  table.headers = {"№", "Код", "Наименование", "ШтрихКод", "Кол-во", "Цена", "Сумма", "Цена_зак", "Наценка"};
  for (int row = 1; row <= kRows; ++row) {
    table.rows.push_back({std::to_string(row), std::to_string(row), "Чай чёрный байховый крупнолистовой",
                          "4600000000000", "12,000 ", "120,50 ", "1\u00A0446,00 ", "80,00 ", " 50,6%"});
  }
  std::vector<double> seconds;
  for (int round = 0; round < kRounds; ++round) {
    seconds.push_back(Seconds([&] { zrt::WriteCsv(drives, "C:\\table.csv", {";;ОСТАТКИ ТОВАРОВ"}, table); }));
  }
  std::cout << fmt::format("| {} rows into a CSV file | {:.2f} s |\n", kRows, Median(seconds));
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "usage: bench_reports HOST SCHEMA\n";
    return 2;
  }
  zrt::SetUpApplication(application);
  const zrt::DatabaseAddress address{argv[1], "zrt", argv[2]};
  const zrt::SystemClock clock;
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "zrt_bench_drives";
  const zrt::DriveMap drives(folder);
  std::filesystem::create_directories(drives.ToNative("C:\\Korvina\\Report"));
  Agreeing desktop(zrt::RegionalFormat{}, drives);
  Recorder recorder;
  zrt::App app(desktop, clock, drives, {address, "zrt"});
  app.TheSession.MainConnection.SetFaultSource(&recorder);
  app.Start();
  desktop.UserAction([&] { app.Splash.Timer1.UserFire(); });
  zrt::bench::BareClient client(address.host, address.schema);

  zrt::Form9& texts = app.Reports.TextReports;
  texts.Show();
  texts.Period.First.Set(zrt::AddDays(clock.Now().date, -30));
  Compare("system report, 30 shifts day by day", recorder, client, [&] { texts.CmdDat.UserClick(); });
  texts.Check1.Value = true;
  Compare("waiters by place, 30 shifts day by day", recorder, client, [&] { texts.CmdDat1.UserClick(); });
  Compare("goods by place, 30 shifts", recorder, client, [&] { texts.CmdDat2.UserClick(); });
  zrt::FormTabOst& balances = app.Reports.Balances;
  balances.Show();
  Compare("stock list as CSV", recorder, client, [&] { balances.CmdOst.UserClick(); });
  LargeFile(drives);
  std::filesystem::remove_all(folder);
  return 0;
}
