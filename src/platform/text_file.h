#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drive_map.h"
#include "platform/whole_file.h"

namespace zrt {

/// Writes a text file for other programs: windows-1251, lines ended by CR LF. Stands in its place when it is whole, as
/// every WholeFile.
class TextFileWriter {
 public:
  /// `drive_path` as the program names files, "C:\Korvina\Report\x.csv". Throws FileError when the file can't be made.
  TextFileWriter(const DriveMap& drives, const std::string& drive_path)
      : file_(drive_path, drives.ToNative(drive_path)) {}

  /// Adds a line (UTF-8; a character that windows-1251 lacks becomes "?"). Failures are kept until Close.
  void Line(std::string_view text);

  /// Puts the file in its place, over one of the same name. Throws FileError; nothing is there then.
  void Close() { file_.Close(); }

 private:
  WholeFile file_;
};

/// All bytes of a file. Throws FileError when it is missing, no plain file, can't be read or is larger than `most`
/// bytes.
std::string ReadSmallFile(const DriveMap& drives, std::string_view drive_path, std::size_t most);

/// The most that a text file may hold: a million lines of a count.
inline constexpr std::size_t kMaxTextFile = 64U << 20;

/// The lines of a windows-1251 text file as UTF-8, without their ends: CR LF, LF, and a last line without one. Throws
/// FileError as ReadSmallFile does, with kMaxTextFile.
std::vector<std::string> ReadTextLines(const DriveMap& drives, std::string_view drive_path);

}  // namespace zrt
