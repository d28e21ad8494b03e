#pragma once

#include <functional>
#include <string_view>

#include "platform/spreadsheet_cells.h"

namespace zrt {

/// How the two kinds of file that ReadXls reads begin.
inline constexpr std::string_view kCompoundFileStart = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
inline constexpr std::string_view kBareWorkbookStart = "\x09\x08";

/// The first worksheet of an .xls file of the versions 5, 95 and 97 to 2003: a compound file with the workbook in it,
/// or the workbook alone, as some programs write it. Throws BadSpreadsheet; kOtherKind when the compound file holds
/// another kind of document.
SpreadsheetCells ReadXls(std::string_view file, const std::function<void()>& between);

}  // namespace zrt
