#pragma once

#include <algorithm>
#include <string>

// A slow, plainly written decimal to check Decimal against: digit strings and
// schoolbook arithmetic, exact until the one final rounding.
namespace oracle {

struct Num
{
    bool negative = false;
    std::string digits; // most significant first, no leading zeros; empty is zero
    long exponent = 0;
};

inline std::string stripLeading(const std::string &s)
{
    return s.substr(std::min(s.find_first_not_of('0'), s.size()));
}

inline int compareInt(const std::string &a, const std::string &b)
{
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return a < b ? -1 : (a == b ? 0 : 1);
}

// a + b, or a - b (sign -1, a >= b), digit by digit from the right.
inline std::string addInt(const std::string &a, const std::string &b, int sign = 1)
{
    std::string out(std::max(a.size(), b.size()) + 1, '0');
    const auto digit = [](const std::string &s, std::size_t i) { return i < s.size() ? s[s.size() - 1 - i] - '0' : 0; };
    int carry = 0;
    for (std::size_t i = 0; i < out.size(); ++i) {
        const int v = carry + digit(a, i) + sign * digit(b, i);
        carry = v < 0 ? -1 : v / 10;
        out[out.size() - 1 - i] = char('0' + (v + 10) % 10);
    }
    return stripLeading(out);
}

inline std::string mulInt(const std::string &a, const std::string &b)
{
    std::string out;
    for (char c : b) // out = out * 10 + a * c
        for (out = out.empty() ? out : out + "0"; c > '0'; --c)
            out = addInt(out, a);
    return out;
}

// Long division: the quotient, and whether anything was left over.
inline std::string divInt(const std::string &a, const std::string &b, bool *remainder)
{
    std::string quotient, rest;
    for (char c : a) {
        rest = stripLeading(rest + c);
        for (quotient += '0'; compareInt(rest, b) >= 0; ++quotient.back())
            rest = addInt(rest, b, -1);
    }
    *remainder = !rest.empty();
    return stripLeading(quotient);
}

// Rounds half to even to at most maxDigits digits and no exponent below minExponent,
// then drops trailing zeros.
inline Num round(Num n, long maxDigits, long minExponent)
{
    const long length = long(n.digits.size());
    const long drop = std::max({length - maxDigits, minExponent - n.exponent, 0L});
    if (drop > length)
        return {};
    if (drop > 0) {
        const auto cut = std::size_t(length - drop);
        std::string kept = n.digits.substr(0, cut);
        const bool rest = n.digits.find_first_not_of('0', cut + 1) != std::string::npos;
        const bool odd = !kept.empty() && (kept.back() - '0') % 2 == 1;
        if (n.digits[cut] > '5' || (n.digits[cut] == '5' && (rest || odd)))
            kept = addInt(kept, "1");
        n.digits = kept;
        n.exponent += drop;
    }
    for (; !n.digits.empty() && n.digits.back() == '0'; ++n.exponent)
        n.digits.pop_back();
    return n.digits.empty() ? Num{} : n;
}

inline bool overflows(const Num &n)
{
    return n.exponent + long(n.digits.size()) > 38 + 127;
}

// What Decimal gives for an exact result: 38 digits, exponent floor -128, saturation.
inline Num finish(const Num &exact)
{
    const Num n = round(exact, 38, -128);
    return overflows(n) ? Num{n.negative, std::string(38, '9'), 127} : n;
}

inline std::string text(const Num &n)
{
    std::string body = n.digits.empty() ? "0" : n.digits;
    if (n.exponent >= 0)
        body += std::string(std::size_t(n.exponent), '0');
    else if (long(body.size()) <= -n.exponent)
        body = "0." + std::string(std::size_t(-n.exponent - long(body.size())), '0') + body;
    else
        body.insert(body.size() - std::size_t(-n.exponent), ".");
    return (n.negative && !n.digits.empty() ? "-" : "") + body;
}

// Both magnitudes written with the smaller exponent, which goes to *exponent.
inline std::pair<std::string, std::string> aligned(const Num &a, const Num &b, long *exponent)
{
    *exponent = std::min(a.exponent, b.exponent);
    return {a.digits + std::string(std::size_t(a.exponent - *exponent), '0'),
            b.digits + std::string(std::size_t(b.exponent - *exponent), '0')};
}

inline Num add(const Num &a, const Num &b)
{
    if (a.digits.empty() || b.digits.empty())
        return a.digits.empty() ? b : a;
    long e;
    const auto [x, y] = aligned(a, b, &e);
    if (a.negative == b.negative)
        return finish({a.negative, addInt(x, y), e});
    return finish(compareInt(x, y) >= 0 ? Num{a.negative, addInt(x, y, -1), e} : Num{b.negative, addInt(y, x, -1), e});
}

inline Num mul(const Num &a, const Num &b)
{
    return finish({a.negative != b.negative, mulInt(a.digits, b.digits), a.exponent + b.exponent});
}

// 100 extra places give far more than 38 quotient digits; a last digit 1 stands for
// a non-zero remainder, so that the rounding sees it.
inline Num div(const Num &a, const Num &b)
{
    if (a.digits.empty() || b.digits.empty())
        return {};
    bool remainder = false;
    const std::string q = divInt(a.digits + std::string(100, '0'), b.digits, &remainder);
    const bool negative = a.negative != b.negative;
    return finish({negative, q + (remainder ? "1" : "0"), a.exponent - b.exponent - 101});
}

inline int compare(const Num &a, const Num &b)
{
    const int sa = a.digits.empty() ? 0 : (a.negative ? -1 : 1);
    const int sb = b.digits.empty() ? 0 : (b.negative ? -1 : 1);
    if (sa != sb || sa == 0)
        return sa < sb ? -1 : (sa > sb ? 1 : 0);
    long e;
    const auto [x, y] = aligned(a, b, &e);
    return sa * compareInt(x, y);
}

} // namespace oracle
