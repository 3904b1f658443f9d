// What the Bills and Royalties screens and their sheets get from their C++ side: the
// monthly average, the due lines and lists, and the operations behind the keys, on a
// Store of its own whose clock stands on Saturday, March 15, 2025, 10:00 (New York).
#include "billsbridge.h"
#include "royaltiesbridge.h"

#include "bridgetesting.h"
#include "model/money.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

double ms(Instant when)
{
    return double(when.msecs());
}

Bill bill(const char *amount, Repeat repeats)
{
    return Bill{.name = QStringLiteral("Bill"), .amount = d(amount), .repeats = repeats};
}

QString text(const QVariantMap &map, const char *key)
{
    return map.value(QString::fromUtf8(key)).toString();
}

class BillsRoyalties : public BridgeTest
{
protected:
    BillsRoyalties()
        : BridgeTest(local(2025, 3, 15, 10))
    {
        bills.setStore(store.get());
        royalties.setStore(store.get());
    }

    Bill addBill(const char *name, const char *amount, Instant due, Repeat repeats = Repeat::monthly,
                 bool autopay = false)
    {
        Bill b{.name = QString::fromUtf8(name), .amount = d(amount), .due = due, .repeats = repeats};
        b.autopay = autopay;
        EXPECT_TRUE(store->save(b));
        return b;
    }

    Royalty addRoyalty(const char *payer, const char *amount, Instant expected, Repeat repeats = Repeat::once)
    {
        Royalty r{.payer = QString::fromUtf8(payer), .expectedAmount = d(amount), .expectedDate = expected};
        r.repeats = repeats;
        EXPECT_TRUE(store->save(r));
        return r;
    }

    static QString id(const QUuid &uuid) { return uuid.toString(QUuid::WithoutBraces); }

    BillsBridge bills;
    RoyaltiesBridge royalties;
};

// -- The monthly average -------------------------------------------------------

TEST(MonthlyAverage, SumsExactlyAndRoundsOnceHalfToEven)
{
    // 100 ÷ 3 and 10 × 26 ÷ 12 are both cut at 38 digits; only the final rounding to
    // cents turns their sum 54.999…9 into 55.00.
    EXPECT_EQ(BillTexts::monthlyAverage({bill("100", Repeat::quarterly), bill("10", Repeat::biweekly)}), d("55"));
    // 0.30 a year is 0.025 a month: half to even gives 0.02, not 0.03.
    EXPECT_EQ(BillTexts::monthlyAverage({bill("0.30", Repeat::yearly)}), d("0.02"));
    EXPECT_EQ(BillTexts::monthlyAverage({bill("0.42", Repeat::yearly)}), d("0.04"));
    // A weekly 1 is 52 ÷ 12, multiplied before it is divided.
    EXPECT_EQ(*BillTexts::monthlyEquivalent(bill("1", Repeat::weekly)), d("4.3333333333333333333333333333333333333"));
}

TEST_F(BillsRoyalties, MonthlyAverageTextCountsOnlyActiveBills)
{
    addBill("Hosting", "120", local(2025, 4, 1, 12), Repeat::yearly);
    addBill("Lessons", "12", local(2025, 3, 20, 12), Repeat::weekly);
    const Bill once = addBill("Repair", "500", local(2025, 3, 25, 12), Repeat::once);
    EXPECT_EQ(bills.monthlyAverageText(), QStringLiteral("$62.00"));
    // A finished one-time bill is not active; a paid monthly one still counts.
    Bill phone = addBill("Phone", "45.10", local(2025, 3, 16, 12));
    EXPECT_TRUE(store->pay(once, std::nullopt, local(2025, 3, 15, 12), std::nullopt));
    EXPECT_EQ(bills.monthlyAverageText(), QStringLiteral("$107.10"));
    EXPECT_TRUE(store->pay(phone, std::nullopt, local(2025, 3, 15, 12), std::nullopt));
    EXPECT_EQ(bills.monthlyAverageText(), QStringLiteral("$107.10"));
}

// -- Texts ---------------------------------------------------------------------

