#include "play/play_file.h"

#include <unistd.h>

#include <fstream>
#include <iostream>
#include <sstream>

#include "core/errors.h"
#include "play/player.h"

namespace zrt::play {

namespace {

/// Folder for the drives of the program's machine, gone when the play is over.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zrt_play_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw FileError(pattern, "can't be made");
    path_ = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace

bool PlayFile(const std::string& name, const DatabaseAddress& database, const PlayOptions& options) {
  try {
    std::ifstream file(name, std::ios::binary);
    if (!file) throw FileError(name, "can't be read");
    std::ostringstream text;
    text << file.rdbuf();
    const auto script = ReadScript(text.str());
    const TemporaryFolder own;
    Player player(database, options.drives.value_or(own.Path()), options.grids);
    player.Run(script);
    return true;
  } catch (const Failure& failure) {
    std::cerr << name << ", " << failure.text << "\n";
  } catch (const Error& error) {
    std::cerr << name << ": " << error.what() << "\n";
  }
  return false;
}

}  // namespace zrt::play
