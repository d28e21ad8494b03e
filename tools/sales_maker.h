#pragma once

#include <cstdint>
#include <vector>

#include "core/dates.h"
#include "random.h"
#include "sale.h"
#include "script_writer.h"
#include "shop.h"

namespace zrt::tools {

/// Sells through months of shifts: orders open and closed, discounts by card and by hand, surcharges, fiscal and other
/// receipts, annulled lines, nights over midnight. The last shift is the one that `now` falls into; nothing is sold
/// after `now`.
class SalesMaker {
 public:
  /// `upgraded`: the tables have the columns that the schema's upgrades add. `cards` take what is sold on them.
  SalesMaker(ScriptWriter& script, Random& random, const std::vector<Product>& catalogue, std::vector<Card>& cards,
             bool upgraded);

  /// About `lines` sold lines.
  void Sell(int lines, const DateTime& now);

  /// Quantity sold in the last shift, thousandths, at the product's index in the catalogue.
  const std::vector<std::int64_t>& SoldThisShift() const { return sold_; }

 private:
  void SellShift(const Date& day, int lines, const DateTime& now, bool last);
  /// `minute` counts from the midnight that the shift's day begins with.
  void SellOrder(const Date& day, int minute, const DateTime& now, bool last);
  void Annul(const SoldLine& line, const Date& day, int minute);
  void OpenReceipts();
  void Write(const SoldLine& line);
  void Write(const CashRow& row);

  ScriptWriter& script_;
  Random& random_;
  const std::vector<Product>& catalogue_;
  std::vector<Card>& cards_;
  bool upgraded_;
  std::vector<int> waiters_;
  std::vector<std::size_t> cafe_;  ///< indexes of what the café sells, and the shop
  std::vector<std::size_t> shop_;
  std::vector<int> next_order_;  ///< by terminal
  std::vector<std::int64_t> sold_;
};

}  // namespace zrt::tools
