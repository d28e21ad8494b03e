// What comes out on paper, read back from a PDF file, and what becomes of a workbook.

#include <gtest/gtest.h>

#include <QtPrintSupport>
#include <QtWidgets>
#include <string>
#include <vector>

#include "core/errors.h"
#include "ui/qt/in_box.h"
#include "ui/qt/qt_printer.h"
#include "ui/qt/qt_spreadsheet.h"

namespace zrt {
namespace {

struct Word {
  QString text;
  int page;
  double left, right, top;  ///< points
};

/// The words of the document as they lie on its pages.
std::vector<Word> Printed(const PrintJob& job) {
  const QTemporaryDir folder;
  const QString file = folder.filePath("job.pdf");
  {
    QPrinter paper(QPrinter::HighResolution);
    paper.setOutputFormat(QPrinter::PdfFormat);
    paper.setOutputFileName(file);
    paper.setPageSize(QPageSize(QPageSize::A4));
    PaintJob(job, paper);
  }
  QProcess reader;
  reader.start("pdftotext", {"-bbox", file, "-"});
  reader.waitForFinished();
  const QString layout = QString::fromUtf8(reader.readAllStandardOutput());
  static const QRegularExpression part(
      R"re(<page |<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="[\d.]+">([^<]*)</word>)re");
  std::vector<Word> words;
  int page = 0;
  for (auto found = part.globalMatch(layout); found.hasNext();) {
    const QRegularExpressionMatch match = found.next();
    if (match.captured(4).isEmpty()) {
      ++page;
    } else {
      words.push_back({match.captured(4), page, match.captured(1).toDouble(), match.captured(3).toDouble(),
                       match.captured(2).toDouble()});
    }
  }
  return words;
}

constexpr double kPointsPerTwip = 1.0 / 20;

TEST(Paper, PiecesBeginAtTheirPlacesAndJoinWithoutAGap) {
  PrintJob job{"Системный отчёт", 12, {}};
  job.lines.push_back({{0, std::string(22, 'W')}, {2100, " " + std::string(8, '8') + " "}, {3100, "НЕЗАКРЫТЫЕ"}});
  job.lines.push_back({{0, std::string(22, '=')}, {2100, std::string(10, '=')}, {3100, std::string(10, '=')}});
  job.lines.push_back({{0, "второй"}});
  const std::vector<Word> words = Printed(job);
  ASSERT_EQ(words.size(), 5U);  // the rule is one of them, without a gap behind the 22nd or the 32nd character
  const double character = 2100 * kPointsPerTwip / 22;
  EXPECT_NEAR(words[0].right - words[0].left, 22 * character, 0.3);
  EXPECT_NEAR(words[1].left - words[0].left, 2100 * kPointsPerTwip + 1000 * kPointsPerTwip / 10, 0.3);
  EXPECT_NEAR(words[2].left - words[0].left, 3100 * kPointsPerTwip, 0.3);
  EXPECT_EQ(words[0].top, words[2].top);
  EXPECT_EQ(words[2].text, "НЕЗАКРЫТЫЕ");
  EXPECT_EQ(words[3].text, QString(42, '='));
  EXPECT_NEAR(words[3].top - words[0].top, 13.8, 0.3);  // 12 points and the room between lines
}

TEST(Paper, ALongReportTakesAsManyPagesAsItNeedsAndLosesNoLine) {
  PrintJob job{"Отчёт", 10, {}};
  constexpr std::size_t kLines = 200;
  for (std::size_t i = 0; i < kLines; ++i) job.lines.push_back({{0, "line" + std::to_string(i)}});
  const std::vector<Word> words = Printed(job);
  ASSERT_EQ(words.size(), kLines);
  EXPECT_EQ(words.back().page, 4);
  for (std::size_t i = 0; i < kLines; ++i) {
    EXPECT_EQ(words[i].text.toStdString(), "line" + std::to_string(i));
    EXPECT_LT(words[i].top, 842 - 36 - 10) << i;  // above the lower margin of A4
    EXPECT_GE(words[i].top, 36 - 2) << i;
  }
}

TEST(Paper, WhatIsNotPrintedIsAFailureAfterThePreview) {
  const PrintJob job{"Отчёт", 10, {{{0, "строка"}}}};
  test::InBox<QPrintPreviewDialog>([](QPrintPreviewDialog& preview) {
    preview.printer()->setOutputFormat(QPrinter::PdfFormat);
    preview.printer()->setOutputFileName("/no/such/folder/job.pdf");
    preview.findChild<QPrintPreviewWidget*>()->print();
    preview.reject();
  });
  EXPECT_THROW(QtPrinter().Print(job), Error);
}

/// Stands for the program that shows files.
class Viewer : public QObject {
  Q_OBJECT
 public:
  QUrl Shown;
 public slots:
  void Show(const QUrl& url) { Shown = url; }
};

TEST(Sheet, ABookStaysOnlyIfAProgramShowsIt) {
  const QTemporaryDir folder;
  const QByteArray before = qgetenv("TMPDIR");
  qputenv("TMPDIR", folder.path().toUtf8());
  Workbook book;
  book.Cell(1, 1, "текст");
  const auto books = [&] { return QDir(folder.path()).entryList({"zrt_*.xlsx"}, QDir::Files); };
  QtSpreadsheet().Open(book);  // no program here
  EXPECT_TRUE(books().isEmpty());

  Viewer viewer;
  QDesktopServices::setUrlHandler("file", &viewer, "Show");
  QtSpreadsheet().Open(book);
  QDesktopServices::unsetUrlHandler("file");
  ASSERT_EQ(books().size(), 1);
  EXPECT_EQ(viewer.Shown.toLocalFile(), folder.filePath(books().front()));
  qputenv("TMPDIR", before);
}

}  // namespace
}  // namespace zrt

#include "printer_test.moc"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
