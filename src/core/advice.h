#pragma once

#include <string_view>

#include "core/errors.h"

namespace zrt {

/// What a failed connection, a schema without tables or a refused right means to the shop, in Russian, with the step of
/// the guide for installing (docs/install.md) that mends it; "" for any other failure. Goes by number and the driver's
/// text.
std::string_view AdviceOn(const DatabaseError& error);

}  // namespace zrt
