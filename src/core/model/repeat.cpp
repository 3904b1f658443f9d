#include "model/repeat.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace {

// The pair's day in `year`, clamped to the month's end.
QDate dayIn(int year, MonthDay pair)
{
    return QDate(year, pair.month, std::min(pair.day, QDate(year, pair.month, 1).daysInMonth()));
}

std::optional<int> monthNamed(const QString &name)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    for (int month = 1; month <= 12; ++month)
        if (name.compare(english.monthName(month, QLocale::LongFormat), Qt::CaseInsensitive) == 0 ||
            name.compare(english.monthName(month, QLocale::ShortFormat), Qt::CaseInsensitive) == 0)
            return month;
    return std::nullopt;
}

} // namespace

std::optional<Instant> next(Repeat repeat, Instant after, std::span<const MonthDay> dates)
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
    case Repeat::setDates: {
        const QDate day = local.date();
        QDate first;
        for (const MonthDay pair : dates) {
            QDate candidate = dayIn(day.year(), pair);
            if (candidate <= day)
                candidate = dayIn(day.year() + 1, pair);
            if (!first.isValid() || candidate < first)
                first = candidate;
        }
        if (first.isValid())
            following = QDateTime(first, local.time());
        break;
    }
    }
    if (!following.isValid())
        return std::nullopt;
    // The money file holds the years 0000 to 9999; a schedule ends there.
    const Instant when = Instant::fromDateTime(following);
    if (!when.inIsoRange())
        return std::nullopt;
    return when;
}

std::optional<std::vector<MonthDay>> parseYearDates(const QString &text)
{
    static const QRegularExpression named(QStringLiteral(R"(^([A-Za-z]+)\.?\s*(\d{1,2})$)"));
    static const QRegularExpression numbered(QStringLiteral(R"(^(\d{1,2})-(\d{1,2})$)"));
    std::vector<MonthDay> pairs;
    for (const QString &part : text.split(QRegularExpression(QStringLiteral("[,;]")), Qt::SkipEmptyParts)) {
        const QString written = part.trimmed();
        if (written.isEmpty())
            continue;
        std::optional<int> month;
        int day = 0;
        if (const QRegularExpressionMatch m = named.match(written); m.hasMatch()) {
            month = monthNamed(m.captured(1));
            day = m.captured(2).toInt();
        } else if (const QRegularExpressionMatch n = numbered.match(written); n.hasMatch()) {
            if (const int number = n.captured(1).toInt(); number >= 1 && number <= 12)
                month = number;
            day = n.captured(2).toInt();
        }
        // A leap year's days are real days: February 29 is the 28th in other years.
        if (!month || day < 1 || day > QDate(2024, *month, 1).daysInMonth())
            return std::nullopt;
        pairs.push_back({*month, day});
    }
    std::sort(pairs.begin(), pairs.end());
    if (pairs.empty() || pairs.size() > size_t(maxYearDates) ||
        std::adjacent_find(pairs.begin(), pairs.end()) != pairs.end())
        return std::nullopt;
    return pairs;
}

QString yearDatesText(std::span<const MonthDay> dates)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    QStringList texts;
    for (const MonthDay pair : dates)
        texts << english.monthName(pair.month, QLocale::ShortFormat) + u' ' + QString::number(pair.day);
    return texts.join(QStringLiteral(", "));
}

QString yearDatesKey(std::span<const MonthDay> dates)
{
    QStringList texts;
    for (const MonthDay pair : dates)
        texts << QStringLiteral("%1-%2").arg(pair.month, 2, 10, QLatin1Char('0')).arg(pair.day, 2, 10, QLatin1Char('0'));
    return texts.join(u',');
}
