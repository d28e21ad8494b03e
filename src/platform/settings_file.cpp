#include "platform/settings_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

#include "core/text.h"
#include "platform/text_file.h"
#include "platform/whole_file.h"

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
  constexpr std::size_t kMaxSettingsFile = 1U << 20;
  std::string bytes;
  if (drives.HasFile(kSettingsFile)) bytes = ReadSmallFile(drives, kSettingsFile, kMaxSettingsFile);
  // Other programs may read one kind of line end alone.
  const std::size_t first_end = bytes.find('\n');
  const bool plain_ends = first_end != std::string::npos && (first_end == 0 || bytes[first_end - 1] != '\r');
  const std::string_view line_end = plain_ends ? "\n" : "\r\n";

  // The machine may keep the file elsewhere and have a link here; then it is that one which changes.
  std::error_code error;
  const std::filesystem::path native = drives.ToNative(kSettingsFile);
  const std::filesystem::path real = std::filesystem::weakly_canonical(native, error);
  WholeFile file(std::string(kSettingsFile), error ? native : real);
  file.LikeTheOneBefore();
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t next = std::min(bytes.find('\n', at), bytes.size() - 1) + 1;
    const std::string line = bytes.substr(at, next - at);
    at = next;
    const std::size_t text = line.find_last_not_of("\r\n") + 1;
    const std::optional<Record> record = ReadRecord(FromWindows1251(line.substr(0, text)));
    if (record && record->executable == executable) continue;
    file.Write(line);
    if (!line.ends_with('\n')) file.Write(line_end);
  }
  file.Write(ToWindows1251(fmt::format("{},{}", executable, path)));
  file.Write(line_end);
  file.Close();
}

}  // namespace zrt
