// Money::parse on whatever a user might type or paste into an amount field, and
// the currency text of every amount it accepts.
#include "fuzzcheck.h"
#include "model/money.h"

#include <QString>

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzzEnvironment();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::optional<Decimal> value = Money::parse(text);
    const std::string shown = text.toStdString();

    // Blanks around the text never matter.
    FUZZ_CHECK(Money::parse(QStringLiteral(" \t") + text + QStringLiteral("\u00A0 ")) == value, shown);
    if (!value)
        return 0;

    // The canonical text of the amount is itself an accepted input for the same amount.
    const std::string canonical = value->toStdString();
    FUZZ_CHECK(Money::parse(QString::fromLatin1(canonical)) == value, shown + " gave " + canonical);
    FUZZ_CHECK(Decimal::fromString(std::string_view(canonical)) == value, canonical);

    // Every accepted amount has a currency text, with the sign where the amount has one.
    const QString money = Money::s(*value);
    FUZZ_CHECK(!money.isEmpty(), canonical);
    FUZZ_CHECK(money.startsWith(QLatin1Char('-')) == value->isNegative(),
               canonical + " shown as " + money.toStdString());
    FUZZ_CHECK(Money::signed_(*value).startsWith(QLatin1Char('+')) == (value->signum() > 0), canonical);
    return 0;
}
