// Ledger operations as a screen uses them: adding, editing, deleting, transfers,
// balances and the category lists.
#include "storetesting.h"

#include <gtest/gtest.h>

namespace {

using Ledger = StoreTest;

} // namespace

TEST_F(Ledger, AddKeepsNewestFirstAndEqualDatesInArrivalOrder)
{
    EXPECT_TRUE(store.add(line(checking, "2025-03-02T09:00:00Z", "-1", "B")));
    EXPECT_TRUE(store.add(line(checking, "2025-03-05T09:00:00Z", "-1", "D")));
    EXPECT_TRUE(store.add(line(checking, "2025-03-01T09:00:00Z", "-1", "A")));
    EXPECT_TRUE(store.add(line(checking, "2025-03-02T09:00:00Z", "-1", "C"))); // same instant as B: goes after it
    EXPECT_EQ(std::tuple(payees(), changes), std::tuple(std::vector<QString>{"D", "B", "C", "A"}, 4));
}

TEST_F(Ledger, UpdateKeepsALinesPlaceUnlessItsDateChanged)
{
    EXPECT_TRUE(store.add(line(checking, "2025-03-01T09:00:00Z", "-1", "A")));
    EXPECT_TRUE(store.add(line(checking, "2025-03-02T09:00:00Z", "-1", "B")));
    EXPECT_TRUE(store.add(line(checking, "2025-03-03T09:00:00Z", "-1", "C")));
    Transaction b = store.book().transactions[1];
    b.amount = d("-99.95");
    EXPECT_TRUE(store.update(b));
    EXPECT_EQ(payees(), (std::vector<QString>{"C", "B", "A"}));
    EXPECT_EQ(store.book().transactions[1], b);

    // A new date puts the line in its place at once, after lines of the same date.
    Transaction a = store.book().transactions[2];
    a.date = at("2025-03-03T09:00:00Z");
    EXPECT_TRUE(store.update(a));
    EXPECT_EQ(payees(), (std::vector<QString>{"C", "A", "B"}));

    changes = 0;
    EXPECT_FALSE(store.update(line(checking, "2025-01-01T09:00:00Z", "-1", "Ghost")).changed);
    EXPECT_EQ(changes, 0);
}

TEST_F(Ledger, TransferMakesTwoLinkedSidesWhateverTheSign)
{
    EXPECT_TRUE(
        store.transfer(checking.id, savings.id, d("-50"), at("2025-03-02T09:00:00Z"), QStringLiteral("rainy day")));
    ASSERT_EQ(store.book().transactions.size(), 2u);
    const Transaction &out = store.book().transactions[0];
    const Transaction &in = store.book().transactions[1];
    const Instant date = at("2025-03-02T09:00:00Z");
    EXPECT_EQ(out, (Transaction{out.id, date, checking.id, d("-50"), "Transfer to Savings", "Transfer", "rainy day",
                                true, TxKind::transfer, in.id}));
    EXPECT_EQ(in, (Transaction{in.id, date, savings.id, d("50"), "Transfer from Main checking", "Transfer", "rainy day",
                               true, TxKind::transfer, out.id}));
    EXPECT_NE(out.id, in.id);
    EXPECT_EQ(std::tuple(changes, store.status()), std::tuple(1, "Moved $50.00.")); // one change, one write

    EXPECT_TRUE(store.transfer(checking.id, QUuid::createUuid(), d("1"), at("2025-03-03T09:00:00Z"), {}));
    EXPECT_EQ(store.book().transactions[0].payee, "Transfer to ");
}

