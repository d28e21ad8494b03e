#pragma once

#include <cstdint>
#include <string_view>

#include "core/regional_format.h"
#include "stock/document_kind.h"
#include "ui/controls.h"

// What the picker and the quantity dialog ask, by the document that they pick for.

namespace zrt {

/// What the document or the screen of this FormCode asks.
Asks AsksOf(std::uint8_t form_code);

/// Quantities and prices are typed in units and delivered in thousandths. They pass through a single-precision number:
/// beyond seven digits the last ones are rounded off. Ties go to the even thousandth. What is offered for a quantity is
/// shown by FormatShortest: two decimals would change it. Throws TypeMismatch, OverflowError.
std::int32_t TypedThousandths(const RegionalFormat& format, std::string_view text);

/// Gives the keyboard to `box`, everything in it selected.
void FocusWhole(TextBox& box);

/// Enter in the quantity: goes on to the price or to `ok`, as `asks` says. A text that is no number is selected and
/// nothing else happens.
void LeaveQuantity(const RegionalFormat& format, Asks asks, TextBox& quantity, TextBox& price, Button& ok);

/// Are the fields that are asked for numbers? Else the first that isn't gets the keyboard.
bool FieldsAreNumbers(const RegionalFormat& format, Asks asks, TextBox& quantity, TextBox& price);

}  // namespace zrt
