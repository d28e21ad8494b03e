#pragma once

#include <string>

#include "core/session.h"

namespace zrt::play {

/// Plays one file on `database`, with an empty drive of its own. False when a line doesn't hold; the line, what was
/// expected and what was there are printed to the standard error then.
bool PlayFile(const std::string& name, const DatabaseAddress& database);

}  // namespace zrt::play
