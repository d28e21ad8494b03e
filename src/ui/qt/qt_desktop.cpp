#include "ui/qt/qt_desktop.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include "core/errors.h"
#include "ui/qt/form_window.h"

namespace zrt {

namespace {

/// Line breaks of the program's texts come in several kinds; a box knows one.
QString BoxText(const std::string& text) { return QString::fromStdString(text).remove('\r'); }

QMessageBox::Icon ToIcon(BoxIcon icon) {
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

}  // namespace

QtDesktop::QtDesktop(RegionalFormat format, const DriveMap& drives) : Desktop(std::move(format)), drives_(drives) {}

QtDesktop::~QtDesktop() {
  // Windows whose forms went while the toolkit was still in them.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int QtDesktop::Run() { return exit_code_ ? *exit_code_ : QApplication::exec(); }

void QtDesktop::Quit(int code) {
  exit_code_ = code;
  QApplication::exit(code);
}

void QtDesktop::SetFocus(Control& control) {
  if (FormWindow* window = WindowOf(control.Owner())) window->SetFocus(control);
}

void QtDesktop::Repaint(Control& control) {
  if (FormWindow* window = WindowOf(control.Owner())) window->Repaint(control);
}

BoxAnswer QtDesktop::DoMsgBox(const std::string& text, BoxIcon icon, BoxButtons buttons, const std::string& title) {
  QMessageBox box(ToIcon(icon), QString::fromStdString(title), BoxText(text), QMessageBox::NoButton,
                  QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
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
  switch (box.exec()) {
    case QMessageBox::Yes:
      return BoxAnswer::kYes;
    case QMessageBox::No:
      return BoxAnswer::kNo;
    case QMessageBox::Cancel:
      return BoxAnswer::kCancel;
    default:
      return BoxAnswer::kOk;
  }
}

std::string QtDesktop::DoInputBox(const std::string& prompt, const std::string& title, const std::string& preset) {
  return QInputDialog::getText(QApplication::activeWindow(), QString::fromStdString(title), BoxText(prompt),
                               QLineEdit::Normal, QString::fromStdString(preset))
      .toStdString();
}

void QtDesktop::DoShow(Form& form, bool modal) {
  auto& window = windows_[&form];
  if (!window) window = std::make_unique<FormWindow>(ViewContext{*this, drives_}, form);
  window->Open(modal);
}

void QtDesktop::DoModalLoop(Form& form) {
  if (FormWindow* window = WindowOf(form)) window->RunModal();
}

void QtDesktop::DoHide(Form& form) {
  if (FormWindow* window = WindowOf(form)) window->Hide();
  Form* next = Front();
  if (FormWindow* window = next == nullptr ? nullptr : WindowOf(*next)) window->BringForward();
}

void QtDesktop::DoUnload(Form& form) {
  const auto found = windows_.find(&form);
  if (found == windows_.end()) return;
  found->second->Detach();
  // The handler that unloads a form may have been called from a widget of this very window.
  found->second.release()->deleteLater();
  windows_.erase(found);
}

void QtDesktop::DoRuntimeError(const std::exception& error) {
  std::string text = "Ошибка выполнения. Действие прервано.";
  if (const auto* file = dynamic_cast<const FileError*>(&error)) text += "\n" + file->Path();
  DoMsgBox(text, BoxIcon::kCritical, BoxButtons::kOk, ProgramTitle);
}

FormWindow* QtDesktop::WindowOf(const Form& form) const {
  const auto found = windows_.find(&form);
  return found == windows_.end() ? nullptr : found->second.get();
}

}  // namespace zrt
