#pragma once

#include <fmt/format.h>

#include <QApplication>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "../bare_client.h"
#include "../recorder.h"
#include "app/app.h"
#include "platform/system_clock.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"

namespace zrt::bench {

/// An operator who agrees to every box but a complaint, unless he bears them, and enters `Entry` wherever something is
/// asked.
class AgreeingDesktop final : public QtDesktop {
 public:
  using QtDesktop::QtDesktop;
  std::string Entry;
  bool BearsComplaints = false;

 protected:
  BoxAnswer DoMsgBox(const Message& message) override {
    if (message.icon == BoxIcon::kCritical && !BearsComplaints) throw std::runtime_error(message.text);
    return message.buttons == BoxButtons::kYesNo ? BoxAnswer::kYes : BoxAnswer::kOk;
  }
  void DoRuntimeError(const std::exception& error) override { throw std::runtime_error(error.what()); }
  std::string DoInputBox(const std::string&, const std::string&, const std::string&) override { return Entry; }
  std::string DoPasswordBox(const std::string&, const std::string&) override { return Entry; }
};

/// The program in its real window, drawn off screen, started on a schema, with a bare client beside it.
class BenchProgram {
 public:
  /// Throws when the program doesn't start on the database.
  BenchProgram(const char* host, const char* schema)
      : app(desktop, clock, drives, {{host, "zrt", schema}, "zrt"}), client(host, schema) {
    std::filesystem::create_directories(drives.ToNative("C:\\Korvina\\Report"));
    app.TheSession.MainConnection.SetFaultSource(&recorder);
    app.Start();
    Do([&] { app.Splash.Timer1.UserFire(); });
    if (!app.IsRunning()) throw std::runtime_error("the program doesn't start on this database");
  }
  ~BenchProgram() { std::filesystem::remove_all(folder); }

  /// An action of the operator, until it is painted.
  void Do(const std::function<void()>& action) {
    desktop.UserAction(action);
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  void Click(Control& control) {
    Do([&] { control.UserClick(); });
  }

  /// The same statements on the bare client.
  void Replay(const std::vector<std::string>& statements) {
    for (const std::string& statement : statements) mysql_free_result(client.Run(statement));
  }

  /// Medians of `rounds` rounds of `work` and of its statements alone; `before` brings the base to where both begin.
  void Compare(const char* what, int rounds, const std::function<void()>& before, const std::function<void()>& work) {
    std::vector<double> program;
    std::vector<double> bare;
    for (int round = 0; round < rounds; ++round) {
      before();
      recorder.statements.clear();
      program.push_back(Seconds(work));
      const std::vector<std::string> statements = recorder.statements;
      before();
      bare.push_back(Seconds([&] { Replay(statements); }));
      count_ = statements.size();
    }
    std::cout << fmt::format("| {}, {} statements | {:.3f} s | {:.3f} s | {:.2f} |\n", what, count_, Median(program),
                             Median(bare), Median(program) / Median(bare))
              << std::flush;
  }

  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "zrt_bench_drives";
  const DriveMap drives{folder};
  const SystemClock clock;
  AgreeingDesktop desktop{RegionalFormat{}, drives};
  Recorder recorder;
  App app;
  BareClient client;

 private:
  std::size_t count_ = 0;
};

/// The frame of a measuring program "NAME HOST SCHEMA".
inline int Main(int argc, char** argv, const std::function<void(BenchProgram&)>& measure) {
  QApplication application(argc, argv);
  if (argc != 3) {
    std::cerr << "usage: " << argv[0] << " HOST SCHEMA\n";
    return 2;
  }
  SetUpApplication(application);
  try {
    BenchProgram program(argv[1], argv[2]);
    measure(program);
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}

}  // namespace zrt::bench
