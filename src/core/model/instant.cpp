#include "model/instant.h"

#include <cstdio>

// The money file holds two dates per transaction, so reading and writing them is
// plain civil-calendar arithmetic on integers (proleptic Gregorian, UTC) rather
// than a trip through QDateTime and its time-zone machinery.

namespace {

constexpr std::int64_t msPerDay = 86400000;

constexpr std::int64_t floorDiv(std::int64_t a, std::int64_t b)
{
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

// Days since 1970-01-01 of a civil date (month 1..12).
constexpr std::int64_t daysFromCivil(std::int64_t y, int m, int d)
{
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = static_cast<unsigned>((153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1);
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

struct Civil
{
    std::int64_t year;
    int month;
    int day;
};

constexpr Civil civilFromDays(std::int64_t z)
{
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const auto doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    const int d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    const int m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    return {static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2), m, d};
}

static_assert(daysFromCivil(1970, 1, 1) == 0);
static_assert(daysFromCivil(2000, 3, 1) == 11017);
static_assert(civilFromDays(-1).year == 1969 && civilFromDays(-1).day == 31);

constexpr bool isLeap(std::int64_t y)
{
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

constexpr int daysInMonth(std::int64_t y, int m)
{
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && isLeap(y) ? 29 : days[m - 1];
}

// Reads exactly n digits at p; -1 if any is not a digit.
int digits(const char *p, int n)
{
    int v = 0;
    for (int i = 0; i < n; ++i) {
        if (p[i] < '0' || p[i] > '9')
            return -1;
        v = v * 10 + (p[i] - '0');
    }
    return v;
}

void put2(char *p, int v)
{
    p[0] = static_cast<char>('0' + v / 10);
    p[1] = static_cast<char>('0' + v % 10);
}

} // namespace

Instant Instant::now()
{
    return Instant(QDateTime::currentMSecsSinceEpoch());
}

Instant Instant::fromDateTime(const QDateTime &dateTime)
{
    return Instant(dateTime.toMSecsSinceEpoch());
}

std::string Instant::isoText() const
{
    const std::int64_t days = floorDiv(m_msecs, msPerDay);
    const auto secondOfDay = static_cast<int>((m_msecs - days * msPerDay) / 1000);
    const Civil c = civilFromDays(days);
    const int hour = secondOfDay / 3600, minute = secondOfDay / 60 % 60, second = secondOfDay % 60;
    if (c.year < 0 || c.year > 9999) {
        char buffer[48];
        const int n = std::snprintf(buffer, sizeof buffer, "%04lld-%02d-%02dT%02d:%02d:%02dZ",
                                    static_cast<long long>(c.year), c.month, c.day, hour, minute, second);
        return std::string(buffer, static_cast<std::size_t>(n));
    }
    std::string out = "0000-00-00T00:00:00Z";
    const int y = static_cast<int>(c.year);
    put2(out.data(), y / 100);
    put2(out.data() + 2, y % 100);
    put2(out.data() + 5, c.month);
    put2(out.data() + 8, c.day);
    put2(out.data() + 11, hour);
    put2(out.data() + 14, minute);
    put2(out.data() + 17, second);
    return out;
}

std::optional<Instant> Instant::fromIso(std::string_view text)
{
    // yyyy-MM-ddTHH:mm:ss is 19 characters; the shortest zone, "Z", makes 20.
    if (text.size() < 20)
        return std::nullopt;
    const char *p = text.data();
    if (p[4] != '-' || p[7] != '-' || p[10] != 'T' || p[13] != ':' || p[16] != ':')
        return std::nullopt;
    const int year = digits(p, 4), month = digits(p + 5, 2), day = digits(p + 8, 2);
    const int hour = digits(p + 11, 2), minute = digits(p + 14, 2), second = digits(p + 17, 2);
    if (year < 0 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) || hour < 0 || hour > 23 ||
        minute < 0 || minute > 59 || second < 0 || second > 59)
        return std::nullopt;

    std::size_t i = 19;
    int millis = 0;
    if (text[i] == '.') {
        const std::size_t start = ++i;
        for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
            if (i - start < 3) // finer than a millisecond is dropped
                millis = millis * 10 + (text[i] - '0');
        if (i == start)
            return std::nullopt;
        for (std::size_t n = i - start; n < 3; ++n)
            millis *= 10;
    }

    int offsetMinutes = 0;
    const std::string_view zone = text.substr(std::min(i, text.size()));
    if (zone == "Z") {
        offsetMinutes = 0;
    } else if ((zone.size() == 6 && zone[3] == ':') || zone.size() == 5) {
        if (zone[0] != '+' && zone[0] != '-')
            return std::nullopt;
        const int hh = digits(zone.data() + 1, 2);
        const int mm = digits(zone.data() + zone.size() - 2, 2);
        if (hh < 0 || hh > 23 || mm < 0 || mm > 59)
            return std::nullopt;
        offsetMinutes = (zone[0] == '-' ? -1 : 1) * (hh * 60 + mm);
    } else {
        return std::nullopt;
    }

    const std::int64_t secs =
        daysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second - offsetMinutes * 60;
    const Instant when(secs * 1000 + millis);
    if (!when.inIsoRange())
        return std::nullopt; // it would be written back in a form no reader takes
    return when;
}
