// bench_shift HOST SCHEMA: how long the button of a shift takes on each big grid, without and with painting, beside the
// time that its statements alone take on the bare client library; how long all that was ever sold takes to be written
// into a file; and what becomes of its memory once its set is closed.

#include <fmt/format.h>
#include <malloc.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "bench_program.h"
#include "sales/sales_csv.h"

namespace {

using zrt::bench::Median;
using zrt::bench::Seconds;

constexpr int kRounds = 101;

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
  return zrt::bench::Main(argc, argv, [](zrt::bench::BenchProgram& shop) {
    zrt::App& app = shop.app;
    zrt::SalesTab& tab = app.Main.Sales;

    // Yesterday's shift is a whole one.
    shop.Click(tab.CmdPlus);
    shop.Do([&] { tab.Month0.UserPick(zrt::AddDays(shop.clock.Now().date, -1)); });
    const char* const kNames[] = {"sales", "deletions", "order detail"};
    for (std::size_t grid = 0; grid < tab.CmdDG.size(); ++grid) {
      shop.Click(tab.CmdDG[grid]);
      std::vector<double> bare;
      std::vector<double> unseen;
      std::vector<double> painted;
      for (int round = 0; round < kRounds; ++round) {
        app.Main.Show();
        QApplication::processEvents();
        painted.push_back(Seconds([&] { shop.Click(tab.CmdDat); }));
        // The same behind a hidden window: what the sets themselves cost.
        app.Main.Hide();
        shop.recorder.statements.clear();
        unseen.push_back(Seconds([&] { shop.desktop.UserAction([&] { tab.CmdDat.UserClick(); }); }));
        const std::vector<std::string> statements = shop.recorder.statements;
        bare.push_back(Seconds([&] { shop.Replay(statements); }));
      }
      const double alone = Median(bare);
      std::cout << fmt::format("| a shift, {}, {} statements | {:.4f} s | {:.4f} s | {:.2f} | painted {:.4f} s |\n",
                               kNames[grid], shop.recorder.statements.size(), Median(unseen), alone,
                               Median(unseen) / alone, Median(painted))
                << std::flush;
    }
    app.Main.Show();

    shop.Click(tab.CmdDG[0]);
    const double before = ResidentMegabytes();
    shop.Click(tab.CmdAll);
    const double open = ResidentMegabytes();
    const int rows = app.TheSession.Pool().RsSales.RecordCount();
    const double saving = Seconds([&] {
      zrt::TextFileWriter file(shop.drives, "C:\\Korvina\\Report\\bench.csv");
      zrt::sales::WriteSales(file, app.TheSession.Pool().RsSales, shop.desktop.Format(), "", "");
      file.Close();
    });
    app.TheSession.Pool().RsSales.Close();
    app.TheSession.Pool().RsOrders.Close();
    std::cout << fmt::format("| {} lines written into a file | {:.2f} s |\n", rows, saving);
    std::cout << fmt::format(
        "| memory before, with all lines and orders open, after closing | {:.0f}, {:.0f}, {:.0f} MB |\n", before, open,
        ResidentMegabytes());
  });
}
