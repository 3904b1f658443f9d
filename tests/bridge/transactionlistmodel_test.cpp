// The register's list model and the ledger calls of the transaction editors, as the
// screens see them: rows, summary texts, the signals a list view follows, the lines
// saved and the status line.
#include "billsbridge.h"
#include "ledgerbridge.h"
#include "transactionlistmodel.h"

#include "bridgetesting.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cmath>

namespace {

// A Book of its own: two accounts and four lines, three of them this month.
class RegisterTest : public BridgeTest
{
protected:
    RegisterTest()
        : BridgeTest(at("2025-03-15T12:00:00Z"))
    {
        checking = {newId(), QStringLiteral("Main checking"), AccountKind::checking, Decimal(0), false};
        savings = {newId(), QStringLiteral("Savings"), AccountKind::savings, Decimal(0), false};
    }

    void SetUp() override
    {
        BridgeTest::SetUp();
        Book book;
        book.accounts = {checking, savings};
        book.transactions = {
            tx(checking, "2025-03-10T15:00:00Z", "-1200", "Landlord", "Rent / mortgage"),
            tx(checking, "2025-03-05T15:00:00Z", "-45.10", "Green Basket", "Groceries", "weekly shop"),
            tx(savings, "2025-03-01T15:00:00Z", "2500", "Label Co", "Royalties"),
            tx(checking, "2025-02-20T15:00:00Z", "-4.50", "Corner cafe", "Dining out", "", false),
        };
        EXPECT_TRUE(store->setBook(book));
        model.setStore(store.get());
        bridge.setStore(store.get());
    }

    Transaction tx(const Account &account, const char *iso, const char *amount, const char *payee, const char *category,
                   const char *note = "", bool cleared = true)
    {
        Transaction t;
        t.date = at(iso);
        t.accountID = account.id;
        t.amount = d(amount);
        t.payee = QString::fromUtf8(payee);
        t.category = QString::fromUtf8(category);
        t.note = QString::fromUtf8(note);
        t.cleared = cleared;
        t.kind = t.amount.isNegative() ? TxKind::expense : TxKind::deposit;
        return t;
    }

    QStringList payees() const
    {
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list << model.data(model.index(row), TransactionListModel::PayeeRole).toString();
        return list;
    }

    QString idText(const Account &a) const { return a.id.toString(QUuid::WithoutBraces); }
    const Transaction &lineNamed(const char *payee) const
    {
        for (const Transaction &t : store->book().transactions)
            if (t.payee == QLatin1String(payee))
                return t;
        ADD_FAILURE() << "no line " << payee;
        return store->book().transactions.front();
    }

    TransactionListModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    LedgerBridge bridge;
};

TEST_F(RegisterTest, FiltersCombineAndSummariseTheListedLines)
{
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket", "Label Co", "Corner cafe"}));
    EXPECT_EQ(model.linesText(), "4 lines");
    EXPECT_EQ(model.inText(), "In $2,500.00");
    EXPECT_EQ(model.outText(), "Out -$1,249.60");

    model.setFlow(TransactionListModel::MoneyOut);
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket", "Corner cafe"}));
    model.setMonthOnly(true);
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket"}));
    model.setAccountFilter(idText(savings));
    EXPECT_EQ(model.count(), 0);
    EXPECT_EQ(model.linesText(), "0 lines");
    EXPECT_EQ(model.inText(), "In $0.00");

    model.setFlow(TransactionListModel::MoneyIn);
    EXPECT_EQ(payees(), QStringList{"Label Co"});
    EXPECT_EQ(model.outText(), "Out $0.00");
}

TEST_F(RegisterTest, SearchIgnoresCaseAndLooksInPayeeCategoryAndNote)
{
    // Newest, so its key comes first: letters beyond ASCII must not shift the others.
    EXPECT_TRUE(store->add(tx(checking, "2025-03-12T15:00:00Z", "-7", "Crème Brûlée Café", "Dining out", "ÉTÉ")));
    model.setSearch(QStringLiteral("BRÛLÉE"));
    EXPECT_EQ(payees(), QStringList{"Crème Brûlée Café"});
    model.setSearch(QStringLiteral("été"));
    EXPECT_EQ(payees(), QStringList{"Crème Brûlée Café"});

    model.setSearch(QStringLiteral("RENT"));
    EXPECT_EQ(payees(), QStringList{"Landlord"}) << "found by its category";
    model.setSearch(QStringLiteral("Weekly"));
    EXPECT_EQ(payees(), QStringList{"Green Basket"}) << "found by its note";
    model.setSearch(QStringLiteral("corner"));
    EXPECT_EQ(payees(), QStringList{"Corner cafe"});
    // The fields are searched one by one, never across the end of one into the next.
    model.setSearch(QStringLiteral("landlordrent"));
    EXPECT_EQ(model.count(), 0);
    model.setSearch(QStringLiteral("shop"));
    EXPECT_EQ(payees(), QStringList{"Green Basket"});
}

TEST_F(RegisterTest, TypingNarrowsAndBackspaceWidensLikeAFreshSearch)
{
    for (const char *typed : {"g", "gr", "gro", "groc"})
        model.setSearch(QString::fromLatin1(typed));
    EXPECT_EQ(payees(), QStringList{"Green Basket"});
    model.setSearch(QStringLiteral("g"));
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket", "Corner cafe"}));
    model.setSearch(QString());
    EXPECT_EQ(model.count(), 4);
}

TEST_F(RegisterTest, ChangesOfTheBookMoveOnlyTheRowsConcerned)
{
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    EXPECT_TRUE(store->add(tx(checking, "2025-03-07T15:00:00Z", "-9", "Hardware store", "Household")));
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted.at(0).at(1).toInt(), 1) << "the new line lands between the 10th and the 5th";
    EXPECT_EQ(payees().at(1), "Hardware store");

