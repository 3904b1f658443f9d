#pragma once

#include "model/instant.h"
#include "model/records.h"

#include <QString>
#include <QStringList>
#include <QUuid>
#include <QVariant>

#include <cmath>
#include <cstdint>
#include <optional>

// What QML hands the bridges, turned into record values, and the choices its pickers offer.
namespace BridgeInput {

// A record id as QML sees it: QUuid text without braces.
inline QString idText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces);
}

// A date given as milliseconds since the epoch; nothing for NaN, an empty value or a
// moment outside the years 0000 to 9999 (UTC), which the money file could not hold:
// 31 December 9999 in the evening in New York is already year 10000 there.
inline std::optional<Instant> instant(const QVariant &value)
{
    bool ok = false;
    const double msecs = value.toDouble(&ok);
    if (!ok || !std::isfinite(msecs) || std::abs(msecs) > 1e15)
        return std::nullopt;
    const Instant when = Instant::fromMSecs(static_cast<std::int64_t>(std::floor(msecs)));
    if (!when.inIsoRange())
        return std::nullopt;
    return when;
}

// An account id as the account picker gives it; empty or unreadable text is no account.
inline std::optional<QUuid> account(const QString &text)
{
    const QUuid id(text);
    if (id.isNull())
        return std::nullopt;
    return id;
}

// Every case of an enumeration as stored and shown, in picker order.
template <typename E> QStringList rawValues()
{
    QStringList texts;
    for (E value : allCases<E>())
        texts << rawValue(value);
    return texts;
}

} // namespace BridgeInput
