#include "ui/qt/guide_window.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QImage>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTextBlock>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <algorithm>

namespace zrt {

namespace {

QUrl PageUrl(const QString& page) {
  return QUrl(QStringLiteral("qrc:/docs/guide.ru/%1.md").arg(page));
}

QString PageOf(const QWidget& window) {
  for (const QWidget* part : window.findChildren<QWidget*>()) {
    QString page = part->property("guidePage").toString();
    if (!page.isEmpty() && part->isVisible()) return page;
  }
  const QString page = window.property("guidePage").toString();
  return page.isEmpty() ? QStringLiteral("index") : page;
}

/// Pictures of whole windows are drawn as wide as the page at most.
class Browser final : public QTextBrowser {
 public:
  using QTextBrowser::QTextBrowser;

  QVariant loadResource(int type, const QUrl& name) override {
    QVariant resource = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return resource;
    QImage picture;
    picture.loadFromData(resource.toByteArray());
    constexpr int kMargins = 40;
    const int room = std::max(viewport()->width() - kMargins, kMargins);
    return picture.width() > room ? picture.scaledToWidth(room, Qt::SmoothTransformation) : picture;
  }
};

class Guide final : public QDialog {
 public:
  explicit Guide(QWidget* owner) : QDialog(owner), browser_(new Browser) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAccessibleDescription(QStringLiteral("guide"));
    constexpr QSize kPage(820, 640);
    resize(kPage.boundedTo(screen()->availableSize()));
    auto* contents = new QPushButton(QStringLiteral("Содержание"));
    auto* back = new QPushButton(QStringLiteral("Назад"));
    auto* close = new QPushButton(QStringLiteral("Закрыть"));
    back->setEnabled(false);
    connect(contents, &QPushButton::clicked, this, [this] { Show(QStringLiteral("index")); });
    connect(back, &QPushButton::clicked, browser_, &QTextBrowser::backward);
    connect(browser_, &QTextBrowser::sourceChanged, this,
            [this] { setWindowTitle(QStringLiteral("Руководство: ") + browser_->document()->firstBlock().text()); });
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {contents, back}) buttons->addWidget(button);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(browser_);
    layout->addLayout(buttons);
    for (QPushButton* button : {contents, back, close}) button->setAutoDefault(false);
    browser_->setFocus();
  }

  void Show(const QString& page) { browser_->setSource(PageUrl(page)); }

 private:
  Browser* browser_;
};

}  // namespace

void OpenGuide(QWidget& window) {
  // One guide is enough, and it belongs to the window over which it was asked for.
  static QPointer<Guide> guide;
  if (guide != nullptr && guide->parentWidget() != &window) guide->close();
  if (guide == nullptr || guide->parentWidget() != &window) guide = new Guide(&window);
  guide->show();
  guide->Show(PageOf(window));
  guide->activateWindow();
}

}  // namespace zrt
