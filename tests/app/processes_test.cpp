// Window processes and the command line on one money file: a second start raises
// the first, two processes never both write, and kill -9 at any moment leaves a
// money file that decodes and holds every change that was saved.
#include "apptesting.h"

#include "model/moneyfile.h"
#include "store/store.h"

#include <QDate>
#include <QDateTime>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <deque>
#include <memory>

#include <unistd.h>

namespace {

using namespace ExeTesting;

// Nothing here may hang: every wait gives up after this long (sanitizer builds are slow).
constexpr int giveUpMs = 20000;

// A started process and all it has printed so far; killed, if it still runs, when it goes.
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
    // Waits until `text` shows on standard output; false when the process ended first
    // or time ran out.
    bool waitFor(const QByteArray &text)
    {
        const auto seen = [&] { return collect(), out.contains(text); };
        return ::waitFor([&] { return seen() || process->state() == QProcess::NotRunning; }, giveUpMs) && seen();
    }
    // Waits for a normal end with status 0; kills the process when it does not come.
    bool finish()
    {
        if (!process->waitForFinished(giveUpMs))
            killHard();
        collect();
        return process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
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
        ASSERT_TRUE(QDir().mkpath(path("home")) && QDir().mkpath(path("tmp2")));
        m_env.insert("HOME", path("home"));
        m_env.insert("QT_QPA_PLATFORM", "offscreen");
        m_env.remove("COINHALL_FIRST_FRAME");
    }

    // Starts `program` in the private root with `extra` ("NAME=value") in its environment.
    // The window helper starts its window as coinhall does (tests/helpers/windowhelper.cpp).
    Running &launch(const QString &program, const QStringList &arguments, const QStringList &extra = {})
    {
        Running &running = m_running.emplace_back();
        QProcessEnvironment env = m_env;
        for (const QString &variable : extra)
            env.insert(variable.section('=', 0, 0), variable.section('=', 1));
        running.process->setProcessEnvironment(env);
        running.process->setWorkingDirectory(m_root.path());
        running.process->start(program, arguments);
        return running;
    }
    const QStringList onBooksArgs = {"--data-dir", books()}; // the real program's window on them

    QString moneyFile() const { return books() + "/coinhall.json"; }
    QString todaysBackup() const
    {
        return books() + "/Backups/coinhall-" + QDate::currentDate().toString("yyyy-MM-dd") + ".json";
    }

    // Books with two accounts, a monthly bill "Rent", a line "Edited" and `filler` more lines.
    void writeBooks(int filler)
    {
        Book book;
        book.accounts = {{.name = "Main checking"}, {.name = "Savings", .kind = AccountKind::savings}};
        book.bills.push_back({.name = "Rent",
                              .amount = Decimal(1200),
                              .due = Instant::fromSecs(QDateTime::currentSecsSinceEpoch() + 10 * 86400),
                              .accountID = book.accounts[0].id});
        for (int i = 0; i <= filler; ++i)
            book.transactions.push_back(
                {.date = Instant::fromSecs(1600000000 - i * 3600),
                 .accountID = book.accounts[i % 2].id,
                 .amount = Decimal(-(i % 500) - 1),
                 .payee = i == 0 ? "Edited" : QString("Filler line %1 at the corner shop").arg(i),
                 .category = "Groceries"});
        ASSERT_TRUE(QDir().mkpath(books()));
        writeAll(moneyFile(), MoneyFile::encode(book));
    }

    // What may not change while another process only reads the books.
    QStringList snapshot() const
    {
        return listing(books()) << QString::fromLatin1(readAll(moneyFile()).toBase64())
                                << QFileInfo(moneyFile()).lastModified().toString(Qt::ISODateWithMs);
    }

