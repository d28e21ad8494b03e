#pragma once

#include <QObject>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "platform/drive_map.h"
#include "ui/controls.h"
#include "ui/desktop.h"
#include "ui/element.h"

namespace zrt {

/// The drawn side of one control: shows the properties that all controls share, and brings keys to the handlers. One
/// class per kind of control adds what is the kind's own.
///
/// The window outlives the form's unloading for a moment, since the action that unloads it may have begun in one of its
/// widgets. Retire cuts the view off at once; from then on it does nothing.
class ControlView : public QObject, public ElementView {
 public:
  /// `widget` is the control's; nullptr for one without a widget of its own, as an entry of a menu.
  ControlView(Control& control, QWidget* widget);

  void Show(const PropertyBase& property) override;
  void Retire();

  /// Draws the widget alone at once; false when that needs the whole window.
  virtual bool RepaintAlone() { return false; }

  Control& TheControl() const { return control_; }
  QWidget* Widget() const { return widget_; }

 protected:
  /// Tells the view every property; the last line of each kind's constructor.
  void Start() { control_.SetView(this); }

  bool IsAlive() const { return alive_; }
  /// Runs what the operator caused, unless the view has been cut off.
  void Act(const std::function<void()>& handler);

  /// Keys that `source` receives go to the control's handlers first.
  void WatchKeys(QWidget* source);
  /// A key that no handler swallowed; true when the widget must not see it either.
  virtual bool KeyLeft(const Key&) { return false; }
  /// Just before a key or a press of the mouse reaches the widget.
  virtual void BeforeInput() {}

  /// The view is being cut off.
  virtual void LetGo() {}

  virtual void ShowVisible(bool visible);
  virtual void ShowColours();

  bool eventFilter(QObject* watched, QEvent* event) override;

  Desktop& TheDesktop() const { return control_.Owner().TheDesktop(); }

 private:
  bool HandleKey(const QKeyEvent& event);

  Control& control_;
  QWidget* widget_;
  bool bold_by_design_ = false;
  bool alive_ = true;
};

/// Is it a modifier or a switch of the keyboard, which means nothing until another key is pressed?
bool IsModifierAlone(const QKeyEvent& event);

/// The key as handlers see it.
Key KeyOf(const QKeyEvent& event);

/// Blue-green-red to the screen's colour; nothing for a colour of the window system, which is the palette's affair.
std::optional<QColor> OwnColour(Colour colour);

/// The view for `control`, drawn by `object` of the form's window. Throws Error when the two don't go together.
std::unique_ptr<ControlView> MakeView(Control& control, QObject* object, const DriveMap& drives);

}  // namespace zrt
