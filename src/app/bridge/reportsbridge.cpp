#include "reportsbridge.h"

#include "bridgeinput.h"
#include "dashboardsummary.h"
#include "model/money.h"
#include "model/period.h"
#include "store/store.h"

namespace {

QVariantList rowList(const CategoryTotals &rows)
{
    QVariantList list;
    list.reserve(qsizetype(rows.size()));
    for (const auto &[name, amount] : rows)
        list.append(QVariantMap{{QStringLiteral("name"), name}, {QStringLiteral("amount"), amount.toString()}});
    return list;
}

// Whole percent of `amount` in `total`, truncated toward zero. Worked out exactly:
// through a double, 0.29 of 1 would come out as 28%.
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

} // namespace

ReportsBridge::ReportsBridge(QObject *parent)
    : QObject(parent)
    , m_store(this, [this] { reload(); })
{}

void ReportsBridge::setStore(QObject *store)
{
    if (m_store.set(store))
        emit storeChanged();
}

void ReportsBridge::setPeriod(int period)
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
    Decimal income, spending;
    CategoryTotals incomeRows, spendingRows;
    QVariantMap budgets;
    QVariantList monthly;
    if (m_store) {
        const ClosedRange range = m_store->periodRange(reportPeriod(m_period));
        income = m_store->income(range);
        spending = m_store->spending(range);
        incomeRows = m_store->incomeByCategory(range);
        spendingRows = m_store->spendingByCategory(range);
        for (const Category &c : m_store->book().categories)
            if (c.budget && !budgets.contains(c.name))
                budgets.insert(c.name, c.budget->toString());
        monthly = DashboardSummary::monthMaps(*m_store, DashboardSummary::chartMonths);
    }
    m_incomeText = Money::s(income);
    m_spendingText = Money::s(spending);
    m_netText = Money::signed_(income - spending);
    m_royaltyShareText = royaltyShare(incomeRows, income);
    m_income = income.toString();
    m_spending = spending.toString();
    m_incomeRows = rowList(incomeRows);
    m_spendingRows = rowList(spendingRows);
    m_budgets = std::move(budgets);
    m_monthly = std::move(monthly);
    emit changed();
}

CategoryShares::CategoryShares(QObject *parent)
    : QObject(parent)
{}

QVariantList CategoryShares::lines(const QVariantList &rows, const QString &total, const QVariantMap &budgets,
                                   int months) const
{
    const Decimal sum = Decimal::fromString(total).value_or(Decimal());
    QVariantList lines;
    lines.reserve(rows.size());
    for (const QVariant &row : rows) {
        const QVariantMap fields = row.toMap();
        const QString name = fields.value(QStringLiteral("name")).toString();
        const Decimal amount =
            Decimal::fromString(fields.value(QStringLiteral("amount")).toString()).value_or(Decimal());
        QVariantMap line{
            {QStringLiteral("name"), name},
            {QStringLiteral("amountText"), Money::s(amount)},
            {QStringLiteral("share"), sum > Decimal() ? amount.toDouble() / sum.toDouble() : 0.0},
            {QStringLiteral("percentText"), percentText(amount, sum)},
            {QStringLiteral("budgetText"), QString()},
            {QStringLiteral("over"), false},
        };
        const auto budget = budgets.constFind(name);
        if (budget != budgets.cend()) {
            if (const std::optional<Decimal> monthly = Decimal::fromString(budget->toString())) {
                const Decimal limit = *monthly * Decimal(months);
                line[QStringLiteral("budgetText")] = QStringLiteral("budget ") + Money::s(limit);
                line[QStringLiteral("over")] = limit < amount;
            }
        }
        lines.append(line);
    }
    return lines;
}
