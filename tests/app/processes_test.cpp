// Window processes and the command line on one money file: a second start raises
// the first, two processes never both write, and kill -9 at any moment leaves a
// money file that decodes and holds every change that was saved.
#include "apptesting.h"

#include "model/moneyfile.h"
#include "store/store.h"

#include <QDate>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <deque>
#include <map>
#include <memory>

#include <unistd.h>

namespace {

using namespace ExeTesting;

// Nothing here may hang: every wait gives up after this long (sanitizer builds are slow).
constexpr int giveUpMs = 20000;

const QString harbor = QStringLiteral(COINHALL_TEST_DATA "/bank/harbor_checking.csv");
const QString heldMessage =
    QStringLiteral("Coinhall is already open with this money file, so changes made here are not saved.");

// A started process and all it has printed so far.
struct Running
{
    std::unique_ptr<QProcess> process = std::make_unique<QProcess>();
    QByteArray out;
    QByteArray err;

    void collect()
    {
        out += process->readAllStandardOutput();
        err += process->readAllStandardError();
    }

    // Waits until `text` shows on standard output (or error); false when the
    // process ended first or time ran out.
    bool waitFor(const QByteArray &text, bool onStderr = false)
    {
        QElapsedTimer clock;
        clock.start();
        for (;;) {
            collect();
            if ((onStderr ? err : out).contains(text))
                return true;
            if (process->state() == QProcess::NotRunning || clock.elapsed() > giveUpMs)
                return false;
            process->waitForReadyRead(20);
        }
    }

    // Waits for the end; false (and the process killed) when it does not come.
    bool finish()
    {
        const bool ended = process->waitForFinished(giveUpMs);
        if (!ended)
            killHard();
        collect();
        return ended && process->exitStatus() == QProcess::NormalExit;
    }

    // SIGKILL, then reaped, so its lock is a dead process's.
    void killHard()
    {
        process->kill();
        process->waitForFinished(giveUpMs);
        collect();
    }
};

class WindowProcesses : public AppTest
{
protected:
    void SetUp() override
    {
        AppTest::SetUp();
        ASSERT_TRUE(QDir().mkpath(path(QStringLiteral("home"))));
        m_env.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
        m_env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_env.remove(QStringLiteral("COINHALL_FIRST_FRAME"));
    }

    void TearDown() override
    {
        for (Running &running : m_running) {
            if (running.process->state() != QProcess::NotRunning)
                running.killHard();
        }
    }

    // Starts `program` in the private root; `extra` is added to the environment.
    Running &launch(const QString &program, const QStringList &arguments, const std::map<QString, QString> &extra = {})
    {
        Running &running = m_running.emplace_back();
        QProcessEnvironment env = m_env;
        for (const auto &[name, value] : extra)
            env.insert(name, value);
        running.process->setProcessEnvironment(env);
        running.process->setWorkingDirectory(m_root.path());
        running.process->start(program, arguments);
        return running;
    }

    // The real program's window on the test's books.
    Running &window(const std::map<QString, QString> &extra = {})
    {
        return launch(QStringLiteral(COINHALL_EXE), {QStringLiteral("--data-dir"), books()}, extra);
    }

    // The same window start-up, followed by the helper's `mode` (tests/helpers/windowhelper.cpp).
    Running &helper(const QStringList &mode, const std::map<QString, QString> &extra = {})
    {
        return launch(QStringLiteral(COINHALL_WINDOW_HELPER), QStringList{books()} + mode, extra);
    }

    // A second private temporary folder: a start there does not find the first copy.
    std::map<QString, QString> otherTemp()
    {
        EXPECT_TRUE(QDir().mkpath(path(QStringLiteral("tmp2"))));
        return {{QStringLiteral("TMPDIR"), path(QStringLiteral("tmp2"))}};
    }

    QString moneyFile() const { return books() + QStringLiteral("/coinhall.json"); }
    QString todaysBackup() const
    {
        return books() + QStringLiteral("/Backups/coinhall-") +
               QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")) + QStringLiteral(".json");
    }

