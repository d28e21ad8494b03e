#include "ui/qt/boxes.h"

#include <QDesktopServices>
#include <QGridLayout>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpacerItem>
#include <QUrl>

#include "ui/qt/line_validator.h"
#include "ui/qt/qt_text.h"

namespace zrt {

namespace {

QMessageBox::Icon QtIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kCritical:
      return QMessageBox::Critical;
    case BoxIcon::kQuestion:
      return QMessageBox::Question;
    case BoxIcon::kExclamation:
      return QMessageBox::Warning;
    case BoxIcon::kInformation:
      return QMessageBox::Information;
    case BoxIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

QString BoxText(const std::string& text) {
  return ToQt(WithPlainBreaks(text));
}

void AddButtons(QMessageBox& box, BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kOk:
      box.setStandardButtons(QMessageBox::Ok);
      break;
    case BoxButtons::kOkCancel:
      box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
      break;
    case BoxButtons::kYesNo:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
      box.setEscapeButton(QMessageBox::No);
      break;
  }
}

void AddDetails(QMessageBox& box, const std::string& details) {
  if (details.empty()) return;
  box.setDetailedText(ToQt(details));
  for (QAbstractButton* button : box.buttons()) {
    if (box.buttonRole(button) != QMessageBox::ActionRole) continue;
    const auto name = [button] { button->setText(QStringLiteral("Подробности")); };
    name();
    // The toolkit names it anew at each press.
    QObject::connect(button, &QAbstractButton::clicked, button, name, Qt::QueuedConnection);
  }
}

/// The window system cuts a title that is wider than its window: room for it, and for the system's buttons beside it.
int WidthOfTitle(const QWidget& box) {
  constexpr int kButtonsBeside = 120;
  QFont bold = box.font();
  bold.setBold(true);
  return QFontMetrics(bold).horizontalAdvance(box.windowTitle()) + kButtonsBeside;
}

void MakeAsWideAsItsTitle(QMessageBox& box) {
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  if (grid == nullptr) return;
  auto* width = new QSpacerItem(WidthOfTitle(box), 0, QSizePolicy::Minimum, QSizePolicy::Fixed);
  grid->addItem(width, grid->rowCount(), 0, 1, grid->columnCount());
}

}  // namespace

BoxAnswer ShowMessage(const Message& message, const DriveMap& drives, QWidget* owner) {
  QMessageBox box(owner);
  box.setIcon(QtIcon(message.icon));
  box.setWindowTitle(ToQt(message.title));
  box.setTextFormat(Qt::PlainText);
  box.setText(BoxText(message.text));
  AddButtons(box, message.buttons);
  if (message.usual == BoxAnswer::kNo) box.setDefaultButton(QMessageBox::No);
  AddDetails(box, message.details);
  const QAbstractButton* folder = nullptr;
  if (!message.folder.empty()) {
    folder = box.addButton(QStringLiteral("Открыть папку"), QMessageBox::ActionRole);
    box.setEscapeButton(QMessageBox::Ok);
  }
  MakeAsWideAsItsTitle(box);
  const int pressed = box.exec();
  if (folder != nullptr && box.clickedButton() == folder) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(ToQt(drives.ToNative(message.folder).string())));
  }
  switch (pressed) {
    case QMessageBox::Cancel:
      return BoxAnswer::kCancel;
    case QMessageBox::Yes:
      return BoxAnswer::kYes;
    case QMessageBox::No:
      return BoxAnswer::kNo;
    default:
      return BoxAnswer::kOk;
  }
}

std::string AskLine(const Question& question, QWidget* owner) {
  QInputDialog box(owner);
  box.setWindowTitle(ToQt(question.title));
  box.setLabelText(BoxText(question.prompt));
  box.setTextEchoMode(question.hidden ? QLineEdit::Password : QLineEdit::Normal);
  box.setTextValue(ToQt(question.preset));
  box.resize(box.sizeHint().expandedTo(QSize(WidthOfTitle(box), 0)));
  if (auto* edit = box.findChild<QLineEdit*>()) KeepToOneLine(*edit);
  return box.exec() == QDialog::Accepted ? box.textValue().toStdString() : std::string();
}

}  // namespace zrt
