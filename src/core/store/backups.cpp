// The daily backups: listing them with their counts, and putting one back.
#include "store/backups.h"

#include "model/money.h"
#include "model/moneyfile.h"
#include "store/atomicfile.h"
#include "store/store.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLocale>
#include <QPointer>
#include <QRegularExpression>
#include <QThreadPool>

#include <algorithm>

namespace {

const QString moneyFileName = QStringLiteral("coinhall.json");
constexpr auto ownerOnlyFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// What every shelf of the process has read, by path.
struct Known
{
    std::mutex mutex;
    QHash<QString, Backup> backups;
};

Known &known()
{
    static Known k;
    return k;
}

} // namespace

namespace Backups {

QString fileName(const QDate &day)
{
    return QStringLiteral("coinhall-") + day.toString(QStringLiteral("yyyy-MM-dd")) + QStringLiteral(".json");
}

std::vector<Backup> list(const QString &folder)
{
    static const QRegularExpression name(QStringLiteral("^coinhall-(\\d{4}-\\d\\d-\\d\\d)\\.json$"));
    std::vector<Backup> backups;
    const QFileInfoList files = QDir(folder).entryInfoList({QStringLiteral("coinhall-*.json")}, QDir::Files);
    for (const QFileInfo &file : files) {
        const QRegularExpressionMatch match = name.match(file.fileName());
        const QDate day = match.hasMatch() ? QDate::fromString(match.captured(1), Qt::ISODate) : QDate();
        if (day.isValid())
            backups.push_back({day, file.filePath(), file.size(), file.lastModified()});
    }
    std::sort(backups.begin(), backups.end(), [](const Backup &a, const Backup &b) { return a.day > b.day; });
    return backups;
}

void read(Backup &backup, const Sealed::Key *key)
{
    QFile file(backup.path);
    if (!file.open(QIODevice::ReadOnly)) {
        backup.error = file.errorString();
        return;
    }
    if (Sealed::looksSealed(file.peek(8))) {
        backup.sealed = true;
        QByteArray plain;
        const QByteArray bytes = file.readAll();
        if (!key) // told apart from damage without the key: whole, or not
            backup.error = Sealed::wholeness(bytes);
        else if (Sealed::open(bytes, *key, &plain, &backup.error) != Sealed::Opened::ok && backup.error.isEmpty())
            backup.error = QStringLiteral("encrypted with another passphrase");
        if (!key || !backup.error.isEmpty())
            return;
        const MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(plain.constData(), size_t(plain.size())));
        if (decoded.book)
            backup.transactions = qsizetype(decoded.book->transactions.size());
        else
            backup.error = decoded.error;
        return;
    }
    const MoneyFile::Decoded decoded = MoneyFile::decodeFile(file);
    if (decoded.book)
        backup.transactions = qsizetype(decoded.book->transactions.size());
    else
        backup.error = decoded.error;
}

QString dayText(const QDate &day)
{
    // Noon, so that no time zone moves it to another day.
    return chDate(Instant::fromDateTime(QDateTime(day, QTime(12, 0))));
}

QString sizeText(qint64 bytes)
{
    // Units of 1,000, as the file browsers of the desktop count them.
    if (bytes == 1)
        return QStringLiteral("1 byte");
    if (bytes < 1000)
        return QStringLiteral("%1 bytes").arg(bytes);
    if (bytes < 999500)
        return QStringLiteral("%1 KB").arg((bytes + 500) / 1000);
    if (bytes < 9950000)
        return QStringLiteral("%1 MB").arg(QLocale().toString(double(bytes) / 1e6, 'f', 1));
    return QStringLiteral("%1 MB").arg(QLocale().toString((bytes + 500000) / 1000000));
}

QString countText(const Backup &backup)
{
    if (!backup.error.isEmpty())
        return QStringLiteral("cannot be read");
    if (backup.sealed && !backup.transactions)
        return QStringLiteral("encrypted");
    if (!backup.transactions)
        return {};
    return *backup.transactions == 1
               ? QStringLiteral("1 transaction")
               : QStringLiteral("%1 transactions").arg(QLocale().toString(qint64(*backup.transactions)));
}

} // namespace Backups

BackupShelf::BackupShelf(QObject *parent)
    : QObject(parent)
{}

BackupShelf::~BackupShelf()
{
    const std::lock_guard lock(m_queue->mutex);
    m_queue->stopped = true;
    m_queue->waiting.clear();
}

