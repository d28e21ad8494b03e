#include "reference/frm_plu.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>

#include "core/numbers.h"
#include "core/text.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr std::array<std::string_view, 4> kPlaces = {"Бар", "Кухня-1", "Кухня-2", "Кухня-3"};
constexpr std::array<std::string_view, 3> kExcise = {"", "АЛКОГОЛЬ", "СИГАРЕТЫ"};
constexpr std::string_view kNewCaption = "Карточка товара: - НОВЫЙ";
constexpr std::string_view kNoBarcode = "0";

std::string Workshop(int number) {
  return fmt::format("Цех-{}", number);
}

/// The number that a cell shows, "0" where the database has none: an empty text could be shown but not saved.
std::string NumberText(const Cell& cell, const RegionalFormat& format) {
  return cell.IsNull() ? "0" : cell.Display(format);
}

}  // namespace

std::uint8_t LocationCode(std::string_view place, std::string_view workshop) {
  const auto found = std::find(kPlaces.begin(), kPlaces.end(), place);
  const int base = found == kPlaces.end() ? 0 : static_cast<int>(found - kPlaces.begin());
  if (place == kPlaces[0]) return 0;
  for (int number = 1; number <= 3; ++number) {
    if (workshop == Workshop(number)) return ToByte(base * 10 + number);
  }
  return ToByte(base);
}

std::uint8_t ExciseCode(std::string_view kind) {
  const auto found = std::find(kExcise.begin(), kExcise.end(), kind);
  return found == kExcise.end() ? std::uint8_t{0} : static_cast<std::uint8_t>(found - kExcise.begin());
}

frmPLU::frmPLU(Desktop& desktop, Session& session) : Form(desktop, "frmPLU"), session_(session) {
  Load = [this] { Form_Load(); };
  KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Hide();
  };
  for (TextBox* box : {&TextName, &TextPrise}) {
    box->KeyDown = [this](Key& key) {
      if (key.code != Key::kEnter) return;
      key.swallow = true;
      Save();
    };
  }
  CheckVes.Click = [this] { CheckVes_Click(); };
  CmdKVP.Click = [this] { CmdKVP_Click(); };
  CmdDelKVP.Click = [this] { DropParts(); };
  ListKVP.DblClick = [this] { TakeParts(); };
  ListKVP.KeyDown = [this](Key& key) {
    if (key.code == Key::kEnter) TakeParts();
    if (key.code == Key::kEscape) {
      key.swallow = true;
      DropParts();
      CmdKVP.SetFocus();
    }
  };
  OKButton.Click = [this] { Save(); };
  CancelButton.Click = [this] { Hide(); };
  Complete();
}

void frmPLU::Form_Load() {
  for (const std::string_view place : kPlaces) Combo1.AddItem(std::string(place));
  Combo2.AddItem("");
  for (int number = 1; number <= 3; ++number) Combo2.AddItem(Workshop(number));
  for (int category = 0; category <= 9; ++category) Combo3.AddItem(std::to_string(category));
  for (const std::string_view kind : kExcise) Combo4.AddItem(std::string(kind));
  for (int rate = 0; rate <= 6; ++rate) Combo5.AddItem(std::to_string(rate));
  AddMassivToList();
}

void frmPLU::AddMassivToList() {
  for (int parts = 2; parts <= 12; ++parts) ListKVP.AddItem(std::to_string(parts));
}

void frmPLU::NewProductCard(ProductCardCaller caller) {
  PutNextCode();
  TextName.Text = "";
  Caption = std::string(kNewCaption);
  TextPrise.Text = "0,00";
  CheckUsl.Value = false;
  Combo1.Text = "Бар";
  Combo2.Text = "";
  Combo3.Text = "0";
  Combo4.Text = "";
  Combo5.Text = "0";
  CheckVes.Value = false;
  TextVes.Text = "0";
  TextKVP.Text = "0";
  TextVol.Text = "0";
  TextBar.Text = "";
  TextUkt.Text = "";
  ShowFor(caller, TextName);
}

