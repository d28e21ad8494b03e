#include <QAction>
#include <QApplication>
#include <QDrag>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTableView>
#include <QTimer>
#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "core/errors.h"
#include "ui/data_grid.h"
#include "ui/form.h"
#include "ui/qt/choice_views.h"
#include "ui/qt/control_view.h"
#include "ui/qt/grid_view.h"
#include "ui/qt/key_trigg_widget.h"
#include "ui/qt/line_validator.h"
#include "ui/qt/list_views.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/view_kinds.h"

namespace zrt {

namespace {

class LabelView final : public ControlView {
 public:
  LabelView(Label& label, QLabel* widget) : ControlView(label, widget), label_(label), widget_(widget) {
    // Names from the database are no markup.
    widget->setTextFormat(Qt::PlainText);
    Start();
  }
  void Show(const PropertyBase& property) override {
    if (&property == &label_.Caption) return widget_->setText(ToQt(label_.Caption()));
    ControlView::Show(property);
  }

 private:
  Label& label_;
  QLabel* widget_;
};

class FrameView final : public ControlView {
 public:
  FrameView(Frame& frame, QWidget* widget)
      : ControlView(frame, widget), frame_(frame), box_(qobject_cast<QGroupBox*>(widget)) {
    Start();
  }
  void Show(const PropertyBase& property) override {
    if (&property == &frame_.Caption) {
      if (box_ != nullptr) box_->setTitle(ToCaption(frame_.Caption()));
      return;
    }
    ControlView::Show(property);
  }

 private:
  Frame& frame_;
  QGroupBox* box_;
};

class PictureView final : public ControlView {
 public:
  PictureView(Picture& picture, QLabel* widget) : ControlView(picture, widget) { Start(); }
};

class ButtonView final : public ControlView {
 public:
  ButtonView(Button& button, QPushButton* widget) : ControlView(button, widget), button_(button), widget_(widget) {
    connect(widget, &QPushButton::clicked, this, [this] { Act([this] { button_.UserClick(); }); });
    widget->setAcceptDrops(static_cast<bool>(button.DragDrop));
    WatchKeys(widget);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &button_.Caption) return widget_->setText(ToCaption(button_.Caption()));
    ControlView::Show(property);
  }

 protected:
  bool KeyLeft(const Key& key) override {
    if (key.code != Key::kEnter) return false;
    widget_->click();
    return true;
  }

  /// The style would tint the colour; a key of a panel must show it unchanged.
  void ShowColours() override {
    const std::optional<QColor> back = OwnColour(button_.BackColor());
    if (!back) return widget_->setStyleSheet({});
    const std::optional<QColor> own = OwnColour(button_.ForeColor());
    const QColor text = own ? *own : qGray(back->rgb()) < 110 ? QColor(Qt::white) : QColor(Qt::black);
    widget_->setStyleSheet(QStringLiteral("QPushButton { background: %1; color: %2; border: 1px solid #7a7d82;"
                                          " border-radius: 3px; padding: 2px; }"
                                          "QPushButton:focus { border: 2px solid #1d1f23; padding: 1px; }"
                                          "QPushButton:pressed { border-color: #1d1f23; }")
                               .arg(back->name(), text.name()));
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (!IsAlive()) return false;
    switch (event->type()) {
      case QEvent::MouseButtonPress:
        pressed_at_ = static_cast<QMouseEvent*>(event)->pos();
        break;
      case QEvent::MouseMove:
        return StartDrag(*static_cast<QMouseEvent*>(event));
      case QEvent::DragEnter:
      case QEvent::DragMove:
        if (DragSource(*static_cast<QDropEvent*>(event)) == nullptr) return false;
        static_cast<QDropEvent*>(event)->acceptProposedAction();
        return true;
      case QEvent::Drop:
        return TakeDrop(*static_cast<QDropEvent*>(event));
      default:
        break;
    }
    return ControlView::eventFilter(watched, event);
  }

 private:
  bool StartDrag(const QMouseEvent& event) {
    if (!button_.DragStart || !(event.buttons() & Qt::LeftButton)) return false;
    if ((event.pos() - pressed_at_).manhattanLength() < QApplication::startDragDistance()) return false;
    bool begins = false;
    Act([&] { button_.DragStart.Raise(begins); });
    if (!begins || !IsAlive()) return true;
    auto* drag = new QDrag(widget_);
    auto* what = new QMimeData;
    what->setText(ToQt(button_.Name()));
    drag->setMimeData(what);
    drag->setPixmap(widget_->grab());
    drag->setHotSpot(event.pos());
    drag->exec(Qt::MoveAction);
    // The drag has swallowed the release of the mouse.
    if (IsAlive()) widget_->setDown(false);
    return true;
  }

  Control* DragSource(const QDropEvent& event) const {
    const QObject* source = event.source();
    if (!button_.DragDrop || source == nullptr) return nullptr;
    return button_.Owner().FindControl(source->objectName().toStdString());
  }

