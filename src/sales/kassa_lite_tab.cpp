#include "sales/kassa_lite_tab.h"

#include "sales/sales_statements.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

}  // namespace

KassaLiteTab::KassaLiteTab(Form& form, Session& session)
    : FrameKassaLite(form, "FrameKassaLite"),
      TextDateLite(form, "TextDateLite"),
      CmdPlusLite(form, "CmdPlusLite"),
      Month1(form, "Month1"),
      Combo3(form, "Combo3"),
      CmdDatLite(form, "CmdDatLite"),
      CmdAllLite(form, "CmdAllLite"),
      Text4(form, "Text4"),
      CmdTermLite(form, "CmdTermLite"),
      Text8(form, "Text8"),
      CmdOfcLite(form, "CmdOfcLite"),
      Text9(form, "Text9"),
      CmdDKartLite(form, "CmdDKartLite"),
      CmdFiskLite(form, "CmdFiskLite"),
      CmdDelProdLite(form, "CmdDelProdLite"),
      LblInfLite(form, "LblInfLite"),
      LblSumLite(form, "LblSumLite"),
      DataGrid7(form, "DataGrid7"),
      session_(session) {
  Combo3.Click = [this] { Combo3_Click(); };
}

void KassaLiteTab::CalcShiftPeriodLite() {
  CalcShiftPeriod(TextDateLite.Caption(), Combo3.Text(), session_.Format(), session_.ShiftPeriod);
}

void KassaLiteTab::FirstFill() {
  RecordsetPool& pool = session_.Pool();
  const std::string within = sales::Within("DAT", session_.ShiftPeriod);
  session_.BindSet(pool.RsKassaLite, fmt::format("{} AND {}{}", sales::kLite, within, sales::kLiteTail));
  DataGrid7.Bind(pool.RsKassaLite);
  FormatKassaLiteGrid();
  Session::ShowLastRow(pool.RsKassaLite);

  session_.BindSet(pool.RsTotals, fmt::format("{}{}{}", sales::kLiteTotal, within, sales::kLiteTail));
  const Cell total = pool.RsTotals.Field(0);
  LblSumLite.Caption = total.IsNull() ? std::string() : session_.Format().FormatNumber(total.Number(), 2);
}

void KassaLiteTab::FillCombos() {
  for (int hour = 0; hour < 24; ++hour) Combo3.AddItem(std::to_string(hour));
}

void KassaLiteTab::Combo3_Click() {
  session_.Write(fmt::format("UPDATE CONST SET N8={} WHERE COD=5", Combo3.Text()));
}

void KassaLiteTab::FormatKassaLiteGrid() {
  DataGrid7.Layout({{"Operation", 2250, Align::kLeft},
                    {"Summ", 1200, Align::kRight, "0.00"},
                    {"Dscnt", 1050, Align::kRight, "0.00"},
                    {"Cash", 1200, Align::kRight, "0.00"},
                    {"DateTime", 1950, Align::kLeft},
                    {"Person", 750, Align::kRight},
                    {"Ter", 600, Align::kRight},
                    {"Num", 825, Align::kRight},
                    {"Card", 750, Align::kRight},
                    {"Fiscal", 675, Align::kRight},
                    {"Status", 675, Align::kCentre}});
}

}  // namespace zrt
