// Bill reminders: which notifications a set of bills gives, and how the Store
// debounces their rebuild. Local time is New York (tests/testmain.cpp).
#include "platform/reminderledger.h"
#include "store/reminderplan.h"
#include "storetesting.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <ctime>

namespace {

const QUuid rentId(QStringLiteral("{6f1c2a9e-0b3d-4c5e-9f7a-1b2c3d4e5f60}"));

Bill bill(const char *name, const char *amount, const char *dueIso, int remindDays = 3, bool autopay = false)
{
    return {.id = rentId,
            .name = name,
            .amount = d(amount),
            .due = at(dueIso),
            .autopay = autopay,
            .remindDays = remindDays};
}

// "title @ fire time" of each request, in order.
std::vector<QString> plan(const std::vector<Bill> &bills, const char *nowIso)
{
    std::vector<QString> out;
    for (const auto &r : ReminderPlan::requests(bills, at(nowIso)))
        out.push_back(r.title + QStringLiteral(" @ ") + r.fireAt.isoString());
    return out;
}

// Keeps the requests of each rebuild (a rebuild starts with removeAllPending()).
struct RecordingNotifier : Notifier
{
    void removeAllPending() override { rebuilds.push_back({clock.elapsed(), {}}); }
    void add(const ReminderRequest &r) override { rebuilds.back().second.push_back(r); }
    void requestAuthorization() override { ++authorizations; }

    QElapsedTimer clock;
    std::vector<std::pair<qint64, std::vector<ReminderRequest>>> rebuilds; // (ms on `clock`, requests)
    int authorizations = 0;
};

} // namespace

TEST(ReminderPlan, TitlesBodiesIdentifiersAndNineOClockLocal)
{
    const Bill rent = bill("Rent", "1200", "2025-06-10T16:00:00Z"); // noon in New York
    const auto planned = ReminderPlan::requests({rent, bill("Phone", "45.1", "2025-06-11T16:00:00Z", 1, true)},
                                                at("2025-06-01T12:00:00Z"));
    ASSERT_EQ(planned.size(), 4u);
    EXPECT_EQ(planned[0], (ReminderRequest{"6F1C2A9E-0B3D-4C5E-9F7A-1B2C3D4E5F60-0", "Rent is due today",
                                           "$1,200.00 · open Coinhall to mark it paid", at("2025-06-10T13:00:00Z")}));
    EXPECT_EQ(planned[1], (ReminderRequest{"6F1C2A9E-0B3D-4C5E-9F7A-1B2C3D4E5F60-3", "Rent is due in 3 days",
                                           "$1,200.00 · open Coinhall to mark it paid", at("2025-06-07T13:00:00Z")}));
    EXPECT_EQ(planned[2].body, "$45.10 · autopay is on");
    EXPECT_EQ(planned[3].title, "Phone is due in 1 day");

    // remindDays below 1 gives the due-day reminder only; the local day counts, not
    // the UTC one (03:00Z on the 12th is the 11th in New York).
    EXPECT_EQ(
        plan({bill("Gym", "30", "2025-06-12T03:00:00Z", 0), bill("Web", "5", "2025-06-13T16:00:00Z", -2)},
             "2025-06-01T12:00:00Z"),
        (std::vector<QString>{"Gym is due today @ 2025-06-11T13:00:00Z", "Web is due today @ 2025-06-13T13:00:00Z"}));
}

TEST(ReminderPlan, NothingAtOrBeforeNow)
{
    const std::vector<Bill> rent{bill("Rent", "1200", "2025-06-10T16:00:00Z")};
    EXPECT_TRUE(plan(rent, "2025-06-10T13:00:00Z").empty()); // due today at exactly 09:00 is not later
    EXPECT_EQ(plan(rent, "2025-06-07T13:30:00Z"), (std::vector<QString>{"Rent is due today @ 2025-06-10T13:00:00Z"}));
}

