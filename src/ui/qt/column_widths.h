#pragma once

#include <vector>

namespace zrt {

/// A column that is shown.
struct ColumnRoom {
  int width;        ///< pixels that the screen's layout gives it
  int needed;       ///< pixels that its header and the texts in sight need
  bool text;        ///< holds words, not numbers or dates
  int heading = 0;  ///< pixels that its header alone needs
};

/// Widths for `room` pixels: what is left over goes first to columns that cut something, the least cut first. Where
/// that is not enough, or where the layout is wider than the room, columns with more than they need give it up, the
/// most wasteful first. The rest goes to the longest texts, or to all columns where none holds words. Headers and
/// numbers and dates, which cut read as other ones, always get what they need: from the longest texts, which read well
/// enough by half, and then beyond the room.
std::vector<int> FitWidths(const std::vector<ColumnRoom>& columns, int room);

}  // namespace zrt
