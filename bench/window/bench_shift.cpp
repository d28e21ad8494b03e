// bench_shift HOST SCHEMA: how long the button of a shift takes on each big grid, without and with painting, beside the
// time that its statements alone take on the bare client library; how long all that was ever sold takes to be written
// into a file; and what becomes of its memory once its set is closed.

#include <malloc.h>
#include <unistd.h>

#include <QApplication>
#include <fstream>
#include <iostream>

#include "../bare_client.h"
#include "../recorder.h"
#include "app/app.h"
#include "platform/system_clock.h"
#include "sales/sales_csv.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"

namespace {

using zrt::bench::Median;
using zrt::bench::Seconds;

constexpr int kRounds = 9;

double ResidentMegabytes() {
  malloc_trim(0);
  std::ifstream pages("/proc/self/statm");
  long size = 0;
  long resident = 0;
  pages >> size >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "usage: bench_shift HOST SCHEMA\n";
    return 2;
  }
  zrt::SetUpApplication(application);
  const zrt::SystemClock clock;
  const auto folder = std::filesystem::temp_directory_path() / "zrt_bench_drives";
  const zrt::DriveMap drives(folder);
  std::filesystem::create_directories(drives.ToNative("C:\\Korvina\\Report"));
  zrt::QtDesktop desktop(zrt::RegionalFormat{}, drives);
  zrt::bench::Recorder recorder;
  zrt::App app(desktop, clock, drives, {{argv[1], "zrt", argv[2]}, "zrt"});
  app.TheSession.MainConnection.SetFaultSource(&recorder);
  app.Start();
  desktop.UserAction([&] { app.Splash.Timer1.UserFire(); });
  if (!app.IsRunning()) {
    std::cerr << "the program doesn't start on this database\n";
    return 1;
  }
  zrt::bench::BareClient client(argv[1], argv[2]);
  zrt::SalesTab& tab = app.Main.Sales;
  const auto act = [&](zrt::Control& control) {
    desktop.UserAction([&] { control.UserClick(); });
    QApplication::processEvents();
  };

  // Yesterday's shift is a whole one.
  act(tab.CmdPlus);
  desktop.UserAction([&] { tab.Month0.UserPick(zrt::AddDays(clock.Now().date, -1)); });
  const char* const kNames[] = {"sales", "deletions", "order detail"};
  for (std::size_t grid = 0; grid < tab.CmdDG.size(); ++grid) {
    act(tab.CmdDG[grid]);
    std::vector<double> bare;
    std::vector<double> unseen;
    std::vector<double> painted;
    for (int round = 0; round < kRounds; ++round) {
      app.Main.Show();
      QApplication::processEvents();
      painted.push_back(Seconds([&] { act(tab.CmdDat); }));
      // The same behind a hidden window: what the sets themselves cost.
      app.Main.Hide();
      recorder.statements.clear();
      unseen.push_back(Seconds([&] { desktop.UserAction([&] { tab.CmdDat.UserClick(); }); }));
      bare.push_back(Seconds([&] {
        for (const std::string& statement : recorder.statements) mysql_free_result(client.Run(statement));
      }));
    }
    const double alone = Median(bare);
    std::cout << fmt::format("| a shift, {}, {} statements | {:.4f} s | {:.4f} s | {:.2f} | painted {:.4f} s |\n",
                             kNames[grid], recorder.statements.size(), Median(unseen), alone, Median(unseen) / alone,
                             Median(painted))
              << std::flush;
  }
  app.Main.Show();

  act(tab.CmdDG[0]);
  const double before = ResidentMegabytes();
  act(tab.CmdAll);
  const double open = ResidentMegabytes();
  const int rows = app.TheSession.Pool().RsSales.RecordCount();
  const double saving = Seconds([&] {
    zrt::TextFileWriter file(drives, "C:\\Korvina\\Report\\bench.csv");
    zrt::sales::WriteSales(file, app.TheSession.Pool().RsSales, desktop.Format(), "", "");
    file.Close();
  });
  app.TheSession.Pool().RsSales.Close();
  app.TheSession.Pool().RsOrders.Close();
  std::cout << fmt::format("| {} lines written into a file | {:.2f} s |\n", rows, saving);
  std::cout << fmt::format(
      "| memory before, with all lines and orders open, after closing | {:.0f}, {:.0f}, {:.0f} MB |\n", before, open,
      ResidentMegabytes());
  std::filesystem::remove_all(folder);
  return 0;
}
