#include "ui/qt/shortcuts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QKeySequence>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QTabBar>
#include <QTableView>

#include "ui/qt/copying.h"
#include "ui/qt/guide_window.h"

namespace zrt {

namespace {

bool IsUsable(const QWidget& widget) {
  return widget.isVisible() && widget.isEnabled();
}

/// The first widget of the window with this role that the operator could use now: each tab may have its own.
QWidget* WithRole(const QWidget& window, const QString& role) {
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (widget->property("operatorKey").toString() == role && IsUsable(*widget)) return widget;
  }
  return nullptr;
}

QStringList RowButtons(const QTableView& table) {
  return table.property("rowButtons").toStringList();
}

/// "Ins=CmdNew" is the button CmdNew with its key; an entry without a key is a button alone.
QAbstractButton* ButtonOf(const QTableView& table, const QString& entry) {
  return table.window()->findChild<QAbstractButton*>(entry.section('=', -1));
}

QString KeyOfEntry(const QString& entry) {
  return entry.contains('=') ? entry.section('=', 0, 0) : QString();
}

/// A window that must be left first keeps the others from being used.
bool IsBlocked(const QWidget& window) {
  const QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr && modal != &window;
}

void ChooseTab(QWidget* window, const std::function<int(const QTabBar&)>& which) {
  auto* bar = window == nullptr || IsBlocked(*window) ? nullptr : window->findChild<QTabBar*>();
  if (bar == nullptr || !bar->isVisible()) return;
  const int index = which(*bar);
  if (index < 0 || index >= bar->count()) return;
  window->activateWindow();
  if (index == bar->currentIndex()) {
    emit bar->tabBarClicked(index);
  } else {
    bar->setCurrentIndex(index);
  }
}

void OpenMenus(QWidget& window) {
  auto* bar = window.findChild<QMenuBar*>();
  if (bar == nullptr || !bar->isVisible()) return;
  for (QAction* entry : bar->actions()) {
    if (entry->isVisible()) return bar->setActiveAction(entry);
  }
}

void Find(QWidget& window, const QString& role) {
  QWidget* field = WithRole(window, role);
  if (field == nullptr) return;
  field->setFocus(Qt::ShortcutFocusReason);
  if (auto* edit = qobject_cast<QLineEdit*>(field)) edit->selectAll();
}

void Press(QWidget& window, const QString& role) {
  if (auto* button = qobject_cast<QAbstractButton*>(WithRole(window, role))) return button->click();
  // A tab without a query of its own reads its table when it is chosen.
  if (role == QLatin1String("run")) ChooseTab(&window, [](const QTabBar& bar) { return bar.currentIndex(); });
}

/// Rows are deleted only from the grid that has the keyboard; for the rest the window's first grid stands in.
void ActOnRow(const QWidget& window, const QString& key) {
  const auto* focused = qobject_cast<const QTableView*>(window.focusWidget());
  if (focused != nullptr && !RowButtons(*focused).isEmpty()) {
    PressRowButton(*focused, key);
    return;
  }
  if (key == QLatin1String("Del")) return;
  for (const QTableView* table : window.findChildren<QTableView*>()) {
    if (IsUsable(*table) && PressRowButton(*table, key)) return;
  }
}

/// What has the keyboard; where that holds nothing to copy, the window's report.
const QWidget* WhatToCopy(const QWidget& window) {
  const QWidget* focused = window.focusWidget();
  if (qobject_cast<const QAbstractItemView*>(focused) != nullptr) return focused;
  for (const QListWidget* list : window.findChildren<QListWidget*>()) {
    if (IsUsable(*list) && list->selectionMode() == QAbstractItemView::ExtendedSelection) return list;
  }
  return focused;
}

void Run(const Shortcut& shortcut, QWidget& window, const ShortcutHost& host) {
  const QString role = QString::fromUtf8(shortcut.role);
  switch (shortcut.action) {
    case KeyAction::kGuide:
      return OpenGuide(window);
    case KeyAction::kMenu:
      return OpenMenus(window);
    case KeyAction::kNextTab:
      return ChooseTab(host.main_window(), [](const QTabBar& bar) { return (bar.currentIndex() + 1) % bar.count(); });
    case KeyAction::kEarlierTab:
      return ChooseTab(host.main_window(),
                       [](const QTabBar& bar) { return (bar.currentIndex() + bar.count() - 1) % bar.count(); });
    case KeyAction::kTab:
      return ChooseTab(host.main_window(), [&](const QTabBar&) { return role.toInt() - 1; });
    case KeyAction::kNextWindow:
      if (QWidget* next = host.next_window(window); next != nullptr && !IsBlocked(*next)) next->activateWindow();
      return;
    case KeyAction::kFind:
      return Find(window, role);
    case KeyAction::kPress:
      return Press(window, role);
    case KeyAction::kRow:
      return ActOnRow(window, role);
    case KeyAction::kCopy:
      return CopyFrom(WhatToCopy(window));
  }
}

/// What the same keys are in the two layouts.
constexpr QStringView kRussianKeys = u"ЙЦУКЕНГШЩЗХЪФЫВАПРОЛДЖЭЯЧСМИТЬБЮ";
constexpr QStringView kLatinKeys = u"QWERTYUIOP[]ASDFGHJKL;'ZXCVBNM,.";

void GiveLetters(QWidget& bar_or_menu, QWidget* window) {
  QString taken;
  for (QAction* entry : bar_or_menu.actions()) {
    if (QMenu* menu = entry->menu()) GiveLetters(*menu, nullptr);
    const QString caption = entry->text();
    for (qsizetype i = 0; i < caption.size(); ++i) {
      const QChar letter = caption[i].toUpper();
      if (!letter.isLetter() || taken.contains(letter)) continue;
      taken += letter;
      entry->setText(QString(caption).insert(i, '&'));
      const qsizetype key = kRussianKeys.indexOf(letter);
      if (window == nullptr || key < 0) break;
      auto* latin = new QShortcut(QKeySequence(Qt::ALT | Qt::Key(kLatinKeys[key].unicode())), window);
      auto* bar = qobject_cast<QMenuBar*>(&bar_or_menu);
      QObject::connect(latin, &QShortcut::activated, bar, [bar, entry] {
        if (entry->isVisible() && entry->menu() != nullptr) bar->setActiveAction(entry);
        if (entry->isVisible() && entry->menu() == nullptr) entry->trigger();
      });
      break;
    }
  }
}

}  // namespace

