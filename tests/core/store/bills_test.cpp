// Repeat schedules and bills as the Bills screen, the dashboard and the calendar use
// them. Suites whose name ends in "Calendar" depend on the time zone: they run in
// New York time and again in Berlin time (see tests/CMakeLists.txt).
#include "storetesting.h"

#include "model/repeat.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

Bill bill(const char *name, const char *amount, Instant due, Repeat repeats = Repeat::monthly, bool active = true)
{
    return {.name = QString::fromUtf8(name), .amount = d(amount), .due = due, .repeats = repeats, .active = active};
}

class Bills : public StoreTest
{
protected:
    Bills()
        : StoreTest(local(2025, 3, 15, 10, 30))
    {}
    Bill added(const Bill &b)
    {
        EXPECT_TRUE(store.save(b));
        return b;
    }
    static std::vector<QString> names(const std::vector<Bill> &bills) { return each(bills, &Bill::name); }
    const Bill &first() const { return store.book().bills.at(0); }
};

using BillsCalendar = Bills;

} // namespace

// Set dates each year: the next pair in calendar order, past the year's last into the next
// year, each day clamped to its month anew (February 29 only in leap years), at the same time.
TEST(RepeatCalendar, SetDatesComeInCalendarOrderAcrossYearsAndMonthEnds)
{
    const std::vector<MonthDay> dates = *parseYearDates(QStringLiteral("sep 15, April 15,6-15; Jan 15, Feb 29"));
    EXPECT_EQ(yearDatesText(dates), "Jan 15, Feb 29, Apr 15, Jun 15, Sep 15");
    const auto after = [&](Instant from) { return next(Repeat::setDates, from, dates); };
    EXPECT_EQ(after(local(2025, 4, 15, 9)), local(2025, 6, 15, 9));
    EXPECT_EQ(after(local(2025, 9, 15, 9)), local(2026, 1, 15, 9)); // a skip on the year's last pair
    EXPECT_EQ(after(local(2025, 1, 15, 9)), local(2025, 2, 28, 9));
    EXPECT_EQ(after(local(2025, 2, 28, 9)), local(2025, 4, 15, 9));
    EXPECT_EQ(after(local(2028, 1, 15, 9)), local(2028, 2, 29, 9));
    EXPECT_EQ(after(local(2025, 3, 2, 9)), local(2025, 4, 15, 9)); // a due date between pairs
    EXPECT_EQ(next(Repeat::setDates, local(2025, 3, 2, 9), {}), std::nullopt);

    for (const char *wrong : {"", "Apr 31", "Feb 30", "Apr 15, apr 15", "13-01", "Smarch 3", "Apr",
                              "1-1,2-1,3-1,4-1,5-1,6-1,7-1,8-1,9-1,10-1,11-1,12-1,12-2"})
        EXPECT_EQ(parseYearDates(QString::fromLatin1(wrong)), std::nullopt) << wrong;
}

TEST(RepeatCalendar, MonthEndClampsThenDriftsAndYear9999IsTheLast)
{
    EXPECT_EQ(next(Repeat::monthly, local(2025, 1, 31, 9)), local(2025, 2, 28, 9));
    EXPECT_EQ(next(Repeat::monthly, local(2025, 2, 28, 9)), local(2025, 3, 28, 9));
    EXPECT_EQ(next(Repeat::quarterly, local(2024, 11, 30, 9)), local(2025, 2, 28, 9));
    EXPECT_EQ(next(Repeat::yearly, local(2024, 2, 29, 9)), local(2025, 2, 28, 9));
    EXPECT_EQ(next(Repeat::weekly, local(2025, 1, 28, 9, 5, 7)), local(2025, 2, 4, 9, 5, 7));
    EXPECT_EQ(next(Repeat::once, local(2025, 1, 31, 9)), std::nullopt);
    // The money file holds dates up to the end of year 9999: a schedule that would go past it
    // ends (and paying the bill then finishes it), so the next start can still read the file.
    EXPECT_EQ(next(Repeat::yearly, local(9999, 3, 1, 9)), std::nullopt);
    EXPECT_EQ(next(Repeat::weekly, local(9999, 12, 28, 9)), std::nullopt);
    EXPECT_EQ(next(Repeat::monthly, local(9999, 11, 15, 9)), local(9999, 12, 15, 9));
}

