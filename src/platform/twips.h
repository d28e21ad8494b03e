#pragma once

namespace zrt {

/// Sizes of windows, columns and print are said in twips, so that they come out alike on every screen and paper.
inline constexpr int kTwipsPerInch = 1440;

}  // namespace zrt
