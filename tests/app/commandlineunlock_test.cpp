// The command line keeps the window's lock: with "requireUnlock" on, a command reads
// the owner's password from standard input before it reads or changes the books.
// Run in this process, with PAM checking against a private configuration.
#include "apptesting.h"

#include "commandline/commandline.h"
#include "help/helptexts.h"
#include "model/moneyfile.h"
#include "platform/pamauthenticator.h"

#include <QSettings>

#include <cstdio>

namespace {

using ExeTesting::Outcome;

QString contents(std::FILE *file)
{
    std::rewind(file);
    QFile written;
    return written.open(file, QIODevice::ReadOnly) ? QString::fromUtf8(written.readAll()) : QString("<unreadable>");
}

void setRequireUnlock(bool on)
{
    QSettings(AppInfo::organizationName(), AppInfo::applicationName()).setValue(QStringLiteral("requireUnlock"), on);
}

class CommandLineUnlockTest : public ExeTesting::AppTest
{
protected:
    void SetUp() override
    {
        AppTest::SetUp();
        ASSERT_TRUE(QDir().mkpath(path("pam")) && QDir().mkpath(books()));
        // Only the password "open sesame" passes.
        writeAll(path("secret.sh"), "#!/bin/sh\npw=$(tr -d '\\000')\n[ \"$pw\" = 'open sesame' ]\n");
        QFile::setPermissions(path("secret.sh"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        writeAll(path("pam/coinhall"), "auth required pam_exec.so expose_authtok " + path("secret.sh").toUtf8() +
                                           "\naccount required pam_permit.so\n");
        writeAll(path("bank.csv"), "Date,Description,Amount\n03/02/2025,Corner cafe,-4.50\n");
        writeAll(books() + "/coinhall.json", MoneyFile::encode(Book{.accounts = {{.name = "Studio account"}}}));
        setRequireUnlock(true);
    }
    void TearDown() override { setRequireUnlock(false); }

    // Runs a command on the test's books with `typed` on standard input.
    Outcome run(const QStringList &command, const QByteArray &typed)
    {
        std::FILE *in = std::tmpfile(), *out = std::tmpfile(), *err = std::tmpfile();
        std::fwrite(typed.constData(), 1, size_t(typed.size()), in);
        std::rewind(in);
        const CommandLineUnlock unlock{in, std::make_shared<PamAuthenticator>(QStringLiteral("coinhall"), path("pam"))};
        // Braces run in order: the command first, then what it wrote is read.
        const Outcome outcome{runCommandLine(QStringList{"--data-dir", books()} + command, out, err, unlock),
                              contents(out), contents(err)};
        for (std::FILE *f : {in, out, err})
            std::fclose(f);
        return outcome;
    }
};

} // namespace

TEST_F(CommandLineUnlockTest, EveryCommandNeedsThePasswordAndNoneIsAskedWhenTheLockIsOff)
{
    const QByteArray before = readAll(books() + "/coinhall.json");
    const QStringList files = listing(m_root.path());
    for (const QStringList &command :
         {QStringList{"check"}, QStringList{"report"}, QStringList{"export", path("out.csv")},
          QStringList{"import", path("bank.csv"), "--account", "Studio account"}}) {
        for (const QByteArray &typed : {QByteArray("wrong\n"), QByteArray(""), QByteArray("open sesame!\n")}) {
            EXPECT_EQ(run(command, typed).all(),
                      std::tuple(ExitStatus::failed, "",
                                 "That password did not open Coinhall, so nothing was read or changed.\n"))
                << qPrintable(command.join(' ')) << " " << typed.constData();
        }
    }
    EXPECT_EQ(std::tuple(readAll(books() + "/coinhall.json"), listing(m_root.path())), std::tuple(before, files));
    EXPECT_EQ(run({"check"}, "open sesame\n").all(),
              std::tuple(ExitStatus::ok, "OK: 1 accounts, 0 transactions, 0 bills, 0 royalties\n", ""));

    // A line typed on Windows ends in CR LF.
    Outcome c = run({"import", path("bank.csv"), "--account", "Studio account"}, "open sesame\r\n");
    EXPECT_EQ(c.status, ExitStatus::ok) << qPrintable(c.err);
    EXPECT_TRUE(c.out.endsWith("Imported 1 transactions from bank.csv.\n")) << qPrintable(c.out);

    setRequireUnlock(false);
    c = run({"check"}, "");
    EXPECT_EQ(std::tuple(c.status, c.out),
              std::tuple(ExitStatus::ok, "OK: 1 accounts, 1 transactions, 0 bills, 0 royalties\n"));
}
