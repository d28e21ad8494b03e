#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDrag>
#include <QDropEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTimer>
#include <QTreeWidget>

#include "core/errors.h"
#include "core/text.h"
#include "ui/data_grid.h"
#include "ui/qt/control_view.h"
#include "ui/qt/grid_view.h"
#include "ui/qt/key_trigg_widget.h"

namespace zrt {

namespace {

QString Q(const std::string& text) { return QString::fromStdString(text); }

/// The control and the widget of a view in their own types.
template <class TControl, class TWidget>
class TypedView : public ControlView {
 public:
  TypedView(ViewContext context, TControl& control, TWidget* widget)
      : ControlView(context, control, widget), control_(control), widget_(widget) {}

 protected:
  TControl& control_;
  TWidget* widget_;
};

class LabelView final : public TypedView<Label, QLabel> {
 public:
  LabelView(ViewContext context, Label& control, QLabel* widget) : TypedView(context, control, widget) { Attach(); }
  void ShowOwn(const PropertyBase&) override {
    widget_->setText(Q(control_.Caption()));
    widget_->setAccessibleName(Q(control_.Caption()));
  }
};

class PictureView final : public TypedView<Picture, QLabel> {
 public:
  PictureView(ViewContext context, Picture& control, QLabel* widget) : TypedView(context, control, widget) { Attach(); }
  void ShowOwn(const PropertyBase&) override {}
};

class FrameView final : public TypedView<Frame, QWidget> {
 public:
  FrameView(ViewContext context, Frame& control, QWidget* widget) : TypedView(context, control, widget) { Attach(); }
  void ShowOwn(const PropertyBase&) override {
    if (auto* box = qobject_cast<QGroupBox*>(widget_)) box->setTitle(Q(control_.Caption()));
  }
};

class ButtonView final : public TypedView<Button, QPushButton> {
 public:
  ButtonView(ViewContext context, Button& control, QPushButton* widget) : TypedView(context, control, widget) {
    widget->setAutoDefault(false);
    widget->setAcceptDrops(static_cast<bool>(control.DragDrop));
    connect(widget, &QPushButton::clicked, this, [this] { Act([this] { control_.UserClick(); }); });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase&) override { widget_->setText(Q(control_.Caption())); }

  bool OwnKey(const Key& key) override {
    if (key.code != Key::kEnter) return false;
    Act([this] { control_.UserClick(); });
    return true;
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (IsDead()) return false;
    switch (event->type()) {
      case QEvent::MouseMove:
        return StartDrag(*static_cast<QMouseEvent*>(event));
      case QEvent::DragEnter:
        static_cast<QDropEvent*>(event)->acceptProposedAction();
        return true;
      case QEvent::Drop:
        return Drop(*static_cast<QDropEvent*>(event));
      default:
        return ControlView::eventFilter(watched, event);
    }
  }

 private:
  bool StartDrag(const QMouseEvent& event) {
    if ((event.buttons() & Qt::LeftButton) == 0 || !control_.DragStart) return false;
    bool begins = false;
    Act([&] { control_.DragStart.Raise(begins); });
    if (!begins || IsDead()) return false;
    widget_->setDown(false);
    QDrag drag(widget_);
    auto* data = new QMimeData;  // the drag owns it
    data->setText(Q(control_.Name()));
    drag.setMimeData(data);
    drag.exec(Qt::MoveAction);
    return true;
  }

  bool Drop(QDropEvent& event) {
    auto* source = dynamic_cast<Button*>(control_.Owner().FindControl(event.mimeData()->text().toStdString()));
    if (source == nullptr) return false;
    event.acceptProposedAction();
    // The handler may ask something; that has to wait until the toolkit has ended the drag.
    QTimer::singleShot(0, this, [this, source] { Act([&] { control_.DragDrop.Raise(*source); }); });
    return true;
  }
};

class TextBoxView final : public TypedView<TextBox, QLineEdit> {
 public:
  TextBoxView(ViewContext context, TextBox& control, QLineEdit* widget) : TypedView(context, control, widget) {
    connect(widget, &QLineEdit::textChanged, this, [this](const QString& text) { Typed(text); });
    connect(widget, &QLineEdit::selectionChanged, this, [this] { Selected(); });
    connect(widget, &QLineEdit::cursorPositionChanged, this, [this] { Selected(); });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase& property) override {
    if (telling_) return;
    const QSignalBlocker quiet(widget_);
    if (&property == &control_.Text) {
      const int cursor = widget_->cursorPosition();
      widget_->setText(Q(control_.Text()));
      widget_->setCursorPosition(cursor);
    } else if (&property == &control_.MaxLength && control_.MaxLength() > 0) {
      widget_->setMaxLength(control_.MaxLength());
    } else if (&property == &control_.SelStart || &property == &control_.SelLength) {
      widget_->setSelection(control_.SelStart(), control_.SelLength());
    }
  }

