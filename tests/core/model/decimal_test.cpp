#include "model/decimal.h"

#include "core/model/oracle.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

namespace {

Decimal d(std::string_view text)
{
    const std::optional<Decimal> value = Decimal::fromString(text);
    EXPECT_TRUE(value) << text;
    return value.value_or(Decimal());
}

std::string t(const Decimal &value)
{
    return value.toStdString();
}

// One form per value: under 38 digits, exponent in range, trailing zeros only where
// the exponent is at its top, zero as 0e0.
bool isCanonical(const Decimal &value)
{
    const __int128 c = value.coefficient() < 0 ? -value.coefficient() : value.coefficient();
    const int e = value.exponent();
    if (c == 0)
        return e == 0;
    const __int128 largest = Decimal::fromString(std::string(38, '9'))->coefficient();
    return c <= largest && e >= Decimal::minExponent && e <= Decimal::maxExponent &&
           (c % 10 != 0 || e == Decimal::maxExponent);
}

// Random numbers of every shape, from a fixed seed so that a failure repeats.
struct Generator
{
    std::mt19937_64 rng{20250304};

    long range(long lo, long hi) { return lo + long(rng() % std::uint64_t(hi - lo + 1)); }

    // Plain digits, runs of nines (carries), or an exact half (ties).
    std::string digits(long n)
    {
        std::string s;
        for (long i = 0; i < n; ++i)
            s += char('0' + range(0, 9));
        const long style = range(0, 3), at = range(0, n - 1);
        if (style == 1)
            std::fill(s.begin() + at, s.end(), '9');
        if (style == 2) {
            s[std::size_t(at)] = '5';
            std::fill(s.begin() + at + 1, s.end(), '0');
        }
        if (s[0] == '0')
            s[0] = char('1' + range(0, 8));
        return s;
    }

    // An exact Decimal value: mostly amounts, some long, some at the ends of the range.
    oracle::Num operand()
    {
        static constexpr long shapes[][3] = {{12, -4, 2},   {12, -4, 2},   {12, -4, 2},     {12, -4, 2},  {12, -4, 2},
                                             {38, -20, 20}, {38, -70, 70}, {38, -128, -90}, {38, 90, 127}};
        const long kind = range(0, 9);
        if (kind == 9)
            return {};
        const long *shape = shapes[kind];
        const bool negative = range(0, 1) == 1;
        const oracle::Num n{negative, digits(range(1, shape[0])), range(shape[1], shape[2])};
        return oracle::round(n, 38, -128);
    }
};

} // namespace

// Forms of text the reference tests below do not write.
TEST(Decimal, ReadsAndWritesCanonicalText)
{
    EXPECT_EQ(t(d("-0.000")), "0");
    EXPECT_EQ(t(d(".5")), "0.5");
    EXPECT_EQ(t(d("5.")), "5");
    EXPECT_EQ(t(Decimal(LLONG_MIN)), "-9223372036854775808");
    for (const char *bad : {"", "+", "-", ".", "e5", "1e", "1e+", " 1", "1 ", "1,5", "abc", "1.2.3", "0x10", "--1",
                            "1e5.5", "12abc", "\xc2\xbd"})
        EXPECT_FALSE(Decimal::fromString(std::string_view(bad))) << bad;
    EXPECT_FALSE(Decimal::fromString(QStringLiteral("1\u00a0000")));
    EXPECT_EQ(t(*Decimal::fromString(QStringLiteral("-45.10"))), "-45.1");
}

TEST(Decimal, RoundsDivisionAndTheEndsOfTheRange)
{
    EXPECT_EQ(t(Decimal(1) / Decimal(3)), "0." + std::string(38, '3'));
    EXPECT_EQ(t(d("7") / d("0")), "0");
    // Overflow saturates, and fails to parse; the reference tests below hold the rest of the range.
    const Decimal top = d(std::string(38, '9') + "e127");
    EXPECT_EQ(t(-top - top), "-" + std::string(38, '9') + std::string(127, '0'));
    EXPECT_FALSE(Decimal::fromString(std::string(39, '9') + "e126")); // rounds up out of range
    // A digit far beyond the 38th still breaks a tie.
    EXPECT_EQ(t(d("0.1" + std::string(36, '0') + "25" + std::string(50, '0') + "1")),
              "0.1" + std::string(36, '0') + "3");
}

