// The command line keeps the window's lock: with "requireUnlock" on, a command reads
// the owner's password from standard input before it reads or changes the books.
// Run in this process, with PAM checking against a private configuration.
#include "commandline/commandline.h"

#include "help/helptexts.h"
#include "model/moneyfile.h"
#include "platform/pamauthenticator.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

struct Captured
{
    int status = -1;
    QString out;
    QString err;
};

QString contents(std::FILE *file)
{
    std::rewind(file);
    QByteArray bytes;
    char chunk[4096];
    for (size_t n; (n = std::fread(chunk, 1, sizeof chunk, file)) > 0;)
        bytes.append(chunk, qsizetype(n));
    return QString::fromUtf8(bytes);
}

class CommandLineUnlockTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        // Only the password "open sesame" passes.
        const QString script = m_dir.filePath(QStringLiteral("secret.sh"));
        writeFile(script, "#!/bin/sh\npw=$(tr -d '\\000')\n[ \"$pw\" = 'open sesame' ]\n");
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        writeFile(m_dir.filePath(QStringLiteral("pam/coinhall")),
                  "auth required pam_exec.so expose_authtok " + script.toUtf8() + "\naccount required pam_permit.so\n");

        Book book;
        book.accounts.push_back(
            {QUuid::createUuid(), QStringLiteral("Studio account"), AccountKind::checking, {}, false});
        writeFile(books() + QStringLiteral("/coinhall.json"), MoneyFile::encode(book));
        setRequireUnlock(true);
    }
    void TearDown() override { setRequireUnlock(false); }

    static void setRequireUnlock(bool on)
    {
        QSettings(AppInfo::organizationName(), AppInfo::applicationName())
            .setValue(QStringLiteral("requireUnlock"), on);
    }
    static void writeFile(const QString &path, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QString books() const { return m_dir.filePath(QStringLiteral("books")); }
    QByteArray moneyFile() const
    {
        QFile file(books() + QStringLiteral("/coinhall.json"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Runs a command on the test's books with `typed` on standard input.
    Captured run(const QStringList &command, const QByteArray &typed)
    {
        std::FILE *in = std::tmpfile();
        std::FILE *out = std::tmpfile();
        std::FILE *err = std::tmpfile();
        std::fwrite(typed.constData(), 1, size_t(typed.size()), in);
        std::rewind(in);
        CommandLineUnlock unlock{
            in, std::make_shared<PamAuthenticator>(QStringLiteral("coinhall"), m_dir.filePath(QStringLiteral("pam")))};
        Captured captured;
        captured.status =
            runCommandLine(QStringList{QStringLiteral("--data-dir"), books()} + command, out, err, unlock);
        captured.out = contents(out);
        captured.err = contents(err);
        for (std::FILE *f : {in, out, err})
            std::fclose(f);
        return captured;
    }

    QTemporaryDir m_dir;
};

} // namespace

TEST_F(CommandLineUnlockTest, EveryCommandNeedsThePasswordAndShowsNothingWithoutIt)
{
    const QByteArray before = moneyFile();
    const QString refused = QStringLiteral("That password did not open Coinhall, so nothing was read or changed.\n");
    const QString csv = m_dir.filePath(QStringLiteral("bank.csv"));
    writeFile(csv, "Date,Description,Amount\n03/02/2025,Corner cafe,-4.50\n");

    for (const QStringList &command :
         {QStringList{"check"}, QStringList{"report"}, QStringList{"export", m_dir.filePath("out.csv")},
          QStringList{"import", csv, "--account", "Studio account"}}) {
        for (const QByteArray &typed : {QByteArray("wrong\n"), QByteArray(""), QByteArray("open sesame!\n")}) {
            const Captured c = run(command, typed);
            EXPECT_EQ(c.status, ExitStatus::failed) << command.join(' ').toStdString() << " " << typed.constData();
            EXPECT_EQ(c.out, "");
            EXPECT_EQ(c.err, refused);
        }
    }
    EXPECT_EQ(moneyFile(), before);
    EXPECT_FALSE(QFile::exists(m_dir.filePath("out.csv")));
    EXPECT_FALSE(QDir(books() + QStringLiteral("/Backups")).exists());
}

TEST_F(CommandLineUnlockTest, TheRightPasswordOpensTheBooksAndNoneIsAskedWhenTheLockIsOff)
{
    Captured c = run({"check"}, "open sesame\n");
    EXPECT_EQ(c.status, ExitStatus::ok);
    EXPECT_EQ(c.out, "OK: 1 accounts, 0 transactions, 0 bills, 0 royalties\n");
    EXPECT_EQ(c.err, "");

    // A line typed on Windows ends in CR LF.
    const QString csv = m_dir.filePath(QStringLiteral("bank.csv"));
    writeFile(csv, "Date,Description,Amount\n03/02/2025,Corner cafe,-4.50\n");
    c = run({"import", csv, "--account", "Studio account"}, "open sesame\r\n");
    EXPECT_EQ(c.status, ExitStatus::ok) << c.err.toStdString();
    EXPECT_TRUE(c.out.endsWith("Imported 1 transactions from bank.csv.\n")) << c.out.toStdString();

    setRequireUnlock(false);
    c = run({"check"}, "");
    EXPECT_EQ(c.status, ExitStatus::ok);
    EXPECT_EQ(c.out, "OK: 1 accounts, 1 transactions, 0 bills, 0 royalties\n");
}