void frmPLU::CopyProductCard(std::int32_t cod, ProductCardCaller caller) {
  PutNextCode();
  if (!ReadProduct(cod)) return;
  Caption = std::string(kNewCaption);
  TextBar.Text = "";
  ShowFor(caller, TextName);
}

void frmPLU::OpenProductCard(std::int32_t cod, ProductCardCaller caller) {
  if (!ReadProduct(cod)) return;
  LabelCod.Caption = std::to_string(cod);
  Caption = "Карточка товара: " + TextName.Text();
  ShowFor(caller, TextPrise);
}

void frmPLU::PutNextCode() {
  // Gaps that deleted products have left are never filled: receipts still name their codes.
  Recordset codes = session_.ReadOne("SELECT COD FROM TOVAR GROUP BY COD ORDER BY COD");
  double code = 1;
  if (codes.RecordCount() > 0) {
    codes.MoveLast();
    code = codes.Field(0).Number() + 1;
  }
  LabelCod.Caption = std::to_string(ToInt32(code));
}

bool frmPLU::ReadProduct(std::int32_t cod) {
  Recordset product = session_.ReadOne(fmt::format(
      "SELECT COD,NAME,ROUND(PRISE/100,2),N1,N2,REZ,N4,N5/1000,BARCODE,N7,NDS,N6,UKT FROM TOVAR WHERE COD={}"
      " GROUP BY COD",
      cod));
  if (product.RecordCount() == 0) {
    product.Close();
    return false;
  }
  enum Column {
    kCod,
    kName,
    kPrice,
    kExciseKind,
    kLocation,
    kCategory,
    kScales,
    kParts,
    kBarcode,
    kPortion,
    kTax,
    kNoStock,
    kUkt
  };
  const RegionalFormat& format = session_.Format();
  const auto number = [&](Column column) { return NumberText(product.Field(column), format); };

  TextName.Text = product.Field(kName).TextOrEmpty();
  TextPrise.Text = format.FormatNumber(product.IsNull(kPrice) ? 0 : product.Field(kPrice).Number(), 2);
  ShowLocation(number(kLocation));
  Combo3.Text = number(kCategory);
  const std::string excise = number(kExciseKind);
  for (std::size_t code = 0; code < kExcise.size(); ++code) {
    if (excise == std::to_string(code)) Combo4.Text = std::string(kExcise[code]);
  }
  Combo5.Text = number(kTax);
  TextVes.Text = number(kScales);
  CheckVes.Value = TextVes.Text() != "0";
  const bool whole = product.IsNull(kParts);
  TextKVP.Text = number(kParts);
  TextVol.Text = whole ? "0" : number(kPortion);
  TextBar.Text = Trim(product.Field(kBarcode).TextOrEmpty());
  TextUkt.Text = Trim(product.Field(kUkt).TextOrEmpty());
  CheckUsl.Value = !product.IsNull(kNoStock);
  product.Close();
  return true;
}

void frmPLU::ShowLocation(const std::string& code) {
  // "Кухня-3" is never read back: Combo1 then keeps the text of the card shown before, and a save writes that one.
  for (std::size_t place = 0; place <= 2; ++place) {
    if (code.front() == static_cast<char>('0' + place)) Combo1.Text = std::string(kPlaces[place]);
  }
  if (code.size() != 2) {
    Combo2.Text = "";
  } else if (code.back() >= '1' && code.back() <= '3') {
    Combo2.Text = Workshop(code.back() - '0');
  }
}

void frmPLU::ShowFor(ProductCardCaller caller, TextBox& first) {
  CardCaller = caller;
  // What is typed is as long as the shop's columns are.
  const Recordset& list = session_.Pool().RsProducts;
  TextName.MaxLength = list.FieldLength("Name");
  TextBar.MaxLength = list.FieldLength("Barcode");
  TextUkt.MaxLength = list.FieldLength("UKTZED");
  ListKVP.Visible = false;
  first.SetFocus();
  first.SelectAll();
  ShowModal();
}

void frmPLU::Save() {
  SaveProductCard(ToInt32(session_.Format().ToNumber(LabelCod.Caption())), CardCaller);
}

