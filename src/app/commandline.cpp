#include "commandline.h"

#include "bankfiles/csvimporter.h"
#include "help/helptexts.h"
#include "model/money.h"
#include "model/moneyfile.h"
#include "platform/authenticator.h"
#include "store/store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <future>
#include <memory>
#include <utility>

#include <termios.h>
#include <unistd.h>

namespace {

const char usage[] = R"(Usage: coinhall [--data-dir DIR] [COMMAND [OPTIONS]]
       coinhall --selftest

Without a command, Coinhall opens its window.

Commands:
  import FILE --account NAME [--flip] [--dry-run] [COLUMNS]
      Bring a bank's CSV download into the active account named NAME, as the
      import screen does: lines already in the books are skipped, categories are
      guessed from your earlier lines and then from the keyword table. Prints
      "Preview · <n> new · <s> already in · <b> unreadable", then imports and
      prints "Imported <n> transactions from <file name>.".
      --flip      negate every amount (card files that show spending as money in)
      --dry-run   show the preview only; nothing is changed
      COLUMNS override the guessed column of each kind, as a column number
      counted from 0 or "none" for no such column:
      --date-col, --description-col, --amount-col, --debit-col, --credit-col,
      --category-col
  export FILE
      Write every transaction, oldest first, to FILE as CSV (replacing it).
  report [--period PERIOD] [--tsv]
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
  check
      Read the money file without changing anything: prints "OK: <a> accounts,
      <t> transactions, <b> bills, <r> royalties", or the first problem found
      with its place.

Options:
  --data-dir DIR  Use DIR as the application folder instead of the default
                  (the folder "QFS Coinhall" in ~/.local/share).
  --selftest      Run the built-in checks, print the report and exit with 0 when
                  all pass, else 1. Looks at nothing else and touches no user folder.
  --help          Show this text.
  --version       Show the version.

When Coinhall is set to ask for your password when it opens, every command
first asks for it (one line on standard input) and does nothing without it.

import saves the money file as the window does: atomically, after the day's
backup. While a running Coinhall holds the money file, import refuses and
changes nothing. check, report, export and import --dry-run never change the
application folder.

Exit status: 0 done; 1 a file could not be read or saved, the money file is
unsound, or the password did not open Coinhall; 2 wrong usage or no such account; 3 the money file is held by a running
Coinhall.
)";

const QStringList commands = {QStringLiteral("import"), QStringLiteral("export"), QStringLiteral("report"),
                              QStringLiteral("check")};

const QString moneyFileName = QStringLiteral("coinhall.json");

// The options that take a value: their value is never read as a command or option.
const QStringList valueOptions = {
    QStringLiteral("--data-dir"),        QStringLiteral("--account"),      QStringLiteral("--date-col"),
    QStringLiteral("--description-col"), QStringLiteral("--amount-col"),   QStringLiteral("--debit-col"),
    QStringLiteral("--credit-col"),      QStringLiteral("--category-col"), QStringLiteral("--period"),
};

void print(std::FILE *to, const QString &text)
{
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), to);
}

int usageError(std::FILE *err, const QString &problem)
{
    print(err, problem);
    print(err, QStringLiteral("See coinhall --help."));
    return ExitStatus::usage;
}

// The arguments with the global options taken out.
struct Split
{
    QString dir;
    bool help = false;
    bool version = false;
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

// A subcommand's own arguments: flags, options with a value, and plain words.
class Options
{
public:
    Options(const QStringList &arguments, const QStringList &flags, const QStringList &valued)
    {
        for (qsizetype i = 0; i < arguments.size() && m_error.isEmpty(); ++i) {
            const QString &a = arguments.at(i);
            if (flags.contains(a)) {
                m_values.insert(a, QString());
            } else if (valued.contains(a)) {
                if (i + 1 >= arguments.size())
                    m_error = QStringLiteral("%1 needs a value.").arg(a);
                else
                    m_values.insert(a, arguments.at(++i));
            } else if (a.startsWith(QLatin1String("--"))) {
                m_error = QStringLiteral("Unknown option: %1").arg(a);
            } else {
                m_words.append(a);
            }
        }
    }

