#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "core/errors.h"
#include "platform/drive_map.h"
#include "platform/spreadsheet_cells.h"

namespace zrt {

/// A spreadsheet file can't be read. what() names the file and, in short Russian words fit for the operator, the
/// reason: missing, unreadable, damaged, protected by a password, too large, no spreadsheet, no sheet in it.
class SpreadsheetError : public FileError {
 public:
  using FileError::FileError;
};

/// The first worksheet of a spreadsheet file, read whole into memory. Reads .xls (of 1995 and later), .xlsx and .ods;
/// what a formula gives is what its program computed when it saved the file.
class Spreadsheet {
 public:
  /// Reads the file `drive_path` ("C:\Korvina\Report\x.xls"). Its kind is told by its first bytes, never by its name.
  /// The sheet read is the first one that holds cells, hidden or not; sheets of charts and macros don't count. Throws
  /// SpreadsheetError when the file is missing, can't be read, is damaged anywhere on the way to that sheet, encrypted,
  /// too large or of another kind: nothing half-read is handed out.
  /// `between` is called at the beginning and every few thousand cells; what it throws ends the reading.
  static Spreadsheet Open(const DriveMap& drives, std::string_view drive_path,
                          const std::function<void()>& between = {});

  /// The value of a cell as UTF-8 text; `row` and `column` count from 1. "" for an empty cell and for one beyond the
  /// data. Texts come with all their blanks and line feeds, also those that look like numbers. Numbers have fifteen
  /// significant digits at most, a decimal point, no grouping and never an exponent: a barcode kept as a number comes
  /// as all its digits. Yes and no are "TRUE" and "FALSE", dates the number of days since 30.12.1899, errors their
  /// English name ("#N/A").
  std::string Cell(std::int64_t row, std::int64_t column) const { return std::string(cells_.At(row, column)); }

  /// The last row that holds a cell with a text or number; 0 in an empty sheet. A row of empty texts doesn't count.
  std::int64_t Rows() const { return cells_.Rows(); }

 private:
  explicit Spreadsheet(SpreadsheetCells cells) : cells_(std::move(cells)) {}

  SpreadsheetCells cells_;
};

}  // namespace zrt
