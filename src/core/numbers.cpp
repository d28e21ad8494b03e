#include "core/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "core/errors.h"
#include "core/text.h"

namespace zrt {
namespace {

template <typename Integer>
Integer Convert(double value) {
  const double rounded = RoundHalfEven(value);
  const bool fits = rounded >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
                    rounded <= static_cast<double>(std::numeric_limits<Integer>::max());
  if (!fits) throw OverflowError("number out of range: " + std::to_string(value));  // NaN does not fit either
  return static_cast<Integer>(rounded);
}

}  // namespace

double RoundHalfEven(double value) {
  const double below = std::floor(value);
  const double excess = value - below;
  if (excess < 0.5) return below;
  if (excess > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::uint8_t ToByte(double value) {
  return Convert<std::uint8_t>(value);
}
std::int16_t ToInt16(double value) {
  return Convert<std::int16_t>(value);
}
std::int32_t ToInt32(double value) {
  return Convert<std::int32_t>(value);
}

std::int32_t DecimalToInt32(std::string_view decimal, int factor) {
  const std::string_view text = decimal;
  const bool negative = decimal.starts_with('-');
  if (negative) decimal.remove_prefix(1);
  const std::size_t mark = std::min(decimal.find('.'), decimal.size());
  std::string number(decimal.substr(0, mark));
  std::string rest(decimal.substr(std::min(mark + 1, decimal.size())));
  if ((number + rest).empty() || (number + rest).find_first_not_of("0123456789") != std::string::npos) {
    throw TypeMismatch("not a decimal number: \"" + std::string(text) + "\"");
  }
  // The mark goes to the right; what is behind it then decides.
  for (; factor > 1; factor /= 10) {
    number += rest.empty() ? '0' : rest.front();
    rest.erase(0, 1);
  }
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error != std::errc() && !number.empty()) throw OverflowError("number out of range: " + std::string(text));
  const bool half = rest.starts_with('5') && rest.find_first_not_of('0', 1) == std::string::npos;
  if (half ? value % 2 != 0 : !rest.empty() && rest.front() >= '5') ++value;
  if (negative) value = -value;
  if (!std::in_range<std::int32_t>(value)) throw OverflowError("number out of range: " + std::string(text));
  return static_cast<std::int32_t>(value);
}

std::optional<std::int32_t> WholeNumber(std::string_view text) {
  const std::string trimmed = Trim(text);
  std::int32_t number = 0;
  const char* end = trimmed.data() + trimmed.size();
  const auto [stopped, error] = std::from_chars(trimmed.data(), end, number);
  if (error != std::errc() || stopped != end) return std::nullopt;
  return number;
}

}  // namespace zrt
