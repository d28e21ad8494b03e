#pragma once

#include <QPoint>
#include <QStringList>
#include <array>
#include <functional>
#include <string_view>

class QTableView;
class QWidget;

namespace zrt {

enum class KeyAction {
  kGuide,       ///< the guide at this window's page
  kMenu,        ///< the keyboard goes to the row of menus
  kNextTab,     ///< of the main window, from whichever window is in front
  kEarlierTab,  ///< the same
  kTab,         ///< the tab of that number
  kNextWindow,  ///< another window that is open
  kFind,        ///< the keyboard goes to the control that the definition gives this role
  kPress,       ///< presses the button that the definition gives this role
  kRow,         ///< presses the button that the grid's definition names for this key
  kCopy,        ///< rows of the grid or lines of the list to the clipboard
};

/// A key of the operator's. Which control of a window it means stands in the window's definition: `operatorKey` of a
/// field or button holds the role, `rowButtons` of a grid what its rows can be done to ("Ins=CmdNew", "CmdCopy", ...).
struct Shortcut {
  std::string_view keys;  ///< as the toolkit spells them; several are separated by ", "
  KeyAction action;
  std::string_view role;     ///< for kFind, kPress and kRow; the number for kTab
  std::string_view meaning;  ///< for the operator's table of keys
};

/// The one table of shortcuts. docs/operating.md and the guide show it.
inline constexpr std::array kShortcuts = {
    Shortcut{"F1", KeyAction::kGuide, "", "руководство на странице об открытом окне"},
    Shortcut{"F10", KeyAction::kMenu, "", "строка меню; сразу в меню - Alt с подчёркнутой буквой"},
    Shortcut{"Ctrl+Tab, Ctrl+PgDown", KeyAction::kNextTab, "", "следующая вкладка главного окна"},
    Shortcut{"Ctrl+Shift+Tab, Ctrl+PgUp", KeyAction::kEarlierTab, "", "предыдущая вкладка главного окна"},
    Shortcut{"Ctrl+1", KeyAction::kTab, "1", "первая вкладка главного окна"},
    Shortcut{"Ctrl+2", KeyAction::kTab, "2", "вторая вкладка"},
    Shortcut{"Ctrl+3", KeyAction::kTab, "3", "третья вкладка"},
    Shortcut{"Ctrl+4", KeyAction::kTab, "4", "четвёртая вкладка"},
    Shortcut{"Ctrl+5", KeyAction::kTab, "5", "пятая вкладка"},
    Shortcut{"F6", KeyAction::kNextWindow, "", "следующее открытое окно"},
    Shortcut{"Ctrl+F", KeyAction::kFind, "find", "поле поиска или отбора"},
    Shortcut{"F5", KeyAction::kPress, "run", "главный запрос вкладки или окна"},
    Shortcut{"Ins", KeyAction::kRow, "Ins", "новая запись или строка"},
    Shortcut{"F2", KeyAction::kRow, "F2", "изменить выбранную строку (то же делает Enter)"},
    Shortcut{"Del", KeyAction::kRow, "Del", "удалить выбранную строку таблицы"},
    Shortcut{"Ctrl+C", KeyAction::kCopy, "", "копировать выбранную строку или отчёт"},
    Shortcut{"Ctrl+S", KeyAction::kPress, "save", "сохранить"},
    Shortcut{"Ctrl+P", KeyAction::kPress, "print", "напечатать отчёт"},
};

struct ShortcutHost {
  std::function<QWidget*()> main_window;          ///< the one with the strip of tabs; nullptr before there is one
  std::function<QWidget*(QWidget&)> next_window;  ///< nullptr when this one is the only one
};

/// Makes the table's keys work in this window, and gives each entry of its menus a letter of its own: captions stay as
/// they are, the letter is underlined. Alt with the letter's key works in the Latin layout too.
void InstallShortcuts(QWidget& window, const ShortcutHost& host);

/// Presses the button that `table` names for the key; false when it names none, or none that can be pressed.
bool PressRowButton(const QTableView& table, const QString& key);

/// Shows what the rows of `table` can be done to, and copying, at the pointer or at the current row.
void ShowRowMenu(QTableView& table, const QPoint& place);

}  // namespace zrt
