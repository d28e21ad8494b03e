#include "panels/panel_tab.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/text.h"
#include "panels/panel_layout.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kNoSuchColumn = "42S22";
constexpr Colour kActiveField = 0x80000005;  // the window's own
constexpr std::size_t kKeysPerRow = 6;

// The join of the first half finds the products of the keys; the left join of the second keeps the keys without one.
constexpr std::string_view kLevel =
    "SELECT HOTKEYS.ID As 'id',RIGHT(HOTKEYS.ID,2) As 'N',HOTKEYS.CODE As 'cod',TOVAR.NAME As 'name',"
    "ROUND(TOVAR.PRISE/100,2) As 'price',ROUND(TOVAR.N7/1000,3) As 'part' FROM HOTKEYS,TOVAR"
    " WHERE HOTKEYS.CODE=TOVAR.COD AND HOTKEYS.REZ={0} AND HOTKEYS.LV={1} GROUP BY id UNION"
    " SELECT HOTKEYS.ID As 'id',RIGHT(HOTKEYS.ID,2) As 'N',HOTKEYS.CODE As 'cod',TOVAR.NAME As 'name',"
    "ROUND(TOVAR.PRISE/100,2) As 'price',ROUND(TOVAR.N7/1000,3) As 'part' FROM HOTKEYS LEFT JOIN TOVAR ON "
    "HOTKEYS.CODE=TOVAR.COD"
    " WHERE HOTKEYS.REZ={0} AND HOTKEYS.LV={1} GROUP BY id ORDER BY id";

std::string Numbered(std::size_t panel) {
  return fmt::format("Панель № {}", panel);
}

bool IsDigit(const std::string& character) {
  return character.size() == 1 && character[0] >= '0' && character[0] <= '9';
}

}  // namespace

PanelTab::PanelTab(Form& form, Session& session, FormCopy& copying)
    : FormSection(form), session_(session), copying_(copying), selected_from_(&DataGrid12) {
  for (std::size_t panel = 1; panel <= Option1.size(); ++panel) {
    Option1[panel - 1].Click = [this, panel] { Option1_Click(static_cast<std::uint8_t>(panel)); };
  }
  for (std::size_t level = 1; level <= Option2.size(); ++level) {
    Option2[level - 1].Click = [this, level] { Option2_Click(static_cast<std::uint8_t>(level)); };
  }
  for (std::size_t key = 1; key <= CmdM.size(); ++key) {
    Button& button = CmdM[key - 1];
    button.Click = [this, key] { CmdM_Click(key); };
    button.KeyDown = [this, key](Key& pressed) { CmdM_KeyDown(key, pressed); };
    button.DragStart = [this, key](bool& begins) { CmdM_DragStart(key, begins); };
    button.DragDrop = [this, key](Control&) { CmdM_DragDrop(key); };
  }
  CmdMenu.Click = [this](std::uint8_t) { CmdMenu_Click(); };
  DataGrid12.DblClick = [this] { DataGrid12_Choose(); };
  DataGrid12.KeyDown = [this](Key& key) {
    if (key.code == Key::kEnter) DataGrid12_Choose();
  };
  Text6.KeyDown = [this](Key& key) { Text6_KeyDown(key); };
  CmdOk1.Click = [this] { CmdOk1_Click(); };
  CmdClr.Click = [this] { CmdClr_Click(); };
  CmdName.Click = [this] { CmdName_Click(); };
  CmdClrAll.Click = [this] { CmdClrAll_Click(); };
  CmdCopyAll.Click = [this] { CmdCopyAll_Click(); };
  // What was copied or loaded there is seen here at once.
  copying_.LayoutLeft = [this] { LoadPanelKeys(PanelNo, LevelNo, Place()); };
}

void PanelTab::NamePanels() {
  NumberPanels();
  try {
    NamePanelsBy("SELECT COD, T9 FROM CONST WHERE COD BETWEEN 1 AND 12");
  } catch (const DatabaseError& error) {
    // A base of the oldest version has no column of names until it is upgraded, a moment later.
    if (error.SqlState() != kNoSuchColumn) throw;
  }
}

void PanelTab::NumberPanels() {
  for (std::size_t panel = 1; panel <= Option1.size(); ++panel) NamePanel(panel, {});
}