    QString error() const { return m_error; }
    bool has(const QString &name) const { return m_values.contains(name); }
    QString value(const QString &name) const { return m_values.value(name); }
    const QStringList &words() const { return m_words; }

private:
    QHash<QString, QString> m_values;
    QStringList m_words;
    QString m_error;
};

// The money file as it is on disk: absent, a Book, or why it cannot be used.
struct MoneyFileState
{
    QString path;
    bool exists = false;
    std::optional<Book> book;
    QString readError;   // the file could not be read
    QString decodeError; // the file was read but is not a sound money file

    bool usable() const { return !exists || book.has_value(); }
    QString problem() const
    {
        return readError.isEmpty() ? QStringLiteral("The money file %1 could not be used: %2")
                                         .arg(QDir::toNativeSeparators(path), decodeError)
                                   : QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), readError);
    }
};

// Reads and decodes the money file without changing anything.
MoneyFileState readMoneyFile(const QString &dir)
{
    MoneyFileState state;
    state.path = dir + QLatin1Char('/') + moneyFileName;
    QFile file(state.path);
    state.exists = file.exists();
    if (!state.exists)
        return state;
    if (!file.open(QIODevice::ReadOnly)) {
        state.readError = file.errorString();
        return state;
    }
    const QByteArray bytes = file.readAll();
    MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size())));
    state.book = std::move(decoded.book);
    state.decodeError = decoded.error;
    return state;
}

// A Store for questions only. It answers from a Book read out of the application
// folder, but lives in a private temporary folder of its own, so its start (the
// folder, the lock, the day's backup) creates and changes nothing where the user's
// books are. The Book is set in place: there is nothing to save and no one to tell.
class ReadingStore : public Store
{
public:
    ReadingStore(const QString &scratch, std::optional<Book> book)
        : Store(StoreOptions{scratch})
    {
        // Without a money file the Book stays the new one the Store made, with its
        // default accounts, as the window would show it.
        if (book) {
            mutableBook() = std::move(*book);
            Money::setCode(this->book().currency);
        }
    }
};

// The books of a reading command, or the exit status when they cannot be had.
struct Reading
{
    QTemporaryDir scratch;
    std::unique_ptr<ReadingStore> store;
    int status = ExitStatus::ok;
};

std::unique_ptr<Reading> openForReading(MoneyFileState state, std::FILE *err)
{
    auto reading = std::make_unique<Reading>();
    if (!state.usable()) {
        print(err, state.problem());
        reading->status = ExitStatus::failed;
    } else if (!reading->scratch.isValid()) {
        print(err, QStringLiteral("Could not make a temporary folder: %1").arg(reading->scratch.errorString()));
        reading->status = ExitStatus::failed;
    } else {
        reading->store = std::make_unique<ReadingStore>(reading->scratch.path(), std::move(state.book));
    }
    return reading;
}

// The Store on the application folder itself, with the window's save, backup and
// lock rules; null, with `status` set and the reason told, when another Coinhall holds
// the money file or a newer Coinhall wrote it. Open it only on a
// money file found usable (or absent): one that cannot be decoded would be set
// aside for a new Book.
std::unique_ptr<Store> openForWriting(const QString &dir, std::FILE *err, int &status)
{
    auto store = std::make_unique<Store>(StoreOptions{dir});
    if (store->writable())
        return store;
    if (store->fromNewerVersion()) {
        print(err, store->status());
        status = ExitStatus::failed;
        return nullptr;
    }
    status = ExitStatus::heldByWindow;
    print(err, QStringLiteral("Coinhall is open with the money file in %1, so nothing was changed. "
                              "Close Coinhall and try again.")
                   .arg(QDir::toNativeSeparators(store->dir())));
    return nullptr;
}

// -- unlock --------------------------------------------------------------------

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
    QByteArray line;
    for (int c = std::fgetc(in); c != EOF && c != '\n'; c = std::fgetc(in))
        line.append(char(c));
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
    const QSettings preferences(AppInfo::organizationName(), AppInfo::applicationName());
    if (!preferences.value(QStringLiteral("requireUnlock"), false).toBool())
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

// -- check ---------------------------------------------------------------------