TEST(RepeatCalendar, EveryTwoWeeksKeepsNineOClockAcrossDaylightSaving)
{
    // Spring: New York (9 March) and Berlin (30 March) both lose an hour on the way;
    // autumn: Berlin (26 October) and New York (2 November) gain it back.
    const struct
    {
        Instant from, to;
        int hours;
    } walks[] = {{local(2025, 3, 1, 9), local(2025, 4, 12, 9), 42 * 24 - 1},
                 {local(2025, 10, 18, 9), local(2025, 11, 15, 9), 28 * 24 + 1}};
    for (const auto &walk : walks) {
        Instant due = walk.from;
        while (due < walk.to) {
            due = next(Repeat::biweekly, due).value();
            EXPECT_EQ(due.toLocal().time(), QTime(9, 0)) << due.isoText();
        }
        EXPECT_EQ(due, walk.to);
        EXPECT_EQ(due.secs() - walk.from.secs(), walk.hours * 3600);
    }
}

TEST_F(BillsCalendar, OverdueMeansBeforeMidnightToday)
{
    EXPECT_FALSE(store.isOverdue(bill("Due at midnight", "1", local(2025, 3, 15, 0, 0))));
    EXPECT_TRUE(store.isOverdue(bill("Due last night", "1", local(2025, 3, 14, 23, 59))));
    EXPECT_FALSE(store.isOverdue(bill("Finished", "1", local(2024, 1, 1), Repeat::once, false)));
}

TEST_F(BillsCalendar, FourteenDayWindowEndsAtTheStartOfItsLastDay)
{
    // From 1 March the window crosses New York's clock change, from 20 March Berlin's.
    for (const Instant now : {local(2025, 3, 1, 10, 30), local(2025, 3, 20, 10, 30)}) {
        today = now;
        const Instant lastMidnight = Instant::fromDateTime(now.toLocal().date().addDays(14).startOfDay());
        Book book = store.book();
        book.bills = {bill("Nine that day", "1", lastMidnight.addSecs(9 * 3600)),
                      bill("Midnight that day", "1", lastMidnight), bill("Finished", "1", now, Repeat::once, false),
                      bill("Tie", "1", lastMidnight), bill("A month behind", "1", Calendar::addMonths(now, -1))};
        EXPECT_TRUE(store.setBook(book));
        EXPECT_EQ(names(store.upcomingBills(14)), (std::vector<QString>{"A month behind", "Midnight that day", "Tie"}))
            << now.isoText();
    }
}

TEST_F(BillsCalendar, DueDatesFollowTheScheduleFromTheCurrentDueDate)
{
    const Bill rent = bill("Rent", "1", local(2025, 1, 31, 9));
    EXPECT_EQ(store.dueDates(rent, {local(2024, 1, 1), local(2025, 3, 28, 9)}),
              (std::vector<Instant>{local(2025, 1, 31, 9), local(2025, 2, 28, 9), local(2025, 3, 28, 9)}));
    EXPECT_EQ(store.dueDates(rent, Calendar::monthRange(local(2025, 4, 1))),
              std::vector<Instant>{local(2025, 4, 28, 9)});

    const Bill once = bill("Deposit", "1", local(2025, 3, 3, 18), Repeat::once);
    EXPECT_EQ(store.dueDates(once, {once.due, once.due}), std::vector<Instant>{once.due});
    EXPECT_EQ(store.dueDates(once, Calendar::monthRange(local(2025, 4, 3))), std::vector<Instant>{});

    // A weekly bill ten years behind: the walk stops after 400 steps, years short of today.
    const Bill stale = bill("Forgotten", "1", local(2015, 3, 2, 9), Repeat::weekly);
    EXPECT_EQ(store.dueDates(stale, Calendar::monthRange(store.now())), std::vector<Instant>{});
    EXPECT_EQ(store.dueDates(stale, Calendar::monthRange(local(2020, 3, 1))).size(), 5u);
}

TEST_F(Bills, PayingAOneTimeBillFinishesIt)
{
    Bill hosting = bill("Web hosting", "45.1", local(2025, 3, 20, 9), Repeat::once);
    hosting.accountID = savings.id;
    hosting.category = QStringLiteral("Software & hosting");
    added(hosting);
    changes = 0;

    EXPECT_TRUE(store.pay(hosting, std::nullopt, today, std::nullopt));

    hosting.active = false; // finished, its due date as it was
    hosting.history = {{today, d("45.1"), local(2025, 3, 20, 9)}};
    EXPECT_EQ(first(), hosting);
    ASSERT_EQ(store.book().transactions.size(), 1u);
    const Transaction paid = store.book().transactions[0];
    EXPECT_EQ(paid, (Transaction{paid.id, today, savings.id, d("-45.1"), "Web hosting", "Software & hosting",
                                 "Bill payment", true, TxKind::bill}));
    EXPECT_EQ(std::tuple(store.status(), changes), std::tuple("Paid Web hosting: $45.10.", 1));
}

