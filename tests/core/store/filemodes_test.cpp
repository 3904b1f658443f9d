// The books are readable by their owner only, and stay so after every save and
// backup, even when a loose umask, the user or another tool opened them up.
#include "storetesting.h"

#include <QDate>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <string>

#include <sys/stat.h>

namespace {

// The permission bits in octal ("600"), or "missing".
std::string modeOf(const QString &path)
{
    struct stat st
    {
    };
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return "missing";
    return QString::number(st.st_mode & 0777, 8).toStdString();
}

void setMode(const QString &path, mode_t mode)
{
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0) << qPrintable(path);
}

QString backupName(const QDate &day)
{
    return QStringLiteral("coinhall-%1.json").arg(day.toString(QStringLiteral("yyyy-MM-dd")));
}

// Every test runs with umask 0, so whatever Coinhall does not close stays open to all.
class FileModes : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_temp.isValid());
        m_oldMask = ::umask(0);
    }
    void TearDown() override { ::umask(m_oldMask); }

    QString dir() const { return m_temp.path() + QStringLiteral("/books"); }
    QString file() const { return dir() + QStringLiteral("/coinhall.json"); }
    QString backups() const { return dir() + QStringLiteral("/Backups"); }

    // A readable money file with one account, written as another tool would leave it.
    void writeBooks(mode_t mode)
    {
        ASSERT_TRUE(QDir().mkpath(dir()));
        Book book;
        book.accounts.push_back({newId(), QStringLiteral("Studio"), AccountKind::business, d("100"), false});
        writeAll(file(), MoneyFile::encode(book));
        setMode(file(), mode);
    }

    QTemporaryDir m_temp;
    mode_t m_oldMask = 022;
};

} // namespace

TEST_F(FileModes, EverySaveClosesTheFileAndBothFoldersAgain)
{
    writeBooks(0666);
    Store store({dir()});
    ASSERT_TRUE(store.writable());
    const QString todays = backups() + QLatin1Char('/') + backupName(QDate::currentDate());
    EXPECT_EQ(modeOf(dir()), "700");
    EXPECT_EQ(modeOf(file()), "600");
    EXPECT_EQ(modeOf(dir() + QStringLiteral("/coinhall.lock")), "600");
    EXPECT_EQ(modeOf(backups()), "700");
    EXPECT_EQ(modeOf(todays), "600");
    EXPECT_EQ(readAll(todays), readAll(file()));

    const Account studio = store.book().accounts[0];
    for (int round = 1; round <= 2; ++round) {
        SCOPED_TRACE(round);
        setMode(dir(), 0755);
        setMode(file(), 0644);
        setMode(backups(), 0777);
        EXPECT_TRUE(store.add(line(studio, "2025-03-04T09:00:00Z", "-12.5")));
        EXPECT_TRUE(store.status().isEmpty()) << qPrintable(store.status());
        EXPECT_EQ(modeOf(dir()), "700");
        EXPECT_EQ(modeOf(file()), "600");
        EXPECT_EQ(modeOf(backups()), "700");
        EXPECT_EQ(decodeFile(file()).transactions.size(), size_t(round));
    }
}

TEST_F(FileModes, TheNextStartClosesOldBackupsTheBackupsFolderAndAFileKeptAside)
{
    ASSERT_TRUE(QDir().mkpath(backups()));
    QStringList old;
    for (int daysAgo = 1; daysAgo <= 3; ++daysAgo) {
        old.append(backups() + QLatin1Char('/') + backupName(QDate::currentDate().addDays(-daysAgo)));
        writeAll(old.last(), "{}");
        setMode(old.last(), daysAgo == 1 ? 0666 : 0644);
    }
    setMode(backups(), 0777);
    // A link in the folder points at a file that is not Coinhall's: its mode is left alone.
    const QString outside = m_temp.path() + QStringLiteral("/shared-notes.txt");
    writeAll(outside, "notes");
    setMode(outside, 0644);
    ASSERT_TRUE(QFile::link(outside, backups() + QStringLiteral("/notes-link")));
    writeAll(file(), "this is not a money file");
    setMode(file(), 0644);

    Store store({dir()});
    const QStringList kept = QDir(dir()).entryList({QStringLiteral("coinhall.json.unreadable-*")});
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(store.status(), QStringLiteral("Your money file could not be read. It was kept as %1.").arg(kept[0]));
    EXPECT_EQ(modeOf(dir() + QLatin1Char('/') + kept[0]), "600");
    EXPECT_EQ(readAll(dir() + QLatin1Char('/') + kept[0]), "this is not a money file");
    EXPECT_EQ(modeOf(backups()), "700");
    for (const QString &backup : old)
        EXPECT_EQ(modeOf(backup), "600") << qPrintable(backup);
    EXPECT_EQ(modeOf(outside), "644");

    // The first save after it makes a new money file, owner-only from the start.
    EXPECT_TRUE(store.save(Account{newId(), QStringLiteral("Cash box"), AccountKind::cash, {}, false}));
    EXPECT_EQ(modeOf(file()), "600");
    EXPECT_EQ(decodeFile(file()).accounts.size(), 3u);
}

TEST_F(FileModes, AFileOpenedUpBetweenRunsIsClosedAtTheNextStart)
{
    writeBooks(0600);
    {
        Store first({dir()});
        ASSERT_TRUE(first.writable());
    }
    const QString keptEarlier = dir() + QStringLiteral("/coinhall.json.unreadable-20250101-090000");
    writeAll(keptEarlier, "kept by an earlier run");
    const QStringList loosened = {file(), keptEarlier, backups() + QLatin1Char('/') + backupName(QDate::currentDate())};
    for (const QString &path : loosened)
        setMode(path, 0644);
    setMode(dir(), 0755);

    // Opening changes nothing in the books but their modes: no write is needed for that.
    const QByteArray before = readAll(file());
    Store again({dir()});
    EXPECT_EQ(readAll(file()), before);
    EXPECT_EQ(modeOf(dir()), "700");
    for (const QString &path : loosened)
        EXPECT_EQ(modeOf(path), "600") << qPrintable(path);
}

TEST_F(FileModes, AMoneyFileThatIsALinkIsSavedThroughIt)
{
    // Some keep the books elsewhere and link them in: the link stays, the file it names is written.
    writeBooks(0644);
    const QString elsewhere = m_temp.path() + QStringLiteral("/synced-books.json");
    ASSERT_TRUE(QFile::rename(file(), elsewhere));
    ASSERT_TRUE(QFile::link(elsewhere, file()));

    Store store({dir()});
    EXPECT_EQ(store.book().accounts[0].name, "Studio");
    EXPECT_TRUE(store.add(line(store.book().accounts[0], "2025-03-04T09:00:00Z", "-12.5")));
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    EXPECT_EQ(decodeFile(elsewhere).transactions.size(), 1u);
    EXPECT_EQ(modeOf(elsewhere), "600");
}
