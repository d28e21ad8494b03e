#include "ui/qt/control_view.h"

#include <QKeyEvent>
#include <QPalette>
#include <QPointer>

#include "ui/form.h"
#include "ui/qt/qt_text.h"

namespace zrt {

std::optional<QColor> OwnColour(Colour colour) {
  constexpr Colour kSystem = 0x80000000;
  if ((colour & kSystem) != 0) return std::nullopt;
  return QColor(static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
                static_cast<int>(colour >> 16 & 0xFF));
}

bool IsModifierAlone(const QKeyEvent& event) {
  switch (event.key()) {
    case 0:
    case Qt::Key_unknown:  // switching to another layout
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Mode_switch:
    case Qt::Key_Menu:
      return true;
    default:
      return false;
  }
}

Key KeyOf(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return Key{Key::kEnter, {}};
    case Qt::Key_Escape:
      return Key{Key::kEscape, {}};
    case Qt::Key_Up:
      return Key{Key::kUp, {}};
    case Qt::Key_Down:
      return Key{Key::kDown, {}};
    case Qt::Key_Home:
      return Key{Key::kHome, {}};
    case Qt::Key_End:
      return Key{Key::kEnd, {}};
    default:
      break;
  }
  const QString text = event.text();
  if (text.isEmpty() || !text.at(0).isPrint()) return Key{Key::kOther, {}};
  return Key{Key::kCharacter, text.toStdString()};
}

ControlView::ControlView(Control& control, QWidget* widget) : control_(control), widget_(widget) {
  if (widget_ == nullptr) return;
  bold_by_design_ = widget_->font().bold();
  widget_->setAccessibleDescription(ToQt(control.Name()));
}

void ControlView::Retire() {
  LetGo();
  alive_ = false;
  control_.SetView(nullptr);
}

void ControlView::Act(const std::function<void()>& handler) {
  if (alive_) TheDesktop().UserAction(handler);
}

void ControlView::WatchKeys(QWidget* source) {
  source->installEventFilter(this);
}

void ControlView::Show(const PropertyBase& property) {
  if (&property == &control_.Visible) return ShowVisible(control_.Visible());
  if (widget_ == nullptr) return;
  if (&property == &control_.Enabled) {
    widget_->setEnabled(control_.Enabled());
  } else if (&property == &control_.ToolTipText) {
    widget_->setToolTip(ToQt(control_.ToolTipText()));
  } else if (&property == &control_.BackColor || &property == &control_.ForeColor) {
    ShowColours();
  } else if (&property == &control_.FontBold) {
    QFont font = widget_->font();
    font.setBold(bold_by_design_ || control_.FontBold());
    widget_->setFont(font);
  }
}

void ControlView::ShowVisible(bool visible) {
  if (widget_ != nullptr) widget_->setVisible(visible);
}

void ControlView::ShowColours() {
  const std::optional<QColor> back = OwnColour(control_.BackColor());
  const std::optional<QColor> fore = OwnColour(control_.ForeColor());
  QPalette palette;
  if (back) {
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base}) palette.setColor(role, *back);
  }
  if (fore) {
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text}) palette.setColor(role, *fore);
  }
  widget_->setPalette(palette);
  widget_->setAutoFillBackground(back.has_value());
}

bool ControlView::eventFilter(QObject* watched, QEvent* event) {
  if (alive_ && (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress)) BeforeInput();
  if (alive_ && event->type() == QEvent::KeyPress) return HandleKey(*static_cast<QKeyEvent*>(event));
  return QObject::eventFilter(watched, event);
}

bool ControlView::HandleKey(const QKeyEvent& event) {
  Key key = KeyOf(event);
  if (key.code == Key::kOther) return false;
  // Enter that is held down would open a card and save it again and again.
  if (key.code == Key::kEnter && event.isAutoRepeat()) return true;
  Act([&] { control_.UserKey(key); });
  // The handler may have taken the window away; the widget has no use for the key then.
  return key.swallow || !alive_ || KeyLeft(key);
}

}  // namespace zrt
