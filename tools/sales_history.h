#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "catalogue.h"
#include "core/dates.h"
#include "random.h"
#include "sale.h"
#include "script_writer.h"
#include "shop.h"

namespace zrt::tools {

/// Hour of the shift change that shows what was sold right before `now`. The program opens on the calendar day, and
/// before the shift changes that day's shift is still to come: a shop that is made at night counts its days from
/// midnight.
int ShiftHourAt(const DateTime& now);

/// What the terminals have written: sold lines, cash operations, annulled lines, excise marks and open receipts of
/// shifts up to `now`. All but the last shift has been copied to a reserve server.
class SalesHistory {
 public:
  /// `upgraded`: the tables have the columns that the schema's upgrades add. `cards` take what is sold on them.
  SalesHistory(ScriptWriter& script, Random& random, const std::vector<Product>& catalogue, std::vector<Card>& cards,
               bool upgraded);

  /// Writes exactly `lines` rows of PROD and everything that goes with them, over as many shifts as such a shop needs.
  void Write(int lines, const DateTime& now);

  /// Quantity sold since the last change of shift (ShiftHourAt) by product code, thousandths.
  const std::map<int, std::int64_t>& CurrentSales() const { return current_sales_; }

 private:
  struct Order;

  std::vector<int> LinesByDay(int lines) const;
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

  ScriptWriter& script_;
  Random& random_;
  std::vector<Card>& cards_;
  bool upgraded_;
  int days_ = 0;
  std::vector<Date> dates_;  ///< by day of the history, and the two after its end
  std::vector<const Product*> dishes_, goods_;
  std::vector<int> waiters_;
  std::map<int, int> next_number_;  ///< by terminal
  int current_from_ = 0;            ///< second of the last day since which CurrentSales counts
  int end_ = 0;                     ///< second of the last day up to which there are sales
  std::map<int, std::int64_t> current_sales_;
};

}  // namespace zrt::tools
