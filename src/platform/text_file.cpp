#include "platform/text_file.h"

#include <system_error>

#include "core/errors.h"
#include "core/text.h"

namespace zrt {

TextFileWriter::TextFileWriter(const DriveMap& drives, std::string drive_path)
    : drive_path_(std::move(drive_path)), final_(drives.ToNative(drive_path_)), unfinished_(final_) {
  unfinished_ += ".part";
  // A folder of the file's name would only be noticed at the end.
  std::error_code error;
  if (!std::filesystem::is_directory(final_, error)) file_.open(unfinished_, std::ios::binary | std::ios::trunc);
  if (!file_.is_open()) throw FileError(drive_path_, "can't be written");
}

TextFileWriter::~TextFileWriter() {
  if (!file_.is_open()) return;
  file_.close();
  std::error_code error;
  std::filesystem::remove(unfinished_, error);
}

void TextFileWriter::Line(std::string_view text) {
  file_ << ToWindows1251(text) << "\r\n";
}

void TextFileWriter::Close() {
  file_.close();
  std::error_code error;
  if (file_.good()) {
    std::filesystem::rename(unfinished_, final_, error);
    if (!error) return;
  }
  std::filesystem::remove(unfinished_, error);
  throw FileError(drive_path_, "can't be written");
}

std::vector<std::string> ReadTextLines(const DriveMap& drives, std::string_view drive_path) {
  std::ifstream file(drives.ToNative(drive_path), std::ios::binary);
  std::vector<std::string> lines;
  for (std::string bytes; std::getline(file, bytes);) {
    if (!bytes.empty() && bytes.back() == '\r') bytes.pop_back();
    lines.push_back(FromWindows1251(bytes));
  }
  // A folder of that name opens as a stream and fails at the first read.
  if (!file.is_open() || file.bad()) throw FileError(std::string(drive_path), "can't be read");
  return lines;
}

}  // namespace zrt
