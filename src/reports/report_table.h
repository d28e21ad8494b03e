#pragma once

#include <string>
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

/// What the cells of a table with a column for each shift day hold.
enum class DayValue {
  kMoney,  ///< thousandths, shown with two decimals; the days, rounded to thousandths, and the whole are totalled
  kText,   ///< texts as the server joined them, without totals
};

/// The table with a row for each code and a column for each shift day of [first, last): "№", code, name, total, days.
/// `days` holds the code, the name, the day as dd.mm.yyyy and the value, `totals` the same without regard to the day.
/// `headers` are those of the first four columns. A value that is missing leaves its cell empty.
ReportTable PivotByDay(const Recordset& days, const Recordset& totals, std::vector<std::string> headers,
                       const Date& first, const Date& last, DayValue kind, const RegionalFormat& format);

/// The same table without its first column, which a workbook doesn't have.
ReportTable WithoutNumbers(ReportTable table);

}  // namespace zrt
