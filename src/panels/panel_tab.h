#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "core/session.h"
#include "panels/form_copy.h"
#include "ui/cmd_key_trigg.h"
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
inline constexpr Colour kSelected = 0xFF80FF;
inline constexpr Colour kDragged = 0xFF00FF;  ///< source and target of a drag
}  // namespace key_colour

/// The editor of the terminals' touch panels: 30 keys show one level of one panel, DataGrid12 lists them with their
/// products. Two menus of 12 panels of 3 levels.
///
/// The current key is the one whose colour is kSelected; RsPanels stands on its row. A key is selected, a product
/// chosen in the catalogue or typed by its code, and Enter writes it.
class PanelTab : public FormSection {
 public:
  PanelTab(Form& form, Session& session, FormCopy& copying);

  Frame FrameSensor{form_, "FrameSensor"};
  std::array<Button, 30> CmdM{ControlArray<Button, 30>(form_, "CmdM", 1)};  ///< the keys; item k stands at index k-1
  DataGrid DataGrid12{form_, "DataGrid12"};                                 ///< the same keys with their products
  std::array<OptionButton, 12> Option1{
      ControlArray<OptionButton, 12>(form_, "Option1", 1)};  ///< the panels of the menu; panel p stands at index p-1
  std::array<OptionButton, 3> Option2{ControlArray<OptionButton, 3>(form_, "Option2", 1)};  ///< the levels
  Label Label1{form_, "Label1"};                                                            ///< "Меню № 1"
  Label Label2{form_, "Label2"};                                                            ///< "Уровень 1"
  Label Label5{form_, "Label5"};                                                            ///< "Панель № 1"
  Label Label11{form_, "Label11"};
  Label Label12{form_, "Label12"};
  Label Label13{form_, "Label13"};
  Label Label17{form_, "Label17"};
  TextBox TextName{form_, "TextName"};  ///< name of the panel
  Button CmdName{form_, "CmdName"};
  TextBox TextMenu{form_, "TextMenu"};  ///< name of the menu
  CmdKeyTrigg CmdMenu{form_, "CmdMenu"};
  TextBox Text6{form_, "Text6"};  ///< product code for the key that is selected
  Button CmdOk1{form_, "CmdOk1"};
  Button CmdClr{form_, "CmdClr"};
  Button CmdClrAll{form_, "CmdClrAll"};
  Button CmdCopyAll{form_, "CmdCopyAll"};

  /// The catalogue's grid on this tab is to be drawn again.
  std::function<void()> RefreshCatalogue;
  /// The search field of that grid is to be searched for a text from its beginning, and gets the keyboard.
  std::function<void(const std::string&)> SearchCatalogue;
  /// That search field is to be emptied.
  std::function<void()> ClearSearch;

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
  /// is to stand afterwards. No key is selected then. A level that hasn't exactly 30 rows is listed, and the keys keep
  /// what they show. Throws DatabaseError; the keys keep what they show, and RsPanels is closed.
  void LoadPanelKeys(std::uint8_t panel, std::uint8_t level, std::uint8_t row);

  /// The product on which RsProducts stands was chosen: its code goes into Text6, which gets the keyboard. Throws Error
  /// when RsProducts stands on no row.
  void ChooseProduct();

  /// Moves the code of key `source` of the level shown to key `target` (1 to 30), whatever is there. Throws
  /// DatabaseError.
  void MoveKey(std::int16_t source, std::int16_t target);

  std::uint8_t PanelNo = 1;
  std::uint8_t LevelNo = 1;
  std::int16_t DragSource = 0;  ///< the key, 1 to 30, that is or was dragged last
  /// Codes already seen while the keys are painted; index 0 is key 1.
  std::array<std::int32_t, 30> KeyCodes{};

 private:
  void Option1_Click(std::uint8_t panel);
  void Option2_Click(std::uint8_t level);
  void CmdMenu_Click();
  void CmdM_Click(std::size_t key);
  void CmdM_KeyDown(std::size_t key, Key& pressed);
  void CmdM_DragStart(std::size_t key, bool& begins);
  void CmdM_DragDrop(std::size_t key);
  void DataGrid12_Choose();
  void Text6_KeyDown(Key& key);
  void CmdOk1_Click();
  void CmdClr_Click();
  void CmdName_Click();
  void CmdClrAll_Click();
  void CmdCopyAll_Click();

  Recordset& Keys() { return session_.Pool().RsPanels; }
  /// How far RsPanels stands from its first record.
  std::uint8_t Place();
  /// The key of the record on which RsPanels stands is the selected one.
  bool IsKeySelected();
  /// Selects the key of the record on which RsPanels stands, and only that; none when the record isn't that of the key
  /// at its place.
  void SelectKey();
  /// The keys show the level that is chosen, as it was read last, so that a caption tells what stands in a row.
  bool IsShownLevelChosen();
  void AllowEntry(bool allowed);
  /// Writes `code` to the selected key and shows the level again; the keyboard goes back to where the key was selected.
  void StoreCode(std::int32_t code);
  /// Labels and heading say which menu, panel and level are shown.
  void ShowPlace();
  /// Shows the level chosen, from its first key.
  void ShowLevel();
  /// Shows the level chosen and the panel's name.
  void ShowPanel();
  void Complain(const std::string& text);

  /// Captions of the panel buttons are their numbers.
  void NumberPanels();
  /// Captions of the panel buttons as `sql` gives them: the table's number of the panel and its name.
  void NamePanelsBy(const std::string& sql);
  /// Caption of the button of `panel` (from 1); an empty name gives its number.
  void NamePanel(std::size_t panel, const std::string& name);
  void PaintKey(Button& key, const Recordset& keys, std::int32_t code);
  void FormatPanelGrid();

  Session& session_;
  FormCopy& copying_;
  Control* selected_from_;  ///< the key or the list in which the selected key was chosen

  struct ShownLevel {
    std::uint8_t menu, panel, level;
    friend bool operator==(const ShownLevel&, const ShownLevel&) = default;
  };
  std::optional<ShownLevel> painted_;               ///< the level that the keys show
  Colour colour_of_selected_ = key_colour::kEmpty;  ///< what the selected key shows when it isn't
};

}  // namespace zrt
