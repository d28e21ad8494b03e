#include "panels/form_copy.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/text.h"
#include "panels/panel_layout.h"
#include "platform/text_file.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr Colour kHoldsProducts = 49152;
constexpr int kButtonsPerLevel = 100;

/// A button's number is its level and its panel.
int LevelOf(int number) {
  return number / kButtonsPerLevel;
}
int PanelOf(int number) {
  return number % kButtonsPerLevel;
}

/// Name of a panel without one; `panel` counts from 0 through both menus.
std::string Numbered(std::size_t panel) {
  return fmt::format("Панель № {}", panel % kPanelsPerMenu + 1);
}

struct LayoutLine {
  std::int32_t id;
  std::int32_t code;
};

std::optional<LayoutLine> ReadLine(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return std::nullopt;
  const std::optional<std::int32_t> id = WholeNumber(text.substr(0, comma));
  const std::optional<std::int32_t> code = WholeNumber(text.substr(comma + 1));
  if (!id || !code) return std::nullopt;
  return LayoutLine{*id, *code};
}

/// The keys of the layout file; blank lines are passed over. Throws FileError, which names the line when one is broken.
std::vector<LayoutLine> ReadLayout(const DriveMap& drives) {
  std::vector<LayoutLine> layout;
  int number = 0;
  for (const std::string& text : ReadTextLines(drives, kLayoutFile)) {
    ++number;
    if (Trim(text).empty()) continue;
    const std::optional<LayoutLine> line = ReadLine(text);
    if (!line) throw FileError(fmt::format("{}, строка {}", kLayoutFile, number), "no ID and CODE");
    layout.push_back(*line);
  }
  return layout;
}

}  // namespace

FormCopy::FormCopy(Desktop& desktop, Session& session, const DriveMap& drives)
    : Form(desktop, "FormCopy"), session_(session), drives_(drives) {
  Activate = [this] { Form_Activate(); };
  Deactivate = [this] {
    if (LayoutLeft) LayoutLeft();
  };
  KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Hide();
  };
  for (std::size_t level = 0; level < CmdPan.size(); ++level) {
    for (std::size_t panel = 0; panel < CmdPan[level].size(); ++panel) {
      Button& button = CmdPan[level][panel];
      const int number = static_cast<int>((level + 1) * kButtonsPerLevel + panel + 1);
      button.DragStart = [](bool& begins) { begins = true; };
      button.DragDrop = [this, number](Control& source) {
        CmdPan_DragDrop(std::stoi(source.Name().substr(source.Name().rfind('_') + 1)), number);
      };
    }
  }
  CmrRefr.Click = [this] { PaintPanButtons(); };
  CmdExportMenu.Click = [this] { CmdExportMenu_Click(); };
  CmdImportMenu.Click = [this] { CmdImportMenu_Click(); };
  // For the question of a copy, should the names never be read.
  for (std::size_t panel = 0; panel < names_.size(); ++panel) names_[panel] = Numbered(panel);
  Complete();
}

void FormCopy::Form_Activate() {
  Label2.Caption = std::string(kLayoutFile);
  NamePanels();
  NameMenus();
  PaintPanButtons();
}

void FormCopy::NamePanels() {
  const Recordset rows = session_.ReadOne("SELECT COD, T9 FROM CONST");
  std::array<std::string, 24> stored;
  for (int row = 1; row <= rows.RecordCount(); ++row) {
    const std::int64_t panel = rows.At(row, 0).Int();
    // The rows behind the panels' hold other settings.
    if (panel >= 1 && panel <= std::int64_t{kMenus} * kPanelsPerMenu) {
      stored[static_cast<std::size_t>(panel - 1)] = rows.At(row, 1).TextOrEmpty();
    }
  }
  for (std::size_t panel = 0; panel < names_.size(); ++panel) {
    names_[panel] = stored[panel].empty() ? Numbered(panel) : std::move(stored[panel]);
    LabelPan[panel].Caption = "  " + names_[panel];
    LabelPan[panel].ToolTipText = names_[panel];
  }
}

void FormCopy::NameMenus() {
  LabelMenu[0].Caption = "меню-1";
  LabelMenu[1].Caption = "меню-2";
  const Recordset names = session_.ReadOne("SELECT N1, N2 FROM CONST WHERE COD=7");
  for (int menu = 0; menu < kMenus; ++menu) {
    if (!names.Eof() && !names.IsNull(menu)) {
      LabelMenu[static_cast<std::size_t>(menu)].Caption = names.Field(menu).Text();
    }
  }
}