 private:
  void Typed(const QString& text) {
    Act([&] { control_.UserType(text.toStdString(), widget_->cursorPosition()); });
    if (!IsDead()) Selected();
  }

  /// The control follows the widget's cursor without telling the widget again.
  void Selected() {
    if (IsDead()) return;
    telling_ = true;
    const int start = widget_->selectionStart();
    control_.SelStart = start >= 0 ? start : widget_->cursorPosition();
    control_.SelLength = start >= 0 ? static_cast<int>(widget_->selectedText().length()) : 0;
    telling_ = false;
  }

  bool telling_ = false;
};

class CheckBoxView final : public TypedView<CheckBox, QCheckBox> {
 public:
  CheckBoxView(ViewContext context, CheckBox& control, QCheckBox* widget) : TypedView(context, control, widget) {
    connect(widget, &QCheckBox::toggled, this, [this](bool on) { Act([&] { control_.UserTick(on); }); });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase&) override {
    const QSignalBlocker quiet(widget_);
    widget_->setText(Q(control_.Caption()));
    widget_->setChecked(control_.Value());
  }
};

class OptionButtonView final : public TypedView<OptionButton, QRadioButton> {
 public:
  OptionButtonView(ViewContext context, OptionButton& control, QRadioButton* widget)
      : TypedView(context, control, widget) {
    widget->setAutoExclusive(false);  // the control knows its group
    connect(widget, &QRadioButton::toggled, this, [this] {
      Act([this] { control_.UserClick(); });
      if (!IsDead()) ShowOwn(control_.Value);  // a second click doesn't clear it
    });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase&) override {
    const QSignalBlocker quiet(widget_);
    widget_->setText(Q(control_.Caption()));
    widget_->setChecked(control_.Value());
  }
};

class ComboBoxView final : public TypedView<ComboBox, QComboBox> {
 public:
  ComboBoxView(ViewContext context, ComboBox& control, QComboBox* widget) : TypedView(context, control, widget) {
    connect(widget, &QComboBox::currentIndexChanged, this, [this](int index) {
      if (index >= 0) Act([&] { control_.UserChoose(widget_->itemText(index).toStdString()); });
    });
    connect(widget, &QComboBox::editTextChanged, this, [this](const QString& text) {
      if (widget_->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0) {
        Act([&] { control_.UserType(text.toStdString()); });
      }
    });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase& property) override {
    const QSignalBlocker quiet(widget_);
    if (&property == &control_.Items) {
      widget_->clear();
      for (const std::string& item : control_.Items()) widget_->addItem(Q(item));
    }
    // Filling the list has changed the text that the widget shows.
    const QString text = Q(control_.Text());
    widget_->setCurrentIndex(widget_->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
    if (widget_->isEditable()) widget_->setEditText(text);
  }
};

class ListBoxView final : public TypedView<ListBox, QListWidget> {
 public:
  ListBoxView(ViewContext context, ListBox& control, QListWidget* widget) : TypedView(context, control, widget) {
    connect(widget, &QListWidget::currentRowChanged, this, [this](int row) {
      if (row >= 0) Act([&] { control_.UserChoose(row); });
    });
    connect(widget, &QListWidget::itemDoubleClicked, this, [this] { Act([this] { control_.UserDblClick(); }); });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase& property) override {
    const QSignalBlocker quiet(widget_);
    if (&property == &control_.Items) {
      widget_->clear();
      for (const std::string& item : control_.Items()) widget_->addItem(Q(item));
    }
    widget_->setCurrentRow(control_.ListIndex());
  }
};

/// The folder shown with those above it, and the folders in it: a double click opens one.
class DirListBoxView final : public TypedView<DirListBox, QTreeWidget> {
 public:
  DirListBoxView(ViewContext context, DirListBox& control, QTreeWidget* widget) : TypedView(context, control, widget) {
    widget->setHeaderHidden(true);
    widget->setRootIsDecorated(false);
    widget->setItemsExpandable(false);
    connect(widget, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
      const std::string path = item->data(0, Qt::UserRole).toString().toStdString();
      Act([&] { control_.UserOpen(path); });
    });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase&) override {
    widget_->clear();
    QString path = Q(control_.Path()).replace('/', '\\');
    QTreeWidgetItem* above = nullptr;
    QString so_far;
    for (const QString& name : path.split('\\', Qt::SkipEmptyParts)) {
      so_far += (so_far.isEmpty() ? "" : "\\") + name;
      above = Add(above, name, so_far + "\\");
    }
    for (const std::string& name : context_.drives.Folders(control_.Path())) {
      Add(above, Q(name), so_far + "\\" + Q(name) + "\\");
    }
    widget_->expandAll();
    if (above != nullptr) widget_->setCurrentItem(above);
  }

