#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/session.h"

namespace zrt::play {

/// Plays one file on `database`, with the drives below `drives`, or an empty drive of its own that is gone afterwards.
/// False when a line doesn't hold; the line, what was expected and what was there are printed to the standard error
/// then.
bool PlayFile(const std::string& name, const DatabaseAddress& database,
              const std::optional<std::filesystem::path>& drives = {});

}  // namespace zrt::play
