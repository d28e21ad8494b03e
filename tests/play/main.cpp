#include <unistd.h>

#include <fstream>
#include <iostream>
#include <sstream>

#include "core/errors.h"
#include "play/player.h"

namespace {

constexpr const char* kUsage = "usage: zrt_play --server HOST --database NAME FILE...\n";
constexpr const char* kAccount = "zrt";

/// Folder for the drives of the program's machine, gone when the play is over.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zrt_play_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw zrt::FileError(pattern, "can't be made");
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

bool PlayFile(const std::string& name, const zrt::DatabaseAddress& database) {
  try {
    std::ifstream file(name, std::ios::binary);
    if (!file) throw zrt::FileError(name, "can't be read");
    std::ostringstream text;
    text << file.rdbuf();
    const auto script = zrt::play::ReadScript(text.str());
    const TemporaryFolder drives;
    zrt::play::Player player(database, drives.Path());
    player.Run(script);
    return true;
  } catch (const zrt::play::Failure& failure) {
    std::cerr << name << ", " << failure.text << "\n";
  } catch (const zrt::Error& error) {
    std::cerr << name << ": " << error.what() << "\n";
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  zrt::DatabaseAddress database{"", kAccount, ""};
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if ((argument == "--server" || argument == "--database") && i + 1 < argc) {
      (argument == "--server" ? database.host : database.schema) = argv[++i];
    } else {
      files.push_back(argument);
    }
  }
  if (database.host.empty() || database.schema.empty() || files.empty()) {
    std::cerr << kUsage;
    return 2;
  }
  bool all_hold = true;
  for (const std::string& name : files) all_hold = PlayFile(name, database) && all_hold;
  return all_hold ? 0 : 1;
}