// "OK: 2 accounts, 10 transactions, 1 bills, 0 royalties", or the first problem.
int check(const QString &dir, std::FILE *out, std::FILE *err)
{
    const MoneyFileState state = readMoneyFile(dir);
    if (!state.exists) {
        print(err, QStringLiteral("There is no money file at %1.").arg(QDir::toNativeSeparators(state.path)));
        return ExitStatus::failed;
    }
    if (!state.readError.isEmpty()) {
        print(err, state.problem());
        return ExitStatus::failed;
    }
    if (!state.book) {
        print(out, state.decodeError);
        return ExitStatus::failed;
    }
    const Book &book = *state.book;
    print(out, QStringLiteral("OK: %1 accounts, %2 transactions, %3 bills, %4 royalties")
                   .arg(book.accounts.size())
                   .arg(book.transactions.size())
                   .arg(book.bills.size())
                   .arg(book.royalties.size()));
    return ExitStatus::ok;
}

// -- import --------------------------------------------------------------------

// The column options and the mapping field each one sets.
const std::array<std::pair<const char *, std::optional<int> CSVImporter::Mapping::*>, 6> columnOptions{{
    {"--date-col", &CSVImporter::Mapping::date},
    {"--description-col", &CSVImporter::Mapping::description},
    {"--amount-col", &CSVImporter::Mapping::amount},
    {"--debit-col", &CSVImporter::Mapping::debit},
    {"--credit-col", &CSVImporter::Mapping::credit},
    {"--category-col", &CSVImporter::Mapping::category},
}};

// Applies the column options to the importer's guess; an error text when one is wrong.
QString overrideColumns(const Options &options, CSVImporter &importer)
{
    CSVImporter::Mapping mapping = importer.mapping();
    const qsizetype columns = importer.headers().size();
    for (const auto &[name, field] : columnOptions) {
        const QString option = QString::fromLatin1(name);
        if (!options.has(option))
            continue;
        const QString value = options.value(option);
        if (value == QLatin1String("none")) {
            mapping.*field = std::nullopt;
            continue;
        }
        bool isNumber = false;
        const int column = value.toInt(&isNumber);
        if (!isNumber || column < 0 || value.startsWith(QLatin1Char('+')))
            return QStringLiteral("%1 needs a column number counted from 0, or none; not \"%2\".").arg(option, value);
        if (column >= columns)
            return QStringLiteral("%1 %2: the file's header has %3 columns, numbered 0 to %4.")
                .arg(option, value)
                .arg(columns)
                .arg(columns - 1);
        mapping.*field = column;
    }
    importer.setMapping(mapping);
    return {};
}

std::optional<Account> activeAccountNamed(const Store &store, const QString &name)
{
    for (const Account &account : store.activeAccounts())
        if (account.name == name)
            return account;
    return std::nullopt;
}

int unknownAccount(const Store &store, const QString &name, std::FILE *err)
{
    const std::vector<Account> accounts = store.activeAccounts();
    if (accounts.empty()) {
        print(err,
              QStringLiteral("There is no active account named \"%1\", and there are no active accounts.").arg(name));
        return ExitStatus::usage;
    }
    print(err, QStringLiteral("There is no active account named \"%1\". The active accounts are:").arg(name));
    for (const Account &account : accounts)
        print(err, QStringLiteral("  ") + account.name);
    return ExitStatus::usage;
}

void printPreview(const CSVImporter::Conversion &conversion, std::FILE *out)
{
    print(out, QStringLiteral("Preview · %1 new · %2 already in · %3 unreadable")
                   .arg(conversion.newTransactions.size())
                   .arg(conversion.skipped)
                   .arg(conversion.bad));
}

