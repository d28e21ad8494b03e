#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDrag>
#include <QElapsedTimer>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTabBar>
#include <QTableView>
#include <QTimer>
#include <QTreeWidget>

#include "core/errors.h"
#include "ui/data_grid.h"
#include "ui/form.h"
#include "ui/qt/control_view.h"
#include "ui/qt/grid_view.h"
#include "ui/qt/key_trigg_widget.h"
#include "ui/qt/qt_text.h"

namespace zrt {

namespace {

/// While a view writes to its widget, what the widget reports is no doing of the operator's.
using Quiet = QScopedValueRollback<bool>;

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

  /// The style would tint the colour; a key of a panel must show it pure.
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

class CheckBoxView final : public ControlView {
 public:
  CheckBoxView(CheckBox& box, QCheckBox* widget) : ControlView(box, widget), box_(box), widget_(widget) {
    // The mouse, the keyboard and the accessibility bus all end here; so does what the program itself shows.
    connect(widget, &QCheckBox::toggled, this, [this](bool on) {
      if (on == box_.Value()) return;
      Act([&] { box_.UserTick(on); });
      if (IsAlive()) widget_->setChecked(box_.Value());
    });
    WatchKeys(widget);
    Start();
  }
  void Show(const PropertyBase& property) override {
    if (&property == &box_.Caption) return widget_->setText(ToCaption(box_.Caption()));
    if (&property == &box_.Value) return widget_->setChecked(box_.Value());
    ControlView::Show(property);
  }

 private:
  CheckBox& box_;
  QCheckBox* widget_;
};

class OptionView final : public ControlView {
 public:
  OptionView(OptionButton& option, QRadioButton* widget)
      : ControlView(option, widget), option_(option), widget_(widget) {
    // Which options exclude each other is the control's rule and not that of the boxes drawn around them.
    Group()->addButton(widget);
    connect(widget, &QRadioButton::pressed, this, [this] { chosen_ = false; });
    // Over the accessibility bus it is switched on without a press.
    connect(widget, &QRadioButton::toggled, this, [this](bool on) {
      if (!on || option_.Value()) return;
      chosen_ = true;
      Act([this] { option_.UserClick(); });
    });
    connect(widget, &QRadioButton::clicked, this, [this] {
      if (!chosen_) Act([this] { option_.UserClick(); });
    });
    WatchKeys(widget);
    Start();
  }
  void Show(const PropertyBase& property) override {
    if (&property == &option_.Caption) return widget_->setText(ToCaption(option_.Caption()));
    if (&property == &option_.Value) return ShowValue();
    ControlView::Show(property);
  }

 private:
  QButtonGroup* Group() const {
    const QString name = QStringLiteral("decoGroup_") + ToQt(option_.GroupName());
    if (auto* group = widget_->window()->findChild<QButtonGroup*>(name)) return group;
    auto* group = new QButtonGroup(widget_->window());
    group->setObjectName(name);
    return group;
  }

  void ShowValue() {
    QButtonGroup* group = widget_->group();
    // A group doesn't let go of its last choice otherwise.
    group->setExclusive(option_.Value());
    widget_->setChecked(option_.Value());
    group->setExclusive(true);
  }

  OptionButton& option_;
  QRadioButton* widget_;
  bool chosen_ = false;  ///< by the press under way
};

class ComboView final : public ControlView {
 public:
  ComboView(ComboBox& combo, QComboBox* widget) : ControlView(combo, widget), combo_(combo), widget_(widget) {
    widget->setEditable(combo.Editable());
    widget->setInsertPolicy(QComboBox::NoInsert);
    connect(widget, &QComboBox::activated, this, [this](int index) { Chosen(index); });
    connect(widget, &QComboBox::editTextChanged, this, [this](const QString& text) { Typed(text); });
    // Completing a number to a longer one of the list changes what the operator typed.
    if (widget->isEditable()) widget->setCompleter(nullptr);
    if (QLineEdit* edit = widget->lineEdit()) {
      edit->setAccessibleDescription(ToQt(combo.Name()));
      connect(edit, &QLineEdit::cursorPositionChanged, this, [this] { KeepSelection(); });
      connect(edit, &QLineEdit::selectionChanged, this, [this] { KeepSelection(); });
    }
    // The keyboard is the list's also while a text is typed into it.
    WatchKeys(widget);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &combo_.Items) {
      const Quiet quiet(busy_, true);
      const QSignalBlocker block(widget_);
      widget_->clear();
      for (const std::string& item : combo_.Items()) widget_->addItem(ToQt(item));
      ShowText();
    } else if (&property == &combo_.Text) {
      ShowText();
    } else if (&property == &combo_.SelStart || &property == &combo_.SelLength) {
      ShowSelection();
    } else {
      ControlView::Show(property);
    }
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (!IsAlive()) return false;
    // Turning the wheel over a closed list changed the shift's hour unnoticed.
    if (event->type() == QEvent::Wheel) return true;
    return ControlView::eventFilter(watched, event);
  }

