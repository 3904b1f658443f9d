// Kills a process in the middle of its saves, many times, and checks that the
// money file always holds a whole Book and never loses what was saved before.
#include "storetesting.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <gtest/gtest.h>

namespace {

using CrashSafety = FolderTest;

} // namespace

TEST_F(CrashSafety, KilledWhileSavingLeavesAWholeBook)
{
    QRandomGenerator random(20261121);
    size_t seen = 0;
    for (int run = 0; run < 25; ++run) {
        QProcess helper;
        helper.start(QStringLiteral(COINHALL_SAVE_HELPER), {dir});
        ASSERT_TRUE(helper.waitForReadyRead(10000)) << "run " << run;
        QThread::msleep(random.bounded(5, 120));
        helper.kill();
        helper.waitForFinished();

        if (!QFile::exists(file())) {
            // Killed before its first save (a busy machine): nothing was written, nothing lost.
            ASSERT_EQ(seen, 0u) << "run " << run;
            continue;
        }
        const Book book = decodeFile(file());
        ASSERT_GE(book.transactions.size(), seen) << "run " << run;
        seen = book.transactions.size();
        // Newest first and with no line lost in the middle.
        for (size_t i = 1; i < book.transactions.size(); ++i)
            ASSERT_EQ(book.transactions[i - 1].date.secs(), book.transactions[i].date.secs() + 1);
        EXPECT_TRUE(keptAside().isEmpty());
    }
    EXPECT_GT(seen, 0u);
}

TEST_F(CrashSafety, WritesCutShortAreClearedAtTheNextStartAndNothingElse)
{
    const Book book = studioBook();
    const QByteArray whole = MoneyFile::encode(book);
    put("coinhall.json", whole);
    // What a save and a backup leave when the process dies in the middle of them.
    put("coinhall.json.saving", whole.left(whole.size() / 2));
    put("Backups/coinhall-2025-03-01.json.saving", "{\"acc");
    // The user's own files, even with names like those, are not Coinhall's to remove.
    put("coinhall.json.backup", whole);
    put("Backups/notes.saving", "notes");

    Store store({dir});
    EXPECT_EQ(store.status(), "");
    EXPECT_EQ(store.book(), book);
    EXPECT_FALSE(QFile::exists(path("coinhall.json.saving")));
    EXPECT_FALSE(QFile::exists(path("Backups/coinhall-2025-03-01.json.saving")));
    EXPECT_EQ(readAll(path("coinhall.json.backup")), whole);
    EXPECT_EQ(readAll(path("Backups/notes.saving")), "notes");

    // A save goes through its in-progress name and leaves nothing beside the file.
    EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-12.5")));
    EXPECT_EQ(decodeFile(file()).transactions.size(), 1u);
    EXPECT_FALSE(QFile::exists(path("coinhall.json.saving")));
}
