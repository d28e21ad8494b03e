#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/session.h"
#include "platform/drive_map.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace zrt {

/// The file that holds the layout of both menus: a line for each key with a product, its ID, a comma, the code.
inline constexpr std::string_view kLayoutFile = "C:/Korvina/hotkeys.txt";

/// Copies whole levels of the touch panels onto one another by dragging; saves and loads all of them through one file.
class FormCopy final : public Form {
 public:
  FormCopy(Desktop& desktop, Session& session, const DriveMap& drives);

  /// The form was left, however it had come up: the layout may have changed.
  std::function<void()> LayoutLeft;

  /// A button for each level of each panel, named by level*100 + the table's number of the panel: CmdPan_101 to
  /// CmdPan_324. Level l of panel p stands at [l-1][p-1].
  std::array<std::array<Button, 24>, 3> CmdPan{ControlArray<Button, 24>(*this, "CmdPan", 101),
                                               ControlArray<Button, 24>(*this, "CmdPan", 201),
                                               ControlArray<Button, 24>(*this, "CmdPan", 301)};
  std::array<Label, 24> LabelPan = ControlArray<Label, 24>(*this, "LabelPan", 1);  ///< names of the panels
  std::array<Label, 2> LabelMenu = ControlArray<Label, 2>(*this, "LabelMenu", 1);  ///< names of the menus
  Button CmrRefr{*this, "CmrRefr"};
  Label Label2{*this, "Label2"};  ///< name of the file
  Button CmdExportMenu{*this, "CmdExportMenu"};
  Button CmdImportMenu{*this, "CmdImportMenu"};

  /// Green for the levels that hold a product. Throws DatabaseError.
  void PaintPanButtons();

  /// Makes the level of button `target` an exact copy of that of `source`, the empty keys too; both are the numbers of
  /// CmdPan. Throws DatabaseError; the keys before the failure are copied then.
  void CopyPanelLevel(int source, int target);

 private:
  void Form_Activate();
  void NamePanels();
  void NameMenus();
  void CmdPan_DragDrop(int source, int target);
  void CmdExportMenu_Click();
  void CmdImportMenu_Click();
  /// The button of this number; nullptr when there is none.
  Button* PanButton(std::int64_t number);

  Session& session_;
  const DriveMap& drives_;
  std::array<std::string, 24> names_;  ///< of the panels
};

}  // namespace zrt
