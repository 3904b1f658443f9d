// What the Accounts, Reports and import screens get from their C++ side: the texts
// they show and the rules behind their keys and fields, on a Store of its own.
#include "accountsbridge.h"
#include "dashboardsummary.h"
#include "importbridge.h"
#include "reportsbridge.h"
#include "transactionlistmodel.h"

#include "bridgetesting.h"
#include "model/money.h"

#include <QFile>
#include <QSignalSpy>
#include <QUrl>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// The warnings of the code under test, while a test collects them.
QStringList warnings;

void keepWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg)
        warnings << message;
}

QUrl bankFile(const char *name)
{
    return QUrl::fromLocalFile(QStringLiteral(COINHALL_TEST_DATA "/bank/") + QString::fromUtf8(name));
}

// The Store's clock stands on January 20, 2025 (the month of the harbor_checking download).
class Bridges : public BridgeTest
{
protected:
    Bridges()
        : BridgeTest(local(2025, 1, 20, 12))
    {}

    // Imports a bank download into `account` as the import sheet does.
    void importInto(const Account &account, const char *file)
    {
        ImportBridge sheet;
        sheet.setStore(store.get());
        sheet.setAccount(account.id.toString(QUuid::WithoutBraces));
        sheet.open(bankFile(file));
        ASSERT_GT(sheet.importNow(), 0);
    }

    void spend(const Account &account, Instant date, const char *amount, const char *category)
    {
        EXPECT_TRUE(store->add(
            {.date = date, .accountID = account.id, .amount = d(amount), .category = QString::fromUtf8(category)}));
    }

    int categoryIndex(const QString &name) const
    {
        const auto &categories = store->book().categories;
        for (size_t i = 0; i < categories.size(); ++i)
            if (categories[i].name == name)
                return int(i);
        return -1;
    }

    std::optional<Decimal> budgetOf(const QString &name) const
    {
        return store->book().categories.at(size_t(categoryIndex(name))).budget;
    }
};

} // namespace

// -- Accounts ------------------------------------------------------------------

TEST_F(Bridges, AccountLinesCountThisMonthsLinesWithTheRightPlural)
{
    importInto(checking, "harbor_checking.csv");
    spend(savings, local(2025, 1, 2, 12), "-5", "Fees & charges");
    spend(savings, local(2024, 12, 31, 23), "-5", "Fees & charges");
    AccountsBridge screen;
    screen.setStore(store.get());

    EXPECT_EQ(at(screen.accounts(), 0).value("countText").toString(), "14 transactions this month");
    EXPECT_EQ(at(screen.accounts(), 1).value("countText").toString(), "1 transaction this month");
    spend(savings, local(2025, 1, 31, 23), "-2", "Fees & charges");
    EXPECT_EQ(at(screen.accounts(), 1).value("countText").toString(), "2 transactions this month");
    EXPECT_EQ(AccountsBridge::monthCountText(0), "0 transactions this month");
}

TEST_F(Bridges, AccountLinesShowBalanceClosedMarkAndTheOpenTotal)
{
    importInto(checking, "harbor_checking.csv");
    AccountsBridge screen;
    screen.setStore(store.get());
    Account closed = savings;
    closed.opening = d("250");
    closed.archived = true;
    EXPECT_TRUE(store->save(closed));

    EXPECT_EQ(at(screen.accounts(), 0).value("balanceText").toString(), "$354.98");
    EXPECT_EQ(at(screen.accounts(), 1).value("title").toString(), "Savings (closed)");
    EXPECT_EQ(at(screen.accounts(), 1).value("balanceText").toString(), "$250.00");
    EXPECT_EQ(screen.totalText(), "$354.98");
}

