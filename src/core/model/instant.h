#pragma once

#include <QDateTime>
#include <QString>

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// A moment in time, as milliseconds since 1970-01-01T00:00:00Z.
//
// Kept as one integer so that a Book of a million transactions sorts and filters
// without touching time zones; days, months and years are worked out in local
// time only where a question is about the calendar (toLocal(), fromLocal()).
class Instant
{
public:
    constexpr Instant() = default;
    static constexpr Instant fromMSecs(std::int64_t msecs) { return Instant(msecs); }
    static constexpr Instant fromSecs(std::int64_t secs) { return Instant(secs * 1000); }
    static Instant now();
    static Instant fromDateTime(const QDateTime &dateTime);
    // Far enough to be later or earlier than any real date.
    static constexpr Instant distantFuture() { return Instant(64092211200000LL); } // 4001-01-01
    static constexpr Instant distantPast() { return Instant(-62135596800000LL); }  // 0001-01-01

    // "2025-03-04T09:00:00Z": UTC, whole seconds, as the money file writes it.
    std::string isoText() const;
    QString isoString() const { return QString::fromLatin1(isoText()); }
    // Reads "yyyy-MM-ddTHH:mm:ss[.fff](Z|+hh:mm|-hh:mm|+hhmm)"; nothing else, and
    // nothing that an offset moves out of inIsoRange().
    static std::optional<Instant> fromIso(std::string_view text);

    QDateTime toLocal() const { return QDateTime::fromMSecsSinceEpoch(m_msecs, Qt::LocalTime); }
    QDateTime toUtc() const { return QDateTime::fromMSecsSinceEpoch(m_msecs, Qt::UTC); }
    constexpr std::int64_t msecs() const { return m_msecs; }
    constexpr std::int64_t secs() const { return m_msecs >= 0 ? m_msecs / 1000 : -((-m_msecs + 999) / 1000); }
    // The same instant without its sub-second part, as it comes back from the file.
    constexpr Instant wholeSeconds() const { return fromSecs(secs()); }
    constexpr Instant addSecs(std::int64_t s) const { return Instant(m_msecs + s * 1000); }
    // Whether the instant falls in the years 0000 to 9999 in UTC: the range whose
    // isoText() fromIso() reads back, and so the only dates a money file can hold.
    constexpr bool inIsoRange() const { return m_msecs >= -62167219200000LL && m_msecs <= 253402300799999LL; }

    friend constexpr bool operator==(Instant, Instant) = default;
    friend constexpr auto operator<=>(Instant, Instant) = default;

private:
    constexpr explicit Instant(std::int64_t msecs)
        : m_msecs(msecs)
    {}
    std::int64_t m_msecs = 0;
};