 private:
  QTreeWidgetItem* Add(QTreeWidgetItem* above, const QString& name, const QString& path) {
    auto* item = above == nullptr ? new QTreeWidgetItem(widget_) : new QTreeWidgetItem(above);
    item->setText(0, name);
    item->setData(0, Qt::UserRole, path);
    return item;
  }
};

class DriveListBoxView final : public TypedView<DriveListBox, QComboBox> {
 public:
  DriveListBoxView(ViewContext context, DriveListBox& control, QComboBox* widget)
      : TypedView(context, control, widget) {
    for (const std::string& drive : context.drives.Drives()) widget->addItem(Q(drive));
    connect(widget, &QComboBox::currentIndexChanged, this, [this](int index) {
      Act([&] { control_.UserChoose(widget_->itemText(index).toStdString()); });
    });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase&) override {
    const QSignalBlocker quiet(widget_);
    widget_->setCurrentText(Q(control_.Drive()));
  }
};

/// A calendar stands over the window, below the control that the definition names, and takes no room while it is hidden.
class MonthViewView final : public TypedView<MonthView, QCalendarWidget> {
 public:
  MonthViewView(ViewContext context, MonthView& control, QCalendarWidget* widget)
      : TypedView(context, control, widget) {
    widget->setFirstDayOfWeek(Qt::Monday);
    widget->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    connect(widget, &QCalendarWidget::clicked, this, [this](const QDate& day) { Pick(day); });
    // The keyboard's place is inside the calendar, in the table of days.
    for (QWidget* part : widget->findChildren<QWidget*>()) part->installEventFilter(this);
    if (const QString below = widget->property("below").toString(); !below.isEmpty()) {
      anchor_ = widget->window()->findChild<QWidget*>(below);
      const QSize size = widget->sizeHint();
      widget->setParent(widget->window());
      widget->resize(size);
      widget->setAutoFillBackground(true);
      widget->hide();
    }
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase&) override {
    const Date& day = control_.Value();
    const QSignalBlocker quiet(widget_);
    if (day.year != 0) widget_->setSelectedDate(QDate(day.year, day.month, day.day));
  }

  void Show(const PropertyBase& property) override {
    TypedView::Show(property);
    if (&property != &control_.Visible || !control_.Visible() || anchor_ == nullptr) return;
    const QWidget* window = widget_->parentWidget();
    const QPoint wanted = anchor_->mapTo(window, QPoint(0, anchor_->height() + 2));
    widget_->move(std::max(0, std::min(wanted.x(), window->width() - widget_->width())),
                  std::max(0, std::min(wanted.y(), window->height() - widget_->height())));
    widget_->raise();
    widget_->setFocus();
  }

  bool OwnKey(const Key& key) override {
    if (key.code == Key::kEnter) Pick(widget_->selectedDate());
    if (key.code == Key::kEscape && anchor_ != nullptr) control_.Visible = false;
    return key.code == Key::kEnter || key.code == Key::kEscape;
  }

 private:
  void Pick(const QDate& day) {
    Act([&] { control_.UserPick({day.year(), day.month(), day.day()}); });
  }

