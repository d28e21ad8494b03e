#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/drive_map.h"

namespace zrt {

/// The settings file that all programs of this machine share: a line for each executable, its name, a comma, and the
/// path of its data link file.
inline constexpr std::string_view kSettingsFile = "C:/Korvina/ZRTr";

/// Path of the data link file of `executable` (compared as written) from the first line that names it; nothing when the
/// file doesn't exist or no line does. Lines of other form are passed over; the text is in windows-1251, fields may
/// stand in double quotes. Throws FileError when the file exists and can't be read.
std::optional<std::string> FindDataLinkPath(const DriveMap& drives, std::string_view executable);

/// Makes `path` the data link file of `executable`: its line stands at the end, the lines of all others stay as they
/// are, byte for byte, and in their order. The file keeps its owner, its mode, its line ends and its place behind a
/// link; it is made when there is none. Throws FileError; the file is as before then.
void SaveDataLinkPath(const DriveMap& drives, std::string_view executable, std::string_view path);

}  // namespace zrt
