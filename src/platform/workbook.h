#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zrt {

/// A new workbook of one sheet, as the spreadsheet program is asked to fill it. Rows and columns count from 1; every
/// cell is a text.
class Workbook {
 public:
  struct TextCell {
    int row = 0;
    int column = 0;
    std::string text;
    bool bold = false;
  };
  struct ColumnSpan {
    int first = 0;
    int last = 0;
    double width = 0;  ///< characters of the default face
  };
  struct RowHeight {
    int row = 0;
    double height = 0;  ///< points
  };

  std::vector<std::string> StatusBar;  ///< what the program says of its work, one text after another; the last stays
  std::vector<TextCell> Cells;
  std::vector<ColumnSpan> ColumnWidths;
  std::vector<RowHeight> RowHeights;

  void Cell(int row, int column, std::string text, bool bold = false) {
    Cells.push_back({row, column, std::move(text), bold});
  }

  /// Writes the book as an .xlsx file; the last text of StatusBar becomes the document's status. Numbers in texts
  /// aren't marked as mistakes. Throws FileError when the file can't be written.
  void SaveAs(const std::filesystem::path& file) const;
};

/// The spreadsheet program of the operator's machine.
class SpreadsheetProgram {
 public:
  virtual ~SpreadsheetProgram() = default;
  /// Leaves the book open and unsaved in front of the operator. Where there is no such program nothing happens.
  virtual void Open(const Workbook& book) = 0;

  /// A machine without a spreadsheet program.
  static SpreadsheetProgram& None();
};

}  // namespace zrt
