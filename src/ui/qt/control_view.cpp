#include "ui/qt/control_view.h"

namespace zrt {

namespace {

constexpr Colour kSystemBit = 0x80000000;

/// White on dark colours, so that the caption of a blue key can be read.
QString ReadableOn(const QColor& colour) {
  const int light = (colour.red() * 299 + colour.green() * 587 + colour.blue() * 114) / 1000;
  return light < 110 ? "white" : "black";
}

}  // namespace

std::optional<QColor> ToQColor(Colour colour) {
  if ((colour & kSystemBit) != 0) return std::nullopt;
  return QColor(static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
                static_cast<int>(colour >> 16 & 0xFF));
}

std::optional<Key> ToKey(const QKeyEvent& event) {
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
  if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0) return std::nullopt;
  // Typed characters are in the event's text: the key's number knows no Cyrillic.
  const QString text = event.text();
  if (text.isEmpty() || !text.at(0).isPrint()) return std::nullopt;
  return Key{Key::kCharacter, text.toStdString()};
}

ControlView::ControlView(ViewContext context, Control& control, QWidget* widget)
    : context_(context), control_(&control), widget_(widget) {
  widget_->setAccessibleDescription(QString::fromStdString(control.Name()));
  widget_->installEventFilter(this);
}

ControlView::~ControlView() {
  if (!dead_) control_->SetView(nullptr);
}

void ControlView::Detach() {
  dead_ = true;
  control_->SetView(nullptr);
  widget_->blockSignals(true);
}

void ControlView::Show(const PropertyBase& property) {
  const Control& control = *control_;
  if (&property == &control.Enabled) {
    widget_->setEnabled(control.Enabled());
  } else if (&property == &control.Visible) {
    widget_->setVisible(control.Visible());
  } else if (&property == &control.ToolTipText) {
    widget_->setToolTip(QString::fromStdString(control.ToolTipText()));
  } else if (&property == &control.BackColor || &property == &control.ForeColor || &property == &control.FontBold) {
    ShowLook();
  } else {
    ShowOwn(property);
  }
}

void ControlView::ShowLook() {
  // Fusion tints what a palette gives it; a style sheet keeps the program's colours as they are.
  QString style;
  if (const auto back = ToQColor(control_->BackColor())) {
    style += QString("background-color: %1; color: %2;").arg(back->name(), ReadableOn(*back));
    if (dynamic_cast<const Button*>(control_) != nullptr) {
      style += "border: 1px solid #8a8a8a; border-radius: 2px; padding: 3px;";
    }
  }
  if (const auto fore = ToQColor(control_->ForeColor())) style += QString("color: %1;").arg(fore->name());
  if (control_->FontBold()) style += "font-weight: bold;";
  widget_->setStyleSheet(style.isEmpty() ? QString() : QString("%1 { %2 }").arg(widget_->metaObject()->className(), style));
}

void ControlView::Act(const std::function<void()>& work) {
  if (!dead_) context_.desktop.UserAction(work);
}

bool ControlView::eventFilter(QObject* watched, QEvent* event) {
  if (dead_ || event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
  std::optional<Key> key = ToKey(*static_cast<QKeyEvent*>(event));
  if (!key) return false;
  Act([&] { control_->UserKey(*key); });
  return dead_ || key->swallow || OwnKey(*key);
}

}  // namespace zrt
