#include "panels/panel_tab.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/errors.h"
#include "core/numbers.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kNoSuchColumn = "42S22";
constexpr int kPanelsPerMenu = 12;
constexpr int kKeysPerLevel = 30;

// The join of the first half finds the products of the keys; the left join of the second keeps the keys without one.
constexpr std::string_view kLevel =
    "SELECT HOTKEYS.ID As 'id',RIGHT(HOTKEYS.ID,2) As 'N',HOTKEYS.CODE As 'cod',TOVAR.NAME As 'name',"
    "ROUND(TOVAR.PRISE/100,2) As 'price',ROUND(TOVAR.N7/1000,3) As 'part' FROM HOTKEYS,TOVAR"
    " WHERE HOTKEYS.CODE=TOVAR.COD AND HOTKEYS.REZ={0} AND HOTKEYS.LV={1} GROUP BY id UNION"
    " SELECT HOTKEYS.ID As 'id',RIGHT(HOTKEYS.ID,2) As 'N',HOTKEYS.CODE As 'cod',TOVAR.NAME As 'name',"
    "ROUND(TOVAR.PRISE/100,2) As 'price',ROUND(TOVAR.N7/1000,3) As 'part' FROM HOTKEYS LEFT JOIN TOVAR ON "
    "HOTKEYS.CODE=TOVAR.COD"
    " WHERE HOTKEYS.REZ={0} AND HOTKEYS.LV={1} GROUP BY id ORDER BY id";

}  // namespace

PanelTab::PanelTab(Form& form, Session& session)
    : FrameSensor(form, "FrameSensor"),
      CmdM(ControlArray<Button, 30>(form, "CmdM", 1)),
      DataGrid12(form, "DataGrid12"),
      Option1(ControlArray<OptionButton, 12>(form, "Option1", 1)),
      Option2(ControlArray<OptionButton, 3>(form, "Option2", 1)),
      Label1(form, "Label1"),
      Label2(form, "Label2"),
      Label5(form, "Label5"),
      Label11(form, "Label11"),
      Label12(form, "Label12"),
      Label13(form, "Label13"),
      Label17(form, "Label17"),
      TextName(form, "TextName"),
      CmdName(form, "CmdName"),
      TextMenu(form, "TextMenu"),
      CmdMenu(form, "CmdMenu"),
      Text6(form, "Text6"),
      CmdOk1(form, "CmdOk1"),
      CmdClr(form, "CmdClr"),
      CmdClrAll(form, "CmdClrAll"),
      CmdCopyAll(form, "CmdCopyAll"),
      session_(session) {}

void PanelTab::NamePanels() {
  for (std::size_t panel = 1; panel <= Option1.size(); ++panel) NamePanel(panel, {});
  try {
    Recordset& names = session_.ReadOne("SELECT COD, T9 FROM CONST WHERE COD BETWEEN 1 AND 12");
    for (; !names.Eof(); names.MoveNext()) {
      NamePanel(static_cast<std::size_t>(names.Field(0).Int()), names.Field(1).TextOrEmpty());
    }
  } catch (const DatabaseError& error) {
    // A base of the oldest version has no column of names until it is upgraded, a moment later.
    if (error.SqlState() != kNoSuchColumn) throw;
  }
}

void PanelTab::NamePanel(std::size_t panel, const std::string& name) {
  Option1.at(panel - 1).Caption = name.empty() ? fmt::format("Панель № {}", panel) : name;
}

void PanelTab::UseSingleMenu() {
  CmdCopyAll.Visible = false;
  CmdMenu.Visible = false;
  TextMenu.Text = "Меню1";
  TextMenu.Enabled = false;
}

void PanelTab::NameMenus(const std::string& first, const std::string& second) {
  CmdMenu.Caption_1 = first;
  CmdMenu.Caption_2 = second;
  TextMenu.Text = first;
}

void PanelTab::OpenLayout() {
  session_.BindSet(session_.Pool().RsPanels, "SELECT * FROM HOTKEYS WHERE REZ=1");
  Session::ShowLastRow(session_.Pool().RsPanels);
}

void PanelTab::ChooseFirst() {
  Option1.front().Choose();
  Option2.front().Choose();
  Label1.Caption = "Меню № 1";
  Label5.Caption = "Панель № 1";
  Label2.Caption = "Уровень 1";
}

void PanelTab::ShowFirstName() {
  TextName.Text = session_.ReadOne("SELECT T9 FROM CONST WHERE COD=1").Field(0).TextOrEmpty();
}

void PanelTab::LoadPanelKeys(std::uint8_t panel, std::uint8_t level, std::uint8_t row) {
  Recordset& keys = session_.Pool().RsPanels;
  session_.BindSet(keys, fmt::format(kLevel, TablePanel(panel), level));
  DataGrid12.Bind(keys);
  FormatPanelGrid();
  if (keys.RecordCount() == kKeysPerLevel) {
    KeyCodes.fill(0);
    for (std::size_t key = 0; key < CmdM.size(); ++key, keys.MoveNext()) {
      const std::int32_t code = ToInt32(keys.Field("cod").Number());
      PaintKey(CmdM[key], keys, code);
      KeyCodes[key] = code;
    }
  }
  if (keys.RecordCount() == 0) return;
  keys.MoveFirst();
  if (row != 0) keys.Move(row);
}

int PanelTab::TablePanel(int panel) const {
  return session_.CurrentMenu == 2 ? panel + kPanelsPerMenu : panel;
}

void PanelTab::PaintKey(Button& key, const Recordset& keys, std::int32_t code) {
  key.BackColor = key_colour::kEmpty;
  key.Caption = {};
  key.ToolTipText = {};
  key.FontBold = false;
  if (code <= 0) return;

  const Cell name = keys.Field("name");
  const Cell price = keys.Field("price");
  const Cell part = keys.Field("part");
  key.Caption = std::to_string(code);
  key.BackColor = key_colour::kNormal;
  key.FontBold = !part.IsNull() && part.Number() != 0;
  if (!price.IsNull() && price.Number() == 0) key.BackColor = key_colour::kPriceZero;
  if (name.IsNull()) {
    key.BackColor = key_colour::kUnknown;
    key.ToolTipText = "ТОВАРА НЕТ В СПРАВОЧНИКЕ !!!";
  } else {
    key.ToolTipText = name.Text();
  }
  // The later key of a pair is marked, not the earlier: only codes already painted are in KeyCodes.
  if (std::find(KeyCodes.begin(), KeyCodes.end(), code) != KeyCodes.end()) {
    key.BackColor = key_colour::kDuplicate;
    key.ToolTipText = "ДУБЛИРОВАН";
  }
}

void PanelTab::FormatPanelGrid() {
  DataGrid12.Layout({{"id", 600, Align::kRight},
                     {"N", 450, Align::kRight},
                     {"cod", 675, Align::kRight},
                     {"name", 3000, Align::kLeft},
                     {"price", 975, Align::kRight, "0.00"},
                     {"part", 675, Align::kRight}});
}

}  // namespace zrt
