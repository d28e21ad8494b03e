#include "platform/drive_map.h"

#include <algorithm>
#include <cctype>
#include <system_error>

#include "core/text.h"

namespace zrt {

namespace {

bool HasDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0;
}

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

/// Does the name fit the pattern, where "*" stands for any text? An empty pattern fits all.
bool Fits(std::string_view name, std::string_view pattern) {
  if (pattern.empty()) return true;
  const std::size_t star = pattern.find('*');
  if (star == std::string_view::npos) return name == pattern;
  if (!name.starts_with(pattern.substr(0, star))) return false;
  name.remove_prefix(star);
  for (pattern.remove_prefix(star + 1);;) {
    const std::size_t next = pattern.find('*');
    if (next == std::string_view::npos) return name.ends_with(pattern);
    const std::size_t found = name.find(pattern.substr(0, next));
    if (found == std::string_view::npos) return false;
    name.remove_prefix(found + next);
    pattern.remove_prefix(next + 1);
  }
}

}  // namespace

std::string JoinPath(std::string_view folder, std::string_view name) {
  return std::string(folder) + (folder.ends_with('\\') ? "" : "\\") + std::string(name);
}

std::string WithoutSlash(std::string_view folder) {
  return std::string(folder.substr(0, folder.find_last_not_of('\\') + 1));
}

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

bool DriveMap::HasFile(std::string_view drive_path) const {
  std::error_code error;
  return std::filesystem::is_regular_file(ToNative(drive_path), error);
}

std::vector<std::string> DriveMap::Files(std::string_view drive_path, std::string_view pattern) const {
  std::vector<std::string> names = Entries(drive_path, [&](const std::filesystem::directory_entry& entry) {
    std::error_code unreadable;
    return entry.is_regular_file(unreadable) && Fits(ToLower(Utf8(entry.path().filename())), ToLower(pattern));
  });
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return ToLower(a) < ToLower(b); });
  return names;
}

std::vector<std::string> DriveMap::Folders(std::string_view drive_path) const {
  std::vector<std::string> names = Entries(drive_path, [](const std::filesystem::directory_entry& entry) {
    std::error_code unreadable;
    return entry.is_directory(unreadable);
  });
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> DriveMap::Entries(
    std::string_view drive_path, const std::function<bool(const std::filesystem::directory_entry&)>& wanted) const {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(ToNative(drive_path), error), end; !error && entry != end;
       entry.increment(error)) {
    if (wanted(*entry)) names.push_back(Utf8(entry->path().filename()));
  }
  return names;
}

}  // namespace zrt
