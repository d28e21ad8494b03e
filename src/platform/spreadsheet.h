#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drive_map.h"

namespace zrt {

/// The cells of a spreadsheet's first worksheet, read whole: what a spreadsheet program would hand over as their
/// values. Kept compactly, since a catalogue has tens of thousands of rows.
///
/// Why a reader of our own: the libraries that Debian has for it crash on damaged .xls files, know no value of a
/// formula, or drop texts that stand in the cells themselves.
class Spreadsheet {
 public:
  /// Reads .xls (of the versions 5 to 2003), .xlsx or .ods; which of them it is, the first bytes of the file say, never
  /// its name. Throws FileError when it is missing, damaged, protected by a password, too large, or of another kind.
  static Spreadsheet Open(const DriveMap& drives, const std::string& drive_path);

  /// The value of a cell as UTF-8 text, "" for an empty cell and beyond the data; rows and columns count from 1.
  /// Numbers have fifteen significant digits at most, a point, and no exponent: a barcode that was typed as a number
  /// keeps all its digits. A formula gives the value that it had when the file was saved.
  std::string_view Cell(std::int64_t row, std::int64_t column) const;

  /// The last row that holds anything, 0 for an empty sheet.
  std::int64_t Rows() const { return cells_.empty() ? 0 : cells_.back().row; }

 private:
  friend class SheetCells;
  struct Place {
    std::uint32_t row;
    std::uint32_t column;
    std::uint32_t begin;   ///< in texts_
    std::uint32_t length;  ///< bytes
  };

  std::vector<Place> cells_;  ///< by row, then by column
  std::string texts_;
};

}  // namespace zrt
