// The daily backups as the user reaches them: listed with their counts, and one put back.
#include "storetesting.h"

#include "model/money.h"
#include "store/backups.h"

#include <gtest/gtest.h>


namespace {

using BackupFiles = FolderTest;

const QDate march4(2025, 3, 4);

} // namespace

TEST_F(BackupFiles, AreListedNewestFirstWithSizesAndCountsTheUnreadableToo)
{
    const QByteArray two = MoneyFile::encode(studioBook(2));
    put("Backups/coinhall-2025-03-04.json", two);
    put("Backups/coinhall-2025-03-06.json", MoneyFile::encode(studioBook(1)));
    put("Backups/coinhall-2025-03-05.json", "{\"accounts\": [");
    put("Backups/coinhall-2025-03-07.json.saving", two); // a backup a crash cut short
    put("Backups/notes.txt", "mine");

    BackupShelf shelf;
    shelf.refresh(path("Backups"));
    const auto shown = [&] {
        QStringList lines;
        for (const Backup &b : shelf.backups())
            lines << b.day.toString(Qt::ISODate) + ' ' + QString::number(b.bytes) + ' ' + Backups::countText(b);
        return lines;
    };
    ASSERT_TRUE(waitFor([&] { return std::ranges::all_of(shelf.backups(), &Backup::read); }));
    const qint64 one = MoneyFile::encode(studioBook(1)).size();
    EXPECT_EQ(shown(),
              QStringList({"2025-03-06 " + QString::number(one) + " 1 transaction", "2025-03-05 14 cannot be read",
                           "2025-03-04 " + QString::number(two.size()) + " 2 transactions"}));
}

TEST_F(BackupFiles, SizesReadAsPeopleCountThem)
{
    const std::vector<qint64> sizes{1, 999, 1000, 48213, 999499, 999500, 1234567, 104400000};
    QStringList texts;
    for (qint64 size : sizes)
        texts << Backups::sizeText(size);
    EXPECT_EQ(texts, QStringList({"1 byte", "999 bytes", "1 KB", "48 KB", "999 KB", "1.0 MB", "1.2 MB", "104 MB"}));
}

// The books as they were are kept, owner-only, and the money file then holds the backup's Book.
TEST_F(BackupFiles, RestoreKeepsTheBooksAsTheyWereAndPutsTheBackupInPlace)
{
    const QByteArray before = MoneyFile::encode(studioBook(3));
    Book backup = studioBook(1);
    backup.currency = QStringLiteral("EUR");
    put("coinhall.json", before);
    put("Backups/coinhall-2025-03-04.json", MoneyFile::encode(backup));

    Store store({dir});
    EXPECT_TRUE(store.restoreBackup(march4));
    EXPECT_EQ(store.status(), "Restored your books from the backup of Mar 4, 2025.");
    EXPECT_EQ(std::tuple(store.book(), decodeFile(file()), Money::code()), std::tuple(backup, backup, "EUR"));
    const QStringList kept = keptAside(QStringLiteral("before-restore"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(std::tuple(readAll(path(kept[0])), modeOf(path(kept[0]))), std::tuple(before, "600"));
}

// A restore that cannot be made says why and leaves the Book, the money file and the folder as they were.
TEST_F(BackupFiles, ARestoreThatCannotBeMadeChangesNothing)
{
    put("coinhall.json", MoneyFile::encode(studioBook(3)));
    put("Backups/coinhall-2025-03-04.json", MoneyFile::encode(studioBook(1)));
    put("Backups/coinhall-2025-03-05.json", "{}");
    Store store({dir});
    Store second({dir}); // another copy: it cannot take the lock
    const QStringList folder = QDir(dir).entryList(QDir::Files);
    const QByteArray bytes = readAll(file());

    const auto refused = [&](Store &s, const QDate &day) {
        const Book was = s.book();
        const Saved saved = s.restoreBackup(day);
        EXPECT_EQ(std::tuple(saved.changed, s.book(), readAll(file()), QDir(dir).entryList(QDir::Files)),
                  std::tuple(false, was, bytes, folder));
        return s.status();
    };
    EXPECT_EQ(refused(second, march4), "Coinhall is already open with this money file, so no backup was restored.");
    EXPECT_EQ(refused(store, QDate(2025, 3, 6)), "There is no backup of Mar 6, 2025.");
    EXPECT_EQ(refused(store, QDate(2025, 3, 5)),
              "The backup of Mar 5, 2025 cannot be read: missing key \"accounts\". Nothing was changed.");

    // Without the copy of the books as they were, there is no restore.
    const Limit half(RLIMIT_FSIZE, rlim_t(bytes.size() / 2));
    EXPECT_EQ(refused(store, march4),
              "Could not keep your books as they are before restoring: File too large. Nothing was changed.");
}
