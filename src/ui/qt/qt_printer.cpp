#include "ui/qt/qt_printer.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QShortcut>
#include <QTimer>
#include <QToolButton>
#include <exception>
#include <vector>

#include "core/errors.h"
#include "platform/twips.h"
#include "ui/qt/qt_text.h"

namespace zrt {

namespace {

constexpr int kTwipsPerPoint = 20;
constexpr int kMargin = 720;

/// Twips that a character may take: the report's lines put 22 of them before their second column at 2100.
constexpr double kTwipsPerCharacter = 2100.0 / 22;

/// A Courier-like face of `points`, drawn narrower until a character fits its place.
QFont PrintFont(int points, QPrinter& paper) {
  QFont font(QStringLiteral("Courier New"), points);
  font.setStyleHint(QFont::Monospace);
  const double dots = QFontMetricsF(font, &paper).horizontalAdvance(QLatin1Char('0'));
  const double twips = dots * kTwipsPerInch / paper.resolution();
  constexpr double kUnstretched = 100;
  if (twips > kTwipsPerCharacter) font.setStretch(static_cast<int>(kUnstretched * kTwipsPerCharacter / twips));
  return font;
}

/// Buttons of a tool bar take no keyboard by themselves, and printing is the one thing that the preview is opened for.
void MakeUsableByKeyboard(QPrintPreviewDialog& preview) {
  for (QToolButton* button : preview.findChildren<QToolButton*>()) {
    button->setFocusPolicy(Qt::StrongFocus);
    const QAction* action = button->defaultAction();
    if (action == nullptr) continue;
    if (action->text() == QCoreApplication::translate("QPrintPreviewDialog", "Print")) {
      // Showing the window gives the keyboard to the pages.
      QTimer::singleShot(0, button, [button] { button->setFocus(); });
      auto* print = new QShortcut(QKeySequence::Print, &preview);
      QObject::connect(print, &QShortcut::activated, button, &QAbstractButton::click);
    }
  }
}

}  // namespace

void PaintJob(const PrintJob& job, QPrinter& paper) {
  paper.setFullPage(true);
  paper.setDocName(ToQt(job.title));
  QPainter painter;
  if (!painter.begin(&paper)) throw Error("the printer takes no document");
  const QFont font = PrintFont(job.points, paper);
  const double advance = QFontMetricsF(font, &paper).horizontalAdvance(QLatin1Char('0'));
  const double dots_per_twip = static_cast<double>(paper.resolution()) / kTwipsPerInch;
  const double line_height = job.points * kTwipsPerPoint * 1.15 * dots_per_twip;
  const double ascent = QFontMetricsF(font, &paper).ascent();
  const double top = kMargin * dots_per_twip;
  const double bottom = paper.pageRect(QPrinter::DevicePixel).height() - top;
  double y = top;
  for (const std::vector<PrintedPiece>& line : job.lines) {
    if (y + line_height > bottom) {
      if (!paper.newPage()) throw Error("the printer takes no further page");
      y = top;
    }
    for (std::size_t i = 0; i < line.size(); ++i) {
      const QString text = ToQt(line[i].text);
      // A piece fills the room up to the next one, so that words and rules go on unbroken.
      QFont spaced = font;
      if (i + 1 < line.size() && !text.isEmpty()) {
        const double room = (line[i + 1].left - line[i].left) * dots_per_twip;
        const double natural = advance * static_cast<double>(text.size());
        spaced.setLetterSpacing(QFont::PercentageSpacing, 100 * room / natural);
      }
      painter.setFont(spaced);
      painter.drawText(QPointF((kMargin + line[i].left) * dots_per_twip, y + ascent), text);
    }
    y += line_height;
  }
  if (!painter.end()) throw Error("the printer didn't take the document");
}

void QtPrinter::Print(const PrintJob& job) {
  QPrinter paper(QPrinter::HighResolution);
  if (QPrinterInfo::availablePrinterNames().isEmpty()) paper.setOutputFormat(QPrinter::PdfFormat);
  paper.setDocName(ToQt(job.title));
  QWidget* owner = QApplication::activeWindow();
  QPrintPreviewDialog preview(&paper, owner);
  constexpr QSize kRoom(800, 680);
  preview.resize(kRoom);
  MakeUsableByKeyboard(preview);
  std::exception_ptr failure;
  QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, [&](QPrinter* target) {
    // The preview's own loop lets no exception pass.
    try {
      PaintJob(job, *target);
    } catch (...) {
      failure = std::current_exception();
    }
  });
  preview.exec();
  if (owner != nullptr) owner->activateWindow();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace zrt
