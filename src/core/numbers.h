#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Every stored number that the program scales, and the conversions between the stored and the shown form. Money and
// quantities are integers in the scale of their column; the scale differs from table to table.

namespace zrt {

namespace scale {
inline constexpr int kTovarPrise = 100;     ///< TOVAR.PRISE: hundredths of money
inline constexpr int kTovarStock = 1000;    ///< TOVAR.OST, TOVAR.KOL: thousandths of a unit
inline constexpr int kTovarParts = 1000;    ///< TOVAR.N5: number of parts times 1000
inline constexpr int kTovarPortion = 1000;  ///< TOVAR.N7: millilitres, shown in panels as litres
inline constexpr int kProd = 1000;          ///< PROD.KOL, PRISE, SKID, SUM2: thousandths
inline constexpr int kKassa = 1;            ///< KASSA.SUM1, SUM2, SKID: money as it is
inline constexpr int kKassaPayment = 100;   ///< KASSA.N2: hundredths of money
inline constexpr int kDocument = 1000;      ///< JOURNAL, REGISTR, DOCUMENT, DOCINVENT, DOCPRICE: thousandths
inline constexpr int kPriceToDocument = kDocument / kTovarPrise;  ///< TOVAR.PRISE times this is a document's price
}  // namespace scale

/// Nearest integer, ties to the even one: 2.5 -> 2, 3.5 -> 4, -2.5 -> -2. The result is still a double.
double RoundHalfEven(double value);

/// Rounds as RoundHalfEven and converts. Throw OverflowError when the rounded value is out of the type's range (a byte
/// is 0 to 255).
std::uint8_t ToByte(double value);
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

/// A decimal text ("-12.345": a dot, no exponent, nothing around it) times `factor`, a power of ten, rounded as
/// RoundHalfEven in decimal arithmetic: "1.015" and 100 give 102, where the double nearest to 1.015 would give 101.
/// Throws TypeMismatch for any other text, OverflowError.
std::int32_t DecimalToInt32(std::string_view decimal, int factor);

/// The whole number that a text is, with blanks around and a minus at most; nothing for any other text and for one that
/// 32 bits don't hold.
std::optional<std::int32_t> WholeNumber(std::string_view text);

}  // namespace zrt