TEST(Decimal, ArithmeticMatchesReference)
{
    Generator gen;
    for (int i = 0; i < 10000; ++i) {
        const oracle::Num a = gen.operand(), b = gen.range(0, 3) == 0 ? a : gen.operand();
        const Decimal x = d(oracle::text(a)), y = d(oracle::text(b));
        SCOPED_TRACE(oracle::text(a) + " and " + oracle::text(b));
        const Decimal sum = x + y;
        EXPECT_EQ(t(sum), oracle::text(oracle::add(a, b)));
        for (const Decimal &result : {sum, x - y, x * y, x / y})
            EXPECT_TRUE(isCanonical(result)) << t(result);
        EXPECT_EQ(t(x - y), oracle::text(oracle::add(a, {!b.negative, b.digits, b.exponent})));
        EXPECT_EQ(t(x * y), oracle::text(oracle::mul(a, b)));
        EXPECT_EQ(t(x / y), oracle::text(oracle::div(a, b)));
        const int cmp = oracle::compare(a, b);
        EXPECT_EQ(x <=> y, cmp <=> 0);
        EXPECT_EQ(x == y, cmp == 0);
    }
}

TEST(Decimal, ParsingAndRoundingMatchReference)
{
    Generator gen;
    for (int i = 0; i < 4000; ++i) {
        oracle::Num n{gen.range(0, 1) == 1, gen.digits(gen.range(1, 50)), 0};
        n.exponent = gen.range(0, 4) ? gen.range(-12, 6) : gen.range(-210, 150);
        // The same number written plainly, with an exponent, or with a point and an exponent.
        std::string text;
        const long form = gen.range(0, 2);
        if (form == 0)
            text = oracle::text(n);
        else if (form == 1)
            text = (n.negative ? "-" : "+") + n.digits + (gen.range(0, 1) ? "e" : "E") + std::to_string(n.exponent);
        else
            text = (n.negative ? "-0" : "") + n.digits.substr(0, 1) + "." + n.digits.substr(1) + "e" +
                   std::to_string(n.exponent + long(n.digits.size()) - 1);
        SCOPED_TRACE(text);
        const oracle::Num expected = oracle::round(n, 38, -128);
        const std::optional<Decimal> parsed = Decimal::fromString(text);
        if (oracle::overflows(expected)) {
            EXPECT_FALSE(parsed);
            continue;
        }
        ASSERT_TRUE(parsed);
        EXPECT_EQ(t(*parsed), oracle::text(expected));
        EXPECT_TRUE(isCanonical(*parsed));
        EXPECT_EQ(t(parsed->rounded2()), oracle::text(oracle::round(expected, 1000, -2)));
        const int places = int(gen.range(-3, 6));
        EXPECT_EQ(t(parsed->rounded(places)), oracle::text(oracle::round(expected, 1000, -places)));
        EXPECT_EQ(parsed->toDouble(), std::stod(oracle::text(expected))); // strtod rounds correctly
    }
}

// A running total of many amounts is the exact sum, canonical, whatever the mix of
// exponents (more than it sums apart), signs, and sizes that outgrow its partial sums.
TEST(Decimal, ARunningTotalIsTheExactSum)
{
    Generator gen;
    DecimalSum total;
    Decimal oneByOne;
    for (int i = 0; i < 20000; ++i) {
        const long digits = i % 1000 == 0 ? 20 : gen.range(1, 18);
        const Decimal x = d((gen.range(0, 1) ? "-" : "") + gen.digits(digits) + "e" + std::to_string(gen.range(-6, 2)));
        total.add(x);
        oneByOne += x;
    }
    for (int i = 0; i < 5; ++i) { // outgrows a partial sum of one exponent
        total.add(d("999999999999999999"));
        oneByOne += d("999999999999999999");
    }
    EXPECT_EQ(t(total.total()), t(oneByOne));
    EXPECT_TRUE(isCanonical(total.total()));

    DecimalSum cents;
    cents.add(d("1.50"));
    cents.add(d("0.50"));
    EXPECT_EQ(std::tuple(t(cents.total()), t(DecimalSum().total())), std::tuple("2", "0"));
    EXPECT_TRUE(isCanonical(cents.total()));
}
