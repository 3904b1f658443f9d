// The command line: global options, the unlock step, and handing over to a command.
#include "commandline.h"

#include "commands.h"
#include "help/helptexts.h"
#include "platform/authenticator.h"
#include "store/store.h"

#include <QDir>
#include <QFile>
#include <QSettings>

#include <algorithm>
#include <future>
#include <memory>

#include <termios.h>
#include <unistd.h>

using namespace CommandLine;

namespace {

const char usage[] = R"(Usage: coinhall [--data-dir DIR] [COMMAND [OPTIONS]]
       coinhall --selftest

Without a command, Coinhall opens its window.

Commands:
  import FILE... --account NAME [--flip] [--dry-run] [--day-first] [COLUMNS]
      Bring bank downloads (CSV, OFX, QFX, QIF or CAMT.053, found from what
      the file holds) into the active account named NAME, as the import screen
      does: lines already in the books are skipped, categories are guessed from
      your earlier lines and then from the keyword table. For each file prints
      "Preview · <n> new · <s> already in · <b> unreadable", then imports and
      prints "Imported <n> transactions from <file name>.". A file that is no
      bank download stops the import before anything changes.
      --flip      negate every amount (card files that show spending as money in)
      --dry-run   show the preview only; nothing is changed
      --day-first read dates that could be either way (a QIF file's) day first
      COLUMNS override the guessed column of each kind, as a column number
      counted from 0 or "none" for no such column:
      --date-col, --description-col, --amount-col, --debit-col, --credit-col,
      --category-col
  export FILE [--format FORMAT]
      Write every transaction, oldest first, to FILE (replacing it). FORMAT is
      csv (the default) or ledger: a plain-text accounting journal that ledger
      and hledger read, accounts as Assets:<account>, categories as
      Income:<category> or Expenses:<category>, the opening balances first.
  report [--period PERIOD] [--tsv] | --year YYYY [--pdf FILE] [--csv FILE]
      Income, spending, net, the royalties share of income, and spending and
      income by category, as on the Reports screen. PERIOD is this-month (the
      default), last-month, this-year, last-12-months or last-year.
      --tsv       one figure per line, SECTION<tab>NAME<tab>AMOUNT, the amount as
                  plain decimal text ("-12.5", "1200"). SECTION is income,
                  spending, net, royalty-share, income-by-category or
                  spending-by-category; NAME is the category name (tabs and line
                  breaks turned into blanks) and empty for the four single
                  figures. royalty-share is the whole percent the Reports tile
                  shows, empty when there is no income.
      --year YYYY [--pdf FILE] [--csv FILE]
                  Instead, the year's report for the accountant, as "Save as
                  PDF…" and "Save as CSV…" write it (replacing FILE): income by
                  category and by payer, royalties by payer, spending by
                  category, the net, what was paid to the tax office (spending
                  filed under Taxes), transfers left out, the lines not yet
                  cleared and a chart of the months. YYYY is a year that has
                  lines. The CSV holds the same figures, one a row:
                  Section,Date,Name,Amount, amounts as plain decimal text.
  check
      Read the money file without changing anything: prints "OK: <a> accounts,
      <t> transactions, <b> bills, <r> royalties", or the first problem found
      with its place.
  backups
      List the daily backups, newest first, one a line: the date, the size and
      how many transactions it holds ("cannot be read" for one that cannot).
  restore DATE
      Replace the books with the backup of DATE, given as yyyy-MM-dd as backups
      lists it. The money file as it was is kept first, beside it, as
      coinhall.json.before-restore-<yyyyMMdd-HHmmss>.
  encrypt
      Encrypt the money file and every backup with a passphrase, read twice
      from standard input (a line each), as "Encrypt my books with a
      passphrase" on the Accounts screen does; on books already encrypted,
      change the passphrase (the current one is read first). A forgotten
      passphrase cannot be recovered by anyone: the books are then lost.
  decrypt
      Write the money file and every backup plain again, after the passphrase.
  remind [--wait]
      Show the bill reminders due now, as the window plans them, through the
      desktop's notifications: the system runs this at 09:00 while Coinhall is
      closed. With --wait it stays and shows each reminder at its time (for
      desktops without a systemd user session). A reminder is shown once,
      whether the window or this shows it first, and never late.

Options:
  --data-dir DIR  Use DIR as the application folder instead of the default
                  (the folder "QFS Coinhall" in ~/.local/share).
  --passphrase-fd N
                  Read the passphrase of encrypted books from file descriptor N
                  (one line) instead of standard input. A passphrase is never
                  given as an argument, where other users could see it.
  --selftest      Run the built-in checks, print the report and exit with 0 when
                  all pass, else 1. Looks at nothing else and touches no user folder.
  --open money-in|money-out|import|bills
                  Open the window (or bring the running one forward) on a new
                  deposit, a new expense, the bank CSV import, or the Bills
                  screen. The desktop's menu and notifications use it.
  --renderer software|gpu
                  Draw the window with Qt Quick's own software renderer, or
                  with the graphics card through OpenGL. Without it (and without
                  COINHALL_RENDERER=software|gpu in the environment) Coinhall
                  uses the software renderer where OpenGL is itself drawn in
                  software (llvmpipe) or there is none, else the graphics card.
                  With COINHALL_DEBUG set, the choice and why go to standard
                  error.
  --help          Show this text.
  --version       Show the version.

When Coinhall is set to ask for your password when it opens, every command
first asks for it (one line on standard input) and does nothing without it.
On encrypted books every command asks for the passphrase instead (one line on
standard input, or from --passphrase-fd), except check without
--passphrase-fd, which only says whether the encrypted file is whole. Exports
are written plain, and say so.

import, restore, encrypt and decrypt save the money file as the window does:
atomically, after the day's backup. While a running Coinhall holds the money
file, they refuse and change nothing. check, report, export, backups and
import --dry-run never change the application folder.

Exit status: 0 done; 1 a file could not be read or saved, the money file is
unsound, or the password or passphrase did not open it; 2 wrong usage, no such account or
no such backup; 3 the money file is held by a running Coinhall.
)";

const QStringList commands = {QStringLiteral("import"),  QStringLiteral("export"),  QStringLiteral("report"),
                              QStringLiteral("check"),   QStringLiteral("remind"),  QStringLiteral("backups"),
                              QStringLiteral("restore"), QStringLiteral("encrypt"), QStringLiteral("decrypt")};

const QString moneyFileName = QStringLiteral("coinhall.json");

// The options that take a value: their value is never read as a command or option.
const QStringList valueOptions = {
    QStringLiteral("--data-dir"),        QStringLiteral("--account"),      QStringLiteral("--date-col"),
    QStringLiteral("--description-col"), QStringLiteral("--amount-col"),   QStringLiteral("--debit-col"),
    QStringLiteral("--credit-col"),      QStringLiteral("--category-col"), QStringLiteral("--period"),
    QStringLiteral("--format"),          QStringLiteral("--year"),         QStringLiteral("--pdf"),
    QStringLiteral("--csv"),
};

const QStringList openTargets = {QStringLiteral("money-in"), QStringLiteral("money-out"), QStringLiteral("import"),
                                 QStringLiteral("bills")};

// The arguments with the global options taken out.
struct Split
{
    QString dir;
    bool help = false;
    bool version = false;
    QString open;
    int passphraseFd = -1; // --passphrase-fd; -1 for standard input
    QString error;
    QStringList rest; // the command and its own arguments
};

Split split(const QStringList &arguments)
{
    Split s;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &a = arguments.at(i);
        if (a == QLatin1String("--data-dir")) {
            if (i + 1 >= arguments.size())
                s.error = QStringLiteral("--data-dir needs a folder.");
            else
                s.dir = QDir(arguments.at(++i)).absolutePath();
        } else if (a == QLatin1String("--renderer")) {
            // Read again by the window; here only checked.
            const QString value = i + 1 < arguments.size() ? arguments.at(++i) : QString();
            if (value != QLatin1String("software") && value != QLatin1String("gpu"))
                s.error = QStringLiteral("--renderer is software or gpu.");
        } else if (a == QLatin1String("--open")) {
            s.open = i + 1 < arguments.size() ? arguments.at(++i) : QString();
            if (!openTargets.contains(s.open))
                s.error = QStringLiteral("--open is money-in, money-out, import or bills.");
        } else if (a == QLatin1String("--passphrase-fd")) {
            bool number = false;
            s.passphraseFd = i + 1 < arguments.size() ? arguments.at(++i).toInt(&number) : -1;
            if (!number || s.passphraseFd < 0)
                s.error = QStringLiteral("--passphrase-fd needs the number of an open file descriptor.");
        } else if (a == QLatin1String("--help")) {
            s.help = true;
        } else if (a == QLatin1String("--version")) {
            s.version = true;
        } else {
            s.rest.append(a);
            if (valueOptions.contains(a) && i + 1 < arguments.size())
                s.rest.append(arguments.at(++i));
        }
    }
    return s;
}

