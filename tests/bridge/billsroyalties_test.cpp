// What the Bills and Royalties screens and their sheets get from their C++ side: the
// monthly average, the due lines and lists, and the operations behind the keys.
#include "billsbridge.h"
#include "royaltiesbridge.h"

#include "bridgetesting.h"

#include <tuple>

namespace {

Bill every(Repeat repeats, const char *amount)
{
    return Bill{.name = "Bill", .amount = d(amount), .repeats = repeats};
}

class BillsRoyalties : public BridgeTest
{
protected:
    void SetUp() override
    {
        bills.setStore(store.get());
        royalties.setStore(store.get());
    }

    BillsBridge bills;
    RoyaltiesBridge royalties;
};

} // namespace

TEST(BillTexts, MonthlyAverageRoundsOnceHalfToEvenAndCaptionsReadRight)
{
    // 100 ÷ 3 and 10 × 26 ÷ 12 are both cut at 38 digits; only the final rounding to
    // cents turns their sum 54.999…9 into 55.00.
    EXPECT_EQ(BillTexts::monthlyAverage({every(Repeat::quarterly, "100"), every(Repeat::biweekly, "10")}), d("55"));
    // 0.30 a year is 0.025 a month: half to even gives 0.02, not 0.03.
    EXPECT_EQ(BillTexts::monthlyAverage({every(Repeat::yearly, "0.30")}), d("0.02"));
    EXPECT_EQ(BillTexts::monthlyAverage({every(Repeat::yearly, "0.42")}), d("0.04"));

    EXPECT_EQ(BillTexts::remindText(1), "Remind me 1 day before (and on the day)");
    EXPECT_EQ(BillTexts::remindText(3), "Remind me 3 days before (and on the day)");
    EXPECT_EQ(BillTexts::websiteUrl("verizon.com"), "https://verizon.com");
    EXPECT_EQ(BillTexts::websiteUrl("http://pay.example.org"), "http://pay.example.org");
    Bill monthly = every(Repeat::monthly, "10");
    monthly.due = local(2025, 1, 31, 9);
    EXPECT_EQ(BillTexts::nextDueLine(monthly), "Next one will be due Feb 28, 2025.");
    monthly.repeats = Repeat::once;
    EXPECT_EQ(BillTexts::nextDueLine(monthly), "This is a one-time bill, so it will be marked finished.");
}

TEST_F(BillsRoyalties, ActiveBillsGiveTheMonthlyAverageAndDueLinesThatCountWholeDays)
{
    bill("Yesterday", "12", local(2025, 3, 14, 23, 59), Repeat::weekly);
    bill("Midnight", "120", local(2025, 3, 15, 0, 0), Repeat::yearly);
    bill("Tomorrow", "500", local(2025, 3, 16, 8), Repeat::once);
    bill("Card", "4", local(2025, 3, 18, 23), Repeat::monthly, true);
    bill("Rent", "5", local(2025, 4, 1, 12));
    EXPECT_TRUE(store->save(Bill{.name = "Old gym", .amount = d("30"), .due = local(2025, 3, 1), .active = false}));
    EXPECT_EQ(bills.monthlyAverageText(), "$71.00"); // 52 + 10 + 4 + 5

    const QVariantList active = bills.active();
    EXPECT_EQ(column(active, "dueLine"), (QStringList{"OVERDUE · was due Mar 14", "Due today", "Due Mar 16 · in 1 day",
                                                      "Due Mar 18 · in 3 days · autopay", "Due Apr 1 · in 17 days"}));
    // The dots: red overdue, orange within three days, green after.
    EXPECT_EQ(column(active, "overdue"), (QStringList{"true", "false", "false", "false", "false"}));
    EXPECT_EQ(column(active, "soon"), (QStringList{"false", "true", "true", "true", "false"}));
    // Upcoming: the next 14 days, overdue included.
    EXPECT_EQ(std::tuple(column(bills.overdue(), "name"), bills.overdueTotalText(), bills.upcoming().size()),
              std::tuple(QStringList{"Yesterday"}, "$12.00", 4));
}

