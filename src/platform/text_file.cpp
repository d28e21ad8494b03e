#include "platform/text_file.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "core/errors.h"
#include "core/text.h"

namespace zrt {

void TextFileWriter::Line(std::string_view text) {
  file_.Write(ToWindows1251(text) + "\r\n");
}

std::string ReadSmallFile(const DriveMap& drives, std::string_view drive_path, std::size_t most) {
  const std::filesystem::path native = drives.ToNative(drive_path);
  std::error_code error;
  // A pipe or a device of that name would keep the program waiting or never end.
  if (!std::filesystem::is_regular_file(native, error)) throw FileError(std::string(drive_path), "can't be read");
  std::ifstream file(native, std::ios::binary);
  std::string bytes;
  char block[1U << 16];
  do {
    file.read(block, sizeof block);
    bytes.append(block, static_cast<std::size_t>(file.gcount()));
    if (bytes.size() > most) throw FileError(std::string(drive_path), "is too large");
  } while (file);
  if (!file.eof()) throw FileError(std::string(drive_path), "can't be read");
  return bytes;
}

std::vector<std::string> ReadTextLines(const DriveMap& drives, std::string_view drive_path) {
  const std::string bytes = ReadSmallFile(drives, drive_path, kMaxTextFile);
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
    std::string_view line = std::string_view(bytes).substr(at, end - at);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(FromWindows1251(line));
    at = end + 1;
  }
  return lines;
}

}  // namespace zrt