// One line from `in`, without its line break; on a terminal the typing is not shown.
QString readPassword(std::FILE *in, std::FILE *err)
{
    const int fd = ::fileno(in);
    termios saved{};
    const bool terminal = ::isatty(fd) && ::tcgetattr(fd, &saved) == 0;
    if (terminal) {
        std::fputs("Password to open Coinhall: ", err);
        std::fflush(err);
        termios quiet = saved;
        quiet.c_lflag &= ~tcflag_t(ECHO);
        ::tcsetattr(fd, TCSAFLUSH, &quiet);
    }
    // A byte at a time from the descriptor itself: what follows the line (a passphrase
    // for encrypt) stays there for the next reader rather than in a stdio buffer.
    QByteArray line;
    for (char c = 0; ::read(fd, &c, 1) == 1 && c != '\n';)
        line.append(c);
    if (terminal) {
        ::tcsetattr(fd, TCSAFLUSH, &saved);
        std::fputc('\n', err);
    }
    if (line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line);
}

// The window's lock, for the command line: with "requireUnlock" on, nothing of the
// books is read or changed until the owner's password is given. A computer that
// cannot check its owner opens, as the window does.
bool unlocked(const CommandLineUnlock &unlock, std::FILE *err)
{
    if (!Store::askForUnlock())
        return true;
    std::shared_ptr<Authenticator> authenticator = unlock.authenticator;
    if (!authenticator)
        authenticator = makePlatformAuthenticator();
    if (!authenticator || !authenticator->canEvaluate())
        return true;
    const QString password = readPassword(unlock.in, err);
    // No password is no attempt: failed-login counting would hold it against the owner.
    if (!password.isEmpty()) {
        // The answer may come on another thread; nothing else runs meanwhile.
        auto answer = std::make_shared<std::promise<bool>>();
        std::future<bool> opened = answer->get_future();
        authenticator->evaluate(QStringLiteral("Open your Coinhall"), password,
                                [answer](bool ok) { answer->set_value(ok); });
        if (opened.get())
            return true;
    }
    print(err, QStringLiteral("That password did not open Coinhall, so nothing was read or changed."));
    return false;
}

