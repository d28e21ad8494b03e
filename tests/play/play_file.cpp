#include "play/play_file.h"

#include <fstream>
#include <iostream>
#include <sstream>

#include "core/errors.h"
#include "play/player.h"
#include "support/temporary_folder.h"

namespace zrt::play {

bool PlayFile(const std::string& name, const DatabaseAddress& database, const PlayOptions& options) {
  try {
    std::ifstream file(name, std::ios::binary);
    if (!file) throw FileError(name, "can't be read");
    std::ostringstream text;
    text << file.rdbuf();
    const auto script = ReadScript(text.str());
    const test::TemporaryFolder own;
    Player player(database, options.drives.value_or(own.Path()), options.output);
    player.Run(script);
    return player.Differences() == 0;
  } catch (const Failure& failure) {
    std::cerr << name << ", " << failure.text << "\n";
  } catch (const Error& error) {
    std::cerr << name << ": " << error.what() << "\n";
  }
  return false;
}

}  // namespace zrt::play