 private:
  void Chosen(int index) {
    if (index < 0) return;
    const std::string item = widget_->itemText(index).toStdString();
    Act([&] { combo_.UserChoose(item); });
    if (IsAlive()) ShowText();
  }

  void Typed(const QString& text) {
    if (busy_ || !IsAlive() || text == ToQt(combo_.Text())) return;
    // The text of an item that is being chosen: the choice itself follows.
    if (widget_->currentIndex() != shown_index_) return;
    KeepSelection();
    Act([&] { combo_.UserType(text.toStdString()); });
    if (IsAlive()) ShowText();
  }

  void ShowText() {
    const Quiet quiet(busy_, true);
    const QSignalBlocker block(widget_);
    const QString text = ToQt(combo_.Text());
    shown_index_ = combo_.ListIndex();
    if (widget_->currentIndex() != shown_index_) widget_->setCurrentIndex(shown_index_);
    if (widget_->isEditable()) {
      if (widget_->currentText() != text) widget_->setEditText(text);
      Select();
    } else {
      // A text that is no item, as an hour that the base has from elsewhere, is shown all the same.
      widget_->setPlaceholderText(shown_index_ < 0 ? text : QString());
    }
  }

  void KeepSelection() {
    if (busy_ || !IsAlive()) return;
    const Quiet quiet(busy_, true);
    const QLineEdit& edit = *widget_->lineEdit();
    combo_.SelStart = edit.selectionStart() >= 0 ? edit.selectionStart() : edit.cursorPosition();
    combo_.SelLength = static_cast<int>(edit.selectedText().length());
  }

  void ShowSelection() {
    if (busy_ || !widget_->isEditable()) return;
    const Quiet quiet(busy_, true);
    Select();
  }

  void Select() {
    if (combo_.SelLength() > 0) {
      widget_->lineEdit()->setSelection(combo_.SelStart(), combo_.SelLength());
    } else {
      widget_->lineEdit()->setCursorPosition(combo_.SelStart());
    }
  }

  ComboBox& combo_;
  QComboBox* widget_;
  int shown_index_ = -1;
  bool busy_ = false;
};

/// Gives all lines of a list the size of its widest one. One size for all keeps a list quick that grows by thousands of
/// lines; left to itself, it would be that of the last line, and any wider one would be cut short without a way to
/// scroll there.
class WidestLine final : public QStyledItemDelegate {
 public:
  explicit WidestLine(QListWidget* list) : QStyledItemDelegate(list), list_(list) {
    list->setUniformItemSizes(true);
    list->setItemDelegate(this);
    connect(list->model(), &QAbstractItemModel::modelReset, this, [this] { widest_ = 0; });
    connect(list->model(), &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
      for (int row = first; row <= last; ++row) {
        if (WidthOf(row) > WidthOf(widest_)) widest_ = row;
      }
    });
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index.siblingAtRow(widest_));
  }

 private:
  int WidthOf(int row) const { return list_->fontMetrics().horizontalAdvance(list_->item(row)->text()); }

  QListWidget* list_;
  int widest_ = 0;
};

