#pragma once

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
extern const std::string_view kTotal;        ///< sum of sold lines, thousandths of money
extern const std::string_view kLiteTotal;    ///< sum of cash operations, money as it is; a condition follows

extern const std::string_view kSalesTail;
/// Groups by the order's number alone, so orders of two terminals with one number fall together in the grid: the
/// operator tells them apart by opening the order.
extern const std::string_view kOrderTail;
extern const std::string_view kLiteTail;

/// "DATETIME > 'F' AND DATETIME < 'U'" over `column`, without a word before it; both bounds lie outside.
std::string Within(std::string_view column, const Shift& shift);

/// Narrows PROD by the excise class that Combo2 stands for (1 alcohol, 2 cigarettes, 3 no excise), "" for all: "N1=1".
std::string ExciseCondition(int excise_filter);

}  // namespace zrt::sales
