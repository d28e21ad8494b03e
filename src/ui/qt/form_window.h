#pragma once

#include <QEventLoop>
#include <QTimer>
#include <memory>
#include <vector>

#include "platform/drive_map.h"
#include "ui/form.h"
#include "ui/qt/control_view.h"
#include "ui/qt/shortcuts.h"

namespace zrt {

/// Fires a timer of a form. The next interval begins when the handler has ended, so a handler that takes long, or that
/// asks a question, is never run inside itself.
class TimerView final : public QObject, public ElementView {
 public:
  explicit TimerView(Timer& timer);
  void Show(const PropertyBase& property) override;
  void Retire();

 private:
  void Restart();
  void Fire();

  Timer& timer_;
  QTimer clock_;
  bool firing_ = false;
};

/// The window of a loaded form.
class FormWindow final : public QObject, public ElementView {
 public:
  FormWindow(Form& form, const DriveMap& drives, const ShortcutHost& shortcuts);
  ~FormWindow() override;

  QWidget* Window() const { return window_.get(); }
  Form& TheForm() const { return form_; }

  void Show(const PropertyBase& property) override;
  struct Place {
    bool modal;
    const QWidget* owner;  ///< in whose middle it appears the first time; may be nullptr
    const QWidget* above;  ///< over which it stays from then on; may be nullptr
    bool with_keyboard;    ///< otherwise the keyboard stays where it is
  };
  /// Makes the window visible, in front.
  void Open(const Place& place);
  /// Takes events until the window is hidden.
  void WaitUntilHidden();
  void Hide();

  void Focus(const Control& control);
  /// Draws at once what the window shows by now, `control` above all.
  void Repaint(const Control& control);

  /// The form is unloaded: from now on the window does nothing, whatever its widgets still report.
  void Retire();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Desktop& TheDesktop() const { return form_.TheDesktop(); }
  ControlView* ViewOf(const Control& control) const;
  bool IsOfAControl(const QWidget* widget) const;
  void PutInTheMiddle(const QWidget* owner);
  bool IsMain() const { return window_->property("mainWindow").toBool(); }
  /// Size and place of the main window as the operator left them, and of the splitters in any window.
  bool ShowKeptSize();
  void KeepSize() const;

  Form& form_;
  std::vector<std::unique_ptr<ControlView>> views_;
  std::vector<std::unique_ptr<TimerView>> timers_;
  // After the views: their widgets go first.
  std::unique_ptr<QWidget> window_;
  QEventLoop* waiting_ = nullptr;
  bool placed_ = false;
  bool alive_ = true;
};

}  // namespace zrt
