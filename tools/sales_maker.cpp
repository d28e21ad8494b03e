#include "sales_maker.h"

#include <fmt/format.h>

#include <algorithm>

namespace zrt::tools {
namespace {

constexpr int kTerminals = 5;
constexpr int kShopTerminal = 5;  ///< the till of the shop; the others stand in the café
constexpr int kLinesADay = 400;
constexpr int kMostDays = 1100;
constexpr int kLinesAnOrder = 4;  ///< on average
constexpr int kOpenOrders = 8;
constexpr int kMinutesADay = 24 * 60;
constexpr int kLastOrder = 27 * 60;  ///< three in the morning
constexpr int kDaysBeforeExport = 3;

std::string Stamp(const Date& day, int minute, int second) {
  const Date date = AddDays(day, minute / kMinutesADay);
  const int rest = minute % kMinutesADay;
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", date.year, date.month, date.day, rest / 60, rest % 60,
                     second);
}

std::string ScreenStamp(const std::string& sql) {
  return fmt::format("{}.{}.{} {}", sql.substr(8, 2), sql.substr(5, 2), sql.substr(0, 4), sql.substr(11));
}

std::string SqlText(const DateTime& moment) {
  return Stamp(moment.date, moment.hour * 60 + moment.minute, moment.second);
}

/// The day on which the copy to the reserve server was made, as ddmmyy.
int ExportMark(const Date& day) {
  return day.day * 10000 + day.month * 100 + day.year % 100;
}

}  // namespace

SalesMaker::SalesMaker(ScriptWriter& script, Random& random, const std::vector<Product>& catalogue,
                       std::vector<Card>& cards, bool upgraded)
    : script_(script),
      random_(random),
      catalogue_(catalogue),
      cards_(cards),
      upgraded_(upgraded),
      waiters_(WaiterCodes()),
      next_order_(kTerminals + 1, 1),
      sold_(catalogue.size(), 0) {
  for (std::size_t i = 0; i < catalogue.size(); ++i) {
    (catalogue[i].group == Group::kShop ? shop_ : cafe_).push_back(i);
  }
}

void SalesMaker::Sell(int lines, const DateTime& now) {
  const int days = std::clamp(lines / kLinesADay, 1, kMostDays);
  const Date last = now.hour < kShiftHour ? AddDays(now.date, -1) : now.date;
  for (int back = days - 1; back >= 0; --back) {
    SellShift(AddDays(last, -back), lines / days, now, back == 0);
  }
  OpenReceipts();
}

void SalesMaker::SellShift(const Date& day, int lines, const DateTime& now, bool last) {
  // The last shift is sold up to now, as densely as the others.
  int closing = kLastOrder;
  if (last) {
    closing = now.hour * 60 + now.minute + (now.date == day ? 0 : kMinutesADay);
    closing = std::clamp(closing, kShiftHour * 60 + 10, kLastOrder);
  }
  std::vector<int> starts;
  for (int i = 0; i < std::max(1, lines / kLinesAnOrder); ++i) {
    // Two draws make the middle of the day busier than its ends.
    const int span = closing - kShiftHour * 60 - 5;
    starts.push_back(kShiftHour * 60 + 1 + (random_.Below(span) + random_.Below(span)) / 2);
  }
  // Guests are sitting at the tables right now.
  for (int i = 0; last && i < kOpenOrders; ++i) starts.push_back(closing - 1 - i % 5);
  std::sort(starts.begin(), starts.end());
  CashRow change;
  change.oper = "Внесение";
  change.plus = 2'000'000;
  change.ter = kShopTerminal;
  change.pers = kFirstCashier;
  change.opened = change.closed = Stamp(day, kShiftHour * 60, 30);
  Write(change);
  for (const int start : starts) SellOrder(day, start, now, last);
}