void PanelTab::NamePanelsBy(const std::string& sql) {
  Recordset names = session_.ReadOne(sql);
  for (; !names.Eof(); names.MoveNext()) {
    const std::int64_t panel = (names.Field(0).Int() - 1) % kPanelsPerMenu + 1;
    NamePanel(static_cast<std::size_t>(panel), names.Field(1).TextOrEmpty());
  }
}

void PanelTab::NamePanel(std::size_t panel, const std::string& name) {
  Option1.at(panel - 1).Caption = name.empty() ? Numbered(panel) : name;
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
  const Recordset name = session_.ReadOne("SELECT T9 FROM CONST WHERE COD=1");
  TextName.Text = name.Field(0).TextOrEmpty();
}

void PanelTab::LoadPanelKeys(std::uint8_t panel, std::uint8_t level, std::uint8_t row) {
  // Until the keys are painted they stand for nothing: a level that can't be read, or has lost rows, leaves them with
  // the products of another one.
  painted_.reset();
  for (Button& key : CmdM) {
    if (key.BackColor() == key_colour::kSelected) key.BackColor = colour_of_selected_;
  }
  Recordset& keys = Keys();
  session_.BindSet(keys, fmt::format(kLevel, TablePanel(session_.CurrentMenu, panel), level));
  DataGrid12.Bind(keys);
  FormatPanelGrid();
  if (keys.RecordCount() == kKeysPerLevel) {
    KeyCodes.fill(0);
    for (std::size_t key = 0; key < CmdM.size(); ++key, keys.MoveNext()) {
      const Cell cod = keys.Field("cod");
      const std::int32_t code = cod.IsNull() ? 0 : ToInt32(cod.Number());
      PaintKey(CmdM[key], keys, code);
      KeyCodes[key] = code;
    }
    painted_ = {session_.CurrentMenu, panel, level};
  }
  if (keys.RecordCount() == 0) return;
  keys.MoveFirst();
  if (row != 0) keys.Move(row);
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
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"id", 600, Align::kRight},
                                                               {"N", 450, Align::kRight},
                                                               {"cod", 675, Align::kRight},
                                                               {"name", 3000, Align::kLeft},
                                                               {"price", 975, Align::kRight, "0.00"},
                                                               {"part", 675, Align::kRight}});
  DataGrid12.Layout(kLayout);
}

// Choosing a panel, a level, a menu

void PanelTab::Option1_Click(std::uint8_t panel) {
  PanelNo = panel;
  LevelNo = 1;
  Option2.front().Choose();
  ShowPanel();
  Text6.Text = "";
}

void PanelTab::Option2_Click(std::uint8_t level) {
  LevelNo = level;
  ShowLevel();
  Text6.Text = "";
}

void PanelTab::CmdMenu_Click() {
  session_.CurrentMenu = CmdMenu.Trigger();
  Label1.Caption = fmt::format("Меню № {}", session_.CurrentMenu);
  TextMenu.Text = session_.CurrentMenu == 1 ? CmdMenu.Caption_1() : CmdMenu.Caption_2();
  NumberPanels();  // no name of the other menu stays, whichever of the reads below fails or finds no row
  ShowPanel();
  NamePanelsBy(fmt::format("SELECT COD, T9 FROM CONST WHERE COD BETWEEN {} AND {}",
                           (session_.CurrentMenu - 1) * kPanelsPerMenu + 1, session_.CurrentMenu * kPanelsPerMenu));
  Text6.Text = "";
}

void PanelTab::ShowPlace() {
  Label5.Caption = Numbered(PanelNo);
  Label2.Caption = fmt::format("Уровень {}", LevelNo);
  DataGrid12.Caption =
      fmt::format("Меню № {}: Сенсорная панель № {} - уровень {}", session_.CurrentMenu, PanelNo, LevelNo);
}

void PanelTab::ShowLevel() {
  ShowPlace();
  LoadPanelKeys(PanelNo, LevelNo, 0);
}

void PanelTab::ShowPanel() {
  TextName.Text = "";  // the name of the panel before isn't this one's, whichever of the reads fails
  ShowLevel();
  const int row = TablePanel(session_.CurrentMenu, PanelNo);
  const Recordset name = session_.ReadOne(fmt::format("SELECT T9 FROM CONST WHERE COD={}", row));
  if (!name.Eof()) TextName.Text = name.Field(0).TextOrEmpty();
}

// Selecting a key

