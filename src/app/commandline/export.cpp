// coinhall export: every transaction as CSV.
#include "commands.h"

namespace CommandLine {

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

} // namespace CommandLine
