#include "reference/frm_dk.h"

#include <fmt/format.h>

#include <optional>

#include "core/numbers.h"
#include "core/text.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

constexpr int kHeight = 1860;            // twips
constexpr int kHeightWithHolder = 4280;  // twips

constexpr std::int16_t kHighestDiscount = 999;
constexpr std::size_t kAddressLength = 50;

}  // namespace

frmDK::frmDK(Desktop& desktop, Session& session) : Form(desktop, "frmDK"), session_(session) {
  Activate = [this] { Form_Activate(); };
  KeyDown = [this](Key& key) {
    if (key.code == Key::kEscape) Hide();
  };
  TextName.KeyDown = [this](Key& key) {
    if (key.code != Key::kEnter) return;
    // The card reader ends a barcode with Enter; the discount is still to come.
    key.swallow = true;
    TextSkd.SetFocus();
    TextSkd.SelectAll();
  };
  TextSkd.KeyDown = [this](Key& key) { SaveOnEnter(key); };
  for (TextBox* box : {&TxtHName, &TxtHAddr, &TxtHTel}) {
    box->KeyDown = [this](Key& key) { SaveOnEnter(key); };
  }
  CheckHolder.Click = [this] { CheckHolder_Click(); };
  OKButton.Click = [this] { OKButton_Click(); };
  CancelButton.Click = [this] { Hide(); };
  Complete();
}

void frmDK::NewDiscountCard() {
  Recordset numbers = session_.ReadOne("SELECT REZ FROM DISCOUNT ORDER BY REZ");
  std::int16_t rez = 1;
  if (numbers.RecordCount() > 0) {
    numbers.MoveLast();
    rez = ToInt16(numbers.Field(0).Number() + 1);
  }
  numbers.Close();
  LabelCod.Caption = std::to_string(rez);
  TextName.Text = "";
  Caption = "Дисконтная карта: - НОВАЯ";
  TextSkd.Text = "0";
  TextName.SetFocus();
  TextName.SelectAll();
  TextName.MaxLength = BarcodeLength();
  ShowModal();
}

void frmDK::OpenDiscountCard(std::int16_t rez) {
  Recordset card =
      session_.ReadOne(fmt::format("SELECT REZ,BARCODE,PROZ FROM DISCOUNT WHERE REZ={} GROUP BY REZ", rez));
  if (card.RecordCount() == 0) return card.Close();
  // The form's title stays what it was: after a new card it goes on saying so.
  LabelCod.Caption = card.Field(0).TextOrEmpty();
  TextName.Text = card.Field(1).TextOrEmpty();
  TextSkd.Text = card.Field(2).TextOrEmpty();
  card.Close();
  TextSkd.SetFocus();
  TextSkd.SelectAll();
  TextName.MaxLength = BarcodeLength();
  ShowModal();
}

int frmDK::BarcodeLength() {
  return session_.Pool().RsCards.FieldLength("CardBarcode");
}

void frmDK::Form_Activate() {
  // First of all, so that no failure below leaves the holder of the card before with this one.
  CheckHolder.Value = false;
  ShowHolder(false);
  EmptyHolder();
  const std::string number = TextSkd.Text();
  Recordset kinds = session_.ReadOne("SELECT CARD FROM TOTALSKID GROUP BY CARD");
  TextSkd.Clear();
  for (; !kinds.Eof(); kinds.MoveNext()) TextSkd.AddItem(kinds.Field(0).TextOrEmpty());
  kinds.Close();
  TextSkd.Text = number;
}

void frmDK::CheckHolder_Click() {
  ShowHolder(CheckHolder.Value());
  EmptyHolder();
  if (CheckHolder.Value()) FindHolder();
}

void frmDK::FindHolder() {
  Recordset holder =
      session_.ReadOne(fmt::format("SELECT NAME,ADRES,TEL FROM DKHOLDER WHERE CARD='{}'", Trim(TextName.Text())));
  if (holder.RecordCount() > 0) {
    TxtHName.Text = holder.Field(0).TextOrEmpty();
    TxtHAddr.Text = holder.Field(1).TextOrEmpty();
    TxtHTel.Text = holder.Field(2).TextOrEmpty();
  }
  holder.Close();
}

void frmDK::EmptyHolder() {
  for (TextBox* box : {&TxtHName, &TxtHAddr, &TxtHTel}) box->Text = "";
}

void frmDK::ShowHolder(bool shown) {
  FrameHolder.Visible = shown;
  Height = shown ? kHeightWithHolder : kHeight;
}

void frmDK::SaveOnEnter(Key& key) {
  if (key.code != Key::kEnter) return;
  key.swallow = true;
  OKButton_Click();
}

void frmDK::OKButton_Click() {
  const std::int16_t rez = ToInt16(session_.Format().ToNumber(LabelCod.Caption()));
  // The holder comes before the card's own checks: he is written even when the card is refused.
  if (CheckHolder.Value()) {
    SaveCardHolder(rez, Trim(TextName.Text()), Trim(TxtHName.Text()), Left(Trim(TxtHAddr.Text()), kAddressLength),
                   Trim(TxtHTel.Text()));
  }
  SaveDiscountCard(rez);
}

void frmDK::SaveCardHolder(std::int16_t id, const std::string& card, std::string name, std::string address,
                           const std::string& phone) {
  session_.Write(fmt::format("DELETE FROM DKHOLDER WHERE ID={}", id));
  if (card.empty() || (name.empty() && address.empty() && phone.empty())) return;
  std::erase(name, '\'');
  std::erase(address, '\'');
  session_.Write(fmt::format("INSERT INTO DKHOLDER (ID,CARD,NAME,FNAME,ADRES,TEL) VALUES ({},'{}','{}','{}','{}','{}')",
                             id, card, name, name, address, phone));
}

void frmDK::SaveDiscountCard(std::int16_t rez) {
  const RegionalFormat& format = session_.Format();
  const std::optional<double> typed = format.ParseNumber(TextSkd.Text());
  if (!typed) {
    Refuse("Введите числовое значение!");
    TextSkd.SelectAll();
    return;
  }
  const std::int16_t discount = ToInt16(format.ToNumber(format.FormatNumber(*typed, 0)));
  if (discount < 0) return Refuse("Скидка не может быть отрицательной!");
  if (discount > kHighestDiscount) return Refuse("Проверьте скидку!");

  const std::string barcode = TextName.Text();
  session_.Write(fmt::format("DELETE FROM DISCOUNT WHERE REZ={}", rez));
  Recordset same = session_.ReadOne(fmt::format("SELECT BARCODE FROM DISCOUNT WHERE BARCODE='{}'", barcode));
  const bool taken = same.RecordCount() > 0;
  same.Close();
  if (taken) {
    TheDesktop().MsgBox("Дисконтная карта не уникальна!", BoxIcon::kCritical);
    TextName.SetFocus();
    TextName.SelectAll();
    return;
  }
  session_.Write(fmt::format("INSERT INTO DISCOUNT (BARCODE,TOTAL,LASTCASH,PROZ,REZ) VALUES ('{}',1,'0',{},{})",
                             barcode, discount, LabelCod.Caption()));
  if (CardSaved) CardSaved(rez);
  Hide();
}

void frmDK::Refuse(const std::string& message) {
  TheDesktop().MsgBox(message, BoxIcon::kCritical);
  TextSkd.SetFocus();
}

}  // namespace zrt
