// Faults of the disk, the folder, the clock and the money file itself. In every case
// the program goes on, says what happened, and the last good data stays on disk.
#include "storetesting.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <optional>
#include <unistd.h>

namespace {

// The folder refuses new files. Mode bits stop everyone but root; root (as in CI)
// gets the same refusal from a limit of no new open files at all, which it cannot
// pass either. Both fail where a read-only folder fails: creating the temporary file.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(const QString &dir)
        : m_dir(QFile::encodeName(dir))
    {
        if (root)
            m_noFiles.emplace(RLIMIT_NOFILE, 0);
        else
            ::chmod(m_dir.constData(), 0500);
    }
    ~ReadOnlyFolder()
    {
        if (!root)
            ::chmod(m_dir.constData(), 0700);
    }
    static inline const bool root = geteuid() == 0;
    static QString reason() { return root ? "Too many open files" : "Permission denied"; }

private:
    QByteArray m_dir;
    std::optional<Limit> m_noFiles;
};

// What the code under test says on standard error.
QStringList warnings;

class Faults : public FolderTest
{
protected:
    void SetUp() override
    {
        warnings.clear();
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) { warnings << text; });
    }
    void TearDown() override { qInstallMessageHandler(nullptr); }

    // What is in a folder besides the `expected` names: what a failed write left behind.
    static QStringList strays(const QString &folder, const QStringList &expected)
    {
        QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        names.removeIf([&](const QString &n) { return expected.contains(n); });
        return names;
    }
    QStringList strays() const { return strays(dir, {"coinhall.json", "coinhall.lock", "Backups"}); }

    // A day's start that saved the good Book and backed it up, then quit.
    QByteArray startedOnce()
    {
        put("coinhall.json", MoneyFile::encode(good));
        Store({dir});
        return readAll(file());
    }
    Saved addOne(Store &store) { return store.add(line(store.book().accounts[0], "2025-03-05T09:00:00Z", "-3")); }

    const Book good = studioBook(40);
};

} // namespace

// A save or an export the disk or the folder refuses keeps the old file and leaves
// nothing beside it; the next save that goes through writes everything the Book holds.
TEST_F(Faults, WritesRefusedByAFullDiskOrAReadOnlyFolderKeepTheOldFiles)
{
    Store store({dir});
    EXPECT_TRUE(store.setBook(good));
    const QByteArray before = readAll(file());
    put("export.csv", "the export of last week\n");
    {
        const Limit tiny(RLIMIT_FSIZE, 64);
        EXPECT_EQ(addOne(store).error, "Could not save: File too large");
        EXPECT_FALSE(store.exportCSV(path("export.csv")));
        EXPECT_EQ(store.status(), "Could not save: File too large");
    }
    {
        ReadOnlyFolder readOnly(dir);
        EXPECT_EQ(addOne(store).error, "Could not save: " + ReadOnlyFolder::reason());
        EXPECT_FALSE(store.exportCSV(path("export.csv")));
    }
    EXPECT_EQ(store.status(), "Could not save: " + ReadOnlyFolder::reason());
    EXPECT_EQ(std::tuple(readAll(file()), readAll(path("export.csv"))),
              std::tuple(before, "the export of last week\n"));
    EXPECT_EQ(strays(), QStringList{"export.csv"});

    EXPECT_TRUE(addOne(store));
    EXPECT_EQ(store.book().transactions.size(), 43u);
    EXPECT_EQ(decodeFile(file()), store.book());
    EXPECT_TRUE(store.exportCSV(path("export.csv")));
    EXPECT_EQ(readAll(path("export.csv")), store.exportText());
}

// A backup the disk or the folder refuses stops only the backup: the books open as
// they are, the warning says why, and no half copy is left.
TEST_F(Faults, ABackupThatCannotBeMadeStopsOnlyTheBackup)
{
    const QByteArray goodBytes = MoneyFile::encode(good);
    put("coinhall.json", goodBytes);
    QDir().mkpath(path("Backups"));
    {
        const Limit half(RLIMIT_FSIZE, rlim_t(goodBytes.size() / 2));
        Store store({dir});
        EXPECT_EQ(std::tuple(store.book(), store.status()), std::tuple(good, ""));
    }
    EXPECT_EQ(warnings, QStringList{"Coinhall: could not make today's backup: File too large"});
    EXPECT_FALSE(QFile::exists(backup()));
    EXPECT_EQ(strays(path("Backups"), {}), QStringList());
    EXPECT_EQ(readAll(file()), goodBytes);
    // The next start with room on the disk makes the day's backup after all.
    EXPECT_TRUE(Store({dir}).writable());
    EXPECT_EQ(readAll(backup()), goodBytes);

    ASSERT_TRUE(QDir(path("Backups")).removeRecursively());
    put("Backups", "not a folder");
    warnings.clear();
    Store store({dir});
    EXPECT_EQ(std::tuple(store.book(), store.status()), std::tuple(good, ""));
    EXPECT_EQ(warnings,
              QStringList{"Coinhall: could not make today's backup: cannot make the folder " + dir + "/Backups"});
    EXPECT_EQ(std::tuple(readAll(path("Backups")), readAll(file())), std::tuple("not a folder", goodBytes));
    EXPECT_TRUE(addOne(store));
    EXPECT_EQ(decodeFile(file()), store.book());
}

