#pragma once

#include "model/decimal.h"
#include "model/instant.h"
#include "model/records.h"

#include <QString>

#include <array>
#include <optional>
#include <utility>
#include <vector>

// A span of time that includes both of its ends.
struct ClosedRange
{
    Instant lower;
    Instant upper;

    // Whether `when` lies between the ends, both included.
    constexpr bool contains(Instant when) const { return lower <= when && when <= upper; }
    friend constexpr bool operator==(const ClosedRange &, const ClosedRange &) = default;
};

// Days, months and years as the user's clock shows them (local time).
//
// A range of whole days or months ends on the last millisecond before the next one
// starts: dates kept in whole seconds end at 23:59:59, and a line entered at
// 23:59:59.5 still falls inside its day rather than between two months.
namespace Calendar {

// The first instant of the local day holding `when`, or of the day `daysLater` after it.
Instant startOfDay(Instant when, int daysLater = 0);
// `when` moved by whole calendar months, time of day kept; the 31st lands on a
// shorter month's last day.
Instant addMonths(Instant when, int months);
// The calendar month holding `when`.
ClosedRange monthRange(Instant when);
// The calendar year holding `when`.
ClosedRange yearRange(Instant when);

} // namespace Calendar

// The periods of the Reports screen, in picker order.
enum class ReportPeriod { thisMonth, lastMonth, thisYear, last12Months, lastYear };
template <> struct EnumTexts<ReportPeriod>
{
    // The picker's labels; shown, never stored.
    static constexpr std::array<std::pair<ReportPeriod, const char *>, 5> table{{
        {ReportPeriod::thisMonth, "This month"},
        {ReportPeriod::lastMonth, "Last month"},
        {ReportPeriod::thisYear, "This year"},
        {ReportPeriod::last12Months, "Last 12 months"},
        {ReportPeriod::lastYear, "Last year"},
    }};
};

// The period at a picker position 0-4; any other number is "This month".
ReportPeriod reportPeriod(int index);
// The dates a period covers as seen at `now`. "This year" has no upper end: lines
// dated later this year or in later years count too.
ClosedRange periodRange(ReportPeriod period, Instant now);
// How many months of budget a period's spending is compared with: 1 for the two
// month periods, 12 for the others (also for a year not yet over).
int budgetMonths(ReportPeriod period);

// A period's income or spending split by category name, largest first.
using CategoryTotals = std::vector<std::pair<QString, Decimal>>;

// One month of the dashboard chart.
struct MonthFlow
{
    Instant month; // the month's first instant
    Decimal in;    // income, as Store::income gives it
    Decimal out;   // spending, positive
    friend bool operator==(const MonthFlow &, const MonthFlow &) = default;
};

// The share of the row named "Royalties" in `total` as whole percent text, rounded
// half away from zero ("38%"); "—" when `total` is not above zero.
QString royaltyShare(const CategoryTotals &rows, const Decimal &total);

// One category of a report list as the Reports screen draws it and the command line prints it.
struct CategoryLine
{
    QString name;
    Decimal amount;
    double share = 0;             // of the list's total, 0 to 1, for the bar; 0 when the total is not above zero
    QString percentText;          // whole percent of the total, truncated toward zero: "37%"
    std::optional<Decimal> limit; // the monthly budget times the period's budget months; absent without one
    bool over = false;            // strictly above the limit
    friend bool operator==(const CategoryLine &, const CategoryLine &) = default;
};

// Whole percent of `amount` in `total`, truncated toward zero, worked out exactly
// ("0%" when the total is not above zero): through a double, 0.29 of 1 would be 28%.
QString percentText(const Decimal &amount, const Decimal &total);

// The rows of a category list with their shares of `total` and, for a category named
// in `budgets` (monthly budgets), its limit over `months` months.
std::vector<CategoryLine> categoryLines(const CategoryTotals &rows, const Decimal &total,
                                        const std::vector<std::pair<QString, Decimal>> &budgets, int months);

// The figures of the Reports screen for one period, as the window and the command line show them.
struct PeriodReport
{
    ReportPeriod period = ReportPeriod::thisMonth;
    ClosedRange range;
    Decimal income;
    Decimal spending; // positive
    QString royaltyShare;
    std::vector<CategoryLine> incomeLines;   // largest first, no budgets
    std::vector<CategoryLine> spendingLines; // largest first, with the spending budgets
};