TEST(BillTexts, RemindCaptionAndWebsite)
{
    EXPECT_EQ(BillTexts::remindText(1), QStringLiteral("Remind me 1 day before (and on the day)"));
    EXPECT_EQ(BillTexts::websiteUrl(QStringLiteral("verizon.com")), QStringLiteral("https://verizon.com"));
    EXPECT_EQ(BillTexts::websiteUrl(QStringLiteral("http://pay.example.org")),
              QStringLiteral("http://pay.example.org"));
    EXPECT_EQ(BillTexts::websiteUrl(QStringLiteral("https://x.io/pay")), QStringLiteral("https://x.io/pay"));
}

TEST(BillTexts, NextDueLineFollowsTheSchedule)
{
    Bill monthly = bill("10", Repeat::monthly);
    monthly.due = local(2025, 1, 31, 9);
    EXPECT_EQ(BillTexts::nextDueLine(monthly), QStringLiteral("Next one will be due Feb 28, 2025."));
    monthly.due = local(2024, 1, 31, 9);
    EXPECT_EQ(BillTexts::nextDueLine(monthly), QStringLiteral("Next one will be due Feb 29, 2024."));
    Bill once = bill("10", Repeat::once);
    once.due = local(2025, 1, 31, 9);
    EXPECT_EQ(BillTexts::nextDueLine(once), QStringLiteral("This is a one-time bill, so it will be marked finished."));
}

TEST_F(BillsRoyalties, DueLinesCountWholeDaysAndMarkOverdue)
{
    addBill("Yesterday", "1", local(2025, 3, 14, 23, 59));
    addBill("Midnight", "2", local(2025, 3, 15, 0, 0));
    addBill("Tomorrow", "3", local(2025, 3, 16, 8));
    addBill("Card", "4", local(2025, 3, 18, 23), Repeat::monthly, true);
    addBill("Rent", "5", local(2025, 4, 1, 12));

    const QVariantList active = bills.active();
    ASSERT_EQ(active.size(), 5);
    EXPECT_EQ(text(at(active, 0), "dueLine"), QStringLiteral("OVERDUE · was due Mar 14"));
    EXPECT_TRUE(at(active, 0).value(QStringLiteral("overdue")).toBool());
    EXPECT_EQ(text(at(active, 1), "dueLine"), QStringLiteral("Due today"));
    EXPECT_FALSE(at(active, 1).value(QStringLiteral("overdue")).toBool());
    EXPECT_EQ(text(at(active, 2), "dueLine"), QStringLiteral("Due Mar 16 · in 1 day"));
    EXPECT_EQ(text(at(active, 3), "dueLine"), QStringLiteral("Due Mar 18 · in 3 days · autopay"));
    EXPECT_EQ(text(at(active, 4), "dueLine"), QStringLiteral("Due Apr 1 · in 17 days"));

    // The dots: red overdue, orange within three days, green after.
    EXPECT_FALSE(at(active, 0).value(QStringLiteral("soon")).toBool());
    EXPECT_TRUE(at(active, 1).value(QStringLiteral("soon")).toBool());
    EXPECT_TRUE(at(active, 3).value(QStringLiteral("soon")).toBool());
    EXPECT_FALSE(at(active, 4).value(QStringLiteral("soon")).toBool());

    ASSERT_EQ(bills.overdue().size(), 1);
    EXPECT_EQ(text(at(bills.overdue(), 0), "name"), QStringLiteral("Yesterday"));
    EXPECT_EQ(bills.overdueTotalText(), QStringLiteral("$1.00"));
    // The next 14 days reach Mar 29: Rent on Apr 1 is left out, the overdue bill is in.
    EXPECT_EQ(bills.upcoming().size(), 4);
}

// -- Bill operations --------------------------------------------------------------

