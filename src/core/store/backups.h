#pragma once
// The daily backups in a Store's Backups folder, as the user sees them listed.

#include <QDate>
#include <QDateTime>
#include <QObject>
#include <QString>

#include "store/sealedfile.h"

#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

// One backup: "Backups/coinhall-<yyyy-MM-dd>.json".
struct Backup
{
    QDate day;
    QString path;
    qint64 bytes = 0;
    QDateTime modified;
    // How many transactions it holds; absent until it is read, and when it cannot be read.
    std::optional<qsizetype> transactions;
    // Why it cannot be read; empty when it can, and until it is read.
    QString error;
    // Encrypted: without the key only whether it is whole is known.
    bool sealed = false;

    bool read() const { return transactions || !error.isEmpty(); }
};

namespace Backups {

// The file name of the backup of `day`: "coinhall-2025-03-04.json".
QString fileName(const QDate &day);
// The backups in `folder`, newest first, as the folder lists them (nothing read yet).
// Other files there are not backups and are left out.
std::vector<Backup> list(const QString &folder);
// Reads `backup` to count its transactions, or to learn why it cannot be read; an
// encrypted one is opened with `key`, and without it only checked to be whole.
void read(Backup &backup, const Sealed::Key *key = nullptr);
// The day as the app writes dates: "Mar 4, 2025".
QString dayText(const QDate &day);
// A size as people read it: "812 bytes", "48 KB", "1.2 MB", "104 MB".
QString sizeText(qint64 bytes);
// "312 transactions", "1 transaction", "encrypted", "cannot be read"; empty until it is read.
QString countText(const Backup &backup);

} // namespace Backups

// The backups of one folder with their transaction counts. The counts are read on a
// thread of the pool, one backup at a time, so that a window listing thirty backups of
// a large book never waits for them: each comes in with `changed`. What was read is
// kept for the whole process, since a backup is written whole once and never changed.
class BackupShelf : public QObject
{
    Q_OBJECT

public:
    explicit BackupShelf(QObject *parent = nullptr);
    // Stops reading after the backup being read, which is kept for the next shelf.
    ~BackupShelf() override;

    // Lists `folder` again. A backup read before, unchanged since (size and time), keeps
    // its count; the others are read in the background.
    // Encrypted ones are opened with `key`.
    void refresh(const QString &folder, std::shared_ptr<const Sealed::Key> key = nullptr);
    // Newest first; those not read yet have neither a count nor an error.
    const std::vector<Backup> &backups() const { return m_backups; }

Q_SIGNALS:
    // The list, or a count in it, changed.
    void changed();

private:
    // What the shelf and its reading share; the reading may outlive the shelf.
    struct Queue
    {
        std::mutex mutex;
        std::deque<Backup> waiting;
        bool reading = false;
        bool stopped = false;
    };

    void take(const Backup &read);

    std::vector<Backup> m_backups;
    std::shared_ptr<Queue> m_queue = std::make_shared<Queue>();
};
