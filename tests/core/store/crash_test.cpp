// Kills a process in the middle of its saves, many times, and checks that the
// money file always holds a whole Book and never loses what was saved before.
#include "storetesting.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <gtest/gtest.h>

TEST(CrashSafety, KilledWhileSavingLeavesAWholeBook)
{
    QTemporaryDir temp;
    const QString file = temp.path() + QStringLiteral("/coinhall.json");
    QRandomGenerator random(20261121);
    size_t seen = 0;
    for (int run = 0; run < 25; ++run) {
        QProcess helper;
        helper.start(QStringLiteral(COINHALL_SAVE_HELPER), {temp.path()});
        ASSERT_TRUE(helper.waitForReadyRead(10000)) << "run " << run;
        QThread::msleep(random.bounded(5, 120));
        helper.kill();
        helper.waitForFinished();

        if (!QFile::exists(file)) {
            // Killed before its first save (a busy machine): nothing was written, nothing lost.
            ASSERT_EQ(seen, 0u) << "run " << run;
            continue;
        }
        const Book book = decodeFile(file);
        ASSERT_GE(book.transactions.size(), seen) << "run " << run;
        seen = book.transactions.size();
        // Newest first and with no line lost in the middle.
        for (size_t i = 1; i < book.transactions.size(); ++i)
            ASSERT_EQ(book.transactions[i - 1].date.secs(), book.transactions[i].date.secs() + 1);
        EXPECT_TRUE(QDir(temp.path()).entryList({QStringLiteral("coinhall.json.unreadable-*")}).isEmpty());
    }
    EXPECT_GT(seen, 0u);
}