TEST_F(BillsRoyalties, SaveBillTakesTypedAmountsExactlyAndRefusesBadInput)
{
    QVariantMap fields = bills.newBill();
    EXPECT_EQ(text(fields, "repeats"), QStringLiteral("Monthly"));
    EXPECT_EQ(text(fields, "category"), QStringLiteral("Bills & Utilities"));
    EXPECT_EQ(fields.value(QStringLiteral("remindDays")).toInt(), 3);
    EXPECT_EQ(text(fields, "editAmount"), QString());

    fields[QStringLiteral("name")] = QStringLiteral("Rent");
    fields[QStringLiteral("amount")] = QStringLiteral("abc");
    EXPECT_FALSE(bills.saveBill(fields));
    fields[QStringLiteral("name")] = QString();
    fields[QStringLiteral("amount")] = QStringLiteral("1450");
    EXPECT_FALSE(bills.saveBill(fields));
    EXPECT_TRUE(store->book().bills.empty());

    fields[QStringLiteral("name")] = QStringLiteral("Rent");
    fields[QStringLiteral("amount")] = QStringLiteral(" $1,450.005 ");
    fields[QStringLiteral("accountId")] = id(savings.id);
    fields[QStringLiteral("remindDays")] = 0;
    ASSERT_TRUE(bills.saveBill(fields));
    ASSERT_EQ(store->book().bills.size(), 1u);
    const Bill saved = store->book().bills.front();
    EXPECT_EQ(saved.amount, d("1450.005"));
    EXPECT_EQ(saved.accountID, savings.id);
    EXPECT_EQ(saved.remindDays, 0);
    EXPECT_EQ(saved.repeats, Repeat::monthly);
    EXPECT_EQ(store->status(), QStringLiteral("Saved bill Rent."));
}

TEST_F(BillsRoyalties, PayBooksTheTypedAmountFromTheChosenAccount)
{
    const Bill rent = addBill("Rent", "10", local(2025, 1, 31, 9));
    EXPECT_FALSE(bills.pay(id(rent.id), QStringLiteral("ten"), ms(local(2025, 3, 15, 12)), QString()));
    EXPECT_TRUE(store->book().transactions.empty());

    ASSERT_TRUE(bills.pay(id(rent.id), QStringLiteral("12.5"), ms(local(2025, 3, 15, 12)), id(savings.id)));
    ASSERT_EQ(store->book().transactions.size(), 1u);
    EXPECT_EQ(store->book().transactions.front().amount, d("-12.5"));
    EXPECT_EQ(store->book().transactions.front().accountID, savings.id);

    const QVariantMap after = bills.bill(id(rent.id));
    EXPECT_EQ(text(after, "dueText"), QStringLiteral("Feb 28, 2025"));
    const QVariantList history = after.value(QStringLiteral("history")).toList();
    ASSERT_EQ(history.size(), 1);
    EXPECT_EQ(text(at(history, 0), "amountText"), QStringLiteral("$12.50"));
    EXPECT_EQ(text(at(history, 0), "dateText"), QStringLiteral("Mar 15, 2025"));
}

TEST_F(BillsRoyalties, PaidOneTimeBillIsFinishedAndPaymentsListNewestFirst)
{
    const Bill repair = addBill("Repair", "80", local(2025, 3, 10, 12), Repeat::once);
    const Bill phone = addBill("Phone", "45", local(2025, 3, 1, 12));
    bills.pay(id(phone.id), QStringLiteral("45"), ms(local(2025, 3, 2, 12)), QString());
    bills.pay(id(repair.id), QStringLiteral("80"), ms(local(2025, 3, 12, 12)), QString());
    bills.pay(id(phone.id), QStringLiteral("46"), ms(local(2025, 3, 12, 12)), QString());

    ASSERT_EQ(bills.finished().size(), 1);
    EXPECT_EQ(text(at(bills.finished(), 0), "name"), QStringLiteral("Repair"));
    ASSERT_EQ(bills.active().size(), 1);
    EXPECT_EQ(text(at(bills.active(), 0), "name"), QStringLiteral("Phone"));

    // Same day: the Book's order decides (Repair is first in the file).
    const QVariantList recent = bills.recentPayments();
    ASSERT_EQ(recent.size(), 3);
    EXPECT_EQ(text(at(recent, 0), "name"), QStringLiteral("Repair"));
    EXPECT_EQ(text(at(recent, 1), "name"), QStringLiteral("Phone"));
    EXPECT_EQ(text(at(recent, 1), "amountText"), QStringLiteral("$46.00"));
    EXPECT_EQ(text(at(recent, 2), "amountText"), QStringLiteral("$45.00"));
}

