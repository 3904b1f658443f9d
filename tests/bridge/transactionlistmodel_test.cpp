// The register's list model and the ledger calls of the transaction editors, as the
// screens see them: rows, summary texts, the signals a list view follows, the lines
// saved and the status line.
#include "billsbridge.h"
#include "ledgerbridge.h"
#include "transactionlistmodel.h"

#include "bridgetesting.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace {

Transaction tx(const Account &account, const char *iso, const char *amount, const char *payee, const char *category,
               const char *note = "", bool cleared = true)
{
    const Decimal value = d(amount);
    return {.date = at(iso),
            .accountID = account.id,
            .amount = value,
            .payee = payee,
            .category = category,
            .note = note,
            .cleared = cleared,
            .kind = value.isNegative() ? TxKind::expense : TxKind::deposit};
}

QVariantMap form(bool income, const char *iso, const char *amount, const char *payee, const Account &account)
{
    return {{"income", income},
            {"date", ms(at(iso))},
            {"amount", amount},
            {"payee", payee},
            {"accountId", idText(account.id)}};
}

// Four lines, three of them this month (March 2025).
class RegisterTest : public BridgeTest
{
protected:
    void SetUp() override
    {
        for (const Transaction &t :
             {tx(checking, "2025-03-10T15:00:00Z", "-1200", "Landlord", "Rent / mortgage"),
              tx(checking, "2025-03-05T15:00:00Z", "-45.10", "Green Basket", "Groceries", "weekly shop"),
              tx(savings, "2025-03-01T15:00:00Z", "2500", "Label Co", "Royalties"),
              tx(checking, "2025-02-20T15:00:00Z", "-4.50", "Corner cafe", "Dining out", "", false)})
            EXPECT_TRUE(store->add(t));
        model.setStore(store.get());
        bridge.setStore(store.get());
    }

    // The listed lines' payees, after a search for `text` when one is given.
    QStringList payees(const char *text = nullptr)
    {
        if (text)
            model.setSearch(QString::fromUtf8(text));
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list << model.get(row).value("payee").toString();
        return list;
    }
    TransactionListModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    LedgerBridge bridge;
};

} // namespace

TEST_F(RegisterTest, RowsCarryWhatTheLineShowsAndFiltersCombineAndSummariseThem)
{
    const QVariantMap row = model.get(3);
    QStringList shown;
    for (const char *role : {"payee", "dateText", "accountName", "amount", "amountText", "negative", "kind", "cleared"})
        shown << row.value(role).toString();
    EXPECT_EQ(shown, (QStringList{"Corner cafe", "Feb 20, 2025", "Main checking", "-4.5", "-$4.50", "true", "expense",
                                  "false"}));
    EXPECT_EQ(model.rowOf(model.idAt(3)), 3);
    model.setLimit(2);
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket"}));
    // A short list keeps only its own lines, and still follows the Book.
    const Transaction kiosk = tx(checking, "2025-03-11T15:00:00Z", "-3", "Kiosk", "Groceries");
    EXPECT_TRUE(store->add(kiosk));
    EXPECT_EQ(payees(), (QStringList{"Kiosk", "Landlord"}));
    EXPECT_TRUE(store->deleteTransaction(kiosk));
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket"}));
    model.setLimit(0);
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket", "Label Co", "Corner cafe"}));
    EXPECT_EQ(QStringList({model.linesText(), model.inText(), model.outText()}),
              (QStringList{"4 lines", "In $2,500.00", "Out -$1,249.60"}));
    model.setFlow(TransactionListModel::MoneyOut);
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket", "Corner cafe"}));
    model.setMonthOnly(true);
    EXPECT_EQ(payees(), (QStringList{"Landlord", "Green Basket"}));
    model.setAccountFilter(idText(savings.id));
    EXPECT_EQ(QStringList({model.linesText(), model.inText()}), (QStringList{"0 lines", "In $0.00"}));
    model.setFlow(TransactionListModel::MoneyIn);
    EXPECT_EQ(std::tuple(payees(), model.outText()), std::tuple(QStringList{"Label Co"}, "Out $0.00"));
}

TEST_F(RegisterTest, SearchIgnoresCaseLooksInPayeeCategoryAndNoteAndWidensAgain)
{
    // Newest, so its key comes first: letters beyond ASCII must not shift the others.
    EXPECT_TRUE(store->add(tx(checking, "2025-03-12T15:00:00Z", "-7", "Crème Brûlée Café", "Dining out", "ÉTÉ")));
    EXPECT_EQ(payees("BRÛLÉE"), QStringList{"Crème Brûlée Café"});
    EXPECT_EQ(payees("été"), QStringList{"Crème Brûlée Café"});
    EXPECT_EQ(payees("RENT"), QStringList{"Landlord"}) << "found by its category";
    EXPECT_EQ(payees("Weekly"), QStringList{"Green Basket"}) << "found by its note";
    // The fields are searched one by one, never across the end of one into the next.
    EXPECT_EQ(payees("landlordrent"), QStringList{});

    // Typing narrows, backspace widens as a fresh search would.
    for (const char *typed : {"g", "gr", "gro", "groc"})
        model.setSearch(QString::fromLatin1(typed));
    EXPECT_EQ(payees(), QStringList{"Green Basket"});
    EXPECT_EQ(payees("g"), (QStringList{"Crème Brûlée Café", "Landlord", "Green Basket", "Corner cafe"}));
    EXPECT_EQ(payees("").size(), 5);

    // A change of the Book while searching keeps the search.
    model.setSearch(QStringLiteral("cafe"));
    EXPECT_TRUE(store->add(tx(savings, "2025-03-11T15:00:00Z", "-3.75", "Cafe Roma", "Dining out")));
    EXPECT_EQ(payees(), (QStringList{"Cafe Roma", "Corner cafe"}));
    Transaction renamed = *findById(store->book().transactions, QUuid(model.idAt(1)));
    renamed.payee = QStringLiteral("Bakery");
    EXPECT_TRUE(store->update(renamed));
    EXPECT_EQ(payees(), QStringList{"Cafe Roma"});
}

