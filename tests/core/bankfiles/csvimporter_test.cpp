// Reading bank downloads: splitting, finding the header, guessing the columns and
// reading the dates.
#include "bankfilestesting.h"

#include <QTemporaryDir>

using Rows = QList<QStringList>;

// Quotes hold commas, quotes and line breaks, anywhere in a cell, and an unclosed one the
// rest; every line end counts once, the last ends nothing; cells stay untrimmed.
TEST(CsvSplit, QuotesLineEndsAndCells)
{
    const std::pair<const char *, Rows> cases[] = {
        {"a,\"b,c\",d", {{"a", "b,c", "d"}}},
        {"\"say \"\"hi\"\"\"", {{"say \"hi\""}}},
        {"\"two\nlines\",x\ny", {{"two\nlines", "x"}, {"y"}}},
        {"ab\"c,d\"e", {{"abc,de"}}},
        {"\"\",\"\"\"\"", {{"", "\""}}},
        {"x\r\ny\rz", {{"x"}, {"y"}, {"z"}}},
        {"x\r\r\ny\n", {{"x"}, {""}, {"y"}}},
        {"\"in\r\nside\"", {{"in\nside"}}},
        {"a,b,\n\n", {{"a", "b", ""}, {""}}},
        {"", {}},
        {"a,\"open\nrest,of\r\ntext", {{"a", "open\nrest,of\ntext"}}},
        {" 1 , 2 ", {{" 1 ", " 2 "}}},
    };
    for (const auto &[text, rows] : cases)
        EXPECT_EQ(CSVImporter::parse(QString::fromUtf8(text)), rows) << text;
}

TEST(CsvRead, HeaderIsFoundBelowInfoLinesAndBlankRowsAreDropped)
{
    const CSVImporter importer = csv("Account,1234\n"
                                     "\n"
                                     "Balance,99.00\n"
                                     " , ,\t\n"
                                     "Date, Description ,Amount\n"
                                     "\n"
                                     "3/5/2024, Corner cafe ,-4.50\n"
                                     ",,\n"
                                     "3/6/2024,Payroll\n");
    EXPECT_EQ(importer.headers(), (QStringList{"Date", "Description", "Amount"}));
    EXPECT_EQ(importer.rows(), (Rows{{"3/5/2024", " Corner cafe ", "-4.50"}, {"3/6/2024", "Payroll"}}));
    EXPECT_EQ(describe(importer.mapping()), "date=0 description=1 amount=2 debit=- credit=- category=-");
}

TEST(CsvRead, HeaderTestIsDateAnywhereOrExactlyPosted)
{
    EXPECT_EQ(csv("Bank export,,\nPosted,Payee,Amount\n1,2,3\n").headers().first(), "Posted");
    EXPECT_EQ(csv("Info\nPosted on,x\nUPDATED,y\n").headers(), (QStringList{"UPDATED", "y"}));
    // " Posted" is not "posted": the test looks at the cell before trimming.
    EXPECT_EQ(csv("Info\n Posted,Payee\n").headers(), (QStringList{"Info"}));
    EXPECT_EQ(csv("Info\n Posted,Payee\n").rows(), (Rows{{" Posted", "Payee"}}));
    EXPECT_EQ(csv("Payee,Amount\nA,1\n").rows(), (Rows{{"A", "1"}})); // no date title: first row
}

TEST(CsvRead, FilesAreUtf8WithoutTheByteOrderMark)
{
    const auto withBom = CSVImporter::fromUtf8(QByteArray("\xEF\xBB\xBF"
                                                          "Date,Amount\r\n3/5/2024,1\r\n"));
    ASSERT_TRUE(withBom);
    EXPECT_EQ(withBom->headers(), (QStringList{"Date", "Amount"}));
    // A mark that is not at the very start is an ordinary character of its cell.
    const auto inner = CSVImporter::fromUtf8(QByteArray("Date,\xEF\xBB\xBF"
                                                        "Amount\n"));
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner->headers().at(1), QStringView(u"\uFEFFAmount"));

    EXPECT_FALSE(CSVImporter::fromUtf8(QByteArray("Date,Caf\xE9\n"))); // Latin-1, not UTF-8
    EXPECT_FALSE(CSVImporter::fromUtf8(QByteArray(" , \n\n,,\n")));
    EXPECT_FALSE(CSVImporter::fromUtf8(QByteArray()));

    QTemporaryDir dir;
    EXPECT_FALSE(CSVImporter::fromFile(dir.filePath(QStringLiteral("missing.csv"))));
    EXPECT_FALSE(CSVImporter::fromFile(dir.path()));
    // Files that read are the bank corpus (corpus_test.cpp).
}

