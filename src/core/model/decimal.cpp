#include "model/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

// Every result is built the same way: the exact magnitude (or, where the exact
// value would be too long, enough of it plus a "sticky" digit that says whether
// anything non-zero was left out) is rounded once, half to even, to 38 digits and
// to the exponent floor, then stripped of trailing zeros. Rounding once matters:
// rounding first to 38 digits and again at 10^-128 could land on a different value.
//
// The common case, amounts of a few digits with exponents -2..0, never leaves
// 64/128-bit integers; the wide integer below is for long or far-apart values.

namespace {

using u128 = unsigned __int128;
using i128 = __int128;

constexpr std::array<u128, 39> makePow10()
{
    std::array<u128, 39> p{};
    p[0] = 1;
    for (std::size_t i = 1; i < p.size(); ++i)
        p[i] = p[i - 1] * 10;
    return p;
}
constexpr std::array<u128, 39> pow10 = makePow10();
constexpr u128 coefficientLimit = pow10[38];
constexpr std::uint64_t pow10u64(int n)
{
    return static_cast<std::uint64_t>(pow10[n]);
}

int bitLength(u128 v)
{
    const auto hi = static_cast<std::uint64_t>(v >> 64);
    const auto lo = static_cast<std::uint64_t>(v);
    return hi ? 128 - __builtin_clzll(hi) : (lo ? 64 - __builtin_clzll(lo) : 0);
}

// Number of decimal digits; 0 for 0.
int digitCount(u128 v)
{
    if (v == 0)
        return 0;
    const int t = (bitLength(v) * 1233) >> 12; // bits * log10(2), never too large
    return t + (v >= pow10[t]);
}

bool fitsInt64(i128 v)
{
    return v == static_cast<std::int64_t>(v);
}

u128 magnitudeOf(i128 v)
{
    return v < 0 ? -static_cast<u128>(v) : static_cast<u128>(v);
}

// An unsigned 320-bit integer: room for 96 decimal digits, enough for a product of
// two coefficients, a dividend scaled for 40 quotient digits, or two aligned addends.
struct Wide
{
    static constexpr int limbs = 5;
    std::uint64_t w[limbs] = {}; // least significant first

    Wide() = default;
    explicit Wide(u128 v)
    {
        w[0] = static_cast<std::uint64_t>(v);
        w[1] = static_cast<std::uint64_t>(v >> 64);
    }

    bool isZero() const { return (w[0] | w[1] | w[2] | w[3] | w[4]) == 0; }
    bool fitsU128() const { return (w[2] | w[3] | w[4]) == 0; }
    u128 low128() const { return (static_cast<u128>(w[1]) << 64) | w[0]; }

    int bitLength() const
    {
        for (int i = limbs - 1; i >= 0; --i)
            if (w[i])
                return i * 64 + 64 - __builtin_clzll(w[i]);
        return 0;
    }
    bool bit(int i) const { return (w[i / 64] >> (i % 64)) & 1; }
    void setBit(int i) { w[i / 64] |= std::uint64_t(1) << (i % 64); }

    int compare(const Wide &o) const
    {
        for (int i = limbs - 1; i >= 0; --i)
            if (w[i] != o.w[i])
                return w[i] < o.w[i] ? -1 : 1;
        return 0;
    }

