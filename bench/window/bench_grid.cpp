// bench_grid HOST SCHEMA [ROWS]: a grid over a large set of sold lines: how long it takes to show once the data are
// there, and the slowest step of scrolling through it page by page.

#include <fmt/format.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iostream>

#include "app/app.h"
#include "platform/system_clock.h"
#include "sales/sales_statements.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"

namespace {

template <class Work>
double Milliseconds(Work&& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

QAbstractItemView* FindGrid(const char* name) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* grid = window->findChild<QAbstractItemView*>(name)) return grid;
  }
  throw std::runtime_error("the grid isn't there");
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc < 3) {
    std::cerr << "usage: bench_grid HOST SCHEMA [ROWS]\n";
    return 2;
  }
  zrt::SetUpApplication(application);
  const zrt::SystemClock clock;
  const zrt::DriveMap drives(std::filesystem::temp_directory_path() / "zrt_bench_drives");
  zrt::QtDesktop desktop(zrt::RegionalFormat{}, drives);
  zrt::App app(desktop, clock, drives, {{argv[1], "zrt", argv[2]}, "zrt"});
  app.Start();
  desktop.UserAction([&] { app.Splash.Timer1.UserFire(); });
  QApplication::processEvents();

  zrt::Recordset& sales = app.TheSession.Pool().RsSales;
  app.TheSession.BindSet(sales, fmt::format("{} LIMIT {}", zrt::sales::kSales, argc > 3 ? argv[3] : "1000000"));
  QAbstractItemView* grid = FindGrid("DataGrid3");
  const auto paint = [&] {
    grid->viewport()->repaint();
    QApplication::processEvents();
  };
  const double shown = Milliseconds([&] {
    app.Main.Sales.DataGrid3.Bind(sales);
    zrt::Session::ShowLastRow(sales);
    paint();
  });

  QScrollBar* bar = grid->verticalScrollBar();
  constexpr int kSteps = 300;
  double slowest = 0;
  double sum = 0;
  for (int step = 0; step <= kSteps; ++step) {
    const double one = Milliseconds([&] {
      bar->setValue(static_cast<int>(std::int64_t{bar->maximum()} * step / kSteps));
      paint();
    });
    slowest = std::max(slowest, one);
    sum += one;
  }
  std::cout << fmt::format(
      "| grid of {} rows | shown after {:.1f} ms | scrolls a step in {:.1f} ms, slowest {:.1f} ms |\n",
      sales.RecordCount(), shown, sum / (kSteps + 1), slowest);
  return 0;
}
