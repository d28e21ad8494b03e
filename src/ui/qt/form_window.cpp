#include "ui/qt/form_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>

#include "core/errors.h"
#include "ui/qt/form_factory.h"

namespace zrt {

namespace {

constexpr int kTwipsPerInch = 1440;

}  // namespace

/// An entry or submenu. Its click waits until the toolkit has closed the menu, for it may open a window or ask something.
class FormWindow::MenuView final : public QObject, public ElementView {
 public:
  MenuView(FormWindow& window, Menu& control, QAction* action) : window_(window), control_(control), action_(action) {
    if (action->property("separator").toBool()) action->setSeparator(true);
    connect(
        action, &QAction::triggered, this, [this] { window_.Act([this] { control_.UserClick(); }); },
        Qt::QueuedConnection);
    control.SetView(this);
  }

  void Detach() { control_.SetView(nullptr); }

  void Show(const PropertyBase& property) override {
    if (&property == &control_.Caption && !action_->isSeparator()) {
      action_->setText(QString::fromStdString(control_.Caption()));
    } else if (&property == &control_.Visible) {
      action_->setVisible(control_.Visible());
    } else if (&property == &control_.Enabled) {
      action_->setEnabled(control_.Enabled());
    }
  }

 private:
  FormWindow& window_;
  Menu& control_;
  QAction* action_;
};

/// Runs a form's timer while the form is loaded. It doesn't fire while its own handler is under way.
class FormWindow::TimerView final : public QObject, public ElementView {
 public:
  TimerView(FormWindow& window, Timer& timer) : window_(window), timer_(timer) {
    connect(&clock_, &QTimer::timeout, this, [this] {
      if (std::exchange(busy_, true)) return;
      window_.Act([this] { timer_.UserFire(); });
      busy_ = false;
    });
    timer.SetView(this);
  }

  void Detach() {
    clock_.stop();
    timer_.SetView(nullptr);
  }

  void Show(const PropertyBase&) override {
    if (timer_.Enabled()) {
      clock_.start(timer_.Interval());
    } else {
      clock_.stop();
    }
  }

 private:
  FormWindow& window_;
  Timer& timer_;
  QTimer clock_;
  bool busy_ = false;
};

FormWindow::FormWindow(ViewContext context, Form& form)
    : context_(context), form_(&form), window_(BuildFormWindow(form.Name())) {
  window_->installEventFilter(this);
  window_->setAccessibleDescription(QString::fromStdString(form.Name()));
  BindControls();
  for (Timer* timer : form.Timers()) timers_.push_back(std::make_unique<TimerView>(*this, *timer));
  form.SetView(this);
}

FormWindow::~FormWindow() = default;

void FormWindow::BindControls() {
  for (Control* control : form_->Controls()) {
    const QString name = QString::fromStdString(control->Name());
    if (auto* menu = dynamic_cast<Menu*>(control)) {
      auto* action = window_->findChild<QAction*>(name);
      if (auto* submenu = window_->findChild<QMenu*>(name)) action = submenu->menuAction();
      if (action == nullptr) throw Error("the window of " + form_->Name() + " lacks " + control->Name());
      menus_.push_back(std::make_unique<MenuView>(*this, *menu, action));
      continue;
    }
    auto* widget = window_->findChild<QWidget*>(name);
    if (widget == nullptr) throw Error("the window of " + form_->Name() + " lacks " + control->Name());
    views_.push_back(MakeControlView(context_, *control, widget));
  }
}

void FormWindow::Open(bool modal) {
  window_->setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
  window_->show();
  BringForward();
  if (wanted_focus_ != nullptr) SetFocus(*std::exchange(wanted_focus_, nullptr));
}

void FormWindow::RunModal() {
  modal_loop_.exec();
}

void FormWindow::Hide() {
  window_->hide();
  if (modal_loop_.isRunning()) modal_loop_.quit();
}

void FormWindow::BringForward() {
  window_->raise();
  window_->activateWindow();
}

void FormWindow::Detach() {
  dead_ = true;
  window_->removeEventFilter(this);
  for (const auto& view : views_) view->Detach();
  for (const auto& menu : menus_) menu->Detach();
  for (const auto& timer : timers_) timer->Detach();
  form_->SetView(nullptr);
  Hide();
}

QWidget* FormWindow::WidgetOf(const Control& control) const {
  for (const auto& view : views_) {
    if (&view->Bound() == &control) return view->Widget();
  }
  return nullptr;
}

void FormWindow::SetFocus(const Control& control) {
  if (!window_->isVisible()) {
    wanted_focus_ = &control;
    return;
  }
  if (QWidget* widget = WidgetOf(control)) widget->setFocus(Qt::OtherFocusReason);
}

void FormWindow::Repaint(const Control& control) {
  if (!window_->isVisible() || WidgetOf(control) == nullptr) return;
  if (window_->layout() != nullptr) window_->layout()->activate();
  // No event may be handled in the middle of the program's own handler, so this paints and nothing else.
  window_->repaint();
}

void FormWindow::Show(const PropertyBase& property) {
  if (&property == &form_->Caption) {
    window_->setWindowTitle(QString::fromStdString(form_->Caption()));
  } else if (&property == &form_->Height && form_->Height() > 0) {
    window_->resize(window_->width(), form_->Height() * window_->logicalDpiY() / kTwipsPerInch);
  }
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (dead_) return false;
  switch (event->type()) {
    case QEvent::Close:
      event->ignore();
      // The window can't go while the toolkit is telling it to close.
      QTimer::singleShot(0, this, [this] { Act([this] { form_->Close(); }); });
      return true;
    case QEvent::WindowActivate:
      Act([this] { context_.desktop.Activated(*form_); });
      return false;
    case QEvent::MouseButtonRelease:
      if (form_->Click) Act([this] { form_->Click.Raise(); });
      return false;
    case QEvent::KeyPress: {
      std::optional<Key> key = ToKey(*static_cast<QKeyEvent*>(event));
      if (!key || !form_->KeyDown) return false;
      Act([&] { form_->KeyDown.Raise(*key); });
      return dead_ || key->swallow;
    }
    default:
      return QObject::eventFilter(watched, event);
  }
}

void FormWindow::Act(const std::function<void()>& work) {
  if (!dead_) context_.desktop.UserAction(work);
}

}  // namespace zrt
