#pragma once

#include <functional>

#include "platform/spreadsheet_cells.h"
#include "platform/spreadsheet_xml.h"

namespace zrt {

/// The first worksheet of an .xlsx archive. Throws BadSpreadsheet; kOtherKind when the archive holds no workbook.
SpreadsheetCells ReadXlsx(const ZipFile& zip, const std::function<void()>& between);

}  // namespace zrt
