// bench_reports HOST SCHEMA: what the reports take in the real window, drawn off screen, beside the time that their
// statements alone take on the bare client library; and how fast a large table becomes a file.

#include <fmt/format.h>

#include <functional>
#include <string>
#include <vector>

#include "bench_program.h"

namespace {

using zrt::bench::Median;
using zrt::bench::Seconds;

constexpr int kRounds = 5;

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
  return zrt::bench::Main(argc, argv, [](zrt::bench::BenchProgram& shop) {
    const auto compare = [&](const char* what, const std::function<void()>& report) {
      report();  // what both need is in the server's memory from here on
      shop.Compare(
          what, kRounds, [] {}, report);
    };
    zrt::Form9& texts = shop.app.Reports.TextReports;
    texts.Show();
    texts.Period.First.Set(zrt::AddDays(shop.clock.Now().date, -30));
    compare("system report, 30 shifts day by day", [&] { texts.CmdDat.UserClick(); });
    texts.Check1.Value = true;
    compare("waiters by place, 30 shifts day by day", [&] { texts.CmdDat1.UserClick(); });
    compare("goods by place, 30 shifts", [&] { texts.CmdDat2.UserClick(); });
    zrt::FormTabOst& balances = shop.app.Reports.Balances;
    balances.Show();
    compare("stock list as CSV", [&] { balances.CmdOst.UserClick(); });
    LargeFile(shop.drives);
  });
}