    // Adds v shifted up by `limb` limbs.
    void addAt(int limb, u128 v)
    {
        for (int i = limb; i < limbs && v; ++i) {
            const u128 sum = static_cast<u128>(w[i]) + static_cast<std::uint64_t>(v);
            w[i] = static_cast<std::uint64_t>(sum);
            v = (v >> 64) + (sum >> 64);
        }
    }
    void add(const Wide &o)
    {
        u128 carry = 0;
        for (int i = 0; i < limbs; ++i) {
            carry += static_cast<u128>(w[i]) + o.w[i];
            w[i] = static_cast<std::uint64_t>(carry);
            carry >>= 64;
        }
    }
    // Requires *this >= o.
    void sub(const Wide &o)
    {
        std::uint64_t borrow = 0;
        for (int i = 0; i < limbs; ++i) {
            const std::uint64_t a = w[i];
            const std::uint64_t d = a - o.w[i] - borrow;
            borrow = (a < o.w[i]) || (a - o.w[i] < borrow);
            w[i] = d;
        }
    }
    void mulSmall(std::uint64_t m)
    {
        u128 carry = 0;
        for (int i = 0; i < limbs; ++i) {
            carry += static_cast<u128>(w[i]) * m;
            w[i] = static_cast<std::uint64_t>(carry);
            carry >>= 64;
        }
    }
    void mulPow10(int n)
    {
        for (; n >= 19; n -= 19)
            mulSmall(pow10u64(19));
        if (n > 0)
            mulSmall(pow10u64(n));
    }
    // Divides in place; returns the remainder.
    std::uint64_t divSmall(std::uint64_t d)
    {
        u128 rem = 0;
        for (int i = limbs - 1; i >= 0; --i) {
            const u128 cur = (rem << 64) | w[i];
            w[i] = static_cast<std::uint64_t>(cur / d);
            rem = cur % d;
        }
        return static_cast<std::uint64_t>(rem);
    }
    // Divides in place by d < 2^127; returns the remainder.
    u128 divU128(u128 d)
    {
        if ((d >> 64) == 0)
            return divSmall(static_cast<std::uint64_t>(d));
        Wide q;
        u128 rem = 0;
        for (int i = bitLength() - 1; i >= 0; --i) {
            rem = (rem << 1) | bit(i);
            if (rem >= d) {
                rem -= d;
                q.setBit(i);
            }
        }
        *this = q;
        return rem;
    }

    static Wide product(u128 a, u128 b)
    {
        const auto a0 = static_cast<std::uint64_t>(a), a1 = static_cast<std::uint64_t>(a >> 64);
        const auto b0 = static_cast<std::uint64_t>(b), b1 = static_cast<std::uint64_t>(b >> 64);
        Wide r(static_cast<u128>(a0) * b0);
        r.addAt(1, static_cast<u128>(a0) * b1);
        r.addAt(1, static_cast<u128>(a1) * b0);
        r.addAt(2, static_cast<u128>(a1) * b1);
        return r;
    }
};

const std::array<Wide, 97> &widePow10()
{
    static const std::array<Wide, 97> table = [] {
        std::array<Wide, 97> t;
        t[0] = Wide(1);
        for (std::size_t i = 1; i < t.size(); ++i) {
            t[i] = t[i - 1];
            t[i].mulSmall(10);
        }
        return t;
    }();
    return table;
}

int digitCount(const Wide &v)
{
    if (v.fitsU128())
        return digitCount(v.low128());
    const int t = (v.bitLength() * 1233) >> 12;
    return t + (v.compare(widePow10()[t]) >= 0);
}

// Divides m by 10^places (places >= 1), rounding half to even.
void roundOff(Wide &m, long long places)
{
    bool sticky = false;
    for (long long k = places - 1; k > 0 && !m.isZero();) {
        const int step = static_cast<int>(std::min<long long>(k, 19));
        sticky |= m.divSmall(pow10u64(step)) != 0;
        k -= step;
    }
    const std::uint64_t digit = m.divSmall(10);
    if (digit > 5 || (digit == 5 && (sticky || (m.w[0] & 1))))
        m.addAt(0, 1);
}

} // namespace

struct DecimalMath
{
    static Decimal saturated(bool negative)
    {
        const i128 c = static_cast<i128>(coefficientLimit - 1);
        return Decimal(negative ? -c : c, Decimal::maxExponent);
    }

