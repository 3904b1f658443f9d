#include "model/period.h"

#include <QDate>
#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace {

Instant firstInstant(QDate day)
{
    return Instant::fromDateTime(day.startOfDay());
}

// From the start of `first` to the last millisecond before the start of `next`.
ClosedRange between(QDate first, QDate next)
{
    return {firstInstant(first), Instant::fromMSecs(firstInstant(next).msecs() - 1)};
}

ClosedRange yearOf(int year)
{
    return between(QDate(year, 1, 1), QDate(year + 1, 1, 1));
}

} // namespace

namespace Calendar {

Instant startOfDay(Instant when, int daysLater)
{
    return firstInstant(when.toLocal().date().addDays(daysLater));
}

Instant addMonths(Instant when, int months)
{
    return Instant::fromDateTime(when.toLocal().addMonths(months));
}

ClosedRange monthRange(Instant when)
{
    const QDate day = when.toLocal().date();
    const QDate first(day.year(), day.month(), 1);
    return between(first, first.addMonths(1));
}

ClosedRange yearRange(Instant when)
{
    return yearOf(when.toLocal().date().year());
}

} // namespace Calendar

ReportPeriod reportPeriod(int index)
{
    for (const auto &[period, label] : EnumTexts<ReportPeriod>::table)
        if (int(period) == index)
            return period;
    return ReportPeriod::thisMonth;
}

ClosedRange periodRange(ReportPeriod period, Instant now)
{
    switch (period) {
    case ReportPeriod::thisMonth:
        break;
    case ReportPeriod::lastMonth:
        return Calendar::monthRange(Calendar::addMonths(now, -1));
    case ReportPeriod::thisYear:
        return {Calendar::yearRange(now).lower, Instant::distantFuture()};
    case ReportPeriod::last12Months:
        return {Calendar::monthRange(Calendar::addMonths(now, -11)).lower, Calendar::monthRange(now).upper};
    case ReportPeriod::lastYear:
        return yearOf(now.toLocal().date().year() - 1);
    }
    return Calendar::monthRange(now);
}

int budgetMonths(ReportPeriod period)
{
    return period == ReportPeriod::thisMonth || period == ReportPeriod::lastMonth ? 1 : 12;
}

QString royaltyShare(const CategoryTotals &rows, const Decimal &total)
{
    if (total <= Decimal())
        return QStringLiteral("—");
    Decimal royalties;
    for (const auto &[name, amount] : rows) {
        if (name == QLatin1String("Royalties")) {
            royalties = amount;
            break;
        }
    }
    // std::round goes half away from zero; printing the rounded double (rather than
    // casting it to an integer) keeps absurd shares from overflowing, and adding
    // zero turns a rounded -0 into 0.
    const double percent = std::round((royalties / total).toDouble() * 100) + 0.0;
    return QString::number(percent, 'f', 0) + QLatin1Char('%');
}

QString percentText(const Decimal &amount, const Decimal &total)
{
    if (total <= Decimal())
        return QStringLiteral("0%");
    const Decimal exact = amount * Decimal(100) / total;
    Decimal whole = exact.rounded(0);
    if (!exact.isNegative() && whole > exact)
        whole -= Decimal(1);
    else if (exact.isNegative() && whole < exact)
        whole += Decimal(1);
    return whole.toString() + QLatin1Char('%');
}

std::vector<CategoryLine> categoryLines(const CategoryTotals &rows, const Decimal &total,
                                        const std::vector<std::pair<QString, Decimal>> &budgets, int months)
{
    std::vector<CategoryLine> lines;
    lines.reserve(rows.size());
    for (const auto &[name, amount] : rows) {
        CategoryLine line{name, amount, total > Decimal() ? amount.toDouble() / total.toDouble() : 0.0,
                          percentText(amount, total)};
        const auto budget =
            std::find_if(budgets.begin(), budgets.end(), [&line](const auto &b) { return b.first == line.name; });
        if (budget != budgets.end()) {
            line.limit = budget->second * Decimal(months);
            line.over = *line.limit < amount;
        }
        lines.push_back(std::move(line));
    }
    return lines;
}
