#include "core/numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

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

std::optional<std::int32_t> WholeNumber(std::string_view text) {
  const std::string trimmed = Trim(text);
  std::int32_t number = 0;
  const char* end = trimmed.data() + trimmed.size();
  const auto [stopped, error] = std::from_chars(trimmed.data(), end, number);
  if (error != std::errc() || stopped != end) return std::nullopt;
  return number;
}

}  // namespace zrt
