#pragma once

#include <string_view>

#include "core/errors.h"

namespace zrt {

/// What a failed connection or a schema without tables means to the shop, in Russian, with the step of the guide for
/// installing (docs/install.md) that mends it; "" for any other failure. Goes by state, number and the driver's text.
std::string_view AdviceOn(const DatabaseError& error);

}  // namespace zrt
