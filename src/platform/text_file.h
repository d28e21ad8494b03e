#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drive_map.h"

namespace zrt {

/// Writes a text file for other programs: windows-1251, lines ended by CR LF. What has been written stands under the
/// final name only when it is whole: a full disk or a failure on the way leaves no half file there, and a file of that
/// name stays as it was.
class TextFileWriter {
 public:
  /// `drive_path` as the program names files, "C:\Korvina\Report\x.csv". Throws FileError when the file can't be made.
  TextFileWriter(const DriveMap& drives, std::string drive_path);
  /// Drops what was written unless Close has succeeded.
  ~TextFileWriter();
  TextFileWriter(const TextFileWriter&) = delete;
  TextFileWriter& operator=(const TextFileWriter&) = delete;

  /// Adds a line (UTF-8; a character that windows-1251 lacks becomes "?"). Failures are kept until Close.
  void Line(std::string_view text);

  /// Puts the file in its place, over one of the same name. Throws FileError; nothing is there then.
  void Close();

 private:
  std::string drive_path_;
  std::filesystem::path final_;
  std::filesystem::path unfinished_;
  std::ofstream file_;
};

/// The lines of a windows-1251 text file as UTF-8, without their ends: CR LF, LF, and a last line without one. Throws
/// FileError when it is missing or can't be read.
std::vector<std::string> ReadTextLines(const DriveMap& drives, std::string_view drive_path);

}  // namespace zrt