    // 0 < c < 10^38 and e >= minExponent: strips trailing zeros; no value on overflow.
    static std::optional<Decimal> finish(bool negative, u128 c, long long e)
    {
        if ((c >> 64) == 0) {
            auto small = static_cast<std::uint64_t>(c);
            while (e < Decimal::maxExponent && small % 10 == 0) {
                small /= 10;
                ++e;
            }
            c = small;
        } else {
            while (e < Decimal::maxExponent && c % 10 == 0) {
                c /= 10;
                ++e;
            }
        }
        // At the top of the range the coefficient takes on the zeros the exponent cannot.
        while (e > Decimal::maxExponent && c < pow10[37]) {
            c *= 10;
            --e;
        }
        if (e > Decimal::maxExponent)
            return std::nullopt;
        const auto coefficient = static_cast<i128>(c);
        return Decimal(negative ? -coefficient : coefficient, static_cast<int>(e));
    }

    // Rounds the exact magnitude m * 10^e once to 38 digits and the exponent floor.
    static std::optional<Decimal> build(bool negative, Wide m, long long e)
    {
        if (m.isZero())
            return Decimal();
        const long long digits = digitCount(m);
        const long long places = std::max({digits - Decimal::maxDigits, Decimal::minExponent - e, 0LL});
        if (places > 0) {
            roundOff(m, places);
            e += places;
            if (m.isZero())
                return Decimal();
        }
        u128 c = m.low128(); // at most 10^38 now
        if (c == coefficientLimit) {
            c = pow10[37];
            ++e;
        }
        return finish(negative, c, e);
    }

    static std::optional<Decimal> make(bool negative, u128 c, long long e)
    {
        if (c == 0)
            return Decimal();
        if (c < coefficientLimit && e >= Decimal::minExponent)
            return finish(negative, c, e);
        return build(negative, Wide(c), e);
    }

    static Decimal add(const Decimal &a, i128 cb, int eb)
    {
        const i128 ca = a.m_coefficient;
        const int ea = a.m_exponent;
        if (cb == 0)
            return a;
        if (ca == 0)
            return Decimal(cb, eb);
        if (fitsInt64(ca) && fitsInt64(cb)) {
            // Both below 2^63 and at most 18 places apart: the aligned sum stays below 10^38.
            const int d = ea - eb;
            i128 sum;
            int e;
            if (d == 0) {
                sum = ca + cb;
                e = ea;
            } else if (d > 0 && d <= 18) {
                sum = ca * static_cast<i128>(pow10u64(d)) + cb;
                e = eb;
            } else if (d < 0 && d >= -18) {
                sum = ca + cb * static_cast<i128>(pow10u64(-d));
                e = ea;
            } else {
                return addWide(ca, ea, cb, eb);
            }
            if (sum == 0)
                return Decimal();
            return *finish(sum < 0, magnitudeOf(sum), e);
        }
        return addWide(ca, ea, cb, eb);
    }

    static Decimal addWide(i128 ca, int ea, i128 cb, int eb)
    {
        if (ea < eb) {
            std::swap(ca, cb);
            std::swap(ea, eb);
        }
        // a has the larger exponent. When b lies wholly far below a's 38th digit it
        // is less than half a unit there, and a + b rounds back to a (which has at
        // most 38 digits); so the aligned numbers never need more than 95 digits.
        const int digitsA = digitCount(magnitudeOf(ca));
        const int shift = ea - eb;
        if (digitsA + shift > 95)
            return Decimal(ca, ea);
        const bool negA = ca < 0, negB = cb < 0;
        Wide ma(magnitudeOf(ca)), mb(magnitudeOf(cb));
        ma.mulPow10(shift);
        const long long e = eb;
        bool negative = negA;
        if (negA == negB) {
            ma.add(mb);
        } else {
            const int cmp = ma.compare(mb);
            if (cmp == 0)
                return Decimal();
            if (cmp > 0) {
                ma.sub(mb);
            } else {
                mb.sub(ma);
                ma = mb;
                negative = negB;
            }
        }
        return build(negative, ma, e).value_or(saturated(negative));
    }