class ListView final : public ControlView {
 public:
  ListView(ListBox& list, QListWidget* widget) : ControlView(list, widget), list_(list), widget_(widget) {
    connect(widget, &QListWidget::currentRowChanged, this, [this](int row) {
      // While the mouse is pressed the click that follows is the choice.
      if (!busy_ && row != list_.ListIndex() && QApplication::mouseButtons() == Qt::NoButton) Choose(row);
    });
    connect(widget, &QListWidget::clicked, this, [this](const QModelIndex& index) { Choose(index.row()); });
    connect(widget, &QListWidget::doubleClicked, this, [this] { Act([this] { list_.UserDblClick(); }); });
    list.OnAdded = [this] { widget_->addItem(ToQt(list_.Items().back())); };
    new WidestLine(widget);
    WatchKeys(widget);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &list_.Items) {
      const Quiet quiet(busy_, true);
      widget_->clear();
      for (const std::string& item : list_.Items()) widget_->addItem(ToQt(item));
      widget_->setCurrentRow(list_.ListIndex());
    } else if (&property == &list_.ListIndex) {
      const Quiet quiet(busy_, true);
      widget_->setCurrentRow(list_.ListIndex());
    } else if (&property == &list_.Width) {
      constexpr int kTwipsPerInch = 1440;
      widget_->setMinimumWidth(list_.Width() * widget_->logicalDpiX() / kTwipsPerInch);
    } else {
      ControlView::Show(property);
    }
  }

  /// A list that grows may be drawn for a fifth of the time, as drawing every line can cost more than its query. While
  /// the queries are slow that is enough for each line, so the operator reads the newest one during the next query;
  /// what quick ones add is seen a few milliseconds late.
  bool RepaintAlone() override {
    constexpr qint64 kShare = 5;
    constexpr qint64 kMostSaved = 40'000'000;  // nanoseconds
    if (drawn_.isValid()) saved_ = std::min(kMostSaved, saved_ + drawn_.nsecsElapsed() / kShare);
    drawn_.start();
    if (saved_ < 0) return true;
    widget_->viewport()->repaint();
    saved_ -= drawn_.nsecsElapsed();
    return true;
  }

 protected:
  void LetGo() override { list_.OnAdded = nullptr; }

 private:
  void Choose(int row) {
    if (row >= 0) Act([&] { list_.UserChoose(row); });
  }

  ListBox& list_;
  QListWidget* widget_;
  QElapsedTimer drawn_;  ///< since the last line was to be drawn
  qint64 saved_ = 0;     ///< time that drawing may still take, nanoseconds; below zero after a drawing that took more
  bool busy_ = false;
};

/// A tree of folders whose current entry is Path. Folders are read when their entry is opened.
class DirListView final : public ControlView {
 public:
  DirListView(DirListBox& list, QTreeWidget* tree, const DriveMap& drives)
      : ControlView(list, tree), list_(list), tree_(tree), drives_(drives) {
    tree->setHeaderHidden(true);
    connect(tree, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* entry) { Fill(entry); });
    connect(tree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* entry) {
      if (!busy_ && entry != nullptr) Act([&] { list_.UserOpen(PathOf(entry)); });
    });
    WatchKeys(tree);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &list_.Path) return ShowPath();
    ControlView::Show(property);
  }

 protected:
  void ShowVisible(bool visible) override {
    // Folders come and go while the list is out of sight.
    if (visible) ShowPath();
    ControlView::ShowVisible(visible);
  }

 private:
  static std::string PathOf(const QTreeWidgetItem* entry) {
    if (entry->parent() == nullptr) return entry->text(0).toStdString();
    std::string path = entry->text(0).toStdString();
    for (entry = entry->parent(); entry != nullptr; entry = entry->parent()) {
      const std::string folder = entry->text(0).toStdString();
      path = folder + (folder.ends_with('\\') ? "" : "\\") + path;
    }
    return path;
  }

  static QTreeWidgetItem* Child(QTreeWidgetItem* entry, const QString& name) {
    for (int i = 0; i < entry->childCount(); ++i) {
      if (entry->child(i)->text(0).compare(name, Qt::CaseInsensitive) == 0) return entry->child(i);
    }
    return nullptr;
  }

  static QTreeWidgetItem* NewEntry(const QString& name) {
    auto* entry = new QTreeWidgetItem({name});
    entry->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return entry;
  }

  void Fill(QTreeWidgetItem* entry) {
    const std::vector<std::string> folders = drives_.Folders(PathOf(entry));
    for (const std::string& folder : folders) {
      if (Child(entry, ToQt(folder)) == nullptr) entry->addChild(NewEntry(ToQt(folder)));
    }
    entry->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
  }

  void ShowPath() {
    QString path = ToQt(list_.Path()).replace(QLatin1Char('/'), QLatin1Char('\\'));
    if (path.isEmpty()) return;
    const QTreeWidgetItem* present = tree_->currentItem();
    if (present != nullptr && ToQt(PathOf(present)) == path) return;
    const Quiet quiet(busy_, true);
    tree_->clear();
    const QStringList folders = path.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    QTreeWidgetItem* entry = NewEntry(folders.first() + QLatin1Char('\\'));
    tree_->addTopLevelItem(entry);
    for (const QString& folder : folders.mid(1)) {
      Fill(entry);
      QTreeWidgetItem* child = Child(entry, folder);
      if (child == nullptr) entry->addChild(child = NewEntry(folder));
      entry->setExpanded(true);
      entry = child;
    }
    tree_->setCurrentItem(entry);
    tree_->scrollToItem(entry);
  }

  DirListBox& list_;
  QTreeWidget* tree_;
  const DriveMap& drives_;
  bool busy_ = false;
};

