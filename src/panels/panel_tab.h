#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/session.h"
#include "ui/controls.h"
#include "ui/data_grid.h"
#include "ui/form.h"

namespace zrt {

/// Colours of the touch keys.
namespace key_colour {
inline constexpr Colour kEmpty = colour::kHighlightEdge;
inline constexpr Colour kNormal = 0x00FF00;
inline constexpr Colour kPriceZero = 0xFFFF;
inline constexpr Colour kUnknown = 0xFF;        ///< the code isn't in the catalogue
inline constexpr Colour kDuplicate = 0xFF0000;  ///< the code stands on another key of this level already
}  // namespace key_colour

/// The editor of the terminals' touch panels: 30 keys show one level of one panel, DataGrid12 lists them with their
/// products. Two menus of 12 panels of 3 levels.
class PanelTab {
 public:
  PanelTab(Form& form, Session& session);

  Frame FrameSensor;
  std::array<Button, 30> CmdM;           ///< the keys; item k stands at index k-1
  DataGrid DataGrid12;                   ///< the same keys with their products
  std::array<OptionButton, 12> Option1;  ///< the panels of the menu; panel p stands at index p-1
  std::array<OptionButton, 3> Option2;   ///< the levels
  Label Label1;                          ///< "Меню № 1"
  Label Label2;                          ///< "Уровень 1"
  Label Label5;                          ///< "Панель № 1"
  Label Label11;
  Label Label12;
  Label Label13;
  Label Label17;
  TextBox TextName;  ///< name of the panel
  Button CmdName;
  TextBox TextMenu;  ///< name of the menu
  CmdKeyTrigg CmdMenu;
  TextBox Text6;  ///< product code for the key that is selected
  Button CmdOk1;
  Button CmdClr;
  Button CmdClrAll;
  Button CmdCopyAll;

  /// Captions of the panel buttons from CONST T9, rows 1 to 12. Throws DatabaseError.
  void NamePanels();
  /// Schema with a single touch menu: nothing to switch, nothing to copy.
  void UseSingleMenu();
  /// Names of the two menus, for the key and TextMenu.
  void NameMenus(const std::string& first, const std::string& second);
  /// Opens the layout on RsPanels before any panel is chosen. Throws DatabaseError.
  void OpenLayout();
  /// Panel 1, level 1 are chosen; the labels say so.
  void ChooseFirst();
  /// TextName shows the name of panel 1, nothing when it has none. Throws DatabaseError; Error without that row.
  void ShowFirstName();

  /// Reads a level of a panel of the current menu and paints the keys; `row` is how far from the first record RsPanels
  /// is to stand afterwards. A level that hasn't exactly 30 rows is listed, and the keys keep what they show. Throws
  /// DatabaseError.
  void LoadPanelKeys(std::uint8_t panel, std::uint8_t level, std::uint8_t row);

  std::uint8_t PanelNo = 1;
  std::uint8_t LevelNo = 1;
  /// Codes already seen while the keys are painted; index 0 is key 1.
  std::array<std::int32_t, 30> KeyCodes{};

 private:
  /// Caption of the button of `panel` (from 1); an empty name gives its number.
  void NamePanel(std::size_t panel, const std::string& name);
  /// The table's number of a panel: the panels of menu 2 follow those of menu 1.
  int TablePanel(int panel) const;
  void PaintKey(Button& key, const Recordset& keys, std::int32_t code);
  void FormatPanelGrid();

  Session& session_;
};

}  // namespace zrt