    static Decimal multiply(const Decimal &a, const Decimal &b)
    {
        if (a.isZero() || b.isZero())
            return Decimal();
        const bool negative = a.isNegative() != b.isNegative();
        const u128 ma = magnitudeOf(a.m_coefficient), mb = magnitudeOf(b.m_coefficient);
        const long long e = static_cast<long long>(a.m_exponent) + b.m_exponent;
        if ((ma >> 64) == 0 && (mb >> 64) == 0)
            return make(negative, ma * mb, e).value_or(saturated(negative));
        return build(negative, Wide::product(ma, mb), e).value_or(saturated(negative));
    }

    static Decimal divide(const Decimal &a, const Decimal &b)
    {
        if (a.isZero() || b.isZero())
            return Decimal();
        const bool negative = a.isNegative() != b.isNegative();
        const u128 ma = magnitudeOf(a.m_coefficient), mb = magnitudeOf(b.m_coefficient);
        // Scale the dividend so that the quotient has at least 40 digits, then append
        // one digit that is non-zero exactly when the division left a remainder.
        const int scale = 40 + digitCount(mb) - digitCount(ma);
        Wide q(ma);
        q.mulPow10(scale);
        const u128 rem = q.divU128(mb);
        q.mulSmall(10);
        q.addAt(0, rem != 0);
        const long long e = static_cast<long long>(a.m_exponent) - b.m_exponent - scale - 1;
        return build(negative, q, e).value_or(saturated(negative));
    }

    static std::strong_ordering compare(const Decimal &a, const Decimal &b)
    {
        const int sa = a.signum(), sb = b.signum();
        if (sa != sb || sa == 0)
            return sa <=> sb;
        if (a.m_exponent == b.m_exponent)
            return a.m_coefficient <=> b.m_coefficient;
        u128 ma = magnitudeOf(a.m_coefficient), mb = magnitudeOf(b.m_coefficient);
        const int topA = a.m_exponent + digitCount(ma), topB = b.m_exponent + digitCount(mb);
        std::strong_ordering magnitude = topA <=> topB;
        if (topA == topB) {
            // Same leading position, so the one with the larger exponent is the
            // shorter one and scaling it stays within 38 digits.
            if (a.m_exponent > b.m_exponent)
                ma *= pow10[a.m_exponent - b.m_exponent];
            else
                mb *= pow10[b.m_exponent - a.m_exponent];
            magnitude = ma <=> mb;
        }
        return sa > 0 ? magnitude : 0 <=> magnitude;
    }

    static Decimal rounded(const Decimal &d, int places)
    {
        const long long target = -static_cast<long long>(places);
        if (d.isZero() || d.m_exponent >= target)
            return d;
        Wide m(magnitudeOf(d.m_coefficient));
        roundOff(m, target - d.m_exponent);
        return build(d.isNegative(), m, target).value_or(saturated(d.isNegative()));
    }

    // More than 19 significant digits: the first 76 exactly, the rest as a sticky digit.
    static std::optional<Decimal> parseLong(bool negative, std::string_view digits, std::string_view fraction,
                                            long long exponent)
    {
        std::string significant;
        significant.reserve(digits.size() + fraction.size());
        for (std::string_view part : {digits, fraction})
            for (char c : part)
                if (c != '0' || !significant.empty())
                    significant.push_back(c);
        const std::size_t kept = std::min<std::size_t>(significant.size(), 76);
        Wide m;
        for (std::size_t i = 0; i < kept;) {
            const std::size_t n = std::min<std::size_t>(19, kept - i);
            std::uint64_t chunk = 0;
            for (std::size_t j = 0; j < n; ++j)
                chunk = chunk * 10 + static_cast<std::uint64_t>(significant[i + j] - '0');
            m.mulSmall(pow10u64(static_cast<int>(n)));
            m.addAt(0, chunk);
            i += n;
        }
        long long e =
            exponent - static_cast<long long>(fraction.size()) + static_cast<long long>(significant.size() - kept);
        if (significant.find_first_not_of('0', kept) != std::string::npos) {
            m.mulSmall(10);
            m.addAt(0, 1);
            --e;
        }
        return build(negative, m, e);
    }
};

