#include "reference/frm_plu_podb.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/numbers.h"
#include "core/text.h"
#include "reference/pick_rules.h"
#include "reference/product_list.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr std::string_view kPickList =
    "SELECT COD,NAME,BARCODE,ROUND(PRISE/100,2),ROUND((OST-KOL)/1000,3),N5/1000 FROM TOVAR GROUP BY COD ORDER BY ";
enum Column { kCod, kName, kBarcode, kPrice };

}  // namespace

frmPLUpodb::frmPLUpodb(Desktop& desktop, Session& session, ModuleReg& stock, frmPLU& card)
    : Form(desktop, "frmPLUpodb"), session_(session), stock_(stock), card_(card) {
  Load = [this] { Form_Load(); };
  Activate = [this] { CmdName_Click(); };
  Deactivate = [this] { ClearForm(); };
  Unload = [this] { rs_picker_.Close(); };
  CmdCod.Click = [this] { SortBy("COD"); };
  CmdName.Click = [this] { CmdName_Click(); };
  CmdBar.Click = [this] { SortBy("BARCODE"); };
  CmdPrice.Click = [this] { SortBy("PRISE"); };
  CmdKol.Click = [this] { SortBy("(OST-KOL)"); };
  CmdVid.Click = [this] { SortBy("N5"); };
  KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Hide();
  };
  TextFind.Change = [this] { TextFind_Change(); };
  TextFind.KeyDown = [this](Key& key) { TextFind_KeyDown(key); };
  CmdClearFind.Click = [this] {
    TextFind.Text = "";
    TextFind.SetFocus();
  };
  DataGrid01.DblClick = [this] { ChooseFromGrid(); };
  DataGrid01.KeyDown = [this](Key& key) { DataGrid01_KeyDown(key); };
  CmnFindBar.Click = [this] { CmnFindBar_Click(); };
  TextKol.KeyDown = [this](Key& key) { TextKol_KeyDown(key); };
  TextPrice.KeyDown = [this](Key& key) { TextPrice_KeyDown(key); };
  OKButton.Click = [this] { SendDataToForm(); };
  CmdNewPLU.Click = [this] { card_.NewProductCard(ProductCardCaller::kPicker); };
  CmdCopyPLU.Click = [this] {
    if (HasRows()) card_.CopyProductCard(CurrentCod(), ProductCardCaller::kPicker);
  };
  CmdShowPLU.Click = [this] {
    if (HasRows()) card_.OpenProductCard(CurrentCod(), ProductCardCaller::kPicker);
  };
  CmdDelPLU.Click = [this] { CmdDelPLU_Click(); };
  Complete();
}

void frmPLUpodb::OpenFor(std::uint8_t form_code) {
  FormCode = form_code;
  Show();
  TextFind.SetFocus();
}

void frmPLUpodb::Form_Load() {
  session_.BindSet(rs_picker_, fmt::format("{}NAME", kPickList));
  DataGrid01.Bind(rs_picker_);
  FormatPickerGrid();
  Session::ShowLastRow(rs_picker_);
}

void frmPLUpodb::FormatPickerGrid() {
  using Align = GridColumn::Align;
  // Under the sort buttons' captions: three of the columns have no name of their own.
  DataGrid01.Columns = {{"Код", "", 900, Align::kRight},         {"Наименование", "", 4200, Align::kLeft},
                        {"Штрихкод", "", 1500, Align::kLeft},    {"Цена", "0.00", 1050, Align::kRight},
                        {"Остат", "0.000", 1050, Align::kRight}, {"Дробн", "", 750, Align::kRight}};
}

void frmPLUpodb::CmdName_Click() {
  SortBy("NAME");
}

void frmPLUpodb::SortBy(std::string_view tail) {
  // A list that couldn't be read is read again here; one that is empty stays so.
  if (rs_picker_.IsOpen() && !HasRows()) return;
  const int row = DataGrid01.Row();
  const std::string cod = row > 0 ? rs_picker_.Field(kCod).TextOrEmpty() : std::string();
  session_.BindSet(rs_picker_, fmt::format("{}{}", kPickList, tail));
  DataGrid01.Bind(rs_picker_);
  FormatPickerGrid();
  if (!HasRows()) return;
  if (!cod.empty()) rs_picker_.Find("COD", cod);
  // Another work place may have deleted it; then the row stays.
  if (rs_picker_.Eof()) rs_picker_.SetBookmark(std::min(row, rs_picker_.RecordCount()));
  DataGrid01.Refresh();
}

void frmPLUpodb::ShowProduct(const std::string& name) {
  rs_picker_.Requery();
  FormatPickerGrid();
  ShowByName(TextFind, DataGrid01, "NAME", name);
}

void frmPLUpodb::TextFind_Change() {
  FindProductByName(TextFind, DataGrid01, "NAME");
  TextFind.SetFocus();
}

void frmPLUpodb::TextFind_KeyDown(Key& key) {
  if (key.code == Key::kUp || key.code == Key::kDown) StepFromSearch(TextFind, DataGrid01, key.code);
  if (key.code == Key::kEnter) ChooseFromGrid();
}

void frmPLUpodb::DataGrid01_KeyDown(Key& key) {
  if (key.code == Key::kEnter) ChooseFromGrid();
}

