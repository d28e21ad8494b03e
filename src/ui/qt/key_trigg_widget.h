#pragma once

#include <QColor>
#include <QPixmap>
#include <QWidget>
#include <functional>
#include <optional>

#include "ui/cmd_key_trigg.h"

namespace zrt {

/// What a KeyTriggWidget draws. Lengths in twips; a colour that isn't given is the palette's.
struct KeyTriggLook {
  QString caption;
  QPixmap first_image;  ///< null: none
  QPixmap second_image;
  std::optional<QColor> shape_colour;
  std::optional<QColor> caption_colour;
  std::optional<QColor> ground_colour;
  KeyTriggSizes sizes;
  int font_size;  ///< points
  int image_top;
  int first_left;
  int second_left;
};

/// The drawn side of CmdKeyTrigg: two halves with a picture each, the caption of the half that is on between them. Its
/// size is fixed by the look.
class KeyTriggWidget : public QWidget {
 public:
  explicit KeyTriggWidget(QWidget* parent = nullptr);

  std::function<void(int)> OnPress;  ///< with the half pressed, 1 or 2; twice for a double click

  void ShowLook(KeyTriggLook look);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Press(int half);
  int Pixels(int twips) const;

  KeyTriggLook look_{};
};

}  // namespace zrt

// The form definitions name the widget without its namespace.
using zrt::KeyTriggWidget;