// Encrypted books are opened with their passphrase before the command runs, once: a
// wrong one stops here, with nothing read. The passphrase stands in for the account
// password. False when the command must not go on.
bool unsealed(const QString &dir, int fd, std::FILE *err)
{
    std::optional<Sealed::Secret> read = Sealed::Secret::readLine(fd, "Passphrase of your books: ");
    if (!read) {
        print(err, QStringLiteral("Your books are encrypted and no passphrase was given, so nothing was read."));
        return false;
    }
    auto passphrase = std::make_shared<const Sealed::Secret>(std::move(*read));
    QFile file(dir + QLatin1Char('/') + moneyFileName);
    if (!file.open(QIODevice::ReadOnly)) {
        print(err, QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(file.fileName()), file.errorString()));
        return false;
    }
    const QByteArray header = file.read(qint64(Sealed::headerSize));
    const std::optional<Sealed::Header> sound = Sealed::readHeader(header);
    if (!sound) { // damaged: the command says so when it reads the file
        unsealing().passphrase = passphrase;
        return true;
    }
    std::shared_ptr<const Sealed::Key> key = Sealed::Key::forHeader(*passphrase, *sound);
    if (!key || !key->opens(*sound)) {
        print(err, QStringLiteral("That passphrase did not open your books, so nothing was read or changed."));
        return false;
    }
    unsealing() = {passphrase, key};
    return true;
}

