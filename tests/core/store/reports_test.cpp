// Period totals as the Reports screen and the dashboard use them: month ranges, the
// five report periods, income, spending and both by category, the six-month chart.
// Suites whose name ends in "Calendar" also run in Berlin time.
#include "storetesting.h"

#include "store/reports.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

// The last instant of a whole-day range ending on that local day.
Instant endOfDay(int year, int month, int day)
{
    return Instant::fromMSecs(local(year, month, day, 23, 59, 59).msecs() + 999);
}

class Periods : public StoreTest
{
protected:
    Periods()
        : StoreTest(local(2025, 3, 15, 12))
    {}

    void enter(Instant date, const char *amount, const char *category, TxKind kind = TxKind::expense)
    {
        EXPECT_TRUE(store.add({.date = date,
                               .accountID = checking.id,
                               .amount = d(amount),
                               .category = QString::fromUtf8(category),
                               .kind = kind}));
    }
    ClosedRange range(ReportPeriod period) const { return periodRange(period, today); }
};

using PeriodsCalendar = Periods;

} // namespace

TEST_F(PeriodsCalendar, PeriodsRunFromMidnightOnTheirFirstDayToTheirLastSecond)
{
    EXPECT_EQ(Calendar::monthRange(local(2025, 3, 31, 23, 59, 59)),
              (ClosedRange{local(2025, 3, 1), endOfDay(2025, 3, 31)}));
    EXPECT_EQ(Calendar::monthRange(local(2024, 2, 1)), (ClosedRange{local(2024, 2, 1), endOfDay(2024, 2, 29)}));
    const Instant march15 = today, january10 = local(2025, 1, 10, 8);
    const struct
    {
        Instant now;
        ReportPeriod period;
        ClosedRange range;
    } cases[] = {
        {march15, ReportPeriod::thisMonth, {local(2025, 3, 1), endOfDay(2025, 3, 31)}},
        {march15, ReportPeriod::lastMonth, {local(2025, 2, 1), endOfDay(2025, 2, 28)}},
        {march15, ReportPeriod::last12Months, {local(2024, 4, 1), endOfDay(2025, 3, 31)}},
        {march15, ReportPeriod::thisYear, {local(2025, 1, 1), Instant::distantFuture()}}, // no end
        {march15, ReportPeriod::lastYear, {local(2024, 1, 1), endOfDay(2024, 12, 31)}},
        {january10, ReportPeriod::lastMonth, {local(2024, 12, 1), endOfDay(2024, 12, 31)}},
        {january10, ReportPeriod::last12Months, {local(2024, 2, 1), endOfDay(2025, 1, 31)}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(periodRange(c.period, c.now), c.range) << c.now.isoText() << " " << int(c.period);
}

TEST_F(PeriodsCalendar, TotalsCountEveryLineInTheRangeAndNoOther)
{
    enter(local(2025, 2, 28, 23, 59, 59), "1", "Paycheck", TxKind::deposit);
    enter(local(2025, 3, 1, 0, 0, 0), "10", "Paycheck", TxKind::deposit);
    enter(local(2025, 3, 31, 23, 59, 59), "100", "Paycheck", TxKind::deposit);
    enter(local(2025, 4, 1, 0, 0, 0), "1000", "Paycheck", TxKind::deposit);
    // The Store's slice of the lines by date ends exactly where the range does.
    EXPECT_EQ(store.linesWithin(Calendar::monthRange(today)).size(), 2u);
    EXPECT_EQ(Reports::income(store.linesWithin(Calendar::monthRange(today)), Calendar::monthRange(today)), d("110"));

    // "This year" has no end: a bill paid next February counts.
    enter(local(2026, 2, 3, 9), "-80", "Insurance", TxKind::bill);
    enter(local(2024, 12, 31, 23, 59, 59), "-5", "Insurance", TxKind::bill);
    EXPECT_EQ(Reports::spending(store.linesWithin(range(ReportPeriod::thisYear)), range(ReportPeriod::thisYear)),
              d("80"));
    EXPECT_EQ(Reports::spending(store.linesWithin(range(ReportPeriod::lastYear)), range(ReportPeriod::lastYear)),
              d("5"));
}

TEST_F(PeriodsCalendar, MonthlyGivesTheLastMonthsOldestFirst)
{
    today = local(2025, 5, 31, 20); // counting back from the 31st lands on shorter months' ends
    enter(local(2025, 2, 14), "-20", "Dining out");
    enter(local(2025, 2, 28, 22), "1500", "Paycheck", TxKind::deposit);
    enter(local(2025, 4, 30, 23, 59, 59), "-3.5", "Groceries");
    enter(local(2025, 5, 1), "40", "Music sales", TxKind::deposit);
    enter(local(2025, 1, 31), "999", "Paycheck", TxKind::deposit); // before the window

    EXPECT_EQ(Reports::monthly(store.linesWithin(Reports::lastMonths(today, 4)), today, 4),
              (std::vector<MonthFlow>{{local(2025, 2, 1), d("1500"), d("20")},
                                      {local(2025, 3, 1), d("0"), d("0")},
                                      {local(2025, 4, 1), d("0"), d("3.5")},
                                      {local(2025, 5, 1), d("40"), d("0")}}));
    EXPECT_TRUE(Reports::monthly(store.book().transactions, today, 0).empty());
}

TEST_F(Periods, CategoriesGroupByExactTextLargestFirstAndTransfersAreNeither)
{
    const ClosedRange month = Calendar::monthRange(today);
    EXPECT_TRUE(store.transfer(checking.id, savings.id, d("500"), local(2025, 3, 3), {}));
    enter(local(2025, 3, 6), "-40", "Gifts", TxKind::transfer); // filed oddly, still a transfer
    enter(local(2025, 3, 2), "-0.1", "Groceries");
    enter(local(2025, 3, 3), "-0.2", "Groceries"); // a text of its own, equal to the one before
    enter(local(2025, 3, 4), "-5", "groceries");
    enter(local(2025, 3, 5), "-1", "");
    enter(local(2025, 3, 6), "-2.5", "");
    enter(local(2025, 3, 7), "0", "Dining out"); // neither in nor out
    enter(local(2025, 3, 8), "1200", "Paycheck", TxKind::deposit);
    enter(local(2025, 3, 9), "0.05", "Refunds", TxKind::deposit);
    enter(local(2025, 3, 10), "300", "Paycheck", TxKind::deposit);
    enter(local(2025, 4, 1), "-999", "Groceries");  // next month
    enter(local(2025, 2, 28), "-999", "Groceries"); // last month

    const CategoryTotals spending{{"groceries", d("5")}, {"", d("3.5")}, {"Groceries", d("0.3")}};
    const std::vector<Transaction> &lines = store.book().transactions;
    EXPECT_EQ(std::tuple(Reports::spendingByCategory(lines, month), Reports::spending(lines, month)),
              std::tuple(spending, d("8.8")));
    EXPECT_EQ(std::tuple(Reports::incomeByCategory(lines, month), Reports::income(lines, month)),
              std::tuple(CategoryTotals{{"Paycheck", d("1500")}, {"Refunds", d("0.05")}}, d("1500.05")));

    // Read back from the file, where equal texts share their storage, and given in
    // reverse order (which the Store sorts), the groups are the same.
    Book read = onDisk();
    std::reverse(read.transactions.begin(), read.transactions.end());
    Store reopened({temp.path() + QStringLiteral("/again")});
    EXPECT_TRUE(reopened.setBook(read));
    EXPECT_EQ(reopened.linesWithin(month).size(), store.book().transactions.size() - 2);
    EXPECT_EQ(Reports::spendingByCategory(reopened.linesWithin(month), month), spending);
}

TEST_F(Periods, ReportLinesTruncatePercentsAndCompareBudgetsOverThePeriodsMonths)
{
    enter(local(2025, 3, 2), "-0.29", "Rent");
    enter(local(2025, 3, 3), "-0.6666", "Groceries");
    enter(local(2025, 3, 4), "-0.0434", "Fees");
    Book book = store.book();
    book.categories.push_back({"Groceries", false, d("0.6666")}); // the first of a name decides
    book.categories.push_back({"Groceries", false, d("0.01")});
    book.categories.push_back({"Rent", false, d("0.025")});
    ASSERT_TRUE(store.setBook(book));

    const PeriodReport month =
        Reports::periodReport(store.book().transactions, store.book().categories, ReportPeriod::thisMonth, today);
    ASSERT_EQ(month.spendingLines.size(), 3u);
    const CategoryLine &groceries = month.spendingLines[0], &rent = month.spendingLines[1];
    // Exact: through a double 0.29 of 1 would be 28%. At the limit is not over.
    EXPECT_EQ(std::tuple(groceries.percentText, rent.percentText), std::tuple("66%", "29%"));
    EXPECT_DOUBLE_EQ(groceries.share, 0.6666);
    EXPECT_EQ(std::tuple(groceries.limit, groceries.over, rent.over, month.spendingLines[2].limit),
              std::tuple(d("0.6666"), false, true, std::nullopt));

    // A year compares with twelve months of budget; without a total every share is nothing.
    const PeriodReport year =
        Reports::periodReport(store.book().transactions, store.book().categories, ReportPeriod::thisYear, today);
    EXPECT_EQ(std::tuple(year.spendingLines[1].limit, year.spendingLines[1].over), std::tuple(d("0.3"), false));
    const CategoryLine none = categoryLines({{"Gigs", d("0")}}, d("0"), {}, 1)[0];
    EXPECT_EQ(std::tuple(none.percentText, none.share), std::tuple("0%", 0.0));
}
