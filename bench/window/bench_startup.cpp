// bench_startup HOST SCHEMA: how long start-up takes up to the painted window, beside the time that its statements
// alone take on the bare client library. Both are medians of the same run.

#include <fmt/format.h>

#include <QApplication>
#include <iostream>
#include <string>
#include <vector>

#include "../bare_client.h"
#include "../recorder.h"
#include "app/app.h"
#include "platform/system_clock.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"

namespace {

using zrt::bench::Median;
using zrt::bench::Recorder;
using zrt::bench::Seconds;

constexpr int kRounds = 5;

double StartUp(const zrt::DatabaseAddress& address, std::vector<std::string>& statements) {
  const zrt::SystemClock clock;
  const zrt::DriveMap drives(std::filesystem::temp_directory_path() / "zrt_bench_drives");
  zrt::QtDesktop desktop(zrt::RegionalFormat{}, drives);
  Recorder recorder;
  zrt::App app(desktop, clock, drives, {address, "zrt"});
  app.TheSession.MainConnection.SetFaultSource(&recorder);
  const double seconds = Seconds([&] {
    app.Start();
    desktop.UserAction([&] { app.Splash.Timer1.UserFire(); });
    QApplication::processEvents();
  });
  if (!app.IsRunning()) throw std::runtime_error("the program doesn't start on this database");
  statements = recorder.statements;
  return seconds;
}

/// Connecting and the statements alone, results stored by the client as the program does.
double Bare(const zrt::DatabaseAddress& address, const std::vector<std::string>& statements) {
  return Seconds([&] {
    zrt::bench::BareClient client(address.host, address.schema);
    for (const std::string& statement : statements) mysql_free_result(client.Run(statement));
  });
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "usage: bench_startup HOST SCHEMA\n";
    return 2;
  }
  zrt::SetUpApplication(application);
  const zrt::DatabaseAddress address{argv[1], "zrt", argv[2]};
  std::vector<std::string> statements;
  std::vector<double> program;
  std::vector<double> bare;
  StartUp(address, statements);  // what both need is in the server's memory from here on
  for (int round = 0; round < kRounds; ++round) {
    program.push_back(StartUp(address, statements));
    bare.push_back(Bare(address, statements));
  }
  const double total = Median(program);
  const double alone = Median(bare);
  std::cout << fmt::format("| start-up, {} statements | {:.3f} s | {:.3f} s | {:.2f} | {:+.3f} s beyond 1.2 times |\n",
                           statements.size(), total, alone, total / alone, total - 1.2 * alone);
  return 0;
}