TEST_F(BillsRoyalties, BillEditorAndPayTakeTypedAmountsExactlyAndPaymentsListNewestFirst)
{
    QVariantMap fields = bills.newBill();
    EXPECT_EQ(std::tuple(fields.value("repeats").toString(), fields.value("editAmount").toString()),
              std::tuple("Monthly", ""));
    fields.insert({{"name", "Studio rent"}, {"amount", "abc"}});
    EXPECT_FALSE(bills.saveBill(fields));
    fields.insert({{"name", ""}, {"amount", "1450"}});
    EXPECT_FALSE(bills.saveBill(fields));
    EXPECT_TRUE(store->book().bills.empty());

    fields.insert(
        {{"name", "Studio rent"}, {"amount", " $1,450.005 "}, {"accountId", idText(savings.id)}, {"remindDays", 0}});
    ASSERT_TRUE(bills.saveBill(fields));
    ASSERT_EQ(store->book().bills.size(), 1u);
    const Bill saved = store->book().bills.front();
    EXPECT_EQ(std::tuple(saved.amount, saved.accountID, saved.remindDays, store->status()),
              std::tuple(d("1450.005"), savings.id, 0, "Saved bill Studio rent."));

    const Bill rent = bill("Rent", "10", local(2025, 1, 31, 9));
    const Bill repair = bill("Repair", "80", local(2025, 3, 10, 12), Repeat::once);
    EXPECT_FALSE(bills.pay(idText(rent.id), "ten", ms(local(2025, 3, 15, 12)), QString()));
    EXPECT_TRUE(store->book().transactions.empty());
    ASSERT_TRUE(bills.pay(idText(rent.id), "12.5", ms(local(2025, 3, 2, 12)), idText(savings.id)));
    const Transaction &paid = store->book().transactions.front();
    EXPECT_EQ(std::tuple(paid.amount, paid.accountID), std::tuple(d("-12.5"), savings.id));
    const QVariantList history = bills.bill(idText(rent.id)).value("history").toList();
    EXPECT_EQ(column(history, "amountText") + column(history, "dateText"), (QStringList{"$12.50", "Mar 2, 2025"}));

    ASSERT_TRUE(bills.pay(idText(repair.id), "80", ms(local(2025, 3, 12, 12)), QString()));
    ASSERT_TRUE(bills.pay(idText(rent.id), "46", ms(local(2025, 3, 12, 12)), QString()));
    EXPECT_EQ(column(bills.finished(), "name") + column(bills.active(), "name"),
              (QStringList{"Repair", "Studio rent", "Rent"}));
    // Same day: the Book's order decides (Rent is first in the file).
    EXPECT_EQ(column(bills.recentPayments(), "name") + column(bills.recentPayments(), "amountText"),
              (QStringList{"Rent", "Repair", "Rent", "$46.00", "$80.00", "$12.50"}));
}

TEST_F(BillsRoyalties, ReceiveTakesOnlyAmountsAboveZeroAndComparesThemWithTheExpected)
{
    const Royalty distro =
        royalty("DistroKid", "600", local(2025, 3, 10, 9), RoyaltyStatus::expected, Repeat::quarterly);
    for (const char *bad : {"0", "-5", "(5)", "abc", ""})
        EXPECT_FALSE(royalties.receive(idText(distro.id), bad, ms(local(2025, 3, 15, 12)), QString())) << bad;
    EXPECT_TRUE(store->book().transactions.empty());
    EXPECT_EQ(std::tuple(royalties.canReceive("0.00"), royalties.canReceive("0.01")), std::tuple(false, true));

    ASSERT_TRUE(royalties.receive(idText(distro.id), "$618.75", ms(local(2025, 3, 15, 12)), idText(checking.id)));
    EXPECT_EQ(store->book().transactions.front().amount, d("618.75"));
    EXPECT_EQ(column(royalties.received(), "receivedText") + column(royalties.received(), "versus"),
              (QStringList{"$618.75", "+$18.75 vs expected"}));
    EXPECT_EQ(royalties.stillExpectedText(), "$600.00"); // the next statement

    // The work line, and the comparison beside the one above.
    EXPECT_EQ(QStringList({RoyaltyTexts::workLine({.work = "Night Ferry"}),
                           RoyaltyTexts::workLine({.work = "Night Ferry", .period = "Q2"}),
                           RoyaltyTexts::workLine({.period = "Q2"})}),
              (QStringList{"Night Ferry", "Night Ferry · Q2", "Q2"}));
    Royalty r{.period = "Q2", .expectedAmount = d("600"), .receivedAmount = d("595")};
    EXPECT_EQ(RoyaltyTexts::versusExpected(r), "-$5.00 vs expected");
    r.receivedAmount = d("600.00");
    EXPECT_EQ(RoyaltyTexts::versusExpected(r), "$0.00 vs expected");
}

