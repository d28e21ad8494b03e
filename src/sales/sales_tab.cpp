#include "sales/sales_tab.h"

#include "core/errors.h"
#include "core/numbers.h"
#include "sales/sales_statements.h"
#include "ui/desktop.h"

namespace zrt {

namespace {

using Align = GridColumn::Align;

constexpr std::string_view kWorking = "обработка запроса...";
/// What LblInf says behind the date for each excise filter.
constexpr std::array<std::string_view, 4> kExciseSuffix = {"", " Алкоголь", " Сигареты", " НЕ акциз"};

const std::vector<ColumnLayout> kSalesLayout = {{"Cod", 600, Align::kRight},
                                                {"Name", 2550, Align::kLeft},
                                                {"Value", 780, Align::kRight, "0.000"},
                                                {"Price", 825, Align::kRight, "0.00"},
                                                {"Dscnt", 750, Align::kRight, "0.000"},
                                                {"Summ", 975, Align::kRight, "0.000"},
                                                {"Pers", 480, Align::kRight},
                                                {"DateTime", 1950, Align::kLeft},
                                                {"Ter", 525, Align::kRight},
                                                {"Num", 750, Align::kRight},
                                                {"Card", 675, Align::kRight},
                                                {"fisk", 525, Align::kRight},
                                                {"Status", 1500, Align::kLeft}};

const std::vector<ColumnLayout> kDeletionsLayout = {
    {"Cod", 750, Align::kRight},           {"Name", 3000, Align::kLeft},     {"Value", 900, Align::kRight},
    {"Price", 900, Align::kRight, "0.00"}, {"DateTime", 1950, Align::kLeft}, {"Ter", 525, Align::kRight},
    {"Num", 750, Align::kRight},           {"Person", 2250, Align::kLeft}};

const std::vector<ColumnLayout> kOrderDetailLayout = {{"Ter", 525, Align::kRight},
                                                      {"Num", 750, Align::kRight},
                                                      {"Stl", 525, Align::kRight},
                                                      {"cod", 600, Align::kRight},
                                                      {"Operation", 1500, Align::kLeft},
                                                      {"Summ", 1050, Align::kRight, "0.00"},
                                                      {"Dscnt", 900, Align::kRight, "0.000"},
                                                      {"Pay", 1050, Align::kRight, "0.00"},
                                                      {"Card", 675, Align::kRight},
                                                      {"StartOrder", 1950, Align::kLeft},
                                                      {"EndOrder", 1950, Align::kLeft},
                                                      {"Complete", 2400, Align::kLeft},
                                                      {"OrderPaid", 1950, Align::kLeft}};

const std::vector<ColumnLayout> kOrdersLayout = {
    {"Summ", 870, Align::kRight, "0.00"}, {"Dscnt", 690, Align::kRight, "0.000"},
    {"Pay", 870, Align::kRight, "0.00"},  {"cod", 450, Align::kRight},
    {"Operation", 750, Align::kLeft},     {"DateTime", 1900, Align::kLeft},
    {"Ter", 525, Align::kRight},           {"Num", 750, Align::kRight},
    {"Status", 1500, Align::kLeft}};

}  // namespace

SalesTab::SalesTab(Form& form, Session& session)
    : FrameProd(form, "FrameProd"),
      CmdDG(ControlArray<Button, 3>(form, "CmdDG", 0)),
      DataGrid3(form, "DataGrid3"),
      DataGrid11(form, "DataGrid11"),
      DataGrid2(form, "DataGrid2"),
      DataGrid4(form, "DataGrid4"),
      TextDate(form, "TextDate"),
      CmdPlus(form, "CmdPlus"),
      Month0(form, "Month0"),
      Combo1(form, "Combo1"),
      Combo2(form, "Combo2"),
      CmdDat(form, "CmdDat"),
      CmdAll(form, "CmdAll"),
      Label19(form, "Label19"),
      Text7(form, "Text7"),
      CmdTerm(form, "CmdTerm"),
      Text3(form, "Text3"),
      CmdOfc(form, "CmdOfc"),
      Text1(form, "Text1"),
      CmdFiltr(form, "CmdFiltr"),
      Text2(form, "Text2"),
      CmdFilCheck(form, "CmdFilCheck"),
      Text5(form, "Text5"),
      CmdDKart(form, "CmdDKart"),
      CmdNOpl(form, "CmdNOpl"),
      CheckFP1(form, "CheckFP1"),
      CheckFP2(form, "CheckFP2"),
      CmdFisk(form, "CmdFisk"),
      CmdFileCSV(form, "CmdFileCSV"),
      Dir1(form, "Dir1"),
      Drive1(form, "Drive1"),
      LblInf(form, "LblInf"),
      LblSum(form, "LblSum"),
      LblKol(form, "LblKol"),
      session_(session) {
  Combo1.Click = [this] { Combo1_Click(); };
  Combo2.Click = [this] { Combo2_Click(); };
  CmdPlus.Click = [this] { CmdPlus_Click(); };
  Month0.DateClick = [this] { Month0_DateClick(); };
  CmdDat.Click = [this] { CmdDat_Click(); };
}

void SalesTab::CalcShiftPeriod() {
  zrt::CalcShiftPeriod(TextDate.Caption(), Combo1.Text(), session_.Format(), session_.ShiftPeriod);
}

void SalesTab::FirstFill() {
  const std::string shift = sales::Within("DATETIME", session_.ShiftPeriod);
  const std::string orders = " AND " + sales::Within("PROD.DATETIME", session_.ShiftPeriod);

  // No terminal has the number 0: these two begin empty and wait for the operator's choice.
  OpenDeletions(" WHERE SPION.TER=0");
  OpenOrderDetail(" AND KASSA.TER=0");
  OpenSales(" WHERE " + shift);
  OpenOrders(orders);
  ShowTotal(fmt::format("{} WHERE {}{}", sales::kTotal, shift, sales::kSalesTail));
}

void SalesTab::FillCombos() {
  for (int hour = 0; hour < 24; ++hour) Combo1.AddItem(std::to_string(hour));
  for (const char* excise : {"Всего", "Алкоголь", "Сигареты", "НЕакциз"}) Combo2.AddItem(excise);
  Combo2.Text = "Всего";
  session_.ExciseFilter = 0;
}

void SalesTab::Combo1_Click() {
  session_.Write(fmt::format("UPDATE CONST SET N8={} WHERE COD=5", Combo1.Text()));
}

void SalesTab::Combo2_Click() {
  session_.ExciseFilter = Combo2.ListIndex();
}

void SalesTab::CmdPlus_Click() {
  if (Combo1.Text().empty()) {
    Month0.Owner().TheDesktop().MsgBox("Не установлено начало смены!!!", BoxIcon::kCritical);
    return;
  }
  Month0.Value = ParseDate(TextDate.Caption()).value_or(session_.TheClock().Now().date);
  Month0.Visible = true;
}

void SalesTab::Month0_DateClick() {
  session_.StoredDate = Month0.Value();
  TextDate.Caption = session_.Format().DateText(session_.StoredDate);
  Month0.Visible = false;
  session_.PeriodAll = false;
  CmdDat.Enabled = true;
  CmdDat.SetFocus();
}

void SalesTab::CmdDat_Click() {
  try {
    Month0.Visible = false;
    BeginQuery("Data");
    CalcShiftPeriod();

    const Shift& shift = session_.ShiftPeriod;
    const std::string excise = sales::ExciseCondition(session_.ExciseFilter);
    const std::string sold =
        fmt::format(" WHERE {}{}{}", sales::Within("DATETIME", shift), excise.empty() ? "" : " AND ", excise);
    const std::string orders = " AND " + sales::Within("PROD.DATETIME", shift);
    switch (session_.CurrentGrid) {
      case 0:
        OpenSales(sold);
        break;
      case 1:
        OpenDeletions(fmt::format(" WHERE SPION.DATETIME LIKE '{}%'", TextDate.Caption()));
        break;
      default:
        OpenOrderDetail(orders);
        break;
    }
    OpenOrders(orders);
    ShowTotal(fmt::format("{}{}{}", sales::kTotal, sold, sales::kSalesTail));

    LblKol.Caption = {};
    session_.PeriodAll = false;
    LblInf.Caption =
        fmt::format("{}{}", TextDate.Caption(), kExciseSuffix.at(static_cast<std::size_t>(session_.ExciseFilter)));
  } catch (const Error&) {
    // The label keeps saying that the query is under way: the operator sees that what stands below is not the answer.
    Month0.Owner().TheDesktop().MsgBox("Неправильно введена дата!", BoxIcon::kCritical);
  }
}

void SalesTab::BeginQuery(const char* filter_name) {
  session_.FilterName = filter_name;
  LblInf.Caption = std::string(kWorking);
  LblInf.Repaint();
  LblSum.Caption = {};
  LblSum.Repaint();
}

void SalesTab::OpenSales(const std::string& pieces) {
  Open(session_.Pool().RsSales, fmt::format("{}{}{}", sales::kSales, pieces, sales::kSalesTail), DataGrid3,
       kSalesLayout);
}

void SalesTab::OpenDeletions(const std::string& pieces) {
  Open(session_.Pool().RsDeletions, fmt::format("{}{}", sales::kDeletions, pieces), DataGrid11, kDeletionsLayout);
}

void SalesTab::OpenOrderDetail(const std::string& pieces) {
  Open(session_.Pool().RsOrderDetail, fmt::format("{}{}{}", sales::kOrderDetail, pieces, sales::kOrderTail), DataGrid2,
       kOrderDetailLayout);
}

void SalesTab::OpenOrders(const std::string& pieces) {
  Open(session_.Pool().RsOrders, fmt::format("{}{}{}", sales::kOrders, pieces, sales::kOrderTail), DataGrid4,
       kOrdersLayout);
}

void SalesTab::Open(Recordset& set, std::string sql, DataGrid& grid, const std::vector<ColumnLayout>& layout) {
  session_.BindSet(set, std::move(sql));
  grid.Bind(set);
  grid.Layout(layout);
  Session::ShowLastRow(set);
}

void SalesTab::ShowTotal(std::string sql) {
  Recordset& totals = session_.Pool().RsTotals;
  session_.BindSet(totals, std::move(sql));
  const Cell total = totals.Field(0);
  LblSum.Caption = total.IsNull() ? std::string() : session_.Format().FormatNumber(total.Number() / scale::kProd, 2);
}

}  // namespace zrt
