// coinhall backups and coinhall restore as a user runs them: the printed lines, the exit
// codes, and a restore refused while a window holds the books. What a restore does to
// the files is the core's (tests/core/store/backups_test.cpp).
#include "apptesting.h"

#include "model/moneyfile.h"

namespace {

using namespace ExeTesting;

using BackupCommands = AppTest;

Book oneLineBook()
{
    Book book;
    book.accounts = {{.name = "Main checking"}};
    book.transactions = {{.date = Instant::fromSecs(1741089600),
                          .accountID = book.accounts[0].id,
                          .amount = Decimal(-12),
                          .payee = "Corner shop",
                          .category = "Groceries"}};
    return book;
}

TEST_F(BackupCommands, ListNewestFirstAndRestoreOne)
{
    EXPECT_EQ(onBooks({"backups"}).all(), std::tuple(0, "There are no backups in " + books() + "/Backups.\n", ""));

    const QByteArray backup = MoneyFile::encode(oneLineBook());
    ASSERT_TRUE(QDir().mkpath(books() + "/Backups"));
    write("books/Backups/coinhall-2025-03-04.json", backup);
    write("books/Backups/coinhall-2025-03-05.json", "{");
    EXPECT_EQ(onBooks({"backups"}).all(),
              std::tuple(0, "2025-03-05  1 byte  cannot be read\n2025-03-04    2 KB  1 transaction\n", ""));

    EXPECT_EQ(onBooks({"restore", "2025-03-06"}).all(),
              std::tuple(2, "", "There is no backup of 2025-03-06. coinhall backups lists them.\n"));
    EXPECT_EQ(onBooks({"restore", "2025-03-04"}).all(),
              std::tuple(0, "Restored your books from the backup of Mar 4, 2025.\n", ""));
    const auto decoded = [](const QByteArray &bytes) { return MoneyFile::decode(bytes.toStdString()).book; };
    EXPECT_EQ(decoded(readAll(books() + "/coinhall.json")), decoded(backup));
}

TEST_F(BackupCommands, RestoreIsRefusedWhileAWindowHoldsTheBooks)
{
    ASSERT_TRUE(QDir().mkpath(books() + "/Backups"));
    write("books/Backups/coinhall-2025-03-04.json", MoneyFile::encode(oneLineBook()));
    write("books/coinhall.json", MoneyFile::encode(Book{}));
    QProcess window;
    QProcessEnvironment env = m_env;
    env.insert("HOME", path("home"));
    env.insert("QT_QPA_PLATFORM", "offscreen");
    window.setProcessEnvironment(env);
    window.start(COINHALL_WINDOW_HELPER, {books(), "watch"});
    ASSERT_TRUE(waitFor([&] { return window.canReadLine() || window.state() == QProcess::NotRunning; }, 20000));
    ASSERT_EQ(window.readLine(), "ready minimized=1\n");
    const QStringList before = listing(books()) << readAll(books() + "/coinhall.json");

    EXPECT_EQ(onBooks({"restore", "2025-03-04"}).all(),
              std::tuple(3, "",
                         "Coinhall is open with the money file in " + books() +
                             ", so nothing was changed. Close Coinhall and try again.\n"));
    EXPECT_EQ(listing(books()) << readAll(books() + "/coinhall.json"), before);
    window.kill();
    window.waitForFinished();
}

} // namespace
