#include "dashboardsummary.h"
#include "store/reports.h"

#include "model/money.h"
#include "royaltiesbridge.h"
#include "store/store.h"

#include <QLocale>
#include <QVariantMap>

DashboardSummary::DashboardSummary(QObject *parent)
    : StoreBridge(parent)
{
    reload();
}

QVariantList DashboardSummary::monthMaps(const Store &store, int count)
{
    const QLocale locale;
    QVariantList months;
    const Instant now = store.now();
    const std::span<const Transaction> lines =
        count > 0 ? store.linesWithin(Reports::lastMonths(now, count)) : std::span<const Transaction>();
    for (const MonthFlow &flow : Reports::monthly(lines, now, count)) {
        months << QVariantMap{
            {QStringLiteral("month"), double(flow.month.msecs())},
            {QStringLiteral("monthText"), locale.toString(flow.month.toLocal().date(), QStringLiteral("MMM"))},
            {QStringLiteral("in"), flow.in.toDouble()},
            {QStringLiteral("out"), flow.out.toDouble()},
            {QStringLiteral("inText"), Money::s(flow.in)},
            {QStringLiteral("outText"), Money::s(flow.out)},
        };
    }
    return months;
}

void DashboardSummary::reload()
{
    Decimal total, in, out, royalties;
    SetAside setAside;
    m_setAsideShown = false;
    m_accounts.clear();
    m_royalties.clear();
    m_months.clear();
    if (m_store) {
        total = m_store->totalBalance();
        // One month range shared by the three monthly tiles.
        const ClosedRange month = Calendar::monthRange(m_store->now());
        in = Reports::income(m_store->linesWithin(month), month);
        out = Reports::spending(m_store->linesWithin(month), month);
        royalties = m_store->royaltiesReceivedThisYear();

        const Instant now = m_store->now();
        for (const Account &account : m_store->activeAccounts()) {
            const Decimal balance = m_store->balance(account, now);
            m_accounts << QVariantMap{
                {QStringLiteral("id"), account.id.toString(QUuid::WithoutBraces)},
                {QStringLiteral("name"), account.name},
                {QStringLiteral("icon"), iconName(account.kind)},
                {QStringLiteral("balanceText"), Money::s(balance)},
                {QStringLiteral("negative"), balance.isNegative()},
            };
        }

        for (const Royalty &royalty : m_store->pendingRoyalties()) {
            if (m_royalties.size() == royaltiesShown)
                break;
            QVariantMap map = RoyaltiesBridge::royaltyMap(royalty);
            map.insert(QStringLiteral("expectedLine"), QStringLiteral("Expected ") + chShort(royalty.expectedDate));
            m_royalties << map;
        }

        m_months = monthMaps(*m_store, chartMonths);

        const ClosedRange year = Calendar::yearRange(now);
        const std::optional<Decimal> &percent = m_store->book().setAsidePercent;
        setAside = Reports::setAside(m_store->linesWithin(year), m_store->book().categories, percent, year);
        m_setAsideShown = percent.has_value();
    }
    m_overpaid = setAside.overpaid().signum() > 0;
    m_setAsidePercentText = setAside.percent.toString() + QLatin1Char('%');
    m_setAsideDueText = Money::s(setAside.due);
    m_setAsidePaidText = Money::s(setAside.paid);
    m_setAsideLeftText = Money::s(m_overpaid ? setAside.overpaid() : setAside.stillToPut());
    const Decimal net = in - out;
    m_totalText = Money::s(total);
    m_inText = Money::s(in);
    m_outText = Money::s(out);
    m_netText = Money::s(net);
    m_netNegative = net.isNegative();
    m_royaltiesText = Money::s(royalties);
    emit changed();
}