// -- Royalties ----------------------------------------------------------------------

TEST(RoyaltyTexts, PayerWorkAndComparison)
{
    Royalty r{
        .payer = QStringLiteral("SoundExchange"), .work = QStringLiteral("Night Ferry"), .expectedAmount = d("600")};
    EXPECT_EQ(RoyaltyTexts::payerLine(r), QStringLiteral("SoundExchange"));
    r.status = RoyaltyStatus::disputed;
    EXPECT_EQ(RoyaltyTexts::payerLine(r), QStringLiteral("SoundExchange · FOLLOWING UP"));
    EXPECT_EQ(RoyaltyTexts::workLine(r), QStringLiteral("Night Ferry"));
    r.period = QStringLiteral("Q2");
    EXPECT_EQ(RoyaltyTexts::workLine(r), QStringLiteral("Night Ferry · Q2"));
    r.work.clear();
    EXPECT_EQ(RoyaltyTexts::workLine(r), QStringLiteral("Q2"));

    r.receivedAmount = d("618.75");
    EXPECT_EQ(RoyaltyTexts::versusExpected(r), QStringLiteral("+$18.75 vs expected"));
    r.receivedAmount = d("595");
    EXPECT_EQ(RoyaltyTexts::versusExpected(r), QStringLiteral("-$5.00 vs expected"));
    r.receivedAmount = d("600.00");
    EXPECT_EQ(RoyaltyTexts::versusExpected(r), QStringLiteral("$0.00 vs expected"));
}

TEST_F(BillsRoyalties, ReceiveTakesOnlyAmountsAboveZero)
{
    const Royalty distro = addRoyalty("DistroKid", "600", local(2025, 3, 10, 9), Repeat::quarterly);
    for (const char *bad : {"0", "-5", "(5)", "abc", ""})
        EXPECT_FALSE(royalties.receive(id(distro.id), QString::fromUtf8(bad), ms(local(2025, 3, 15, 12)), QString()))
            << bad;
    EXPECT_TRUE(store->book().transactions.empty());
    EXPECT_FALSE(royalties.canReceive(QStringLiteral("0.00")));
    EXPECT_TRUE(royalties.canReceive(QStringLiteral("0.01")));

    ASSERT_TRUE(
        royalties.receive(id(distro.id), QStringLiteral("$618.75"), ms(local(2025, 3, 15, 12)), id(checking.id)));
    ASSERT_EQ(store->book().transactions.size(), 1u);
    EXPECT_EQ(store->book().transactions.front().amount, d("618.75"));

    ASSERT_EQ(royalties.received().size(), 1);
    EXPECT_EQ(text(at(royalties.received(), 0), "receivedText"), QStringLiteral("$618.75"));
    EXPECT_EQ(text(at(royalties.received(), 0), "versus"), QStringLiteral("+$18.75 vs expected"));
    // The next quarterly statement is lined up.
    ASSERT_EQ(royalties.expected().size(), 1);
    EXPECT_EQ(text(at(royalties.expected(), 0), "expectedDateText"), QStringLiteral("Jun 10, 2025"));
    EXPECT_EQ(royalties.stillExpectedText(), QStringLiteral("$600.00"));
}

TEST_F(BillsRoyalties, WhoPaidThisYearSumsPerPayerLargestFirst)
{
    auto received = [&](const char *payer, const char *amount, Instant when) {
        Royalty r{.payer = QString::fromUtf8(payer), .expectedAmount = d(amount), .expectedDate = when};
        r.status = RoyaltyStatus::received;
        r.receivedAmount = d(amount);
        r.receivedDate = when;
        EXPECT_TRUE(store->save(r));
    };
    received("BMI", "100", local(2025, 1, 10, 12));
    received("DistroKid", "80", local(2025, 2, 10, 12));
    received("BMI", "30.5", local(2025, 3, 1, 12));
    received("DistroKid", "900", local(2024, 12, 31, 23));
    addRoyalty("ASCAP", "50", local(2025, 4, 1, 12));

    const QVariantList payers = royalties.payers();
    ASSERT_EQ(payers.size(), 2);
    EXPECT_EQ(text(at(payers, 0), "payer"), QStringLiteral("BMI"));
    EXPECT_EQ(text(at(payers, 0), "totalText"), QStringLiteral("$130.50"));
    EXPECT_EQ(text(at(payers, 1), "payer"), QStringLiteral("DistroKid"));
    EXPECT_EQ(text(at(payers, 1), "totalText"), QStringLiteral("$80.00"));
    EXPECT_EQ(royalties.year(), 2025);
    EXPECT_EQ(royalties.receivedThisYearText(), QStringLiteral("$210.50"));
    EXPECT_EQ(royalties.stillExpectedText(), QStringLiteral("$50.00"));

    // Newest received first, last year's included.
    const QVariantList list = royalties.received();
    ASSERT_EQ(list.size(), 4);
    EXPECT_EQ(text(at(list, 0), "receivedText"), QStringLiteral("$30.50"));
    EXPECT_EQ(text(at(list, 3), "receivedText"), QStringLiteral("$900.00"));
}

