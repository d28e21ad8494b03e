#include "platform/spreadsheet.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "core/errors.h"
#include "platform/spreadsheet_cells.h"

namespace zrt {

namespace {

constexpr std::string_view kCompoundFile = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
constexpr std::string_view kArchive = "PK\x03\x04";

std::string ReadBytes(const DriveMap& drives, const std::string& drive_path) {
  const std::filesystem::path native = drives.ToNative(drive_path);
  std::error_code error;
  if (std::filesystem::is_regular_file(native, error) && std::filesystem::file_size(native, error) > kMostBytes) {
    throw SheetFault("too large");
  }
  std::ifstream file(native, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.is_open() || file.bad()) throw SheetFault("can't be read");
  return bytes;
}

bool Before(std::uint32_t row, std::uint32_t column, std::uint32_t other_row, std::uint32_t other_column) {
  return row != other_row ? row < other_row : column < other_column;
}

}  // namespace

Spreadsheet Spreadsheet::Open(const DriveMap& drives, const std::string& drive_path) {
  try {
    const std::string bytes = ReadBytes(drives, drive_path);
    SheetCells cells;
    if (bytes.starts_with(kCompoundFile)) {
      ReadXls(bytes, cells);
    } else if (bytes.starts_with(kArchive)) {
      ReadZipped(bytes, cells);
    } else {
      throw SheetFault("no spreadsheet");
    }
    return cells.Finish();
  } catch (const SheetFault& fault) {
    throw FileError(drive_path, fault.what());
  }
}

std::string_view Spreadsheet::Cell(std::int64_t row, std::int64_t column) const {
  if (row < 1 || column < 1 || row > kMostRows || column > kMostColumns) return {};
  const auto wanted_row = static_cast<std::uint32_t>(row);
  const auto wanted_column = static_cast<std::uint32_t>(column);
  const auto found = std::partition_point(cells_.begin(), cells_.end(), [&](const Place& place) {
    return Before(place.row, place.column, wanted_row, wanted_column);
  });
  if (found == cells_.end() || found->row != wanted_row || found->column != wanted_column) return {};
  return std::string_view(texts_).substr(found->begin, found->length);
}

void SheetCells::Put(std::uint64_t row, std::uint64_t column, std::string_view value) {
  if (value.empty() || row < 1 || column < 1 || row > kMostRows || column > kMostColumns) return;
  if (sheet_.cells_.size() == kMostCells || sheet_.texts_.size() + value.size() > kMostBytes) {
    throw SheetFault("too large");
  }
  sheet_.cells_.push_back({static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column),
                           static_cast<std::uint32_t>(sheet_.texts_.size()), static_cast<std::uint32_t>(value.size())});
  sheet_.texts_ += value;
}

Spreadsheet SheetCells::Finish() {
  using Place = Spreadsheet::Place;
  std::vector<Place>& cells = sheet_.cells_;
  std::stable_sort(cells.begin(), cells.end(), [](const Place& one, const Place& other) {
    return Before(one.row, one.column, other.row, other.column);
  });
  // Of those with the same place the last one stays.
  const auto kept = std::unique(cells.rbegin(), cells.rend(), [](const Place& one, const Place& other) {
    return one.row == other.row && one.column == other.column;
  });
  cells.erase(cells.begin(), kept.base());
  return std::move(sheet_);
}

std::string SheetCells::NumberText(double value) {
  if (!std::isfinite(value)) return {};
  // Fifteen digits are what a spreadsheet shows of a double: 0.1+0.2 is 0.3.
  std::array<char, 32> rounded{};
  std::snprintf(rounded.data(), rounded.size(), "%.14e", value);
  std::from_chars(rounded.data(), rounded.data() + rounded.size(), value);
  std::array<char, 400> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  return error == std::errc() ? std::string(text.data(), end) : std::string();
}

std::string_view SheetErrorText(unsigned code) {
  switch (code) {
    case 0x00:
      return "#NULL!";
    case 0x07:
      return "#DIV/0!";
    case 0x0F:
      return "#VALUE!";
    case 0x17:
      return "#REF!";
    case 0x1D:
      return "#NAME?";
    case 0x24:
      return "#NUM!";
    default:
      return "#N/A";
  }
}

}  // namespace zrt
