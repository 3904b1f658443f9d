// Reading QIF files: sections, fields, splits, dates, amounts and encodings.
#include "bankfiles/qifreader.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace {

// Each line as "2024-03-05 -12.5 Payee [Category]".
std::vector<std::string> shown(const Statement &s)
{
    std::vector<std::string> lines;
    for (const StatementLine &l : s.lines)
        lines.push_back((l.day.toString(Qt::ISODate) + u' ' + l.amount.toString() + u' ' + l.payee +
                         QLatin1String(" [") + l.category + u']')
                            .toStdString());
    return lines;
}

Statement qif(const char *text, std::optional<bool> dayFirst = std::nullopt)
{
    return QifReader::read(QByteArray(text), dayFirst);
}

} // namespace

TEST(QifRead, BankSectionsOfTheFirstAccountWithSplitsAndFallbacks)
{
    const Statement s = qif("# exported\n"
                            "!Type:Cat\nNFood\nDFood and drink\n^\n"
                            "!Option:AutoSwitch\n!Account\nNChecking\nTBank\n^\n!Clear:AutoSwitch\n"
                            "!Type:Bank\n"
                            "D1/2/2024\nT0.00\nPOpening Balance\nL[Checking]\n^\n"
                            "D1/3/2024\nT-1,000.00\nPMortgage Co\nL[Loan]\nS[Loan]\n$-700.00\nSInterest\n$=300\n^\n"
                            "D1/4/2024\nMGroceries run\nLFood:Shop/Home\nSFood\nD1/9/2024\n$-20\nSHome\n$-5.5\n^\n"
                            "D1/5/2024\nU12.00\nLGifts\n^\n"
                            "D1/6/2024\nT-3\nL[Savings]/Home\n^\n"
                            "D1/7/2024\nT-4\n^\n"
                            "D1/8/2024\nT-5\nPNo date below\n^\nT1\nPNo date\n^\n^\n"
                            "!Type:Invst\nD1/9/2024\nNBuy\nT100\n^\n"
                            "!Account\nNCard\nTCCard\n^\n!Type:CCard\nD1/10/2024\nT-9\nPOther account\n^\n"
                            "!Account\nNChecking\n^\n!Type:Bank\nD1/11/2024\nT-6\nPNo final caret");
    EXPECT_EQ(s.format, "QIF");
    EXPECT_EQ(s.account, "Checking");
    EXPECT_EQ(s.bad, 1);
    EXPECT_TRUE(s.error.isEmpty());
    EXPECT_EQ(shown(s), (std::vector<std::string>{
                            "2024-01-03 -1000 Mortgage Co []",
                            "2024-01-04 -25.5 Groceries run [Food:Shop]",
                            "2024-01-05 12 Gifts [Gifts]",
                            "2024-01-06 -3 Savings []",
                            "2024-01-07 -4 Imported []",
                            "2024-01-08 -5 No date below []",
                            "2024-01-11 -6 No final caret []",
                        }));
}

