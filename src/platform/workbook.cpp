#include "platform/workbook.h"

#include <xlsxwriter.h>

#include "core/errors.h"

namespace zrt {

namespace {

class NoSpreadsheet final : public SpreadsheetProgram {
 public:
  void Open(const Workbook&) override {}
};

lxw_row_t RowIndex(int row) {
  return static_cast<lxw_row_t>(row - 1);
}

lxw_col_t ColumnIndex(int column) {
  return static_cast<lxw_col_t>(column - 1);
}

}  // namespace

SpreadsheetProgram& SpreadsheetProgram::None() {
  static NoSpreadsheet none;
  return none;
}

void Workbook::SaveAs(const std::filesystem::path& file) const {
  lxw_workbook* book = workbook_new(file.string().c_str());
  if (book == nullptr) throw FileError(file.string(), "can't be written");
  std::string status = StatusBar.empty() ? std::string() : StatusBar.back();
  lxw_doc_properties properties = {};
  properties.status = status.data();
  workbook_set_properties(book, &properties);
  lxw_worksheet* sheet = workbook_add_worksheet(book, nullptr);
  lxw_format* bold = workbook_add_format(book);
  format_set_bold(bold);

  // The sums are texts on purpose; a green corner in each cell would say that something is wrong.
  worksheet_ignore_errors(sheet, LXW_IGNORE_NUMBER_STORED_AS_TEXT, "A1:XFD1048576");
  for (const ColumnSpan& span : ColumnWidths) {
    worksheet_set_column(sheet, ColumnIndex(span.first), ColumnIndex(span.last), span.width, nullptr);
  }
  for (const RowHeight& row : RowHeights) worksheet_set_row(sheet, RowIndex(row.row), row.height, nullptr);
  for (const TextCell& cell : Cells) {
    worksheet_write_string(sheet, RowIndex(cell.row), ColumnIndex(cell.column), cell.text.c_str(),
                           cell.bold ? bold : nullptr);
  }
  if (workbook_close(book) != LXW_NO_ERROR) throw FileError(file.string(), "can't be written");
}

}  // namespace zrt
