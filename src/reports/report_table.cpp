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

/// A value in thousandths grows the total of a day, which is kept whole.
void AddWhole(std::int64_t& total, const Cell& value) {
  if (value.IsNull()) return;  // lines whose sum isn't known
  total = static_cast<std::int64_t>(RoundHalfEven(static_cast<double>(total) + value.Number()));
}

/// The sum of all totals, thousandths. It is taken together in millionths, in which a quantity times its price is
/// whole, so that nothing is rounded on the way.
double GrandTotal(const Recordset& totals) {
  std::int64_t millionths = 0;
  for (int row = 1; row <= totals.RecordCount(); ++row) {
    const Cell total = totals.At(row, kValue);
    if (!total.IsNull()) millionths += static_cast<std::int64_t>(RoundHalfEven(total.Number() * scale::kProd));
  }
  return static_cast<double>(millionths) / scale::kProd;
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
  Workbook book;  // its columns are aligned as a new book aligns them: that default is what is wanted
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
    if (table.has_totals && &cells == &table.rows.back()) book.RowHeights.push_back({row, kTallRow});
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const int column = static_cast<int>(i) + 1;
      if (!cells[i].empty()) book.Cell(row, column, cells[i], column == look.bold_column);
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
  std::vector<std::int64_t> day_totals(columns);
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
    if (kind == DayValue::kMoney) AddWhole(day_totals.at(column), value);
  }
  if (kind == DayValue::kText) return table;

  std::vector<std::string> whole(columns);
  whole[kNameColumn] = "ИТОГО";
  const auto in_money = [&](double thousandths) { return format.FormatNumber(thousandths / scale::kProd, 2); };
  whole[kTotalColumn] = in_money(GrandTotal(totals));
  for (std::size_t column = kDayColumns; column < columns; ++column) {
    whole[column] = in_money(static_cast<double>(day_totals[column]));
  }
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