    bridge.setCleared(model.idAt(3), false);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).value<QModelIndex>().row(), 3);
    EXPECT_FALSE(model.data(model.index(3), TransactionListModel::ClearedRole).toBool());

    bridge.deleteTransaction(model.idAt(0));
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).at(1).toInt(), 0);
    EXPECT_EQ(resets.count(), 0) << "the list keeps its place";
    EXPECT_EQ(model.linesText(), "4 lines");
}

TEST_F(RegisterTest, ABookChangeWhileSearchingKeepsTheSearch)
{
    model.setSearch(QStringLiteral("cafe"));
    EXPECT_TRUE(store->add(tx(savings, "2025-03-12T15:00:00Z", "-3.75", "Cafe Roma", "Dining out")));
    EXPECT_EQ(payees(), (QStringList{"Cafe Roma", "Corner cafe"}));
    Transaction renamed = lineNamed("Corner cafe");
    renamed.payee = QStringLiteral("Bakery");
    EXPECT_TRUE(store->update(renamed));
    EXPECT_EQ(payees(), QStringList{"Cafe Roma"});
}

TEST_F(RegisterTest, RowsCarryWhatTheLineShows)
{
    model.setSearch(QStringLiteral("corner"));
    ASSERT_EQ(model.count(), 1);
    const QModelIndex row = model.index(0);
    EXPECT_EQ(model.data(row, TransactionListModel::DateTextRole).toString(), "Feb 20, 2025");
    EXPECT_EQ(model.data(row, TransactionListModel::AccountNameRole).toString(), "Main checking");
    EXPECT_EQ(model.data(row, TransactionListModel::AmountRole).toString(), "-4.5");
    EXPECT_EQ(model.data(row, TransactionListModel::AmountTextRole).toString(), "-$4.50");
    EXPECT_TRUE(model.data(row, TransactionListModel::NegativeRole).toBool());
    EXPECT_EQ(model.data(row, TransactionListModel::KindRole).toString(), "expense");
    EXPECT_FALSE(model.data(row, TransactionListModel::ClearedRole).toBool());
    EXPECT_EQ(model.rowOf(model.idAt(0)), 0);

    model.setSearch(QString());
    model.setLimit(2);
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket"}));
}

TEST_F(RegisterTest, SavingAnExpenseStoresItNegativeAndSaysSo)
{
    const bool saved = bridge.saveTransaction({{"income", false},
                                               {"date", double(at("2025-03-14T09:30:00.250Z").msecs())},
                                               {"amount", "-4.50"},
                                               {"payee", "Corner cafe"},
                                               {"category", "Dining out"},
                                               {"accountId", idText(checking)},
                                               {"note", ""},
                                               {"cleared", true}});
    ASSERT_TRUE(saved);
    const Transaction &t = store->book().transactions.front();
    EXPECT_EQ(t.amount, d("-4.5"));
    EXPECT_EQ(t.kind, TxKind::expense);
    EXPECT_EQ(t.date, at("2025-03-14T09:30:00Z"));
    EXPECT_EQ(store->status(), "Spent $4.50 · Corner cafe.");
}

TEST_F(RegisterTest, MoneyInIsPositiveAndRoyaltiesAreTheirOwnKind)
{
    QVariantMap form{{"income", true},          {"date", double(at("2025-03-14T12:00:00Z").msecs())},
                     {"amount", "(312.40)"},    {"payee", "Label Co"},
                     {"category", "Royalties"}, {"accountId", idText(savings)}};
    ASSERT_TRUE(bridge.saveTransaction(form));
    EXPECT_EQ(store->book().transactions.front().amount, d("312.4"));
    EXPECT_EQ(store->book().transactions.front().kind, TxKind::royalty);
    EXPECT_EQ(store->status(), "Logged $312.40 · Label Co.");

    form["category"] = QStringLiteral("Gigs");
    form["date"] = double(at("2025-03-14T13:00:00Z").msecs());
    ASSERT_TRUE(bridge.saveTransaction(form));
    EXPECT_EQ(store->book().transactions.front().kind, TxKind::deposit);
}