TEST_F(BillsRoyalties, WhoPaidThisYearSumsPerPayerLargestFirst)
{
    const std::tuple<const char *, const char *, Instant> paid[] = {{"BMI", "100", local(2025, 1, 10, 12)},
                                                                    {"DistroKid", "80", local(2025, 2, 10, 12)},
                                                                    {"BMI", "30.5", local(2025, 3, 1, 12)},
                                                                    {"DistroKid", "900", local(2024, 12, 31, 23)}};
    for (const auto &[payer, amount, when] : paid)
        royalty(payer, amount, when, RoyaltyStatus::received);
    EXPECT_EQ(column(royalties.payers(), "payer") + column(royalties.payers(), "totalText"),
              (QStringList{"BMI", "DistroKid", "$130.50", "$80.00"}));
    EXPECT_EQ(royalties.receivedThisYearText(), "$210.50");
    // Newest received first, last year's included.
    EXPECT_EQ(column(royalties.received(), "receivedText"), (QStringList{"$30.50", "$80.00", "$100.00", "$900.00"}));
}

TEST_F(BillsRoyalties, RoyaltyEditorReadsItsFieldsAndKeepsAReceivedOneReceived)
{
    QVariantMap fields = royalties.newRoyalty();
    EXPECT_EQ(QStringList({fields.value("source").toString(), fields.value("repeats").toString(),
                           fields.value("status").toString()}),
              (QStringList{"Streaming / distributor", "One time", "Expected"}));
    EXPECT_FALSE(royalties.saveRoyalty(fields)) << "no payer";
    fields.insert({{"payer", "BMI"}, {"amount", "about 400"}});
    EXPECT_FALSE(royalties.saveRoyalty(fields));
    EXPECT_TRUE(store->book().royalties.empty());

    // An empty guess is zero; "Following up" comes from the toggle.
    fields.insert({{"amount", ""}, {"followingUp", true}, {"source", "Performance (PRO)"}});
    ASSERT_TRUE(royalties.saveRoyalty(fields));
    const Royalty saved = store->book().royalties.front();
    EXPECT_EQ(std::tuple(saved.expectedAmount, saved.status, saved.source, column(royalties.expected(), "payerLine")),
              std::tuple(d("0"), RoyaltyStatus::disputed, RoyaltySource::pro, QStringList{"BMI · FOLLOWING UP"}));

    fields = royalties.royalty(idText(saved.id));
    fields.insert({{"amount", "420"}, {"followingUp", false}});
    ASSERT_TRUE(royalties.saveRoyalty(fields));
    ASSERT_EQ(store->book().royalties.size(), 1u);
    const Royalty &changed = store->book().royalties.front();
    EXPECT_EQ(std::tuple(changed.expectedAmount, changed.status), std::tuple(d("420"), RoyaltyStatus::expected));
    EXPECT_EQ(column(royalties.expected(), "payerLine"), QStringList{"BMI"});

    const Royalty r = royalty("BMI", "400", local(2025, 3, 1, 12));
    ASSERT_TRUE(royalties.receive(idText(r.id), "410", ms(local(2025, 3, 5, 12)), QString()));
    fields = royalties.royalty(idText(r.id));
    EXPECT_EQ(fields.value("editReceived").toString(), "410.00");

    fields.insert({{"amount", "400"}, {"got", "4x0"}});
    EXPECT_FALSE(royalties.saveRoyalty(fields));
    fields.insert("got", "415");
    ASSERT_TRUE(royalties.saveRoyalty(fields));
    const std::optional<Royalty> edited = findById(store->book().royalties, r.id);
    EXPECT_EQ(std::tuple(edited->status, edited->receivedAmount), std::tuple(RoyaltyStatus::received, d("415")));
    // The deposit booked at receipt is not touched by the edit.
    EXPECT_EQ(store->book().transactions.front().amount, d("410"));
}
