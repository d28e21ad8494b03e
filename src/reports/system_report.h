#pragma once

#include "core/session.h"
#include "reports/kat_names.h"
#include "reports/report_period.h"
#include "ui/controls.h"

namespace zrt {

/// The summary of a run of shifts: orders, takings, what stays unpaid, surcharges and discounts, and how the takings
/// divide over the places that sell. One block for the whole span. Throws DatabaseError; what stands in the list by
/// then stays.
void ReportSystemPeriod(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span);

/// The same with a block for each shift.
void ReportSystemByDays(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span);

}  // namespace zrt