void InstallShortcuts(QWidget& window, const ShortcutHost& host) {
  if (auto* bar = window.findChild<QMenuBar*>()) GiveLetters(*bar, &window);
  for (const Shortcut& shortcut : kShortcuts) {
    for (const QString& keys : QString::fromUtf8(shortcut.keys).split(QStringLiteral(", "))) {
      auto* key = new QShortcut(QKeySequence(keys), &window);
      key->setAutoRepeat(false);
      QObject::connect(key, &QShortcut::activated, &window,
                       [&window, &shortcut, host] { Run(shortcut, window, host); });
    }
  }
}

bool PressRowButton(const QTableView& table, const QString& key) {
  for (const QString& entry : RowButtons(table)) {
    if (KeyOfEntry(entry) != key) continue;
    QAbstractButton* button = ButtonOf(table, entry);
    if (button == nullptr || !IsUsable(*button)) return false;
    button->click();
    return true;
  }
  return false;
}

void ShowRowMenu(QTableView& table, const QPoint& place) {
  QMenu menu(&table);
  for (const QString& entry : RowButtons(table)) {
    QAbstractButton* button = ButtonOf(table, entry);
    if (button == nullptr || !button->isVisible()) continue;
    const QString key = KeyOfEntry(entry);
    QAction* action = menu.addAction(button->text() + (key.isEmpty() ? QString() : '\t' + key));
    action->setEnabled(button->isEnabled());
    // Queued: the menu must be gone when the button opens a window.
    QObject::connect(action, &QAction::triggered, button, &QAbstractButton::click, Qt::QueuedConnection);
  }
  if (!menu.isEmpty()) menu.addSeparator();
  QAction* copy = menu.addAction(QStringLiteral("Копировать\tCtrl+C"));
  copy->setEnabled(table.currentIndex().isValid());
  QObject::connect(copy, &QAction::triggered, &table, [&table] { CopyFrom(&table); });
  menu.exec(place);
}

}  // namespace zrt
