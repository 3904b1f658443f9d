#include "reportsbridge.h"
#include "store/reports.h"

#include "bridgeinput.h"
#include "dashboardsummary.h"
#include "model/money.h"
#include "model/period.h"
#include "store/store.h"

#include <QVariantMap>

namespace {

QVariantList lineMaps(const std::vector<CategoryLine> &lines)
{
    QVariantList maps;
    maps.reserve(qsizetype(lines.size()));
    for (const CategoryLine &line : lines)
        maps.append(QVariantMap{
            {QStringLiteral("name"), line.name},
            {QStringLiteral("amountText"), Money::s(line.amount)},
            {QStringLiteral("share"), line.share},
            {QStringLiteral("percentText"), line.percentText},
            {QStringLiteral("budgetText"), line.limit ? QStringLiteral("budget ") + Money::s(*line.limit) : QString()},
            {QStringLiteral("over"), line.over},
        });
    return maps;
}

} // namespace

// The picker positions are ReportPeriod's cases.
static_assert(int(ReportPeriod::lastYear) == ReportsBridge::LastYear);

ReportsBridge::ReportsBridge(QObject *parent)
    : StoreBridge(parent)
{}

void ReportsBridge::setPeriod(Period period)
{
    if (period == m_period)
        return;
    m_period = period;
    reload();
    emit periodChanged();
}

QStringList ReportsBridge::periodLabels() const
{
    return BridgeInput::rawValues<ReportPeriod>();
}

int ReportsBridge::months() const
{
    return budgetMonths(reportPeriod(m_period));
}

void ReportsBridge::reload()
{
    PeriodReport report;
    QVariantList monthly;
    if (m_store) {
        const ReportPeriod period = reportPeriod(m_period);
        const Instant now = m_store->now();
        report = Reports::periodReport(m_store->linesWithin(periodRange(period, now)), m_store->book().categories,
                                       period, now);
        monthly = DashboardSummary::monthMaps(*m_store, DashboardSummary::chartMonths);
    } else {
        report.royaltyShare = royaltyShare({}, Decimal());
    }
    m_incomeText = Money::s(report.income);
    m_spendingText = Money::s(report.spending);
    m_netText = Money::signed_(report.income - report.spending);
    m_royaltyShareText = report.royaltyShare;
    m_incomeLines = lineMaps(report.incomeLines);
    m_spendingLines = lineMaps(report.spendingLines);
    m_monthly = std::move(monthly);
    emit changed();
}
