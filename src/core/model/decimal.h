#pragma once

#include <QString>

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// An exact decimal number: a signed 128-bit coefficient times ten to a power.
//
// Money never passes through binary floating point. Addition, subtraction and
// multiplication are exact as long as the result fits in 38 significant digits;
// beyond that (and for every division) the result is rounded to 38 significant
// digits, half to even. The value is kept normalised (no trailing zeros in the
// coefficient), so 12.50 and 12.5 are the same value with the same text.
// Exponents stay within [-128, 127]: smaller results are rounded at 10^-128
// (to zero if need be); a result too large for the range saturates at the
// largest magnitude, 38 nines times 10^127, with its sign. Only at the very top
// of the range does the coefficient keep the zeros the exponent cannot take.
//
// Packed to 8-byte alignment (24 bytes, not 32): a Book holds one per line, and the
// 128-bit coefficient's own 16-byte alignment would pad every transaction by a third
// of that again. x86-64 and ARM64 load it unaligned at no cost.
class [[gnu::packed, gnu::aligned(8)]] Decimal
{
public:
    static constexpr int maxDigits = 38;
    static constexpr int minExponent = -128;
    static constexpr int maxExponent = 127;

    constexpr Decimal() = default;
    Decimal(int value);
    Decimal(long long value);

    // Reads "[+|-]digits[.digits][(e|E)[+|-]digits]" with a point as separator, no
    // locale, nothing else around it. Longer coefficients are rounded to 38 digits;
    // a number beyond the exponent range gives no value rather than a saturated one.
    static std::optional<Decimal> fromString(std::string_view text);
    static std::optional<Decimal> fromString(const QString &text);

    // Canonical text: "-12.5", "1200", "0.05", never an exponent.
    std::string toStdString() const;
    QString toString() const;

    // Only where a number is drawn or a share is shown: not for money arithmetic.
    double toDouble() const;

    bool isZero() const { return m_coefficient == 0; }
    bool isNegative() const { return m_coefficient < 0; }
    int signum() const { return m_coefficient < 0 ? -1 : (m_coefficient > 0 ? 1 : 0); }

    Decimal negated() const;
    Decimal magnitude() const;
    // Two decimal places, half to even: 2.675 -> 2.68, 2.665 -> 2.66.
    Decimal rounded2() const;
    // Any number of places, half to even.
    Decimal rounded(int places) const;

    Decimal operator-() const { return negated(); }
    friend Decimal operator+(const Decimal &a, const Decimal &b);
    friend Decimal operator-(const Decimal &a, const Decimal &b);
    friend Decimal operator*(const Decimal &a, const Decimal &b);
    // Rounded to 38 significant digits, half to even. Division by zero gives zero.
    friend Decimal operator/(const Decimal &a, const Decimal &b);
    Decimal &operator+=(const Decimal &o) { return *this = *this + o; }
    Decimal &operator-=(const Decimal &o) { return *this = *this - o; }

    friend bool operator==(const Decimal &a, const Decimal &b)
    {
        return a.m_coefficient == b.m_coefficient && a.m_exponent == b.m_exponent;
    }
    friend std::strong_ordering operator<=>(const Decimal &a, const Decimal &b);

    __int128 coefficient() const { return m_coefficient; }
    int exponent() const { return m_exponent; }

private:
    friend struct DecimalMath; // the arithmetic in decimal.cpp
    constexpr Decimal(__int128 coefficient, int exponent)
        : m_coefficient(coefficient)
        , m_exponent(exponent)
    {}

    __int128 m_coefficient = 0;
    int m_exponent = 0;
};

// A running total of many amounts, exact like Decimal's own sum and much quicker: the
// amounts of one exponent (nearly all of a Book's have two places) are added as plain
// integers, and only those few partial sums are added as Decimals at the end.
class DecimalSum
{
public:
    void add(const Decimal &amount)
    {
        const __int128 c = amount.coefficient();
        for (Part &part : m_parts) {
            if (!part.used || part.exponent != amount.exponent())
                continue;
            if (c > -partLimit && c < partLimit && part.sum > -partLimit && part.sum < partLimit) {
                part.sum += c;
                return;
            }
            break;
        }
        addSlowly(amount);
    }
    Decimal total() const;

private:
    // Each partial sum stays below 2 * 10^18 in size, far inside what a Decimal holds.
    static constexpr __int128 partLimit = 1'000'000'000'000'000'000;
    struct Part
    {
        bool used = false;
        int exponent = 0;
        __int128 sum = 0;
    };
    void addSlowly(const Decimal &amount);
    std::array<Part, 4> m_parts;
    Decimal m_rest;
};
