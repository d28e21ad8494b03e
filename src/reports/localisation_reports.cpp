#include "reports/localisation_reports.h"

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

// The goods of a place. The quantity is kept to three decimals and shown with two, as the column is narrow.

void ListCategoryGoods(ReportLines& lines, const Figures& figures, Session& session, int category, bool wide) {
  const std::size_t width = 24 + (wide ? kWideColumns : 0);
  Recordset goods;
  session.BindSet(
      goods, fmt::format("SELECT NAME, SUM(KOL), SUM(KOL*PRISE) FROM PROD WHERE N5={} AND COD NOT IN (0,{},{}) AND "
                         "DATETIME {} GROUP BY COD ORDER BY NAME",
                         category, figure::CodDelivery, figure::CodMusic, figures.Between()));
  for (int row = 1; row <= goods.RecordCount(); ++row) {
    const auto number = [&](int field, double divisor) {
      return AmountText(session.Format(), goods.At(row, field), divisor);
    };
    constexpr double kKolTimesPrise = double{scale::kProd} * scale::kProd;
    lines.Line(PadRightTo(Left(goods.At(row, 0).TextOrEmpty(), width - 3), width + 1) +
               PadLeftTo(number(1, scale::kProd), 6) + PadLeftTo(number(2, kKolTimesPrise), 9));
  }
}

void PlaceWithGoods(ReportLines& lines, const Figures& figures, Session& session, const Place& place, bool wide) {
  const std::optional<Takings> takings = figures.Pair(figure::CategoryPair, {.category = place.category});
  if (!takings) return;
  lines.Empty();
  lines.Line(place.label + std::string(wide ? kWideColumns : 0, ' ') + PairColumns(session.Format(), *takings));
  lines.SingleRule();
  ListCategoryGoods(lines, figures, session, place.category, wide);
}

// The waiters.

void Waiter(ReportLines& lines, const Figures& figures, const RegionalFormat& format, const KatNames& names, int cod,
            const std::string& name) {
  const std::optional<Takings> total = figures.Pair(figure::WaiterTotalPair, {.waiter = cod});
  if (!total) return;
  constexpr std::size_t kLabelWidth = 21;
  lines.Empty();
  lines.Line(PadRightTo(Left(fmt::format("{}  {}", cod, name), kLabelWidth), kLabelWidth) +
             PairColumns(format, *total));
  lines.SingleRule();
  const auto if_any = [&](std::string_view label, const figure::Pair& pair, int category) {
    PairIfAny(lines, format, label, figures.Pair(pair, {.category = category, .waiter = cod}));
  };
  if_any(kBarLabel, figure::WaiterCategoryPair, kBarCategory);
  if_any(kAlcoholLabel, figure::WaiterAlcoholPair, 0);
  for (const Place& place : names.Places()) if_any(place.label, figure::WaiterCategoryPair, place.category);
  if_any("ДОПОЛН. НАЦЕНКА      ", figure::WaiterSurchargePair, 0);
  lines.SingleRule();
}

void WaitersBlock(ReportLines& lines, Session& session, const KatNames& names, const ReportSpan& span) {
  const Figures figures(session, ReportPeriodBounds(span, session.Format()));
  lines.DoubleRule();
  lines.Line("Имя\\категория          со скидк. без скид.");
  lines.SingleRule();
  Recordset waiters;
  session.BindSet(waiters, "SELECT COD,NAME FROM KLIENT ORDER BY COD");
  for (int row = 1; row <= waiters.RecordCount(); ++row) {
    Waiter(lines, figures, session.Format(), names, ToByte(waiters.At(row, 0).Number()),
           waiters.At(row, 1).TextOrEmpty());
  }
  lines.DoubleRule();
}

void WaitersHead(ReportLines& lines, Session& session, const ReportSpan& span) {
  lines.Line("ОТЧЁТ  " + SpanText(span, session.Format()));
  lines.Line("по официантам в разрезе локализаций");
}

}  // namespace

void ReportGoodsByLocalisation(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span,
                               bool wide) {
  ReportLines lines(list, kReportWidth + (wide ? kWideColumns : 0));
  lines.Line("ОТЧЁТ  " + SpanText(span, session.Format()));
  lines.Line("по товарам в разрезе локализаций");
  const Figures figures(session, ReportPeriodBounds(span, session.Format()));
  lines.DoubleRule();
  lines.Line("Категория              " + std::string(wide ? kWideColumns : 0, ' ') + "со скидк. без скид.");
  lines.SingleRule();
  PlaceWithGoods(lines, figures, session, {kBarCategory, std::string(kBarLabel)}, wide);
  for (const Place& place : names.Places()) PlaceWithGoods(lines, figures, session, place, wide);
  lines.Empty();
  lines.DoubleRule();
}

void ReportWaitersPeriod(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span) {
  ReportLines lines(list);
  WaitersHead(lines, session, span);
  WaitersBlock(lines, session, names, span);
}

void ReportWaitersByDays(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span) {
  ReportLines lines(list);
  WaitersHead(lines, session, span);
  for (Date day = span.first; day != span.last; day = AddDays(day, 1)) {
    WaitersBlock(lines, session, names, {span.hour, day, AddDays(day, 1)});
  }
}

}  // namespace zrt