TEST(QifRead, OneOrderOfDayAndMonthForTheWholeFile)
{
    struct Case
    {
        const char *dates;
        std::optional<bool> dayFirst;
        std::vector<std::string> days;
        bool ambiguous;
        int bad;
    };
    const Case cases[] = {
        {"6/ 1/94|6/2/94", {}, {"1994-06-01", "1994-06-02"}, true, 0},
        {"6/ 1/94|6/2/94", true, {"1994-01-06", "1994-02-06"}, false, 0},
        {"01/06/2010|29/12/2010", {}, {"2010-06-01", "2010-12-29"}, false, 0},
        {"06/01/10|12/29/10", {}, {"2010-06-01", "2010-12-29"}, false, 0},
        {"2/10'2020|1/5' 5|3-4-69|3.4.68", {}, {"2020-02-10", "2005-01-05", "1969-03-04", "2068-03-04"}, true, 0},
        {"13/1/2020|14/1/2020|1/13/2020|2020-02-10", {}, {"2020-01-13", "2020-01-14", "2020-02-10"}, false, 1},
        {"1/1/2020|2/2/2020", {}, {"2020-01-01", "2020-02-02"}, false, 0},
        {"2/30/2020|1/2/123|1'2/2020|1/2/3/4|12345/1/1|0/1/2020", {}, {}, false, 6},
    };
    for (const Case &c : cases) {
        QByteArray file = "!Type:Bank\n";
        for (const QByteArray &date : QByteArray(c.dates).split('|'))
            file += "D" + date + "\nT1\n^\n";
        const Statement s = QifReader::read(file, c.dayFirst);
        std::vector<std::string> days;
        for (const StatementLine &l : s.lines)
            days.push_back(l.day.toString(Qt::ISODate).toStdString());
        EXPECT_EQ(days, c.days) << c.dates;
        EXPECT_EQ(s.datesAmbiguous, c.ambiguous) << c.dates;
        EXPECT_EQ(s.bad, c.bad) << c.dates;
    }
}

TEST(QifRead, AmountsWithThousandsOrADecimalComma)
{
    const std::pair<const char *, const char *> cases[] = {
        {"-1,000.00", "-1000"}, {"1,234,567", "1234567"}, {"1,000", "1000"},  {"-1.234,56", "-1234.56"},
        {"12,5", "12.5"},       {"1 234.50", "1234.5"},   {"(4.10)", "-4.1"}, {"1e5", "bad"},
    };
    for (const auto &[text, expected] : cases) {
        const Statement s = QifReader::read(QByteArray("!Type:Bank\nD1/1/2024\nT") + text);
        EXPECT_EQ(s.lines.empty() ? std::string("bad") : s.lines[0].amount.toStdString(), expected) << text;
    }
}

TEST(QifRead, Utf8Windows1252AndUtf16Text)
{
    const QByteArray body = "!Type:Cash\nD1/1/2024\nT-1\nPCaf\xC3\xA9\n";
    const QString bom16 = QStringLiteral("!Type:Cash\nD1/1/2024\nT-1\nPCaf\u00E9\n");
    const QByteArray files[] = {
        body,
        "\xEF\xBB\xBF" + body,
        "!Type:Cash\r\nD1/1/2024\r\nT-1\r\nPCaf\xE9\r\n",
        QByteArray("\xFF\xFE") + QByteArray(reinterpret_cast<const char *>(bom16.utf16()), bom16.size() * 2),
    };
    for (const QByteArray &file : files) {
        EXPECT_TRUE(QifReader::looksLike(file));
        EXPECT_EQ(shown(QifReader::read(file)), (std::vector<std::string>{"2024-01-01 -1 Café []"}))
            << file.toStdString();
    }
}

TEST(QifRead, FoundFromTheFirstMeaningfulLine)
{
    EXPECT_TRUE(QifReader::looksLike("\xEF\xBB\xBF# comment\n\n  !type:bank\n"));
    EXPECT_TRUE(QifReader::looksLike("!Account\nNChecking\n"));
    EXPECT_TRUE(QifReader::looksLike("!Option:AutoSwitch\n"));
    EXPECT_FALSE(QifReader::looksLike("Date,Amount\n!Type:Bank\n"));
    EXPECT_FALSE(QifReader::looksLike("<OFX>"));
    EXPECT_FALSE(QifReader::looksLike(""));
}

TEST(QifRead, AFileWithoutBankCashOrCardSectionsIsAnError)
{
    const Statement lists = qif("!Type:Cat\nNFood\n^\n!Type:Invst\nD1/1/2024\nT5\n^\n");
    EXPECT_EQ(lists.error, "it holds no bank, cash or card transactions");
    EXPECT_TRUE(lists.lines.empty());
    const Statement empty = qif("!Type:Bank\n");
    EXPECT_TRUE(empty.error.isEmpty());
    EXPECT_TRUE(empty.lines.empty());
}
