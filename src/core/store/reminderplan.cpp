#include "store/reminderplan.h"

#include "model/money.h"

#include <QDateTime>

#include <algorithm>
#include <array>

namespace {

constexpr std::int64_t msPerMinute = 60000;

QString title(const QString &name, int daysBefore)
{
    if (daysBefore == 0)
        return QStringLiteral("%1 is due today").arg(name);
    const QString unit = daysBefore == 1 ? QStringLiteral("day") : QStringLiteral("days");
    return QStringLiteral("%1 is due in %2 %3").arg(name, QString::number(daysBefore), unit);
}

QString body(const Bill &bill)
{
    return Money::s(bill.amount) +
           (bill.autopay ? QStringLiteral(" · autopay is on") : QStringLiteral(" · open Coinhall to mark it paid"));
}

// The trigger matches a local year, month, day, hour and minute, so seconds go.
Instant toMinute(Instant when)
{
    const std::int64_t ms = when.msecs();
    return Instant::fromMSecs(ms - ((ms % msPerMinute) + msPerMinute) % msPerMinute);
}

} // namespace

namespace ReminderPlan {

std::optional<Instant> nineOClock(const QDateTime &day)
{
    if (!day.isValid())
        return std::nullopt;
    const QDate date = day.toLocalTime().date();
    const QTime nine(9, 0);
    // A clock change can skip 09:00 (then the first wall-clock minute after the gap
    // counts) or repeat it (then the earlier of the two moments counts). Qt picks
    // neither reliably for such times, so each candidate is checked both ways.
    for (QTime wanted = nine; wanted >= nine; wanted = wanted.addSecs(60)) {
        const QDateTime candidate(date, wanted, Qt::LocalTime);
        if (!candidate.isValid() || candidate.date() != date || candidate.time() != wanted)
            continue;
        std::int64_t ms = candidate.toMSecsSinceEpoch();
        // Real clock changes are half an hour, an hour or two hours long.
        for (const int back : std::array{7200, 3600, 1800}) {
            const QDateTime earlier = QDateTime::fromMSecsSinceEpoch(ms - back * 1000LL, Qt::LocalTime);
            if (earlier.date() == date && earlier.time() == wanted) {
                ms = earlier.toMSecsSinceEpoch();
                break;
            }
        }
        return Instant::fromMSecs(ms);
    }
    return std::nullopt;
}

std::vector<ReminderRequest> requests(const std::vector<Bill> &bills, Instant now)
{
    std::vector<ReminderRequest> planned;
    const size_t covered = std::min(bills.size(), size_t(billsCovered));
    for (size_t i = 0; i < covered; ++i) {
        const Bill &bill = bills[i];
        std::vector<int> offsets{0};
        if (bill.remindDays >= 1)
            offsets.push_back(bill.remindDays);
        const QString id = bill.id.toString(QUuid::WithoutBraces).toUpper();
        for (const int daysBefore : offsets) {
            // Calendar days in local time: the due time of day stays across a clock change.
            const QDateTime base = bill.due.toLocal().addDays(-daysBefore);
            if (!base.isValid())
                continue;
            const Instant fire = nineOClock(base).value_or(Instant::fromDateTime(base));
            if (fire <= now)
                continue;
            planned.push_back({id + QLatin1Char('-') + QString::number(daysBefore), title(bill.name, daysBefore),
                               body(bill), toMinute(fire)});
        }
    }
    return planned;
}

} // namespace ReminderPlan
