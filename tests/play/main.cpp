#include <iostream>
#include <string>
#include <vector>

#include "play/play_file.h"

namespace {

constexpr const char* kUsage =
    "usage: zrt_play --server HOST --database NAME [--drives FOLDER] [--grids] [--keep-going] FILE...\n";
constexpr const char* kAccount = "zrt";

}  // namespace

int main(int argc, char** argv) {
  zrt::DatabaseAddress database{"", kAccount, ""};
  zrt::play::PlayOptions options;
  options.output.dump = &std::cout;
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if ((argument == "--server" || argument == "--database") && i + 1 < argc) {
      (argument == "--server" ? database.host : database.schema) = argv[++i];
    } else if (argument == "--drives" && i + 1 < argc) {
      options.drives = argv[++i];
    } else if (argument == "--grids") {
      options.output.grids = &std::cout;
    } else if (argument == "--keep-going") {
      options.output.differences = &std::cerr;
    } else if (argument.starts_with("-")) {
      std::cerr << "no such option: " << argument << "\n" << kUsage;
      return 2;
    } else {
      files.push_back(argument);
    }
  }
  if (database.host.empty() || database.schema.empty() || files.empty()) {
    std::cerr << kUsage;
    return 2;
  }
  bool all_hold = true;
  for (const std::string& name : files) all_hold = zrt::play::PlayFile(name, database, options) && all_hold;
  return all_hold ? 0 : 1;
}
