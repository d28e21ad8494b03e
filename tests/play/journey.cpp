#include <iostream>
#include <map>
#include <string>

#include "core/errors.h"
#include "play/play_file.h"
#include "support/test_database.h"

// zrt_journey STAGE FILE: plays one journey of the shop on a fresh schema of the tests' private server.

int main(int argc, char** argv) {
  using zrt::test::Stage;
  const std::map<std::string, Stage> stages = {{"version0", Stage::kVersion0}, {"first_run", Stage::kFirstRun},
                                               {"plain", Stage::kPlain},       {"register", Stage::kRegister},
                                               {"lite", Stage::kLite},         {"restricted", Stage::kRestricted}};
  if (argc != 3 || stages.count(argv[1]) == 0) {
    std::cerr << "usage: zrt_journey version0|first_run|plain|register|lite|restricted FILE\n";
    return 2;
  }
  try {
    const zrt::test::TestDatabase database(stages.at(argv[1]));
    return zrt::play::PlayFile(argv[2], database.Address()) ? 0 : 1;
  } catch (const zrt::Error& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
