#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "core/connection.h"

class QWidget;
class QWindow;

namespace zrt {

/// Keeps the windows alive while a call waits for the server. The call is made in a thread of its own and everything
/// else stands still meanwhile: no handler runs, what the operator types or clicks goes nowhere, windows only repaint.
/// To the program's logic it is one long call.
///
/// Work that makes many quick calls keeps the windows alive too, a few times a second. Where it offers to be stopped,
/// the note says so, and the first Esc asks for that. A window that is closed meanwhile closes when the work is done.
///
/// After a fifth of a second there is the wait cursor, until the operator's action has ended or asks something; after
/// a second a note says what is waited for, and Esc or closing the window ends the program: at once while it starts,
/// else after a question.
class QtServerWait final : public QObject, public ServerWait {
 public:
  QtServerWait();
  ~QtServerWait() override;

  void Make(const std::function<void()>& call) override;

  /// While true no handler may run.
  bool IsWaiting() const { return waiting_; }
  /// The operator's action begins or ends: the cursor is about this action alone.
  void ActionBegins();
  void ActionEnds();
  /// Work without a wait for the server has been going on; shows the wait cursor and lets the windows live if it is
  /// time.
  void Tick();
  void OfferStop(bool offered);
  bool IsStopWanted();

  /// The window that shows the note; may return nullptr.
  std::function<QWidget*()> FrontWindow;
  /// Has the program no window yet in which anything could be lost?
  std::function<bool()> IsStarting;
  /// Called after a wait that has let events by.
  std::function<void()> OnResumed;
  /// Ends the program in the middle of a call.
  std::function<void()> GiveUp;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void HandOver(const std::function<void()>& call);
  bool IsDone(int milliseconds);
  void KeepAlive();
  void LetLive();
  void CloseLater();
  void ShowNote(const QString& what);
  void AskToEnd();
  void ShowCursor(bool wait);
  bool IsOfQuestion(QObject* watched) const;
  void Work();

  QElapsedTimer action_;     ///< since the action began, or since its last question was answered
  int calls_ = 0;            ///< of the action
  qint64 last_call_ns_ = 0;  ///< how long its last one took
  bool cursor_ = false;
  bool waiting_ = false;
  QElapsedTimer lived_;  ///< since work last let the windows live
  std::unique_ptr<QWidget> note_;
  bool stop_offered_ = false;
  bool stop_wanted_ = false;
  bool wants_end_ = false;       ///< the operator pressed Esc or closed the window
  QPointer<QWindow> closed_;     ///< the window that he closed meanwhile; it closes once the program may let it
  QWidget* question_ = nullptr;  ///< the only window that takes the operator's input

  std::mutex mutex_;
  std::condition_variable work_given_;
  std::condition_variable work_done_;
  const std::function<void()>* call_ = nullptr;
  bool stop_ = false;
  std::thread worker_;
};

}  // namespace zrt
