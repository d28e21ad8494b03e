#include "ui/qt/key_trigg_widget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace zrt {

namespace {

constexpr int kLampWidth = 26;
const QColor kOn(0x3C, 0xA5, 0x3C);
const QColor kOff(0xC8, 0x46, 0x3C);

}  // namespace

KeyTriggWidget::KeyTriggWidget(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
}

void KeyTriggWidget::ShowState(const QString& caption, bool first_on) {
  caption_ = caption;
  first_on_ = first_on;
  setAccessibleName(caption);
  update();
}

QSize KeyTriggWidget::sizeHint() const {
  return {160, fontMetrics().height() + 12};
}

void KeyTriggWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(palette().color(QPalette::Mid));
  painter.setBrush(palette().color(QPalette::Button));
  painter.drawRoundedRect(frame, 3, 3);

  const auto lamp = [&](const QRectF& place, bool on) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? (on ? kOn : kOff) : palette().color(QPalette::Mid));
    painter.drawEllipse(place.center(), 5, 5);
  };
  lamp(QRectF(0, 0, kLampWidth, height()), first_on_);
  lamp(QRectF(width() - kLampWidth, 0, kLampWidth, height()), !first_on_);

  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
  painter.drawText(rect().adjusted(kLampWidth, 0, -kLampWidth, 0), Qt::AlignCenter, caption_);
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect().adjusted(3, 3, -3, -3);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

void KeyTriggWidget::mousePressEvent(QMouseEvent* event) {
  Press(event->position().x() < width() / 2.0 ? 1 : 2);
}

void KeyTriggWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

void KeyTriggWidget::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      return Press(1);
    case Qt::Key_Right:
      return Press(2);
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return Press(first_on_ ? 2 : 1);
    default:
      QWidget::keyPressEvent(event);
  }
}

void KeyTriggWidget::Press(int half) {
  if (OnPress) OnPress(half);
}

}  // namespace zrt
