#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/spreadsheet.h"

namespace zrt {

/// Why a file can't be taken for a spreadsheet; Spreadsheet::Open adds the name of the file.
class SheetFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A sheet is held in memory whole; nonsense in a file must not ask for more than a machine has.
inline constexpr std::uint32_t kMostRows = 1'048'576;           ///< as many as any spreadsheet program knows
inline constexpr std::uint32_t kMostColumns = 256;              ///< cells further right are passed over
inline constexpr std::size_t kMostCells = 8'000'000;            ///< of a sheet
inline constexpr std::size_t kMostBytes = 256UL * 1024 * 1024;  ///< of a file, of a part of it unpacked, of all texts

/// Takes the cells of a sheet in any order.
class SheetCells {
 public:
  /// Rows and columns count from 1; those beyond the limits and empty values are passed over. A cell given twice keeps
  /// its last value. Throws SheetFault when it is too much.
  void Put(std::uint64_t row, std::uint64_t column, std::string_view value);
  void Put(std::uint64_t row, std::uint64_t column, double value) { Put(row, column, NumberText(value)); }

  /// The finished sheet.
  Spreadsheet Finish();

  /// A number as Spreadsheet::Cell gives it; "" for one that isn't finite.
  static std::string NumberText(double value);

 private:
  Spreadsheet sheet_;
};

/// The text of a spreadsheet's error value by its number in .xls files.
std::string_view SheetErrorText(unsigned code);

// The three kinds. `bytes`: the whole file. Throw SheetFault.

void ReadXls(std::string_view bytes, SheetCells& cells);
/// .xlsx or .ods, as the members of the archive say.
void ReadZipped(std::string_view bytes, SheetCells& cells);

}  // namespace zrt
