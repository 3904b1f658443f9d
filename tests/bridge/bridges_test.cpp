// What the Accounts, Reports and import screens get from their C++ side, and how every
// bridge follows the Store it is given.
#include "accountsbridge.h"
#include "dashboardsummary.h"
#include "importbridge.h"
#include "reportsbridge.h"
#include "transactionlistmodel.h"

#include "bridgetesting.h"

#include <QSignalSpy>
#include <QUrl>

namespace {

QStringList warnings;

void keepWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg)
        warnings << message;
}

using Bridges = BridgeTest;

} // namespace

TEST_F(Bridges, AccountsScreenCountsTheMonthsLinesShowsBalancesAndTakesTypedBudgets)
{
    AccountsBridge screen;
    screen.setStore(store.get());
    line(local(2025, 3, 2, 12), "-5", TxKind::expense, &savings);
    line(local(2025, 2, 28, 23), "-5", TxKind::expense, &savings); // last month
    EXPECT_EQ(column(screen.accounts(), "countText"),
              (QStringList{"0 transactions this month", "1 transaction this month"}));

    EXPECT_TRUE(store->save(Account{savings.id, "Savings", AccountKind::savings, d("250"), true}));
    line(local(2025, 3, 4, 12), "354.98", TxKind::deposit);
    EXPECT_EQ(column(screen.accounts(), "title") + column(screen.accounts(), "balanceText") << screen.totalText(),
              (QStringList{"Main checking", "Savings (closed)", "$354.98", "$240.00", "$354.98"}));

    const qsizetype row = column(screen.budgets(), "name").indexOf("Groceries");
    const int groceries = screen.budgets().value(row).toMap().value("index").toInt();
    ASSERT_EQ(store->book().categories.at(size_t(groceries)).name, "Groceries");
    auto budget = [&] { return store->book().categories.at(size_t(groceries)).budget; };
    QSignalSpy writes(store.get(), &Store::bookChanged);

    EXPECT_TRUE(screen.commitBudget(groceries, QStringLiteral("$1,250.50")));
    EXPECT_EQ(std::tuple(budget(), screen.budgets().value(row).toMap().value("budget").toString()),
              std::tuple(d("1250.5"), "1250.5"));
    EXPECT_FALSE(screen.commitBudget(groceries, QStringLiteral("1250.50"))); // unchanged: not written
    EXPECT_TRUE(screen.commitBudget(groceries, QStringLiteral("lots")));
    EXPECT_FALSE(screen.commitBudget(99, QStringLiteral("5")));
    EXPECT_EQ(std::tuple(budget(), writes.count()), std::tuple(std::nullopt, 2));
}

TEST_F(Bridges, ReportTextsFollowThePeriod)
{
    line(local(2025, 3, 5, 12), "2000", TxKind::deposit, nullptr, "Paycheck");
    line(local(2025, 3, 6, 12), "-1200", TxKind::expense, nullptr, "Rent / mortgage");
    line(local(2024, 6, 6, 12), "-40", TxKind::expense, nullptr, "Groceries");
    ReportsBridge reports;
    reports.setStore(store.get());
    auto tiles = [&reports] {
        return QStringList{reports.incomeText(), reports.spendingText(), reports.netText(), reports.royaltyShareText()};
    };
    EXPECT_EQ(tiles(), (QStringList{"$2,000.00", "$1,200.00", "+$800.00", "0%"}));
    EXPECT_EQ(std::tuple(column(reports.spendingLines(), "percentText"), reports.months()),
              std::tuple(QStringList{"100%"}, 1));
    reports.setPeriod(ReportsBridge::LastMonth); // February: nothing
    EXPECT_EQ(std::tuple(tiles(), reports.spendingLines().size()),
              std::tuple(QStringList{"$0.00", "$0.00", "$0.00", "—"}, 0));
    reports.setPeriod(ReportsBridge::Last12Months);
    EXPECT_EQ(std::tuple(tiles(), reports.months()),
              std::tuple(QStringList{"$2,000.00", "$1,240.00", "+$760.00", "0%"}, 12));
    reports.setPeriod(ReportsBridge::Period(7)); // not a period: this month
    EXPECT_EQ(reports.spendingText(), "$1,200.00");
}

