#pragma once

#include "model/period.h"
#include "model/records.h"

#include <QByteArray>

#include <span>
#include <vector>

// A line of a year not yet cleared at the bank: counted in the year's figures and
// listed apart, so the accountant sees what may still change.
struct PendingLine
{
    Instant date;
    QString payee;
    QString category;
    Decimal amount; // signed, as the line holds it
};

// The money to set aside for taxes over a range of dates (Reports::setAside).
struct SetAside
{
    Decimal percent;       // of the counted income; 0 when nothing is set aside
    Decimal countedIncome; // income in the categories that count (Category::countsForSetAside)
    Decimal due;           // percent of the counted income, to the cent (half to even)
    Decimal paid;          // spending filed under "Taxes", positive
    // What is still to put aside: never below zero, since paying more than was due
    // leaves nothing to put aside; the excess is overpaid().
    Decimal stillToPut() const { return paid < due ? due - paid : Decimal(); }
    Decimal overpaid() const { return due < paid ? paid - due : Decimal(); }
};

// The figures of one calendar year for the accountant (Reports::yearReport).
struct YearReport
{
    int year = 0;
    ClosedRange range;
    Decimal income;
    Decimal spending; // positive
    Decimal net() const { return income - spending; }
    CategoryTotals incomeByCategory;   // largest first
    CategoryTotals spendingByCategory; // positive, largest first
    CategoryTotals incomeByPayer;      // every payer, by exact payee text, largest first
    CategoryTotals royaltiesByPayer;   // the income lines filed under "Royalties" only
    Decimal paidInTaxes;               // spending filed under "Taxes"
    int transferLines = 0;             // left out of every figure above
    Decimal transfersIn;               // their money in, and out (positive)
    Decimal transfersOut;
    std::vector<PendingLine> pending; // oldest first, transfers left out
    std::vector<MonthFlow> months;    // January to December
    std::optional<SetAside> setAside; // the year's; absent when the Book sets nothing aside
};

// What the set-aside percent field holds once typed: the percent (absent for "0" or
// nothing, which turns setting aside off), or why it cannot be taken.
struct SetAsidePercentInput
{
    std::optional<Decimal> percent;
    QString error; // empty when the text was taken
};

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

// The calendar years (local time) that hold at least one line, newest first.
std::vector<int> yearsWithLines(std::span<const Transaction> lines);
// The year's report. The lines may come in any order.
YearReport yearReport(std::span<const Transaction> lines, int year);
// The year's report of a Book, with the money set aside for taxes when it sets some aside.
YearReport yearReport(const Book &book, int year);
// The same figures as CSV for a spreadsheet: "Section,Date,Name,Amount", one figure a
// row, amounts as plain decimal text, months and pending lines dated yyyy-MM(-dd); the
// set-aside's percent is a row of its own, its number without "%".
QByteArray yearCsv(const YearReport &report);

// The set-aside figures over the range at the Book's percent (absent: 0). An income
// line counts by its category's choice; a category the Book does not list counts by
// the usual choice for its name.
SetAside setAside(std::span<const Transaction> lines, const std::vector<Category> &categories,
                  const std::optional<Decimal> &percent, const ClosedRange &range);
// Reads the set-aside percent as typed: a number from 0 to 100, "%" allowed after it.
SetAsidePercentInput readSetAsidePercent(const QString &typed);

} // namespace Reports
