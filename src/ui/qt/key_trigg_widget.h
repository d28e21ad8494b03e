#pragma once

#include <QWidget>
#include <functional>

namespace zrt {

/// The drawn side of CmdKeyTrigg: two halves with a lamp each, the caption of the half that is on between them.
class KeyTriggWidget : public QWidget {
 public:
  explicit KeyTriggWidget(QWidget* parent = nullptr);

  std::function<void(int)> OnPress;  ///< with the half pressed, 1 or 2; twice for a double click

  void ShowState(const QString& caption, bool first_on);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Press(int half);

  QString caption_;
  bool first_on_ = true;
};

}  // namespace zrt

// The form definitions name the widget without its namespace.
using zrt::KeyTriggWidget;
