#include "reference/pick_rules.h"

#include "core/numbers.h"
#include "stock/product_picker.h"

namespace zrt {

Asks AsksOf(std::uint8_t form_code) {
  switch (form_code) {
    case form_code::kIncomingInvoice:
    case form_code::kOutgoingInvoice:
      return Asks::kQuantityAndPrice;
    case form_code::kWriteOff:
    case form_code::kInventory:
    case form_code::kTransferIn:
    case form_code::kTransferOut:
      return Asks::kQuantity;
    case form_code::kPriceChange:
      return Asks::kPrice;
    default:
      return Asks::kNothing;
  }
}

std::int32_t TypedThousandths(const RegionalFormat& format, std::string_view text) {
  const auto typed = static_cast<float>(format.ToNumber(text));
  return ToInt32(double{typed} * scale::kDocument);
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
