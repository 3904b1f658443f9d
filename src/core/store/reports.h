#pragma once

#include "model/period.h"
#include "model/records.h"

#include <span>
#include <vector>

// The read-only report queries over a Book's lines (all of them, or the slice that
// Store::linesWithin() finds for the range): what came in and went out over a range of
// dates, per category, per month, and the Reports screen's figures. Transfers are
// neither income nor spending. `now` is the clock's reading (Store::now()).
namespace Reports {

// Money in over the range: lines above zero that are not transfers.
Decimal income(std::span<const Transaction> lines, const ClosedRange &range);
// Money out over the range, as a positive amount: lines below zero that are not transfers.
Decimal spending(std::span<const Transaction> lines, const ClosedRange &range);
// The lines of income() summed per exact category text, largest first.
CategoryTotals incomeByCategory(std::span<const Transaction> lines, const ClosedRange &range);
// The lines of spending() summed per exact category text (positive), largest first.
CategoryTotals spendingByCategory(std::span<const Transaction> lines, const ClosedRange &range);
// Income and spending of the last `months` calendar months, the one holding `now`
// included, oldest first.
std::vector<MonthFlow> monthly(std::span<const Transaction> lines, Instant now, int months);
// The dates those months cover (`months` at least 1).
ClosedRange lastMonths(Instant now, int months);
// Every figure of the Reports screen for `period` as it stands at `now`, from lines
// that hold at least the period's and the Book's categories (for their budgets).
PeriodReport periodReport(std::span<const Transaction> lines, const std::vector<Category> &categories,
                          ReportPeriod period, Instant now);

} // namespace Reports