class DriveView final : public ControlView {
 public:
  DriveView(DriveListBox& list, QComboBox* widget, const DriveMap& drives)
      : ControlView(list, widget), list_(list), widget_(widget) {
    for (const std::string& drive : drives.Drives()) widget->addItem(ToQt(drive));
    connect(widget, &QComboBox::activated, this, [this](int index) {
      const std::string drive = widget_->itemText(index).toStdString();
      Act([&] { list_.UserChoose(drive); });
    });
    WatchKeys(widget);
    Start();
  }
  void Show(const PropertyBase& property) override {
    if (&property == &list_.Drive) return widget_->setCurrentText(ToQt(list_.Drive()));
    ControlView::Show(property);
  }

 private:
  DriveListBox& list_;
  QComboBox* widget_;
};

/// The files of a folder, read again whenever the list comes into sight.
class FileListView final : public ControlView {
 public:
  FileListView(FileListBox& list, QListWidget* widget, const DriveMap& drives)
      : ControlView(list, widget), list_(list), widget_(widget), drives_(drives) {
    new WidestLine(widget);
    connect(widget, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
      if (!busy_ && item != nullptr) Act([&] { list_.UserChoose(item->text().toStdString()); });
    });
    WatchKeys(widget);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &list_.Path || &property == &list_.Pattern) return Fill();
    if (&property == &list_.FileName) return ShowChosen();
    ControlView::Show(property);
  }

 protected:
  void ShowVisible(bool visible) override {
    if (visible) Fill();
    ControlView::ShowVisible(visible);
  }

 private:
  void Fill() {
    const Quiet quiet(busy_, true);
    widget_->clear();
    if (list_.Path().empty()) return;
    for (const std::string& file : drives_.Files(list_.Path(), list_.Pattern())) widget_->addItem(ToQt(file));
    ShowChosen();
  }

  void ShowChosen() {
    const Quiet quiet(busy_, true);
    const QList<QListWidgetItem*> found = widget_->findItems(ToQt(list_.FileName()), Qt::MatchFixedString);
    widget_->setCurrentItem(found.isEmpty() ? nullptr : found.first());
  }

  FileListBox& list_;
  QListWidget* widget_;
  const DriveMap& drives_;
  bool busy_ = false;
};

/// A calendar; one whose definition names a control with `below` opens over the window beneath that control.
class MonthViewView final : public ControlView {
 public:
  MonthViewView(MonthView& month, QCalendarWidget* widget)
      : ControlView(month, widget), month_(month), widget_(widget) {
    widget->setFirstDayOfWeek(Qt::Monday);
    connect(widget, &QCalendarWidget::clicked, this, [this](QDate day) { Pick(day); });
    connect(widget, &QCalendarWidget::activated, this, [this](QDate day) { Pick(day); });
    // The keyboard's place is the table of days inside.
    days_ = widget->findChild<QTableView*>();
    days_->setFrameShape(QFrame::StyledPanel);
    WatchKeys(days_);
    widget->setFocusProxy(days_);
    Start();
  }

