#include "model/money.h"

#include <unicode/currunit.h>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/smpdtfmt.h>

#include <memory>
#include <mutex>
#include <string_view>

namespace {

// The user's locale for money and dates. A process started with no locale at all
// (LANG unset, or C/POSIX) gets US English rather than ICU's bare POSIX forms
// ("$ 1234.50"), which nobody chooses on purpose.
icu::Locale userLocale()
{
    const icu::Locale locale = icu::Locale::getDefault();
    const std::string_view name = locale.getName();
    if (name.empty() || name == "c" || name == "C" || name == "en_US_POSIX" || name == "root")
        return icu::Locale("en_US");
    return locale;
}

QString fromIcu(const icu::UnicodeString &text)
{
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

// The currency code and the one formatter made for it. ICU's default locale comes
// from the environment, so the formatter follows the user's locale by itself.
struct CurrencyFormat
{
    std::mutex mutex;
    QString code = QStringLiteral("USD");
    QString madeFor;
    bool made = false;
    std::optional<icu::number::LocalizedNumberFormatter> formatter;

    // Called with the mutex held. A code ICU does not accept leaves no formatter.
    const icu::number::LocalizedNumberFormatter *current()
    {
        if (!made || madeFor != code) {
            made = true;
            madeFor = code;
            formatter.reset();
            UErrorCode status = U_ZERO_ERROR;
            if (code.size() == 3) {
                const icu::CurrencyUnit unit(reinterpret_cast<const char16_t *>(code.utf16()), status);
                if (U_SUCCESS(status))
                    formatter = icu::number::NumberFormatter::withLocale(userLocale()).unit(unit);
            }
        }
        return formatter ? &*formatter : nullptr;
    }
};

CurrencyFormat &currencyFormat()
{
    static CurrencyFormat format;
    return format;
}

bool isBlank(QChar c)
{
    return c == QLatin1Char('\t') || c.category() == QChar::Separator_Space;
}

// A date formatter made on first use; ICU formatters keep a calendar they change
// while formatting, hence the lock.
class DateText
{
public:
    using Factory = std::unique_ptr<icu::DateFormat> (*)();
    DateText(Factory factory, const char *fallbackPattern)
        : m_format(factory())
        , m_fallback(QString::fromLatin1(fallbackPattern))
    {}

    QString operator()(const Instant &when)
    {
        if (!m_format)
            return when.toLocal().toString(m_fallback);
        std::lock_guard lock(m_mutex);
        icu::UnicodeString out;
        m_format->format(static_cast<UDate>(when.msecs()), out);
        return fromIcu(out);
    }

private:
    std::mutex m_mutex;
    std::unique_ptr<icu::DateFormat> m_format;
    QString m_fallback;
};

std::unique_ptr<icu::DateFormat> patternFormat(const char16_t *pattern)
{
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(pattern), userLocale(), status);
    if (U_FAILURE(status))
        return nullptr;
    return format;
}

} // namespace

namespace Money {

QString code()
{
    CurrencyFormat &f = currencyFormat();
    std::lock_guard lock(f.mutex);
    return f.code;
}

void setCode(const QString &isoCode)
{
    CurrencyFormat &f = currencyFormat();
    std::lock_guard lock(f.mutex);
    f.code = isoCode;
}

QString s(const Decimal &amount)
{
    // The exact text goes to ICU, so no binary floating point is ever involved.
    const std::string text = amount.toStdString();
    CurrencyFormat &f = currencyFormat();
    std::lock_guard lock(f.mutex);
    if (const auto *formatter = f.current()) {
        UErrorCode status = U_ZERO_ERROR;
        const icu::UnicodeString out =
            formatter->formatDecimal(icu::StringPiece(text.data(), int32_t(text.size())), status).toString(status);
        if (U_SUCCESS(status) && !out.isEmpty())
            return fromIcu(out);
    }
    return QString::fromLatin1(text);
}

QString signed_(const Decimal &amount)
{
    return amount.signum() > 0 ? QLatin1Char('+') + s(amount) : s(amount);
}

std::optional<Decimal> parse(const QString &text)
{
    qsizetype begin = 0, end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;

    // The sign marks only ever set the flag: "(-45.10)" is as negative as "(45.10)".
    bool negative = false;
    if (end - begin >= 2 && text[begin] == QLatin1Char('(') && text[end - 1] == QLatin1Char(')')) {
        ++begin;
        --end;
        negative = true;
    }
    if (end > begin && text[end - 1] == QLatin1Char('-')) {
        --end;
        negative = true;
    }
    if (end > begin && text[begin] == QLatin1Char('-')) {
        ++begin;
        negative = true;
    }

    std::string digits;
    digits.reserve(std::size_t(end - begin));
    for (qsizetype i = begin; i < end; ++i) {
        const char16_t c = text[i].unicode();
        if (c == u'$' || c == u',' || c == u' ')
            continue;
        // No number has a character beyond ASCII in it. An exponent ("1e5") is a typo in
        // an amount field, not a hundred thousand.
        if (c > 127 || c == u'e' || c == u'E')
            return std::nullopt;
        digits.push_back(static_cast<char>(c));
    }
    if (digits.empty())
        return std::nullopt;
    const std::optional<Decimal> value = Decimal::fromString(std::string_view(digits));
    if (value && negative)
        return value->negated();
    return value;
}

QString editText(const Decimal &amount)
{
    QString text = amount.toString();
    const qsizetype point = text.indexOf(QLatin1Char('.'));
    if (point < 0)
        return text + QStringLiteral(".00");
    if (text.size() - point - 1 < 2)
        text += QLatin1Char('0');
    return text;
}

} // namespace Money

QString chDate(const Instant &when)
{
    static DateText format(
        [] {
            return std::unique_ptr<icu::DateFormat>(
                icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, userLocale()));
        },
        "MMM d, yyyy");
    return format(when);
}

QString chShort(const Instant &when)
{
    static DateText format([] { return patternFormat(u"MMM d"); }, "MMM d");
    return format(when);
}

QString chMonth(const Instant &when)
{
    static DateText format([] { return patternFormat(u"MMMM yyyy"); }, "MMMM yyyy");
    return format(when);
}