TEST_F(Bridges, BudgetCommitReadsTypedAmountsAndClearsOnAnythingElse)
{
    AccountsBridge screen;
    screen.setStore(store.get());
    const int groceries = categoryIndex(QStringLiteral("Groceries"));
    QSignalSpy writes(store.get(), &Store::bookChanged);

    EXPECT_TRUE(screen.commitBudget(groceries, QStringLiteral("$1,250.50")));
    EXPECT_EQ(budgetOf(QStringLiteral("Groceries")), d("1250.5"));
    const QVariantList rows = screen.budgets();
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [](const QVariant &r) { return r.toMap().value("name") == "Groceries"; });
    ASSERT_NE(row, rows.end());
    EXPECT_EQ(row->toMap().value("index").toInt(), groceries);
    EXPECT_EQ(row->toMap().value("budget").toString(), "1250.5");
    EXPECT_FALSE(screen.commitBudget(groceries, QStringLiteral("1250.50")));
    EXPECT_TRUE(screen.commitBudget(groceries, QStringLiteral("lots")));
    EXPECT_EQ(budgetOf(QStringLiteral("Groceries")), std::nullopt);
    EXPECT_FALSE(screen.commitBudget(groceries, QString()));
    EXPECT_FALSE(screen.commitBudget(99, QStringLiteral("5")));
    EXPECT_EQ(writes.count(), 2);
}

// -- Reports -------------------------------------------------------------------

TEST_F(Bridges, ReportTilesFollowThePeriod)
{
    importInto(checking, "harbor_checking.csv");
    ReportsBridge reports;
    reports.setStore(store.get());

    EXPECT_EQ(reports.incomeText(), "$2,662.18");
    EXPECT_EQ(reports.spendingText(), "$2,307.20");
    EXPECT_EQ(reports.netText(), "+$354.98");
    EXPECT_EQ(reports.royaltyShareText(), "2%");
    EXPECT_EQ(at(reports.spendingLines(), 0).value("name").toString(), "Rent / mortgage");

    reports.setPeriod(ReportsBridge::LastMonth); // December 2024: nothing
    EXPECT_EQ(reports.incomeText(), "$0.00");
    EXPECT_EQ(reports.netText(), "$0.00");
    EXPECT_EQ(reports.royaltyShareText(), "—");
    EXPECT_TRUE(reports.spendingLines().isEmpty());
    EXPECT_EQ(reports.months(), 1);

    reports.setPeriod(ReportsBridge::Last12Months);
    EXPECT_EQ(reports.spendingText(), "$2,307.20");
    EXPECT_EQ(reports.months(), 12);
    reports.setPeriod(ReportsBridge::Period(7)); // not a period: this month
    EXPECT_EQ(reports.incomeText(), "$2,662.18");
    EXPECT_EQ(reports.months(), 1);
}

// -- Import --------------------------------------------------------------------

