#include "reports/report_table.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>

#include "core/errors.h"
#include "core/numbers.h"
#include "platform/text_file.h"
#include "reports/report_text.h"

namespace zrt {

namespace {

constexpr int kHeaderRow = 3;
constexpr double kTallRow = 23;

std::string Join(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) line += cell + ";";
  return line;
}

/// The first row of each key, as a search from the top finds it.
std::map<std::string, int> FirstRows(const Recordset& set, int key) {
  std::map<std::string, int> found;
  for (int row = 1; row <= set.RecordCount(); ++row) found.emplace(set.At(row, key).TextOrEmpty(), row);
  return found;
}

/// A value joins the total of its column, which is whole: each one rounds it.
void AddWhole(std::int64_t& thousandths, const Cell& value) {
  thousandths = static_cast<std::int64_t>(RoundHalfEven(static_cast<double>(thousandths) + value.Number()));
}

/// The sum of all totals, thousandths. It is taken together in millionths, in which a quantity times its price is
/// whole, so that nothing is rounded on the way.
double GrandTotal(const Recordset& totals, int value) {
  std::int64_t millionths = 0;
  for (int row = 1; row <= totals.RecordCount(); ++row) {
    const Cell total = totals.At(row, value);
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

ReportTable MakePivot(const Pivot& pivot, const RegionalFormat& format) {
  ReportTable table{pivot.headers, {}, pivot.kind == PivotValue::kThousandths};
  const std::size_t columns = table.headers.size();
  std::vector<std::int64_t> sums(columns);  // thousandths
  const auto put = [&](std::vector<std::string>& cells, std::size_t column, const Cell& value) {
    if (value.IsNull()) return;  // lines whose sum isn't known
    if (pivot.kind == PivotValue::kText) {
      cells.at(column) = value.Text();
    } else {
      cells.at(column) = AmountText(format, value, scale::kProd);
      AddWhole(sums.at(column), value);
    }
  };

  const std::map<std::string, int> total_of = FirstRows(pivot.totals, pivot.key);
  std::map<std::string, std::size_t> place_of;  // of a key among the table's rows
  for (int row = 1; row <= pivot.rows.RecordCount(); ++row) {
    const std::string key = pivot.rows.At(row, pivot.key).TextOrEmpty();
    if (!place_of.emplace(key, table.rows.size()).second) continue;
    std::vector<std::string> cells = pivot.lead(table.rows.size() + 1, row);
    cells.resize(columns, std::string(pivot.blank));
    if (const auto total = total_of.find(key); total != total_of.end()) {
      put(cells, pivot.total_column, pivot.totals.At(total->second, pivot.value));
    }
    table.rows.push_back(std::move(cells));
  }
  for (int row = 1; row <= pivot.cells.RecordCount(); ++row) {
    const auto place = place_of.find(pivot.cells.At(row, pivot.key).TextOrEmpty());
    if (place == place_of.end()) continue;
    put(table.rows[place->second], pivot.column(row), pivot.cells.At(row, pivot.value));
  }
  if (!table.has_totals) return table;

  std::vector<std::string>& whole = table.rows.emplace_back(columns);
  whole[pivot.label_column] = pivot.total_label;
  const auto in_money = [&](double thousandths) { return AmountText(format, thousandths / scale::kProd); };
  whole[pivot.total_column] = in_money(GrandTotal(pivot.totals, pivot.value));
  for (std::size_t column = pivot.total_column + 1; column < columns; ++column) {
    whole[column] = in_money(static_cast<double>(sums[column]));
  }
  return table;
}

std::size_t DayColumn(const std::string& day, const Date& first, std::size_t first_column) {
  const std::optional<Date> date = ParseDate(day);
  if (!date) throw TypeMismatch("not a date: \"" + day + "\"");
  return first_column + static_cast<std::size_t>(std::max(0, DaysBetween(first, *date)));
}

ReportTable WithoutNumbers(ReportTable table) {
  table.headers.erase(table.headers.begin());
  for (std::vector<std::string>& row : table.rows) row.erase(row.begin());
  return table;
}

}  // namespace zrt