void frmPLUpodb::ChooseFromGrid() {
  if (DataGrid01.Row() == 0) return;
  chosen_by_barcode_ = false;
  const double price = rs_picker_.IsNull(kPrice) ? 0 : rs_picker_.Field(kPrice).Number();
  AskFor(CurrentCod(), rs_picker_.Field(kName).TextOrEmpty(), rs_picker_.Field(kBarcode).TextOrEmpty(),
         price * scale::kDocument);
}

void frmPLUpodb::CmnFindBar_Click() {
  const std::string scanned = TheDesktop().InputBox("отсканируйте Штрихкод", "Штрихкод");
  if (scanned.empty()) return;
  // Without quotes: the database compares numbers, so that leading zeros of the scanner don't matter.
  Recordset found =
      session_.ReadOne(fmt::format("SELECT DISTINCT COD,NAME,BARCODE,PRISE FROM TOVAR WHERE BARCODE={}", scanned));
  if (found.RecordCount() == 0) {
    TheDesktop().MsgBox("НЕТ ТАКОГО ШТРИХКОДА В БАЗЕ ДАННЫХ!", BoxIcon::kExclamation);
    found.Close();
    return;
  }
  chosen_by_barcode_ = true;
  const double price = found.IsNull(kPrice) ? 0 : found.Field(kPrice).Number();
  const std::int32_t cod = ToInt32(found.Field(kCod).Number());
  const std::string name = found.Field(kName).TextOrEmpty();
  const std::string barcode = found.Field(kBarcode).TextOrEmpty();
  found.Close();
  AskFor(cod, name, barcode, price * scale::kPriceToDocument);
}

void frmPLUpodb::AskFor(std::int32_t cod, const std::string& name, const std::string& barcode, double retail) {
  PickCod = cod;
  PickName = name;
  // One character is the "0" that a product without a barcode has in the base.
  PickBar = Length(barcode) == 1 ? "" : barcode;
  LbllName.Caption = fmt::format("{}  {}  {}", PickBar, PickName, PickCod);

  const Asks asks = AsksOf(FormCode);
  const DocumentKind* const kind = FindKind(FormCode);
  if (kind != nullptr && kind->picks_purchase) {
    PickPrice = stock_.GetPurchasePrice(PickCod);
  } else if (asks != Asks::kNothing && asks != Asks::kUnknown) {
    PickPrice = ToInt32(retail);
  }
  TextPrice.Text = PickPrice == 0 ? "" : session_.Format().FormatNumber(PickPrice / double{scale::kDocument}, 2);
  TextKol.Text = "";
  switch (asks) {
    case Asks::kQuantityAndPrice:
    case Asks::kQuantity:
    case Asks::kUnknown:
      return FocusWhole(TextKol);
    case Asks::kPrice:
      return FocusWhole(TextPrice);
    case Asks::kNothing:
      return OKButton.SetFocus();
  }
}

void frmPLUpodb::TextKol_KeyDown(Key& key) {
  if (key.code == Key::kEnter) LeaveQuantity(session_.Format(), AsksOf(FormCode), TextKol, TextPrice, OKButton);
  if (key.code == Key::kEscape) {
    key.swallow = true;
    ClearForm();
    BackToChoice();
  }
}

void frmPLUpodb::TextPrice_KeyDown(Key& key) {
  if (key.code == Key::kEnter) SendDataToForm();
  if (key.code == Key::kEscape) {
    key.swallow = true;
    ClearForm(true);
    BackToChoice();
  }
}

void frmPLUpodb::SendDataToForm() {
  const RegionalFormat& format = session_.Format();
  const Asks asks = AsksOf(FormCode);
  if (!FieldsAreNumbers(format, asks, TextKol, TextPrice)) return;
  const bool no_quantity = asks == Asks::kPrice || asks == Asks::kNothing;
  PickKol = no_quantity ? 0 : TypedThousandths(format, TextKol.Text());
  PickPrice = asks == Asks::kNothing ? 0 : TypedThousandths(format, TextPrice.Text());
  stock_.BroadcastToForm(PickCod, PickKol, PickPrice, FormCode);
  ClearForm(true);
  if (asks == Asks::kNothing) return Hide();
  BackToChoice();
}

void frmPLUpodb::ClearForm(bool refresh) {
  LbllName.Caption = "";
  TextKol.Text = "";
  TextPrice.Text = "";
  if (refresh) DataGrid01.Refresh();
}

void frmPLUpodb::BackToChoice() {
  if (chosen_by_barcode_) return CmnFindBar.SetFocus();
  // The next name is typed over the last one.
  FocusWhole(TextFind);
}

void frmPLUpodb::CmdDelPLU_Click() {
  if (!HasRows()) return;
  const std::int32_t cod = CurrentCod();
  if (!ConfirmDeletion(TheDesktop(), cod, rs_picker_.Field(kName).TextOrEmpty())) return;
  DeleteProduct(cod);
  rs_picker_.Requery();
  Session::ShowLastRow(rs_picker_);
  FormatPickerGrid();
}

std::int32_t frmPLUpodb::CurrentCod() const {
  return ToInt32(rs_picker_.Field(kCod).Number());
}

}  // namespace zrt