void BackupShelf::refresh(const QString &folder, std::shared_ptr<const Sealed::Key> key)
{
    m_backups = Backups::list(folder);
    std::deque<Backup> unread;
    {
        const std::lock_guard lock(known().mutex);
        for (Backup &backup : m_backups) {
            const auto found = known().backups.constFind(backup.path);
            // An encrypted backup counted without the key is read again once there is one.
            if (found != known().backups.cend() && found->bytes == backup.bytes && found->modified == backup.modified &&
                !(key && found->sealed && !found->transactions))
                backup = *found;
            else
                unread.push_back(backup);
        }
    }
    Q_EMIT changed();

    const std::lock_guard lock(m_queue->mutex);
    m_queue->waiting = std::move(unread);
    if (m_queue->reading || m_queue->waiting.empty())
        return;
    m_queue->reading = true;
    QThreadPool::globalInstance()->start([queue = m_queue, shelf = QPointer<BackupShelf>(this), key] {
        for (;;) {
            Backup backup;
            {
                const std::lock_guard lock(queue->mutex);
                if (queue->stopped || queue->waiting.empty()) {
                    queue->reading = false;
                    return;
                }
                backup = std::move(queue->waiting.front());
                queue->waiting.pop_front();
            }
            Backups::read(backup, key.get());
            {
                const std::lock_guard lock(known().mutex);
                known().backups.insert(backup.path, backup);
            }
            // The shelf is looked for on its own thread, where it may be gone by then.
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [shelf, backup] {
                    if (shelf)
                        shelf->take(backup);
                },
                Qt::QueuedConnection);
        }
    });
}

void BackupShelf::take(const Backup &read)
{
    for (Backup &backup : m_backups) {
        if (backup.path == read.path && backup.bytes == read.bytes && backup.modified == read.modified) {
            backup = read;
            Q_EMIT changed();
        }
    }
}

Saved Store::restoreBackup(const QDate &day)
{
    const auto refuse = [this](const QString &why) {
        setStatus(why);
        return Saved{};
    };
    const QString when = Backups::dayText(day);
    // The reasons of the reader and of the file system, inside a sentence of this one's.
    const auto reasonOf = [](QString reason) { return reason.endsWith(QLatin1Char('.')) ? reason.chopped(1) : reason; };
    if (loading())
        return refuse(tr("Your books are still opening, so no backup was restored."));
    if (m_fromNewer)
        return refuse(tr("This money file was written by a newer Coinhall, so no backup was restored."));
    if (!writable())
        return refuse(tr("Coinhall is already open with this money file, so no backup was restored."));

    const QString path = backupsFolder() + QLatin1Char('/') + Backups::fileName(day);
    if (!QFileInfo::exists(path))
        return refuse(tr("There is no backup of %1.").arg(when));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refuse(
            tr("The backup of %1 cannot be read: %2. Nothing was changed.").arg(when, reasonOf(file.errorString())));
    QString problem;
    const QByteArray plain = unseal(file.readAll(), &problem);
    if (!problem.isEmpty())
        return refuse(tr("The backup of %1 cannot be read: %2. Nothing was changed.").arg(when, reasonOf(problem)));
    MoneyFile::Decoded decoded = MoneyFile::decode(std::string_view(plain.constData(), size_t(plain.size())));
    if (!decoded.book)
        return refuse(
            tr("The backup of %1 cannot be read: %2. Nothing was changed.").arg(when, reasonOf(decoded.error)));
    if (decoded.book->version > MoneyFile::version)
        return refuse(tr("The backup of %1 was written by a newer Coinhall, so it was not restored.").arg(when));

    // The books as they are now are kept beside the money file before anything is
    // replaced; without that copy there is no restore.
    finishSaving(); // the file on disk is then the last Book written, or its write failed
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString keptPath = m_dir + QLatin1Char('/') + moneyFileName + QStringLiteral(".before-restore-") + stamp;
    for (int n = 2; QFileInfo::exists(keptPath); ++n)
        keptPath = m_dir + QLatin1Char('/') + moneyFileName + QStringLiteral(".before-restore-%1-%2").arg(stamp).arg(n);
    QString reason;
    bool kept = true;
    if (!m_saveError.isEmpty()) // the file lags behind the Book: keep the Book the user sees
        kept = writeFileAtomically(keptPath, fileBytes(m_book, m_key.get()), &reason, ownerOnlyFile);
    else if (QFileInfo::exists(moneyFilePath()))
        kept = copyFileAtomically(moneyFilePath(), keptPath, &reason, ownerOnlyFile);
    if (!kept)
        return refuse(tr("Could not keep your books as they are before restoring: %1. Nothing was changed.")
                          .arg(reasonOf(reason)));

    Money::setCode(decoded.book->currency); // before the screens hear of the Book
    const Saved saved = setBook(std::move(*decoded.book));
    if (saved)
        setStatus(tr("Restored your books from the backup of %1.").arg(when));
    return saved;
}
