// Encrypted books from the command line: encrypt, decrypt, check and the passphrase
// from standard input or a descriptor; and kill -9 in the middle of switching.
#include "apptesting.h"

#include "model/moneyfile.h"
#include "store/sealedfile.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QThread>

#include <map>

namespace {

using namespace ExeTesting;

class Encryption : public AppTest
{
protected:
    void SetUp() override
    {
        AppTest::SetUp();
        Book book{.accounts = {{.name = "Studio account"}}};
        for (int i = 0; i < 1500; ++i)
            book.transactions.push_back({newId(), at("2025-03-04T09:00:00Z"), book.accounts[0].id, d("-12.5"),
                                         QStringLiteral("Corner shop %1").arg(i), QStringLiteral("Groceries")});
        plain = MoneyFile::encode(book);
        ASSERT_TRUE(QDir().mkpath(books() + "/Backups"));
        writeAll(books() + "/coinhall.json", plain);
        for (int day = 1; day <= 12; ++day)
            writeAll(books() + QStringLiteral("/Backups/coinhall-2025-01-%1.json").arg(day, 2, 10, QLatin1Char('0')),
                     plain);
    }

    // A command on the books with `typed` on its standard input; through a shell when
    // it needs a descriptor of its own.
    Outcome typing(const QStringList &arguments, const QByteArray &typed, QProcess *started = nullptr)
    {
        QProcess own;
        QProcess &process = started ? *started : own;
        process.setProcessEnvironment(m_env);
        process.start(COINHALL_EXE, QStringList{"--data-dir", books()} + arguments);
        process.write(typed);
        process.waitForBytesWritten(20000);
        process.closeWriteChannel();
        if (started)
            return {};
        Outcome run;
        if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
            run = {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                   QString::fromUtf8(process.readAllStandardError())};
        return run;
    }

    // The money file inside `path`, opened with `passphrase` when it is encrypted.
    QByteArray inside(const QString &path, const char *passphrase)
    {
        const QByteArray bytes = readAll(path);
        if (!Sealed::looksSealed(bytes))
            return bytes;
        QByteArray opened;
        const std::optional<Sealed::Header> header = Sealed::readHeader(bytes);
        if (header && key && key->fits(*header))
            Sealed::open(bytes, *key, &opened);
        else
            Sealed::open(bytes, Sealed::Secret(passphrase, std::strlen(passphrase)), &opened, &key);
        return opened;
    }
    std::shared_ptr<const Sealed::Key> key; // the last derived, for the files sealed alike
    QStringList copies() const
    {
        QStringList all{books() + "/coinhall.json"};
        for (const QString &name : QDir(books() + "/Backups").entryList(QDir::Files))
            all << books() + "/Backups/" + name;
        return all;
    }

    QByteArray plain;
};

} // namespace

TEST_F(Encryption, EncryptCheckExportAndDecryptFromTheCommandLine)
{
    EXPECT_EQ(typing({"encrypt"}, "one\ntwo\n").all(),
              std::tuple(1, QString(), QString("The two passphrases differ, so nothing was changed.\n")));
    EXPECT_EQ(readAll(books() + "/coinhall.json"), plain);
    EXPECT_EQ(typing({"encrypt"}, "violin case\nviolin case\n").all(),
              std::tuple(0, QString("Your books are now encrypted.\n"), QString()));
    // Sealed with the passphrase as typed; that every copy is sealed is encryptedbooks_test's.
    EXPECT_TRUE(Sealed::looksSealed(readAll(books() + "/coinhall.json")));
    EXPECT_EQ(inside(books() + "/coinhall.json", "violin case"), plain);

    // Without a passphrase check only says whether the file is whole.
    EXPECT_EQ(onBooks({"check"}).all(),
              std::tuple(0,
                         QString("OK: the money file is encrypted and whole (not decrypted; give its passphrase "
                                 "with --passphrase-fd to check what it holds)\n"),
                         QString()));
    write("pass", "violin case\n");
    const QStringList viaFd{"-c", QStringLiteral("exec 3<'%1'; exec '%2' --data-dir '%3' check --passphrase-fd 3")
                                      .arg(path("pass"), COINHALL_EXE, books())};
    QProcess shell;
    shell.setProcessEnvironment(m_env);
    shell.start("/bin/sh", viaFd);
    ASSERT_TRUE(shell.waitForFinished(60000));
    EXPECT_EQ(shell.readAllStandardOutput(), "OK: 1 accounts, 1500 transactions, 0 bills, 0 royalties\n");

    const QStringList before = listing(books());
    EXPECT_EQ(typing({"report"}, "viola case\n").all(),
              std::tuple(1, QString(),
                         QString("That passphrase did not open your books, so nothing was read or changed.\n")));
    EXPECT_EQ(typing({"export", path("out.csv")}, "violin case\n").all(),
              std::tuple(0, QString("Saved out.csv. It is not encrypted, unlike your books.\n"), QString()));
    EXPECT_TRUE(readAll(path("out.csv")).contains("Corner shop 7"));
    EXPECT_EQ(listing(books()), before);

    QByteArray cut = readAll(books() + "/coinhall.json");
    writeAll(books() + "/coinhall.json", cut.left(cut.size() - 1));
    EXPECT_EQ(onBooks({"check"}).all(),
              std::tuple(1, QString("The money file is encrypted and damaged: the file is cut short.\n"), QString()));
    writeAll(books() + "/coinhall.json", cut);

    EXPECT_EQ(typing({"decrypt"}, "violin case\n").all(),
              std::tuple(0, QString("Your books are no longer encrypted.\n"), QString()));
    EXPECT_EQ(readAll(books() + "/coinhall.json"), plain);
}

