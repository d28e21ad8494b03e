#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <string>

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

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
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
