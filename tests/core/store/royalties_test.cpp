// Royalties as the Royalties screen and the dashboard use them: what is on the way,
// what came in this year, receiving one, and the share of royalties in income.
// Suites whose name ends in "Calendar" also run in Berlin time.
#include "storetesting.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

Royalty royalty(const char *payer, const char *expected, Instant expectedDate,
                RoyaltyStatus status = RoyaltyStatus::expected)
{
    return {.payer = QString::fromUtf8(payer),
            .expectedAmount = d(expected),
            .expectedDate = expectedDate,
            .status = status};
}

Royalty received(const char *payer, std::optional<Decimal> amount, std::optional<Instant> on)
{
    Royalty r = royalty(payer, "1", local(2025, 1, 1), RoyaltyStatus::received);
    r.receivedAmount = amount;
    r.receivedDate = on;
    return r;
}

class Royalties : public StoreTest
{
protected:
    Royalties()
        : StoreTest(local(2025, 6, 10, 12))
    {}
};

using RoyaltiesCalendar = Royalties;

} // namespace

TEST_F(RoyaltiesCalendar, ReceivingAMonthlyRoyaltyLinesUpTheNextOne)
{
    Royalty distro = royalty("DistroKid", "120", local(2025, 1, 31, 9));
    distro.work = QStringLiteral("Night Drive");
    distro.period = QStringLiteral("January");
    distro.repeats = Repeat::monthly;
    distro.accountID = savings.id;
    distro.note = QStringLiteral("net of fees");
    EXPECT_TRUE(store.save(distro));
    changes = 0;

    EXPECT_TRUE(store.receive(distro, d("118.4"), local(2025, 2, 20, 8), std::nullopt));

    ASSERT_EQ(store.book().royalties.size(), 2u);
    Royalty got = distro;
    got.status = RoyaltyStatus::received;
    got.receivedAmount = d("118.4");
    got.receivedDate = local(2025, 2, 20, 8);
    EXPECT_EQ(store.book().royalties[0], got);

    Royalty following = distro;
    following.id = store.book().royalties[1].id;
    following.expectedDate = local(2025, 2, 28, 9);
    following.period = QString();
    EXPECT_NE(following.id, distro.id);
    EXPECT_EQ(store.book().royalties[1], following);

    ASSERT_EQ(store.book().transactions.size(), 1u);
    const Transaction deposit = store.book().transactions[0];
    EXPECT_EQ(deposit, (Transaction{deposit.id, local(2025, 2, 20, 8), savings.id, d("118.4"), "DistroKid", "Royalties",
                                    "Night Drive · January", true, TxKind::royalty}));
    EXPECT_EQ(std::tuple(store.status(), changes), std::tuple("Logged $118.40 from DistroKid.", 1));
}

TEST_F(RoyaltiesCalendar, ReceivedThisYearStartsAtNewYearsMidnight)
{
    Book book = store.book();
    book.royalties = {received("New Year", d("100"), local(2025, 1, 1)),
                      received("Last year's last second", d("50"), local(2024, 12, 31, 23, 59, 59)),
                      received("No date", d("70"), std::nullopt),
                      received("No amount", std::nullopt, local(2025, 3, 1)),
                      received("Year's end", d("0.25"), local(2025, 12, 31, 23, 59, 59)),
                      received("Still chasing", d("900"), local(2025, 2, 1))};
    book.royalties.back().status = RoyaltyStatus::disputed;
    EXPECT_TRUE(store.setBook(book));

    EXPECT_EQ(store.royaltiesReceivedThisYear(), d("100.25"));
    today = local(2026, 1, 1);
    EXPECT_EQ(store.royaltiesReceivedThisYear(), d("0"));
}

TEST_F(Royalties, ReceivingWithNoAccountRecordsItOnTheRoyaltyOnly)
{
    Book book; // no accounts at all
    book.royalties.push_back(royalty("ASCAP", "300", local(2025, 3, 31, 9)));
    book.royalties[0].repeats = Repeat::quarterly;
    EXPECT_TRUE(store.setBook(book));

    EXPECT_TRUE(store.receive(store.book().royalties[0], d("280"), today, std::nullopt)); // the stored record itself

    EXPECT_TRUE(store.book().transactions.empty());
    ASSERT_EQ(store.book().royalties.size(), 2u);
    const std::vector<Royalty> &royalties = store.book().royalties;
    EXPECT_EQ(std::tuple(royalties[0].status, royalties[0].accountID, royalties[1].status),
              std::tuple(RoyaltyStatus::received, std::nullopt, RoyaltyStatus::expected));
}

TEST_F(Royalties, DepositNoteJoinsWorkAndPeriod)
{
    const std::pair<const char *, const char *> cases[] = {
        {"Night Drive", "Q1"}, {"", "Q1"}, {"Night Drive", ""}, {"", ""}};
    for (const auto &[work, period] : cases) {
        const Royalty r{
            .payer = "Label", .work = work, .period = period, .expectedAmount = d("10"), .expectedDate = today};
        EXPECT_TRUE(store.save(r));
        EXPECT_TRUE(store.receive(r, d("10"), today, std::nullopt));
    }
    EXPECT_EQ(each(store.book().transactions, &Transaction::note), // one date: in the order received
              (std::vector<QString>{"Night Drive · Q1", "Q1", "Night Drive", ""}));
    EXPECT_EQ(store.book().royalties.size(), 4u); // one-time royalties line up nothing

    const Book before = store.book();
    changes = 0;
    EXPECT_FALSE(store.receive(royalty("Gone", "5", today), d("5"), today, savings.id).changed);
    EXPECT_EQ(std::tuple(store.book(), changes), std::tuple(before, 0));
}

TEST_F(Royalties, PendingIncludesFollowingUpSoonestFirst)
{
    for (const Royalty &r : {royalty("Late", "30", local(2025, 7, 1)),
                             royalty("Chasing", "200", local(2025, 5, 1), RoyaltyStatus::disputed),
                             received("Done", d("40"), local(2025, 4, 1)), royalty("Tie first", "5", local(2025, 6, 1)),
                             royalty("Tie second", "0.5", local(2025, 6, 1))})
        EXPECT_TRUE(store.save(r));
    EXPECT_EQ(each(store.pendingRoyalties(), &Royalty::payer),
              (std::vector<QString>{"Chasing", "Tie first", "Tie second", "Late"}));
    EXPECT_EQ(store.royaltiesExpected(), d("235.5"));
}

TEST(RoyaltyShare, WholePercentRoundedHalfAwayFromZero)
{
    auto share = [](const char *royalties, const char *total) {
        return royaltyShare({{"Paycheck", d("1000")}, {"Royalties", d(royalties)}, {"Royalties", d("7")}}, d(total));
    };
    EXPECT_EQ(share("1", "3"), "33%");
    EXPECT_EQ(share("1", "8"), "13%"); // 12.5: away from zero, not to even
    EXPECT_EQ(share("5", "4"), "125%");
    EXPECT_EQ(share("-1", "8"), "-13%");
    EXPECT_EQ(share("1", "0"), "—");
    EXPECT_EQ(share("1", "-5"), "—");
    EXPECT_EQ(royaltyShare({{"royalties", d("5")}}, d("10")), "0%");
}