TEST_F(RegisterTest, ChangesOfTheBookMoveOnlyTheRowsConcerned)
{
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    EXPECT_TRUE(store->add(tx(checking, "2025-03-07T15:00:00Z", "-9", "Hardware store", "Household")));
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(std::tuple(inserted.at(0).at(1).toInt(), payees().at(1)), std::tuple(1, "Hardware store"))
        << "the new line lands between the 10th and the 5th";
    TransactionListModel fresh;
    fresh.setStore(store.get());
    EXPECT_EQ(std::tuple(model.linesText(), model.outText()), std::tuple(fresh.linesText(), fresh.outText()));

    changed.clear();
    bridge.setCleared(model.idAt(3), false);
    ASSERT_EQ(changed.count(), 1);
    const int top = changed.at(0).at(0).value<QModelIndex>().row();
    const int bottom = changed.at(0).at(1).value<QModelIndex>().row();
    EXPECT_TRUE(top <= 3 && 3 <= bottom) << top << "-" << bottom;
    EXPECT_FALSE(model.get(3).value("cleared").toBool());

    bridge.deleteTransaction(model.idAt(0));
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(std::tuple(removed.at(0).at(1).toInt(), resets.count(), model.linesText()), std::tuple(0, 0, "4 lines"))
        << "removed at 0; no reset: the list keeps its place";
}

// What the Store makes of an edit (its sign, kind, status line and what a change keeps)
// is the ledger tests'; here the editor's form reaches it and comes back.
TEST_F(RegisterTest, TheEditorsFormReachesTheStoreAndComesBackForAChange)
{
    QVariantMap in = form(true, "2025-03-14T12:00:00Z", "(312.40)", "Club", savings);
    in["category"] = "Gigs";
    ASSERT_TRUE(bridge.saveTransaction(in));
    const Transaction logged = store->book().transactions.front();
    EXPECT_EQ(std::tuple(logged.amount, logged.accountID, logged.date, logged.category),
              std::tuple(d("312.4"), savings.id, at("2025-03-14T12:00:00Z"), "Gigs"));

    QVariantMap edited = bridge.transaction(idText(logged.id));
    EXPECT_EQ(std::tuple(edited["magnitude"].toString(), edited["income"].toBool()), std::tuple("312.40", true));
    edited.insert({{"amount", edited.value("magnitude")}, {"payee", "Club Mercury"}});
    ASSERT_TRUE(bridge.saveTransaction(edited));
    const Transaction &changed = store->book().transactions.front();
    EXPECT_EQ(std::tuple(changed.id, changed.payee, store->book().transactions.size()),
              std::tuple(logged.id, "Club Mercury", 5u));
    EXPECT_FALSE(bridge.transaction(model.idAt(1))["income"].toBool()) << "Landlord";
}

TEST_F(RegisterTest, BadInputSavesNothingAndAFailedSaveIsNotHiddenByTheEditorsMessage)
{
    store->setStatus(QString());
    EXPECT_FALSE(bridge.saveTransaction(form(false, "2025-03-14T12:00:00Z", "4.5o", "Cafe", checking)));
    QVariantMap noAccount = form(false, "2025-03-14T12:00:00Z", "4.50", "Cafe", checking);
    noAccount["accountId"] = QString();
    EXPECT_FALSE(bridge.saveTransaction(noAccount));
    EXPECT_FALSE(bridge.transfer(idText(checking.id), QString(), "10", 0, QString()));
    EXPECT_FALSE(bridge.transfer(idText(checking.id), idText(savings.id), QString(), 0, QString()));
    // New Year's Eve of 9999 in the evening in New York is already year 10000 in UTC,
    // which no money file can hold: a line or transfer dated there is not saved.
    QVariantMap late = form(false, "2025-03-14T12:00:00Z", "4.50", "Cafe", checking);
    late["date"] = ms(at("9999-12-31T01:30:00Z")) + 86400000.0;
    EXPECT_FALSE(bridge.saveTransaction(late));
    EXPECT_FALSE(bridge.transfer(idText(checking.id), idText(savings.id), "10", late["date"].toDouble(), QString()));
    EXPECT_EQ(std::tuple(store->book().transactions.size(), store->status()), std::tuple(4u, ""));

    // A failed save's message is not hidden by the editor's: a second Store on the same
    // folder may not write the money file.
    Store second(StoreOptions{temp.path(), nullptr, std::make_shared<NoNotifier>()});
    ASSERT_FALSE(second.writable());
    LedgerBridge other;
    other.setStore(&second);
    ASSERT_TRUE(other.saveTransaction(form(false, "2025-03-14T12:00:00Z", "3", "Kiosk", checking)));
    EXPECT_EQ(second.status(), "Could not save: another Coinhall has this money file open");
    // Nor by the bill editor's "Saved bill <name>.".
    second.setStatus({});
    BillsBridge bills;
    bills.setStore(&second);
    ASSERT_TRUE(bills.saveBill({{"name", "Rent"}, {"amount", "1450"}, {"due", 0.0}, {"repeats", "Monthly"}}));
    EXPECT_EQ(second.status(), "Could not save: another Coinhall has this money file open");
}
