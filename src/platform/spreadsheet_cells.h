#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What the readers of the three kinds of spreadsheet file fill, and what they share.

namespace zrt {

// Bounds of what a file may ask for, so that a damaged or malicious one can't take the machine's memory. A catalogue
// has 999,999 products at most and eleven columns.
inline constexpr std::size_t kMaxSpreadsheetFile = 128U << 20;   ///< bytes on disk; a full catalogue packs into 60 MB
inline constexpr std::size_t kMaxSpreadsheetCells = 12'000'000;  ///< that are not empty; 16 bytes each
inline constexpr std::size_t kMaxSpreadsheetText = 256U << 20;   ///< bytes of all texts; 250 for each product
inline constexpr std::size_t kMaxSpreadsheetCellText = 256U << 10;  ///< 65,535 characters, the most a program allows
inline constexpr std::int64_t kMaxSpreadsheetRows = 1'048'576;      ///< the last row of today's programs
inline constexpr std::int64_t kMaxSpreadsheetColumns = 16'384;      ///< their last column

/// Why a file can't be read.
enum class SpreadsheetFault { kMissing, kUnreadable, kOtherKind, kDamaged, kEncrypted, kTooLarge, kNoSheet };

/// Thrown by the readers, which don't know the file's name; `Spreadsheet::Open` tells it with the name.
struct BadSpreadsheet : std::exception {
  explicit BadSpreadsheet(SpreadsheetFault why) : fault(why) {}
  const char* what() const noexcept override { return "the spreadsheet can't be read"; }
  SpreadsheetFault fault;
};

/// The cells of a sheet that aren't empty: a text each, kept once for all cells that share it.
class SpreadsheetCells {
 public:
  /// `between` is called every few thousand texts and cells, for whoever waits; what it throws ends the reading.
  explicit SpreadsheetCells(std::function<void()> between = {}) : between_(std::move(between)) {}

  /// A text that was handed to Keep.
  struct Text {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
  };

  /// Stores a text for any number of cells. Throws BadSpreadsheet: kTooLarge beyond the bounds above.
  Text Keep(std::string_view text);

  /// Sets a cell, counted from 1, in any order; of several values the last one stays, and an empty text leaves no cell.
  /// Throws BadSpreadsheet: kDamaged for a cell that no sheet has, kTooLarge beyond the bounds above.
  void Put(std::int64_t row, std::int64_t column, Text text);

  /// Must follow the last Put, before anything is looked up.
  void Finish();

  /// The text of a cell; "" where there is none. Lives as long as this object stays unchanged.
  std::string_view At(std::int64_t row, std::int64_t column) const;

  /// The last row that has a cell, 0 without any.
  std::int64_t Rows() const { return cells_.empty() ? 0 : cells_.back().row; }

 private:
  struct Cell {
    std::uint32_t row = 0;
    std::uint32_t column = 0;
    Text text;
  };

  static bool Before(const Cell& one, const Cell& other) {
    return one.row != other.row ? one.row < other.row : one.column < other.column;
  }

  void TakeOne();

  std::string texts_;
  std::vector<Cell> cells_;
  bool in_order_ = true;
  std::function<void()> between_;
  unsigned taken_ = 0;
};

/// A number as Spreadsheet::Cell shows it. Throws BadSpreadsheet: kDamaged for what is no number (infinite).
std::string SpreadsheetNumber(double value);

/// The same for a number written as text ("4.82E+12"); a text that is no number comes back as it is.
std::string SpreadsheetNumber(std::string_view text);

/// A yes or no as Spreadsheet::Cell shows it.
std::string SpreadsheetYesOrNo(bool value);

/// Appends a character; U+FFFD for a code that is none.
void AppendCharacter(std::string& utf8, char32_t code);

}  // namespace zrt
