// The journal export, read back by the plain-text accounting tools themselves.
#include "bankfiles/ledgerexport.h"
#include "bankfilestesting.h"
#include "core/store/storetesting.h"

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
    const Account &checking = book.accounts[0], &savings = book.accounts[1], &cash = book.accounts[2];
    auto add = [&](const Account &account, const char *iso, const char *amount, const char *payee, const char *category,
                   bool cleared) {
        Transaction t = line(account, iso, amount, payee, d(amount).signum() > 0 ? TxKind::deposit : TxKind::expense);
        t.category = QString::fromUtf8(category);
        t.cleared = cleared;
        ASSERT_TRUE(store.add(t));
    };
    add(checking, "2024-03-01T15:00:00Z", "-12.345", "Corner shop", "Groceries", true);
    add(checking, "2024-03-02T15:00:00Z", "300", "Club: Mercury", "Gigs: local\tshows", true);
    add(cash, "2024-03-03T15:00:00Z", "-10", "Club  Mercury", "Gigs: local\tshows", true);
    add(cash, "2024-03-04T15:00:00Z", "-7.5", "*Odd; payee\nsecond line  ", "Food;  drink ", false);
    add(checking, "2024-03-05T15:00:00Z", "-40", "(555) Pizza", "Food;  drink ", false);
    ASSERT_TRUE(
        store.transfer(checking.id, savings.id, d("50.25"), at("2024-03-06T15:00:00Z"), QStringLiteral("Save")));

    const QString file = temp.filePath(QStringLiteral("book.journal"));
    ASSERT_TRUE(store.exportJournal(file));
    EXPECT_EQ(store.status(), QStringLiteral("Saved book.journal."));

    // Coinhall's balances and category totals, under the names the journal gives them
    // (a colon becomes a ratio sign, a semicolon a comma, blanks one space); then the
    // asset accounts from cleared lines only.
    const Balances expected{{"Assets:Cash", "-37.5"},
                            {"Assets:Checking", "297.905"},
                            {"Assets:Rainy,day fund\u2236 joint", "50.25"},
                            {"Equity:Opening Balances", "-80.5"},
                            {"Expenses:Food, drink", "47.5"},
                            {"Expenses:Gigs\u2236 local shows", "10"},
                            {"Expenses:Groceries", "12.345"},
                            {"Income:Gigs\u2236 local shows", "-300"}};
    const Balances expectedCleared{
        {"Assets:Cash", "-30"}, {"Assets:Checking", "337.905"}, {"Assets:Rainy,day fund\u2236 joint", "50.25"}};

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
