// The header read-outs the window binds to: read through the Store's properties, as QML does.
#include "storetesting.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

class HeaderFigures : public StoreTest
{
protected:
    HeaderFigures()
        : StoreTest(local(2025, 3, 15, 10))
    {}
    QVariant read(const char *name) const { return store.property(name); }
};

TEST_F(HeaderFigures, AFreshBookReadsZero)
{
    EXPECT_EQ(read("totalText").toString(), "$0.00");
    EXPECT_EQ(read("royaltiesDueText").toString(), "$0.00");
    EXPECT_EQ(read("dueSoonCount").toInt(), 0);
    EXPECT_EQ(read("overdueCount").toInt(), 0);
}

TEST_F(HeaderFigures, TotalLeavesOutClosedAccountsAndKeepsTheSign)
{
    Account checking = store.book().accounts[0];
    checking.opening = d("1200.5");
    EXPECT_TRUE(store.save(checking));
    EXPECT_TRUE(store.save(Account{.name = "Card", .kind = AccountKind::credit, .opening = d("-1450.75")}));
    EXPECT_TRUE(store.save(Account{.name = "Old", .opening = d("999"), .archived = true}));
    EXPECT_TRUE(store.add(line(checking, "2025-03-01T12:00:00Z", "-45.1")));

    EXPECT_EQ(read("totalText").toString(), "-$295.35");
}

TEST_F(HeaderFigures, DueSoonIncludesOverdueBillsAndOverdueStartsBeforeToday)
{
    auto bill = [](const char *name, Instant due, bool active = true) {
        return Bill{.name = name, .amount = d("10"), .due = due, .active = active};
    };
    EXPECT_TRUE(store.save(bill("Phone", local(2025, 3, 14, 23))));         // yesterday: overdue
    EXPECT_TRUE(store.save(bill("Rent", local(2025, 3, 15, 0))));           // today: not overdue
    EXPECT_TRUE(store.save(bill("Hosting", local(2025, 3, 29, 0))));        // the 14th day, at its start
    EXPECT_TRUE(store.save(bill("Insurance", local(2025, 3, 30, 9))));      // beyond the window
    EXPECT_TRUE(store.save(bill("Finished", local(2025, 3, 1, 9), false))); // inactive: never counted

    EXPECT_EQ(read("dueSoonCount").toInt(), 3);
    EXPECT_EQ(read("overdueCount").toInt(), 1);
}

} // namespace
