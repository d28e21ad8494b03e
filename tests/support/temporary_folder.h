#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

#include "core/errors.h"

namespace zrt::test {

/// A folder of the test's own among the temporary files, under a name that nobody can have taken before; gone with the
/// object, and all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zrt_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw FileError(pattern, "can't be made");
    path_ = pattern;
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace zrt::test
