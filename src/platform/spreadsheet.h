#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include "platform/drive_map.h"
namespace zrt {
class Spreadsheet {
 public:
  static Spreadsheet Open(const DriveMap& drives, std::string_view drive_path);
  std::string Cell(std::int64_t row, std::int64_t column) const;
  std::int64_t Rows() const;
};
}
