#include "calendarmonth.h"

#include "model/money.h"
#include "store/store.h"

#include <QDateTime>
#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace CalendarGrid {

namespace {

QString toneName(Tone tone)
{
    switch (tone) {
    case Tone::bill:
        return QStringLiteral("bill");
    case Tone::overdueBill:
        return QStringLiteral("overdue");
    case Tone::royalty:
        return QStringLiteral("royalty");
    case Tone::moneyIn:
        return QStringLiteral("in");
    case Tone::moneyOut:
        return QStringLiteral("out");
    }
    return {};
}

} // namespace

int leadingBlanks(QDate first, Qt::DayOfWeek firstWeekday)
{
    return (first.dayOfWeek() - int(firstWeekday) + 7) % 7;
}

Month month(const Store &store, Instant inMonth, Qt::DayOfWeek firstWeekday)
{
    Month m;
    m.range = Calendar::monthRange(inMonth);
    const QDate first = m.range.lower.toLocal().date();
    m.leadingBlanks = leadingBlanks(first, firstWeekday);
    const int count = first.daysInMonth();

    // starts[k] is the first instant of day k, starts[count] that of the next month;
    // local days are not all 24 hours long, so each is looked up rather than computed.
    std::vector<Instant> starts;
    starts.reserve(size_t(count) + 1);
    for (int k = 0; k <= count; ++k)
        starts.push_back(Calendar::startOfDay(m.range.lower, k));
    auto dayOf = [&starts](Instant when) {
        return size_t(std::upper_bound(starts.begin(), starts.end(), when) - starts.begin()) - 1;
    };

    m.days.resize(size_t(count));
    for (int k = 0; k < count; ++k)
        m.days[size_t(k)].date = first.addDays(k);

    // Every due date of the month from each bill's current one on, not only the next.
    for (const Bill &bill : store.activeBills()) {
        const Tone tone = store.isOverdue(bill) ? Tone::overdueBill : Tone::bill;
        size_t listedOn = size_t(-1);
        for (Instant due : store.dueDates(bill, m.range)) {
            m.billsDue += bill.amount;
            const size_t k = dayOf(due);
            if (k != listedOn)
                m.days[k].items.push_back({bill.name, bill.amount, tone});
            listedOn = k;
        }
    }

    for (const Royalty &royalty : store.pendingRoyalties()) {
        if (!m.range.contains(royalty.expectedDate))
            continue;
        m.royaltiesDue += royalty.expectedAmount;
        m.days[dayOf(royalty.expectedDate)].items.push_back({royalty.payer, royalty.expectedAmount, Tone::royalty});
    }

    // One pass over the ledger comparing instants only. The list is kept newest first,
    // but an edited date stays where it was until the next sort, so no early stop.
    std::vector<Decimal> in(static_cast<size_t>(count)), out(static_cast<size_t>(count));
    for (const Transaction &t : store.book().transactions) {
        if (!m.range.contains(t.date) || t.kind == TxKind::transfer || t.amount.isZero())
            continue;
        const size_t k = dayOf(t.date);
        (t.amount.isNegative() ? out[k] : in[k]) += t.amount;
    }
    for (size_t k = 0; k < size_t(count); ++k) {
        if (!in[k].isZero())
            m.days[k].items.push_back({QStringLiteral("Money in"), in[k], Tone::moneyIn});
        if (!out[k].isZero())
            m.days[k].items.push_back({QStringLiteral("Money out"), out[k], Tone::moneyOut});
    }
    return m;
}

int itemsListed(int count, int lines)
{
    if (count <= std::min(itemsShown, lines))
        return count;
    return std::clamp(lines - 1, 0, itemsShown);
}

QString helpText(const Day &day)
{
    QStringList lines;
    for (const Item &item : day.items)
        lines << item.title + QStringLiteral(": ") + Money::s(item.amount);
    return lines.join(QLatin1Char('\n'));
}

