#pragma once

#include <ostream>
#include <string>

#include "core/session.h"

namespace zrt::play {

/// What who plays wants beyond the lines; what isn't set isn't said.
struct PlayOptions {
  std::ostream* dump = nullptr;         ///< what `dump` prints
  std::ostream* differences = nullptr;  ///< the failures of lines; the play goes on then
};

/// Why a play stopped. Not a std::exception, so that no handler of the program takes it for one of its own failures.
struct Failure {
  std::string text;
};

/// Plays the text of a play (README.md) on `database`. Returns how many lines didn't hold, where the options take
/// differences; else throws Failure at the first, which names the line, what was expected and what was there. Throws
/// Error for a text that is no play.
int Play(const std::string& text, const DatabaseAddress& database, const PlayOptions& options = {});

/// Plays a file. False when a line doesn't hold, which is printed to the standard error.
bool PlayFile(const std::string& name, const DatabaseAddress& database, const PlayOptions& options = {});

}  // namespace zrt::play
