#pragma once

#include <string>

#include "core/dates.h"
#include "core/regional_format.h"

namespace zrt {

/// What the operator asks a report for: the shifts from the one that begins on First to the one that closes on Last, a
/// later day, at the hour of the shift change.
struct ReportSpan {
  int hour = 0;  ///< 0 to 23
  Date first;
  Date last;
};

/// A period as the pair of texts that stand in BETWEEN, both ends within.
struct ReportPeriod {
  std::string from;  ///< 'yyyy-mm-dd hh:00:00'
  std::string to;    ///< 'yyyy-mm-dd hh:59:59', the second before the last shift closes
};

/// The period of `span`. With the shift change at midnight it ends on the day before the last one.
ReportPeriod ReportPeriodBounds(const ReportSpan& span, const RegionalFormat& format);

/// "с dd.mm.yyyy по dd.mm.yyyy" of the days on which the first and the last shift begin.
std::string SpanText(const ReportSpan& span, const RegionalFormat& format);

}  // namespace zrt
