#include "platform/spreadsheet.h"
namespace zrt {
Spreadsheet Spreadsheet::Open(const DriveMap&, std::string_view) { return {}; }
std::string Spreadsheet::Cell(std::int64_t, std::int64_t) const { return ""; }
std::int64_t Spreadsheet::Rows() const { return 0; }
}