    // What the application folder and its Backups folder ("Backups/<name>") hold besides
    // the money file, its lock and the dated backups.
    QStringList strays() const
    {
        static const QRegularExpression kept(
            "^(coinhall\\.(json|lock)|reminders(-shown)?\\.json|reminders\\.lock|Backups|"
            "Backups/coinhall-\\d{4}-\\d\\d-\\d\\d\\.json)$");
        QStringList found;
        for (const QString folder : {"", "Backups/"})
            for (const QString &entry :
                 QDir(books() + '/' + folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
                if (!kept.match(folder + entry).hasMatch())
                    found << folder + entry;
        return found;
    }

    std::deque<Running> m_running; // a deque: references to earlier ones stay good
};

TEST_F(WindowProcesses, WhileAWindowRunsOthersOnlyRead)
{
    writeBooks(50);
    Running &first = launch(COINHALL_WINDOW_HELPER, {books(), "watch"});
    ASSERT_TRUE(first.waitFor("ready minimized=1\n")) << first.out.constData() << first.err.constData();
    // The single-copy socket is in the private temporary folder, away from a real Coinhall.
    EXPECT_FALSE(QDir(path("tmp")).entryList({QString("qfs-coinhall-%1-*").arg(::getuid())}, QDir::System).isEmpty());
    // Taken away, so that a second process that backs up would be seen doing it.
    ASSERT_TRUE(QFile::remove(todaysBackup()));
    const QStringList before = snapshot();

    // A second start raises the first. With COINHALL_FIRST_FRAME set and not "quit", a
    // second copy that opened a window would never end.
    Running &second = launch(COINHALL_EXE, onBooksArgs, {"COINHALL_FIRST_FRAME=1"});
    ASSERT_TRUE(second.finish()) << second.err.constData();
    EXPECT_TRUE(first.waitFor("raised minimized=0 visible=1\n")) << first.out.constData();

    // One that does not find the first (another temporary folder) opens its window on the
    // books, does not back them up, and tells the user why nothing will be saved.
    Running &shown = launch(COINHALL_WINDOW_HELPER, {books(), "status"}, {"TMPDIR=" + path("tmp2")});
    ASSERT_TRUE(shown.finish()) << shown.err.constData();
    EXPECT_EQ(shown.out, "status: Coinhall is already open with this money file, so changes made here are not "
                         "saved.\n");

    // The command line refuses to write and goes on reading.
    const QString harbor = QStringLiteral(COINHALL_TEST_DATA "/bank/harbor_checking.csv");
    EXPECT_EQ(onBooks({"import", harbor, "--account", "Savings"}).all(),
              std::tuple(3, "",
                         "Coinhall is open with the money file in " + books() +
                             ", so nothing was changed. Close Coinhall and try again.\n"));
    EXPECT_EQ(onBooks({"import", harbor, "--account", "Savings", "--dry-run"}).out,
              "Preview · 15 new · 0 already in · 2 unreadable\n");
    EXPECT_EQ(std::tuple(snapshot(), QFileInfo::exists(todaysBackup())), std::tuple(before, false));
    // Once the window is gone, even by kill -9, the next start writes: the next test.
}

// Checks that `after` holds the Book as the helper last said it was once a change was
// saved ("<kind> <n> <lines> <rent payments> <note on Edited>"; tests/helpers/windowhelper.cpp),
// and no more than the one change it may have been making. Returns how many it reported.
int checkChanges(const Book &before, const Book &after, const QByteArray &out)
{
    const QList<QByteArray> lines =
        out.contains('\n') ? out.left(out.lastIndexOf('\n')).split('\n') : QList<QByteArray>();
    size_t least = before.transactions.size();
    if (!lines.isEmpty()) {
        const QList<QByteArray> said = lines.last().split(' ');
        EXPECT_EQ(said.size(), 5) << lines.last().constData();
        least = std::max<size_t>(least, said.value(2).toULongLong());
        EXPECT_GE(after.bills.at(0).history.size(), said.value(3).toULongLong());
        const auto edited = std::find_if(after.transactions.begin(), after.transactions.end(),
                                         [](const Transaction &t) { return t.payee == "Edited"; });
        EXPECT_TRUE(edited != after.transactions.end() && edited->note.toLongLong() >= said.value(4).toLongLong());
    }
    EXPECT_GE(after.transactions.size(), least);
    EXPECT_LE(after.transactions.size(), least + 2); // the one change under way, at most
    return int(lines.size());
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
        ASSERT_TRUE(launch(COINHALL_EXE, onBooksArgs, {"COINHALL_FIRST_FRAME=quit"}).finish());
        startMs = std::min(startMs, int(clock.elapsed()));
    }

    const QRegularExpression inProgress(
        "^(coinhall\\.json|reminders\\.json|Backups/coinhall-\\d{4}-\\d\\d-\\d\\d\\.json)\\.saving$");
    int changesSeen = 0, writesCutShort = 0;
    QByteArray bytes = readAll(moneyFile());
    Book before = MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size()))).book.value();
    for (int run = 0; run < runs; ++run) {
        SCOPED_TRACE(testing::Message() << "run " << run);
        // Every start backs up again, so kills land in backups too.
        QFile::remove(todaysBackup());

        // The program's own start reads and backs up in the first part of its start-up.
        const bool changing = run % 2 == 1;
        Running &running = changing
                               ? launch(COINHALL_WINDOW_HELPER, {books(), "changes", QString::number(run * 100000)})
                               : launch(COINHALL_EXE, onBooksArgs);
        if (run % 6 == 0) {
            // The moment today's backup shows up: a copy that is not yet whole would be caught.
            ::waitFor(
                [&] { return QFileInfo::exists(todaysBackup()) || running.process->state() == QProcess::NotRunning; },
                giveUpMs);
        } else {
            // Somewhere in the saves, once they have begun.
            EXPECT_TRUE(!changing || running.waitFor("\n")) << running.out.constData() << running.err.constData();
            QThread::msleep(random.bounded(startMs));
        }
        running.killHard();
        ASSERT_EQ(running.process->exitStatus(), QProcess::CrashExit)
            << qPrintable(running.process->errorString()) << running.err.constData();

        // The program's window only reads at start: the file is exactly as it was.
        const QByteArray after = readAll(moneyFile());
        EXPECT_TRUE(changing || after == bytes);
        // A backup is whole or not there at all.
        EXPECT_TRUE(!QFileInfo::exists(todaysBackup()) || readAll(todaysBackup()) == bytes);
        // A write cut short is left only under its one in-progress name...
        const QStringList cutShort = strays();
        writesCutShort += int(cutShort.size());
        for (const QString &entry : cutShort)
            EXPECT_TRUE(inProgress.match(entry).hasMatch()) << qPrintable(entry);

        // ...which the next start clears away; it takes over the dead process's lock,
        // decodes the file and opens it as it is, with nothing to report.
        Store next(StoreOptions{books()});
        EXPECT_EQ(std::tuple(next.writable(), next.loadError(), next.status(), strays()),
                  std::tuple(true, "", "", QStringList()));
        if (changing)
            changesSeen += checkChanges(before, next.book(), running.out);
        if (HasFailure())
            break;
        bytes = after;
        before = next.book();
    }
    std::printf("[ kills    ] window up in %d ms; %d changes reported by %d changing runs; %d writes cut short\n",
                startMs, changesSeen, runs / 2, writesCutShort);
    EXPECT_GT(changesSeen, 0);
}

} // namespace