Decimal::Decimal(int value)
    : Decimal(static_cast<long long>(value))
{}

Decimal::Decimal(long long value)
{
    int e = 0;
    while (value != 0 && value % 10 == 0) {
        value /= 10;
        ++e;
    }
    m_coefficient = value;
    m_exponent = value == 0 ? 0 : e;
}

std::optional<Decimal> Decimal::fromString(std::string_view text)
{
    const char *p = text.data();
    const char *const end = p + text.size();
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    bool negative = false;
    if (p != end && (*p == '+' || *p == '-')) {
        negative = *p == '-';
        ++p;
    }
    // Up to 19 significant digits accumulate in one machine word.
    std::uint64_t acc = 0;
    int significant = 0;
    const char *const intStart = p;
    for (; p != end && isDigit(*p); ++p) {
        if (acc != 0 || *p != '0') {
            acc = acc * 10 + static_cast<std::uint64_t>(*p - '0');
            ++significant;
        }
    }
    const std::string_view intDigits(intStart, static_cast<std::size_t>(p - intStart));
    std::string_view fraction;
    if (p != end && *p == '.') {
        const char *const fracStart = ++p;
        for (; p != end && isDigit(*p); ++p) {
            if (acc != 0 || *p != '0') {
                acc = acc * 10 + static_cast<std::uint64_t>(*p - '0');
                ++significant;
            }
        }
        fraction = std::string_view(fracStart, static_cast<std::size_t>(p - fracStart));
    }
    if (intDigits.empty() && fraction.empty())
        return std::nullopt;
    long long exponent = 0;
    if (p != end && (*p == 'e' || *p == 'E')) {
        ++p;
        bool negativeExponent = false;
        if (p != end && (*p == '+' || *p == '-')) {
            negativeExponent = *p == '-';
            ++p;
        }
        if (p == end)
            return std::nullopt;
        for (; p != end && isDigit(*p); ++p) // capped: far beyond the range either way
            exponent = std::min(exponent * 10 + (*p - '0'), 1000000000000LL);
        if (negativeExponent)
            exponent = -exponent;
    }
    if (p != end)
        return std::nullopt;
    if (significant > 19)
        return DecimalMath::parseLong(negative, intDigits, fraction, exponent);
    return DecimalMath::make(negative, acc, exponent - static_cast<long long>(fraction.size()));
}

std::optional<Decimal> Decimal::fromString(const QString &text)
{
    char buffer[128];
    const qsizetype n = text.size();
    if (n > qsizetype(sizeof buffer)) {
        const QByteArray latin = text.toLatin1(); // anything else turns into '?' and fails
        return fromString(std::string_view(latin.constData(), std::size_t(latin.size())));
    }
    const QChar *chars = text.constData();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t u = chars[i].unicode();
        if (u > 127)
            return std::nullopt;
        buffer[i] = static_cast<char>(u);
    }
    return fromString(std::string_view(buffer, std::size_t(n)));
}

