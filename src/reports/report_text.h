#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/recordset.h"
#include "core/regional_format.h"
#include "reports/figures.h"
#include "ui/controls.h"
#include "ui/desktop.h"

namespace zrt {

/// Characters of a line of the text reports, and what the wide form of the goods report adds.
inline constexpr std::size_t kReportWidth = 42;
inline constexpr std::size_t kWideColumns = 26;

/// Puts blanks before `text` while counting from its length up to `last` inclusive: the result is `last`+1 characters
/// wide. A longer text stays as it is and pushes its line out of shape.
std::string PadLeftTo(std::string_view text, std::size_t last);

/// Puts blanks behind `text` until it is `width` characters wide; a longer text stays as it is.
std::string PadRightTo(std::string_view text, std::size_t width);

/// An amount in the text reports: two decimals in the regional format, grouping included.
std::string AmountText(const RegionalFormat& format, double value);

/// The same of a sum that the server returned in parts of which `divisor` make one; "" where nothing was summed.
std::string AmountText(const RegionalFormat& format, const Cell& sum, double divisor);

/// A sum in its column of ten characters; "" where nothing was summed: the row stands without the amount then.
std::string AmountColumn(const RegionalFormat& format, std::optional<double> sum);

/// Takings after discounts and before them, ending at columns 10 and 21 of 21.
std::string PairColumns(const RegionalFormat& format, const Takings& takings);

/// A count in its column of five characters.
std::string CountColumn(int count);

class ReportLines;

/// Writes `label` and the takings behind it as a line of `lines`; nothing where nothing was sold.
void PairIfAny(ReportLines& lines, const RegionalFormat& format, std::string_view label,
               const std::optional<Takings>& takings);

/// Writes a report line by line into a list that the operator sees growing.
class ReportLines {
 public:
  /// `list` must outlive the report; `width` is that of its rules.
  explicit ReportLines(ListBox& list, std::size_t width = kReportWidth)
      : list_(list), width_(width), stop_(list.Owner().TheDesktop()) {}

  /// Adds a line and draws the list. Throws Stopped where the operator wants no more of the report, which then says so
  /// itself: what is on the screen or on paper must not pass for the whole.
  void Line(std::string text);
  void Empty() { Line(""); }
  void DoubleRule() { Line(std::string(width_, '=')); }
  void SingleRule() { Line(std::string(width_, '-')); }

 private:
  ListBox& list_;
  std::size_t width_;
  StopOffer stop_;
};

}  // namespace zrt