  bool TakeDrop(QDropEvent& event) {
    Control* source = DragSource(event);
    if (source == nullptr) return false;
    event.acceptProposedAction();
    // The handler may ask a question, and that must not happen inside the drag's own loop.
    QTimer::singleShot(0, this, [this, source] {
      if (button_.IsUsable()) Act([&] { button_.DragDrop.Raise(*source); });
    });
    return true;
  }

  Button& button_;
  QPushButton* widget_;
  QPoint pressed_at_;
};

class TextBoxView final : public ControlView {
 public:
  TextBoxView(TextBox& box, QLineEdit* edit) : ControlView(box, edit), box_(box), edit_(edit) {
    // textEdited would miss what assistive technology sets.
    connect(edit, &QLineEdit::textChanged, this, [this] { Typed(); });
    connect(edit, &QLineEdit::cursorPositionChanged, this, [this] { KeepSelection(); });
    connect(edit, &QLineEdit::selectionChanged, this, [this] { KeepSelection(); });
    KeepToOneLine(*edit);
    WatchKeys(edit);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &box_.Text) {
      ShowText();
    } else if (&property == &box_.SelStart || &property == &box_.SelLength) {
      ShowSelection();
    } else if (&property == &box_.MaxLength) {
      constexpr int kNoLimit = 32767;
      edit_->setMaxLength(box_.MaxLength() > 0 ? box_.MaxLength() : kNoLimit);
    } else {
      ControlView::Show(property);
    }
  }

 private:
  void Typed() {
    const std::string text = edit_->text().toStdString();
    if (busy_ || text == box_.Text()) return;
    Act([&] { box_.UserType(text, edit_->cursorPosition()); });
    // What the control refused or changed.
    if (IsAlive()) ShowText();
  }

  void KeepSelection() {
    if (busy_ || !IsAlive()) return;
    const Quiet quiet(busy_, true);
    const int start = edit_->selectionStart();
    box_.SelStart = start >= 0 ? start : edit_->cursorPosition();
    box_.SelLength = static_cast<int>(edit_->selectedText().length());
  }

  void ShowText() {
    if (edit_->text() == ToQt(box_.Text())) return;
    const Quiet quiet(busy_, true);
    edit_->setText(ToQt(box_.Text()));
    Select();
  }

  void ShowSelection() {
    if (busy_) return;
    const Quiet quiet(busy_, true);
    Select();
  }

  void Select() {
    if (box_.SelLength() > 0) {
      edit_->setSelection(box_.SelStart(), box_.SelLength());
    } else {
      edit_->setCursorPosition(box_.SelStart());
    }
  }

  TextBox& box_;
  QLineEdit* edit_;
  bool busy_ = false;
};

class ProgressView final : public ControlView {
 public:
  ProgressView(ProgressBar& bar, QProgressBar* widget) : ControlView(bar, widget), bar_(bar), widget_(widget) {
    Start();
  }
  void Show(const PropertyBase& property) override {
    if (&property == &bar_.Max) return widget_->setMaximum(bar_.Max());
    if (&property == &bar_.Value) return ShowValue();
    ControlView::Show(property);
  }

 private:
  /// The bar paints itself at each new value; a step of a hundredth is all that the eye needs.
  void ShowValue() {
    const int step = std::max(1, bar_.Max() / 100);
    if (bar_.Value() % step == 0 || bar_.Value() == bar_.Max()) widget_->setValue(bar_.Value());
  }

  ProgressBar& bar_;
  QProgressBar* widget_;
};

class MenuView final : public ControlView {
 public:
  MenuView(Menu& menu, QAction* action, QMenuBar* bar)
      : ControlView(menu, nullptr), menu_(menu), action_(action), bar_(bar) {
    action->setSeparator(action->property("separator").toBool());
    // Queued: the handler may unload the window, and the open menu must be gone by then.
    connect(
        action, &QAction::triggered, this, [this] { Act([this] { menu_.UserClick(); }); }, Qt::QueuedConnection);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &menu_.Caption) return action_->setText(ToCaption(menu_.Caption()));
    if (&property == &menu_.Enabled) return action_->setEnabled(menu_.Enabled());
    ControlView::Show(property);
  }

 protected:
  void ShowVisible(bool visible) override {
    action_->setVisible(visible);
    if (bar_ == nullptr) return;
    // A row without menus leaves its place to the tabs.
    const QList<QAction*> entries = bar_->actions();
    bar_->setVisible(
        std::any_of(entries.begin(), entries.end(), [](const QAction* entry) { return entry->isVisible(); }));
  }

 private:
  Menu& menu_;
  QAction* action_;
  QMenuBar* bar_;
};

class TabStripView final : public ControlView {
 public:
  TabStripView(TabStrip& strip, QTabBar* bar) : ControlView(strip, bar), strip_(strip), bar_(bar) {
    bar->setExpanding(false);
    connect(bar, &QTabBar::currentChanged, this, [this](int index) { Choose(index); });
    // The tab that is on already can be clicked too; a click on another one changes the current tab.
    connect(bar, &QTabBar::tabBarClicked, this, [this](int index) {
      if (index == bar_->currentIndex()) Choose(index);
    });
    WatchKeys(bar);
    Start();
  }