TEST(ReminderPlan, OnlyTheThirtySoonestBillsIncludingOverdueOnes)
{
    std::vector<Bill> bills(29, bill("Old", "1", "2025-06-09T16:00:00Z", 0)); // due yesterday
    bills.push_back(bill("Water", "20", "2025-06-11T16:00:00Z", 1));          // due tomorrow, 30th
    bills.push_back(bill("Power", "80", "2025-06-11T17:00:00Z", 1));          // 31st
    EXPECT_EQ(plan(bills, "2025-06-10T12:00:00Z"),
              (std::vector<QString>{"Water is due today @ 2025-06-11T13:00:00Z",
                                    "Water is due in 1 day @ 2025-06-10T13:00:00Z"}));
    bills.insert(bills.begin(), bill("Older", "1", "2025-06-08T16:00:00Z", 0));
    EXPECT_TRUE(plan(bills, "2025-06-10T12:00:00Z").empty());
}

TEST(ReminderPlan, ClockChanges)
{
    // New York springs forward on 9 March 2025: the due day is summer time, three days before is not.
    EXPECT_EQ(plan({bill("Rent", "1", "2025-03-11T14:00:00Z")}, "2025-03-01T00:00:00Z"),
              (std::vector<QString>{"Rent is due today @ 2025-03-11T13:00:00Z",
                                    "Rent is due in 3 days @ 2025-03-08T14:00:00Z"}));

    // A zone whose clocks jump from 09:00 to 10:00 on 9 March 2025 and go back from
    // 10:00 to 09:00 on 2 November 2025.
    const QByteArray saved = qgetenv("TZ");
    qputenv("TZ", "XST5XDT,M3.2.0/9,M11.1.0/10");
    tzset();
    const auto skipped = ReminderPlan::nineOClock(QDateTime(QDate(2025, 3, 9), QTime(12, 0), Qt::LocalTime));
    const auto repeated = ReminderPlan::nineOClock(QDateTime(QDate(2025, 11, 2), QTime(12, 0), Qt::LocalTime));
    qputenv("TZ", saved);
    tzset();
    EXPECT_EQ(skipped, at("2025-03-09T14:00:00Z"));  // 10:00, summer time
    EXPECT_EQ(repeated, at("2025-11-02T13:00:00Z")); // the first 09:00, still summer time
}

// A burst of changes gives one rebuild a second after the last, from the active bills
// as that change left them; asking for notifications asks the notifier for permission.
TEST(Reminders, TenQuickChangesGiveOneRebuildASecondAfterTheLast)
{
    QTemporaryDir temp;
    auto notifier = std::make_shared<RecordingNotifier>();
    notifier->clock.start();
    Store store({temp.path(), nullptr, notifier});
    store.setClock([] { return at("2025-06-01T12:00:00Z"); });
    store.requestNotifications();
    EXPECT_EQ(notifier->authorizations, 1);
    ASSERT_TRUE(waitFor([&] { return notifier->rebuilds.size() == 1; }, 3000)); // opening schedules one

    for (int i = 1; i <= 10; ++i) {
        Book book = store.book();
        book.bills = {bill("Rent", "0", "2025-06-10T16:00:00Z", 0), bill("Loan", "9", "2025-06-04T16:00:00Z", 0)};
        book.bills[0].amount = Decimal(i);
        book.bills[1].id = newId();
        book.bills[1].active = false;
        EXPECT_TRUE(store.setBook(book));
        waitFor([] { return false; }, 40);
    }
    const qint64 lastChange = notifier->clock.elapsed();
    // The plan the reminder service reads follows each change at once, not a second
    // later: it never shows a bill paid a moment ago.
    const std::vector<ReminderRequest> onDisk = ReminderLedger(temp.path()).plan();
    ASSERT_TRUE(waitFor([&] { return notifier->rebuilds.size() == 2; }, 3000));
    waitFor([] { return false; }, 1500); // room for a second rebuild, which must not come

    ASSERT_EQ(notifier->rebuilds.size(), 2u);
    const auto &[atMs, requests] = notifier->rebuilds[1];
    EXPECT_GE(atMs - lastChange, 900);
    EXPECT_LE(atMs - lastChange, 3000);
    ASSERT_EQ(requests.size(), 1u); // the Book as the last change left it, without the Loan
    EXPECT_EQ(requests[0].body, "$10.00 · open Coinhall to mark it paid");
    EXPECT_EQ(onDisk, requests);
    Book paid = store.book();
    paid.bills.clear();
    EXPECT_TRUE(store.setBook(paid));
    EXPECT_TRUE(ReminderLedger(temp.path()).plan().empty());
}
