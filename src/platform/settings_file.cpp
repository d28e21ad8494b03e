#include "platform/settings_file.h"

#include <fstream>
#include <system_error>

#include "core/errors.h"
#include "core/text.h"

namespace zrt {

namespace {

std::string FieldText(std::string_view field) {
  std::string text = Trim(field);
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  return text;
}

}  // namespace

std::optional<std::string> FindDataLinkPath(const DriveMap& drives, std::string_view executable) {
  const std::filesystem::path native = drives.ToNative(kSettingsFile);
  std::error_code error;
  if (!std::filesystem::exists(native, error) && !error) return std::nullopt;

  std::ifstream file(native, std::ios::binary);
  std::optional<std::string> path;
  for (std::string bytes; !path && std::getline(file, bytes);) {
    if (!bytes.empty() && bytes.back() == '\r') bytes.pop_back();
    const std::string line = FromWindows1251(bytes);
    const std::size_t comma = line.find(',');
    if (comma == std::string::npos) continue;
    if (FieldText(line.substr(0, comma)) == executable) path = FieldText(line.substr(comma + 1));
  }
  // A folder of that name opens as a stream and fails at the first read.
  if (!file.is_open() || file.bad()) throw FileError(std::string(kSettingsFile), "can't be read");
  return path;
}

}  // namespace zrt