TEST_F(Ledger, EditingEitherSideOfATransferChangesBothTogether)
{
    const Account cash = {.name = QStringLiteral("Cash")};
    EXPECT_TRUE(store.save(cash));
    EXPECT_TRUE(store.transfer(checking.id, savings.id, d("50"), at("2025-03-02T09:00:00Z"), QStringLiteral("old")));
    for (const size_t side : {0u, 1u}) {
        const Transaction edited = store.book().transactions[side];
        ASSERT_EQ(store.transferOf(edited)->from, checking.id); // either side gives the whole transfer
        const TransferEdit edit{savings.id, cash.id, d("-75.5"), at("2025-02-01T10:00:00Z"), QStringLiteral("new")};
        EXPECT_TRUE(store.updateTransfer(edited, edit));
        EXPECT_EQ(store.status(), "Moved $75.50.");

        ASSERT_EQ(store.book().transactions.size(), 2u);
        const Transaction &out = store.book().transactions[0];
        const Transaction &in = store.book().transactions[1];
        EXPECT_EQ(out.id, edited.amount.isNegative() ? edited.id : edited.transferPairID); // ids kept
        const Instant date = at("2025-02-01T10:00:00Z");
        EXPECT_EQ(out, (Transaction{out.id, date, savings.id, d("-75.5"), "Transfer to Cash", "Transfer", "new", true,
                                    TxKind::transfer, in.id}));
        EXPECT_EQ(in, (Transaction{in.id, date, cash.id, d("75.5"), "Transfer from Savings", "Transfer", "new", true,
                                   TxKind::transfer, out.id}));
        // Put back for the other side's turn.
        EXPECT_TRUE(store.updateTransfer(out, {checking.id, savings.id, d("50"), at("2025-03-02T09:00:00Z"), {}}));
    }

    // The transaction editor never makes a side of one into income or spending.
    TransactionEdit asIncome{store.book().transactions[1].id, true, at("2025-03-02T09:00:00Z"), d("50")};
    asIncome.accountID = savings.id;
    EXPECT_FALSE(store.save(asIncome).changed);
    EXPECT_EQ(store.book().transactions[1].kind, TxKind::transfer);
}

TEST_F(Ledger, DeletingEitherSideOfATransferRemovesBoth)
{
    EXPECT_TRUE(store.add(line(checking, "2025-03-01T09:00:00Z", "-1", "Keep")));
    EXPECT_TRUE(store.transfer(checking.id, savings.id, d("50"), at("2025-03-02T09:00:00Z"), {}));
    EXPECT_TRUE(store.transfer(savings.id, checking.id, d("20"), at("2025-03-03T09:00:00Z"), {}));

    EXPECT_TRUE(store.deleteTransaction(store.book().transactions[1])); // receiving side of the second transfer
    EXPECT_EQ(payees(), (std::vector<QString>{"Transfer to Savings", "Transfer from Main checking", "Keep"}));
    EXPECT_TRUE(store.deleteTransaction(store.book().transactions[0])); // sending side of the first
    EXPECT_EQ(payees(), (std::vector<QString>{"Keep"}));
    EXPECT_TRUE(store.deleteTransaction(store.book().transactions[0]));
    EXPECT_TRUE(store.book().transactions.empty());
}

TEST_F(Ledger, BalancesCountLinesUpToTheExactInstant)
{
    Account studio{newId(), QStringLiteral("Studio"), AccountKind::business, d("1000.10"), false};
    EXPECT_TRUE(store.save(studio));
    EXPECT_TRUE(store.add(line(studio, "2025-03-01T12:00:00Z", "-0.10")));
    EXPECT_TRUE(store.add(line(studio, "2025-03-01T12:00:01Z", "-500")));
    EXPECT_TRUE(store.add(line(checking, "2025-03-01T12:00:00Z", "25")));
    EXPECT_EQ(std::tuple(store.balance(studio, at("2025-03-01T11:59:59Z")),
                         store.balance(studio, at("2025-03-01T12:00:00Z")), store.balance(studio),
                         store.totalBalance()),
              std::tuple(d("1000.1"), d("1000"), d("500"), d("525")));

    // Lines added after a balance was asked count at once; one dated tomorrow only
    // in the balance that includes the future.
    Transaction tomorrow = line(studio, "2025-03-01T12:00:00Z", "-7");
    tomorrow.date = today.addSecs(86400);
    EXPECT_TRUE(store.add(tomorrow));
    EXPECT_TRUE(store.add(line(studio, "2025-03-02T08:00:00Z", "0.10")));
    EXPECT_EQ(std::tuple(store.balance(studio, today), store.balance(studio), store.totalBalance()),
              std::tuple(d("500.1"), d("493.1"), d("518.1")));
    EXPECT_TRUE(store.deleteTransaction(tomorrow));
    EXPECT_EQ(store.balance(studio), d("500.1"));

    studio.archived = true;
    EXPECT_TRUE(store.save(studio));
    EXPECT_EQ(std::tuple(store.balance(studio), store.totalBalance(), store.activeAccounts().size()),
              std::tuple(d("500.1"), d("25"), 2u));
    EXPECT_EQ(store.account(studio.id)->name, "Studio");
    EXPECT_FALSE(store.account(std::nullopt) || store.account(QUuid::createUuid()));
}

