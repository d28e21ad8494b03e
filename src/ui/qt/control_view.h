#pragma once

#include <QKeyEvent>
#include <QObject>
#include <QWidget>
#include <memory>

#include "platform/drive_map.h"
#include "ui/controls.h"
#include "ui/desktop.h"

namespace zrt {

/// What all views of one window share.
struct ViewContext {
  Desktop& desktop;
  const DriveMap& drives;
};

/// Binds one control to its widget, both ways. A value that the program sets is shown without an event; what the operator
/// does is brought to the control as an action of its own. After Detach the view is dead: the form has been unloaded, and
/// the widgets go as soon as the toolkit has left them.
class ControlView : public QObject, public ElementView {
 public:
  ControlView(ViewContext context, Control& control, QWidget* widget);
  ~ControlView() override;

  void Show(const PropertyBase& property) override;
  virtual void Detach();

  Control& Bound() const { return *control_; }
  QWidget* Widget() const { return widget_; }

 protected:
  /// Draws the control's present state; last line of every view's constructor.
  void Attach() { control_->SetView(this); }
  /// Runs `work` as an action of the operator; nothing after Detach.
  void Act(const std::function<void()>& work);
  bool IsDead() const { return dead_; }

  /// A property of the kind at hand; the common ones are shown already.
  virtual void ShowOwn(const PropertyBase& property) = 0;
  /// Colours and weight; kinds of widget differ in how they take them.
  virtual void ShowLook();
  /// A key that no handler swallowed; true keeps it from the widget.
  virtual bool OwnKey(const Key&) { return false; }

  bool eventFilter(QObject* watched, QEvent* event) override;

  ViewContext context_;

 private:
  Control* control_;
  QWidget* widget_;
  bool dead_ = false;
};

/// The view that fits the control and the widget that the definition made for it. Throws Error for a kind that it doesn't
/// know.
std::unique_ptr<ControlView> MakeControlView(ViewContext context, Control& control, QWidget* widget);

/// A colour of the program; nothing for the window system's own, which the palette gives.
std::optional<QColor> ToQColor(Colour colour);

/// The key as handlers see it; nothing for keys that no handler asks for.
std::optional<Key> ToKey(const QKeyEvent& event);

}  // namespace zrt
