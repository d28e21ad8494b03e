#include "reports/report_period.h"

#include <fmt/format.h>

namespace zrt {

ReportPeriod ReportPeriodBounds(const ReportSpan& span, const RegionalFormat& format) {
  const auto sql_date = [&](const Date& date) { return CutSqlDate(format.DateText(date)); };
  const bool midnight = span.hour == 0;
  return {fmt::format("{} {:02}:00:00", sql_date(span.first), span.hour),
          fmt::format("{} {:02}:59:59", sql_date(midnight ? AddDays(span.last, -1) : span.last),
                      (midnight ? 24 : span.hour) - 1)};
}

std::string SpanText(const ReportSpan& span, const RegionalFormat& format) {
  return "с " + format.DateText(span.first) + " по " + format.DateText(AddDays(span.last, -1));
}

}  // namespace zrt
