#include "exchange/line_file.h"

#include <fmt/format.h>

#include <optional>

#include "core/errors.h"
#include "core/numbers.h"
#include "core/text.h"
#include "platform/text_file.h"

namespace zrt {

namespace {

std::optional<CountedLine> ReadLine(std::string_view text) {
  const std::size_t first = text.find(',');
  const std::size_t last = text.rfind(',');
  if (first == last) return std::nullopt;
  const std::string name = Trim(text.substr(first + 1, last - first - 1));
  if (name.size() < 2 || name.front() != '"' || name.back() != '"') return std::nullopt;
  const std::optional<std::int32_t> cod = WholeNumber(text.substr(0, first));
  const std::optional<std::int32_t> kol = WholeNumber(text.substr(last + 1));
  if (!cod || !kol) return std::nullopt;
  return CountedLine{*cod, *kol};
}

}  // namespace

std::string LineOfFile(std::int32_t cod, std::string_view name, std::int32_t kol) {
  return fmt::format("{},\" {} \",{}", cod, name, kol);
}

std::vector<CountedLine> ReadLineFile(const DriveMap& drives, const std::string& drive_path) {
  // An editor that saves as UTF-8 puts its mark in front; the lines themselves need no Cyrillic.
  const std::string mark = FromWindows1251("\xEF\xBB\xBF");
  std::vector<CountedLine> lines;
  int number = 0;
  for (std::string text : ReadTextLines(drives, drive_path)) {
    ++number;
    if (number == 1 && text.starts_with(mark)) text.erase(0, mark.size());
    if (Trim(text).empty()) continue;
    const std::optional<CountedLine> line = ReadLine(text);
    if (!line) throw FileError(fmt::format("{}, строка {}", drive_path, number), "no code, name and quantity");
    lines.push_back(*line);
  }
  return lines;
}

}  // namespace zrt
