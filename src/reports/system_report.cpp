#include "reports/system_report.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>

#include "core/numbers.h"
#include "core/text.h"
#include "reports/figures.h"
#include "reports/report_text.h"

namespace zrt {

namespace {

/// One block of the report: the figures of a period, written row by row. Each figure is asked for when its row is
/// written, from left to right.
class Block {
 public:
  Block(ReportLines& lines, Session& session, const KatNames& names, const ReportSpan& span)
      : lines_(lines),
        session_(session),
        names_(names),
        format_(session.Format()),
        figures_(session, ReportPeriodBounds(span, session.Format())) {}

  void Write() {
    WriteTakings();
    lines_.Empty();
    lines_.Empty();
    lines_.Line("наценки и скидки       нац/скид  ост.сумма");
    lines_.SingleRule();
    WriteSurcharges();
    WriteDiscounts();
    WriteCardKinds();
    lines_.Empty();
    lines_.Empty();
    lines_.Line("по категориям          со скидк. без скид.");
    lines_.SingleRule();
    WritePlaces();
    lines_.Empty();
    lines_.DoubleRule();
  }

 private:
  std::string Amount(const figure::Sum& sum) const { return AmountColumn(format_, figures_.Sum(sum)); }

  void Row(std::string_view label, const figure::Count& count, const figure::Sum& sum) {
    const std::string orders = CountColumn(figures_.Count(count));
    lines_.Line(fmt::format("{}{}{}", label, orders, Amount(sum)));
  }

  /// A row that stands only when there is something to count.
  bool RowIfAny(std::string_view label, const figure::Count& count, const figure::Sum& sum) {
    const int orders = figures_.Count(count);
    if (orders > 0) lines_.Line(fmt::format("{}{}{}", label, CountColumn(orders), Amount(sum)));
    return orders > 0;
  }

  bool DiscountIfAny(std::string_view label, const figure::Count& count, const figure::Sum& given,
                     const figure::Sum& left) {
    const int orders = figures_.Count(count);
    if (orders == 0) return false;
    const std::string discount = Amount(given);
    lines_.Line(fmt::format("{}{}{}{}", label, CountColumn(orders), discount, Amount(left)));
    return true;
  }

  void WriteTakings() {
    lines_.SingleRule();
    Row("ВСЕГО (без учёта скидок): ", figure::CountAll, figure::SumAllGross);
    Row("ВСЕГО (со скидками):      ", figure::CountAll, figure::SumAllNet);
    Row("Закрыто заказов за наличн:", figure::CountPaidCash, figure::SumPaidCash);
    RowIfAny("Закрыто без опл./терминал:", figure::CountPaidOther, figure::SumPaidOther);
    if (!RowIfAny("НЕ ЗАКРЫТЫ:               ", figure::CountOpen, figure::SumOpen)) {
      lines_.Line("     на текущий момент все заказы закрыты!");
    }
  }

  void WriteSurcharges() {
    bool any = RowIfAny("наценка % от суммы        ", figure::CountSurcharge, figure::SumSurcharge);
    any |= RowIfAny("наценка на муз.обсл.      ", figure::CountMusic, figure::SumMusic);
    any |= RowIfAny("наценка за доставку:      ", figure::CountDelivery, figure::SumDelivery);
    if (any) lines_.SingleRule();
  }

  void WriteDiscounts() {
    // The first letter of the label is the Latin C: so it has always stood in the reports.
    if (DiscountIfAny("Cкидки всего:  ", figure::CountDiscount, figure::SumDiscount, figure::SumAfterDiscount)) {
      lines_.SingleRule();
    }
    DiscountIfAny("в т.ч. скидка %", figure::CountHandDiscount, figure::SumHandDiscount, figure::SumAfterHandDiscount);
  }

  void WriteCardKinds() {
    Recordset kinds;
    session_.BindSet(kinds,
                     "SELECT SUM(PROD.SKID),DISCOUNT.PROZ,SUM((PROD.KOL*PROD.PRISE/1000)-PROD.SKID) FROM PROD,DISCOUNT "
                     "WHERE PROD.SKID>0 AND PROD.REZ=DISCOUNT.REZ AND PROD.DATETIME " +
                         figures_.Between() + " GROUP BY DISCOUNT.PROZ");
    const auto amount = [&](const Cell& sum) {
      return AmountColumn(format_, sum.IsNull() ? std::nullopt : std::optional(sum.Number() / scale::kProd));
    };
    for (int row = 1; row <= kinds.RecordCount(); ++row) {
      const Cell proz = kinds.At(row, 1);
      // Cards whose percentage was never filled in have a row, but no kind by which their orders could be counted.
      const std::string orders = proz.IsNull() ? PadLeftTo("", 4) : CountColumn(figures_.CountCardKind(proz.Text()));
      lines_.Line("д.карта вид " + proz.TextOrEmpty() + orders + amount(kinds.At(row, 0)) + amount(kinds.At(row, 2)));
    }
  }

  void WritePlaces() {
    const std::optional<Takings> bar = figures_.Pair(figure::CategoryPair, {.category = kBarCategory});
    lines_.Line(std::string(kBarLabel) + (bar ? PairColumns(format_, *bar) : std::string()));
    PairIfAny(lines_, format_, kAlcoholLabel, figures_.Pair(figure::AlcoholPair));
    for (const Place& place : names_.Places()) {
      PairIfAny(lines_, format_, place.label, figures_.Pair(figure::CategoryPair, {.category = place.category}));
    }
  }

  ReportLines& lines_;
  Session& session_;
  const KatNames& names_;
  const RegionalFormat& format_;
  const Figures figures_;
};

}  // namespace

void ReportSystemPeriod(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span) {
  ReportLines lines(list);
  const auto day_and_month = [&](const Date& date) { return Left(session.Format().DateText(date), 5); };
  lines.Line("СИСТЕМНЫЙ ОТЧЁТ " + SpanText(span, session.Format()));
  lines.DoubleRule();
  lines.Line("с " + day_and_month(span.first) + " по " + day_and_month(AddDays(span.last, -1)) +
             "            чеки     сумма");
  Block(lines, session, names, span).Write();
}

void ReportSystemByDays(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span) {
  ReportLines lines(list);
  lines.Line("СИСТЕМНЫЙ ОТЧЁТ " + SpanText(span, session.Format()));
  for (Date day = span.first; day != span.last; day = AddDays(day, 1)) {
    const ReportSpan shift{span.hour, day, AddDays(day, 1)};
    lines.DoubleRule();
    lines.Line(session.Format().DateText(day) + "                  чеки     сумма");
    Block(lines, session, names, shift).Write();
  }
}

}  // namespace zrt
