// Ledger operations as a screen uses them: adding, editing, deleting, transfers,
// balances and the category lists.
#include "storetesting.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

class Ledger : public ::testing::Test
{
protected:
    QTemporaryDir temp;
    Store store{{temp.path()}};
    Account checking = store.book().accounts[0];
    Account savings = store.book().accounts[1];

    std::vector<QString> payees() const
    {
        std::vector<QString> out;
        for (const Transaction &t : store.book().transactions)
            out.push_back(t.payee);
        return out;
    }
    Book onDisk() const { return decodeFile(temp.path() + QStringLiteral("/coinhall.json")); }
};

} // namespace

TEST_F(Ledger, AddKeepsNewestFirstAndEqualDatesInArrivalOrder)
{
    store.add(line(checking, "2025-03-02T09:00:00Z", "-1", "B"));
    store.add(line(checking, "2025-03-05T09:00:00Z", "-1", "D"));
    store.add(line(checking, "2025-03-01T09:00:00Z", "-1", "A"));
    store.add(line(checking, "2025-03-02T09:00:00Z", "-1", "C")); // same instant as B: goes after it
    EXPECT_EQ(payees(), (std::vector<QString>{"D", "B", "C", "A"}));
    EXPECT_EQ(onDisk(), store.book());
}

TEST_F(Ledger, AddWritesAndNotifiesOnce)
{
    QSignalSpy changed(&store, &Store::bookChanged);
    store.add(line(checking, "2025-03-02T09:00:00Z", "-1"));
    EXPECT_EQ(changed.count(), 1);
    store.transfer(checking.id, savings.id, d("5"), at("2025-03-02T10:00:00Z"), {});
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(Ledger, UpdateReplacesInPlaceWithoutSorting)
{
    store.add(line(checking, "2025-03-01T09:00:00Z", "-1", "A"));
    store.add(line(checking, "2025-03-02T09:00:00Z", "-1", "B"));
    Transaction a = store.book().transactions[1];
    a.date = at("2025-04-01T09:00:00Z");
    a.amount = d("-99.95");
    store.update(a);
    EXPECT_EQ(payees(), (std::vector<QString>{"B", "A"}));
    EXPECT_EQ(store.book().transactions[1].amount, d("-99.95"));
    EXPECT_EQ(onDisk().transactions[1].date, at("2025-04-01T09:00:00Z"));

    // The next add sorts everything again.
    store.add(line(checking, "2025-01-01T09:00:00Z", "-1", "Z"));
    EXPECT_EQ(payees(), (std::vector<QString>{"A", "B", "Z"}));

    // An unknown id changes nothing.
    QSignalSpy changed(&store, &Store::bookChanged);
    store.update(line(checking, "2025-01-01T09:00:00Z", "-1", "Ghost"));
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(payees(), (std::vector<QString>{"A", "B", "Z"}));
}

TEST_F(Ledger, TransferMakesTwoLinkedSidesWhateverTheSign)
{
    store.transfer(checking.id, savings.id, d("-50"), at("2025-03-02T09:00:00Z"), QStringLiteral("rainy day"));
    ASSERT_EQ(store.book().transactions.size(), 2u);
    const Transaction &out = store.book().transactions[0];
    const Transaction &in = store.book().transactions[1];
    EXPECT_EQ(out.accountID, checking.id);
    EXPECT_EQ(out.amount, d("-50"));
    EXPECT_EQ(out.payee, "Transfer to Savings");
    EXPECT_EQ(in.accountID, savings.id);
    EXPECT_EQ(in.amount, d("50"));
    EXPECT_EQ(in.payee, "Transfer from Main checking");
    for (const Transaction *t : {&out, &in}) {
        EXPECT_EQ(t->category, "Transfer");
        EXPECT_EQ(t->note, "rainy day");
        EXPECT_TRUE(t->cleared);
        EXPECT_EQ(t->kind, TxKind::transfer);
        EXPECT_FALSE(t->importHash);
    }
    EXPECT_EQ(out.transferPairID, in.id);
    EXPECT_EQ(in.transferPairID, out.id);
    EXPECT_NE(out.id, in.id);

    store.transfer(checking.id, QUuid::createUuid(), d("1"), at("2025-03-03T09:00:00Z"), {});
    EXPECT_EQ(store.book().transactions[0].payee, "Transfer to ");
}

TEST_F(Ledger, DeletingEitherSideOfATransferRemovesBoth)
{
    store.add(line(checking, "2025-03-01T09:00:00Z", "-1", "Keep"));
    store.transfer(checking.id, savings.id, d("50"), at("2025-03-02T09:00:00Z"), {});
    store.transfer(savings.id, checking.id, d("20"), at("2025-03-03T09:00:00Z"), {});

    store.deleteTransaction(store.book().transactions[1]); // receiving side of the second transfer
    EXPECT_EQ(store.book().transactions.size(), 3u);
    store.deleteTransaction(store.book().transactions[0]); // sending side of the first
    EXPECT_EQ(payees(), (std::vector<QString>{"Keep"}));
    store.deleteTransaction(store.book().transactions[0]);
    EXPECT_TRUE(store.book().transactions.empty());
    EXPECT_TRUE(onDisk().transactions.empty());
}

TEST_F(Ledger, BalancesCountLinesUpToTheExactInstant)
{
    Account studio{newId(), QStringLiteral("Studio"), AccountKind::business, d("1000.10"), false};
    store.save(studio);
    store.add(line(studio, "2025-03-01T12:00:00Z", "-0.10"));
    store.add(line(studio, "2025-03-01T12:00:01Z", "-500"));
    store.add(line(checking, "2025-03-01T12:00:00Z", "25"));
    EXPECT_EQ(store.balance(studio, at("2025-03-01T12:00:00Z")), d("1000"));
    EXPECT_EQ(store.balance(studio, at("2025-03-01T11:59:59Z")), d("1000.1"));
    EXPECT_EQ(store.balance(studio), d("500"));
    EXPECT_EQ(store.totalBalance(), d("525"));

    studio.archived = true;
    store.save(studio);
    EXPECT_EQ(store.balance(studio), d("500"));
    EXPECT_EQ(store.totalBalance(), d("25"));
    EXPECT_EQ(store.activeAccounts().size(), 2u);
    EXPECT_EQ(store.account(studio.id)->name, "Studio");
    EXPECT_FALSE(store.account(std::nullopt));
    EXPECT_FALSE(store.account(QUuid::createUuid()));
}

TEST_F(Ledger, AccountsAreAddedReplacedAndDeletedOnlyWhenEmpty)
{
    Account cash{newId(), QStringLiteral("Cash box"), AccountKind::cash, {}, false};
    store.save(cash);
    EXPECT_EQ(store.book().accounts.back().name, "Cash box");
    cash.name = QStringLiteral("Petty cash");
    store.save(cash);
    EXPECT_EQ(store.book().accounts.size(), 3u);
    EXPECT_EQ(store.book().accounts[2].name, "Petty cash");

    store.add(line(checking, "2025-03-01T12:00:00Z", "-1"));
    EXPECT_TRUE(store.hasTransactions(checking));
    store.deleteAccount(checking);
    EXPECT_EQ(store.book().accounts.size(), 3u);
    store.deleteAccount(cash);
    EXPECT_EQ(store.book().accounts.size(), 2u);
    EXPECT_EQ(onDisk().accounts.size(), 2u);
}

TEST_F(Ledger, CategoryPickersLeaveOutTransfer)
{
    const QStringList spending = store.categories(false);
    EXPECT_EQ(spending.size(), 17);
    EXPECT_FALSE(spending.contains("Transfer"));
    EXPECT_EQ(spending.first(), "Rent / mortgage");
    EXPECT_EQ(spending.last(), "Other spending");
    EXPECT_EQ(store.categories(true), (QStringList{"Royalties", "Software sales", "Music sales", "Gigs & bookings",
                                                   "Web design clients", "Paycheck", "Refunds", "Other income"}));
}
