#include "ui/qt/qt_spreadsheet.h"

#include <QDesktopServices>
#include <QDir>
#include <QTemporaryFile>
#include <QUrl>
#include <exception>

namespace zrt {

void QtSpreadsheet::Open(const Workbook& book) {
  QTemporaryFile file(QDir::tempPath() + QStringLiteral("/zrt_XXXXXX.xlsx"));
  file.setAutoRemove(false);
  if (!file.open()) return;
  const QString name = file.fileName();
  file.close();
  bool opened = false;
  try {
    book.SaveAs(name.toStdString());
    opened = QDesktopServices::openUrl(QUrl::fromLocalFile(name));
  } catch (const std::exception&) {  // the file, or a path that the writer of the file can't take
  }
  // A book that nobody shows would stay behind with every click.
  if (!opened) QFile::remove(name);
}

}  // namespace zrt
