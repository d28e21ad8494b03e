#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "app/app.h"
#include "platform/drive_map.h"
#include "platform/system_clock.h"
#include "ui/qt/qt_application.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/qt_printer.h"
#include "ui/qt/qt_spreadsheet.h"

namespace {

/// Where the folders of the drives live on a system without drives.
std::filesystem::path DrivesFolder() {
#ifdef _WIN32
  return {};
#else
  return std::filesystem::path(
      (QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/zrt/drives").toStdString());
#endif
}

/// File name of the program, by which the settings file and the window's title know it.
std::string ExecutableName() {
  QString name = QFileInfo(QApplication::applicationFilePath()).fileName();
  if (name.endsWith(".exe", Qt::CaseInsensitive)) name.chop(4);
  return name.toStdString();
}

constexpr std::string_view kUsage =
    "ZRT: управление рестораном и магазином.\n"
    "  zrt              открывает программу; сервер, учётная запись и схема заданы при сборке: " ZRT_DB_HOST
    ", " ZRT_DB_USER ", " ZRT_DB_NAME
    "\n"
    "  zrt --version    номер версии\n"
    "  zrt --help       эта справка\n"
    "Проверка базы: zrt_check. Руководство: /usr/share/doc/zrt.\n";

/// Answers what is asked on the command line, without a display; the exit code, or nothing when the program is to
/// start.
std::optional<int> AnswerCommandLine(int argc, char** argv) {
  if (argc < 2) return std::nullopt;
  const std::string_view asked = argv[1];
  if (argc == 2 && asked == "--version") {
    std::cout << "zrt " ZRT_VERSION "\n";
    return 0;
  }
  if (argc == 2 && asked == "--help") {
    std::cout << kUsage;
    return 0;
  }
  std::cerr << "zrt: неизвестный параметр: " << argv[argc - 1] << "\n" << kUsage;
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (const std::optional<int> answered = AnswerCommandLine(argc, argv)) return *answered;
  QApplication application(argc, argv);
  // Under this name the toolkit keeps what the operator makes of the windows.
  QApplication::setOrganizationName("zrt");
  QApplication::setApplicationName("zrt");
  zrt::SetUpApplication(application);

  const zrt::SystemClock clock;
  const zrt::DriveMap drives(DrivesFolder());
  // The folder that reports go to unless the operator chooses another one; where it can't be made, saving says so.
  std::error_code ignored;
  std::filesystem::create_directories(drives.ToNative("C:\\Korvina\\Report"), ignored);
  zrt::QtDesktop desktop(zrt::RegionalFormat{}, drives);
  zrt::QtPrinter printer;
  zrt::QtSpreadsheet spreadsheet;
  zrt::App app(desktop, clock, drives,
               {{ZRT_DB_HOST, ZRT_DB_USER, ZRT_DB_NAME}, ExecutableName(), printer, spreadsheet});
  app.Start();
  return desktop.Run();
}
