// The command line keeps the window's lock: with "requireUnlock" on, a command reads
// the owner's password from standard input before it reads or changes the books.
// Run in this process, with PAM checking against a private configuration.
#include "commandline/commandline.h"

#include "help/helptexts.h"
#include "helpers/testing.h"
#include "model/moneyfile.h"
#include "platform/pamauthenticator.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

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

void setRequireUnlock(bool on)
{
    QSettings(AppInfo::organizationName(), AppInfo::applicationName()).setValue(QStringLiteral("requireUnlock"), on);
}

class CommandLineUnlockTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        ASSERT_TRUE(QDir().mkpath(file("pam")) && QDir().mkpath(books()));
        // Only the password "open sesame" passes.
        writeAll(file("secret.sh"), "#!/bin/sh\npw=$(tr -d '\\000')\n[ \"$pw\" = 'open sesame' ]\n");
        QFile::setPermissions(file("secret.sh"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        writeAll(file("pam/coinhall"), "auth required pam_exec.so expose_authtok " + file("secret.sh").toUtf8() +
                                           "\naccount required pam_permit.so\n");
        writeAll(file("bank.csv"), "Date,Description,Amount\n03/02/2025,Corner cafe,-4.50\n");
        Book book;
        book.accounts.push_back({newId(), QStringLiteral("Studio account"), AccountKind::checking, {}, false});
        writeAll(books() + QStringLiteral("/coinhall.json"), MoneyFile::encode(book));
        setRequireUnlock(true);
    }
    void TearDown() override { setRequireUnlock(false); }

    QString file(const char *name) const { return m_dir.filePath(QString::fromUtf8(name)); }
    QString books() const { return file("books"); }

    // Runs a command on the test's books with `typed` on standard input.
    Captured run(const QStringList &command, const QByteArray &typed)
    {
        std::FILE *in = std::tmpfile();
        std::FILE *out = std::tmpfile();
        std::FILE *err = std::tmpfile();
        std::fwrite(typed.constData(), 1, size_t(typed.size()), in);
        std::rewind(in);
        const CommandLineUnlock unlock{in, std::make_shared<PamAuthenticator>(QStringLiteral("coinhall"), file("pam"))};
        Captured captured;
        captured.status = runCommandLine(QStringList{"--data-dir", books()} + command, out, err, unlock);
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
    const QByteArray before = readAll(books() + "/coinhall.json");
    for (const QStringList &command :
         {QStringList{"check"}, QStringList{"report"}, QStringList{"export", file("out.csv")},
          QStringList{"import", file("bank.csv"), "--account", "Studio account"}}) {
        for (const QByteArray &typed : {QByteArray("wrong\n"), QByteArray(""), QByteArray("open sesame!\n")}) {
            const Captured c = run(command, typed);
            EXPECT_EQ(c.status, ExitStatus::failed) << qPrintable(command.join(' ')) << " " << typed.constData();
            EXPECT_EQ(c.out, "");
            EXPECT_EQ(c.err, "That password did not open Coinhall, so nothing was read or changed.\n");
        }
    }
    EXPECT_EQ(readAll(books() + "/coinhall.json"), before);
    EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              (QStringList{"bank.csv", "books", "pam", "secret.sh"}));
    EXPECT_EQ(QDir(books()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"coinhall.json"});
}

TEST_F(CommandLineUnlockTest, TheRightPasswordOpensTheBooksAndNoneIsAskedWhenTheLockIsOff)
{
    Captured c = run({"check"}, "open sesame\n");
    EXPECT_EQ(c.status, ExitStatus::ok);
    EXPECT_EQ(c.out, "OK: 1 accounts, 0 transactions, 0 bills, 0 royalties\n");
    EXPECT_EQ(c.err, "");

    // A line typed on Windows ends in CR LF.
    c = run({"import", file("bank.csv"), "--account", "Studio account"}, "open sesame\r\n");
    EXPECT_EQ(c.status, ExitStatus::ok) << qPrintable(c.err);
    EXPECT_TRUE(c.out.endsWith("Imported 1 transactions from bank.csv.\n")) << qPrintable(c.out);

    setRequireUnlock(false);
    c = run({"check"}, "");
    EXPECT_EQ(c.status, ExitStatus::ok);
    EXPECT_EQ(c.out, "OK: 1 accounts, 1 transactions, 0 bills, 0 royalties\n");
}