void FormCopy::PaintPanButtons() {
  Recordset levels = session_.ReadOne("SELECT SUM(CODE),LV*100+REZ FROM HOTKEYS WHERE ID>100 GROUP BY REZ,LV");
  for (auto& level : CmdPan) {
    for (Button& button : level) button.BackColor = colour::kButtonFace;
  }
  for (; !levels.Eof(); levels.MoveNext()) {
    if (levels.IsNull(0) || levels.IsNull(1) || levels.Field(0).Number() <= 0) continue;
    if (Button* button = PanButton(levels.Field(1).Int())) button->BackColor = kHoldsProducts;
  }
}

Button* FormCopy::PanButton(std::int64_t number) {
  return dynamic_cast<Button*>(FindControl(fmt::format("CmdPan_{}", number)));
}

void FormCopy::CmdPan_DragDrop(int source, int target) {
  if (source == target) return;
  const auto name = [this](int number) { return names_[static_cast<std::size_t>(PanelOf(number) - 1)]; };
  const std::string question =
      fmt::format("Дублировать все данные \n\rиз панели {} уровень {}\n\rв панель {} уровень {} ?", name(source),
                  LevelOf(source), name(target), LevelOf(target));
  if (TheDesktop().MsgBox(question, BoxIcon::kQuestion, BoxButtons::kOkCancel) != BoxAnswer::kOk) return;
  try {
    CopyPanelLevel(source, target);
  } catch (const DatabaseError&) {
    PaintPanButtons();
    throw;
  }
  PaintPanButtons();
}

void FormCopy::CopyPanelLevel(int source, int target) {
  const Recordset keys = session_.ReadOne(
      fmt::format("SELECT ID,CODE FROM HOTKEYS WHERE REZ={} AND LV={}", PanelOf(source), LevelOf(source)));
  int id = KeyBaseId(static_cast<std::int16_t>(PanelOf(target)), static_cast<std::uint8_t>(LevelOf(target)));
  for (int row = 1; row <= keys.RecordCount(); ++row) {
    const Cell code = keys.At(row, 1);
    session_.Write(fmt::format("UPDATE HOTKEYS SET CODE ={} WHERE ID={}", code.IsNull() ? 0 : code.Int(), id));
    ++id;
  }
}

void FormCopy::CmdExportMenu_Click() {
  const Recordset keys = session_.ReadOne("SELECT ID,CODE FROM HOTKEYS WHERE ID>100 AND CODE>0");
  TextFileWriter file(drives_, std::string(kLayoutFile));
  for (int row = 1; row <= keys.RecordCount(); ++row) {
    file.Line(fmt::format("{},{}", keys.At(row, 0).Int(), keys.At(row, 1).Int()));
  }
  file.Close();
  TheDesktop().TellWritten({.text = fmt::format("Выгружен файл '{}'", kLayoutFile)}, kLayoutFile);
}

void FormCopy::CmdImportMenu_Click() {
  const std::string question = fmt::format("Загрузить новую раскладку меню\n\rиз файла '{}' ?", kLayoutFile);
  if (TheDesktop().MsgBox(question, BoxIcon::kQuestion, BoxButtons::kOkCancel) != BoxAnswer::kOk) return;
  std::error_code error;
  if (!std::filesystem::exists(drives_.ToNative(kLayoutFile), error)) return;
  // A file that can't be read, or has a broken line, ends here while the layout is as it was. Once the keys are emptied
  // only the server can fail: the lines before stay loaded then, and the same file can be loaded again.
  const std::vector<LayoutLine> layout = ReadLayout(drives_);
  try {
    session_.Write("UPDATE HOTKEYS SET CODE=0 WHERE ID>100");
    for (const LayoutLine& line : layout) {
      session_.Write(fmt::format("UPDATE HOTKEYS SET CODE={} WHERE ID={}", line.code, line.id));
    }
  } catch (const DatabaseError&) {
    PaintPanButtons();
    throw;
  }
  // The message first: a failure to paint would keep it from an operator whose layout is loaded.
  TheDesktop().MsgBox(fmt::format("Загружена раскладка меню из файла '{}'", kLayoutFile));
  PaintPanButtons();
}

}  // namespace zrt
