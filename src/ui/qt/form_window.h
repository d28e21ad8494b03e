#pragma once

#include <QEventLoop>
#include <QObject>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <vector>

#include "ui/form.h"
#include "ui/qt/control_view.h"

class QAction;

namespace zrt {

/// The window of one loaded form, with the views of its controls, menus and timers.
class FormWindow final : public QObject, public ElementView {
 public:
  FormWindow(ViewContext context, Form& form);
  ~FormWindow() override;

  void Open(bool modal);
  /// Returns when the form is hidden.
  void RunModal();
  void Hide();
  void BringForward();
  /// The form is being unloaded: nothing of this window touches it any more.
  void Detach();

  QWidget* Window() const { return window_.get(); }
  /// Widget of a control; nullptr for menus.
  QWidget* WidgetOf(const Control& control) const;
  void SetFocus(const Control& control);
  void Repaint(const Control& control);

  void Show(const PropertyBase& property) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class MenuView;
  class TimerView;

  void BindControls();
  void Act(const std::function<void()>& work);

  ViewContext context_;
  Form* form_;
  std::unique_ptr<QWidget> window_;
  std::vector<std::unique_ptr<ControlView>> views_;
  std::vector<std::unique_ptr<MenuView>> menus_;
  std::vector<std::unique_ptr<TimerView>> timers_;
  const Control* wanted_focus_ = nullptr;  ///< asked for before the window was there
  QEventLoop modal_loop_;
  bool dead_ = false;
};

}  // namespace zrt
