#include "reports/waiters_full.h"

#include <fmt/format.h>

#include <string>

#include "core/numbers.h"
#include "core/text.h"
#include "reports/report_text.h"

namespace zrt {

namespace {

/// What orders come to and how they were paid, money as it is, for one waiter or for all.
struct Totals {
  float orders = 0;
  float payments = 0;
  float cash = 0;
  float terminal = 0;
};

void Add(float& total, double amount) {
  total = static_cast<float>(double{total} + amount);
}

double NumberOrZero(const Cell& cell) {
  return cell.IsNull() ? 0 : cell.Number();
}

std::string AmountUnlessZero(const RegionalFormat& format, double amount) {
  return amount == 0 ? std::string() : AmountText(format, amount);
}

/// Columns of the statement of a waiter's orders.
enum OrderField { kN1, kSum1, kSkid, kSum2, kN2, kN3, kTer, kNum };

std::string OrdersOf(const std::string& waiter, const ReportPeriod& period) {
  return fmt::format(
      "SELECT KASSA.N1,KASSA.SUM1,KASSA.SKID,KASSA.SUM2,KASSA.N2,KASSA.N3,KASSA.TER,KASSA.NUM FROM KASSA,PROD WHERE "
      "KASSA.NUM=PROD.NUM AND KASSA.TER=PROD.TER AND KASSA.SUM1<>0 AND KASSA.PERS={} AND PROD.DATETIME BETWEEN '{}' "
      "AND '{}'GROUP BY KASSA.NUM, KASSA.TER ORDER BY PROD.DATETIME",
      waiter, period.from, period.to);
}

std::string OrderLine(const Recordset& orders, const RegionalFormat& format, double sum, double payment,
                      bool by_terminal) {
  const auto text = [&](OrderField field) { return orders.Field(field).TextOrEmpty(); };
  const std::string table = orders.IsNull(kN3) ? "ЧЕК" : text(kN3);
  const std::string guests = NumberOrZero(orders.Field(kN1)) == 0 ? "" : text(kN1);
  return PadRightTo(text(kTer) + "-" + text(kNum), 8) + PadLeftTo(table, 2) + PadLeftTo(guests, 2) + " " +
         PadLeftTo(AmountText(format, sum), 8) + " " + PadLeftTo(AmountUnlessZero(format, payment), 8) +
         (by_terminal ? "#" : " ") + PadLeftTo(AmountUnlessZero(format, NumberOrZero(orders.Field(kSkid))), 6);
}

/// Lists the orders of `orders` and adds them to both totals.
void ListOrders(ReportLines& lines, Recordset& orders, const RegionalFormat& format, Totals& waiter, Totals& all) {
  for (; !orders.Eof(); orders.MoveNext()) {
    const double sum = orders.Field(kSum1).Number() - NumberOrZero(orders.Field(kSkid));
    const double payment = NumberOrZero(orders.Field(kN2)) / scale::kKassaPayment;
    const Cell cash = orders.Field(kSum2);
    const bool by_terminal = payment > 0 && !cash.IsNull() && cash.Number() == 0;
    lines.Line(OrderLine(orders, format, sum, payment, by_terminal));
    for (Totals* totals : {&waiter, &all}) {
      Add(totals->orders, sum);
      Add(totals->payments, payment);
      Add(by_terminal ? totals->terminal : totals->cash, payment);
    }
  }
}

}  // namespace

void ReportWaitersFull(Session& session, Desktop& desktop, ListBox& list, const ReportSpan& span) {
  const RegionalFormat& format = session.Format();
  const ReportPeriod period = ReportPeriodBounds(span, format);
  Recordset waiters;
  session.BindSet(waiters, fmt::format("SELECT KLIENT.COD,KLIENT.NAME,ROUND(SUM(PROD.SKID),2),ROUND(SUM("
                                       "PROD.KOL*PROD.PRISE/1000),2) FROM KLIENT,PROD WHERE KLIENT.COD=PROD.PERS AND "
                                       "PROD.DATETIME BETWEEN '{}' AND '{}' GROUP BY KLIENT.COD",
                                       period.from, period.to));
  if (waiters.RecordCount() == 0) {
    desktop.MsgBox("Нет заказов!", BoxIcon::kNone, BoxButtons::kOk, "ZASTAVA");
    return;
  }

  ReportLines lines(list);
  lines.Line("ПОЛНЫЙ ОТЧЁТ ПО ОФИЦИАНТАМ      за период:");
  lines.Line("с " + period.from + " по " + period.to);
  lines.DoubleRule();
  lines.Line("Заказ   Стол       Сумма    Оплата  Скидка");
  lines.DoubleRule();

  const auto amount = [&](float value, std::size_t last) { return PadLeftTo(AmountText(format, value), last); };
  Totals all;
  Recordset orders;
  for (; !waiters.Eof(); waiters.MoveNext()) {
    const std::string cod = waiters.Field(0).Text();
    lines.Line(" ");
    lines.Line(PadRightTo(Left(cod + " " + waiters.Field(1).TextOrEmpty(), 26), 27) + "          ");
    lines.SingleRule();
    session.BindSet(orders, OrdersOf(cod, period));
    Totals totals;
    ListOrders(lines, orders, format, totals, all);
    lines.SingleRule();
    const double discount = NumberOrZero(waiters.Field(2)) / scale::kProd;
    lines.Line("ИТОГО:         " + amount(totals.orders, 8) + " " + amount(totals.payments, 8) + " " +
               PadLeftTo(AmountUnlessZero(format, discount), 6));
  }

  lines.Line(" ");
  lines.DoubleRule();
  lines.Line("ИТОГО ЗАКАЗЫ:           " + amount(all.orders, 9));
  lines.Line(" ");
  lines.Line("ИТОГО ОПЛАТА:           " + amount(all.payments, 9));
  if (all.terminal > 0) {
    lines.Line("              наличными:" + amount(all.cash, 9));
    lines.Line("         через терминал:" + amount(all.terminal, 9) + "#");
  }
  lines.Line(" ");
  if (all.orders <= all.payments) {
    lines.Line("Все заказы закрыты!");
  } else {
    lines.Line("НЕЗАКРЫТЫЕ ЗАКАЗЫ:      " + amount(all.orders - all.payments, 9));
  }
}

}  // namespace zrt