void PanelTab::CmdM_Click(std::size_t key) {
  if (!Keys().IsOpen()) LoadPanelKeys(PanelNo, LevelNo, 0);  // it couldn't be read before
  if (Keys().RecordCount() == 0) return;
  Keys().MoveFirst();
  Keys().Move(static_cast<int>(key) - 1);
  SelectKey();
  selected_from_ = &CmdM[key - 1];
  RefreshCatalogue();
}

/// The arrows walk the keys as they stand on the screen; typing at a key selects it and gives its code or searches its
/// product.
void PanelTab::CmdM_KeyDown(std::size_t key, Key& pressed) {
  if (pressed.code == Key::kUp || pressed.code == Key::kDown) {
    pressed.swallow = true;
    const bool up = pressed.code == Key::kUp;
    if (up ? key > kKeysPerRow : key + kKeysPerRow <= CmdM.size()) {
      CmdM[up ? key - kKeysPerRow - 1 : key + kKeysPerRow - 1].SetFocus();
    }
  } else if (pressed.code == Key::kCharacter && pressed.text != " ") {
    pressed.swallow = true;
    CmdM_Click(key);
    if (!IsKeySelected()) return;
    if (!IsDigit(pressed.text)) return SearchCatalogue(pressed.text);
    Text6.UserType(pressed.text);
    Text6.SetFocus();
  }
}

void PanelTab::DataGrid12_Choose() {
  // Couldn't be read before: the operator has seen no row yet that he could mean.
  if (!Keys().IsOpen()) return LoadPanelKeys(PanelNo, LevelNo, 0);
  if (DataGrid12.Row() == 0) return;
  SelectKey();
  selected_from_ = &DataGrid12;
  Text6.Text = "";
  Text6.SetFocus();
}

void PanelTab::SelectKey() {
  const std::uint8_t place = Place();
  AllowEntry(true);
  LoadPanelKeys(PanelNo, LevelNo, place);
  if (place >= CmdM.size() || DataGrid12.Row() == 0) return;
  // In a level that has lost rows those behind the gap aren't the rows of the keys at their places.
  const auto panel = static_cast<std::int16_t>(TablePanel(session_.CurrentMenu, PanelNo));
  if (Keys().Field("id").Int() != KeyBaseId(panel, LevelNo) + place) return;
  colour_of_selected_ = CmdM[place].BackColor();
  CmdM[place].BackColor = key_colour::kSelected;
}

bool PanelTab::IsShownLevelChosen() {
  return Keys().IsOpen() && painted_ == ShownLevel{session_.CurrentMenu, PanelNo, LevelNo};
}

void PanelTab::AllowEntry(bool allowed) {
  Text6.Enabled = allowed;
  Text6.BackColor = allowed ? kActiveField : colour::kButtonFace;
  CmdOk1.Enabled = allowed;
  CmdClr.Enabled = allowed;
}

std::uint8_t PanelTab::Place() {
  return ToByte(std::max(Keys().Bookmark() - 1, 0));
}

bool PanelTab::IsKeySelected() {
  if (DataGrid12.Row() == 0) return false;
  const std::uint8_t place = Place();
  return place < CmdM.size() && CmdM[place].BackColor() == key_colour::kSelected;
}

// Writing it

void PanelTab::ChooseProduct() {
  Text6.Text = session_.Pool().RsProducts.Field("Cod").Display(session_.Format());
  AllowEntry(true);
  ClearSearch();
  Text6.SetFocus();
}

void PanelTab::Text6_KeyDown(Key& key) {
  if (key.code == Key::kEnter) CmdOk1_Click();
  if (key.code == Key::kEscape) {
    Text6.Text = "";
    selected_from_->SetFocus();
  }
}

void PanelTab::CmdOk1_Click() {
  const std::string typed = Text6.Text().empty() ? "0" : Text6.Text();
  const std::optional<double> code = session_.Format().ParseNumber(typed);
  if (!code) {
    Complain("Введите целое число!");
    Text6.SetFocus();
    Text6.SelectAll();
    return;
  }
  if (!IsKeySelected()) return Complain("Не выбрана кнопка!");
  StoreCode(ToInt32(*code));
}

void PanelTab::CmdClr_Click() {
  if (!IsKeySelected()) return Complain("Не выбрана кнопка!");
  StoreCode(0);
  RefreshCatalogue();
}