// kill -9 at any moment of turning encryption on or off leaves every file whole, each
// in the old way or the new, and the money file inside always the same.
TEST_F(Encryption, KilledWhileSwitchingLeavesEveryFileReadable)
{
    QRandomGenerator random(20261125);
    // How long each way takes whole here, so that the kills fall all over it.
    std::map<bool, qint64> takes;
    for (const bool on : {true, false}) {
        QElapsedTimer clock;
        clock.start();
        ASSERT_EQ(typing({on ? "encrypt" : "decrypt"}, on ? "cello bow\ncello bow\n" : "cello bow\n").status, 0);
        takes[on] = clock.elapsed();
    }
    int killed = 0;
    int halfway = 0; // kills that left some files the old way and some the new
    for (int run = 0; run < 10; ++run) {
        const bool on = !Sealed::looksSealed(readAll(books() + "/coinhall.json"));
        QProcess process;
        typing({on ? "encrypt" : "decrypt"}, on ? "cello bow\ncello bow\n" : "cello bow\n", &process);
        ASSERT_TRUE(process.waitForStarted(20000));
        if (run % 2 == 0) {
            QThread::msleep(random.bounded(takes[on] / 3, takes[on] + 1));
        } else {
            // Just as the first file has switched: the money file when turning on, a
            // backup when turning off.
            QFile first(books() + (on ? "/coinhall.json" : "/Backups/coinhall-2025-01-01.json"));
            const auto switched = [&] {
                first.close();
                return first.open(QIODevice::ReadOnly) && Sealed::looksSealed(first.read(8)) == on;
            };
            QElapsedTimer waited;
            waited.start();
            while (!switched() && waited.elapsed() < 20000 && process.state() == QProcess::Running)
                QThread::usleep(200);
        }
        if (process.state() == QProcess::Running) {
            process.kill();
            ++killed;
        }
        process.waitForFinished(20000);
        int sealed = 0, total = 0;
        for (const QString &copy : copies()) {
            const QString name = QFileInfo(copy).fileName();
            if (name.endsWith(".saving"))
                continue; // a write cut short; the next start removes it
            ASSERT_EQ(inside(copy, "cello bow"), plain) << "run " << run << ": " << name.toStdString();
            sealed += Sealed::looksSealed(readAll(copy)) ? 1 : 0;
            ++total;
        }
        halfway += sealed > 0 && sealed < total ? 1 : 0;
        // The books open, finishing what was cut short: each start makes the day's backup.
        const Outcome check = typing({"backups"}, "cello bow\n");
        ASSERT_EQ(check.status, 0) << "run " << run << check.err.toStdString();
        EXPECT_FALSE(check.out.contains("cannot be read")) << check.out.toStdString();
    }
    EXPECT_GT(killed, 3);
    EXPECT_GT(halfway, 0);
}
