#include "fmt.h"

#include "model/money.h"

#include <cmath>

namespace {

// Whole milliseconds; a fraction from a JavaScript Date never matters for a date text.
Instant instantOf(double msecs)
{
    return Instant::fromMSecs(static_cast<std::int64_t>(std::floor(msecs)));
}

// NaN and infinities (an invalid JavaScript Date) have no date text.
bool isTime(double msecs)
{
    return std::isfinite(msecs) && std::abs(msecs) < 1e17;
}

} // namespace

Fmt::Fmt(QObject *parent)
    : QObject(parent)
{}

QString Fmt::money(const QString &decimalText) const
{
    const std::optional<Decimal> amount = Decimal::fromString(decimalText);
    return amount ? Money::s(*amount) : QString();
}

QString Fmt::signedMoney(const QString &decimalText) const
{
    const std::optional<Decimal> amount = Decimal::fromString(decimalText);
    return amount ? Money::signed_(*amount) : QString();
}

QString Fmt::parse(const QString &typed) const
{
    const std::optional<Decimal> amount = Money::parse(typed);
    return amount ? amount->toString() : QString();
}

bool Fmt::isNegative(const QString &decimalText) const
{
    const std::optional<Decimal> amount = Decimal::fromString(decimalText);
    return amount && amount->isNegative();
}

QString Fmt::date(double msecs) const
{
    return isTime(msecs) ? chDate(instantOf(msecs)) : QString();
}

QString Fmt::shortDate(double msecs) const
{
    return isTime(msecs) ? chShort(instantOf(msecs)) : QString();
}

QString Fmt::month(double msecs) const
{
    return isTime(msecs) ? chMonth(instantOf(msecs)) : QString();
}