    // Books with two accounts, a monthly bill "Rent", a line "Edited" and `filler` more lines.
    void writeBooks(int filler)
    {
        Book book;
        book.accounts.push_back({newId(), QStringLiteral("Main checking"), AccountKind::checking, {}, false});
        book.accounts.push_back({newId(), QStringLiteral("Savings"), AccountKind::savings, {}, false});
        Bill rent;
        rent.name = QStringLiteral("Rent");
        rent.amount = Decimal(1200);
        rent.due = Instant::fromSecs(QDateTime::currentSecsSinceEpoch() + 10 * 86400);
        rent.accountID = book.accounts[0].id;
        book.bills.push_back(rent);
        for (int i = 0; i <= filler; ++i) {
            Transaction t;
            t.date = Instant::fromSecs(1600000000 - i * 3600);
            t.accountID = book.accounts[i % 2].id;
            t.amount = Decimal(-(i % 500) - 1);
            t.payee = i == 0 ? QStringLiteral("Edited") : QStringLiteral("Filler line %1 at the corner shop").arg(i);
            t.category = QStringLiteral("Groceries");
            book.transactions.push_back(t);
        }
        ASSERT_TRUE(QDir().mkpath(books()));
        QFile file(moneyFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(MoneyFile::encode(book));
    }

    // What may not change while another process only reads the books.
    struct Snapshot
    {
        QByteArray bytes;
        QDateTime modified;
        QStringList listing;
        friend bool operator==(const Snapshot &, const Snapshot &) = default;
    };
    Snapshot snapshot() const { return {read(moneyFile()), QFileInfo(moneyFile()).lastModified(), listing(books())}; }

    // What the application folder holds besides the money file, its lock and the
    // dated backups ("Backups/<name>" for what is in that folder).
    QStringList strays() const
    {
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        static const QRegularExpression dated(QStringLiteral("^coinhall-\\d{4}-\\d\\d-\\d\\d\\.json$"));
        QStringList found;
        for (const QString &entry : QDir(books()).entryList(all)) {
            if (!QStringList({"coinhall.json", "coinhall.lock", "Backups"}).contains(entry))
                found << entry;
        }
        for (const QString &entry : QDir(books() + QStringLiteral("/Backups")).entryList(all)) {
            if (!dated.match(entry).hasMatch())
                found << QStringLiteral("Backups/") + entry;
        }
        return found;
    }

    std::deque<Running> m_running; // a deque: references to earlier ones stay good
};

TEST_F(WindowProcesses, ASecondStartRaisesTheFirstAndTouchesNothing)
{
    writeBooks(50);
    Running &first = helper({QStringLiteral("watch")});
    ASSERT_TRUE(first.waitFor("ready minimized=1\n")) << first.out.constData() << first.err.constData();
    // The single-copy socket is in the private temporary folder, away from a real Coinhall.
    EXPECT_FALSE(QDir(path(QStringLiteral("tmp"))).entryList({QStringLiteral("qfs-coinhall-%1-*").arg(::getuid())}, QDir::System).isEmpty());
    const Snapshot before = snapshot();

    // With COINHALL_FIRST_FRAME set and not "quit", a second copy that opened a window would never end.
    Running &second = window({{QStringLiteral("COINHALL_FIRST_FRAME"), QStringLiteral("1")}});
    ASSERT_TRUE(second.finish()) << second.err.constData();
    EXPECT_EQ(second.process->exitCode(), 0);
    EXPECT_FALSE(second.err.contains("first frame")) << second.err.constData();

    EXPECT_TRUE(first.waitFor("raised minimized=0 visible=1\n")) << first.out.constData();
    EXPECT_EQ(first.process->state(), QProcess::Running);
    EXPECT_TRUE(snapshot() == before);
}

TEST_F(WindowProcesses, AWindowThatCannotTakeTheLockOnlyReadsAndSaysSo)
{
    writeBooks(50);
    Running &first = window({{QStringLiteral("COINHALL_FIRST_FRAME"), QStringLiteral("1")}});
    ASSERT_TRUE(first.waitFor("first frame at", true)) << first.err.constData();
    // Taken away, so that a second process that backs up would be seen doing it.
    ASSERT_TRUE(QFile::remove(todaysBackup()));
    const Snapshot before = snapshot();

    // Another temporary folder: it does not find the first copy and opens its own window.
    auto elsewhere = otherTemp();
    elsewhere[QStringLiteral("COINHALL_FIRST_FRAME")] = QStringLiteral("quit");
    Running &second = window(elsewhere);
    ASSERT_TRUE(second.finish()) << second.err.constData();
    EXPECT_EQ(second.process->exitCode(), 0);
    EXPECT_TRUE(second.err.contains("first frame at")) << second.err.constData();
    EXPECT_TRUE(snapshot() == before);
    EXPECT_FALSE(QFileInfo::exists(todaysBackup()));

    // Its window tells the user why nothing will be saved.
    Running &shown = helper({QStringLiteral("status")}, otherTemp());
    ASSERT_TRUE(shown.finish()) << shown.err.constData();
    EXPECT_EQ(QString::fromUtf8(shown.out), QStringLiteral("status: ") + heldMessage + QLatin1Char('\n'));
    EXPECT_TRUE(snapshot() == before);
    EXPECT_EQ(first.process->state(), QProcess::Running);
}

TEST_F(WindowProcesses, ImportIsRefusedWhileTheWindowRunsAndWorksOnceItWasKilled)
{
    writeBooks(0);
    Running &open = window({{QStringLiteral("COINHALL_FIRST_FRAME"), QStringLiteral("1")}});
    ASSERT_TRUE(open.waitFor("first frame at", true)) << open.err.constData();
    const Snapshot before = snapshot();

    Outcome run = onBooks({"import", harbor, "--account", "Savings"});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "Coinhall is open with the money file in " + books() +
                           ", so nothing was changed. Close Coinhall and try again.\n");
    // Reading goes on meanwhile.
    run = onBooks({"import", harbor, "--account", "Savings", "--dry-run"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "Preview · 14 new · 1 already in · 2 unreadable\n");
    EXPECT_EQ(onBooks({"check"}).out, "OK: 2 accounts, 1 transactions, 1 bills, 0 royalties\n");
    EXPECT_TRUE(snapshot() == before);

    // kill -9 leaves the lock file behind; the lock of a process that is gone is taken over.
    open.killHard();
    ASSERT_TRUE(QFileInfo::exists(books() + QStringLiteral("/coinhall.lock")));
    run = onBooks({"import", harbor, "--account", "Savings"});
    EXPECT_EQ(run.status, 0) << qPrintable(run.err);
    EXPECT_EQ(run.out, "Preview · 14 new · 1 already in · 2 unreadable\n"
                       "Imported 14 transactions from harbor_checking.csv.\n");
    EXPECT_EQ(onBooks({"check"}).out, "OK: 2 accounts, 15 transactions, 1 bills, 0 royalties\n");
}

// -- kill -9 at random moments --------------------------------------------------

Book decode(const QByteArray &bytes)
{
    MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size())));
    EXPECT_TRUE(decoded.book.has_value()) << qPrintable(decoded.error);
    return decoded.book.value_or(Book{});
}