  void Show(const PropertyBase& property) override {
    if (&property == &month_.Value) {
      const Date& day = month_.Value();
      const QSignalBlocker block(widget_);
      widget_->setSelectedDate(QDate(day.year, day.month, day.day));
    } else {
      ControlView::Show(property);
    }
  }

 protected:
  void ShowVisible(bool visible) override {
    if (visible) PutBelow();
    ControlView::ShowVisible(visible);
    if (visible && IsOverlay()) days_->setFocus();
  }

  bool KeyLeft(const Key& key) override {
    if (key.code == Key::kEscape && IsOverlay()) month_.Visible = false;
    return false;
  }

 private:
  bool IsOverlay() const { return !widget_->property("below").toString().isEmpty(); }

  void Pick(QDate day) {
    Act([&] { month_.UserPick(Date{day.year(), day.month(), day.day()}); });
  }

  void PutBelow() {
    const QString below = widget_->property("below").toString();
    QWidget* parent = widget_->parentWidget();
    const auto* anchor = parent->findChild<QWidget*>(below);
    if (below.isEmpty() || anchor == nullptr) return;
    const QSize size = widget_->size();
    const QPoint corner = anchor->mapTo(parent, QPoint(0, anchor->height() + 2));
    widget_->move(std::max(0, std::min(corner.x(), parent->width() - size.width())), corner.y());
    widget_->raise();
  }

  MonthView& month_;
  QCalendarWidget* widget_;
  QTableView* days_;
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

 private:
  void Choose(int index) {
    if (index < 0 || !IsAlive()) return;
    const std::string key = strip_.Tabs().at(static_cast<std::size_t>(index)).key;
    Act([&] { strip_.UserChoose(key); });
  }

  TabStrip& strip_;
  QTabBar* bar_;
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

/// Makes the view when the control is of kind `C`; the object must then be a `W`.
template <class C, class View, class W, class... More>
bool TryKind(std::unique_ptr<ControlView>& view, Control& control, QObject* object, More&&... more) {
  auto* fitting = dynamic_cast<C*>(&control);
  if (fitting == nullptr) return false;
  auto* widget = dynamic_cast<W*>(object);
  if (widget == nullptr) throw Error("form " + control.Owner().Name() + " doesn't draw " + control.Name());
  view = std::make_unique<View>(*fitting, widget, std::forward<More>(more)...);
  return true;
}

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
  std::unique_ptr<ControlView> view;
  const bool known = TryKind<Label, LabelView, QLabel>(view, control, object) ||
                     TryKind<Frame, FrameView, QWidget>(view, control, object) ||
                     TryKind<Picture, PictureView, QLabel>(view, control, object) ||
                     TryKind<Button, ButtonView, QPushButton>(view, control, object) ||
                     TryKind<TextBox, TextBoxView, QLineEdit>(view, control, object) ||
                     TryKind<CheckBox, CheckBoxView, QCheckBox>(view, control, object) ||
                     TryKind<OptionButton, OptionView, QRadioButton>(view, control, object) ||
                     TryKind<ComboBox, ComboView, QComboBox>(view, control, object) ||
                     TryKind<ListBox, ListView, QListWidget>(view, control, object) ||
                     TryKind<DirListBox, DirListView, QTreeWidget>(view, control, object, drives) ||
                     TryKind<DriveListBox, DriveView, QComboBox>(view, control, object, drives) ||
                     TryKind<FileListBox, FileListView, QListWidget>(view, control, object, drives) ||
                     TryKind<MonthView, MonthViewView, QCalendarWidget>(view, control, object) ||
                     TryKind<ProgressBar, ProgressView, QProgressBar>(view, control, object) ||
                     TryKind<TabStrip, TabStripView, QTabBar>(view, control, object) ||
                     TryKind<CmdKeyTrigg, KeyTriggView, KeyTriggWidget>(view, control, object) ||
                     TryKind<DataGrid, GridView, QTableView>(view, control, object) || TryMenu(view, control, object);
  if (!known) throw Error("no view for the kind of " + control.Name());
  return view;
}

}  // namespace zrt
