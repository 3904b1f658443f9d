#include "helpers/testing.h"
#include "model/money.h"

#include <gtest/gtest.h>

namespace {

std::string parsed(const QString &text)
{
    const std::optional<Decimal> value = Money::parse(text);
    return value ? value->toStdString() : "none";
}

} // namespace

TEST(MoneyParse, AcceptsWhatUsersType)
{
    const std::pair<const char *, const char *> cases[] = {
        {"(45.10)", "-45.1"}, {"12.00-", "-12"},     {" $1,234.50 ", "1234.5"}, {"1 234", "1234"}, {"45.10-", "-45.1"},
        {"-45.10", "-45.1"},  {"(-45.10)", "-45.1"}, {"(45.10-)", "-45.1"},     {"--5", "5"},      {"12.345", "12.345"},
        {"\t 7.5\t", "7.5"},  {"$-3", "-3"},         {"-$1,000", "-1000"},      {"+2", "2"},
    };
    for (const auto &[input, expected] : cases)
        EXPECT_EQ(parsed(QString::fromUtf8(input)), expected) << input;
    EXPECT_EQ(parsed(QStringLiteral("\u00a012.50\u2009")), "12.5"); // other blanks trim too
}

TEST(MoneyParse, GivesNothingWithoutANumber)
{
    for (const char *input : {"", "   ", "\t", "abc", "$", ",", "()", "-", "12abc", "1.2.3",
                              "\xe2\x82\xac"
                              "5",
                              "5\n", "1\u00a0234", "1e5", "2E-1"})
        EXPECT_EQ(parsed(QString::fromUtf8(input)), "none") << input;
}

TEST(MoneyText, ShowsCurrencyInTheUsersLocale)
{
    EXPECT_EQ(Money::code(), QStringLiteral("USD"));
    EXPECT_EQ(Money::s(d("-45.1")), QStringLiteral("-$45.10"));
    EXPECT_EQ(Money::s(d("1234.5")), QStringLiteral("$1,234.50"));
    EXPECT_EQ(Money::s(d("0")), QStringLiteral("$0.00"));
    EXPECT_EQ(Money::s(d("12.345")), QStringLiteral("$12.34")); // half to even when shown
    EXPECT_EQ(Money::s(d("123456789012345678901234567.01")),
              QStringLiteral("$123,456,789,012,345,678,901,234,567.01")); // no double in between
    EXPECT_EQ(Money::signed_(d("5")), QStringLiteral("+$5.00"));
    EXPECT_EQ(Money::signed_(d("-5")), QStringLiteral("-$5.00"));
    EXPECT_EQ(Money::signed_(d("0")), Money::s(d("0")));
}

TEST(MoneyText, FollowsTheCurrencyCode)
{
    Money::setCode(QStringLiteral("EUR"));
    EXPECT_EQ(Money::s(d("1234.5")), QStringLiteral("\u20ac1,234.50"));
    Money::setCode(QStringLiteral("JPY"));
    EXPECT_EQ(Money::s(d("1234")), QStringLiteral("\u00a51,234"));
    Money::setCode(QStringLiteral("dollars")); // not a currency: the plain number
    EXPECT_EQ(Money::s(d("-1234.5")), QStringLiteral("-1234.5"));
    Money::setCode(QStringLiteral("USD"));
}

TEST(MoneyEditText, HasAtLeastTwoDecimalsAndNeverRounds)
{
    EXPECT_EQ(Money::editText(d("72")), QStringLiteral("72.00"));
    EXPECT_EQ(Money::editText(d("16.5")), QStringLiteral("16.50"));
    EXPECT_EQ(Money::editText(d("12.345")), QStringLiteral("12.345"));
    EXPECT_EQ(Money::editText(d("-1450")), QStringLiteral("-1450.00"));
    EXPECT_EQ(*Money::parse(Money::editText(d("0.05"))), d("0.05"));
}
