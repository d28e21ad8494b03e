#include "ui/qt/qt_application.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QKeyEvent>
#include <QLibraryInfo>
#include <QLocale>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QTranslator>
#include <algorithm>

namespace zrt {

namespace {

/// Fusion, with buttons of boxes that carry words alone.
class CalmStyle final : public QProxyStyle {
 public:
  CalmStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* more) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, more);
  }
};

QPalette LightPalette() {
  const QColor window(0xF0, 0xF0, 0xEE);
  const QColor text(0x1C, 0x1C, 0x1C);
  const QColor faint(0x8C, 0x8C, 0x8C);
  QPalette palette(window);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::AlternateBase, QColor(0xF4, 0xF6, 0xF8));
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Button, QColor(0xE6, 0xE6, 0xE4));
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::ToolTipBase, QColor(0xFF, 0xFF, 0xE6));
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Highlight, QColor(0x2F, 0x6D, 0xB3));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  // A non-editable list shows a text that is none of its items as a placeholder.
  palette.setColor(QPalette::PlaceholderText, text);
  // A grid without the keyboard still shows its row, in a quieter colour.
  palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(0xBD, 0xD3, 0xEA));
  palette.setColor(QPalette::Inactive, QPalette::HighlightedText, text);
  palette.setColor(QPalette::Disabled, QPalette::Base, window);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faint);
  }
  return palette;
}

/// The keypad's decimal key types the decimal comma, whatever the keyboard's layout makes of it.
class DecimalKey final : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
    const auto& pressed = *static_cast<QKeyEvent*>(event);
    if (!pressed.modifiers().testFlag(Qt::KeypadModifier) || pressed.text() != QLatin1String(".")) return false;
    QKeyEvent comma(QEvent::KeyPress, Qt::Key_Comma, pressed.modifiers(), QStringLiteral(","), pressed.isAutoRepeat());
    QCoreApplication::sendEvent(watched, &comma);
    return true;
  }
};

}  // namespace

void SetUpApplication(QApplication& application) {
  QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
  QApplication::setStyle(new CalmStyle);
  QApplication::setPalette(LightPalette());
  // As large as the operator has made the desktop's own, but never smaller than what reads well all day.
  constexpr int kLeastPoints = 9;
  const int points = std::max(QFontDatabase::systemFont(QFontDatabase::GeneralFont).pointSize(), kLeastPoints);
  QFont font("Liberation Sans", points);
  font.setStyleHint(QFont::SansSerif);
  QApplication::setFont(font);
  QApplication::setWindowIcon(QIcon(":/zrt/zrt.png"));
  // The main window may be hidden while the program goes on; it ends when the main window is unloaded.
  QApplication::setQuitOnLastWindowClosed(false);

  application.installEventFilter(new DecimalKey(&application));

  auto* translator = new QTranslator(&application);
  if (translator->load(QLocale(), "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(translator);
  }
}

}  // namespace zrt
