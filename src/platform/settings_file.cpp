#include "platform/settings_file.h"

#include <system_error>

#include "core/text.h"
#include "platform/text_file.h"

namespace zrt {

namespace {

struct Record {
  std::string executable;
  std::string path;
};

std::string Unquoted(std::string text) {
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  return text;
}

/// The two fields of a line; nothing for a line of another form. A comma inside quotes belongs to its field, and so do
/// all that follow the first one outside.
std::optional<Record> ReadRecord(const std::string& line) {
  const std::string text = Trim(line);
  const std::size_t field_end = text.starts_with('"') ? text.find('"', 1) : 0;
  const std::size_t comma = text.find(',', field_end);
  if (field_end == std::string::npos || comma == std::string::npos) return std::nullopt;
  return Record{Unquoted(Trim(text.substr(0, comma))), Unquoted(Trim(text.substr(comma + 1)))};
}

}  // namespace

std::optional<std::string> FindDataLinkPath(const DriveMap& drives, std::string_view executable) {
  const std::filesystem::path native = drives.ToNative(kSettingsFile);
  std::error_code error;
  if (!std::filesystem::exists(native, error) && !error) return std::nullopt;

  for (const std::string& line : ReadTextLines(drives, kSettingsFile)) {
    const std::optional<Record> record = ReadRecord(line);
    if (record && record->executable == executable) return record->path;
  }
  return std::nullopt;
}

void SaveDataLinkPath(const DriveMap& drives, std::string_view executable, std::string_view path) {
  std::vector<std::string> lines;
  if (drives.HasFile(kSettingsFile)) lines = ReadTextLines(drives, kSettingsFile);
  std::erase_if(lines, [&](const std::string& line) {
    const std::optional<Record> record = ReadRecord(line);
    return record && record->executable == executable;
  });
  TextFileWriter file(drives, std::string(kSettingsFile));
  for (const std::string& line : lines) file.Line(line);
  file.Line(fmt::format("{},{}", executable, path));
  file.Close();
}

}  // namespace zrt
