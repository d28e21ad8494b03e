#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/shift.h"

// Every text that the statements of the sales tab and the Lite tab are joined from, in one place. A statement is a
// base, a filter piece, a period piece and a tail; the aliases are the headers of the grids.

namespace zrt::sales {

extern const std::string_view kSales;        ///< PROD: DataGrid3
extern const std::string_view kDeletions;    ///< SPION: DataGrid11
extern const std::string_view kOrderDetail;  ///< KASSA with PROD: DataGrid2
extern const std::string_view kOrders;       ///< KASSA with PROD: DataGrid4
extern const std::string_view kLite;         ///< KASSA: DataGrid7

// Totals of sold lines: a sum in thousandths of money and, where there is a second column, a quantity in thousandths.
extern const std::string_view kTotal;
extern const std::string_view kTotalWithQuantity;
extern const std::string_view kTotalOfCard;  ///< without the discount: what the holder would have paid
extern const std::string_view kLiteTotal;    ///< sum of cash operations, money as it is; a condition follows
/// The first line ever sold dates the file of the whole period.
extern const std::string_view kFirstSold;

extern const std::string_view kSalesTail;
/// Groups by the order's number alone, so orders of two terminals with one number fall together in the grid: the
/// operator tells them apart by opening the order.
extern const std::string_view kOrderTail;
extern const std::string_view kLiteTail;

/// The fields of the sales tab that narrow by their text.
enum class Field { kProduct, kOrder, kCashier, kCard, kTerminal };
inline constexpr std::array kFields = {Field::kProduct, Field::kOrder, Field::kCashier, Field::kCard, Field::kTerminal};

/// What one filter of the sales tab puts into the statements. {value} in a piece is the field's text. An empty piece
/// leaves its grids as they are, but for `sold`, which every filter has.
struct Filter {
  std::string_view word;            ///< its name in the names of files
  std::optional<Field> field = {};  ///< whose text it narrows by; the filter clears the others
  std::string_view sold = {};       ///< PROD: DataGrid3 and the total
  std::string_view deleted = {};    ///< SPION: DataGrid11
  std::string_view ordered = {};    ///< KASSA: DataGrid2 and DataGrid4
  std::string_view total = {};
  /// Title of the saved sold lines. {value}; {date} and {excise} as the screen says; {file} its own name; {number},
  /// {moment}, {terminal} of the current line; {first} and {now}, the moments of the first sale and of the saving.
  std::string_view title = {};
};

extern const Filter kOfShift;      ///< CmdDat
extern const Filter kWholePeriod;  ///< CmdAll
extern const Filter kOneOrder;     ///< CmdFilCheck
extern const Filter kByTerminal;
extern const Filter kByCashier;
extern const Filter kByProduct;
extern const Filter kByCard;
extern const Filter kNotClosed;

/// The fiscal registers that the operator can tick.
struct FiscalFilter {
  Filter filter;
  std::string_view name;  ///< in LblInf
};
/// By the boxes ticked: 1 the first register, 2 the second one, 3 both; nothing stands at 0.
extern const std::array<FiscalFilter, 4> kFiscal;

/// What one filter of the Lite tab puts into the statements. {value} is its field's text.
struct LiteFilter {
  std::string_view condition;
  std::string_view suffix;  ///< in LblInfLite, after the date
};

extern const LiteFilter kLiteByTerminal;
extern const LiteFilter kLiteByCashier;
extern const LiteFilter kLiteByCard;
extern const LiteFilter kLiteFiscal;

/// A piece with the field's text in the place of {value}.
std::string Filled(std::string_view piece, const std::string& value);

/// "DATETIME > 'F' AND DATETIME < 'U'" over `column`, without a word before it; both bounds lie outside.
std::string Within(std::string_view column, const Shift& shift);

/// Narrows SPION to a day, whose stamps are texts: "SPION.DATETIME LIKE 'D%'", D the day as the screen shows it.
std::string DeletedOn(std::string_view day);

/// Narrows PROD by the excise class that Combo2 stands for (1 alcohol, 2 cigarettes, 3 no excise), "" for all: "N1=1".
std::string ExciseCondition(int excise_filter);

}  // namespace zrt::sales
