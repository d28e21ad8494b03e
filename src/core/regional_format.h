#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/dates.h"

namespace zrt {

/// How numbers and dates look on the screen and how typed ones are read. A value, handed in by the platform; the
/// default is the Russian format that the program is used with, whatever the machine's own locale says.
struct RegionalFormat {
  char decimal = ',';
  std::string group = "\u00A0";  ///< stands between groups of three digits in FormatNumber

  /// `value` with exactly `decimals` digits after the mark, grouped: 1234567.5, 2 -> "1 234 567,50".
  /// Halves round away from zero, as the platform's own number formatting does.
  std::string FormatNumber(double value, int decimals) const;

  /// A grid's column format: "0.00" or "0.000" give that many decimals, not grouped; "0.0%" shows 0,25 as "25,0%".
  std::string FormatFixed(double value, std::string_view pattern) const;

  /// The shortest text that reads back as `value`, with the decimal mark and no exponent: 1.5 -> "1,5", 2 -> "2".
  std::string FormatShortest(double value) const;

  /// Is the text a number as typed by the operator? Blanks around, a sign and grouping are accepted; "1,5" is a number,
  /// "1.5", "", "1e" and "12a" are none.
  bool IsNumeric(std::string_view text) const { return ParseNumber(text).has_value(); }

  /// The number that the text stands for, or nothing if it is none.
  std::optional<double> ParseNumber(std::string_view text) const;

  /// The number that the text stands for; throws TypeMismatch if it is none.
  double ToNumber(std::string_view text) const;

  /// The number that the text stands for times `factor`, a power of ten, in decimal arithmetic, ties to even: what is
  /// typed as 1,0015 are 1002 thousandths. Throws TypeMismatch, OverflowError.
  std::int32_t ToScaled(std::string_view text, int factor) const;

  /// dd.mm.yyyy
  std::string DateText(const Date& date) const;

  /// dd.mm.yyyy hh:mm:ss; at midnight exactly dd.mm.yyyy alone, as the system prints such a moment.
  std::string DateTimeText(const DateTime& moment) const;
};

}  // namespace zrt
