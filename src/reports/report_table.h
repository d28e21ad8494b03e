#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/dates.h"
#include "core/recordset.h"
#include "core/regional_format.h"
#include "platform/drive_map.h"
#include "platform/workbook.h"

namespace zrt {

/// A table of texts as the table reports build it, for a file and for a workbook alike.
struct ReportTable {
  std::vector<std::string> headers;
  std::vector<std::vector<std::string>> rows;
  bool has_totals = false;  ///< the last row holds the totals
};

/// Writes the title lines as they are, the headers and the rows, every cell followed by ";". Throws FileError.
void WriteCsv(const DriveMap& drives, const std::string& drive_path, const std::vector<std::string>& titles,
              const ReportTable& table);

/// How a table looks in a workbook.
struct SheetLook {
  std::vector<Workbook::ColumnSpan> widths;
  int bold_column = 0;  ///< column of the sheet whose cells stand out, 0 for none
};

/// The table as a sheet: two titles, the first bold, the headers in row 3, the rows below. The heights of the headers
/// and the totals are those of two lines.
Workbook MakeWorkbook(const std::vector<std::string>& titles, const ReportTable& table, const SheetLook& look);

/// What the cells of a pivot hold.
enum class PivotValue {
  kThousandths,  ///< shown with two decimals; columns are totalled in whole thousandths, the totals exactly
  kText,         ///< texts as the server joined them, without totals
};

/// A table with a row for each key: first cells of its own, the row's total, then a column for each day, hour or
/// whatever the values are spread over. Three sets with the same fields make it; two of them may be one.
struct Pivot {
  const Recordset& rows;    ///< which rows there are: one for each new key, in this order
  const Recordset& cells;   ///< the values by key and column
  const Recordset& totals;  ///< the values by key; the first row of a key counts
  int key = 0;              ///< field of the key, in all three
  int value = 0;            ///< field of the value; NULL leaves its cell blank
  std::vector<std::string> headers;
  std::size_t total_column = 0;
  /// The cells before the total: of the table's row `number`, from 1, that `rows` begins in its row `row`.
  std::function<std::vector<std::string>(std::size_t number, int row)> lead;
  /// The column of the value in row `row` of `cells`.
  std::function<std::size_t(int row)> column;
  std::string_view blank{};  ///< a cell without a value
  PivotValue kind = PivotValue::kThousandths;
  std::string_view total_label{};  ///< what the row of totals is called, and in which column
  std::size_t label_column = 0;
};

/// Builds the table. Throws TypeMismatch for a value that is no number, std::out_of_range for a column that has no
/// header.
ReportTable MakePivot(const Pivot& pivot, const RegionalFormat& format);

/// The column of `day` (dd.mm.yyyy) among those that begin at column `first_column` with the day `first`; a day before
/// it counts as it. Throws TypeMismatch for what is no date.
std::size_t DayColumn(const std::string& day, const Date& first, std::size_t first_column);

/// The same table without its first column, which a workbook doesn't have.
ReportTable WithoutNumbers(ReportTable table);

}  // namespace zrt
