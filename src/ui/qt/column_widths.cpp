#include "ui/qt/column_widths.h"

#include <algorithm>
#include <numeric>

namespace zrt {

namespace {

/// Indexes of the columns that `amount` gives something above 0, sorted by it.
template <class Amount>
std::vector<std::size_t> Order(std::size_t count, const Amount& amount) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < count; ++i) {
    if (amount(i) > 0) order.push_back(i);
  }
  std::ranges::stable_sort(order, {}, amount);
  return order;
}

}  // namespace

std::vector<int> FitWidths(const std::vector<ColumnRoom>& columns, int room) {
  std::vector<int> widths;
  for (const ColumnRoom& column : columns) widths.push_back(column.width);
  int left = room - std::accumulate(widths.begin(), widths.end(), 0);
  const auto missing = [&](std::size_t i) { return columns[i].needed - widths[i]; };

  // Slack is taken only for what is missing: a table that cuts nothing keeps its layout.
  int wanted = -left;
  const std::vector<std::size_t> cut = Order(columns.size(), missing);
  for (const std::size_t i : cut) wanted += missing(i);
  const std::vector<std::size_t> slack = Order(columns.size(), [&](std::size_t i) { return -missing(i); });
  int taken = 0;
  for (auto i = slack.rbegin(); i != slack.rend() && taken < wanted; ++i) {
    const int given = std::min(-missing(*i), wanted - taken);
    widths[*i] -= given;
    taken += given;
  }
  left += taken;

  for (const std::size_t i : cut) {
    const int given = std::clamp(left, 0, missing(i));
    widths[i] += given;
    left -= given;
  }
  std::size_t longest = columns.size();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].text && (longest == columns.size() || columns[i].width > columns[longest].width)) longest = i;
  }
  if (longest < columns.size()) {
    widths[longest] += std::max(left, 0);
  } else {
    // No column has a better claim than another.
    for (std::size_t i = 0; i < columns.size() && left > 0; ++i) {
      const int share = left / static_cast<int>(columns.size() - i);
      widths[i] += share;
      left -= share;
    }
  }
  for (const std::size_t i : cut) {
    const int lacking = (columns[i].text ? columns[i].heading : columns[i].needed) - widths[i];
    if (lacking <= 0) continue;
    widths[i] += lacking;
    if (longest == columns.size()) continue;
    widths[longest] -= std::clamp(widths[longest] - columns[longest].width / 2, 0, lacking);
  }
  const int over = std::accumulate(widths.begin(), widths.end(), 0) - room;
  if (over > 0 && longest < columns.size() && widths[longest] - over >= columns[longest].width / 2) {
    widths[longest] -= over;  // rather than scroll sideways for a few pixels
  }
  return widths;
}

}  // namespace zrt