TEST_F(Bridges, ImportColumnPickersNameEveryColumnAndDriveThePreview)
{
    const QString path = temp.filePath(QStringLiteral("cafe.csv"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Date,,Amount\n01/02/2025,Corner cafe,-4.50\n");
    file.close();
    ImportBridge sheet;
    sheet.setStore(store.get());
    sheet.open(QUrl::fromLocalFile(path));

    EXPECT_EQ(sheet.columnChoices(), (QStringList{"—", "Date", "Column 2", "Amount"}));
    EXPECT_EQ(sheet.choices(), (QVariantList{1, 0, 3, 0, 0, 0}));
    EXPECT_EQ(at(sheet.previewLines(), 0).value("payee").toString(), "Imported");

    QSignalSpy preview(&sheet, &ImportBridge::previewChanged);
    sheet.setChoice(ImportBridge::Description, 2);
    EXPECT_EQ(preview.count(), 1);
    EXPECT_EQ(at(sheet.previewLines(), 0).value("payee").toString(), "Corner cafe");
    EXPECT_EQ(at(sheet.previewLines(), 0).value("category").toString(), "Other spending");
    sheet.setChoice(ImportBridge::Date, 9); // no such column: ignored
    EXPECT_EQ(sheet.choices().at(ImportBridge::Date).toInt(), 1);
    sheet.setChoice(ImportBridge::Date, 0);
    EXPECT_EQ(sheet.previewTitle(), "Preview · 0 new · 0 already in · 1 unreadable");
}

TEST_F(Bridges, ImportFlipNegatesAndRetypesTheLines)
{
    ImportBridge sheet;
    sheet.setStore(store.get());
    sheet.open(bankFile("maple_card.csv"));
    sheet.setFlip(true);

    EXPECT_EQ(at(sheet.previewLines(), 0).value("amountText").toString(), "+$289.00");
    sheet.importNow();
    const Transaction &sweetwater = store->book().transactions.front();
    EXPECT_EQ(sweetwater.amount, d("289"));
    EXPECT_EQ(sweetwater.kind, TxKind::deposit);
}

TEST_F(Bridges, ImportWithoutAnAccountHasNoPreview)
{
    ImportBridge sheet;
    sheet.setStore(store.get());
    sheet.setAccount(QString());
    sheet.open(bankFile("harbor_checking.csv"));

    EXPECT_FALSE(sheet.hasPreview());
    EXPECT_EQ(sheet.previewTitle(), "");
    EXPECT_EQ(sheet.importNow(), 0);
    EXPECT_TRUE(store->book().transactions.empty());
}

// -- The link to the Store -----------------------------------------------------

TEST_F(Bridges, ABridgeFollowsOnlyTheStoreItHasNow)
{
    QTemporaryDir otherFolder;
    Store other(StoreOptions{otherFolder.path(), nullptr, std::make_shared<NoNotifier>()});
    DashboardSummary screen;
    QSignalSpy storeChanged(&screen, &DashboardSummary::storeChanged);
    QSignalSpy changed(&screen, &DashboardSummary::changed);
    screen.setStore(store.get());
    spend(checking, local(2025, 1, 2, 12), "-5", "Fees & charges");
    EXPECT_EQ(screen.totalText(), "-$5.00");

    screen.setStore(&other);
    screen.setStore(&other); // the same Store again is no change
    EXPECT_EQ(storeChanged.count(), 2);
    EXPECT_EQ(screen.store(), &other);
    EXPECT_EQ(screen.totalText(), "$0.00");

    changed.clear();
    spend(checking, local(2025, 1, 3, 12), "-7", "Fees & charges");
    EXPECT_EQ(changed.count(), 0) << "the Store it left still reaches it";
    EXPECT_TRUE(
        other.add({.date = local(2025, 1, 3, 12), .accountID = other.book().accounts.at(0).id, .amount = d("12")}));
    EXPECT_EQ(screen.totalText(), "$12.00");
}

TEST_F(Bridges, SomethingElseThanAStoreIsRefusedWithAWarningNamingTheBridge)
{
    AccountsBridge screen;
    TransactionListModel lines;
    screen.setStore(store.get());
    lines.setStore(store.get());
    spend(checking, local(2025, 1, 2, 12), "-5", "Fees & charges");
    QObject stranger;
    warnings.clear();
    qInstallMessageHandler(keepWarning);
    screen.setStore(&stranger);
    lines.setStore(&stranger);
    qInstallMessageHandler(nullptr);

    EXPECT_EQ(warnings, (QStringList{"AccountsBridge: the store given is not a Store",
                                     "TransactionListModel: the store given is not a Store"}));
    EXPECT_EQ(screen.store(), nullptr);
    EXPECT_TRUE(screen.accounts().isEmpty());
    EXPECT_EQ(lines.store(), nullptr);
    EXPECT_EQ(lines.count(), 0);
}

TEST_F(Bridges, ABridgeForgetsAStoreThatIsGone)
{
    QTemporaryDir otherFolder;
    auto other = std::make_unique<Store>(StoreOptions{otherFolder.path(), nullptr, std::make_shared<NoNotifier>()});
    ReportsBridge reports;
    reports.setStore(other.get());
    ASSERT_EQ(reports.store(), other.get());
    other.reset();
    EXPECT_EQ(reports.store(), nullptr);
    // A Store given after that is followed as any other.
    reports.setStore(store.get());
    spend(checking, local(2025, 1, 2, 12), "-5", "Fees & charges");
    EXPECT_EQ(reports.spendingText(), "$5.00");
}
