#include "core/regional_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "core/errors.h"
#include "core/numbers.h"

namespace zrt {
namespace {

/// Digits of a number before and after the mark, without its sign.
struct Digits {
  std::string whole;
  std::string fraction;
};

/// The value's 15 significant digits rounded to `decimals`, halves away from zero. Fifteen digits are what a double
/// keeps of a decimal number: 1.005 rounds to 1.01 although its binary form lies a little below.
Digits RoundDigits(double value, int decimals) {
  // "d.dddddddddddddde+xx" -> the digits and the position of the mark behind them
  const std::string scientific = fmt::format("{:.14e}", std::fabs(value));
  std::string digits = scientific.substr(0, 1) + scientific.substr(2, 14);
  int mark = std::atoi(scientific.c_str() + scientific.find('e') + 1) + 1;

  const int keep = mark + decimals;  // digits that stay; may be none, or more than there are
  if (keep < 0) return {"0", std::string(static_cast<std::size_t>(decimals), '0')};
  const auto kept = static_cast<std::size_t>(keep);
  if (kept < digits.size()) {
    const bool up = digits[kept] >= '5';
    digits.resize(kept);
    if (up) {
      std::size_t i = kept;
      while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
      if (i > 0) {
        ++digits[i - 1];
      } else {
        digits.insert(digits.begin(), '1');
        ++mark;
      }
    }
  } else {
    digits.append(kept - digits.size(), '0');
  }
  if (mark <= 0) {
    digits.insert(0, static_cast<std::size_t>(1 - mark), '0');
    mark = 1;
  }
  return {digits.substr(0, static_cast<std::size_t>(mark)), digits.substr(static_cast<std::size_t>(mark))};
}

/// A sign only where a digit other than 0 is left to carry it.
bool ShowsMinus(double value, const Digits& digits) {
  return value < 0 && (digits.whole + digits.fraction).find_first_not_of('0') != std::string::npos;
}

std::string Join(double value, const Digits& digits, const std::string& whole, char decimal) {
  std::string text = ShowsMinus(value, digits) ? "-" : "";
  text += whole;
  if (!digits.fraction.empty()) text += decimal + digits.fraction;
  return text;
}

/// Length of the grouping sign at the start of `text`: the no-break space that the screens show, or a typed blank.
std::size_t GroupSignLength(std::string_view text, std::string_view group) {
  if (text.starts_with(' ')) return 1;
  return !group.empty() && text.starts_with(group) ? group.size() : 0;
}

/// The number with a dot and without grouping; nothing if the text is none.
std::optional<std::string> Plain(const RegionalFormat& format, std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  std::string plain;
  if (text.starts_with('-') || text.starts_with('+')) {
    if (text.front() == '-') plain += '-';
    text.remove_prefix(1);
  }
  bool digits = false;
  bool mark = false;
  while (!text.empty()) {
    const char c = text.front();
    std::size_t taken = 1;
    if (c >= '0' && c <= '9') {
      plain += c;
      digits = true;
    } else if (c == format.decimal && !mark) {
      plain += '.';
      mark = true;
    } else if (digits && !mark && GroupSignLength(text, format.group) > 0) {
      taken = GroupSignLength(text, format.group);
    } else {
      return std::nullopt;
    }
    text.remove_prefix(taken);
  }
  return digits ? std::optional(plain) : std::nullopt;
}

}  // namespace

std::string RegionalFormat::FormatNumber(double value, int decimals) const {
  const Digits digits = RoundDigits(value, decimals);
  std::string grouped;
  for (std::size_t i = 0; i < digits.whole.size(); ++i) {
    if (i > 0 && (digits.whole.size() - i) % 3 == 0) grouped += group;
    grouped += digits.whole[i];
  }
  return Join(value, digits, grouped, decimal);
}

std::string RegionalFormat::FormatFixed(double value, std::string_view pattern) const {
  if (pattern.ends_with('%')) return FormatFixed(value * 100, pattern.substr(0, pattern.size() - 1)) + "%";
  const std::size_t mark = pattern.find('.');
  const std::size_t decimals = mark == std::string_view::npos ? 0 : pattern.size() - mark - 1;
  const Digits digits = RoundDigits(value, static_cast<int>(decimals));
  return Join(value, digits, digits.whole, decimal);
}

std::string RegionalFormat::FormatShortest(double value) const {
  char buffer[400];  // the longest double without an exponent has 309 digits before, the smallest 324 after the mark
  const std::to_chars_result end = std::to_chars(std::begin(buffer), std::end(buffer), value, std::chars_format::fixed);
  std::string text(buffer, end.ptr);
  std::replace(text.begin(), text.end(), '.', decimal);
  return text == "-0" ? "0" : text;
}

std::optional<double> RegionalFormat::ParseNumber(std::string_view text) const {
  const std::optional<std::string> plain = Plain(*this, text);
  if (!plain) return std::nullopt;
  double value = 0;
  const std::from_chars_result end = std::from_chars(plain->data(), plain->data() + plain->size(), value);
  return end.ec == std::errc() ? std::optional(value) : std::nullopt;
}

double RegionalFormat::ToNumber(std::string_view text) const {
  const std::optional<double> value = ParseNumber(text);
  if (!value) throw TypeMismatch("not a number: \"" + std::string(text) + "\"");
  return *value;
}

std::int32_t RegionalFormat::ToScaled(std::string_view text, int factor) const {
  const std::optional<std::string> plain = Plain(*this, text);
  if (!plain) throw TypeMismatch("not a number: \"" + std::string(text) + "\"");
  return DecimalToInt32(*plain, factor);
}

std::string RegionalFormat::DateText(const Date& date) const {
  return fmt::format("{:02}.{:02}.{:04}", date.day, date.month, date.year);
}

std::string RegionalFormat::DateTimeText(const DateTime& moment) const {
  std::string date = DateText(moment.date);
  if (moment.hour == 0 && moment.minute == 0 && moment.second == 0) return date;
  return fmt::format("{} {:02}:{:02}:{:02}", date, moment.hour, moment.minute, moment.second);
}

}  // namespace zrt
