#include "reports/table_screen.h"

#include <fmt/format.h>

#include <vector>

namespace zrt {

namespace {

/// The first column of the workbook is as narrow as the numbers of rows that it doesn't have.
const std::vector<Workbook::ColumnSpan> kWidths = {{1, 1, 4}, {2, 2, 18}, {3, 3, 12}, {4, 702, 9}};
constexpr int kTotalColumnInBook = 3;

/// Fields of the statements, and the table's columns before its days.
enum SetField { kCod, kName, kDay, kValue };
enum TableColumn { kNumberColumn, kCodColumn, kNameColumn, kTotalColumn, kDayColumns };

std::string GroupByDay(int hour) {
  return fmt::format(
      ", YEAR(DATE_ADD(PROD.DATETIME, INTERVAL -{0} HOUR)), MONTH(DATE_ADD(PROD.DATETIME, INTERVAL -{0} HOUR)), "
      "DAYOFMONTH(DATE_ADD(PROD.DATETIME, INTERVAL -{0} HOUR))",
      hour);
}

}  // namespace

TablePeriod TablePeriodOf(const ReportSpan& span) {
  const auto text = [&](const Date& day) {
    return fmt::format("{}-{}-{} {:02}:00:00", day.year, day.month, day.day, span.hour);
  };
  return {text(span.first), text(span.last)};
}

std::string StockMoment(const Date& day, int hour) {
  return fmt::format("{}/{}/{} {}:00:00", day.year, day.month, day.day, hour);
}

TableScreen::TableScreen(Desktop& desktop, std::string name, const TableTools& tools, bool with_workbook)
    : Form(desktop, std::move(name)), Output(*this, tools, with_workbook), tools_(tools) {
  Load = [this] { Form_Load(); };
  KeyDown = [this](Key& key) { Form_KeyDown(key); };
}

void TableScreen::Form_KeyDown(Key& key) {
  if (key.code != Key::kEscape) return;
  key.swallow = true;
  if (!CloseCalendar()) Close();
}

PivotScreen::PivotScreen(Desktop& desktop, std::string name, const TableTools& tools)
    : TableScreen(desktop, std::move(name), tools, true), Period(*this, tools.session) {}

void PivotScreen::Form_Load() {
  Period.Hours.Load();
  Period.Hours.ReadStored();
  Period.SetLatestShift();
  Output.Load();
}

ReportTable PivotScreen::PivotByDay(const DayTable& asked, const Recordset& days, const Recordset& totals,
                                    const ReportSpan& span) const {
  std::vector<std::string> headers = asked.headers;
  for (Date day = span.first; day < span.last; day = AddDays(day, 1)) {
    headers.push_back(TheSession().Format().DateText(day));
  }
  const auto lead = [&](std::size_t number, int row) {
    return std::vector{std::to_string(number), days.At(row, kCod).TextOrEmpty(), days.At(row, kName).TextOrEmpty()};
  };
  return MakePivot({.rows = days,
                    .cells = days,
                    .totals = totals,
                    .key = kCod,
                    .value = kValue,
                    .headers = std::move(headers),
                    .total_column = kTotalColumn,
                    .lead = lead,
                    .column = [&](int row) { return DayColumn(days.At(row, kDay).Text(), span.first, kDayColumns); },
                    .kind = asked.kind,
                    .total_label = "ИТОГО",
                    .label_column = kNameColumn},
                   TheSession().Format());
}

void PivotScreen::ShowTable(const DayTable& asked, const ReportSpan& span) {
  Output.ShowQuery();
  Recordset RsDays;   ///< a row for each key and day
  Recordset RsTotal;  ///< a row for each key
  TheSession().BindSet(RsDays, asked.statement + GroupByDay(span.hour));
  TheSession().BindSet(RsTotal, asked.statement);
  Output.ShowBuilding();
  if (RsDays.RecordCount() == 0) {
    Output.TellNoData();
  } else {
    const auto table = [&] { return PivotByDay(asked, RsDays, RsTotal, span); };
    const auto sheet = [&] {
      ReportTable in_book = WithoutNumbers(table());
      in_book.headers[kTotalColumnInBook - 1] = asked.total_header_in_book;
      return in_book;
    };
    if (Output.ToWorkbook()) {
      Output.OpenWorkbook({asked.title, asked.period_text}, sheet, {kWidths, kTotalColumnInBook});
    } else {
      Output.SaveCsv(asked.file_prefix, {";;" + asked.title, ";;" + asked.period_text}, table());
    }
  }
  Output.ShowDone();
}

}  // namespace zrt
