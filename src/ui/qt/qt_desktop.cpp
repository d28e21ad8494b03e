#include "ui/qt/qt_desktop.h"

#include <QApplication>
#include <algorithm>
#include <string>

#include "core/errors.h"
#include "ui/form.h"
#include "ui/qt/boxes.h"
#include "ui/qt/form_window.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/view_kinds.h"

namespace zrt {

namespace {

bool IsMainWindow(const auto& shown) {
  return shown.second->Window()->property("mainWindow").toBool();
}

}  // namespace

QtDesktop::QtDesktop(RegionalFormat format, const DriveMap& drives) : Desktop(std::move(format)), drives_(drives) {
  server_wait_.FrontWindow = [this] { return FrontWindow(); };
  server_wait_.IsStarting = [this] {
    return std::ranges::none_of(windows_, [](const auto& one) { return IsMainWindow(one); });
  };
  server_wait_.OnResumed = [this] {
    QMetaObject::invokeMethod(
        &retired_, [this] { NoteFront(); }, Qt::QueuedConnection);
  };
}

QtDesktop::~QtDesktop() = default;

int QtDesktop::Run() {
  if (exit_code_) return *exit_code_;
  running_ = true;
  return QApplication::exec();
}

void QtDesktop::Quit(int code) {
  if (exit_code_) return;
  exit_code_ = code;
  if (!running_) return;
  // Queued: once the toolkit knows that it is to end it shows no more boxes, and the present action may have one to
  // show.
  QMetaObject::invokeMethod(
      &retired_, [code] { QApplication::exit(code); }, Qt::QueuedConnection);
}

FormWindow* QtDesktop::WindowOf(const Form& form) const {
  const auto found = windows_.find(&form);
  return found == windows_.end() ? nullptr : found->second.get();
}

QWidget* QtDesktop::FrontWindow() const {
  const FormWindow* window = Front() == nullptr ? nullptr : WindowOf(*Front());
  return window == nullptr ? nullptr : window->Window();
}

QWidget* QtDesktop::MainWindowFor(const Form& form) const {
  const auto main = std::ranges::find_if(windows_, [](const auto& one) { return IsMainWindow(one); });
  return main == windows_.end() || main->first == &form ? nullptr : main->second->Window();
}

ShortcutHost QtDesktop::Shortcuts() {
  const auto main_window = [this]() -> QWidget* {
    const auto main = std::ranges::find_if(windows_, [](const auto& one) { return IsMainWindow(one); });
    return main == windows_.end() ? nullptr : main->second->Window();
  };
  // In the order of their opening.
  const auto next_window = [this](QWidget& present) -> QWidget* {
    std::vector<QWidget*> open;
    for (const Form* form : LoadedForms()) {
      if (form->IsVisible()) open.push_back(WindowOf(*form)->Window());
    }
    const auto at = std::ranges::find(open, &present);
    if (at == open.end() || open.size() < 2) return nullptr;
    return at + 1 == open.end() ? open.front() : *(at + 1);
  };
  return {main_window, next_window};
}

void QtDesktop::NoteFront() {
  for (const auto& [form, window] : windows_) {
    if (window->Window()->isActiveWindow() && Front() != form)
      return UserAction([this, &shown = *window] { Activated(shown.TheForm()); });
  }
}

void QtDesktop::SetFocus(Control& control) {
  FormWindow* window = WindowOf(control.Owner());
  if (window != nullptr && window->Window()->isVisible()) {
    window->Focus(control);
  } else {
    wanted_focus_[&control.Owner()] = &control;
  }
}

void QtDesktop::Repaint(Control& control) {
  server_wait_.Tick();
  if (FormWindow* window = WindowOf(control.Owner())) window->Repaint(control);
}

void QtDesktop::DoShow(Form& form, bool modal) {
  // The window that was in front before; the form itself counts as shown already.
  const QWidget* owner = QApplication::activeWindow();
  std::unique_ptr<FormWindow>& window = windows_[&form];
  if (window == nullptr) window = std::make_unique<FormWindow>(form, drives_, Shortcuts());
  if (owner == window->Window()) owner = nullptr;
  const bool passing = !modal && IsWalkedOver(QApplication::focusWidget());
  window->Open({modal, owner, modal ? owner : MainWindowFor(form), !passing});
  if (const auto wanted = wanted_focus_.find(&form); wanted != wanted_focus_.end()) {
    window->Focus(*wanted->second);
    wanted_focus_.erase(wanted);
  }
}

void QtDesktop::DoModalLoop(Form& form) {
  while (form.IsVisible() && !exit_code_) WindowOf(form)->WaitUntilHidden();
  if (QWidget* owner = FrontWindow()) owner->activateWindow();
}

void QtDesktop::DoHide(Form& form) {
  if (FormWindow* window = WindowOf(form)) window->Hide();
}

void QtDesktop::DoUnload(Form& form) {
  wanted_focus_.erase(&form);
  if (const auto found = windows_.find(&form); found != windows_.end()) {
    FormWindow* window = found->second.release();
    windows_.erase(found);
    window->Retire();
    window->setParent(&retired_);
    window->deleteLater();
  }
  if (LoadedForms().empty()) Quit(0);
}

BoxAnswer QtDesktop::DoMsgBox(const Message& message) {
  const BoxAnswer answer = ShowMessage(message, drives_, FrontWindow());
  if (QWidget* owner = FrontWindow()) owner->activateWindow();
  return answer;
}

std::string QtDesktop::DoInputBox(const std::string& prompt, const std::string& title, const std::string& preset) {
  std::string line = AskLine({prompt, title, preset, false}, FrontWindow());
  if (QWidget* owner = FrontWindow()) owner->activateWindow();
  return line;
}

std::string QtDesktop::DoPasswordBox(const std::string& prompt, const std::string& title) {
  std::string line = AskLine({prompt, title, {}, true}, FrontWindow());
  if (QWidget* owner = FrontWindow()) owner->activateWindow();
  return line;
}

void QtDesktop::DoRuntimeError(const std::exception& error) {
  std::string text = "Ошибка выполнения. Действие прервано.";
  if (const auto* file = dynamic_cast<const FileError*>(&error)) text += "\n" + file->Path();
  const auto* failure = dynamic_cast<const DatabaseError*>(&error);
  if (failure != nullptr && !failure->Task().empty()) text += "\n" + failure->Task();
  TellFailure(text, error);
}

}  // namespace zrt
