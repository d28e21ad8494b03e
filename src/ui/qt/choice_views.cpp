#include "ui/qt/choice_views.h"

#include <QButtonGroup>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTableView>
#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "ui/form.h"
#include "ui/qt/control_view.h"
#include "ui/qt/line_validator.h"
#include "ui/qt/qt_text.h"
#include "ui/qt/view_kinds.h"

namespace zrt {

namespace {

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
      KeepToOneLine(*edit);
      connect(edit, &QLineEdit::cursorPositionChanged, this, [this] { KeepSelection(); });
      connect(edit, &QLineEdit::selectionChanged, this, [this] { KeepSelection(); });
    }
    // The list has the keyboard also while a text is typed into it.
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
    // Turning the wheel over a closed list would change the shift's hour unnoticed.
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

}  // namespace

std::unique_ptr<ControlView> MakeChoiceView(Control& control, QObject* object) {
  std::unique_ptr<ControlView> view;
  const bool known = TryKind<CheckBox, CheckBoxView, QCheckBox>(view, control, object) ||
                     TryKind<OptionButton, OptionView, QRadioButton>(view, control, object) ||
                     TryKind<ComboBox, ComboView, QComboBox>(view, control, object) ||
                     TryKind<MonthView, MonthViewView, QCalendarWidget>(view, control, object);
  return known ? std::move(view) : nullptr;
}

}  // namespace zrt
