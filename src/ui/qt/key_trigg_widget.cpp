#include "ui/qt/key_trigg_widget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <algorithm>

#include "platform/twips.h"

namespace zrt {

namespace {

constexpr double kDisabledOpacity = 0.35;

}  // namespace

KeyTriggWidget::KeyTriggWidget(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
}

void KeyTriggWidget::ShowLook(KeyTriggLook look) {
  look_ = std::move(look);
  setFixedSize(std::max(0, Pixels(look_.sizes.width)), std::max(0, Pixels(look_.sizes.height)));
  QFont caption_font = font();
  if (look_.font_size > 0) caption_font.setPointSize(look_.font_size);
  setFont(caption_font);
  setAccessibleName(look_.caption);
  update();
}

void KeyTriggWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (look_.ground_colour) painter.fillRect(rect(), *look_.ground_colour);

  const auto draw_shape = [&](int width, int height, const QColor& line) {
    QRectF shape(0, 0, Pixels(width), Pixels(height));
    shape.moveCenter(QRectF(rect()).center());
    painter.setPen(line);
    painter.setBrush(look_.shape_colour ? *look_.shape_colour : palette().color(QPalette::Button));
    painter.drawRoundedRect(shape.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
  };
  draw_shape(look_.sizes.shape2_width, look_.sizes.shape2_height, palette().color(QPalette::Mid));
  draw_shape(look_.sizes.shape1_width, look_.sizes.shape1_height, palette().color(QPalette::Light));

  if (!isEnabled()) painter.setOpacity(kDisabledOpacity);
  painter.drawPixmap(Pixels(look_.first_left), Pixels(look_.image_top), look_.first_image);
  painter.drawPixmap(Pixels(look_.second_left), Pixels(look_.image_top), look_.second_image);

  painter.setPen(look_.caption_colour ? *look_.caption_colour : palette().color(QPalette::ButtonText));
  // One line between the pictures, in the middle of the key.
  const QRect label((width() - Pixels(look_.sizes.label_width)) / 2, Pixels(look_.sizes.label_top),
                    Pixels(look_.sizes.label_width), height() - 2 * Pixels(look_.sizes.label_top));
  painter.drawText(label, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, look_.caption);
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
    default:
      QWidget::keyPressEvent(event);
  }
}

void KeyTriggWidget::Press(int half) {
  if (OnPress) OnPress(half);
}

int KeyTriggWidget::Pixels(int twips) const {
  return twips * logicalDpiX() / kTwipsPerInch;
}

}  // namespace zrt
