// coinhall backups and coinhall restore: the daily backups, and putting one back.
#include "commands.h"

#include "store/backups.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace CommandLine {

namespace {

QString backupsFolder(const QString &dir)
{
    return dir + QStringLiteral("/Backups");
}

} // namespace

// One line per backup, newest first: "2025-03-04  48 KB  312 transactions".
int listBackups(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    if (!arguments.isEmpty())
        return usageError(err, QStringLiteral("backups takes no arguments."));
    std::vector<Backup> backups = Backups::list(backupsFolder(dir));
    if (backups.empty()) {
        print(out, QStringLiteral("There are no backups in %1.").arg(QDir::toNativeSeparators(backupsFolder(dir))));
        return ExitStatus::ok;
    }
    qsizetype sizeWidth = 0;
    for (const Backup &backup : backups)
        sizeWidth = std::max(sizeWidth, Backups::sizeText(backup.bytes).size());
    // Each line as soon as its backup is read: a large book's take a moment each.
    for (Backup &backup : backups) {
        Backups::read(backup, unsealing().key.get());
        print(out, backup.day.toString(Qt::ISODate) + QStringLiteral("  ") +
                       Backups::sizeText(backup.bytes).rightJustified(sizeWidth) + QStringLiteral("  ") +
                       Backups::countText(backup));
        std::fflush(out);
    }
    return ExitStatus::ok;
}

int restore(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    const Options options(arguments, {}, {});
    if (!options.error().isEmpty())
        return usageError(err, options.error());
    if (options.words().size() != 1)
        return usageError(err, QStringLiteral("restore needs the date of one backup, as yyyy-MM-dd."));
    const QString typed = options.words().first();
    const QDate day = QDate::fromString(typed, QStringLiteral("yyyy-MM-dd"));
    if (!day.isValid())
        return usageError(err,
                          QStringLiteral("\"%1\" is not a date as yyyy-MM-dd, for example 2025-03-04.").arg(typed));
    // Answered before the books are opened for writing, which may change the folder.
    if (!QFileInfo::exists(backupsFolder(dir) + QLatin1Char('/') + Backups::fileName(day))) {
        print(err, QStringLiteral("There is no backup of %1. coinhall backups lists them.").arg(typed));
        return ExitStatus::usage;
    }

    int status = ExitStatus::ok;
    const std::unique_ptr<Store> store = openForWriting(dir, err, status);
    if (!store)
        return status;
    if (!store->loadError().isEmpty())
        print(err, store->status()); // the money file found could not be read; where it was kept
    const Saved restored = store->restoreBackup(day);
    if (!restored) {
        print(err, store->status());
        return ExitStatus::failed;
    }
    print(out, store->status()); // "Restored your books from the backup of <day>."
    return ExitStatus::ok;
}

} // namespace CommandLine
