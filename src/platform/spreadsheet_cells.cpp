#include "platform/spreadsheet_cells.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace zrt {

void SpreadsheetCells::TakeOne() {
  constexpr unsigned kOften = 4096;
  if (++taken_ % kOften == 0 && between_) between_();
}

SpreadsheetCells::Text SpreadsheetCells::Keep(std::string_view text) {
  TakeOne();
  if (text.size() > kMaxSpreadsheetCellText || text.size() > kMaxSpreadsheetText - texts_.size()) {
    throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
  }
  const Text kept{static_cast<std::uint32_t>(texts_.size()), static_cast<std::uint32_t>(text.size())};
  texts_.append(text);
  return kept;
}

void SpreadsheetCells::Put(std::int64_t row, std::int64_t column, Text text) {
  TakeOne();
  if (row < 1 || row > kMaxSpreadsheetRows || column < 1 || column > kMaxSpreadsheetColumns) {
    throw BadSpreadsheet(SpreadsheetFault::kDamaged);
  }
  const Cell cell{static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column), text};
  if (!cells_.empty() && !Before(cells_.back(), cell)) {
    in_order_ = false;
  } else if (text.length == 0) {
    return;
  }
  if (cells_.size() == kMaxSpreadsheetCells) throw BadSpreadsheet(SpreadsheetFault::kTooLarge);
  cells_.push_back(cell);
}

void SpreadsheetCells::Finish() {
  if (!in_order_) {
    std::stable_sort(cells_.begin(), cells_.end(), Before);
    // Of each cell the last value stays, unless that one is empty.
    std::size_t kept = 0;
    for (std::size_t i = 0; i < cells_.size(); ++i) {
      const bool is_last = i + 1 == cells_.size() || Before(cells_[i], cells_[i + 1]);
      if (is_last && cells_[i].text.length != 0) cells_[kept++] = cells_[i];
    }
    cells_.resize(kept);
    in_order_ = true;
  }
  between_ = {};  // what it refers to may be gone before the cells are
  cells_.shrink_to_fit();
  texts_.shrink_to_fit();
}

std::string_view SpreadsheetCells::At(std::int64_t row, std::int64_t column) const {
  if (row < 1 || row > kMaxSpreadsheetRows || column < 1 || column > kMaxSpreadsheetColumns) return {};
  const Cell wanted{static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column), {}};
  const auto found = std::lower_bound(cells_.begin(), cells_.end(), wanted, Before);
  if (found == cells_.end() || Before(wanted, *found)) return {};
  return std::string_view(texts_).substr(found->text.offset, found->text.length);
}

std::string SpreadsheetNumber(double value) {
  if (!std::isfinite(value)) throw BadSpreadsheet(SpreadsheetFault::kDamaged);
  if (value == 0) return "0";  // no minus before it
  // Fifteen digits are what a spreadsheet shows of a number: 0.1+0.2 is 0.3.
  char rounded[32];
  std::snprintf(rounded, sizeof rounded, "%.14e", value);
  std::from_chars(std::begin(rounded), std::end(rounded), value);
  if (!std::isfinite(value)) throw BadSpreadsheet(SpreadsheetFault::kDamaged);  // the greatest of all, rounded up
  char digits[400];  // the smallest number has 324 digits after the point
  const auto end = std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed).ptr;
  return {digits, end};
}

std::string SpreadsheetNumber(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
  std::string_view number = text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
  if (number.starts_with('+')) number.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error != std::errc() || end != number.data() + number.size() || !std::isfinite(value)) return std::string(text);
  return SpreadsheetNumber(value);
}

std::string SpreadsheetYesOrNo(bool value) {
  return value ? "TRUE" : "FALSE";
}

void AppendCharacter(std::string& utf8, char32_t code) {
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = 0xFFFD;
  const auto append = [&utf8](char32_t byte) { utf8.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    append(code);
  } else if (code < 0x800) {
    append(0xC0 | code >> 6);
    append(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    append(0xE0 | code >> 12);
    append(0x80 | (code >> 6 & 0x3F));
    append(0x80 | (code & 0x3F));
  } else {
    append(0xF0 | code >> 18);
    append(0x80 | (code >> 12 & 0x3F));
    append(0x80 | (code >> 6 & 0x3F));
    append(0x80 | (code & 0x3F));
  }
}

}  // namespace zrt