size_t rentPayments(const Book &book)
{
    for (const Bill &bill : book.bills) {
        if (bill.name == QLatin1String("Rent"))
            return bill.history.size();
    }
    return 0;
}

qint64 editedNote(const Book &book)
{
    for (const Transaction &t : book.transactions) {
        if (t.payee == QLatin1String("Edited"))
            return t.note.isEmpty() ? -1 : t.note.toLongLong();
    }
    return -2;
}

// Checks that `after` holds every change the helper reported (complete lines of
// `out`) on top of `before`, and no more than the one it may have been making.
// Returns how many changes were reported.
int checkChanges(const Book &before, const Book &after, const QByteArray &out)
{
    int adds = 0, transfers = 0, pays = 0, reported = 0;
    qint64 lastUpdate = editedNote(before);
    const QList<QByteArray> lines = out.left(out.lastIndexOf('\n') + 1).split('\n');
    for (const QByteArray &line : lines) {
        if (line.isEmpty())
            continue;
        ++reported;
        const QList<QByteArray> words = line.split(' ');
        const QString change = QStringLiteral("Change ") + QString::fromLatin1(words.value(1));
        if (words[0] == "add") {
            ++adds;
            EXPECT_TRUE(std::any_of(after.transactions.begin(), after.transactions.end(),
                                    [&](const Transaction &t) { return t.payee == change; }))
                << "lost: " << line.constData();
        } else if (words[0] == "transfer") {
            ++transfers;
            EXPECT_EQ(std::count_if(after.transactions.begin(), after.transactions.end(),
                                    [&](const Transaction &t) { return t.note == change && t.transferPairID; }),
                      2)
                << "lost: " << line.constData();
        } else if (words[0] == "pay") {
            ++pays;
        } else if (words[0] == "update") {
            lastUpdate = words.value(1).toLongLong();
        } else {
            ADD_FAILURE() << "unexpected line from the helper: " << line.constData();
        }
    }
    EXPECT_GE(editedNote(after), lastUpdate);
    EXPECT_GE(rentPayments(after), rentPayments(before) + pays);
    const size_t least = before.transactions.size() + adds + 2 * transfers + pays;
    EXPECT_GE(after.transactions.size(), least);
    EXPECT_LE(after.transactions.size(), least + 2); // the one change under way, at most
    return reported;
}

