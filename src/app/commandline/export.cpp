// coinhall export: every transaction as CSV, or as a journal for ledger and hledger.
#include "commands.h"

namespace CommandLine {

int exportFile(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    const Options options(arguments, {}, {QStringLiteral("--format")});
    if (!options.error().isEmpty())
        return usageError(err, options.error());
    if (options.words().size() != 1)
        return usageError(err, QStringLiteral("export needs one file to write."));
    const QString format =
        options.has(QStringLiteral("--format")) ? options.value(QStringLiteral("--format")) : QStringLiteral("csv");
    if (format != QLatin1String("csv") && format != QLatin1String("ledger"))
        return usageError(err, QStringLiteral("--format is csv or ledger, not \"%1\".").arg(format));
    const std::unique_ptr<Reading> reading = openForReading(readMoneyFile(dir), err);
    if (!reading->store)
        return reading->status;
    const QString file = options.words().first();
    const Saved written =
        format == QLatin1String("ledger") ? reading->store->exportJournal(file) : reading->store->exportCSV(file);
    if (!written) {
        print(err, written.error);
        return ExitStatus::failed;
    }
    print(out, reading->store->status() + // "Saved <file name>."
                   (unsealing().key ? QStringLiteral(" It is not encrypted, unlike your books.") : QString()));
    return ExitStatus::ok;
}

} // namespace CommandLine
