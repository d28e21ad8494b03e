#include "ui/qt/form_window.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QScreen>
#include <QSplitter>
#include <QWindow>
#include <algorithm>

#include "platform/twips.h"
#include "ui/qt/form_factory.h"
#include "ui/qt/kept_look.h"
#include "ui/qt/qt_text.h"

namespace zrt {

TimerView::TimerView(Timer& timer) : timer_(timer) {
  clock_.setSingleShot(true);
  connect(&clock_, &QTimer::timeout, this, [this] { Fire(); });
  timer.SetView(this);
}

void TimerView::Show(const PropertyBase&) {
  if (!firing_) Restart();
}

void TimerView::Retire() {
  clock_.stop();
  clock_.disconnect(this);
  timer_.SetView(nullptr);
}

void TimerView::Restart() {
  clock_.stop();
  if (timer_.Enabled() && timer_.Interval() > 0) clock_.start(timer_.Interval());
}

void TimerView::Fire() {
  firing_ = true;
  timer_.Owner().TheDesktop().UserAction([this] { timer_.UserFire(); });
  firing_ = false;
  if (timer_.View() == this) Restart();
}

FormWindow::FormWindow(Form& form, const DriveMap& drives, const ShortcutHost& shortcuts)
    : form_(form), window_(BuildFormWindow(form.Name())) {
  if (window_->property("frameless").toBool()) window_->setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
  window_->setAccessibleDescription(ToQt(form.Name()));
  window_->installEventFilter(this);
  for (Control* control : form.Controls()) {
    views_.push_back(MakeView(*control, window_->findChild<QObject*>(ToQt(control->Name())), drives));
  }
  for (Timer* timer : form.Timers()) timers_.push_back(std::make_unique<TimerView>(*timer));
  form.SetView(this);
  // One that any key closes has no other use for keys.
  if (!form_.Click) InstallShortcuts(*window_, shortcuts);
}

FormWindow::~FormWindow() {
  if (alive_) Retire();
}

void FormWindow::Retire() {
  if (placed_) KeepSize();
  alive_ = false;
  form_.SetView(nullptr);
  for (const auto& view : views_) view->Retire();
  for (const auto& timer : timers_) timer->Retire();
  Hide();
}

void FormWindow::Show(const PropertyBase& property) {
  if (&property == &form_.Caption) {
    window_->setWindowTitle(ToQt(form_.Caption()));
  } else if (&property == &form_.Height && form_.Height() > 0) {
    if (window_->layout() != nullptr) window_->layout()->activate();
    window_->resize(window_->width(), form_.Height() * window_->logicalDpiY() / kTwipsPerInch);
  } else if (&property == &form_.Width && form_.Width() > 0) {
    if (window_->layout() != nullptr) window_->layout()->activate();
    window_->resize(form_.Width() * window_->logicalDpiX() / kTwipsPerInch, window_->height());
  }
}

void FormWindow::Open(const Place& place) {
  if (!window_->isVisible()) {
    window_->setWindowModality(place.modal ? Qt::ApplicationModal : Qt::NonModal);
    if (!placed_ && !ShowKeptSize()) PutInTheMiddle(place.owner);
    placed_ = true;
    window_->winId();
    window_->windowHandle()->setTransientParent(place.above != nullptr ? place.above->windowHandle() : nullptr);
  }
  // The widget's attribute is read when its window is made alone.
  window_->windowHandle()->setProperty("_q_showWithoutActivating", !place.with_keyboard);
  window_->show();
  window_->raise();
  if (place.with_keyboard) window_->activateWindow();
}

bool FormWindow::ShowKeptSize() {
  const QString form = ToQt(form_.Name());
  for (QSplitter* splitter : window_->findChildren<QSplitter*>()) {
    splitter->restoreState(KeptLook("splitters/" + form + '.' + splitter->objectName()).toByteArray());
  }
  return IsMain() && window_->restoreGeometry(KeptLook("windows/" + form).toByteArray());
}

void FormWindow::KeepSize() const {
  const QString form = ToQt(form_.Name());
  for (const QSplitter* splitter : window_->findChildren<QSplitter*>()) {
    KeepLook("splitters/" + form + '.' + splitter->objectName(), splitter->saveState());
  }
  if (IsMain()) KeepLook("windows/" + form, window_->saveGeometry());
}

void FormWindow::PutInTheMiddle(const QWidget* owner) {
  // Layouts that keep their window at one size do so now.
  if (window_->layout() != nullptr) window_->layout()->activate();
  const QRect screen = (owner != nullptr ? owner : window_.get())->screen()->availableGeometry();
  const QSize size = window_->size().boundedTo(screen.size());
  const QPoint middle = owner != nullptr && owner->isVisible() ? owner->geometry().center() : screen.center();
  QRect place(QPoint(), size);
  place.moveCenter(middle);
  place.moveLeft(std::clamp(place.left(), screen.left(), std::max(screen.left(), screen.right() - size.width())));
  place.moveTop(std::clamp(place.top(), screen.top(), std::max(screen.top(), screen.bottom() - size.height())));
  window_->setGeometry(place);
}

void FormWindow::WaitUntilHidden() {
  QEventLoop loop;
  QEventLoop* outer = std::exchange(waiting_, &loop);
  loop.exec();
  waiting_ = outer;
}

void FormWindow::Hide() {
  window_->hide();
  if (waiting_ != nullptr) waiting_->quit();
}

void FormWindow::Focus(const Control& control) {
  const ControlView* view = ViewOf(control);
  if (view != nullptr && view->Widget() != nullptr) view->Widget()->setFocus(Qt::OtherFocusReason);
}

void FormWindow::Repaint(const Control& control) {
  if (!window_->isVisible()) return;
  ControlView* view = ViewOf(control);
  if (view != nullptr && view->RepaintAlone()) return;
  // A label that has just got a longer text gets the room for it first.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  window_->repaint();
}

ControlView* FormWindow::ViewOf(const Control& control) const {
  for (const auto& view : views_) {
    if (&view->TheControl() == &control) return view.get();
  }
  return nullptr;
}

bool FormWindow::IsOfAControl(const QWidget* widget) const {
  for (; widget != nullptr && widget != window_.get(); widget = widget->parentWidget()) {
    for (const auto& view : views_) {
      if (view->Widget() == widget && widget->focusPolicy() != Qt::NoFocus) return true;
    }
  }
  return false;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (!alive_ || watched != window_.get()) return QObject::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::Close:
      event->ignore();
      TheDesktop().UserAction([this] { form_.Close(); });
      return true;
    case QEvent::WindowActivate: {
      // A window behind a modal one may be told that it is in front while the other one is still opening.
      const QWidget* modal = QApplication::activeModalWidget();
      if (TheDesktop().Front() != &form_ && (modal == nullptr || modal == window_.get())) {
        TheDesktop().UserAction([this] { TheDesktop().Activated(form_); });
      }
      return false;
    }
    case QEvent::KeyPress: {
      const auto& pressed = *static_cast<QKeyEvent*>(event);
      if (IsModifierAlone(pressed)) return false;
      // What a control's widget leaves has been through the control's handlers already.
      Key key = KeyOf(pressed);
      if (!form_.KeyDown || (key.code != Key::kOther && IsOfAControl(window_->focusWidget()))) return false;
      TheDesktop().UserAction([&] { form_.KeyDown.Raise(key); });
      return !alive_ || key.code != Key::kOther;
    }
    case QEvent::MouseButtonPress:
      if (!form_.Click) return false;
      TheDesktop().UserAction([this] { form_.Click.Raise(); });
      return true;
    default:
      return false;
  }
}

}  // namespace zrt
