#pragma once

#include "model/period.h"
#include "model/records.h"

#include <vector>

// The read-only report queries over a Book: what came in and went out over a range of
// dates, per category, per month, and the Reports screen's figures. Transfers are
// neither income nor spending. `now` is the clock's reading (Store::now()).
namespace Reports {

// Money in over the range: lines above zero that are not transfers.
Decimal income(const Book &book, const ClosedRange &range);
// Money out over the range, as a positive amount: lines below zero that are not transfers.
Decimal spending(const Book &book, const ClosedRange &range);
// The lines of income() summed per exact category text, largest first.
CategoryTotals incomeByCategory(const Book &book, const ClosedRange &range);
// The lines of spending() summed per exact category text (positive), largest first.
CategoryTotals spendingByCategory(const Book &book, const ClosedRange &range);
// Income and spending of the last `months` calendar months, the one holding `now`
// included, oldest first.
std::vector<MonthFlow> monthly(const Book &book, Instant now, int months);
// Every figure of the Reports screen for `period` as it stands at `now`.
PeriodReport periodReport(const Book &book, ReportPeriod period, Instant now);

} // namespace Reports