  QWidget* anchor_ = nullptr;
};

class ProgressBarView final : public TypedView<ProgressBar, QProgressBar> {
 public:
  ProgressBarView(ViewContext context, ProgressBar& control, QProgressBar* widget)
      : TypedView(context, control, widget) {
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase&) override {
    widget_->setMaximum(control_.Max());
    widget_->setValue(control_.Value());
    if (widget_->isVisible()) widget_->repaint();
  }
};

class TabStripView final : public TypedView<TabStrip, QTabBar> {
 public:
  TabStripView(ViewContext context, TabStrip& control, QTabBar* widget) : TypedView(context, control, widget) {
    widget->setExpanding(false);
    widget->setDrawBase(true);
    connect(widget, &QTabBar::currentChanged, this, [this](int index) { Choose(index); });
    // The tab of the report opens its window each time it is clicked, also when it is the current one.
    connect(widget, &QTabBar::tabBarClicked, this, [this](int index) {
      if (index == widget_->currentIndex()) Choose(index);
    });
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase& property) override {
    const QSignalBlocker quiet(widget_);
    if (&property == &control_.Tabs) {
      while (widget_->count() > 0) widget_->removeTab(0);
      for (const Tab& tab : control_.Tabs()) widget_->addTab(Q(tab.caption));
    }
    widget_->setCurrentIndex(control_.Selected());
  }

 private:
  void Choose(int index) {
    if (index < 0 || index >= static_cast<int>(control_.Tabs().size())) return;
    const std::string key = control_.Tabs()[static_cast<std::size_t>(index)].key;
    Act([&] { control_.UserChoose(key); });
  }
};

class KeyTriggView final : public TypedView<CmdKeyTrigg, KeyTriggWidget> {
 public:
  KeyTriggView(ViewContext context, CmdKeyTrigg& control, KeyTriggWidget* widget)
      : TypedView(context, control, widget) {
    widget->OnPress = [this](int half) {
      Act([&] { control_.UserPress(static_cast<std::uint8_t>(half)); });
    };
    Attach();
  }

 protected:
  void ShowOwn(const PropertyBase&) override {
    widget_->ShowState(Q(control_.Caption()), control_.Trigger() == 1);
  }
};

/// One line of the table of kinds: tries the control's and the widget's type.
template <class TView, class TControl, class TWidget>
std::unique_ptr<ControlView> Try(ViewContext context, Control& control, QWidget* widget) {
  auto* right_control = dynamic_cast<TControl*>(&control);
  auto* right_widget = dynamic_cast<TWidget*>(widget);
  if (right_control == nullptr || right_widget == nullptr) return nullptr;
  return std::make_unique<TView>(context, *right_control, right_widget);
}

}  // namespace

std::unique_ptr<ControlView> MakeControlView(ViewContext context, Control& control, QWidget* widget) {
  using Maker = std::unique_ptr<ControlView> (*)(ViewContext, Control&, QWidget*);
  static constexpr std::array<Maker, 16> kMakers = {Try<LabelView, Label, QLabel>,
                                                    Try<PictureView, Picture, QLabel>,
                                                    Try<FrameView, Frame, QWidget>,
                                                    Try<ButtonView, Button, QPushButton>,
                                                    Try<TextBoxView, TextBox, QLineEdit>,
                                                    Try<CheckBoxView, CheckBox, QCheckBox>,
                                                    Try<OptionButtonView, OptionButton, QRadioButton>,
                                                    Try<ComboBoxView, ComboBox, QComboBox>,
                                                    Try<ListBoxView, ListBox, QListWidget>,
                                                    Try<DirListBoxView, DirListBox, QTreeWidget>,
                                                    Try<DriveListBoxView, DriveListBox, QComboBox>,
                                                    Try<MonthViewView, MonthView, QCalendarWidget>,
                                                    Try<ProgressBarView, ProgressBar, QProgressBar>,
                                                    Try<TabStripView, TabStrip, QTabBar>,
                                                    Try<KeyTriggView, CmdKeyTrigg, KeyTriggWidget>,
                                                    Try<GridView, DataGrid, QTableView>};
  for (const Maker make : kMakers) {
    if (auto view = make(context, control, widget)) return view;
  }
  throw Error("no view for " + control.Name());
}

}  // namespace zrt
