// The books are readable by their owner only, and stay so after every save and
// backup, even when a loose umask, the user or another tool opened them up.
#include "storetesting.h"

#include <gtest/gtest.h>

namespace {

void setMode(const QString &path, mode_t mode)
{
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0) << qPrintable(path);
}

// Every test runs with umask 0, so whatever Coinhall does not close stays open to all.
class FileModes : public FolderTest
{
protected:
    void SetUp() override { m_oldMask = ::umask(0); }
    void TearDown() override { ::umask(m_oldMask); }

    // A readable money file with one account, written as another tool would leave it.
    void writeBooks(mode_t mode)
    {
        put("coinhall.json", MoneyFile::encode(studioBook()));
        setMode(file(), mode);
    }

    mode_t m_oldMask = 022;
};

} // namespace

TEST_F(FileModes, TheStartAndEverySaveCloseTheFileAndBothFoldersAgain)
{
    writeBooks(0666);
    const QString keptEarlier = path("coinhall.json.unreadable-20250101-090000");
    put("coinhall.json.unreadable-20250101-090000", "kept by an earlier run");
    setMode(keptEarlier, 0644);
    setMode(dir, 0755);
    const QByteArray before = readAll(file());

    Store store({dir});
    ASSERT_TRUE(store.writable());
    // Opening changes nothing in the books but their modes: no write is needed for that.
    EXPECT_EQ(readAll(file()), before);
    const QString backups = path("Backups");
    for (const QString &folder : {dir, backups})
        EXPECT_EQ(modeOf(folder), "700") << qPrintable(folder);
    for (const QString &name : {file(), path("coinhall.lock"), backup(), keptEarlier})
        EXPECT_EQ(modeOf(name), "600") << qPrintable(name);

    for (int round = 1; round <= 2; ++round) {
        SCOPED_TRACE(round);
        setMode(dir, 0755);
        setMode(file(), 0644);
        setMode(backups, 0777);
        EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-12.5")));
        EXPECT_EQ(std::tuple(store.status(), modeOf(dir), modeOf(file()), modeOf(backups)),
                  std::tuple("", "700", "600", "700"));
        EXPECT_EQ(decodeFile(file()).transactions.size(), size_t(round));
    }
}

TEST_F(FileModes, TheNextStartClosesOldBackupsTheBackupsFolderAndAFileKeptAside)
{
    QStringList old;
    for (int daysAgo = 1; daysAgo <= 3; ++daysAgo) {
        put("Backups/" + backupName(-daysAgo), "{}");
        old.append(backup(-daysAgo));
        setMode(old.last(), daysAgo == 1 ? 0666 : 0644);
    }
    setMode(path("Backups"), 0777);
    // A link in the folder points at a file that is not Coinhall's: its mode is left alone.
    const QString outside = temp.path() + QStringLiteral("/shared-notes.txt");
    writeAll(outside, "notes");
    setMode(outside, 0644);
    ASSERT_TRUE(QFile::link(outside, path("Backups/notes-link")));
    writeAll(file(), "this is not a money file");
    setMode(file(), 0644);

    Store store({dir});
    const QStringList kept = keptAside();
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(modeOf(path(kept[0])), "600");
    EXPECT_EQ(modeOf(path("Backups")), "700");
    for (const QString &backup : old)
        EXPECT_EQ(modeOf(backup), "600") << qPrintable(backup);
    EXPECT_EQ(modeOf(outside), "644");

    // The first save after it makes a new money file, owner-only from the start.
    EXPECT_TRUE(store.save(Account{.name = QStringLiteral("Cash box")}));
    EXPECT_EQ(modeOf(file()), "600");
    EXPECT_EQ(decodeFile(file()).accounts.size(), 3u);
}

TEST_F(FileModes, AMoneyFileThatIsALinkIsSavedThroughIt)
{
    // Some keep the books elsewhere and link them in: the link stays, the file it names is written.
    writeBooks(0644);
    const QString elsewhere = temp.path() + QStringLiteral("/synced-books.json");
    ASSERT_TRUE(QFile::rename(file(), elsewhere));
    ASSERT_TRUE(QFile::link(elsewhere, file()));

    Store store({dir});
    EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-12.5")));
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    const Book saved = decodeFile(elsewhere); // read through the link, and written back there
    EXPECT_EQ(std::tuple(saved.accounts.at(0).name, saved.transactions.size(), modeOf(elsewhere)),
              std::tuple("Studio", 1u, "600"));
}
