#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>

#include "app/app.h"
#include "support/recording_machine.h"
#include "support/scripted_desktop.h"
#include "support/scripted_faults.h"
#include "support/temporary_folder.h"
#include "support/test_database.h"

namespace zrt::test {

/// A data link file that leads to a base.
inline std::string LinkTo(const DatabaseAddress& address) {
  return fmt::format(
      "[oledb]\r\n; Everything after this line is an OLE DB initstring\r\nProvider=MSDASQL.1;Extended "
      "Properties=\"DRIVER={{MySQL ODBC 3.51 Driver}};SERVER={};DATABASE={};UID={};PWD=41730926\"\r\n",
      address.host, address.schema, address.account);
}

/// A whole program on a shop and drives of its own, under a desktop of the kind `Host`. The clock stands on 12 November
/// 2026, ten o'clock.
template <class Host>
class Program {
 protected:
  explicit Program(Stage stage = Stage::kRegister) : shop_(stage) {
    std::filesystem::create_directories(drives_.ToNative("C:\\Korvina\\Report"));
  }
  ~Program() { app_.reset(); }

  /// Starts the program, chooses `tab` if one is named, and forgets the statements of the start.
  void Start(const std::string& tab = {}) {
    app_ =
        std::make_unique<App>(desktop_, clock_, drives_, AppSettings{shop_.Address(), "zrt", printer_, spreadsheet_});
    app_->TheSession.MainConnection.SetFaultSource(&faults_);
    app_->Start();
    Do([this] { app_->Splash.Timer1.UserFire(); });
    if (!tab.empty()) Do([&] { app_->Main.TabStrip1.UserChoose(tab); });
    faults_.Forget();
  }

  /// An action of the operator; all boxes that were announced must have come by its end.
  void Do(const std::function<void()>& action) {
    desktop_.UserAction(action);
    desktop_.CheckAllCame();
  }
  void Click(Control& control) {
    Do([&] { control.UserClick(); });
  }
  void Type(Control& control, const std::string& text) {
    Do([&] { control.UserSet(text); });
  }
  void Press(Control& control, const std::string& key) {
    Do([&] { desktop_.PressKey(control, KeyByName(key)); });
  }

  void WriteFile(const std::string& drive_path, const std::string& bytes) {
    std::filesystem::create_directories(drives_.ToNative(drive_path).parent_path());
    std::ofstream(drives_.ToNative(drive_path), std::ios::binary) << bytes;
  }
  std::string FileBytes(const std::string& drive_path) {
    std::ifstream file(drives_.ToNative(drive_path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  TestDatabase shop_;
  FixedClock clock_{{{2026, 11, 12}, 10, 0, 0}};
  TemporaryFolder own_folder_;
  const std::filesystem::path& folder_ = own_folder_.Path();
  DriveMap drives_{folder_};
  RecordingPrinter printer_;
  RecordingSpreadsheet spreadsheet_;
  Host desktop_;
  ScriptedFaults faults_;
  std::unique_ptr<App> app_;
};

template <class Host>
class ProgramOn : public testing::Test, protected Program<Host> {
 protected:
  using Program<Host>::Program;
};

/// Under a desktop that the test scripts.
class ProgramTest : public ProgramOn<ScriptedDesktop> {
 protected:
  using ProgramOn::ProgramOn;
};

}  // namespace zrt::test
