#include "sales_history.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <string>

namespace zrt::tools {
namespace {

constexpr int kMinute = 60;
constexpr int kHour = 3600;
constexpr int kDay = 24 * kHour;

/// Terminals 1 and 2 serve the tables, 3 stands at the bar, 4 is the till of the shop.
constexpr int kTableTerminals = 3;
constexpr int kShopTerminal = 4;
constexpr int kTables = 24;

/// Each terminal counts its own orders and has been in use for a different time.
constexpr int kNumbersPerTerminal = 200'000;

/// Sold lines of an ordinary day; the shop has kept them for three years at the most.
constexpr int kLinesADay = 400;
constexpr int kMostDays = 1100;

/// How many orders begin in an hour of the shift; the last guests come before three in the morning.
constexpr std::array kOrdersByHour = {2, 4, 4, 5, 9, 9, 6, 4, 4, 5, 8, 10, 10, 8, 7, 6, 6, 5, 4};
constexpr int kHoursOpen = static_cast<int>(kOrdersByHour.size());
/// Monday to Sunday.
constexpr std::array kOrdersByWeekDay = {80, 80, 90, 100, 150, 170, 110};

/// The prices went up this many days ago.
constexpr int kPriceRiseDaysAgo = 45;

constexpr std::array kHandPercents = {5, 10, 10, 20};
constexpr int kSurchargePercent = 10;

}  // namespace

struct SalesHistory::Order {
  int day = 0;
  int opened = 0;  ///< second of the day; a night's order may lie past its end
  int closed = 0;
  bool is_closed = true;
  CashRow row;
  Card* card = nullptr;
  std::vector<SoldLine> lines;
  std::vector<const Product*> products;  ///< of the lines; nullptr for a surcharge
  std::vector<int> moments;              ///< of the lines, seconds of the day
};

int ShiftHourAt(const DateTime& now) {
  return now.hour < kShiftHour ? 0 : kShiftHour;
}

SalesHistory::SalesHistory(ScriptWriter& script, Random& random, const std::vector<Product>& catalogue,
                           std::vector<Card>& cards, bool upgraded)
    : script_(script), random_(random), cards_(cards), upgraded_(upgraded), waiters_(WaiterCodes()) {
  for (const Product& product : catalogue) (product.group == Group::kShop ? goods_ : dishes_).push_back(&product);
  for (int terminal = 1; terminal <= kShopTerminal; ++terminal) {
    next_number_[terminal] = (terminal - 1) * kNumbersPerTerminal + 1;
  }
}

void SalesHistory::Write(int lines, const DateTime& now) {
  days_ = std::clamp(lines / kLinesADay, 1, kMostDays);
  const bool night = now.hour < kShiftHour;
  for (int day = 0; day < days_ + 2; ++day) dates_.push_back(AddDays(now.date, day - days_ + (night ? 0 : 1)));
  current_from_ = night ? kDay : 0;
  end_ = current_from_ + now.hour * kHour + now.minute * kMinute + now.second;
  // A shop that has just opened has had a guest or two.
  end_ = std::max(end_, kShiftHour * kHour + 10 * kMinute);

  const std::vector<int> lines_by_day = LinesByDay(lines);
  for (int day = 0; day < days_; ++day) WriteShift(day, lines_by_day[static_cast<std::size_t>(day)]);
  WriteOpenReceipts();
}

std::vector<int> SalesHistory::LinesByDay(int lines) const {
  std::vector<std::int64_t> weights;
  for (int day = 0; day < days_; ++day) {
    const Date& date = dates_[static_cast<std::size_t>(day)];
    weights.push_back(kOrdersByWeekDay[static_cast<std::size_t>(WeekDay(date) - 1)] * std::int64_t{kHoursOpen});
  }
  const int hours_today = std::clamp(end_ / kHour - kShiftHour, 1, kHoursOpen);
  weights.back() = weights.back() * hours_today / kHoursOpen;
  const std::int64_t all = std::accumulate(weights.begin(), weights.end(), std::int64_t{0});
  std::vector<int> lines_by_day;
  std::int64_t passed = 0;
  for (const std::int64_t weight : weights) {
    const std::int64_t before = lines * passed / all;
    passed += weight;
    lines_by_day.push_back(static_cast<int>(lines * passed / all - before));
  }
  return lines_by_day;
}

void SalesHistory::WriteShift(int day, int lines) {
  WriteDrawer(day);
  struct Start {
    int second, lines;
  };
  std::vector<Start> starts;
  const bool current = day == days_ - 1;
  while (lines > 0) {
    int second = PickStart();
    while (current && second >= end_) second = PickStart();
    const int count = std::min(lines, random_.Between(1, 5));
    starts.push_back({second, count});
    lines -= count;
  }
  std::sort(starts.begin(), starts.end(), [](const Start& a, const Start& b) { return a.second < b.second; });
  for (const Start& start : starts) WriteOrder(day, start.second, start.lines);
}

void SalesHistory::WriteOrder(int day, int start, int lines) {
  Order order;
  order.day = day;
  order.opened = start;
  // What the current shift has sold hasn't been copied to the reserve server yet.
  if (day < days_ - 1) {
    const Date& copied = dates_[static_cast<std::size_t>(day) + 1];
    order.row.export_mark = copied.day * 10000 + copied.month * 100 + copied.year % 100;
  }
  if (random_.Percent(60)) order.row.fiscal = random_.Percent(70) ? 2 : 1;
  if (!goods_.empty() && random_.Percent(25)) {
    WriteShopReceipt(order, lines);
  } else {
    WriteTableOrder(order, lines);
  }
  CloseOrder(order);
}

void SalesHistory::WriteShopReceipt(Order& order, int lines) {
  order.row.oper = "Чек";
  order.row.ter = kShopTerminal;
  order.row.pers = kFirstCashier + order.day % kCashiers;
  order.row.num = next_number_[kShopTerminal]++;
  for (int i = 0; i < lines; ++i) AddLine(order, PickProduct(true), order.opened + i * random_.Between(5, 20));
  order.closed = order.opened + 2 * kMinute;
  // Sometimes a purchase comes back.
  if (lines == 1 && random_.Percent(12)) {
    order.row.oper = "Возврат";
    order.lines.front().kol *= -1;
  } else {
    GiveDiscount(order);
  }
}

void SalesHistory::WriteTableOrder(Order& order, int lines) {
  order.row.oper = "Заказ";
  order.row.ter = random_.Between(1, kTableTerminals);
  // Three waiters share a shift.
  const std::size_t turn = static_cast<std::size_t>(order.day) * 2 + static_cast<std::size_t>(random_.Below(3));
  order.row.pers = waiters_[turn % waiters_.size()];
  order.row.num = next_number_[order.row.ter]++;
  order.row.guests = random_.Percent(50) ? random_.Between(1, 6) : 0;
  order.row.table = random_.Between(1, kTables);
  const bool surcharge = lines > 2 && random_.Percent(8);
  int moment = order.opened;
  for (int i = 0; i < lines - (surcharge ? 1 : 0); ++i) {
    AddLine(order, PickProduct(false), moment);
    if (random_.Percent(3)) Annul(order, moment + kMinute);
    moment += random_.Between(1, 12) * kMinute;
  }
  order.closed = moment + random_.Between(10, 50) * kMinute;
  GiveDiscount(order);
  if (surcharge) AddSurcharge(order);
}

void SalesHistory::AddLine(Order& order, const Product& product, int moment) {
  SoldLine line;
  line.cod = product.cod;
  line.name = product.name;
  if (product.scale_code != 0) {
    line.kol = random_.Between(80, 1400);
  } else if (product.parts != 0) {
    line.kol = (1000 * random_.Between(1, 3) + product.parts / 2) / product.parts;
  } else {
    line.kol = random_.Percent(75) ? 1000 : 1000 * random_.Between(2, 4);
  }
  line.prise = PriceOn(product, order.day) * 10;
  line.datetime = SqlMoment(order.day, moment);
  line.excise = product.excise;
  line.category = product.location;
  line.status = StatusText("готово", TimeText(moment + 8 * kMinute));
  line.ukt = product.ukt;
  order.lines.push_back(std::move(line));
  order.products.push_back(&product);
  order.moments.push_back(moment);
}

void SalesHistory::AddSurcharge(Order& order) {
  std::int64_t gross = 0;
  for (const SoldLine& line : order.lines) gross += line.Gross();
  SoldLine line;
  line.name = fmt::format("Наценка {}%", kSurchargePercent);
  line.kol = 1000;
  line.prise = gross * kSurchargePercent / 1000 * 10;
  line.datetime = SqlMoment(order.day, order.closed - kMinute);
  line.status = StatusText("наценка", TimeText(order.closed - kMinute));
  order.lines.push_back(std::move(line));
  order.products.push_back(nullptr);
  order.moments.push_back(order.closed);
}

void SalesHistory::GiveDiscount(Order& order) {
  int hand_percent = 0;
  if (random_.Percent(14)) {
    order.card = &cards_[static_cast<std::size_t>(random_.Below(static_cast<int>(cards_.size())))];
    order.row.card = order.card->number;
  } else if (random_.Percent(5)) {
    hand_percent = random_.Pick(kHandPercents);
  }
  for (std::size_t i = 0; i < order.lines.size(); ++i) {
    SoldLine& line = order.lines[i];
    const int category = order.products[i]->category;
    const int percent = order.card != nullptr ? CardPercent(*order.card, category) : hand_percent;
    line.card = order.row.card;
    line.skid = line.Gross() * percent / 1000 * 10;
  }
}

void SalesHistory::CloseOrder(Order& order) {
  CashRow& row = order.row;
  const bool shop = row.ter == kShopTerminal;
  const bool current = order.day == days_ - 1;
  // A waiter may forget to close an order; it stays open for good.
  const bool forgotten = !shop && random_.Below(400) == 0;
  order.is_closed = !forgotten && !(current && order.closed > end_ && !shop);
  row.state = order.is_closed ? kClosed : random_.Percent(40) ? kBillPrinted : kOpen;
  if (!order.is_closed) row.export_mark.reset();
  // The shop's till and what is taken away have no table.
  if (shop || random_.Percent(6)) row.table.reset();
  row.cash = random_.Percent(60);
  row.opened = SqlMoment(order.day, order.opened);

  for (std::size_t i = 0; i < order.lines.size(); ++i) {
    SoldLine& line = order.lines[i];
    line.ter = row.ter;
    line.pers = row.pers;
    line.num = row.num;
    line.state = row.state;
    line.export_mark = row.export_mark;
    // Excise goods belong into the first register, whatever the rest of the order goes into.
    if (row.fiscal) line.fiscal = line.excise != 0 ? 1 : *row.fiscal;
    row.sum1 += line.Gross();
    row.skid += line.skid;
    if (current && order.moments[i] >= current_from_) current_sales_[line.cod] += line.kol;
    script_.Row("PROD", std::string(kProdBaseColumns) + (upgraded_ ? kProdAddedColumns : ""),
                BaseValues(line) + (upgraded_ ? AddedValues(line) : ""));
    const bool marked = line.excise != 0 && order.products[i]->portion >= 500;
    if (marked && random_.Percent(20)) {
      script_.Row(
          "AKZMARK", "COD,MARK,TER,NUM,DAT",
          fmt::format("{},'22N{:010}{:010}',{},{},'{}'", line.cod, row.num, line.cod, row.ter, row.num, line.datetime));
    }
  }
  if (order.card != nullptr && order.is_closed) {
    order.card->last = (row.sum1 - row.skid) / 10;
    order.card->total += order.card->last;
  }
  const std::string status = order.is_closed
                                 ? StatusText(row.cash ? "оплачен" : "картой", TimeText(order.closed))
                                 : StatusText(row.state == kOpen ? "открыт" : "пречек", TimeText(order.opened));
  PutCash(order, order.closed, OrderText(shop ? "" : "исполнен " + TimeText(order.closed - 5 * kMinute), status));
}

void SalesHistory::PutCash(const Order& order, int closed, const std::string& text) {
  const std::string columns = std::string(kKassaBaseColumns) + (upgraded_ ? kKassaAddedColumns : "");
  const auto put = [&](const CashRow& row) {
    script_.Row("KASSA", columns, BaseValues(row) + (upgraded_ ? AddedValues(row) : ""));
  };
  CashRow row = order.row;
  row.text = text;
  if (order.is_closed) row.closed = SqlMoment(order.day, closed);
  // Some guests pay in two ways: half in cash, the rest by card.
  const bool split =
      order.is_closed && row.table.value_or(0) != 0 && row.skid == 0 && row.sum1 > 100'000 && random_.Percent(2);
  if (split) {
    CashRow rest = row;
    row.sum1 = row.sum1 / 20000 * 10000;
    row.cash = true;
    rest.sum1 -= row.sum1;
    rest.cash = false;
    put(row);
    put(rest);
  } else {
    put(row);
  }
}

void SalesHistory::Annul(const Order& order, int moment) {
  SoldLine line = order.lines.back();
  if (random_.Percent(30)) {
    const Product& other = PickProduct(false);
    line.cod = other.cod;
    line.name = other.name;
  }
  line.ter = order.row.ter;
  line.num = order.row.num;
  line.pers = order.row.pers;
  // What the back office annuls bears neither order nor name.
  if (random_.Percent(15)) line.num = line.pers = 0;
  script_.Row("SPION", kSpionColumns, SpionValues(line, ScreenMoment(order.day, moment)));
}

void SalesHistory::WriteDrawer(int day) {
  const std::string columns = std::string(kKassaBaseColumns) + (upgraded_ ? kKassaAddedColumns : "");
  const auto put = [&](const char* oper, int plus, int minus, int second) {
    CashRow row;
    row.oper = oper;
    row.plus = std::int64_t{plus} * 1000;
    row.minus = std::int64_t{minus} * 1000;
    row.ter = 1;
    row.pers = waiters_.front();
    row.opened = row.closed = SqlMoment(day, second);
    row.table = 0;
    row.state = 0;
    script_.Row("KASSA", columns, BaseValues(row) + (upgraded_ ? AddedValues(row) : ""));
  };
  put("Внесение", 5000, 0, kShiftHour * kHour + 5 * kMinute);
  if (day < days_ - 1) put("Изъятие", 0, 100 * random_.Between(100, 400), 27 * kHour);
}

void SalesHistory::WriteOpenReceipts() {
  const int day = days_ - 1;
  for (int terminal = 1; terminal <= kShopTerminal; ++terminal) {
    Order order;
    order.day = day;
    const int lines = random_.Between(2, 5);
    for (int i = 0; i < lines; ++i) AddLine(order, PickProduct(terminal == kShopTerminal), end_);
    // One guest orders the same again.
    if (terminal == 2) AddLine(order, *order.products.front(), end_);
    for (std::size_t i = 0; i < order.lines.size(); ++i) {
      script_.Row(fmt::format("CHECK{}", terminal),
                  std::string(kCheckBaseColumns) + (upgraded_ ? kCheckAddedColumns : ""),
                  CheckBaseValues(order.lines[i], order.products[i]->tax) +
                      (upgraded_ ? CheckAddedValues(order.lines[i]) : ""));
    }
  }
}

const Product& SalesHistory::PickProduct(bool shop) {
  const std::vector<const Product*>& shelf = shop && !goods_.empty() ? goods_ : dishes_;
  const int count = static_cast<int>(shelf.size());
  // The front of each list sells better than its end.
  return *shelf[static_cast<std::size_t>(std::min(random_.Below(count), random_.Below(count)))];
}

int SalesHistory::PickStart() {
  int ticket = 0;
  for (const int weight : kOrdersByHour) ticket += weight;
  ticket = random_.Below(ticket);
  std::size_t hour = 0;
  while (ticket >= kOrdersByHour[hour]) ticket -= kOrdersByHour[hour++];
  // No order begins on the shift's first second, which belongs to no shift.
  return (kShiftHour + static_cast<int>(hour)) * kHour + random_.Between(1, kHour - 1);
}

std::int64_t SalesHistory::PriceOn(const Product& product, int day) const {
  if (day >= days_ - kPriceRiseDaysAgo) return product.price;
  return product.price - product.price / 2000 * 100;
}

std::string SalesHistory::SqlMoment(int day, int second) const {
  const DateTime at = Moment(day, second);
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", at.date.year, at.date.month, at.date.day, at.hour,
                     at.minute, at.second);
}

std::string SalesHistory::ScreenMoment(int day, int second) const {
  const DateTime at = Moment(day, second);
  return fmt::format("{:02}.{:02}.{:04} {:02}:{:02}:{:02}", at.date.day, at.date.month, at.date.year, at.hour,
                     at.minute, at.second);
}

DateTime SalesHistory::Moment(int day, int second) const {
  // Nothing has happened yet after the end of the current shift.
  if (day == days_ - 1) second = std::min(second, end_);
  const int rest = second % kDay;
  return {dates_[static_cast<std::size_t>(day) + static_cast<std::size_t>(second / kDay)], rest / kHour,
          rest / kMinute % 60, rest % 60};
}

std::string SalesHistory::TimeText(int second) {
  return fmt::format("{:02}:{:02}", second % kDay / kHour, second / kMinute % 60);
}

}  // namespace zrt::tools
