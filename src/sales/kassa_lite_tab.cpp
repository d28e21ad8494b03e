#include "sales/kassa_lite_tab.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <string_view>

#include "core/errors.h"
#include "core/shift_hour.h"
#include "sales/operator_input.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kWorking = "обработка запроса...";

}  // namespace

KassaLiteTab::KassaLiteTab(Form& form, Session& session) : FormSection(form), session_(session) {
  Combo3.Click = [this] { Combo3_Click(); };
  CmdPlusLite.Click = [this] { CmdPlusLite_Click(); };
  Month1.DateClick = [this] { Month1_DateClick(); };
  CmdDatLite.Click = [this] { CmdDatLite_Click(); };
  CmdAllLite.Click = [this] { CmdAllLite_Click(); };
  CmdTermLite.Click = [this] { RunFilter(sales::kLiteByTerminal, &Text4); };
  CmdOfcLite.Click = [this] { RunFilter(sales::kLiteByCashier, &Text8); };
  CmdDKartLite.Click = [this] { RunFilter(sales::kLiteByCard, &Text9); };
  CmdFiskLite.Click = [this] { RunFilter(sales::kLiteFiscal, nullptr); };
  sales::OnRowChosen(DataGrid7, [this] { TakeOperation(); });
}

void KassaLiteTab::CalcShiftPeriodLite() {
  CalcShiftPeriod(TextDateLite.Caption(), Combo3.Text(), session_.Format(), session_.ShiftPeriod);
}

void KassaLiteTab::FirstFill() {
  Open(" AND " + WithinShift());
  ShowTotal(WithinShift());
}

void KassaLiteTab::FillCombos() {
  for (const std::string& hour : ShiftHours()) Combo3.AddItem(hour);
}

void KassaLiteTab::Combo3_Click() {
  StoreShiftHour(session_, Combo3.Text());
}

void KassaLiteTab::CmdPlusLite_Click() {
  if (Combo3.Text().empty()) {
    TheDesktop().MsgBox("Не установлено начало смены!!!", BoxIcon::kCritical);
    return;
  }
  Month1.Value = ParseDate(TextDateLite.Caption()).value_or(session_.TheClock().Now().date);
  Month1.Visible = true;
}

void KassaLiteTab::Month1_DateClick() {
  session_.StoredDate = Month1.Value();
  TextDateLite.Caption = session_.Format().DateText(session_.StoredDate);
  Month1.Visible = false;
  session_.PeriodAll = false;
  CmdDatLite.Enabled = true;
  CmdDatLite.SetFocus();
}

void KassaLiteTab::CmdDatLite_Click() {
  try {
    Month1.Visible = false;
    BeginQuery();
    CalcShiftPeriodLite();
    Open(" AND " + WithinShift());
    ShowTotal(WithinShift());
    session_.PeriodAll = false;
    ClearFieldsBut(nullptr);
    LblInfLite.Caption = TextDateLite.Caption();
  } catch (const Error& error) {
    WarnOfDate(error);
  }
}

void KassaLiteTab::CmdAllLite_Click() {
  BeginQuery();
  Open("");
  TextDateLite.Caption = "весь период";
  LblInfLite.Caption = "за весь период";
  CmdDatLite.Enabled = false;
  Month1.Visible = false;
  session_.PeriodAll = true;
}

void KassaLiteTab::TakeOperation() {
  Text4.Text = DataGrid7.CurrentText("Ter");
  Text8.Text = DataGrid7.CurrentText("Person");
  Text9.Text = DataGrid7.CurrentText("Card");
}

void KassaLiteTab::RunFilter(const sales::LiteFilter& filter, TextBox* field) {
  try {
    CalcShiftPeriodLite();
    if (field != nullptr && !sales::HoldsNumber(*field, "Введите целое числовое значение!")) return;
    BeginQuery();

    const std::string value = field == nullptr ? std::string() : field->Text();
    std::string condition = sales::Filled(filter.condition, value);
    if (!session_.PeriodAll) condition += " AND " + WithinShift();
    Open(" AND " + condition);
    if (!session_.PeriodAll) ShowTotal(condition);

    ClearFieldsBut(field);
    LblInfLite.Caption = TextDateLite.Caption() + sales::Filled(filter.suffix, value);
  } catch (const Error& error) {
    WarnOfDate(error);
  }
}

void KassaLiteTab::ClearFieldsBut(const TextBox* field) {
  for (TextBox* other : {&Text4, &Text8, &Text9}) {
    if (other != field) other->Text = {};
  }
}

void KassaLiteTab::WarnOfDate(const Error& error) {
  // The label keeps saying that the query is under way: the operator sees that what stands above is not the answer.
  TheDesktop().TellFailure("Неправильно введена дата!", error);
}

void KassaLiteTab::BeginQuery() {
  LblInfLite.Caption = std::string(kWorking);
  LblSumLite.Caption = {};
  LblInfLite.Repaint();
}

void KassaLiteTab::Open(const std::string& pieces) {
  Recordset& operations = session_.Pool().RsKassaLite;
  session_.BindSet(operations, fmt::format("{}{}{}", sales::kLite, pieces, sales::kLiteTail));
  DataGrid7.Bind(operations);
  FormatKassaLiteGrid();
  Session::ShowLastRow(operations);
}

void KassaLiteTab::ShowTotal(const std::string& condition) {
  Recordset& totals = session_.Pool().RsTotals;
  session_.BindSet(totals, fmt::format("{}{}{}", sales::kLiteTotal, condition, sales::kLiteTail));
  const Cell total = totals.Field(0);
  LblSumLite.Caption = total.IsNull() ? std::string() : session_.Format().FormatNumber(total.Number(), 2);
}

std::string KassaLiteTab::WithinShift() const {
  return sales::Within("DAT", session_.ShiftPeriod);
}

void KassaLiteTab::FormatKassaLiteGrid() {
  static constexpr auto kLayout = std::to_array<ColumnLayout>({{"Operation", 2250, Align::kLeft},
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
  DataGrid7.Layout(kLayout);
}

}  // namespace zrt
