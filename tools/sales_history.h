#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "catalogue.h"
#include "core/dates.h"
#include "random.h"
#include "sale.h"
#include "script_writer.h"
#include "shop.h"

namespace zrt::tools {

/// Length and size of the history.
struct HistoryPlan {
  DateTime now;        ///< the current shift is the one of this day
  int days = 92;       ///< shifts, the current one included
  int lines = 24'000;  ///< sold lines (rows of PROD) of all shifts together
  bool upgraded = true;
};

/// What the terminals have written: sold lines, cash operations, annulled lines, excise marks and open receipts. All
/// but the current shift has been copied to a reserve server.
class SalesHistory {
 public:
  SalesHistory(const HistoryPlan& plan, const std::vector<Product>& catalogue, std::vector<Card>& cards,
               ScriptWriter& script, Random& random);

  /// Writes exactly `plan.lines` rows of PROD and everything that goes with them. Accumulates the sums of the cards.
  void Write();

  /// Quantity sold in the current shift by product code, thousandths.
  const std::map<int, std::int64_t>& CurrentSales() const { return current_sales_; }

 private:
  struct Order;

  void WriteShift(int day, int lines);
  void WriteOrder(int day, int start, int lines);
  void WriteShopReceipt(Order& order, int lines);
  void WriteTableOrder(Order& order, int lines);
  void AddLine(Order& order, const Product& product, int moment);
  void AddSurcharge(Order& order);
  void GiveDiscount(Order& order);
  void CloseOrder(Order& order);
  void PutCash(const Order& order, int closed, const std::string& text);
  void Annul(const Order& order, int moment);
  void WriteDrawer(int day);
  void WriteOpenReceipts();

  const Product& PickProduct(bool shop);
  int PickStart();
  std::int64_t PriceOn(const Product& product, int day) const;
  DateTime Moment(int day, int second) const;
  std::string SqlMoment(int day, int second) const;
  std::string ScreenMoment(int day, int second) const;
  static std::string TimeText(int second);

  HistoryPlan plan_;
  const std::vector<Product>& catalogue_;
  std::vector<Card>& cards_;
  ScriptWriter& script_;
  Random& random_;
  std::vector<Date> dates_;  ///< by day of the history, and the two after its end
  std::vector<const Product*> dishes_, goods_;
  std::vector<int> waiters_;
  std::map<int, int> next_number_;  ///< by terminal
  int end_of_current_ = 0;          ///< second of the last day up to which there are sales
  std::map<int, std::int64_t> current_sales_;
};

}  // namespace zrt::tools
