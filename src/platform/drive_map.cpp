#include "platform/drive_map.h"

#include <algorithm>
#include <cctype>
#include <system_error>

namespace zrt {

namespace {

bool HasDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0;
}

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace

std::filesystem::path DriveMap::ToNative(std::string_view drive_path) const {
  std::string rest(drive_path);
  if (root_.empty()) return std::filesystem::path(std::u8string(rest.begin(), rest.end()));

  char drive = 'C';
  if (HasDrive(rest)) {
    drive = static_cast<char>(std::toupper(static_cast<unsigned char>(rest[0])));
    rest.erase(0, 2);
  }
  std::replace(rest.begin(), rest.end(), '\\', '/');
  rest.erase(0, rest.find_first_not_of('/'));
  return root_ / std::string(1, drive) / std::filesystem::path(std::u8string(rest.begin(), rest.end()));
}

std::vector<std::string> DriveMap::Drives() const {
  std::vector<std::string> drives;
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const std::string drive{letter, ':'};
    std::error_code error;
    if (letter == 'C' || std::filesystem::exists(ToNative(drive + "\\"), error)) drives.push_back(drive);
  }
  return drives;
}

std::vector<std::string> DriveMap::Folders(std::string_view drive_path) const {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(ToNative(drive_path), error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unreadable;
    if (entry->is_directory(unreadable)) names.push_back(Utf8(entry->path().filename()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace zrt
