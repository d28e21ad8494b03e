#pragma once

#include <string_view>

namespace zrt {

/// Text of forms/NAME.ui as it was when the program was built; empty when there is no such file. Made by the build.
std::string_view EmbeddedForm(std::string_view name);

}  // namespace zrt
