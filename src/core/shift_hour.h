#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/session.h"

namespace zrt {

/// The hours at which a shift may change, as the lists of all screens offer them: "0" to "23".
std::vector<std::string> ShiftHours();

/// The hour that the shop has stored, as its text; nothing when none was chosen yet or the settings lack the row (a
/// base of the oldest version). Throws DatabaseError.
std::optional<std::string> ReadShiftHour(Session& session);

/// Stores `hour`, a text of `ShiftHours`, for the whole shop at once. Throws DatabaseError.
void StoreShiftHour(Session& session, std::string_view hour);

}  // namespace zrt
