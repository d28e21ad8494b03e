#include "reports/form_tab.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>

#include "ui/desktop.h"

namespace zrt {

namespace {

// The statements of the three screens. The bounds of the period select; taking the hour off sorts a sale of the small
// hours into the shift on whose day it began. A LEFT JOIN keeps what was sold under a code that has no name.

/// Staff by shift day: {staff} is the table of the names, {value} what is shown.
constexpr std::string_view kByStaff =
    "SELECT PROD.PERS As Cod, {staff}.NAME As Name, DATE_FORMAT(DATE_ADD(PROD.DATETIME, INTERVAL -{hour} HOUR), "
    "'%d.%m.%Y') As Dm,{value} FROM PROD LEFT JOIN {staff} ON PROD.PERS = {staff}.COD WHERE PROD.DATETIME >= '{from}' "
    "AND PROD.DATETIME < '{to}' GROUP BY PROD.PERS, {staff}.NAME";
constexpr std::string_view kByCard =
    "SELECT PROD.REZ As Cod, DISCOUNT.BARCODE, DATE_FORMAT(DATE_ADD(PROD.DATETIME,INTERVAL -{hour} HOUR),'%d.%m.%Y'),"
    "{value} FROM PROD LEFT JOIN DISCOUNT ON PROD.REZ=DISCOUNT.REZ WHERE PROD.DATETIME>='{from}' AND "
    "PROD.DATETIME<'{to}' GROUP BY PROD.REZ, DISCOUNT.BARCODE";

/// What is shown, before discounts and after them.
struct Values {
  std::string_view before;
  std::string_view after;
};
constexpr Values kTakings = {" SUM((PROD.KOL*PROD.PRISE)/1000) As Ds",
                             " SUM((PROD.KOL*PROD.PRISE)/1000-PROD.SKID) As Ds"};
constexpr Values kTakingsOfCard = {" SUM((PROD.KOL*PROD.PRISE)/1000)", " SUM((PROD.KOL*PROD.PRISE)/1000-PROD.SKID)"};
constexpr Values kAverageOrder = {
    " CONCAT_WS(' * ',ROUND(COUNT(PROD.TER & PROD.NUM)/COUNT(DISTINCT PROD.NUM),1),ROUND(SUM(PROD.SUM2+PROD.SKID)/"
    "(COUNT(DISTINCT PROD.NUM)*1000),2)) As Ds",
    " CONCAT_WS(' * ',ROUND(COUNT(PROD.TER & PROD.NUM)/COUNT(DISTINCT PROD.NUM),1),ROUND(SUM(PROD.SUM2)/(COUNT("
    "DISTINCT PROD.NUM)*1000),2)) As Ds"};

constexpr std::array kStaffTables = {"KLIENT", "PERSON"};

/// Number of the option that is on: 0 waiters, 1 cashiers.
std::size_t Staff(const std::array<OptionButton, 2>& options) {
  return options[1].Value() ? 1 : 0;
}

std::string Statement(std::string_view text, std::string_view staff, const Values& values, bool before_discounts,
                      const ReportSpan& span) {
  const TablePeriod period = TablePeriodOf(span);
  return fmt::format(fmt::runtime(text), fmt::arg("staff", staff), fmt::arg("hour", span.hour),
                     fmt::arg("value", before_discounts ? values.before : values.after), fmt::arg("from", period.from),
                     fmt::arg("to", period.to));
}

}  // namespace

// FormTab

FormTab::FormTab(Desktop& desktop, const TableTools& tools) : PivotScreen(desktop, "FormTab", tools) {
  CmdTab.Click = [this] { CmdTab_Click(); };
  Complete();
}

void FormTab::Form_Load() {
  Option1[0].Choose();
  PivotScreen::Form_Load();
}

void FormTab::CmdTab_Click() {
  const std::optional<ReportSpan> span = Period.Span();
  if (!span) return;
  constexpr std::array kTitles = {"ПРОДАЖИ ПО ОФИЦИАНТАМ", "ПРОДАЖИ ПО КАССИРАМ"};
  const std::size_t staff = Staff(Option1);
  ShowTable({.statement = Statement(kByStaff, kStaffTables[staff], kTakings, Check1.Value(), *span),
             .title = kTitles[staff],
             .period_text = Period.Text(),
             .file_prefix = "Tabel_",
             .headers = {"№", "Код", "Имя", "СУММА"},
             .total_header_in_book = "СУММА   ",
             .kind = PivotValue::kThousandths},
            *span);
}

// FormTabChk

FormTabChk::FormTabChk(Desktop& desktop, const TableTools& tools) : PivotScreen(desktop, "FormTabChk", tools) {
  CmdTab.Click = [this] { CmdTab_Click(); };
  Complete();
}

void FormTabChk::Form_Load() {
  Option1[0].Choose();
  PivotScreen::Form_Load();
}

void FormTabChk::CmdTab_Click() {
  const std::optional<ReportSpan> span = Period.Span();
  if (!span) return;
  constexpr std::array kTitles = {"СРЕДНИЙ ЧЕК ПО ОФИЦИАНТАМ", "СРЕДНИЙ ЧЕК ПО КАССИРАМ"};
  const std::size_t staff = Staff(Option1);
  ShowTable({.statement = Statement(kByStaff, kStaffTables[staff], kAverageOrder, Check1.Value(), *span),
             .title = kTitles[staff],
             .period_text = Period.Text(),
             .file_prefix = "AvgCheck_",
             .headers = {"№", "Код", "Имя", "Длина*Сумма"},
             .total_header_in_book = "Длина*Сумма",
             .kind = PivotValue::kText},
            *span);
}

// FormTabDk

FormTabDk::FormTabDk(Desktop& desktop, const TableTools& tools) : PivotScreen(desktop, "FormTabDk", tools) {
  CmdDisc.Click = [this] { CmdDisc_Click(); };
  Complete();
}

void FormTabDk::CmdDisc_Click() {
  const std::optional<ReportSpan> span = Period.Span();
  if (!span) return;
  ShowTable({.statement = Statement(kByCard, "", kTakingsOfCard, Check1.Value(), *span),
             .title = "ОТЧЁТ ПО ДИСКОНТНЫМ КАРТАМ",
             .period_text = "за период с " + Period.First.LDate.Caption() + " по " + Period.Last.LDate.Caption(),
             .file_prefix = "Discount_",
             .headers = {"№", "Код", "Штрих", "СУММА"},
             .total_header_in_book = "СУММА   ",
             .kind = PivotValue::kThousandths},
            *span);
}

}  // namespace zrt
