// The coinhall executable's commands, run as a user runs them. What they compute is the
// core's (tests/core); here: the options, the printed texts, the exit codes and the
// files left alone. Refusal while a window holds the books: processes_test.cpp.
#include "apptesting.h"

#include "store/store.h"

#include <QDate>
#include <QLocale>
#include <QTimeZone>

namespace {

using namespace ExeTesting;

using CommandLine = AppTest;

const QString harbor = QStringLiteral(COINHALL_TEST_DATA "/bank/harbor_checking.csv");

TEST_F(CommandLine, ImportPreviewsAndRefusesWithoutWritingAndCheckReadsGoodAndBrokenBooks)
{
    Outcome run = onBooks({"import", harbor, "--account", "Savings", "--dry-run"});
    EXPECT_EQ(std::tuple(run.status, run.out), std::tuple(0, "Preview · 15 new · 0 already in · 2 unreadable\n"));

    auto refused = [&](const QStringList &arguments, int status, const QString &err) {
        EXPECT_EQ(onBooks(QStringList{"import"} + arguments).all(), std::tuple(status, "", err))
            << qPrintable(arguments.join(' '));
    };
    refused(
        {harbor, "--account", "main checking"}, 2,
        "There is no active account named \"main checking\". The active accounts are:\n  Main checking\n  Savings\n");
    refused({harbor, "--account", "Savings", "--amount-col", "5"}, 2,
            "--amount-col 5: the file's header has 5 columns, numbered 0 to 4.\nSee coinhall --help.\n");
    // No bank download: said in plain words, and nothing changes.
    for (const auto &[file, why] : {std::pair{path("missing.csv"), "it could not be opened (No such file or directory)"},
                                    {write("empty.csv", "\n \n"), "the file is empty"},
                                    {write("scan.pdf", "%PDF-1.7\n"), "it is a PDF document, not a bank download "
                                                                       "(ask the bank for CSV, OFX or QIF)"}})
        refused({file, "--account", "Savings"}, 1,
                "Coinhall can't read " + QFileInfo(file).fileName() + ": " + why + ".\n");
    EXPECT_FALSE(QFileInfo::exists(books())) << "not even the folder of a new Book is made";

    ASSERT_EQ(onBooks({"import", harbor, "--account", "Savings"}).status, 0);
    const QStringList before = listing(books());
    const QByteArray bytes = readAll(books() + "/coinhall.json");
    EXPECT_EQ(onBooks({"import", harbor, "--account", "Savings", "--dry-run"}).out,
              "Preview · 0 new · 15 already in · 2 unreadable\n");
    EXPECT_EQ(std::tuple(listing(books()), readAll(books() + "/coinhall.json")), std::tuple(before, bytes));

    run = onBooks({"check"});
    EXPECT_EQ(std::tuple(run.status, run.out),
              std::tuple(0, "OK: 2 accounts, 15 transactions, 0 bills, 0 royalties\n"));
    const QByteArray broken = QByteArray(bytes).replace("\"deposit\"", "\"gift\"");
    write("books/coinhall.json", broken);
    const QStringList brokenBooks = listing(books());
    run = onBooks({"check"});
    EXPECT_EQ(std::tuple(run.status, run.out), std::tuple(1, "transactions[0].kind: unknown value \"gift\"\n"));
    // A writing command leaves such a file alone instead of setting it aside.
    run = onBooks({"import", harbor, "--account", "Savings"});
    EXPECT_EQ(std::tuple(run.status, run.err),
              std::tuple(1, "The money file " + books() +
                                "/coinhall.json could not be used: transactions[0].kind: unknown value \"gift\"\n"));
    EXPECT_EQ(std::tuple(listing(books()), readAll(books() + "/coinhall.json")), std::tuple(brokenBooks, broken));

    QFile::remove(books() + "/coinhall.json");
    run = onBooks({"check"});
    EXPECT_EQ(std::tuple(run.status, run.err),
              std::tuple(1, "There is no money file at " + books() + "/coinhall.json.\n"));
}

TEST_F(CommandLine, ImportTakesTheColumnsAndFlipItIsGivenAndExportWritesThem)
{
    // A card file whose columns the guess gets wrong and whose charges are positive.
    const QString card = write("card.csv", "Card statement,,,\n"
                                           "Date,Card Holder Name,Memo,Value\n"
                                           "03/02/2025,J SMITH,\"Joe's \"\"Best\"\" Diner, LLC\",25.10\n"
                                           "03/01/2025,J SMITH,PAYMENT RECEIVED,-200.00\n");
    EXPECT_EQ(onBooks({"import", card, "--account", "Savings", "--flip", "--description-col", "2", "--amount-col", "3",
                       "--category-col", "none"})
                  .out,
              "Preview · 2 new · 0 already in · 0 unreadable\nImported 2 transactions from card.csv.\n");

    const Outcome run = onBooks({"export", "out.csv"});
    EXPECT_EQ(std::tuple(run.status, run.out), std::tuple(0, "Saved out.csv.\n"));
    EXPECT_EQ(
        readAll(path("out.csv")),
        "Date,Account,Payee,Category,Amount,Type,Cleared,Note\n"
        "2025-03-01,\"Savings\",\"PAYMENT RECEIVED\",\"Other spending\",200,deposit,yes,\"Imported\"\n"
        "2025-03-02,\"Savings\",\"Joe's \"\"Best\"\" Diner, LLC\",\"Other income\",-25.1,expense,yes,\"Imported\"\n");

    EXPECT_EQ(onBooks({"export", "out.journal", "--format", "ledger"}).out, "Saved out.journal.\n");
    EXPECT_TRUE(readAll(path("out.journal")).contains("    Expenses:Other income"));
    EXPECT_EQ(onBooks({"export", "out.xml", "--format", "xml"}).err,
              "--format is csv or ledger, not \"xml\".\nSee coinhall --help.\n");
    const Outcome failed = onBooks({"export", path("no-such-folder/out.csv")});
    EXPECT_EQ(std::tuple(failed.status, failed.err), std::tuple(1, "Could not save: No such file or directory\n"));
}

TEST_F(CommandLine, ReportShowsTheTilesAndBothCategoryListsAsTextAndTsv)
{
    // Today as the program sees it, in New York, whatever zone the test runs in.
    const QDate today = QDateTime::currentDateTime().toTimeZone(QTimeZone("America/New_York")).date();
    const QByteArray day = today.toString("MM/dd/yyyy").toLatin1();
    write("bank.csv", "Date,Description,Amount\n" + day + ",DISTROKID,500.00\n" + day + ",STARBUCKS,-6.45\n" + day +
                          ",RENT,-1200\n");
    ASSERT_EQ(onBooks({"import", "bank.csv", "--account", "Main checking"}).status, 0);
    {
        Store store(StoreOptions{books()});
        Book book = store.book();
        for (Category &category : book.categories)
            if (category.name == "Dining out")
                category.budget = Decimal(5);
        ASSERT_TRUE(store.setBook(book));
    }

    const QLocale us(QLocale::English, QLocale::UnitedStates);
    const QDate first(today.year(), today.month(), 1);
    Outcome run = onBooks({"report"});
    EXPECT_EQ(run.status, 0) << qPrintable(run.err);
    EXPECT_EQ(run.out, "This month · " + us.toString(first, "MMM d, yyyy") + " – " +
                           us.toString(first.addMonths(1).addDays(-1), "MMM d, yyyy") +
                           "\n\n"
                           "Income                       $500.00\n"
                           "Spending                   $1,206.45\n"
                           "Net                         -$706.45\n"
                           "Royalties share of income       100%\n\n"
                           "Spending by category\n"
                           "  Rent / mortgage  $1,200.00   99%\n"
                           "  Dining out           $6.45    0%  budget $5.00 (over)\n\n"
                           "Income by category\n"
                           "  Royalties  $500.00  100%\n");

    EXPECT_EQ(onBooks({"report", "--tsv", "--period", "this-month"}).out,
              "income\t\t500\nspending\t\t1206.45\nnet\t\t-706.45\nroyalty-share\t\t100\n"
              "income-by-category\tRoyalties\t500\n"
              "spending-by-category\tRent / mortgage\t1200\nspending-by-category\tDining out\t6.45\n");
    // No income: no share.
    EXPECT_EQ(onBooks({"report", "--period", "last-year", "--tsv"}).out,
              "income\t\t0\nspending\t\t0\nnet\t\t0\nroyalty-share\t\t\n");
    run = onBooks({"report", "--period", "next-year"});
    EXPECT_EQ(std::tuple(run.status, run.err.startsWith("Unknown period \"next-year\"")), std::tuple(2, true))
        << qPrintable(run.err);
}

TEST_F(CommandLine, ReportWritesTheYearAsPdfAndCsvThatReadBackAndRefusesOtherYears)
{
    {
        Store store(StoreOptions{books()});
        Book book = store.book();
        const QUuid account = book.accounts[0].id;
        auto add = [&](Instant date, const char *amount, const QString &payee, const char *category, bool cleared) {
            book.transactions.push_back({.date = date,
                                         .accountID = account,
                                         .amount = d(amount),
                                         .payee = payee,
                                         .category = category,
                                         .cleared = cleared,
                                         .kind = d(amount).isNegative() ? TxKind::expense : TxKind::deposit});
        };
        add(local(2025, 3, 4, 9), "1200.50", "DistroKid", "Royalties", true);
        add(local(2025, 6, 1, 9), "800", "Blue Note", "Gigs & bookings", true);
        add(local(2025, 4, 15, 9), "-300", "Tax office", "Taxes", true);
        add(local(2024, 12, 31, 23, 59, 59), "-99", "Last year", "Rent", true);
        // More lines not cleared than one page holds.
        for (int i = 0; i < 70; ++i)
            add(local(2025, 7, 1, 9).addSecs(i * 86400), "-1.25", QStringLiteral("Corner shop %1").arg(i), "Groceries",
                false);
        ASSERT_TRUE(store.setBook(book));
        ASSERT_TRUE(store.transfer(book.accounts[0].id, book.accounts[1].id, d("500"), local(2025, 5, 2), {}));
    }

    Outcome run = onBooks({"report", "--year", "2025", "--pdf", "year.pdf", "--csv", "year.csv"});
    EXPECT_EQ(std::tuple(run.status, run.out), std::tuple(0, "Saved year.pdf.\nSaved year.csv.\n"))
        << qPrintable(run.err);
    QProcess pdftotext;
    pdftotext.start("pdftotext", {"-layout", path("year.pdf"), "-"});
    ASSERT_TRUE(pdftotext.waitForFinished(30000) && pdftotext.exitCode() == 0) << "pdftotext (poppler-utils) is needed";
    const QString text = QString::fromUtf8(pdftotext.readAllStandardOutput());
    const QStringList pages = text.split('\f', Qt::SkipEmptyParts);
    ASSERT_GE(pages.size(), 2) << qPrintable(text);
    for (const char *shown : {"Year's report 2025", "$2,000.50", "$387.50", "+$1,613.00", "Paid to the tax office",
                              "$300.00", "2 lines, $500.00 in, $500.00 out", "DistroKid", "Blue Note", "$87.50",
                              "Not yet cleared", "Corner shop 0", "-$1.25"})
        EXPECT_TRUE(pages[0].contains(shown)) << shown << "\n" << qPrintable(pages[0]);
    // The list runs on under a header of its own; last year's line is not there.
    EXPECT_TRUE(pages[1].contains("Year's report 2025 · continued") && pages[1].contains("Not yet cleared (continued)"))
        << qPrintable(pages[1]);
    EXPECT_TRUE(text.contains("Corner shop 69") && !text.contains("Last year") && !text.contains("$99"));
    EXPECT_TRUE(readAll(path("year.csv")).startsWith("Section,Date,Name,Amount\nTotal,2025,Income,2000.5\n"));

    run = onBooks({"report", "--year", "2019", "--pdf", "old.pdf"});
    EXPECT_EQ(std::tuple(run.status, run.err.contains("No lines in \"2019\": the years with lines are 2025, 2024.")),
              std::tuple(2, true))
        << qPrintable(run.err);
    run = onBooks({"report", "--year", "2025", "--pdf", path("missing/year.pdf")});
    EXPECT_EQ(std::tuple(run.status, run.err.contains("Could not save " + path("missing/year.pdf"))),
              std::tuple(1, true))
        << qPrintable(run.err);
    EXPECT_FALSE(QFile::exists(path("old.pdf")));
}

} // namespace
