#include "reference/pick_rules.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "core/errors.h"
#include "core/numbers.h"
#include "stock/product_picker.h"

namespace zrt {

Asks AsksOf(std::uint8_t form_code) {
  if (form_code == form_code::kMovementReport || form_code == form_code::kRegisterView) return Asks::kNothing;
  const DocumentKind* const kind = FindKind(form_code);
  return kind == nullptr ? Asks::kUnknown : kind->asks;
}

std::int32_t TypedThousandths(const RegionalFormat& format, std::string_view text) {
  const double typed = format.ToNumber(text);
  if (std::abs(typed) > std::numeric_limits<float>::max()) throw OverflowError("too large for a quantity or price");
  // Its shortest decimal, not its binary value: half a thousandth is half a thousandth, and a tie.
  std::array<char, 64> decimal{};  // a float has 39 digits before the mark, and 45 behind it at most after 0.
  const auto [end, error] =
      std::to_chars(decimal.begin(), decimal.end(), static_cast<float>(typed), std::chars_format::fixed);
  return DecimalToInt32({decimal.begin(), end}, scale::kDocument);
}

void FocusWhole(TextBox& box) {
  box.SetFocus();
  box.SelectAll();
}

void LeaveQuantity(const RegionalFormat& format, Asks asks, TextBox& quantity, TextBox& price, Button& ok) {
  if (!format.IsNumeric(quantity.Text())) return FocusWhole(quantity);
  switch (asks) {
    case Asks::kQuantityAndPrice:
    case Asks::kPrice:
      return FocusWhole(price);
    case Asks::kQuantity:
      if (price.Text().empty()) price.Text = "0";
      return ok.SetFocus();
    case Asks::kNothing:
      return ok.SetFocus();
    case Asks::kUnknown:
      return;
  }
}

bool FieldsAreNumbers(const RegionalFormat& format, Asks asks, TextBox& quantity, TextBox& price) {
  const bool no_quantity = asks == Asks::kPrice || asks == Asks::kNothing;
  if (!no_quantity && !format.IsNumeric(quantity.Text())) {
    FocusWhole(quantity);
    return false;
  }
  if (asks != Asks::kNothing && !format.IsNumeric(price.Text())) {
    FocusWhole(price);
    return false;
  }
  return true;
}

}  // namespace zrt