TEST(CsvGuess, LeftmostMatchingTitleWinsButExactAmountIsPreferred)
{
    auto guess = [](QStringList headers) { return describe(CSVImporter::guess(headers)); };
    EXPECT_EQ(guess({"Posted", "Transaction Date", "Amount (USD)", "Amount", "Memo", "Payee"}),
              "date=0 description=4 amount=3 debit=- credit=- category=-");
    EXPECT_EQ(guess({"Date", "Amount (USD)", "Original amount"}),
              "date=0 description=- amount=1 debit=- credit=- category=-");
    EXPECT_EQ(guess({"Date", "AMOUNT", "Amount"}), "date=0 description=- amount=1 debit=- credit=- category=-");
    // One column may take two roles.
    EXPECT_EQ(guess({"Deposit Date", "Merchant Name", "Debit/Credit", "Category"}),
              "date=0 description=1 amount=- debit=2 credit=0 category=3");
    EXPECT_EQ(guess({"Date", "Debit/Credit"}), "date=0 description=- amount=- debit=1 credit=1 category=-");
    EXPECT_EQ(guess({"Date", "Withdrawal Amt.", "Deposit Amt.", "Money out", "Money in"}),
              "date=0 description=- amount=- debit=1 credit=2 category=-");
    EXPECT_EQ(guess({"When", "What", "How much"}), "date=- description=- amount=- debit=- credit=- category=-");
}

// The nine patterns, each where it is the first to match; month first for ambiguous
// dates, day first only above 12; local midnight on both sides of the clock change.
TEST(CsvDate, PatternsInOrderThenInternetDateTime)
{
    const std::pair<const char *, const char *> cases[] = {
        {"03/05/2024", "2024-03-05 00:00"},           {" 3/5/2024\t", "2024-03-05 00:00"},
        {"2024-03-05", "2024-03-05 00:00"},           {"25/12/2024", "2024-12-25 00:00"},
        {"Mar 5, 2024", "2024-03-05 00:00"},          {"sep 30, 2024", "2024-09-30 00:00"},
        {"2024/03/05", "2024-03-05 00:00"},           {"03-05-2024", "2024-03-05 00:00"},
        {"2024-03-05T10:00:00Z", "2024-03-05 05:00"}, {"2024-07-05T10:00:00+02:00", "2024-07-05 04:00"},
        {"03/04/2024", "2024-03-04 00:00"},           {"13/04/2024", "2024-04-13 00:00"},
        {"2024-03-10", "2024-03-10 00:00"}, // New York's clocks go forward that night
        {"07/04/2024", "2024-07-04 00:00"},
    };
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(local(CSVImporter::date(QString::fromUtf8(text))), expected) << text;
    // A two-digit year is taken literally by the four-digit patterns before it.
    EXPECT_EQ(CSVImporter::date(QStringLiteral("3/5/24"))->toUtc().date().year(), 24);
}

TEST(CsvDate, StrictReadingRejectsTheRest)
{
    for (const char *text :
         {"5.3.2024", "02/30/2024", "13/13/2024", "not a date", "", " \t ", "2024-03-05 extra", "2024-3-5",
          "Sept 5, 2024", "Mar 5,2024", "2024-03-05T10:00:00.5Z", "2024-03-05T10:00Z", "20240305", "-3/5/2024"})
        EXPECT_EQ(local(CSVImporter::date(QString::fromUtf8(text))), "none") << text;
}
