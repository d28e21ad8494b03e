#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/session.h"
#include "play/player.h"

namespace zrt::play {

/// What who plays a file wants of it beyond its lines.
struct PlayOptions {
  std::optional<std::filesystem::path> drives;  ///< without it an empty drive that is gone afterwards
  PlayOutput output;                            ///< what is printed, and where
};

/// Plays one file on `database`. False when a line doesn't hold; the line, what was expected and what was there are
/// printed to the standard error then.
bool PlayFile(const std::string& name, const DatabaseAddress& database, const PlayOptions& options = {});

}  // namespace zrt::play
