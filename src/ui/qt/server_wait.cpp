#include "ui/qt/server_wait.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <cstdlib>
#include <memory>

namespace zrt {

namespace {

constexpr int kCursorAfter = 200;  // milliseconds, as all below
constexpr int kNoteAfter = 1000;
constexpr int kBreath = 40;
constexpr int kLifeEvery = 100;

// Handing a call to another thread costs tens of microseconds. A posting of thousands of quick statements would feel
// that; they are made in place once they have shown to be quick, as the server has just answered.
constexpr int kCallsHandedOver = 50;
constexpr qint64 kQuickCall = 5'000'000;  // nanoseconds

bool IsInput(const QEvent& event) {
  switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

/// The line at the foot of the window that is being waited in.
class Note final : public QLabel {
 public:
  explicit Note(QWidget* window) : QLabel(window) {
    setObjectName(QStringLiteral("decoServerNote"));
    setAlignment(Qt::AlignCenter);
    setMargin(6);
    setWordWrap(true);
    setStyleSheet(QStringLiteral("background: #ffffe6; color: #1c1c1c; border: 1px solid #b8b890;"));
    since_.start();
  }

  void Say(const QString& what, const QString& escape) {
    const QString seconds = QString::number(since_.elapsed() / 1000 + kNoteAfter / 1000);
    setText(QStringLiteral("%1: %2 с\nEsc - %3").arg(what, seconds, escape));
    const int height = heightForWidth(parentWidget()->width());
    setGeometry(0, parentWidget()->height() - height, parentWidget()->width(), height);
    raise();
    show();
  }

 private:
  QElapsedTimer since_;
};

}  // namespace

QtServerWait::QtServerWait() {
  // Nothing may be tidied up: the other thread is in the middle of the driver.
  GiveUp = [] { std::_Exit(EXIT_FAILURE); };
  qApp->installEventFilter(this);
}

QtServerWait::~QtServerWait() {
  if (!worker_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  work_given_.notify_one();
  worker_.join();
}

void QtServerWait::ActionBegins() {
  ShowCursor(false);
  action_.start();
  calls_ = 0;
}

void QtServerWait::ActionEnds() {
  ShowCursor(false);
}

void QtServerWait::Tick() {
  if (waiting_ || !action_.isValid()) return;
  if (action_.elapsed() >= kCursorAfter) ShowCursor(true);
  if (action_.elapsed() >= kNoteAfter && (!lived_.isValid() || lived_.elapsed() >= kLifeEvery)) LetLive();
}

void QtServerWait::LetLive() {
  const QScopedValueRollback waiting(waiting_, true);
  if (stop_offered_ && !stop_wanted_) ShowNote(QStringLiteral("Идёт работа"));
  closed_.clear();
  QApplication::processEvents();
  wants_end_ = false;  // no call that one could leave alone
  CloseLater();
  lived_.start();
}

void QtServerWait::CloseLater() {
  // Something that is asked over the window by then keeps it open.
  if (closed_ != nullptr) QTimer::singleShot(kLifeEvery, closed_, [window = closed_.data()] { window->close(); });
}

void QtServerWait::OfferStop(bool offered) {
  stop_offered_ = offered;
  stop_wanted_ = false;
  if (!offered) note_.reset();
}

bool QtServerWait::IsStopWanted() {
  Tick();
  return stop_wanted_;
}

void QtServerWait::ShowNote(const QString& what) {
  if (note_ == nullptr) {
    QWidget* window = FrontWindow ? FrontWindow() : nullptr;
    if (window == nullptr) return;
    note_ = std::make_unique<Note>(window);
  }
  const bool stop = stop_offered_ && !stop_wanted_;
  static_cast<Note&>(*note_).Say(
      what, stop ? QStringLiteral("остановить") : QStringLiteral("не ждать и закончить программу"));
}

void QtServerWait::Make(const std::function<void()>& call) {
  Tick();
  QElapsedTimer taken;
  taken.start();
  if (calls_++ >= kCallsHandedOver && last_call_ns_ < kQuickCall) {
    call();
  } else {
    HandOver(call);
    if (!IsDone(kCursorAfter)) {
      ShowCursor(true);
      if (!IsDone(kNoteAfter - kCursorAfter)) KeepAlive();
    }
  }
  last_call_ns_ = taken.nsecsElapsed();
}

void QtServerWait::HandOver(const std::function<void()>& call) {
  if (!worker_.joinable()) worker_ = std::thread([this] { Work(); });
  {
    const std::lock_guard lock(mutex_);
    call_ = &call;
  }
  work_given_.notify_one();
}

void QtServerWait::Work() {
  std::unique_lock lock(mutex_);
  while (true) {
    work_given_.wait(lock, [this] { return call_ != nullptr || stop_; });
    if (stop_) return;
    lock.unlock();
    (*call_)();
    lock.lock();
    call_ = nullptr;
    work_done_.notify_one();
  }
}

bool QtServerWait::IsDone(int milliseconds) {
  std::unique_lock lock(mutex_);
  return work_done_.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return call_ == nullptr; });
}

void QtServerWait::KeepAlive() {
  waiting_ = true;
  wants_end_ = false;
  closed_.clear();
  while (!IsDone(kBreath)) {
    ShowNote(QStringLiteral("Жду ответа сервера базы данных"));
    QApplication::processEvents();
    if (std::exchange(wants_end_, false)) AskToEnd();
  }
  note_.reset();
  waiting_ = false;
  if (OnResumed) OnResumed();
}

void QtServerWait::AskToEnd() {
  if (!IsStarting || !IsStarting()) {
    QMessageBox box(QMessageBox::Question, QApplication::applicationDisplayName(),
                    QStringLiteral("Сервер ещё не ответил. Закончить программу, не дожидаясь ответа?\n"
                                   "Выполнено ли начатое действие, останется неизвестным."),
                    QMessageBox::Yes | QMessageBox::No, FrontWindow ? FrontWindow() : nullptr);
    box.setDefaultButton(QMessageBox::No);
    QTimer answered;
    connect(&answered, &QTimer::timeout, &box, [&] {
      if (IsDone(0)) box.done(QMessageBox::NoButton);
    });
    answered.start(kBreath);
    question_ = &box;
    ShowCursor(false);
    const int pressed = box.exec();
    question_ = nullptr;
    if (pressed == QMessageBox::NoButton) CloseLater();
    closed_.clear();
    if (pressed != QMessageBox::Yes) return ShowCursor(!IsDone(0));
  }
  GiveUp();
}

void QtServerWait::ShowCursor(bool wait) {
  if (wait == std::exchange(cursor_, wait)) return;
  if (wait) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

bool QtServerWait::eventFilter(QObject* watched, QEvent* event) {
  // A window that asks something blocks the others; the time that the operator takes is not the program's.
  if (event->type() == QEvent::WindowBlocked) ShowCursor(false);
  if (event->type() == QEvent::WindowUnblocked) action_.start();
  if (!waiting_ || !IsInput(*event) || IsOfQuestion(watched)) return false;
  const bool escape =
      event->type() == QEvent::KeyPress && static_cast<const QKeyEvent*>(event)->key() == Qt::Key_Escape;
  if (escape && stop_offered_ && !stop_wanted_) {
    stop_wanted_ = true;
  } else if (escape || event->type() == QEvent::Close) {
    wants_end_ = true;
    if (!escape) closed_ = qobject_cast<QWindow*>(watched);
  }
  event->ignore();
  return true;
}

bool QtServerWait::IsOfQuestion(QObject* watched) const {
  if (question_ == nullptr) return false;
  if (const auto* widget = qobject_cast<QWidget*>(watched)) return widget->window() == question_;
  return watched == question_->windowHandle();
}

}  // namespace zrt