TEST_F(BillsRoyalties, SaveRoyaltyReadsTheEditorsFields)
{
    QVariantMap fields = royalties.newRoyalty();
    EXPECT_EQ(text(fields, "source"), QStringLiteral("Streaming / distributor"));
    EXPECT_EQ(text(fields, "repeats"), QStringLiteral("One time"));
    EXPECT_EQ(text(fields, "status"), QStringLiteral("Expected"));
    EXPECT_FALSE(royalties.saveRoyalty(fields)) << "no payer";

    fields[QStringLiteral("payer")] = QStringLiteral("BMI");
    fields[QStringLiteral("amount")] = QStringLiteral("about 400");
    EXPECT_FALSE(royalties.saveRoyalty(fields));
    EXPECT_TRUE(store->book().royalties.empty());

    // An empty guess is zero; "Following up" comes from the toggle.
    fields[QStringLiteral("amount")] = QString();
    fields[QStringLiteral("followingUp")] = true;
    fields[QStringLiteral("source")] = QStringLiteral("Performance (PRO)");
    ASSERT_TRUE(royalties.saveRoyalty(fields));
    Royalty saved = store->book().royalties.front();
    EXPECT_EQ(saved.expectedAmount, d("0"));
    EXPECT_EQ(saved.status, RoyaltyStatus::disputed);
    EXPECT_EQ(saved.source, RoyaltySource::pro);
    EXPECT_EQ(text(at(royalties.expected(), 0), "payerLine"), QStringLiteral("BMI · FOLLOWING UP"));

    fields = royalties.royalty(id(saved.id));
    fields[QStringLiteral("amount")] = QStringLiteral("420");
    fields[QStringLiteral("followingUp")] = false;
    ASSERT_TRUE(royalties.saveRoyalty(fields));
    saved = store->book().royalties.front();
    EXPECT_EQ(store->book().royalties.size(), 1u);
    EXPECT_EQ(saved.expectedAmount, d("420"));
    EXPECT_EQ(saved.status, RoyaltyStatus::expected);
}

TEST_F(BillsRoyalties, EditingAReceivedRoyaltyKeepsItReceived)
{
    const Royalty r = addRoyalty("BMI", "400", local(2025, 3, 1, 12));
    royalties.receive(id(r.id), QStringLiteral("410"), ms(local(2025, 3, 5, 12)), QString());
    QVariantMap fields = royalties.royalty(id(r.id));
    EXPECT_EQ(text(fields, "editReceived"), QStringLiteral("410.00"));

    fields[QStringLiteral("amount")] = QStringLiteral("400");
    fields[QStringLiteral("got")] = QStringLiteral("4x0");
    EXPECT_FALSE(royalties.saveRoyalty(fields));
    fields[QStringLiteral("got")] = QStringLiteral("415");
    ASSERT_TRUE(royalties.saveRoyalty(fields));
    const Royalty saved = store->book().royalties.front();
    EXPECT_EQ(saved.status, RoyaltyStatus::received);
    EXPECT_EQ(saved.receivedAmount, d("415"));
    // The deposit booked at receipt is not touched by the edit.
    EXPECT_EQ(store->book().transactions.front().amount, d("410"));
}

} // namespace
