#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drive_map.h"

namespace zrt {

/// A product and how much of it, as one installation tells another in a text file.
struct CountedLine {
  std::int32_t cod = 0;
  std::int32_t kol = 0;  ///< thousandths
};

/// The line of a file: the code, the name in quotes with a blank on either side, the quantity in thousandths.
std::string LineOfFile(std::int32_t cod, std::string_view name, std::int32_t kol);

/// The lines of a file as LineOfFile makes them; the blanks inside the quotes may be missing, and the name, which may
/// hold commas and quotes itself, is passed over. Empty lines don't count. Throws FileError, which names the line, when
/// one has other fields: nothing of a broken file is taken.
std::vector<CountedLine> ReadLineFile(const DriveMap& drives, const std::string& drive_path);

}  // namespace zrt
