// coinhall import: bank files of any format into an account, with a preview of what
// each adds.
#include "commands.h"

#include "bankfiles/bankfile.h"

#include <QFileInfo>

#include <array>
#include <utility>

namespace CommandLine {

namespace {

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

void printPreview(const BankImport::Conversion &conversion, std::FILE *out)
{
    print(out, QStringLiteral("Preview · %1 new · %2 already in · %3 unreadable")
                   .arg(conversion.newTransactions.size())
                   .arg(conversion.skipped)
                   .arg(conversion.bad));
}

} // namespace

int importFile(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    QStringList valued{QStringLiteral("--account")};
    for (const auto &[name, field] : columnOptions)
        valued.append(QString::fromLatin1(name));
    const Options options(
        arguments, {QStringLiteral("--flip"), QStringLiteral("--dry-run"), QStringLiteral("--day-first")}, valued);
    if (!options.error().isEmpty())
        return usageError(err, options.error());
    if (options.words().isEmpty())
        return usageError(err, QStringLiteral("import needs a bank file."));
    if (!options.has(QStringLiteral("--account")))
        return usageError(err, QStringLiteral("import needs --account NAME: the account the lines go into."));
    const QString accountName = options.value(QStringLiteral("--account"));
    const bool flip = options.has(QStringLiteral("--flip"));

    // Every file is read before anything is imported: one that cannot be changes nothing.
    std::vector<BankFile> files;
    for (const QString &path : options.words()) {
        BankFile file = BankFile::fromFile(path);
        const QString name = QFileInfo(path).fileName();
        if (!file.error().isEmpty()) {
            print(err, QStringLiteral("Coinhall can't read %1: %2.").arg(name, file.error()));
            return ExitStatus::failed;
        }
        if (CSVImporter *csv = file.csv()) {
            const QString columnError = overrideColumns(options, *csv);
            if (!columnError.isEmpty())
                return usageError(err, columnError);
        }
        if (file.datesAmbiguous()) {
            file.setDayFirst(options.has(QStringLiteral("--day-first")));
            if (!options.has(QStringLiteral("--day-first")))
                print(err, QStringLiteral("The dates of %1 read as well month first as day first; they were read "
                                          "month first (--day-first reads them the other way).")
                               .arg(name));
        }
        files.push_back(std::move(file));
    }
    // One line about each file that is no CSV: what was found in it.
    auto describe = [&](size_t i) {
        if (!files[i].csv() || files.size() > 1)
            print(out, QFileInfo(options.words()[qsizetype(i)]).fileName() + QStringLiteral(" · ") + files[i].summary());
    };

    // The account is looked for first in the books as they are, so that a wrong
    // name is answered without opening the money file for writing.
    {
        const std::unique_ptr<Reading> reading = openForReading(readMoneyFile(dir), err);
        if (!reading->store)
            return reading->status;
        const std::optional<Account> account = activeAccountNamed(*reading->store, accountName);
        if (!account)
            return unknownAccount(*reading->store, accountName, err);
        for (size_t i = 0; i < files.size(); ++i) {
            const QString refusal = files[i].refusal(reading->store->book().currency);
            if (!refusal.isEmpty()) {
                print(err, QStringLiteral("Coinhall can't import %1: %2.")
                               .arg(QFileInfo(options.words()[qsizetype(i)]).fileName(), refusal));
                return ExitStatus::failed;
            }
        }
        if (options.has(QStringLiteral("--dry-run"))) {
            for (size_t i = 0; i < files.size(); ++i) {
                describe(i);
                printPreview(files[i].preview(account->id, reading->store->book().transactions, flip), out);
            }
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
    for (size_t i = 0; i < files.size(); ++i) {
        // Each against the Book with the files before it: overlapping downloads add a line once.
        const BankImport::Conversion conversion = files[i].preview(account->id, store->book().transactions, flip);
        describe(i);
        printPreview(conversion, out);
        const Saved imported = store->importTransactions(conversion.newTransactions, options.words()[qsizetype(i)]);
        if (!imported) {
            print(err, imported.error);
            return ExitStatus::failed;
        }
        print(out, store->status()); // "Imported <n> transactions from <file name>."
    }
    return ExitStatus::ok;
}

} // namespace CommandLine
