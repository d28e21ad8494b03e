#include "reference/cards_tab.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

}  // namespace

CardsTab::CardsTab(Form& form, Session& session)
    : DataGrid5(form, "DataGrid5"),
      CmdDKNew(form, "CmdDKNew"),
      CmdDKShow(form, "CmdDKShow"),
      CmdDKDel(form, "CmdDKDel"),
      CmdVDk(form, "CmdVDk"),
      CmdClrAllDKard(form, "CmdClrAllDKard"),
      DataGrid9(form, "DataGrid9"),
      session_(session) {}

void CardsTab::OpenCards() {
  Recordset& cards = session_.Pool().RsCards;
  session_.BindSet(cards, "SELECT REZ As 'Num',BARCODE As 'CardBarcode',PROZ As 'Type' FROM DISCOUNT ORDER BY REZ");
  DataGrid5.Bind(cards);
  FormatCardGrid();
  Session::ShowLastRow(cards);
}

void CardsTab::OpenCardKinds() {
  session_.BindSet(session_.Pool().RsCardKinds, "SELECT ID,CARD,TOV,PROZ,TOTAL FROM TOTALSKID ORDER BY CARD");
  Session::ShowLastRow(session_.Pool().RsCardKinds);
}

void CardsTab::OpenWaiters() {
  Recordset& waiters = session_.Pool().RsWaiters;
  session_.BindSet(waiters,
                   "SELECT COD As 'Cod',NAME As 'Person',DATETIME As 'Card',NUM As 'Acs' FROM KLIENT ORDER BY NAME");
  DataGrid9.Bind(waiters);
  Session::ShowLastRow(waiters);
}

void CardsTab::ForbidEditing() {
  for (Button* button : {&CmdDKNew, &CmdDKShow, &CmdDKDel, &CmdVDk}) button->Enabled = false;
  CmdClrAllDKard.Visible = false;
}

void CardsTab::FormatCardGrid() {
  DataGrid5.Layout({{"Num", 750, Align::kRight}, {"CardBarcode", 2250, Align::kLeft}, {"Type", 750, Align::kRight}});
}

}  // namespace zrt