void SalesMaker::SellOrder(const Date& day, int minute, const DateTime& now, bool last) {
  const int terminal = random_.Between(1, kTerminals);
  const bool shop = terminal == kShopTerminal;
  const int minutes = shop ? 0 : random_.Between(1, 90);
  const bool by_card = random_.Percent(15);
  Card* card = by_card ? &cards_[static_cast<std::size_t>(random_.Below(static_cast<int>(cards_.size())))] : nullptr;
  const int by_hand = !by_card && random_.Percent(3) ? 10 : 0;
  const std::string closed = Stamp(day, minute + minutes, 40);
  const bool open = last && closed > SqlText(now);
  const int state = open ? (random_.Percent(30) ? kBillPrinted : kOpen) : kClosed;
  const bool fiscal = !open && random_.Percent(70);

  CashRow order;
  order.oper = shop ? "Чек" : "Заказ";
  order.ter = terminal;
  order.pers = shop ? kFirstCashier + random_.Below(kCashiers) : random_.Pick(waiters_);
  order.num = next_order_[static_cast<std::size_t>(terminal)]++;
  order.opened = Stamp(day, minute, 5);
  if (!open) order.closed = closed;
  order.cash = random_.Percent(60);
  order.guests = shop ? 0 : random_.Between(1, 6);
  if (!shop) order.table = random_.Between(1, 24);
  order.state = state;
  order.card = card == nullptr ? 0 : card->number;
  if (!last && AddDays(day, kDaysBeforeExport) < now.date) order.export_mark = ExportMark(AddDays(day, 1));
  const std::string status = open ? StatusText("открыт", "") : StatusText("оплачен", closed.substr(11, 5));
  order.text = OrderText(open ? "готовится" : "подано", status);

  const int lines = random_.Between(1, 2 * kLinesAnOrder - 1);
  std::string previous;
  std::vector<SoldLine> sold;
  for (int i = 0; i < lines; ++i) {
    const std::size_t index = random_.Pick(shop && !shop_.empty() ? shop_ : cafe_);
    const Product& product = catalogue_[index];
    SoldLine line;
    line.cod = product.cod;
    line.name = product.name;
    line.kol = product.scale_code != 0 ? random_.Between(80, 1500)
               : product.parts != 0    ? random_.Between(1, product.parts) * 1000 / product.parts
                                       : random_.Between(1, random_.Percent(20) ? 4 : 1) * 1000;
    line.prise = product.price * 10;
    const int percent = card != nullptr ? CardPercent(*card, product.category) : by_hand;
    line.skid = line.Gross() * percent / 100;
    line.ter = terminal;
    line.pers = order.pers;
    line.num = order.num;
    line.datetime =
        std::min(Stamp(day, minute + minutes * i / lines, random_.Between(6, 39)), open ? SqlText(now) : closed);
    line.datetime = std::max(line.datetime, previous);
    previous = line.datetime;
    line.card = order.card;
    line.excise = product.excise;
    line.state = state;
    line.category = product.location;
    if (fiscal) line.fiscal = product.excise != 0 ? 1 : 2;
    line.export_mark = order.export_mark;
    line.status = status;
    line.ukt = product.ukt;
    if (last) sold_[index] += line.kol;
    if (random_.Percent(2)) Annul(line, day, minute + minutes * i / lines);
    sold.push_back(std::move(line));
  }
  if (!shop && random_.Percent(12)) {
    std::int64_t net = 0;
    for (const SoldLine& line : sold) net += line.Net();
    SoldLine surcharge = sold.back();
    surcharge.cod = 0;
    surcharge.name = "Обслуживание 10%";
    surcharge.kol = 1000;
    surcharge.prise = net / 10;
    surcharge.skid = 0;
    surcharge.excise = 0;
    surcharge.category = 0;
    surcharge.ukt.clear();
    sold.push_back(std::move(surcharge));
  }
  for (const SoldLine& line : sold) {
    order.sum1 += line.Gross();
    order.skid += line.skid;
    if (line.fiscal) order.fiscal = line.fiscal;
    Write(line);
  }
  if (card != nullptr && !open) {
    card->last = order.Payment();
    card->total += card->last;
  }
  Write(order);
}

void SalesMaker::Annul(const SoldLine& line, const Date& day, int minute) {
  script_.Row("SPION", kSpionColumns, SpionValues(line, ScreenStamp(Stamp(day, minute, 50))));
}

void SalesMaker::OpenReceipts() {
  for (int terminal = 1; terminal < kTerminals; ++terminal) {
    for (int i = 0; i < terminal; ++i) {
      const Product& product = catalogue_[random_.Pick(cafe_)];
      SoldLine line;
      line.cod = product.cod;
      line.name = product.name;
      line.kol = 1000;
      line.prise = product.price * 10;
      line.excise = product.excise;
      line.category = product.location;
      line.ukt = product.ukt;
      script_.Row(fmt::format("CHECK{}", terminal),
                  upgraded_ ? std::string(kCheckBaseColumns) + kCheckAddedColumns : kCheckBaseColumns,
                  CheckBaseValues(line, product.tax) + (upgraded_ ? CheckAddedValues(line) : ""));
    }
  }
}

void SalesMaker::Write(const SoldLine& line) {
  static const std::string kAll = std::string(kProdBaseColumns) + kProdAddedColumns;
  script_.Row("PROD", upgraded_ ? kAll : kProdBaseColumns, BaseValues(line) + (upgraded_ ? AddedValues(line) : ""));
}

void SalesMaker::Write(const CashRow& row) {
  static const std::string kAll = std::string(kKassaBaseColumns) + kKassaAddedColumns;
  script_.Row("KASSA", upgraded_ ? kAll : kKassaBaseColumns, BaseValues(row) + (upgraded_ ? AddedValues(row) : ""));
}

}  // namespace zrt::tools