TEST_F(Bills, PayingAnotherAmountLateKeepsTheSchedule)
{
    const Bill rent = added(bill("Rent", "10", local(2025, 3, 1, 9)));
    EXPECT_TRUE(store.pay(rent, d("12.5"), today, std::nullopt));

    EXPECT_EQ(store.status(), "Paid Rent: $12.50.");
    // From the first active account; the due date moves on.
    EXPECT_EQ(std::tuple(store.book().transactions.at(0).amount, store.book().transactions.at(0).accountID),
              std::tuple(d("-12.5"), checking.id));
    EXPECT_EQ(first().history, (std::vector<Bill::Payment>{{today, d("12.5"), local(2025, 3, 1, 9)}}));
    EXPECT_EQ(first().due, local(2025, 4, 1, 9));

    // The stored record itself, paid from the account given, as a magnitude, dated by a
    // clock set back a day: the payments stay in the order made.
    EXPECT_TRUE(store.pay(first(), d("-10"), today.addSecs(-86400), savings.id));
    EXPECT_EQ(std::tuple(store.book().transactions.at(1).amount, store.book().transactions.at(1).accountID),
              std::tuple(d("-10"), savings.id));
    EXPECT_EQ(first().history.at(1), (Bill::Payment{today.addSecs(-86400), d("10"), local(2025, 4, 1, 9)}));
    EXPECT_EQ(first().due, local(2025, 5, 1, 9));
}

TEST_F(Bills, PayingWithNoAccountStillRecordsThePayment)
{
    Book book; // no accounts at all
    book.bills.push_back(bill("Phone", "30", local(2025, 3, 20, 9)));
    EXPECT_TRUE(store.setBook(book));

    EXPECT_TRUE(store.pay(first(), std::nullopt, today, std::nullopt));

    EXPECT_TRUE(store.book().transactions.empty());
    EXPECT_EQ(std::tuple(first().history.size(), first().due, store.status()),
              std::tuple(1u, local(2025, 4, 20, 9), "Paid Phone: $30.00."));
}

TEST_F(Bills, SkipMovesOnWithoutPayingAndLeavesGoneBillsAlone)
{
    added(bill("Rent", "900", local(2025, 1, 31, 9)));
    added(bill("Ticket", "60", local(2025, 3, 20, 9), Repeat::once));
    EXPECT_TRUE(store.skip(store.book().bills[0]));
    EXPECT_TRUE(store.skip(store.book().bills[1]));
    EXPECT_EQ(names(store.activeBills()), std::vector<QString>{"Rent"});
    EXPECT_EQ(std::tuple(first().due, store.book().bills[1].due),
              std::tuple(local(2025, 2, 28, 9), local(2025, 3, 20, 9)));
    EXPECT_TRUE(first().history.empty() && store.book().transactions.empty());

    const Book before = store.book();
    changes = 0;
    const Bill gone = bill("Gone", "10", local(2025, 3, 20, 9));
    const QString said = store.status();
    EXPECT_FALSE(store.pay(gone, d("10"), today, checking.id).changed);
    EXPECT_FALSE(store.skip(gone).changed);
    EXPECT_EQ(std::tuple(store.book(), store.status(), changes), std::tuple(before, said, 0));
}

TEST_F(Bills, SaveReplacesInPlaceAndDeleteKeepsPastPayments)
{
    added(bill("Rent", "900", local(2025, 4, 1, 9)));
    Bill phone = added(bill("Phone", "30", local(2025, 3, 20, 9)));
    added(bill("Gym", "25", local(2025, 3, 25, 9)));
    phone.amount = d("35");
    EXPECT_TRUE(store.save(phone));
    EXPECT_EQ(store.book().bills.at(1), phone);

    EXPECT_TRUE(store.pay(phone, std::nullopt, today, std::nullopt));
    EXPECT_TRUE(store.deleteBill(store.book().bills[1])); // the stored record itself
    EXPECT_EQ(names(store.book().bills), (std::vector<QString>{"Rent", "Gym"}));
    EXPECT_EQ(store.book().transactions.at(0).payee, "Phone");
}