int importFile(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    QStringList valued{QStringLiteral("--account")};
    for (const auto &[name, field] : columnOptions)
        valued.append(QString::fromLatin1(name));
    const Options options(arguments, {QStringLiteral("--flip"), QStringLiteral("--dry-run")}, valued);
    if (!options.error().isEmpty())
        return usageError(err, options.error());
    if (options.words().size() != 1)
        return usageError(err, QStringLiteral("import needs one bank file."));
    if (!options.has(QStringLiteral("--account")))
        return usageError(err, QStringLiteral("import needs --account NAME: the account the lines go into."));
    const QString file = options.words().first();
    const QString accountName = options.value(QStringLiteral("--account"));
    const bool flip = options.has(QStringLiteral("--flip"));

    std::optional<CSVImporter> importer = CSVImporter::fromFile(file);
    if (!importer) {
        print(err, QStringLiteral("That file couldn't be read as a bank CSV."));
        return ExitStatus::failed;
    }
    const QString columnError = overrideColumns(options, *importer);
    if (!columnError.isEmpty())
        return usageError(err, columnError);

    // The account is looked for first in the books as they are, so that a wrong
    // name is answered without opening the money file for writing.
    {
        const std::unique_ptr<Reading> reading = openForReading(readMoneyFile(dir), err);
        if (!reading->store)
            return reading->status;
        const std::optional<Account> account = activeAccountNamed(*reading->store, accountName);
        if (!account)
            return unknownAccount(*reading->store, accountName, err);
        if (options.has(QStringLiteral("--dry-run"))) {
            printPreview(importer->preview(account->id, reading->store->book().transactions, flip), out);
            return ExitStatus::ok;
        }
    }

    int status = ExitStatus::ok;
    const std::unique_ptr<Store> store = openForWriting(dir, err, status);
    if (!store)
        return status;
    // Found again here: a new Book's default accounts get their ids when the Store starts.
    const std::optional<Account> account = activeAccountNamed(*store, accountName);
    if (!account)
        return unknownAccount(*store, accountName, err);
    const CSVImporter::Conversion conversion = importer->preview(account->id, store->book().transactions, flip);
    printPreview(conversion, out);
    const Saved imported = store->importTransactions(conversion.newTransactions, file);
    if (!imported) {
        print(err, imported.error);
        return ExitStatus::failed;
    }
    print(out, store->status()); // "Imported <n> transactions from <file name>."
    return ExitStatus::ok;
}

// -- export --------------------------------------------------------------------

int exportFile(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    const Options options(arguments, {}, {});
    if (!options.error().isEmpty())
        return usageError(err, options.error());
    if (options.words().size() != 1)
        return usageError(err, QStringLiteral("export needs one file to write."));
    const std::unique_ptr<Reading> reading = openForReading(readMoneyFile(dir), err);
    if (!reading->store)
        return reading->status;
    const Saved written = reading->store->exportCSV(options.words().first());
    if (!written) {
        print(err, written.error);
        return ExitStatus::failed;
    }
    print(out, reading->store->status()); // "Saved <file name>."
    return ExitStatus::ok;
}

// -- report --------------------------------------------------------------------

// The --period names, in the Reports picker's order.
constexpr std::array<std::pair<const char *, ReportPeriod>, 5> periodNames{{
    {"this-month", ReportPeriod::thisMonth},
    {"last-month", ReportPeriod::lastMonth},
    {"this-year", ReportPeriod::thisYear},
    {"last-12-months", ReportPeriod::last12Months},
    {"last-year", ReportPeriod::lastYear},
}};

// A category name on one line of its own.
QString oneLine(QString name)
{
    return name.replace(QLatin1Char('\t'), QLatin1Char(' '))
        .replace(QLatin1Char('\n'), QLatin1Char(' '))
        .replace(QLatin1Char('\r'), QLatin1Char(' '));
}

void printTsv(const PeriodReport &f, std::FILE *out)
{
    auto line = [out](const char *section, const QString &name, const QString &amount) {
        print(out, QString::fromLatin1(section) + QLatin1Char('\t') + oneLine(name) + QLatin1Char('\t') + amount);
    };
    line("income", {}, f.income.toString());
    line("spending", {}, f.spending.toString());
    line("net", {}, (f.income - f.spending).toString());
    line("royalty-share", {}, f.royaltyShare.endsWith(QLatin1Char('%')) ? f.royaltyShare.chopped(1) : QString());
    for (const CategoryLine &row : f.incomeLines)
        line("income-by-category", row.name, row.amount.toString());
    for (const CategoryLine &row : f.spendingLines)
        line("spending-by-category", row.name, row.amount.toString());
}

