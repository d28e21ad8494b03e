// bench_startup HOST SCHEMA: how long start-up takes up to the painted window, beside the time that its statements alone
// take on the bare client library. Both are medians of the same run.

#include <mysql.h>

#include <QApplication>
#include <chrono>
#include <iostream>

#include "app/app.h"
#include "platform/system_clock.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"

namespace {

constexpr int kRounds = 5;

class Recorder final : public zrt::FaultSource {
 public:
  Verdict BeforeStatement(std::string_view sql) override {
    statements.emplace_back(sql);
    return Verdict::kRun;
  }
  std::vector<std::string> statements;
};

template <class Work>
double Seconds(Work&& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double Median(std::vector<double> all) {
  std::sort(all.begin(), all.end());
  return all[all.size() / 2];
}

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
    MYSQL* connection = mysql_init(nullptr);
    mysql_options(connection, MYSQL_SET_CHARSET_NAME, "latin1");
    if (mysql_real_connect(connection, address.host.c_str(), address.account.c_str(), "41730926",
                           address.schema.c_str(), 3306, nullptr, 0) == nullptr) {
      throw std::runtime_error(mysql_error(connection));
    }
    mysql_query(connection, "SET SESSION sql_mode='NO_ENGINE_SUBSTITUTION'");
    for (const std::string& statement : statements) {
      if (mysql_query(connection, statement.c_str()) != 0) throw std::runtime_error(mysql_error(connection));
      mysql_free_result(mysql_store_result(connection));
    }
    mysql_close(connection);
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
  std::cout << fmt::format(
      "| start-up, {} statements | {:.3f} s | {:.3f} s | {:.2f} | {:+.3f} s beyond 1.2 times |\n", statements.size(),
      total, alone, total / alone, total - 1.2 * alone);
  return 0;
}