TEST_F(WindowProcesses, KilledAtRandomMomentsAlwaysLeavesWholeBooks)
{
    constexpr quint32 seed = 20250611;
    constexpr int runs = 60;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    QRandomGenerator random(seed);
    // Large enough that reading, backing up and saving take a while.
    writeBooks(20000);

    // How long this machine takes to bring the window up (the better of two starts),
    // to spread the kills over it.
    int startMs = giveUpMs;
    for (int i = 0; i < 2; ++i) {
        QElapsedTimer clock;
        clock.start();
        Running &calibration = window({{QStringLiteral("COINHALL_FIRST_FRAME"), QStringLiteral("quit")}});
        ASSERT_TRUE(calibration.finish()) << calibration.err.constData();
        startMs = std::min(startMs, int(clock.elapsed()));
    }

    const QRegularExpression inProgress(
        QStringLiteral("^(coinhall\\.json|Backups/coinhall-\\d{4}-\\d\\d-\\d\\d\\.json)\\.saving$"));
    int backupsBeforeKill = 0, helperRunsWithChanges = 0, changesSeen = 0, writesCutShort = 0;
    QByteArray bytes = read(moneyFile());
    Book before = decode(bytes);
    for (int run = 0; run < runs; ++run) {
        SCOPED_TRACE(testing::Message() << "run " << run);
        // Every start backs up again, so kills land in backups too.
        QFile::remove(todaysBackup());

        // The program's own start reads and backs up in the first part of its start-up.
        const bool changing = run % 2 == 1;
        Running &running =
            changing ? helper({QStringLiteral("changes"), QString::number(qint64(run) * 100000)}) : window();
        if (run % 6 == 0) {
            // The moment today's backup shows up: a copy that is not yet whole would be caught.
            QElapsedTimer waited;
            waited.start();
            while (!QFileInfo::exists(todaysBackup()) && running.process->state() != QProcess::NotRunning &&
                   waited.elapsed() < giveUpMs)
                QThread::usleep(200);
        } else if (changing) {
            // Somewhere in the saves, once they have begun.
            EXPECT_TRUE(running.waitFor("\n")) << running.out.constData() << running.err.constData();
            QThread::msleep(random.bounded(startMs));
        } else {
            QThread::msleep(random.bounded(startMs));
        }
        running.killHard();
        ASSERT_EQ(running.process->exitStatus(), QProcess::CrashExit) << running.err.constData();

        const QByteArray after = read(moneyFile());
        // The program's window only reads at start: the file is exactly as it was.
        if (!changing) {
            EXPECT_TRUE(after == bytes);
        }
        // A backup is whole or not there at all.
        if (QFileInfo::exists(todaysBackup())) {
            backupsBeforeKill += !changing;
            EXPECT_TRUE(read(todaysBackup()) == bytes);
        }

        // A write cut short is left only under its one in-progress name...
        const QStringList cutShort = strays();
        writesCutShort += int(cutShort.size());
        for (const QString &entry : cutShort)
            EXPECT_TRUE(inProgress.match(entry).hasMatch()) << qPrintable(entry);

        // ...which the next start clears away; it decodes the file and opens it as it
        // is, with nothing to report.
        Store next(StoreOptions{books()});
        EXPECT_TRUE(next.writable());
        EXPECT_EQ(next.loadError(), "");
        EXPECT_EQ(next.status(), "");
        EXPECT_EQ(strays(), QStringList());
        if (changing) {
            const int reported = checkChanges(before, next.book(), running.out);
            changesSeen += reported;
            helperRunsWithChanges += reported > 0;
        }
        if (HasFailure())
            break;
        bytes = after;
        before = next.book();
    }
    std::printf("[ kills    ] window up in %d ms; %d start-up runs, today's backup made before the kill in %d; "
                "%d changing runs, %d of them reported changes, %d changes in all; %d writes cut short, "
                "cleared by the next start\n",
                startMs, runs - runs / 2, backupsBeforeKill, runs / 2, helperRunsWithChanges, changesSeen,
                writesCutShort);
    EXPECT_GT(changesSeen, 0);
}

} // namespace