std::string Decimal::toStdString() const
{
    char digits[40];
    const u128 m = magnitudeOf(m_coefficient);
    char *end;
    if ((m >> 64) == 0) {
        end = std::to_chars(digits, digits + sizeof digits, static_cast<std::uint64_t>(m)).ptr;
    } else {
        // m < 10^38: a high part below 10^19 and a low part of exactly 19 digits.
        end = std::to_chars(digits, digits + sizeof digits, static_cast<std::uint64_t>(m / pow10u64(19))).ptr;
        char low[20];
        char *lowEnd = std::to_chars(low, low + sizeof low, static_cast<std::uint64_t>(m % pow10u64(19))).ptr;
        const auto lowLength = lowEnd - low;
        end = std::fill_n(end, 19 - lowLength, '0');
        end = std::copy(low, lowEnd, end);
    }
    const int n = static_cast<int>(end - digits);
    std::string out;
    out.reserve(static_cast<std::size_t>(n + std::abs(m_exponent) + 3));
    if (m_coefficient < 0)
        out.push_back('-');
    if (m_exponent >= 0) {
        out.append(digits, static_cast<std::size_t>(n));
        out.append(static_cast<std::size_t>(m_exponent), '0');
    } else if (-m_exponent >= n) {
        out.append("0.");
        out.append(static_cast<std::size_t>(-m_exponent - n), '0');
        out.append(digits, static_cast<std::size_t>(n));
    } else {
        const int whole = n + m_exponent;
        out.append(digits, static_cast<std::size_t>(whole));
        out.push_back('.');
        out.append(digits + whole, static_cast<std::size_t>(n - whole));
    }
    return out;
}

QString Decimal::toString() const
{
    return QString::fromLatin1(toStdString());
}

double Decimal::toDouble() const
{
    if (m_coefficient == 0)
        return 0.0;
    // Exact integer and exact power of ten: one correctly rounded operation.
    static constexpr double exact[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                       1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const u128 m = magnitudeOf(m_coefficient);
    if (m < (u128(1) << 53) && m_exponent >= -22 && m_exponent <= 22) {
        const double v = static_cast<double>(static_cast<std::uint64_t>(m));
        const double r = m_exponent >= 0 ? v * exact[m_exponent] : v / exact[-m_exponent];
        return m_coefficient < 0 ? -r : r;
    }
    std::string text = toStdString();
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

Decimal Decimal::negated() const
{
    return Decimal(-m_coefficient, m_exponent);
}

Decimal Decimal::magnitude() const
{
    return m_coefficient < 0 ? negated() : *this;
}

Decimal Decimal::rounded2() const
{
    return rounded(2);
}

Decimal Decimal::rounded(int places) const
{
    return DecimalMath::rounded(*this, places);
}

Decimal operator+(const Decimal &a, const Decimal &b)
{
    return DecimalMath::add(a, b.m_coefficient, b.m_exponent);
}

Decimal operator-(const Decimal &a, const Decimal &b)
{
    return DecimalMath::add(a, -b.m_coefficient, b.m_exponent);
}

Decimal operator*(const Decimal &a, const Decimal &b)
{
    return DecimalMath::multiply(a, b);
}

Decimal operator/(const Decimal &a, const Decimal &b)
{
    return DecimalMath::divide(a, b);
}

std::strong_ordering operator<=>(const Decimal &a, const Decimal &b)
{
    return DecimalMath::compare(a, b);
}

namespace {

Decimal partial(i128 sum, int exponent)
{
    // Made canonical (trailing zeros stripped) like every Decimal; well inside the range.
    return sum == 0 ? Decimal() : *DecimalMath::finish(sum < 0, magnitudeOf(sum), exponent);
}

} // namespace

void DecimalSum::addSlowly(const Decimal &amount)
{
    const i128 c = amount.coefficient();
    const bool small = c > -partLimit && c < partLimit;
    for (Part &part : m_parts) {
        if (part.used && part.exponent == amount.exponent()) {
            // This exponent's sum is full (or the amount is large): it joins the rest.
            m_rest += partial(part.sum, part.exponent);
            part.sum = 0;
            if (small) {
                part.sum = c;
                return;
            }
            m_rest += amount;
            return;
        }
    }
    if (small) {
        for (Part &part : m_parts) {
            if (!part.used) {
                part = {true, amount.exponent(), c};
                return;
            }
        }
    }
    m_rest += amount;
}

Decimal DecimalSum::total() const
{
    Decimal sum = m_rest;
    for (const Part &part : m_parts)
        if (part.used)
            sum += partial(part.sum, part.exponent);
    return sum;
}