void frmPLU::SaveProductCard(std::int32_t cod, ProductCardCaller caller) {
  const RegionalFormat& format = session_.Format();
  const std::optional<double> typed = format.ParseNumber(TextPrise.Text());
  if (!typed) return Refuse("Введите числовое значение!", TextPrise);
  const std::int32_t price = ToInt32(format.ToNumber(format.FormatNumber(*typed, 2)) * 100.0);
  if (price == 0) return Refuse("Розничная цена не может быть равной нулю!\n\rВведите розничную цену!", TextPrise);

  // Deleted first, so that the search below doesn't take the product's own barcode for another's.
  session_.Write(fmt::format("DELETE FROM TOVAR WHERE COD={}", cod));
  const std::uint8_t location = LocationCode(Combo1.Text(), Combo2.Text());
  const std::uint8_t excise = ExciseCode(Combo4.Text());
  std::string barcode = Trim(TextBar.Text());
  if (barcode.empty()) {
    barcode = kNoBarcode;
  } else if (const std::int32_t owner = FindCodeByBarcode(barcode); owner > 0) {
    return Refuse(fmt::format("Штрихкод НЕ уникален!\n\rон принадлежит товару с кодом {}", owner), TextBar);
  }
  const std::string ukt = Trim(TextUkt.Text());
  const auto int16 = [&](const TextBox& box) { return ToInt16(format.ToNumber(Trim(box.Text()))); };
  const std::int16_t scales = CheckVes.Value() ? int16(TextVes) : std::int16_t{0};
  const std::int16_t parts = ToInt16(int16(TextKVP) * scale::kTovarParts);
  const std::int16_t portion = int16(TextVol);
  const std::uint8_t tax = ToByte(format.ToNumber(Combo5.Text()));
  const std::string_view no_stock = CheckUsl.Value() ? "0" : "NULL";
  session_.Write(
      fmt::format("INSERT INTO TOVAR (ID,COD,COD1,NAME,OST,KOL,PRISE,BARCODE,NDS,REZ,N1,N2,N5,N7,N4,T1,N6,UKT) VALUES "
                  "(0,{},1,'{}',0,0,{},'{}',{},{},{},{},{},{},{},'00.00.0000',{},'{}')",
                  cod, TextName.Text(), price, barcode, tax, Combo3.Text(), excise, location, parts, portion, scales,
                  no_stock, ukt));

  if (ProductsChanged) ProductsChanged();
  const auto& show = caller == ProductCardCaller::kCatalogue ? ShowInCatalogue : ShowInPicker;
  if (show) show(TextName.Text());
  Hide();
}

std::int32_t frmPLU::FindCodeByBarcode(const std::string& barcode) {
  Recordset found = session_.ReadOne(fmt::format("SELECT COD FROM TOVAR WHERE BARCODE='{}'", barcode));
  const std::int32_t cod = found.RecordCount() > 0 ? ToInt32(found.Field(0).Number()) : 0;
  found.Close();
  return cod;
}

void frmPLU::Refuse(const std::string& message, TextBox& box) {
  TheDesktop().MsgBox(message, BoxIcon::kCritical);
  box.SetFocus();
  box.SelectAll();
}

void frmPLU::CheckVes_Click() {
  if (!CheckVes.Value()) {
    TextVes.Text = "0";
  } else if (Trim(TextVes.Text()).empty() || session_.Format().ParseNumber(TextVes.Text()) == 0.0) {
    TextVes.Text = "1";
  }
}

void frmPLU::CmdKVP_Click() {
  ListKVP.Visible = true;
  ListKVP.SetFocus();
}

void frmPLU::TakeParts() {
  if (ListKVP.ListIndex() < 0) return;
  TextKVP.Text = Left(ListKVP.Text(), 2);
  ListKVP.Visible = false;
  CmdKVP.SetFocus();
}

void frmPLU::DropParts() {
  TextKVP.Text = "0";
  ListKVP.Visible = false;
}

}  // namespace zrt
