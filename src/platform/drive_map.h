#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zrt {

/// A file's path from its folder's; the root of a drive has its back-slash already. Without a name the folder with a
/// back-slash behind.
std::string JoinPath(std::string_view folder, std::string_view name);

/// A folder without the back-slash behind, as the lists of folders name it.
std::string WithoutSlash(std::string_view folder);

/// The program names its files by drive, "C:\Korvina\Report\" or "C:/Korvina/ZRTr". Where the system has no drives,
/// each drive is a folder below one folder of the user: ROOT/C/Korvina/Report.
class DriveMap {
 public:
  /// `root` holds the folders of the drives; empty where the system has drives of its own.
  explicit DriveMap(std::filesystem::path root) : root_(std::move(root)) {}

  /// Where the file or folder of a drive path really is. Both kinds of slash are accepted, case is kept. A path without
  /// a drive counts as one of drive C.
  std::filesystem::path ToNative(std::string_view drive_path) const;

  /// The drives that exist, as "C:". Drive C always does.
  std::vector<std::string> Drives() const;

  /// Names of the folders in `drive_path`, sorted; empty when it can't be read.
  std::vector<std::string> Folders(std::string_view drive_path) const;

  /// Names of the files in `drive_path` that fit `pattern`, sorted without regard to case; empty when the folder can't
  /// be read. In a pattern "*" stands for any text; case is ignored; an empty pattern fits all.
  std::vector<std::string> Files(std::string_view drive_path, std::string_view pattern) const;

  /// Is there a file of that name?
  bool HasFile(std::string_view drive_path) const;

 private:
  /// Names of what stands in a folder and is wanted; none when it can't be read.
  std::vector<std::string> Entries(std::string_view drive_path,
                                   const std::function<bool(const std::filesystem::directory_entry&)>& wanted) const;

  std::filesystem::path root_;
};

}  // namespace zrt