bool booksSealed(const QString &dir)
{
    QFile file(dir + QLatin1Char('/') + moneyFileName);
    return file.open(QIODevice::ReadOnly) && Sealed::looksSealed(file.read(8));
}

} // namespace

bool wantsSelfTest(const QStringList &arguments)
{
    return arguments.contains(QStringLiteral("--selftest"));
}

bool wantsCommandLine(const QStringList &arguments)
{
    // Other words are left to the window (toolkit options such as "-platform offscreen").
    const Split s = split(arguments);
    return s.help || s.version || !s.error.isEmpty() ||
           std::any_of(s.rest.begin(), s.rest.end(), [](const QString &a) { return commands.contains(a); });
}

QString dataDirArgument(const QStringList &arguments)
{
    return split(arguments).dir;
}

QString openArgument(const QStringList &arguments)
{
    return split(arguments).open;
}

int runCommandLine(const QStringList &arguments, std::FILE *out, std::FILE *err, const CommandLineUnlock &unlock)
{
    Split s = split(arguments);
    if (!s.error.isEmpty())
        return usageError(err, s.error);
    if (s.help) {
        std::fputs(usage, out);
        return ExitStatus::ok;
    }
    if (s.version) {
        print(out, AppInfo::displayName() + QStringLiteral(" " COINHALL_VERSION));
        return ExitStatus::ok;
    }
    if (s.rest.isEmpty()) {
        std::fputs(usage, err);
        return ExitStatus::usage;
    }
    const QString dir = s.dir.isEmpty() ? Store::defaultDir() : s.dir;
    const QString command = s.rest.takeFirst();
    // The reminder service runs unattended and shows only what the window planned.
    if (command == QLatin1String("remind"))
        return remind(dir, s.rest, err);
    unsealing() = {};
    const int in = ::fileno(unlock.in);
    if (commands.contains(command)) {
        if (!booksSealed(dir)) {
            if (!unlocked(unlock, err))
                return ExitStatus::failed;
        } else if (command != QLatin1String("check") || s.passphraseFd >= 0) {
            if (!unsealed(dir, s.passphraseFd >= 0 ? s.passphraseFd : in, err))
                return ExitStatus::failed;
        }
    }
    if (command == QLatin1String("encrypt"))
        return encrypt(dir, s.rest, in, out, err);
    if (command == QLatin1String("decrypt"))
        return decrypt(dir, s.rest, out, err);
    if (command == QLatin1String("import"))
        return importFile(dir, s.rest, out, err);
    if (command == QLatin1String("export"))
        return exportFile(dir, s.rest, out, err);
    if (command == QLatin1String("report"))
        return report(dir, s.rest, out, err);
    if (command == QLatin1String("backups"))
        return listBackups(dir, s.rest, out, err);
    if (command == QLatin1String("restore"))
        return restore(dir, s.rest, out, err);
    if (command == QLatin1String("check") && s.rest.isEmpty())
        return check(dir, out, err);
    return usageError(
        err,
        QStringLiteral("Unknown command or option: %1").arg((QStringList{command} + s.rest).join(QLatin1Char(' '))));
}