TEST_F(RegisterTest, BadInputSavesNothing)
{
    const size_t before = store->book().transactions.size();
    store->setStatus(QString());
    QVariantMap form{{"income", false},
                     {"date", double(at("2025-03-14T12:00:00Z").msecs())},
                     {"amount", "4.5o"},
                     {"payee", "Cafe"},
                     {"accountId", idText(checking)}};
    EXPECT_FALSE(bridge.saveTransaction(form));
    form["amount"] = QStringLiteral("4.50");
    form["accountId"] = QString();
    EXPECT_FALSE(bridge.saveTransaction(form));
    EXPECT_FALSE(bridge.transfer(idText(checking), QString(), QStringLiteral("10"), 0, QString()));
    EXPECT_FALSE(bridge.transfer(idText(checking), idText(savings), QStringLiteral(""), 0, QString()));
    EXPECT_EQ(store->book().transactions.size(), before);
    EXPECT_EQ(store->status(), "");
}

TEST_F(RegisterTest, AChangedLineKeepsItsIdentityLinkAndFingerprint)
{
    Transaction bill = lineNamed("Landlord");
    bill.kind = TxKind::bill;
    bill.importHash = QStringLiteral("abc123");
    bill.transferPairID = newId();
    EXPECT_TRUE(store->update(bill));

    QVariantMap form = bridge.transaction(bill.id.toString());
    EXPECT_EQ(form["magnitude"].toString(), "1200.00");
    EXPECT_EQ(form["income"].toBool(), false);
    form["amount"] = form["magnitude"];
    form["payee"] = QStringLiteral("Landlord LLC");
    ASSERT_TRUE(bridge.saveTransaction(form));

    const Transaction &saved = lineNamed("Landlord LLC");
    EXPECT_EQ(saved.id, bill.id);
    EXPECT_EQ(saved.kind, TxKind::bill) << "a bill payment stays one";
    EXPECT_EQ(saved.importHash, bill.importHash);
    EXPECT_EQ(saved.transferPairID, bill.transferPairID);
    EXPECT_EQ(saved.date, bill.date);
    EXPECT_EQ(store->book().transactions.size(), 4u);
}

TEST_F(RegisterTest, ATransferMakesTwoLinesAndSaysHowMuchMoved)
{
    ASSERT_TRUE(bridge.transfer(idText(checking), idText(savings), QStringLiteral("-250"),
                                double(at("2025-03-14T12:00:00Z").msecs()), QStringLiteral("rainy day")));
    EXPECT_EQ(store->status(), "Moved $250.00.");
    EXPECT_EQ(payees().mid(0, 2), (QStringList{"Transfer to Savings", "Transfer from Main checking"}));
}

TEST_F(RegisterTest, AFailedSaveIsNotHiddenByTheEditorsMessage)
{
    // A second Store on the same folder may not write the money file.
    Store second(StoreOptions{temp.path(), nullptr, std::make_shared<NoNotifier>()});
    ASSERT_FALSE(second.writable());
    LedgerBridge other;
    other.setStore(&second);
    ASSERT_TRUE(other.saveTransaction(
        {{"income", false}, {"date", 0.0}, {"amount", "3"}, {"payee", "Kiosk"}, {"accountId", idText(checking)}}));
    EXPECT_EQ(second.status(), "Could not save: another Coinhall has this money file open");

    // Nor by the bill editor's "Saved bill <name>.".
    second.setStatus({});
    BillsBridge bills;
    bills.setStore(&second);
    ASSERT_TRUE(bills.saveBill({{"name", "Rent"}, {"amount", "1450"}, {"due", 0.0}, {"repeats", "Monthly"}}));
    EXPECT_EQ(second.status(), "Could not save: another Coinhall has this money file open");
}

// New Year's Eve of 9999 in the evening in New York is already year 10000 in UTC, which
// no money file can hold: a line or transfer dated there is not saved.
TEST_F(RegisterTest, DaysPastTheYear9999AreNoDates)
{
    const double evening = double(at("9999-12-31T01:30:00Z").msecs());

    const size_t before = store->book().transactions.size();
    EXPECT_FALSE(bridge.saveTransaction({{"income", false},
                                         {"date", evening + 86400000.0},
                                         {"amount", "4.50"},
                                         {"payee", "Cafe"},
                                         {"accountId", idText(checking)}}));
    EXPECT_FALSE(
        bridge.transfer(idText(checking), idText(savings), QStringLiteral("10"), evening + 86400000.0, QString()));
    EXPECT_EQ(store->book().transactions.size(), before);
}

} // namespace
