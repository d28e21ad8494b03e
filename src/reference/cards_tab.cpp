#include "reference/cards_tab.h"

#include <fmt/format.h>

#include <array>

#include "core/numbers.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

}  // namespace

CardsTab::CardsTab(Form& form, Session& session, frmDK& card, frmVDk& kinds)
    : FormSection(form), session_(session), card_(card), kinds_(kinds) {
  DataGrid5.DblClick = [this] {
    if (session_.FullEditMode) CmdDKShow_Click();
  };
  DataGrid5.KeyDown = [this](Key& key) {
    if (key.code == Key::kEnter && session_.FullEditMode) CmdDKShow_Click();
  };
  CmdDKNew.Click = [this] { card_.NewDiscountCard(); };
  CmdDKShow.Click = [this] { CmdDKShow_Click(); };
  CmdDKDel.Click = [this] { CmdDKDel_Click(); };
  CmdVDk.Click = [this] { kinds_.Show(); };
  CmdClrAllDKard.Click = [this] { CmdClrAllDKard_Click(); };
}

void CardsTab::OpenCards() {
  session_.BindSet(Cards(), "SELECT REZ As 'Num',BARCODE As 'CardBarcode',PROZ As 'Type' FROM DISCOUNT ORDER BY REZ");
  DataGrid5.Bind(Cards());
  FormatCardGrid();
  Session::ShowLastRow(Cards());
}

void CardsTab::OpenWaiters() {
  Recordset& waiters = session_.Pool().RsWaiters;
  session_.BindSet(waiters,
                   "SELECT COD As 'Cod',NAME As 'Person',DATETIME As 'Card',NUM As 'Acs' FROM KLIENT ORDER BY NAME");
  DataGrid9.Bind(waiters);
  Session::ShowLastRow(waiters);
}

void CardsTab::ShowCard(std::int16_t rez) {
  OpenCards();
  if (Cards().RecordCount() == 0) return;
  Cards().MoveFirst();
  // Not by the barcode as typed: one with doubled quotes is stored with single ones.
  Cards().Find("Num", std::to_string(rez));
}

bool CardsTab::HasCard() {
  if (!Cards().IsOpen()) {
    // It couldn't be read before. The operator has seen no card in it yet that he could mean.
    OpenCards();
    return false;
  }
  return !Cards().Bof() && !Cards().Eof();
}

std::int16_t CardsTab::CurrentNum() {
  return ToInt16(Cards().Field("Num").Number());
}

void CardsTab::CmdDKShow_Click() {
  if (HasCard()) card_.OpenDiscountCard(CurrentNum());
}

void CardsTab::CmdDKDel_Click() {
  if (!HasCard()) return;
  const std::int16_t rez = CurrentNum();
  const std::string question =
      fmt::format("Удалить дисконтную карту '{}'?", Cards().Field("CardBarcode").TextOrEmpty());
  if (TheDesktop().MsgBox(question, BoxIcon::kQuestion, BoxButtons::kOkCancel) == BoxAnswer::kOk) {
    DeleteDiscountCard(rez);
  }
}

void CardsTab::DeleteDiscountCard(std::int16_t rez) {
  session_.Write(fmt::format("DELETE FROM DISCOUNT WHERE REZ={}", rez));
  OpenCards();
}

void CardsTab::CmdClrAllDKard_Click() {
  Desktop& desktop = TheDesktop();
  const std::string entered =
      desktop.AskPassword("Для полного удаления дисконтных карт введите пароль администратора:");
  if (entered != kAdministratorPassword) return;
  if (desktop.MsgBox("Подтвердите удаление ВСЕХ дисконтных карт,\n\rудаление ВСЕХ видов дисконтных карт и\n\r"
                     "удаление ВСЕХ данных о держателях карт!",
                     BoxIcon::kQuestion, BoxButtons::kOkCancel) != BoxAnswer::kOk) {
    return;
  }
  session_.Write("DELETE FROM DISCOUNT");
  session_.Write("DELETE FROM TOTALSKID");
  session_.Write("DELETE FROM DKHOLDER");
  OpenCards();
}

void CardsTab::ForbidEditing() {
  for (Button* button : {&CmdDKNew, &CmdDKShow, &CmdDKDel, &CmdVDk}) button->Enabled = false;
  CmdClrAllDKard.Visible = false;
}

void CardsTab::FormatCardGrid() {
  static constexpr auto kLayout = std::to_array<ColumnLayout>(
      {{"Num", 750, Align::kRight}, {"CardBarcode", 2250, Align::kLeft}, {"Type", 750, Align::kRight}});
  DataGrid5.Layout(kLayout);
}

}  // namespace zrt
