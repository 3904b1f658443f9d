// coinhall backups and coinhall restore as a user runs them: the printed lines and the exit
// codes. What a restore does to the files is the core's (tests/core/store/backups_test.cpp);
// a writing command refused while a window holds the books is processes_test's (the one
// openForWriting every writing command goes through).
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

} // namespace
