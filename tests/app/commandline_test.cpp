#include "apptesting.h"

#include "model/moneyfile.h"
#include "store/store.h"

#include <QDate>
#include <QLocale>
#include <QTimeZone>

namespace {

using namespace ExeTesting;

using Import = AppTest;
using Export = AppTest;
using Report = AppTest;
using Check = AppTest;
using Lock = AppTest;

const QString harbor = QStringLiteral(COINHALL_TEST_DATA "/bank/harbor_checking.csv");

// A card file whose columns the guess gets wrong ("Name" is taken for the payee,
// "Value" for nothing) and whose charges are positive.
const QByteArray cardFile = "Card statement,,,\n"
                            "Date,Card Holder Name,Memo,Value\n"
                            "03/02/2025,J SMITH,\"Joe's \"\"Best\"\" Diner, LLC\",25.10\n"
                            "03/01/2025,J SMITH,PAYMENT RECEIVED,-200.00\n"
                            "03/03/2025,J SMITH,AMAZON MKTPLACE,14.99\n";

TEST_F(Import, DryRunChangesNothing)
{
    // Not even the folder of a new Book is made.
    Outcome run = onBooks({"import", harbor, "--account", "Savings", "--dry-run"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "Preview · 14 new · 1 already in · 2 unreadable\n");
    EXPECT_FALSE(QFileInfo::exists(books()));

    onBooks({"import", harbor, "--account", "Savings"});
    const QStringList before = listing(books());
    const QByteArray bytes = read(books() + "/coinhall.json");
    run = onBooks({"import", harbor, "--account", "Savings", "--dry-run"});
    EXPECT_EQ(run.out, "Preview · 0 new · 15 already in · 2 unreadable\n");
    EXPECT_EQ(listing(books()), before);
    EXPECT_EQ(read(books() + "/coinhall.json"), bytes);
}

TEST_F(Import, RefusesAnUnknownAccountOrAnUnreadableFile)
{
    Outcome run = onBooks({"import", harbor, "--account", "main checking"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "There is no active account named \"main checking\". The active accounts are:\n"
                       "  Main checking\n"
                       "  Savings\n");
    EXPECT_EQ(run.out, "");

    for (const QString &file :
         {path("missing.csv"), write("empty.csv", "\n \n"), write("latin1.csv", "Date,Caf\xe9\n")}) {
        run = onBooks({"import", file, "--account", "Savings"});
        EXPECT_EQ(run.status, 1) << qPrintable(file);
        EXPECT_EQ(run.err, "That file couldn't be read as a bank CSV.\n") << qPrintable(file);
    }
    EXPECT_FALSE(QFileInfo::exists(books()));

    run = onBooks({"import", harbor, "--account", "Savings", "--amount-col", "5"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "--amount-col 5: the file's header has 5 columns, numbered 0 to 4.\nSee coinhall --help.\n");
}

TEST_F(Export, WritesTheColumnsAndFlipOfAnImport)
{
    const QString card = write("card.csv", cardFile);
    EXPECT_EQ(onBooks({"import", card, "--account", "Savings", "--dry-run"}).out,
              "Preview · 0 new · 0 already in · 3 unreadable\n");
    const Outcome imported = onBooks({"import", card, "--account", "Savings", "--flip", "--description-col", "2",
                                      "--amount-col", "3", "--category-col", "none"});
    EXPECT_EQ(imported.out, "Preview · 3 new · 0 already in · 0 unreadable\nImported 3 transactions from card.csv.\n");

    // Categories are guessed from the amounts as the file gives them, before the flip.
    const Outcome run = onBooks({"export", "out.csv"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "Saved out.csv.\n");
    EXPECT_EQ(
        read(path("out.csv")),
        "Date,Account,Payee,Category,Amount,Type,Cleared,Note\n"
        "2025-03-01,\"Savings\",\"PAYMENT RECEIVED\",\"Other spending\",200,deposit,yes,\"Imported\"\n"
        "2025-03-02,\"Savings\",\"Joe's \"\"Best\"\" Diner, LLC\",\"Other income\",-25.1,expense,yes,\"Imported\"\n"
        "2025-03-03,\"Savings\",\"AMAZON MKTPLACE\",\"Shopping\",-14.99,expense,yes,\"Imported\"\n");

    const Outcome journal = onBooks({"export", "out.journal", "--format", "ledger"});
    EXPECT_EQ(journal.out, "Saved out.journal.\n");
    EXPECT_TRUE(read(path("out.journal")).contains("    Expenses:Shopping"));
    EXPECT_EQ(onBooks({"export", "out.xml", "--format", "xml"}).err,
              "--format is csv or ledger, not \"xml\".\nSee coinhall --help.\n");

    const Outcome failed = onBooks({"export", path("no-such-folder/out.csv")});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "Could not save: No such file or directory\n");
}

TEST_F(Report, ShowsTheTilesAndBothCategoryListsAsTextAndTsv)
{
    // Today as the program sees it, in New York, whatever zone the test runs in.
    const QDate today = QDateTime::currentDateTime().toTimeZone(QTimeZone("America/New_York")).date();
    const QByteArray day = today.toString("MM/dd/yyyy").toLatin1();
    const QByteArray lastYear = QByteArray::number(today.year() - 1);
    write("bank.csv", "Date,Description,Amount\n" + day + ",PAYROLL,1500.00\n" + day + ",DISTROKID,500.00\n" + day +
                          ",STARBUCKS 114,-6.45\n" + day + ",RENT,-1200.00\n06/15/" + lastYear + ",SHELL,-40\n");
    ASSERT_EQ(onBooks({"import", "bank.csv", "--account", "Main checking"}).status, 0);
    {
        Store store(StoreOptions{books()});
        Book book = store.book();
        for (Category &category : book.categories)
            if (category.name == "Dining out")
                category.budget = Decimal(5);
        store.setBook(book);
    }

    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QDate first(today.year(), today.month(), 1);
    Outcome run = onBooks({"report"});
    EXPECT_EQ(run.status, 0) << qPrintable(run.err);
    EXPECT_EQ(run.out, "This month · " + us.toString(first, "MMM d, yyyy") + " – " +
                           us.toString(first.addMonths(1).addDays(-1), "MMM d, yyyy") +
                           "\n\n"
                           "Income                     $2,000.00\n"
                           "Spending                   $1,206.45\n"
                           "Net                         +$793.55\n"
                           "Royalties share of income        25%\n\n"
                           "Spending by category\n"
                           "  Rent / mortgage  $1,200.00   99%\n"
                           "  Dining out           $6.45    0%  budget $5.00 (over)\n\n"
                           "Income by category\n"
                           "  Paycheck   $1,500.00   75%\n"
                           "  Royalties    $500.00   25%\n");

    run = onBooks({"report", "--tsv", "--period", "this-month"});
    EXPECT_EQ(run.out, "income\t\t2000\nspending\t\t1206.45\nnet\t\t793.55\nroyalty-share\t\t25\n"
                       "income-by-category\tPaycheck\t1500\nincome-by-category\tRoyalties\t500\n"
                       "spending-by-category\tRent / mortgage\t1200\nspending-by-category\tDining out\t6.45\n");
    run = onBooks({"report", "--period", "last-year", "--tsv"});
    EXPECT_EQ(run.out, "income\t\t0\nspending\t\t40\nnet\t\t-40\nroyalty-share\t\t\n"
                       "spending-by-category\tCar & gas\t40\n");
    EXPECT_EQ(onBooks({"report", "--period", "next-year"}).status, 2);
}

TEST_F(Check, ReadsAGoodAndABrokenFileWithoutChangingThem)
{
    Book book;
    Account account;
    account.name = "Checking";
    book.accounts.push_back(account);
    for (const char *amount : {"-12.5", "40"}) {
        Transaction tx;
        tx.accountID = account.id;
        tx.amount = *Decimal::fromString(std::string_view(amount));
        tx.date = Instant::fromSecs(1735725600);
        book.transactions.push_back(tx);
    }
    QDir().mkpath(books());
    const QByteArray good = MoneyFile::encode(book);
    write("books/coinhall.json", good);
    Outcome run = onBooks({"check"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "OK: 1 accounts, 2 transactions, 0 bills, 0 royalties\n");

    QByteArray broken = good;
    broken.replace("\"expense\"", "\"gift\"");
    write("books/coinhall.json", broken);
    run = onBooks({"check"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "transactions[0].kind: unknown value \"gift\"\n");
    EXPECT_EQ(listing(books()), QStringList{"coinhall.json " + QString::number(broken.size())});

    // A writing command leaves such a file alone instead of setting it aside.
    run = onBooks({"import", harbor, "--account", "Checking"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "The money file " + books() +
                           "/coinhall.json could not be used: transactions[0].kind: "
                           "unknown value \"gift\"\n");
    EXPECT_EQ(read(books() + "/coinhall.json"), broken);

    QFile::remove(books() + "/coinhall.json");
    run = onBooks({"check"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "There is no money file at " + books() + "/coinhall.json.\n");
}

TEST_F(Lock, AWritingCommandRefusesWhileCoinhallHoldsTheFile)
{
    ASSERT_EQ(onBooks({"import", harbor, "--account", "Savings"}).status, 0);
    const QByteArray bytes = read(books() + "/coinhall.json");
    Store window(StoreOptions{books()});
    ASSERT_TRUE(window.writable());

    const Outcome run = onBooks({"import", write("card.csv", cardFile), "--account", "Savings", "--amount-col", "3"});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err, "Coinhall is open with the money file in " + books() +
                           ", so nothing was changed. Close Coinhall and try again.\n");
    EXPECT_EQ(read(books() + "/coinhall.json"), bytes);
    // Reading goes on meanwhile.
    EXPECT_EQ(onBooks({"export", "out.csv"}).out, "Saved out.csv.\n");
    EXPECT_EQ(read(path("out.csv")).count('\n'), 15);
}

} // namespace
