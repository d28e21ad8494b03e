#include "ui/qt/qt_spreadsheet.h"

#include <QDesktopServices>
#include <QDir>
#include <QTemporaryFile>
#include <QUrl>

#include "core/errors.h"

namespace zrt {

void QtSpreadsheet::Open(const Workbook& book) {
  QTemporaryFile file(QDir::tempPath() + QStringLiteral("/zrt_XXXXXX.xlsx"));
  file.setAutoRemove(false);
  if (!file.open()) return;
  const QString name = file.fileName();
  file.close();
  try {
    book.SaveAs(name.toStdString());
  } catch (const FileError&) {
    QFile::remove(name);
    return;
  }
  QDesktopServices::openUrl(QUrl::fromLocalFile(name));
}

}  // namespace zrt
