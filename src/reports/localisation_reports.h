#pragma once

#include "core/session.h"
#include "reports/kat_names.h"
#include "reports/report_period.h"
#include "ui/controls.h"

namespace zrt {

/// What each place sold, product by product; `wide` gives the names 26 characters more. Throws DatabaseError; what
/// stands in the list by then stays, as with all reports.
void ReportGoodsByLocalisation(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span,
                               bool wide);

/// What each waiter took in each place over the whole span. A waiter's code must fit one byte: throws OverflowError.
void ReportWaitersPeriod(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span);

/// The same for each shift. The blocks carry no dates: they stand in the order of the days.
void ReportWaitersByDays(Session& session, const KatNames& names, ListBox& list, const ReportSpan& span);

}  // namespace zrt
