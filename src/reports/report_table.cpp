#include "reports/report_table.h"

#include <map>

#include "core/errors.h"
#include "core/numbers.h"
#include "platform/text_file.h"
#include "reports/report_text.h"

namespace zrt {

namespace {

constexpr int kHeaderRow = 3;
constexpr double kTallRow = 23;

/// Columns of the two sets of a pivot, and of the table before its days.
enum SetField { kCod, kName, kDay, kValue };
enum TableColumn { kNumberColumn, kCodColumn, kNameColumn, kTotalColumn, kDayColumns };

std::string Join(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) line += cell + ";";
  return line;
}

bool IsOneOf(int number, const std::vector<int>& all) {
  return std::find(all.begin(), all.end(), number) != all.end();
}

/// Column of a day: that of the first day of the span which isn't before it.
std::size_t DayColumn(const std::string& day, const Date& first) {
  const std::optional<Date> date = ParseDate(day);
  if (!date) throw TypeMismatch("not a date: \"" + day + "\"");
  return kDayColumns + static_cast<std::size_t>(std::max(0, DaysBetween(first, *date)));
}

/// The totals by code; the first row of a code counts, as a search from the top finds it.
std::map<std::string, Cell> FirstByCode(const Recordset& totals) {
  std::map<std::string, Cell> found;
  for (int row = 1; row <= totals.RecordCount(); ++row) {
    found.emplace(totals.At(row, kCod).TextOrEmpty(), totals.At(row, kValue));
  }
  return found;
}

/// A value in thousandths, 0 where nothing was summed.
double Thousandths(const Cell& value) {
  return value.IsNull() ? 0 : value.Number();
}

}  // namespace

void WriteCsv(const DriveMap& drives, const std::string& drive_path, const std::vector<std::string>& titles,
              const ReportTable& table) {
  TextFileWriter file(drives, drive_path);
  for (const std::string& title : titles) file.Line(title);
  file.Line(Join(table.headers));
  for (const std::vector<std::string>& row : table.rows) file.Line(Join(row));
  file.Close();
}

Workbook MakeWorkbook(const std::vector<std::string>& titles, const ReportTable& table, const SheetLook& look) {
  Workbook book;
  book.StatusBar.push_back("ВЫПОЛНЯЕТСЯ ОБРАБОТКА!");
  for (std::size_t i = 0; i < titles.size(); ++i) book.Cell(static_cast<int>(i) + 1, 1, titles[i], i == 0);
  book.ColumnWidths = look.widths;
  book.RowHeights.push_back({kHeaderRow, kTallRow});
  for (std::size_t i = 0; i < table.headers.size(); ++i) {
    book.Cell(kHeaderRow, static_cast<int>(i) + 1, table.headers[i]);
  }
  int row = kHeaderRow;
  for (const std::vector<std::string>& cells : table.rows) {
    ++row;
    const bool totals = table.has_totals && &cells == &table.rows.back();
    if (totals) book.RowHeights.push_back({row, kTallRow});
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const int column = static_cast<int>(i) + 1;
      const bool bold = column == look.bold_column || (totals && IsOneOf(column, look.bold_totals));
      if (!cells[i].empty()) book.Cell(row, column, cells[i], bold);
    }
  }
  book.StatusBar.push_back("ГОТОВО!");
  return book;
}

ReportTable PivotByDay(const Recordset& days, const Recordset& totals, std::vector<std::string> headers,
                       const Date& first, const Date& last, DayValue kind, const RegionalFormat& format) {
  const auto shown = [&](const Cell& value) {
    return kind == DayValue::kText ? value.TextOrEmpty() : AmountText(format, value, scale::kProd);
  };
  ReportTable table;
  table.headers = std::move(headers);
  for (Date day = first; day < last; day = AddDays(day, 1)) table.headers.push_back(format.DateText(day));
  const std::size_t columns = table.headers.size();

  const std::map<std::string, Cell> total_of = FirstByCode(totals);
  std::vector<double> day_totals(columns);
  std::optional<std::string> last_code;
  for (int row = 1; row <= days.RecordCount(); ++row) {
    const std::string code = days.At(row, kCod).TextOrEmpty();
    if (code != last_code) {
      std::vector<std::string>& cells = table.rows.emplace_back(columns);
      cells[kNumberColumn] = std::to_string(table.rows.size());
      cells[kCodColumn] = code;
      cells[kNameColumn] = days.At(row, kName).TextOrEmpty();
      if (const auto total = total_of.find(code); total != total_of.end()) cells[kTotalColumn] = shown(total->second);
      last_code = code;
    }
    const Cell value = days.At(row, kValue);
    const std::size_t column = DayColumn(days.At(row, kDay).Text(), first);
    table.rows.back().at(column) = shown(value);
    // The total of a day is kept in whole thousandths as it grows; that of the whole table is exact.
    if (kind == DayValue::kMoney) {
      day_totals.at(column) = RoundHalfEven(day_totals.at(column) + Thousandths(value));
    }
  }
  if (kind == DayValue::kText) return table;

  std::vector<std::string> whole(columns);
  whole[kNameColumn] = "ИТОГО";
  double all = 0;
  for (int row = 1; row <= totals.RecordCount(); ++row) all += Thousandths(totals.At(row, kValue));
  const auto in_money = [&](double thousandths) { return AmountText(format, thousandths / scale::kProd); };
  whole[kTotalColumn] = in_money(all);
  for (std::size_t column = kDayColumns; column < columns; ++column) whole[column] = in_money(day_totals[column]);
  table.rows.push_back(std::move(whole));
  table.has_totals = true;
  return table;
}

ReportTable WithoutNumbers(ReportTable table) {
  table.headers.erase(table.headers.begin());
  for (std::vector<std::string>& row : table.rows) row.erase(row.begin());
  return table;
}

}  // namespace zrt