// One category list as the Reports screen draws it: name, amount, whole percent of
// the total, and for a budgeted category its limit over the period's months.
void printCategoryList(const QString &title, const std::vector<CategoryLine> &lines, std::FILE *out)
{
    print(out, title);
    if (lines.empty()) {
        print(out, QStringLiteral("  Nothing in this period."));
        return;
    }
    qsizetype nameWidth = 0, amountWidth = 0;
    for (const CategoryLine &row : lines) {
        nameWidth = std::max(nameWidth, oneLine(row.name).size());
        amountWidth = std::max(amountWidth, Money::s(row.amount).size());
    }
    for (const CategoryLine &row : lines) {
        QString line = QStringLiteral("  ") + oneLine(row.name).leftJustified(nameWidth) + QStringLiteral("  ") +
                       Money::s(row.amount).rightJustified(amountWidth) + QStringLiteral("  ") +
                       row.percentText.rightJustified(4);
        if (row.limit) {
            line += QStringLiteral("  budget ") + Money::s(*row.limit);
            if (row.over)
                line += QStringLiteral(" (over)");
        }
        print(out, line);
    }
}

void printText(const PeriodReport &f, std::FILE *out)
{
    const QString dates = f.period == ReportPeriod::thisYear
                              ? QStringLiteral("from ") + chDate(f.range.lower)
                              : chDate(f.range.lower) + QStringLiteral(" – ") + chDate(f.range.upper);
    print(out, rawValue(f.period) + QStringLiteral(" · ") + dates);
    print(out, QString());

    const std::array<std::pair<QString, QString>, 4> tiles{{
        {QStringLiteral("Income"), Money::s(f.income)},
        {QStringLiteral("Spending"), Money::s(f.spending)},
        {QStringLiteral("Net"), Money::signed_(f.income - f.spending)},
        {QStringLiteral("Royalties share of income"), f.royaltyShare},
    }};
    qsizetype labelWidth = 0, valueWidth = 0;
    for (const auto &[label, value] : tiles) {
        labelWidth = std::max(labelWidth, label.size());
        valueWidth = std::max(valueWidth, value.size());
    }
    for (const auto &[label, value] : tiles)
        print(out, label.leftJustified(labelWidth) + QStringLiteral("  ") + value.rightJustified(valueWidth));

    print(out, QString());
    printCategoryList(QStringLiteral("Spending by category"), f.spendingLines, out);
    print(out, QString());
    printCategoryList(QStringLiteral("Income by category"), f.incomeLines, out);
}

int report(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    const Options options(arguments, {QStringLiteral("--tsv")}, {QStringLiteral("--period")});
    if (!options.error().isEmpty())
        return usageError(err, options.error());
    if (!options.words().isEmpty())
        return usageError(err, QStringLiteral("report takes no file: %1").arg(options.words().first()));
    ReportPeriod period = ReportPeriod::thisMonth;
    if (options.has(QStringLiteral("--period"))) {
        const QString wanted = options.value(QStringLiteral("--period"));
        const auto known = std::find_if(periodNames.begin(), periodNames.end(),
                                        [&wanted](const auto &entry) { return wanted == QLatin1String(entry.first); });
        if (known == periodNames.end())
            return usageError(err, QStringLiteral("Unknown period \"%1\": use this-month, last-month, this-year, "
                                                  "last-12-months or last-year.")
                                       .arg(wanted));
        period = known->second;
    }

    const std::unique_ptr<Reading> reading = openForReading(readMoneyFile(dir), err);
    if (!reading->store)
        return reading->status;
    const PeriodReport figures = reading->store->periodReport(period);
    if (options.has(QStringLiteral("--tsv")))
        printTsv(figures, out);
    else
        printText(figures, out);
    return ExitStatus::ok;
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
    if (commands.contains(command) && !unlocked(unlock, err))
        return ExitStatus::failed;
    if (command == QLatin1String("import"))
        return importFile(dir, s.rest, out, err);
    if (command == QLatin1String("export"))
        return exportFile(dir, s.rest, out, err);
    if (command == QLatin1String("report"))
        return report(dir, s.rest, out, err);
    if (command == QLatin1String("check") && s.rest.isEmpty())
        return check(dir, out, err);
    return usageError(
        err,
        QStringLiteral("Unknown command or option: %1").arg((QStringList{command} + s.rest).join(QLatin1Char(' '))));
}
