// The journal export, read back by the plain-text accounting tools themselves.
#include "bankfiles/ledgerexport.h"
#include "bankfilestesting.h"
#include "store/reports.h"
#include "store/store.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <map>

namespace {

// Account name to balance, the balance as exact decimal text ("-12.345").
using Balances = std::map<QString, QString>;

// Runs a tool and gives its standard output; fails the test when it does not succeed.
QString run(const QString &program, const QStringList &arguments)
{
    QProcess tool;
    // hledger reads its file in the locale's encoding, and the test's en_US may not be installed.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    tool.setProcessEnvironment(environment);
    tool.start(program, arguments);
    tool.waitForFinished(60000);
    const QString output = QString::fromUtf8(tool.readAllStandardOutput());
    EXPECT_EQ(tool.exitCode(), 0) << program.toStdString() << ": " << tool.readAllStandardError().toStdString();
    return output;
}

// "name<separator>amount USD" lines as account balances; a line of another shape fails the test.
Balances balances(const QString &output, const QString &separator)
{
    Balances out;
    for (QString line : output.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        line.remove(QLatin1Char('"'));
        const qsizetype cut = line.lastIndexOf(separator);
        const std::optional<Decimal> amount =
            line.endsWith(QLatin1String(" USD")) ? Decimal::fromString(line.mid(cut + 1).chopped(4)) : std::nullopt;
        EXPECT_TRUE(cut > 0 && amount) << "unexpected line: " << line.toStdString();
        if (cut > 0 && amount)
            out[line.left(cut)] = amount->toString();
    }
    return out;
}

} // namespace

// A small book with a transfer, a three-place amount, names the journal treats
// specially, an uncleared line and opening balances: ledger (and hledger, where it is
// installed) must find Coinhall's balances, cleared balances and category totals.
TEST(LedgerExport, ToolsReadBackTheBalancesAndCategoryTotals)
{
    const QString ledger = QStandardPaths::findExecutable(QStringLiteral("ledger"));
    if (ledger.isEmpty())
        GTEST_SKIP() << "ledger is not installed (scripts/setup installs it)";

    QTemporaryDir temp;
    Store store{{temp.path()}};
    Book book;
    book.accounts = {{.name = QStringLiteral("Checking"), .opening = d("100.5")},
                     {.name = QStringLiteral(" Rainy;day\tfund: joint "), .kind = AccountKind::savings},
                     {.name = QStringLiteral("Cash"), .kind = AccountKind::cash, .opening = d("-20")}};
    ASSERT_TRUE(store.setBook(book));
    const QUuid checking = book.accounts[0].id, savings = book.accounts[1].id, cash = book.accounts[2].id;
    auto add = [&](const char *iso, const QUuid &account, const char *amount, const char *payee, const char *category,
                   bool cleared) {
        const TxKind kind = d(amount).signum() > 0 ? TxKind::deposit : TxKind::expense;
        ASSERT_TRUE(store.add({newId(),
                               at(iso),
                               account,
                               d(amount),
                               QString::fromUtf8(payee),
                               QString::fromUtf8(category),
                               {},
                               cleared,
                               kind}));
    };
    add("2024-03-01T15:00:00Z", checking, "-12.345", "Corner shop", "Groceries", true);
    add("2024-03-02T15:00:00Z", checking, "300", "Club: Mercury", "Gigs: local\tshows", true);
    add("2024-03-03T15:00:00Z", cash, "-10", "Club  Mercury", "Gigs: local\tshows", true);
    add("2024-03-04T15:00:00Z", cash, "-7.5", "*Odd; payee\nsecond line  ", "Food;  drink ", false);
    add("2024-03-05T15:00:00Z", checking, "-40", "(555) Pizza", "Food;  drink ", false);
    ASSERT_TRUE(store.transfer(checking, savings, d("50.25"), at("2024-03-06T15:00:00Z"), QStringLiteral("Save")));

    const QString file = temp.filePath(QStringLiteral("book.journal"));
    ASSERT_TRUE(store.exportJournal(file));
    EXPECT_EQ(store.status(), QStringLiteral("Saved book.journal."));

    // Coinhall's own figures, named as the journal names them.
    Balances expected, expectedCleared; // all accounts; the asset accounts, cleared lines only
    const auto accountName = [&](const Account &a) {
        return QStringLiteral("Assets:") + LedgerExport::accountSegment(a.name, {});
    };
    Decimal openings;
    for (const Account &a : store.book().accounts) {
        openings += a.opening;
        expected[accountName(a)] = store.balance(a).toString();
        Decimal cleared = a.opening;
        for (const Transaction &t : store.book().transactions)
            if (t.accountID == a.id && t.cleared)
                cleared += t.amount;
        expectedCleared[accountName(a)] = cleared.toString();
    }
    expected[QStringLiteral("Equity:Opening Balances")] = openings.negated().toString();
    const ClosedRange always{Instant::distantPast(), Instant::distantFuture()};
    for (const auto &[category, amount] : Reports::incomeByCategory(store.book(), always))
        expected[QStringLiteral("Income:") + LedgerExport::accountSegment(category, {})] = amount.negated().toString();
    for (const auto &[category, amount] : Reports::spendingByCategory(store.book(), always))
        expected[QStringLiteral("Expenses:") + LedgerExport::accountSegment(category, {})] = amount.toString();
    ASSERT_EQ(expected.size(), 8u); // three accounts, equity, one income and three spending categories
    std::erase_if(expectedCleared, [](const auto &row) { return row.second == QLatin1String("0"); });

    const QStringList bal{"-f",     file,         "bal",
                          "--flat", "--no-total", "--balance-format=%(account)\t%(scrub(display_total))\n"};
    EXPECT_EQ(balances(run(ledger, bal), "\t"), expected);
    EXPECT_EQ(balances(run(ledger, bal + QStringList{"--cleared", "Assets"}), "\t"), expectedCleared);
    // The transfer's two sides are one entry: seven entries with the openings.
    const QString printed = run(ledger, {"-f", file, "print"});
    EXPECT_EQ(printed.count(QRegularExpression(QStringLiteral("^\\d{4}"), QRegularExpression::MultilineOption)), 7);

    const QString hledger = QStandardPaths::findExecutable(QStringLiteral("hledger"));
    if (hledger.isEmpty())
        return;
    const QStringList hbal{"-f", file, "bal", "--flat", "--no-total", "-O", "csv"};
    auto rows = [](const QString &csv) { return csv.section(QLatin1Char('\n'), 1); }; // without the header
    EXPECT_EQ(balances(rows(run(hledger, hbal)), ","), expected);
    EXPECT_EQ(balances(rows(run(hledger, hbal + QStringList{"-C", "Assets"})), ","), expectedCleared);
}
