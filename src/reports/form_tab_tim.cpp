#include "reports/form_tab_tim.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zrt {

namespace {

// One set gives the totals of the days, the other the cells; the hour is counted from the start of the shift.

/// {value} is what is shown.
constexpr std::string_view kTakings =
    "SELECT Date_Format(DATETIME - INTERVAL {hour} HOUR, '%d.%m.%Y') As Dt, HOUR(DATETIME - INTERVAL {hour} HOUR) As "
    "Hr,"
    "{value} FROM PROD WHERE DATETIME >= '{from}' AND DATETIME < '{to}'";
constexpr std::string_view kOrders =
    "SELECT Date_Format(DATETIME - INTERVAL {hour} HOUR, '%d.%m.%Y') As 'Dt', HOUR(DATETIME - INTERVAL {hour} HOUR) As "
    "'Hr',{value} FROM PROD WHERE DATETIME >= '{from}' AND DATETIME < '{to}'";
constexpr std::string_view kBeforeDiscounts = " SUM((KOL*PRISE)/1000) As Ds";
constexpr std::string_view kAfterDiscounts = " SUM((KOL*PRISE)/1000-SKID) As Ds";
/// A thousand times as many as there are, for the table divides whatever it shows.
constexpr std::string_view kOrderCount = " COUNT(DISTINCT CONCAT_WS('_', TER, NUM))*1000";
constexpr std::string_view kByDay = " GROUP BY Dt";
constexpr std::string_view kByDayAndHour = " GROUP BY Dt, Hr";

enum Field { kDt, kHr, kDs };
constexpr std::size_t kHours = 24;
constexpr std::size_t kTotalColumn = 1;
constexpr std::size_t kHourColumns = 2;

std::vector<std::string> Headers(int shift_hour) {
  std::vector<std::string> headers = {"Дата", "Всего"};
  for (std::size_t i = 0; i < kHours; ++i) {
    headers.push_back(fmt::format("{:02}:00+", (static_cast<int>(i) + shift_hour) % 24));
  }
  return headers;
}

ReportTable MakeTable(const Recordset& days, const Recordset& hours, int shift_hour, const RegionalFormat& format) {
  const auto column = [&](int row) { return kHourColumns + static_cast<std::size_t>(hours.At(row, kHr).Int()); };
  return MakePivot({.rows = days,
                    .cells = hours,
                    .totals = days,
                    .key = kDt,
                    .value = kDs,
                    .headers = Headers(shift_hour),
                    .total_column = kTotalColumn,
                    .lead = [&](std::size_t, int row) { return std::vector{days.At(row, kDt).Text()}; },
                    .column = column,
                    .blank = "0",
                    .total_label = "ИТОГО:"},
                   format);
}

}  // namespace

struct FormTabTim::Table {
  std::string_view statement;
  std::string_view value;
  std::string_view title;
  std::string_view file_prefix;
};

FormTabTim::FormTabTim(Desktop& desktop, const TableTools& tools)
    : TableScreen(desktop, "FormTabTim", tools, false), Period(*this, tools.session) {
  CmdHr.Click = [this] { CmdHr_Click(); };
  CmdChk.Click = [this] { CmdChk_Click(); };
  Complete();
}

void FormTabTim::Form_Load() {
  Period.Hours.Load();
  Period.Hours.ReadStored();
  Period.SetLatestShift();
  Output.Load();
}

void FormTabTim::CmdHr_Click() {
  ShowTable({.statement = kTakings,
             .value = Check1.Value() ? kBeforeDiscounts : kAfterDiscounts,
             .title = "Продажи по времени",
             .file_prefix = "Hour_"});
}

void FormTabTim::CmdChk_Click() {
  ShowTable({.statement = kOrders, .value = kOrderCount, .title = "Заказы по времени", .file_prefix = "Count_"});
}

void FormTabTim::ShowTable(const Table& table) {
  const std::optional<ReportSpan> span = Period.Span();
  if (!span) return;
  Output.ShowQuery();
  const TablePeriod period = TablePeriodOf(*span);
  const std::string statement =
      fmt::format(fmt::runtime(table.statement), fmt::arg("hour", span->hour), fmt::arg("value", table.value),
                  fmt::arg("from", period.from), fmt::arg("to", period.to));
  Recordset days;
  Recordset hours;
  TheSession().BindSet(days, fmt::format("{}{}", statement, kByDay));
  TheSession().BindSet(hours, fmt::format("{}{}", statement, kByDayAndHour));
  Output.ShowBuilding();
  if (days.RecordCount() == 0) {
    Output.TellNoData();
  } else {
    Output.SaveCsv(std::string(table.file_prefix), {std::string(table.title), ";;" + Period.Text()},
                   MakeTable(days, hours, span->hour, TheSession().Format()));
  }
  Output.ShowDone();
}

}  // namespace zrt
