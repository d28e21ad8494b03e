#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "core/errors.h"
#include "play/player.h"
#include "support/test_database.h"

namespace {

using zrt::test::Stage;

constexpr const char* kUsage =
    "usage: zrt_play --server HOST --database NAME [--keep-going] FILE...\n"
    "       zrt_play --stage version0|first_run|plain|register|lite|restricted FILE...\n";
const std::map<std::string, Stage> kStages = {{"version0", Stage::kVersion0}, {"first_run", Stage::kFirstRun},
                                              {"plain", Stage::kPlain},       {"register", Stage::kRegister},
                                              {"lite", Stage::kLite},         {"restricted", Stage::kRestricted}};

}  // namespace

int main(int argc, char** argv) {
  zrt::DatabaseAddress database{"", "zrt", ""};
  zrt::play::PlayOptions options{.dump = &std::cout};
  std::string stage;
  std::vector<std::string> files;
  const std::map<std::string, std::string*> values = {
      {"--server", &database.host}, {"--database", &database.schema}, {"--stage", &stage}};
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (const auto value = values.find(argument); value != values.end() && i + 1 < argc) {
      *value->second = argv[++i];
    } else if (argument == "--keep-going") {
      options.differences = &std::cerr;
    } else if (argument.starts_with("-")) {
      std::cerr << "no such option: " << argument << "\n" << kUsage;
      return 2;
    } else {
      files.push_back(argument);
    }
  }
  const bool complete = stage.empty() ? !database.host.empty() && !database.schema.empty() : kStages.contains(stage);
  if (!complete || files.empty()) {
    std::cerr << kUsage;
    return 2;
  }
  bool all_hold = true;
  for (const std::string& name : files) {
    if (stage.empty()) {
      all_hold = zrt::play::PlayFile(name, database, options) && all_hold;
    } else {
      const zrt::test::TestDatabase fresh(kStages.at(stage));
      all_hold = zrt::play::PlayFile(name, fresh.Address(), options) && all_hold;
    }
  }
  return all_hold ? 0 : 1;
}
