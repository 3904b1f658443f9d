// What the dashboard and the calendar get from their C++ side: a month's grid with
// each day's items and the header's sums, and the dashboard's figures.
#include "calendarmonth.h"
#include "dashboardsummary.h"

#include "bridgetesting.h"

namespace {

class Overview : public BridgeTest
{
protected:
    CalendarGrid::Month month(int year, int month)
    {
        return CalendarGrid::month(*store, local(year, month, 1, 12), Qt::Sunday);
    }
    // A day's items as "title amount tone" texts.
    static QStringList items(const CalendarGrid::Month &m, int day)
    {
        QStringList out;
        for (const CalendarGrid::Item &item : m.days.at(size_t(day - 1)).items)
            out << item.title + ' ' + item.amount.toString() + ' ' + QString::number(int(item.tone));
        return out;
    }
};

} // namespace

TEST_F(Overview, ADaysItemsComeAsBillsThenRoyaltiesThenMoneyInAndOut)
{
    line(local(2025, 4, 12, 8), "-4.5");
    line(local(2025, 4, 12, 9), "500", TxKind::deposit);
    line(local(2025, 4, 12, 23, 59, 59), "-10");
    royalty("BMI", "80", local(2025, 4, 12, 7));
    bill("Rent", "1200", local(2025, 4, 12, 9));
    bill("Phone", "65.5", local(2025, 4, 12, 9));
    royalty("ASCAP", "20", local(2025, 4, 12, 6), RoyaltyStatus::disputed);
    royalty("Label", "300", local(2025, 4, 12, 6), RoyaltyStatus::received);
    // A transfer is no money in or out; a bill payment is money out.
    EXPECT_TRUE(store->transfer(checking.id, savings.id, d("25"), local(2025, 4, 20, 12), QString()));
    line(local(2025, 4, 21, 12), "-7", TxKind::bill);

    const CalendarGrid::Month m = month(2025, 4);
    EXPECT_EQ(items(m, 12), (QStringList{"Rent 1200 0", "Phone 65.5 0", "ASCAP 20 2", "BMI 80 2", "Money in 500 3",
                                         "Money out -14.5 4"}));
    EXPECT_EQ(CalendarGrid::helpText(m.days[11]), "Rent: $1,200.00\nPhone: $65.50\nASCAP: $20.00\nBMI: $80.00\n"
                                                  "Money in: $500.00\nMoney out: -$14.50");
    // The line at 23:59:59 stays on the 12th.
    EXPECT_EQ(std::tuple(m.days[12].items.empty(), m.days[19].items.empty()), std::tuple(true, true));
    EXPECT_EQ(items(m, 21), QStringList{"Money out -7 4"});
}

TEST_F(Overview, BillsShowOnEachDueDayRedWhenOverdueAndTheHeaderSumsTheMonth)
{
    bill("Rent", "1200", local(2025, 3, 3, 9)); // overdue
    bill("Lessons", "40", local(2025, 3, 17, 9), Repeat::weekly);
    royalty("BMI", "80.25", local(2025, 4, 30, 23));
    royalty("Old", "5", local(2025, 5, 1, 0));
    royalty("Paid", "500", local(2025, 4, 2, 12), RoyaltyStatus::received);

    const CalendarGrid::Month march = month(2025, 3);
    QStringList listed; // every item of the month, after its day
    for (int day = 1; day <= int(march.days.size()); ++day)
        for (const QString &item : items(march, day))
            listed << QString::number(day) + ' ' + item;
    EXPECT_EQ(listed, (QStringList{"3 Rent 1200 1", "17 Lessons 40 0", "24 Lessons 40 0", "31 Lessons 40 0"}));
    EXPECT_EQ(CalendarGrid::headerText(march), "Bills this month: $1,320.00   ·   Royalties expected: $0.00");
    EXPECT_EQ(CalendarGrid::headerText(month(2025, 4)), "Bills this month: $1,360.00   ·   Royalties expected: $80.25");
}

TEST_F(Overview, TheMonthObjectStepsFollowsTheBookAndCountsWhatACellHides)
{
    CalendarMonth calendar;
    calendar.setFirstDayOfWeek(Qt::Sunday);
    calendar.setStore(store.get());
    // Its title, today's day in it and the blank cells before its first day.
    auto month = [&calendar] {
        return calendar.title() + ' ' + QString::number(calendar.today()) + ' ' +
               QString::number(calendar.leadingBlanks());
    };
    EXPECT_EQ(month(), "March 2025 15 6");

    for (const char *name : {"A", "B", "C", "D", "E", "F"})
        bill(name, "1", local(2025, 3, 20, 9), Repeat::once);
    // Four lines at most, the last one then says what is hidden; a short window leaves
    // room for fewer.
    auto day20 = [&calendar] {
        const QVariantMap day = calendar.days().at(19).toMap();
        return day.value("shown").toString() + ' ' + day.value("moreText").toString();
    };
    EXPECT_EQ(day20(), "4 +2 more");
    calendar.setLines(3);
    EXPECT_EQ(day20(), "2 +4 more");
    calendar.setLines(0);
    EXPECT_EQ(std::tuple(calendar.lines(), day20()), std::tuple(1, "0 +6 more"));

    calendar.step(-3);
    EXPECT_EQ(std::tuple(month(), calendar.days().size()), std::tuple("December 2024 0 0", 31));
    calendar.showToday();
    calendar.setFirstDayOfWeek(Qt::Monday);
    EXPECT_EQ(month(), "March 2025 15 5");
}

TEST_F(Overview, DashboardTilesBalancesAtNowAndTheFirstFivePendingRoyalties)
{
    line(local(2025, 3, 2, 12), "1000", TxKind::deposit);
    line(local(2025, 3, 3, 12), "-1000.01");
    line(local(2025, 2, 27, 12), "-50");
    line(local(2025, 3, 30, 12), "-20"); // later this month: in the month's tiles, not in the balance now
    EXPECT_TRUE(store->transfer(checking.id, savings.id, d("300"), local(2025, 3, 4, 12), QString()));

    DashboardSummary summary;
    summary.setStore(store.get());
    EXPECT_EQ(QStringList({summary.totalText(), summary.inText(), summary.outText(), summary.netText()}),
              (QStringList{"-$70.01", "$1,000.00", "$1,020.01", "-$20.01"}));
    EXPECT_TRUE(summary.netNegative());
    EXPECT_EQ(column(summary.accounts(), "balanceText"), (QStringList{"-$350.01", "$300.00"}));

    const QVariantList months = summary.months();
    EXPECT_EQ(column(months, "monthText"), (QStringList{"Oct", "Nov", "Dec", "Jan", "Feb", "Mar"}));
    EXPECT_EQ(column(months, "outText").mid(4), (QStringList{"$50.00", "$1,020.01"}));
    EXPECT_DOUBLE_EQ(months.value(5).toMap().value("out").toDouble(), 1020.01);

    line(local(2025, 3, 5, 12), "20.01", TxKind::deposit);
    EXPECT_EQ(std::tuple(summary.netText(), summary.netNegative()), std::tuple("$0.00", false));

    for (int day = 1; day <= 7; ++day)
        royalty(QByteArray::number(day).prepend("Payer ").constData(), "10", local(2025, 4, 8 - day, 12));
    EXPECT_EQ(column(summary.royalties(), "payer"),
              (QStringList{"Payer 7", "Payer 6", "Payer 5", "Payer 4", "Payer 3"}));
    EXPECT_EQ(column(summary.royalties(), "expectedLine").first(), "Expected Apr 1");
}