TEST_F(Ledger, AccountsAreAddedReplacedAndDeletedOnlyWhenEmpty)
{
    Account cash{newId(), QStringLiteral("Cash box"), AccountKind::cash, {}, false};
    EXPECT_TRUE(store.save(cash));
    EXPECT_EQ(store.book().accounts.back().name, "Cash box");
    cash.name = QStringLiteral("Petty cash");
    EXPECT_TRUE(store.save(cash));
    EXPECT_EQ(each(store.book().accounts, &Account::name),
              (std::vector<QString>{"Main checking", "Savings", "Petty cash"}));

    EXPECT_TRUE(store.add(line(checking, "2025-03-01T12:00:00Z", "-1")));
    EXPECT_TRUE(store.hasTransactions(checking));
    EXPECT_FALSE(store.deleteAccount(checking).changed);
    EXPECT_TRUE(store.deleteAccount(cash));
    EXPECT_EQ(each(store.book().accounts, &Account::name), (std::vector<QString>{"Main checking", "Savings"}));
}

TEST_F(Ledger, CategoryPickersLeaveOutTransfer)
{
    const QStringList spending = store.categories(false), income = store.categories(true);
    EXPECT_TRUE(spending.contains("Groceries") && !spending.contains("Royalties") && !spending.contains("Transfer"));
    EXPECT_TRUE(income.contains("Royalties") && !income.contains("Groceries") && !income.contains("Transfer"));
}

// The transaction editor's save: its side gives the sign, and money in filed under
// Royalties is a royalty; a changed line keeps what the editor does not show.
TEST_F(Ledger, TheEditorsSideGivesTheSignAndKindAndAChangedLineKeepsTheRest)
{
    EXPECT_TRUE(
        store.save(TransactionEdit{{}, false, at("2025-03-14T09:30:00.250Z"), d("4.5"), "Cafe", "", checking.id}));
    EXPECT_EQ(store.status(), "Spent $4.50 · Cafe.");
    Transaction spent = store.book().transactions[0];
    // Whole seconds, as the file keeps them.
    EXPECT_EQ(std::tuple(spent.amount, spent.kind, spent.date),
              std::tuple(d("-4.5"), TxKind::expense, at("2025-03-14T09:30:00Z")));
    EXPECT_TRUE(store.save(
        TransactionEdit{{}, true, at("2025-03-14T12:00:00Z"), d("-312.4"), "Label", "Royalties", savings.id}));
    EXPECT_EQ(std::tuple(store.status(), store.book().transactions[0].amount, store.book().transactions[0].kind),
              std::tuple("Logged $312.40 · Label.", d("312.4"), TxKind::royalty));
    EXPECT_TRUE(store.save(TransactionEdit{{}, true, at("2025-03-14T13:00:00Z"), d("5"), "Club", "Gigs", savings.id}));
    EXPECT_EQ(store.book().transactions[0].kind, TxKind::deposit);

    spent.kind = TxKind::bill;
    spent.importHash = QStringLiteral("abc123");
    spent.transferPairID = newId();
    EXPECT_TRUE(store.update(spent));
    EXPECT_TRUE(store.save(TransactionEdit{spent.id, false, spent.date, d("5"), "Cafe LLC", "", checking.id}));
    ASSERT_EQ(store.book().transactions.size(), 3u);
    Transaction expected = spent; // a bill payment stays one, and keeps its import hash and pair
    expected.payee = "Cafe LLC";
    expected.amount = d("-5");
    EXPECT_EQ(store.book().transactions[2], expected);
}