void PanelTab::StoreCode(std::int32_t code) {
  session_.Write(fmt::format("UPDATE HOTKEYS SET CODE = {} WHERE ID = {}", code, Keys().Field("id").Raw()));
  // The entry is over before the level is read again: whatever becomes of that, the code must not be written twice.
  Text6.Text = "";
  AllowEntry(false);
  selected_from_->SetFocus();
  LoadPanelKeys(PanelNo, LevelNo, Place());
  DataGrid12.Refresh();
}

void PanelTab::Complain(const std::string& text) {
  TheDesktop().MsgBox(text, BoxIcon::kCritical, BoxButtons::kOk, "ZASTAVA");
}

// Moving a key

void PanelTab::CmdM_DragStart(std::size_t key, bool& begins) {
  Button& source = CmdM[key - 1];
  if (source.Caption().empty() || !IsShownLevelChosen()) return;
  DragSource = static_cast<std::int16_t>(key);
  source.BackColor = key_colour::kDragged;
  begins = true;
}

void PanelTab::CmdM_DragDrop(std::size_t key) {
  Button& target = CmdM[key - 1];
  const auto number = static_cast<std::int16_t>(key);
  // A key that holds a product isn't overwritten; the source keeps the colour of the drag until the level is shown
  // again.
  if (!target.Caption().empty() || number == DragSource) return;
  target.BackColor = key_colour::kDragged;
  const BoxAnswer answer =
      TheDesktop().MsgBox("Переместить кнопку на указанное место?", BoxIcon::kQuestion, BoxButtons::kOkCancel);
  try {
    if (answer == BoxAnswer::kOk) MoveKey(DragSource, number);
  } catch (const DatabaseError&) {
    ShowLevel();  // half-way the product stands on both keys, and is to be seen there
    throw;
  }
  ShowLevel();
  Text6.Text = "";
}

void PanelTab::MoveKey(std::int16_t source, std::int16_t target) {
  // In a schema with a single menu, whose number is 0, this names keys that don't exist, and nothing is moved.
  const int base = (session_.CurrentMenu - 1) * kIdsPerMenu + KeyBaseId(PanelNo, LevelNo) - 1;
  Recordset found = session_.ReadOne(fmt::format("SELECT CODE FROM HOTKEYS WHERE ID={}", base + source));
  if (!found.Eof()) {
    const std::int64_t code = found.IsNull(0) ? 0 : found.Field(0).Int();
    session_.Write(fmt::format("UPDATE HOTKEYS SET CODE={} WHERE ID={}", code, base + target));
    session_.Write(fmt::format("UPDATE HOTKEYS SET CODE=0 WHERE ID={}", base + source));
  }
  found.Close();
}

// Names

void PanelTab::CmdName_Click() {
  const std::size_t panel = std::stoul(Trim(Right(Label5.Caption(), 2)));
  const int menu = session_.CurrentMenu;
  const int row = TablePanel(session_.CurrentMenu, static_cast<int>(panel));
  session_.Write(fmt::format("UPDATE CONST SET T9='{}' WHERE COD={}", TextName.Text(), row));
  NamePanel(panel, TextName.Text());
  if (menu != 0) session_.Write(fmt::format("UPDATE CONST SET N{}='{}' WHERE COD=7", menu, TextMenu.Text()));
  if (menu == 1) CmdMenu.Caption_1 = TextMenu.Text();
  if (menu == 2) CmdMenu.Caption_2 = TextMenu.Text();
}

// All panels at once

void PanelTab::CmdClrAll_Click() {
  Desktop& desktop = TheDesktop();
  const std::string entered = desktop.AskPassword("Для очистки всех панелей введите пароль администратора:");
  if (entered != kAdministratorPassword) return;
  if (desktop.MsgBox("Подтвердите очистку ВСЕХ панелей!", BoxIcon::kQuestion, BoxButtons::kOkCancel) !=
      BoxAnswer::kOk) {
    return;
  }
  session_.Write("UPDATE HOTKEYS SET CODE=0 WHERE id>100");
  const std::uint8_t place = Place();
  Keys().Requery();
  LoadPanelKeys(PanelNo, LevelNo, place);
}

void PanelTab::CmdCopyAll_Click() {
  if (TheDesktop().AskPassword("Введите пароль администратора:") != kAdministratorPassword) return;
  copying_.ShowModal();
}

}  // namespace zrt
