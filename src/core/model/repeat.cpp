#include "model/repeat.h"

#include <QDateTime>

std::optional<Instant> next(Repeat repeat, Instant after)
{
    const QDateTime local = after.toLocal();
    QDateTime following;
    switch (repeat) {
    case Repeat::once:
        return std::nullopt;
    case Repeat::weekly:
        following = local.addDays(7);
        break;
    case Repeat::biweekly:
        following = local.addDays(14);
        break;
    case Repeat::monthly:
        following = local.addMonths(1);
        break;
    case Repeat::quarterly:
        following = local.addMonths(3);
        break;
    case Repeat::yearly:
        following = local.addYears(1);
        break;
    }
    if (!following.isValid())
        return std::nullopt;
    // The money file holds the years 0000 to 9999; a schedule ends there.
    const Instant when = Instant::fromDateTime(following);
    if (!when.inIsoRange())
        return std::nullopt;
    return when;
}
