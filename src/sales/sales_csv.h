#pragma once

#include <string>
#include <string_view>

#include "core/recordset.h"
#include "core/regional_format.h"
#include "platform/text_file.h"

// The tables of the sales tab as text files for a spreadsheet: fields between semicolons, nothing in quotes. A
// semicolon in a name shifts the columns behind it.

namespace zrt::sales {

/// Each writes a title, an empty line, a header and a line for every row of `set`, from the first; the set's current
/// row stays where it is. Amounts have two decimals and the thousands apart, NULL gives an empty field, anything else
/// stands in its shortest form. The file isn't closed.

/// Sold lines under `title`. Unless `sum` (as LblSum shows it) is empty, the total follows. Throws TypeMismatch when
/// `sum` is no number.
void WriteSales(TextFileWriter& file, const Recordset& set, const RegionalFormat& format, const std::string& title,
                const std::string& sum);

/// Deleted lines. Their quantities and prices are texts; throws TypeMismatch at the first that is no number.
void WriteDeletions(TextFileWriter& file, const Recordset& set, const RegionalFormat& format);

/// Orders in detail.
void WriteOrderDetail(TextFileWriter& file, const Recordset& set, const RegionalFormat& format);

}  // namespace zrt::sales