  void Show(const PropertyBase& property) override {
    const QSignalBlocker block(bar_);
    if (&property == &strip_.Tabs) {
      while (bar_->count() > 0) bar_->removeTab(bar_->count() - 1);
      for (const Tab& tab : strip_.Tabs()) bar_->addTab(ToCaption(tab.caption));
      bar_->setCurrentIndex(strip_.Selected());
    } else if (&property == &strip_.Selected) {
      bar_->setCurrentIndex(strip_.Selected());
    } else {
      ControlView::Show(property);
    }
  }

 protected:
  bool KeyLeft(const Key& key) override {
    if (key.code == Key::kEnter) Choose(bar_->currentIndex());
    return false;
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::KeyPress) {
      const int key = static_cast<QKeyEvent*>(event)->key();
      walking_ = key == Qt::Key_Left || key == Qt::Key_Right;
    } else if (event->type() == QEvent::KeyRelease || event->type() == QEvent::MouseButtonPress) {
      walking_ = false;
    }
    return ControlView::eventFilter(watched, event);
  }

 private:
  void Choose(int index) {
    if (index < 0 || !IsAlive()) return;
    const std::string key = strip_.Tabs().at(static_cast<std::size_t>(index)).key;
    bar_->setProperty(kWalkedOver, walking_);
    Act([&] {
      strip_.UserChoose(key);
      // The window that has just appeared is not the one in front.
      if (walking_ && bar_->hasFocus()) TheDesktop().Activated(strip_.Owner());
    });
    bar_->setProperty(kWalkedOver, false);
  }

  TabStrip& strip_;
  QTabBar* bar_;
  bool walking_ = false;  ///< by the arrow keys
};

class KeyTriggView final : public ControlView {
 public:
  KeyTriggView(CmdKeyTrigg& key, KeyTriggWidget* widget) : ControlView(key, widget), key_(key), widget_(widget) {
    widget->OnPress = [this](int half) { Act([&] { key_.UserPress(static_cast<std::uint8_t>(half)); }); };
    WatchKeys(widget);
    Start();
  }
  void Show(const PropertyBase& property) override {
    ControlView::Show(property);
    ShowLook();
  }

 protected:
  bool KeyLeft(const Key& key) override {
    const bool presses = key.code == Key::kEnter || key.text == " ";
    if (presses) Act([this] { key_.UserClick(); });
    return presses;
  }
  /// The widget paints its colours by itself.
  void ShowColours() override {}

 private:
  void ShowLook() {
    const auto picture = [](const std::string& name) { return name.empty() ? QPixmap() : QPixmap(ToQt(name)); };
    widget_->ShowLook({ToQt(key_.Label0()), picture(key_.FirstImage()), picture(key_.SecondImage()),
                       OwnColour(key_.BackColor()), OwnColour(key_.ForeColor()), OwnColour(key_.GrndColor()),
                       key_.Sizes(), key_.SizeFont(), key_.ImgTop(), key_.Img1Left(), key_.Img2Left()});
  }

  CmdKeyTrigg& key_;
  KeyTriggWidget* widget_;
};

bool TryMenu(std::unique_ptr<ControlView>& view, Control& control, QObject* object) {
  auto* menu = dynamic_cast<Menu*>(&control);
  if (menu == nullptr) return false;
  auto* submenu = qobject_cast<QMenu*>(object);
  QAction* action = submenu != nullptr ? submenu->menuAction() : qobject_cast<QAction*>(object);
  if (action == nullptr) throw Error("form " + control.Owner().Name() + " doesn't draw " + control.Name());
  QMenuBar* bar = nullptr;
  for (QObject* place : action->associatedObjects()) {
    if (auto* found = qobject_cast<QMenuBar*>(place)) bar = found;
  }
  view = std::make_unique<MenuView>(*menu, action, bar);
  return true;
}

}  // namespace

std::unique_ptr<ControlView> MakeView(Control& control, QObject* object, const DriveMap& drives) {
  std::unique_ptr<ControlView> view = MakeListView(control, object, drives);
  if (!view) view = MakeChoiceView(control, object);
  if (view) return view;
  const bool known = TryKind<Label, LabelView, QLabel>(view, control, object) ||
                     TryKind<Frame, FrameView, QWidget>(view, control, object) ||
                     TryKind<Picture, PictureView, QLabel>(view, control, object) ||
                     TryKind<Button, ButtonView, QPushButton>(view, control, object) ||
                     TryKind<TextBox, TextBoxView, QLineEdit>(view, control, object) ||
                     TryKind<ProgressBar, ProgressView, QProgressBar>(view, control, object) ||
                     TryKind<TabStrip, TabStripView, QTabBar>(view, control, object) ||
                     TryKind<CmdKeyTrigg, KeyTriggView, KeyTriggWidget>(view, control, object) ||
                     TryKind<DataGrid, GridView, QTableView>(view, control, object) || TryMenu(view, control, object);
  if (!known) throw Error("no view for the kind of " + control.Name());
  return view;
}

}  // namespace zrt
