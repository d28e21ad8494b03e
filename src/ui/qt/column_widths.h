#pragma once

#include <vector>

namespace zrt {

/// A column that is shown.
struct ColumnRoom {
  int width;   ///< pixels that the screen's layout gives it
  int needed;  ///< pixels that its header and the texts in sight need
  bool text;   ///< holds texts, not numbers
};

/// Widths for `room` pixels: what is left over goes first to columns that cut something, the least cut first. Where
/// that is not enough, columns with more than they need give it up, the widest first. The rest goes to the longest
/// texts. No column gets less than it needs for another one's sake.
std::vector<int> FitWidths(const std::vector<ColumnRoom>& columns, int room);

}  // namespace zrt
