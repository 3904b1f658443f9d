// Decimal text and arithmetic. The input is up to three lines: two numbers and a
// count of places. Whatever parses must print canonically and read back as itself,
// and the arithmetic must keep the laws that hold whatever the rounding.
#include "model/decimal.h"
#include "fuzzcheck.h"

#include <QString>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

std::string show(const Decimal &v)
{
    return v.toStdString() + " (" + std::to_string(v.exponent()) + ")";
}

const Decimal largest = *Decimal::fromString(std::string_view("99999999999999999999999999999999999999e127"));

bool saturated(const Decimal &v)
{
    return v.magnitude() == largest;
}

// Normalised and in range, and the text reads back as the same value.
void checkValue(const Decimal &v)
{
    const unsigned __int128 m = v.coefficient() < 0 ? -static_cast<unsigned __int128>(v.coefficient())
                                                    : static_cast<unsigned __int128>(v.coefficient());
    unsigned __int128 limit = 1;
    for (int i = 0; i < Decimal::maxDigits; ++i)
        limit *= 10;
    FUZZ_CHECK(m < limit, show(v));
    FUZZ_CHECK(v.exponent() >= Decimal::minExponent && v.exponent() <= Decimal::maxExponent, show(v));
    FUZZ_CHECK(m != 0 || v.exponent() == 0, show(v));
    FUZZ_CHECK(m == 0 || m % 10 != 0 || v.exponent() == Decimal::maxExponent, show(v));

    const std::string text = v.toStdString();
    const std::optional<Decimal> again = Decimal::fromString(std::string_view(text));
    FUZZ_CHECK(again && *again == v, text);
    FUZZ_CHECK(v.toString() == QString::fromLatin1(text), text);

    // The double is the correctly rounded value of the exact text.
    double expected = 0;
    std::from_chars(text.data(), text.data() + text.size(), expected);
    FUZZ_CHECK(v.toDouble() == expected, text);
}

// Below 10^18 and at most 18 places apart: the sum has at most 37 digits, so it is exact.
bool sumIsExact(const Decimal &a, const Decimal &b)
{
    const __int128 bound = 1000000000000000000;
    return a.coefficient() < bound && a.coefficient() > -bound && b.coefficient() < bound && b.coefficient() > -bound &&
           std::abs(a.exponent() - b.exponent()) <= 18;
}

// Two coefficients below 10^19 multiply to at most 38 digits; exact when the exponent fits.
bool productIsExact(const Decimal &a, const Decimal &b)
{
    const __int128 bound = 10000000000000000000ull;
    const int e = a.exponent() + b.exponent();
    return a.coefficient() < bound && a.coefficient() > -bound && b.coefficient() < bound && b.coefficient() > -bound &&
           e >= Decimal::minExponent && e <= Decimal::maxExponent - 38;
}

void checkPair(const Decimal &a, const Decimal &b)
{
    const std::string both = show(a) + " and " + show(b);
    FUZZ_CHECK(a + b == b + a, both);
    FUZZ_CHECK(a * b == b * a, both);
    FUZZ_CHECK(a - b == -(b - a), both);
    FUZZ_CHECK((a <=> b) == (0 <=> (b <=> a)), both);
    FUZZ_CHECK((a - b).signum() == ((a <=> b) < 0 ? -1 : (a <=> b) > 0 ? 1 : 0), both);
    FUZZ_CHECK((a == b) == ((a <=> b) == 0), both);
    checkValue(a + b);
    checkValue(a - b);
    checkValue(a * b);
    checkValue(a / b);
    if (sumIsExact(a, b)) {
        FUZZ_CHECK((a + b) - b == a, both);
        FUZZ_CHECK((a + b) - a == b, both);
    }
    if (productIsExact(a, b) && !b.isZero()) {
        FUZZ_CHECK((a * b) / b == a, both);
    }
}

void checkRounding(const Decimal &v, int places)
{
    const Decimal r = v.rounded(places);
    checkValue(r);
    FUZZ_CHECK(r.isZero() || r.exponent() >= -places || r.exponent() == Decimal::maxExponent,
               show(v) + " to " + std::to_string(places));
    if (places >= -100 && !saturated(r)) {
        // Off by at most half a unit in the last kept place.
        const Decimal unit = *Decimal::fromString("1e" + std::to_string(-places));
        const Decimal off = (v - r).magnitude();
        FUZZ_CHECK(off * Decimal(2) <= unit, show(v) + " to " + std::to_string(places) + " gave " + show(r));
    }
    FUZZ_CHECK(v.rounded2() == v.rounded(2), show(v));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    const std::size_t first = input.find('\n');
    const std::string_view a = input.substr(0, first);
    const std::string_view rest = first == std::string_view::npos ? std::string_view() : input.substr(first + 1);
    const std::size_t second = rest.find('\n');
    const std::string_view b = rest.substr(0, second);
    const std::string_view places = second == std::string_view::npos ? std::string_view() : rest.substr(second + 1);

    const std::optional<Decimal> va = Decimal::fromString(a);
    FUZZ_CHECK(va == Decimal::fromString(QString::fromLatin1(a.data(), qsizetype(a.size()))), std::string(a));
    if (!va)
        return 0;
    checkValue(*va);
    FUZZ_CHECK(-(-*va) == *va && (*va + -*va).isZero(), show(*va));
    FUZZ_CHECK(*va * Decimal(1) == *va && *va / Decimal(1) == *va && *va + Decimal() == *va, show(*va));

    int p = 2;
    std::from_chars(places.data(), places.data() + places.size(), p);
    checkRounding(*va, std::clamp(p, -140, 140));

    if (const std::optional<Decimal> vb = Decimal::fromString(b))
        checkPair(*va, *vb);
    return 0;
}
