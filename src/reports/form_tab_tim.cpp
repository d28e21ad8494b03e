#include "reports/form_tab_tim.h"

#include <map>

#include "core/numbers.h"

namespace zrt {

namespace {

// One set gives the totals of the days, the other the cells; the hour is counted from the start of the shift.

/// {value} is what is shown.
constexpr const char* kTakings =
    "SELECT Date_Format(DATETIME - INTERVAL {hour} HOUR, '%d.%m.%Y') As Dt, HOUR(DATETIME - INTERVAL {hour} HOUR) As "
    "Hr,"
    "{value} FROM PROD WHERE DATETIME >= '{from}' AND DATETIME < '{to}'";
constexpr const char* kOrders =
    "SELECT Date_Format(DATETIME - INTERVAL {hour} HOUR, '%d.%m.%Y') As 'Dt', HOUR(DATETIME - INTERVAL {hour} HOUR) As "
    "'Hr',{value} FROM PROD WHERE DATETIME >= '{from}' AND DATETIME < '{to}'";
constexpr const char* kBeforeDiscounts = " SUM((KOL*PRISE)/1000) As Ds";
constexpr const char* kAfterDiscounts = " SUM((KOL*PRISE)/1000-SKID) As Ds";
/// A thousand times as many as there are, for the table divides whatever it shows.
constexpr const char* kOrderCount = " COUNT(DISTINCT CONCAT_WS('_', TER, NUM))*1000";
constexpr const char* kByDay = " GROUP BY Dt";
constexpr const char* kByDayAndHour = " GROUP BY Dt, Hr";

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

/// The rows of `hours` by the text of their day.
std::multimap<std::string, int> RowsByDay(const Recordset& hours) {
  std::multimap<std::string, int> rows;
  for (int row = 1; row <= hours.RecordCount(); ++row) rows.emplace(hours.At(row, kDt).Text(), row);
  return rows;
}

ReportTable MakeTable(const Recordset& days, const Recordset& hours, int shift_hour, const RegionalFormat& format) {
  const auto shown = [&](double value) { return format.FormatNumber(value / scale::kProd, 2); };
  ReportTable table{Headers(shift_hour), {}, true};
  std::vector<double> totals(kHourColumns + kHours);
  const std::multimap<std::string, int> rows_of = RowsByDay(hours);
  for (int row = 1; row <= days.RecordCount(); ++row) {
    std::vector<std::string>& cells = table.rows.emplace_back(kHourColumns + kHours, "0");
    const auto put = [&](std::size_t column, const Cell& value) {
      if (value.IsNull()) return;  // lines whose sum isn't known
      cells.at(column) = shown(value.Number());
      totals.at(column) += value.Number();
    };
    cells[0] = days.At(row, kDt).Text();
    put(kTotalColumn, days.At(row, kDs));
    const auto [begin, end] = rows_of.equal_range(cells[0]);
    for (auto hour = begin; hour != end; ++hour) {
      put(kHourColumns + static_cast<std::size_t>(hours.At(hour->second, kHr).Int()), hours.At(hour->second, kDs));
    }
  }
  std::vector<std::string>& whole = table.rows.emplace_back();
  whole.push_back("ИТОГО:");
  for (std::size_t column = kTotalColumn; column < totals.size(); ++column) whole.push_back(shown(totals[column]));
  return table;
}

}  // namespace

struct FormTabTim::Table {
  const char* statement;
  const char* value;
  const char* title;
  const char* file_prefix;
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
  ShowTable({kTakings, Check1.Value() ? kBeforeDiscounts : kAfterDiscounts, "Продажи по времени", "Hour_"});
}

void FormTabTim::CmdChk_Click() {
  ShowTable({kOrders, kOrderCount, "Заказы по времени", "Count_"});
}

void FormTabTim::ShowTable(const Table& table) {
  const std::optional<ReportSpan> span = Period.Span();
  if (!span) return;
  Output.ShowQuery();
  const TablePeriod period = TablePeriodOf(*span);
  const std::string statement =
      fmt::format(fmt::runtime(table.statement), fmt::arg("hour", span->hour), fmt::arg("value", table.value),
                  fmt::arg("from", period.from), fmt::arg("to", period.to));
  Recordset& days = TheSession().Pool().RsTotal;
  Recordset& hours = TheSession().Pool().RsDays;
  TheSession().BindSet(days, statement + kByDay);
  TheSession().BindSet(hours, statement + kByDayAndHour);
  Output.ShowBuilding();
  if (days.RecordCount() == 0) {
    Output.TellNoData();
  } else {
    Output.SaveCsv(table.file_prefix, {table.title, ";;" + Period.Text()},
                   MakeTable(days, hours, span->hour, TheSession().Format()));
  }
  Output.ShowDone();
  days.Close();
  hours.Close();
}

}  // namespace zrt
