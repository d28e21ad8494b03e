#pragma once

#include <functional>

#include "platform/spreadsheet_cells.h"
#include "platform/spreadsheet_xml.h"

namespace zrt {

/// The first sheet of an .ods archive. Throws BadSpreadsheet; kOtherKind when it is another kind of document.
SpreadsheetCells ReadOds(const ZipFile& zip, const std::function<void()>& between);

}  // namespace zrt
