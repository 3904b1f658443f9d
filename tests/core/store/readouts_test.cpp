// The header read-outs the window binds to, read through the Store's properties as QML
// does. What they count is tested where it is worked out (ledger, bills, royalties).
#include "storetesting.h"

#include <gtest/gtest.h>

namespace {

class HeaderFigures : public StoreTest
{
protected:
    HeaderFigures()
        : StoreTest(local(2025, 3, 15, 10))
    {}
    // The total, the royalties due, and the counts of bills due soon and overdue.
    auto figures() const
    {
        const auto text = [this](const char *name) { return store.property(name).toString(); };
        return std::tuple(text("totalText"), text("royaltiesDueText"), store.property("dueSoonCount").toInt(),
                          store.property("overdueCount").toInt());
    }
};

} // namespace

TEST_F(HeaderFigures, ReadTheTotalRoyaltiesDueAndBillCounts)
{
    EXPECT_EQ(figures(), std::tuple("$0.00", "$0.00", 0, 0));

    EXPECT_TRUE(store.add(line(checking, "2025-03-01T12:00:00Z", "-45.1")));
    EXPECT_TRUE(store.save(Royalty{.payer = "Label", .expectedAmount = d("12.5"), .expectedDate = today}));
    EXPECT_TRUE(store.save(Bill{.name = "Phone", .amount = d("10"), .due = local(2025, 3, 14, 23)})); // overdue
    EXPECT_TRUE(store.save(Bill{.name = "Rent", .amount = d("10"), .due = local(2025, 3, 29)}));      // due soon
    EXPECT_EQ(figures(), std::tuple("-$45.10", "$12.50", 2, 1));
}
