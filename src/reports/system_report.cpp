#include "reports/system_report.h"

#include "core/numbers.h"
#include "core/text.h"
#include "reports/figures.h"
#include "reports/report_text.h"

namespace zrt {

namespace {

/// One of the rows of a block that stand only when there is something to count.
bool CountedRow(ReportLines& lines, const Figures& figures, const char* label, const figure::Count& count,
                const figure::Sum& sum) {
  const int orders = figures.Count(count);
  if (orders > 0) lines.Line(label + CountText(orders) + figures.Sum(sum));
  return orders > 0;
}

void Takings(ReportLines& lines, const Figures& figures) {
  const auto row = [&](const char* label, const figure::Count& count, const figure::Sum& sum) {
    const std::string orders = CountText(figures.Count(count));
    lines.Line(label + orders + figures.Sum(sum));
  };
  lines.SingleRule();
  row("ВСЕГО (без учёта скидок): ", figure::CountAll, figure::SumAllGross);
  row("ВСЕГО (со скидками):      ", figure::CountAll, figure::SumAllNet);
  row("Закрыто заказов за наличн:", figure::CountPaidCash, figure::SumPaidCash);
  CountedRow(lines, figures, "Закрыто без опл./терминал:", figure::CountPaidOther, figure::SumPaidOther);
  if (!CountedRow(lines, figures, "НЕ ЗАКРЫТЫ:               ", figure::CountOpen, figure::SumOpen)) {
    lines.Line("     на текущий момент все заказы закрыты!");
  }
}

void Surcharges(ReportLines& lines, const Figures& figures) {
  bool any = CountedRow(lines, figures, "наценка % от суммы        ", figure::CountSurcharge, figure::SumSurcharge);
  any |= CountedRow(lines, figures, "наценка на муз.обсл.      ", figure::CountMusic, figure::SumMusic);
  any |= CountedRow(lines, figures, "наценка за доставку:      ", figure::CountDelivery, figure::SumDelivery);
  if (any) lines.SingleRule();
}

void Discounts(ReportLines& lines, const Figures& figures) {
  // The first letter of the label is the Latin C: so it has always stood in the reports.
  if (const int orders = figures.Count(figure::CountDiscount); orders > 0) {
    const std::string given = figures.Sum(figure::SumDiscount);
    lines.Line("Cкидки всего:  " + CountText(orders) + given + figures.Sum(figure::SumAfterDiscount));
    lines.SingleRule();
  }
  if (const int orders = figures.Count(figure::CountHandDiscount); orders > 0) {
    const std::string given = figures.Sum(figure::SumHandDiscount);
    lines.Line("в т.ч. скидка %" + CountText(orders) + given + figures.Sum(figure::SumAfterHandDiscount));
  }
}

void CardKinds(ReportLines& lines, const Figures& figures, Session& session) {
  Recordset kinds;
  session.BindSet(kinds,
                  "SELECT SUM(PROD.SKID),DISCOUNT.PROZ,SUM((PROD.KOL*PROD.PRISE/1000)-PROD.SKID) FROM PROD,DISCOUNT "
                  "WHERE PROD.SKID>0 AND PROD.REZ=DISCOUNT.REZ AND PROD.DATETIME " +
                      figures.Between() + " GROUP BY DISCOUNT.PROZ");
  const auto amount = [&](const Cell& sum) { return AmountColumn(session.Format(), sum, scale::kProd); };
  for (int row = 1; row <= kinds.RecordCount(); ++row) {
    const Cell proz = kinds.At(row, 1);
    // Cards whose percentage was never filled in have a row, but no kind by which their orders could be counted.
    const std::string orders = proz.IsNull() ? PadLeftTo("", 4) : CountText(figures.CountCardKind(proz.Text()));
    lines.Line("д.карта вид " + proz.TextOrEmpty() + orders + amount(kinds.At(row, 0)) + amount(kinds.At(row, 2)));
  }
}

void Places(ReportLines& lines, const Figures& figures, const KatNames& names) {
  lines.Line(kBarLabel + figures.Pair(figure::CategoryPair, kBarCategory));
  const auto if_any = [&](const std::string& label, const std::string& pair) {
    if (!pair.empty()) lines.Line(label + pair);
  };
  if_any(kAlcoholLabel, figures.Pair(figure::AlcoholPair));
  for (const Place& place : names.Places()) {
    if_any(place.label, figures.Pair(figure::CategoryPair, place.category));
  }
}

void Block(ReportLines& lines, const Figures& figures, Session& session, const KatNames& names) {
  Takings(lines, figures);
  lines.Empty();
  lines.Empty();
  lines.Line("наценки и скидки       нац/скид  ост.сумма");
  lines.SingleRule();
  Surcharges(lines, figures);
  Discounts(lines, figures);
  CardKinds(lines, figures, session);
  lines.Empty();
  lines.Empty();
  lines.Line("по категориям          со скидк. без скид.");
  lines.SingleRule();
  Places(lines, figures, names);
  lines.Empty();
  lines.DoubleRule();
}

}  // namespace

void ReportSystemPeriod(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span) {
  ReportLines lines(list);
  const auto day_and_month = [&](const Date& date) { return Left(session.Format().DateText(date), 5); };
  lines.Line("СИСТЕМНЫЙ ОТЧЁТ " + SpanText(span, session.Format()));
  lines.DoubleRule();
  lines.Line("с " + day_and_month(span.first) + " по " + day_and_month(AddDays(span.last, -1)) +
             "            чеки     сумма");
  Block(lines, Figures(session, ReportPeriodBounds(span, session.Format())), session, names);
}

void ReportSystemByDays(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span) {
  ReportLines lines(list);
  lines.Line("СИСТЕМНЫЙ ОТЧЁТ " + SpanText(span, session.Format()));
  for (Date day = span.first; day != span.last; day = AddDays(day, 1)) {
    const ReportSpan shift{span.hour, day, AddDays(day, 1)};
    lines.DoubleRule();
    lines.Line(session.Format().DateText(day) + "                  чеки     сумма");
    Block(lines, Figures(session, ReportPeriodBounds(shift, session.Format())), session, names);
  }
}

}  // namespace zrt