QString headerText(const Month &month)
{
    return QStringLiteral("Bills this month: ") + Money::s(month.billsDue) +
           QStringLiteral("   ·   Royalties expected: ") + Money::s(month.royaltiesDue);
}

} // namespace CalendarGrid

CalendarMonth::CalendarMonth(QObject *parent)
    : StoreBridge(parent)
    , m_firstDay(QLocale().firstDayOfWeek())
{
    showToday();
}

void CalendarMonth::linked()
{
    // A calendar starts at the current month by its Store's clock.
    const QDate now = currentDay();
    m_shown = QDate(now.year(), now.month(), 1);
}

void CalendarMonth::setFirstDayOfWeek(int day)
{
    if (day < Qt::Monday || day > Qt::Sunday) {
        qWarning("CalendarMonth: %d is no weekday (1 Monday to 7 Sunday)", day);
        return;
    }
    if (day == int(m_firstDay))
        return;
    m_firstDay = Qt::DayOfWeek(day);
    reload();
}

void CalendarMonth::setLines(int lines)
{
    lines = std::clamp(lines, 1, CalendarGrid::fullLines);
    if (lines == m_lines)
        return;
    m_lines = lines;
    reload();
}

void CalendarMonth::step(int months)
{
    m_shown = m_shown.addMonths(months);
    reload();
}

void CalendarMonth::showToday()
{
    const QDate now = currentDay();
    m_shown = QDate(now.year(), now.month(), 1);
    reload();
}

void CalendarMonth::showMonthOf(double msecs)
{
    const QDate day = QDateTime::fromMSecsSinceEpoch(qint64(msecs), Qt::LocalTime).date();
    if (!day.isValid())
        return;
    m_shown = QDate(day.year(), day.month(), 1);
    reload();
}

QDate CalendarMonth::currentDay() const
{
    return (m_store ? m_store->now() : Instant::now()).toLocal().date();
}

void CalendarMonth::reload()
{
    const Instant first = Instant::fromDateTime(m_shown.startOfDay());
    if (m_store) {
        m_grid = CalendarGrid::month(*m_store, first, m_firstDay);
    } else {
        // Without a Store the grid is still drawn, with no items.
        m_grid = {};
        m_grid.range = Calendar::monthRange(first);
        m_grid.leadingBlanks = CalendarGrid::leadingBlanks(m_shown, m_firstDay);
        for (int k = 0; k < m_shown.daysInMonth(); ++k)
            m_grid.days.push_back({m_shown.addDays(k), {}});
    }

    const QDate now = currentDay();
    m_today = (now.year() == m_shown.year() && now.month() == m_shown.month()) ? now.day() : 0;
    m_title = chMonth(first);
    m_header = CalendarGrid::headerText(m_grid);

    m_days.clear();
    m_days.reserve(qsizetype(m_grid.days.size()));
    for (const CalendarGrid::Day &day : m_grid.days) {
        QVariantList items;
        for (const CalendarGrid::Item &item : day.items)
            items << QVariantMap{{QStringLiteral("title"), item.title},
                                 {QStringLiteral("amountText"), Money::s(item.amount.magnitude())},
                                 {QStringLiteral("tone"), CalendarGrid::toneName(item.tone)}};
        const int shown = CalendarGrid::itemsListed(int(items.size()), m_lines);
        const int more = int(items.size()) - shown;
        m_days << QVariantMap{
            {QStringLiteral("day"), day.date.day()},
            {QStringLiteral("date"), double(Instant::fromDateTime(day.date.startOfDay()).msecs())},
            {QStringLiteral("today"), day.date.day() == m_today},
            {QStringLiteral("items"), items},
            {QStringLiteral("shown"), shown},
            {QStringLiteral("moreText"), more > 0 ? QStringLiteral("+%1 more").arg(more) : QString()},
            {QStringLiteral("help"), CalendarGrid::helpText(day)},
        };
    }
    emit changed();
}
