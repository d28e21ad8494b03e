#pragma once

#include "core/session.h"
#include "reports/report_period.h"
#include "ui/controls.h"
#include "ui/desktop.h"

namespace zrt {

/// Every order of the span, waiter by waiter, with its sum, payment and discount, then the takings of all and what
/// stays unpaid. Says so when there is nothing. The totals are kept in single precision: over a long span the last
/// place may be off. Throws DatabaseError; what stands in the list by then stays.
void ReportWaitersFull(Session& session, Desktop& desktop, ListBox& list, const ReportSpan& span);

}  // namespace zrt