TEST_F(Bridges, ImportSheetNamesTheColumnsDrivesThePreviewFlipsAndNeedsAnAccount)
{
    const QString path = temp.filePath(QStringLiteral("cafe.csv"));
    writeAll(path, "Date,,Amount\n01/02/2025,Corner cafe,-4.50\n");
    ImportBridge sheet;
    sheet.setStore(store.get());
    sheet.open(QUrl::fromLocalFile(path));

    EXPECT_EQ(sheet.columnChoices(), (QStringList{"—", "Date", "Column 2", "Amount"}));
    EXPECT_EQ(sheet.choices(), (QVariantList{1, 0, 3, 0, 0, 0}));
    EXPECT_EQ(column(sheet.previewLines(), "payee"), QStringList{"Imported"});

    QSignalSpy preview(&sheet, &ImportBridge::previewChanged);
    sheet.setChoice(ImportBridge::Description, 2);
    EXPECT_EQ(std::tuple(preview.count(), column(sheet.previewLines(), "payee")),
              std::tuple(1, QStringList{"Corner cafe"}));
    sheet.setChoice(ImportBridge::Date, 9); // no such column: ignored
    EXPECT_EQ(sheet.choices().at(ImportBridge::Date).toInt(), 1);
    sheet.setChoice(ImportBridge::Date, 0);
    EXPECT_EQ(sheet.previewTitle(), "Preview · 0 new · 0 already in · 1 unreadable");

    sheet.open(QUrl::fromLocalFile(QStringLiteral(COINHALL_TEST_DATA "/bank/maple_card.csv")));
    sheet.setFlip(true);
    EXPECT_EQ(sheet.previewLines().value(0).toMap().value("amountText").toString(), "+$289.00");

    sheet.setAccount(QString());
    EXPECT_EQ(std::tuple(sheet.hasPreview(), sheet.previewTitle()), std::tuple(false, ""));
    EXPECT_EQ(sheet.importNow(), 0);
    EXPECT_TRUE(store->book().transactions.empty());

    sheet.setAccount(idText(savings.id));
    EXPECT_GT(sheet.importNow(), 0);
    const Transaction &imported = store->book().transactions.front();
    EXPECT_EQ(std::tuple(imported.amount, imported.accountID), std::tuple(d("289"), savings.id));
}

// The user corrects how a table is read; an encoding it is not in says so and keeps
// the file, so that another can be chosen.
TEST_F(Bridges, ImportSheetReadsATableAsTheUserSays)
{
    const QString path = temp.filePath(QStringLiteral("konto.csv"));
    writeAll(path, "Datum;Omschrijving;Bedrag\n02-01-2025;Caf\xE9 M\xFCller;-1.234,56\n");
    ImportBridge sheet;
    sheet.setStore(store.get());
    sheet.open(QUrl::fromLocalFile(path));
    const auto shown = [&] {
        const QVariantMap first = sheet.previewLines().value(0).toMap();
        return std::tuple(sheet.encoding(), sheet.separator(), sheet.decimalComma(),
                          first.value("payee").toString() + u' ' + first.value("amountText").toString(), sheet.message());
    };
    EXPECT_EQ(shown(), std::tuple("Windows-1252", 1, true, "Café Müller -$1,234.56", ""));

    sheet.setEncoding(QStringLiteral("UTF-8"));
    EXPECT_EQ(std::tuple(sheet.readingChangeable(), sheet.hasPreview(), sheet.message()),
              std::tuple(true, false, "Coinhall can't read konto.csv: it is not written in UTF-8."));
    sheet.setEncoding(QStringLiteral("ISO-8859-15"));
    sheet.setDecimalComma(false);
    EXPECT_EQ(shown(), std::tuple("ISO-8859-15", 1, false, "Café Müller -$1.23", ""));
    sheet.setSeparator(0); // one column of whole rows: nothing to read
    EXPECT_EQ(std::tuple(sheet.separator(), sheet.columnChoices().size(), sheet.newCount()), std::tuple(0, 2, 0));
}

TEST_F(Bridges, ABridgeFollowsOnlyTheStoreItHasRefusesAnythingElseAndForgetsOneThatIsGone)
{
    auto other = std::make_unique<Store>(
        StoreOptions{temp.filePath(QStringLiteral("other")), nullptr, std::make_shared<NoNotifier>()});
    DashboardSummary screen;
    QSignalSpy storeChanged(&screen, &DashboardSummary::storeChanged);
    QSignalSpy changed(&screen, &DashboardSummary::changed);
    screen.setStore(store.get());
    line(local(2025, 3, 2, 12), "-5");
    EXPECT_EQ(screen.totalText(), "-$5.00");

    screen.setStore(other.get());
    screen.setStore(other.get()); // the same Store again is no change
    EXPECT_EQ(std::tuple(storeChanged.count(), screen.totalText()), std::tuple(2, "$0.00"));
    changed.clear();
    line(local(2025, 3, 3, 12), "-7");
    EXPECT_EQ(changed.count(), 0) << "the Store it left still reaches it";
    EXPECT_TRUE(
        other->add({.date = local(2025, 3, 3, 12), .accountID = other->book().accounts.at(0).id, .amount = d("12")}));
    EXPECT_EQ(screen.totalText(), "$12.00");

    other.reset();
    EXPECT_EQ(screen.store(), nullptr);
    screen.setStore(store.get()); // followed again as any other
    EXPECT_EQ(screen.totalText(), "-$12.00");

    // Something else than a Store is refused with a warning that names the bridge.
    AccountsBridge accounts;
    TransactionListModel lines;
    accounts.setStore(store.get());
    lines.setStore(store.get());
    QObject stranger;
    warnings.clear();
    qInstallMessageHandler(keepWarning);
    accounts.setStore(&stranger);
    lines.setStore(&stranger);
    qInstallMessageHandler(nullptr);
    EXPECT_EQ(warnings, (QStringList{"AccountsBridge: the store given is not a Store",
                                     "TransactionListModel: the store given is not a Store"}));
    EXPECT_EQ(std::tuple(accounts.store(), accounts.accounts().isEmpty(), lines.store(), lines.count()),
              std::tuple(nullptr, true, nullptr, 0));
}