TEST_F(Faults, MoneyFileReplacedByWhatCannotBeRead)
{
    // Which texts the reader refuses, and what it says, is the money file's tests'; an
    // empty file is one the Store reads without mapping it.
    const struct
    {
        const char *what;
        QByteArray bytes;
        const char *error;
    } cases[] = {
        {"garbage", QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), "line 1, column 1: Invalid value."},
        {"an empty file", QByteArray(), "line 1, column 1: The document is empty."},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        QTemporaryDir other;
        dir = other.path();
        const QByteArray goodBytes = startedOnce();
        writeAll(file(), c.bytes);

        Store store({dir});
        EXPECT_EQ(store.loadError(), c.error);
        const QStringList kept = keptAside();
        ASSERT_EQ(kept.size(), 1);
        EXPECT_EQ(store.status(), "Your money file could not be read. It was kept as " + kept[0] + ".");
        const auto earlier = [&] { return std::tuple(readAll(path(kept[0])), readAll(backup())); };
        EXPECT_EQ(earlier(), std::tuple(c.bytes, goodBytes));

        // The first change writes a new file; neither earlier file is touched.
        EXPECT_TRUE(addOne(store));
        EXPECT_EQ(decodeFile(file()).transactions.size(), 1u);
        EXPECT_EQ(earlier(), std::tuple(c.bytes, goodBytes));
    }
}

TEST_F(Faults, MoneyFileReplacedBy200MegabytesIsSetAsideQuickly)
{
    const QByteArray goodBytes = startedOnce();

    // A money file that looks right for 200 MB, then turns to junk, written 1 MB at a time.
    constexpr qint64 size = 200ll << 20;
    const QByteArray lines = MoneyFile::encode(studioBook(3500));
    const qsizetype first = lines.indexOf("\n    {", lines.indexOf("\"transactions\""));
    const QByteArray block = lines.mid(first, lines.lastIndexOf("\n    }") + 6 - first) + ",";
    QCryptographicHash sha(QCryptographicHash::Sha256);
    {
        QFile out(file());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        const auto write = [&](const QByteArray &bytes) {
            sha.addData(bytes);
            out.write(bytes);
        };
        write("{\n  \"accounts\": [],\n  \"bills\": [],\n  \"categories\": [],\n  \"currency\": \"USD\",\n"
              "  \"royalties\": [],\n  \"transactions\": [");
        while (out.pos() + block.size() < size)
            write(block);
        write(block.left(size - out.pos() - 8) + "\x01junk!\xff\n");
        ASSERT_EQ(out.pos(), size);
    }

    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const long peakBeforeKiB = usage.ru_maxrss;
    QElapsedTimer timer;
    timer.start();
    Store store({dir});
    const qint64 ms = timer.elapsed();
    getrusage(RUSAGE_SELF, &usage);
    const long grownKiB = usage.ru_maxrss - peakBeforeKiB;

    EXPECT_EQ(store.loadError(), "line 7393807, column 41: Invalid escape character in string.");
    const QStringList kept = keptAside();
    ASSERT_EQ(kept.size(), 1);
    QFile keptFile(path(kept[0]));
    ASSERT_TRUE(keptFile.open(QIODevice::ReadOnly));
    EXPECT_EQ(keptFile.size(), size);
    QCryptographicHash keptSha(QCryptographicHash::Sha256);
    keptSha.addData(&keptFile);
    EXPECT_EQ(keptSha.result(), sha.result());
    EXPECT_EQ(readAll(backup()), goodBytes);

    // Generous bounds. Measured on the reference machine: 0.5 to 2.7 s plain, 2.9
    // to 4.4 s with the sanitizers, and 1.7 times the file's size in memory either way.
    EXPECT_LT(ms, 30000);
    EXPECT_LT(grownKiB, 3 * (size >> 10)) << grownKiB << " KiB";
    std::fprintf(stderr, "200 MB file: set aside in %lld ms, peak memory grew by %ld MiB\n", ms, grownKiB >> 10);
}

TEST_F(Faults, SixtyDigitAmountsAreRoundedTo38DigitsSaidAndKeptAsTheyWere)
{
    Book book = good;
    book.transactions.resize(2);
    QByteArray bytes = MoneyFile::encode(book);
    bytes.replace("\"amount\": -12.5,", "\"amount\": 123456789012345678901234567890123456789012345678901234567890,");
    bytes.replace("\"opening\": 100", "\"opening\": 0.123456789012345678901234567890123456789012345678901234567891");
    put("coinhall.json", bytes);
    // Today's backup was made before the file was changed, so it cannot be the keeper.
    put("Backups/" + backupName(), "earlier today");

    Store store({dir});
    EXPECT_EQ(std::tuple(store.loadError(), store.book().accounts[0].opening.toStdString()),
              std::tuple("", "0.12345678901234567890123456789012345679"));
    EXPECT_EQ(store.book().transactions[0].amount.toStdString(),
              "123456789012345678901234567890123456790000000000000000000000");
    const QStringList kept = keptAside(QStringLiteral("unrounded"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(store.status(), "3 amounts in your money file had more than 38 digits and were rounded. "
                              "The file as it was is kept as " +
                                  kept[0] + ".");
    EXPECT_EQ(warnings, QStringList{"Coinhall: " + store.status() + " (the first: accounts[0].opening)"});
    EXPECT_EQ(modeOf(path(kept[0])), "600");

    // The first save writes the rounded amounts; the copy keeps every digit.
    EXPECT_TRUE(addOne(store));
    EXPECT_TRUE(readAll(file()).contains("\"amount\": 123456789012345678901234567890123456790000000000000000000000,"));
    EXPECT_EQ(readAll(path(kept[0])), bytes);
    EXPECT_EQ(readAll(backup()), "earlier today");
}

// Backups are named by the computer's date, which the test cannot move; backups
// named for the coming days are what a clock set back a day finds. The thirty newest
// names are kept, whatever the clock says.
TEST_F(Faults, ClockBackADayAmongThirtyLaterBackupsDropsOnlyTodaysCopy)
{
    const QByteArray goodBytes = MoneyFile::encode(good);
    put("coinhall.json", goodBytes);
    for (int day = 1; day <= 30; ++day)
        put("Backups/" + backupName(day), QByteArray::number(day));

    EXPECT_EQ(Store({dir}).book(), good);
    // Today's copy sorts before the thirty later names, so the pruning that keeps the
    // thirty newest names removes it at once; every later one stays as it was.
    EXPECT_FALSE(QFile::exists(backup()));
    for (int day = 1; day <= 30; ++day)
        EXPECT_EQ(readAll(backup(day)), QByteArray::number(day));
    EXPECT_EQ(readAll(file()), goodBytes);

    // With fewer later names, today's copy stays.
    QFile::remove(backup(30));
    Store again({dir});
    EXPECT_EQ(readAll(backup()), goodBytes);
}

TEST_F(Faults, ClockBackToAnEarlierSetAsideStampLosesNeitherFile)
{
    // Earlier starts set unreadable files aside with the stamps the clock now shows again.
    const QDateTime start = QDateTime::currentDateTime();
    for (int s = 0; s < 5; ++s)
        put("coinhall.json.unreadable-" + start.addSecs(s).toString(QStringLiteral("yyyyMMdd-HHmmss")),
            "an earlier unreadable file");
    writeAll(file(), "{\"version\": 1,");

    Store store({dir});
    EXPECT_EQ(store.status(),
              "Your money file could not be read, and it could not be set aside, so nothing will be saved.");
    EXPECT_FALSE(store.writable() || addOne(store));
    EXPECT_EQ(readAll(file()), "{\"version\": 1,");
    for (const QString &name : keptAside())
        EXPECT_EQ(readAll(path(name)), "an earlier unreadable file");
}

// An undo is saved at once; when the disk refuses it, the Book stays as the file has
// it and the step can be undone later.
TEST_F(Faults, AnUndoTheDiskRefusesLeavesTheBookAndTheFileAsTheyWere)
{
    Store store({dir});
    EXPECT_TRUE(store.setBook(good));
    ASSERT_TRUE(addOne(store));
    const QByteArray before = readAll(file());
    {
        const Limit half(RLIMIT_FSIZE, rlim_t(before.size() / 2));
        EXPECT_FALSE(store.undo());
    }
    EXPECT_EQ(store.status(), "Could not save: File too large");
    EXPECT_EQ(readAll(file()), before);
    EXPECT_EQ(MoneyFile::encode(store.book()), before);
    EXPECT_EQ(strays(), QStringList());
    ASSERT_TRUE(store.undo());
    EXPECT_EQ(store.book(), good);
}
