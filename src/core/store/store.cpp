#include "store/store.h"

#include "model/money.h"
#include "model/moneyfile.h"
#include "platform/reminderledger.h"
#include "store/atomicfile.h"

#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

namespace {

const QString moneyFileName = QStringLiteral("coinhall.json");
const QString lockFileName = QStringLiteral("coinhall.lock");
constexpr auto ownerOnlyFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr auto ownerOnlyFolder = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;

QSettings preferences()
{
    return QSettings(QStringLiteral("QFS"), QStringLiteral("Coinhall"));
}

// Creates a folder (with parents) that only its owner can open.
bool makePrivateFolder(const QString &path)
{
    if (!QDir().mkpath(path))
        return false;
    QFile::setPermissions(path, ownerOnlyFolder);
    return true;
}

// Owner-only again for a folder that exists; someone may have opened it up since it was made.
void keepFolderPrivate(const QString &path)
{
    if (QFileInfo(path).isDir())
        QFile::setPermissions(path, ownerOnlyFolder);
}

// Owner-only again for every plain file in `folder` whose name matches `names`
// (all when empty). Links are left alone: their targets are not Coinhall's.
void keepFilesPrivate(const QString &folder, const QStringList &names = {})
{
    const QFileInfoList files = QDir(folder).entryInfoList(names, QDir::Files | QDir::Hidden | QDir::System);
    for (const QFileInfo &file : files) {
        if (!file.isSymLink())
            QFile::setPermissions(file.filePath(), ownerOnlyFile);
    }
}

// Copies a folder with everything in it; stops quietly at the first failure.
void copyFolder(const QString &from, const QString &to)
{
    if (!QDir().mkpath(to))
        return;
    QDirIterator it(from, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (it.hasNext()) {
        const QFileInfo entry(it.next());
        const QString target = to + QLatin1Char('/') + entry.fileName();
        if (entry.isDir() && !entry.isSymLink())
            copyFolder(entry.filePath(), target);
        else if (!QFile::copy(entry.filePath(), target))
            return;
    }
}

void removeEntry(const QString &path)
{
    const QFileInfo info(path);
    if (info.isDir() && !info.isSymLink())
        QDir(path).removeRecursively();
    else
        QFile::remove(path);
}

} // namespace

QPointer<Store> Store::s_shared;

Store *Store::shared()
{
    return s_shared.data();
}

void Store::setShared(Store *store)
{
    s_shared = store;
}

QString Store::defaultDir()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.local/share");
    const QString wanted = base + QStringLiteral("/QFS Coinhall");
    const QString older = base + QStringLiteral("/Quillfern Coinhall");
    if (!QFileInfo::exists(wanted) && QFileInfo(older).isDir())
        copyFolder(older, wanted);
    return wanted;
}

Store::Store(StoreOptions options, QObject *parent)
    : QObject(parent)
    , m_dir(options.dir.isEmpty() ? defaultDir() : QDir(options.dir).absolutePath())
    , m_saveInBackgroundFrom(options.saveInBackgroundFrom)
    , m_authenticator(std::move(options.authenticator))
    , m_sealingCost(options.sealingCost)
    , m_readInBackgroundFrom(options.readInBackgroundFrom)
    , m_notifier(std::move(options.notifier))
{
    makePrivateFolder(m_dir);

    // Two processes never write one money file: the first to open it holds this
    // lock for its whole run; a lock left by a process that died is taken over.
    auto lock = std::make_unique<QLockFile>(m_dir + QLatin1Char('/') + lockFileName);
    if (lock->tryLock(0)) {
        m_lock = std::move(lock);
        // A save that a crash cut short; the money file itself is whole.
        QFile::remove(inProgressPath(moneyFilePath()));
        ReminderLedger(m_dir).clearLeftovers();
        // The money file, the lock and any file kept aside: owner-only, whatever
        // loosened them since the last run. The backups follow at dailyBackup().
        keepFilesPrivate(m_dir, {moneyFileName, moneyFileName + QStringLiteral(".*"), lockFileName});
    }

    m_locked = requireUnlock();
    if (QFile file(moneyFilePath()); file.open(QIODevice::ReadOnly) && Sealed::looksSealed(file.read(8))) {
        // Encrypted books: nothing is read, defaulted or backed up before the passphrase.
        m_awaitingPassphrase = true;
        m_locked = true;
        if (options.passphrase)
            openWithPassphrase(*options.passphrase);
        return;
    }
    const QFileInfo file(moneyFilePath());
    if (file.exists() && file.size() >= options.readInBackgroundFrom) {
        readInBackground(file.size());
        return;
    }
    use(read(moneyFilePath(), nullptr));
    started();
}

void Store::started()
{
    if (m_book.accounts.empty()) {
        m_book.accounts.push_back({newId(), QStringLiteral("Main checking"), AccountKind::checking, {}, false});
        m_book.accounts.push_back({newId(), QStringLiteral("Savings"), AccountKind::savings, {}, false});
        assigned();
    }
    m_loading = false;
    if (m_book.categories.empty()) {
        m_book.categories = Category::defaults();
        assigned();
    }
    Money::setCode(m_book.currency);
    if (m_lock)
        dailyBackup();
    else if (m_fromNewer)
        setStatus(tr("This money file was written by a newer Coinhall, so changes made here are not saved."));
    else if (m_status.isEmpty())
        setStatus(tr("Coinhall is already open with this money file, so changes made here are not saved."));
    // A switch of encryption that a crash cut short is finished: every copy as the money file is.
    if (m_lock && m_key)
        convertCopies(m_key.get(), m_key.get());
}

void Store::readInBackground(qint64 size)
{
    m_fileBytes = size;
    auto *ticks = new QTimer(this);
    ticks->setInterval(100);
    connect(ticks, &QTimer::timeout, this, &Store::loadProgressChanged);
    ticks->start();
    m_reader.reset(QThread::create([this, path = moneyFilePath(), key = m_key] {
        auto done = std::make_shared<Read>(read(path, &m_bytesRead, key.get()));
        // Back on the Store's thread; dropped if the Store is gone by then.
        QMetaObject::invokeMethod(
            this,
            [this, done] {
                m_reader->wait();
                m_reader.reset();
                use(std::move(*done));
                started();
                Q_EMIT loadingChanged();
                Q_EMIT loadProgressChanged();
            },
            Qt::QueuedConnection);
    }));
    connect(this, &Store::loadingChanged, ticks, &QObject::deleteLater);
    m_reader->start();
}

double Store::loadProgress() const
{
    if (!loading())
        return 1.0;
    return m_fileBytes > 0 ? std::min(1.0, double(m_bytesRead.load()) / double(m_fileBytes)) : 0.0;
}

QString Store::loadingText() const
{
    const auto megabytes = [](qint64 bytes) { return QString::number((bytes + 999999) / 1000000); };
    return tr("%1 · %2 of %3 MB")
        .arg(moneyFileName, megabytes(qint64(loadProgress() * double(m_fileBytes))), megabytes(m_fileBytes));
}

Store::~Store()
{
    // A window closed while its books were still being read waits for the reading, and
    // one closed right after a change for its write.
    if (m_reader)
        m_reader->wait();
    if (m_saving.joinable())
        m_saving.join();
}

QString Store::moneyFilePath() const
{
    return m_dir + QLatin1Char('/') + moneyFileName;
}

QString Store::backupsFolder() const
{
    return m_dir + QStringLiteral("/Backups");
}

Store::Read Store::read(const QString &path, std::atomic<qint64> *progress, const Sealed::Key *key)
{
    Read result;
    QFile file(path);
    result.exists = file.exists();
    if (!result.exists)
        return result;
    if (!file.open(QIODevice::ReadOnly)) {
        result.openError = file.errorString();
    } else if (key) {
        // Decrypted from the mapped pages rather than a copy of them.
        QByteArray copied;
        QByteArrayView bytes;
        if (const uchar *mapped = file.size() > 0 ? file.map(0, file.size()) : nullptr) {
            bytes = QByteArrayView(mapped, file.size());
        } else {
            copied = file.readAll();
            bytes = copied;
        }
        QByteArray plain;
        QString problem;
        if (Sealed::open(bytes, *key, &plain, &problem) != Sealed::Opened::ok)
            result.openError = problem.isEmpty() ? QStringLiteral("it is encrypted with another passphrase") : problem;
        else
            result.decoded = MoneyFile::decode(std::string_view(plain.constData(), size_t(plain.size())));
        if (progress)
            *progress = file.size();
    } else {
        result.decoded = MoneyFile::decodeFile(file, progress);
    }
    // In order here, where a big book is read off the window's thread: a check when
    // the file is already newest first, as Coinhall writes it.
    if (result.decoded.book)
        putNewestFirst(result.decoded.book->transactions);
    return result;
}

void Store::use(Read read)
{
    if (!read.exists)
        return;
    if (read.openError.isEmpty()) {
        MoneyFile::Decoded &decoded = read.decoded;
        if (decoded.book) {
            m_book = std::move(*decoded.book);
            m_newestFirst = true;
            assigned();
            if (m_book.version > MoneyFile::version) {
                // What a newer Coinhall wrote may hold more than this one knows; a save
                // from here would drop it, so the file is only read (and nothing rounded
                // as it was read can reach it).
                m_fromNewer = true;
                m_lock.reset();
            } else if (decoded.roundedAmounts > 0) {
                keepUnrounded(decoded.roundedAmounts, decoded.firstRounded);
            }
            return;
        }
        m_loadError = decoded.error;
    } else {
        m_loadError = read.openError;
    }

    // The file cannot be used, but it is the user's: set it aside under a new name
    // before anything is written, so the next save cannot replace it.
    if (!m_lock) {
        setStatus(tr("Your money file could not be read."));
        return;
    }
    const QString keptName = moneyFileName + QStringLiteral(".unreadable-") +
                             QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QString keptPath = m_dir + QLatin1Char('/') + keptName;
    // Neither way replaces a file that an earlier start kept under the same name.
    if (QFile::rename(moneyFilePath(), keptPath) ||
        (!QFileInfo::exists(keptPath) && copyFileAtomically(moneyFilePath(), keptPath, nullptr, ownerOnlyFile))) {
        // A rename keeps the file's own permissions, which may be anyone's.
        QFile::setPermissions(keptPath, ownerOnlyFile);
        setStatus(tr("Your money file could not be read. It was kept as %1.").arg(keptName));
    } else {
        // Nowhere to put it aside: then nothing may be written over it either.
        m_lock.reset();
        setStatus(tr("Your money file could not be read, and it could not be set aside, so nothing will be saved."));
    }
}

void Store::keepUnrounded(int count, const QString &first)
{
    // Amounts longer than any amount can be are rounded as they are read; the next save
    // would write the rounded ones, so the file as it was is copied aside first.
    const QString keptName = moneyFileName + QStringLiteral(".unrounded-") +
                             QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QString keptPath = m_dir + QLatin1Char('/') + keptName;
    QString text = count == 1
                       ? tr("An amount in your money file had more than 38 digits and was rounded.")
                       : tr("%1 amounts in your money file had more than 38 digits and were rounded.").arg(count);
    if (m_lock && !QFileInfo::exists(keptPath) && copyFileAtomically(moneyFilePath(), keptPath, nullptr, ownerOnlyFile))
        text += tr(" The file as it was is kept as %1.").arg(keptName);
    setStatus(text);
    qWarning("Coinhall: %s (the first: %s)", qPrintable(m_status), qPrintable(first));
}

Saved Store::setBook(Book book)
{
    settle();
    m_book = std::move(book);
    putNewestFirst(m_book.transactions);
    m_newestFirst = true;
    assigned(); // outside any step: the history of the Book that was ends
    return done();
}

void Store::assigned()
{
    ++m_changeCount;
    m_lastAdded = std::exchange(m_adding, std::nullopt);
    m_sums.reset();
    // A change that is no step of the history (a new Book, the defaults filled in)
    // leaves nothing the steps before it could be undone on.
    if (m_stepDepth == 0)
        clearHistory();
    if (m_oneWriteDepth > 0) {
        m_pendingWrite = m_pendingWrite || !m_loading;
        m_pendingNotify = true;
        return;
    }
    if (!m_loading)
        save();
    Q_EMIT bookChanged();
    scheduleReminders();
}

Store::OneWrite::OneWrite(Store &store)
    : m_store(store)
{
    ++m_store.m_oneWriteDepth;
}

Store::OneWrite::~OneWrite()
{
    if (--m_store.m_oneWriteDepth == 0)
        m_store.flush();
}

void Store::flush()
{
    const bool write = std::exchange(m_pendingWrite, false);
    const bool notify = std::exchange(m_pendingNotify, false);
    if (write)
        save();
    if (notify) {
        Q_EMIT bookChanged();
        scheduleReminders();
    }
}

bool Store::save()
{
    if (m_loading)
        return true;
    auto fail = [this](const QString &reason) {
        m_saveError = tr("Could not save: %1").arg(reason);
        setStatus(m_saveError);
        return false;
    };
    if (m_fromNewer)
        return fail(tr("this money file was written by a newer Coinhall"));
    if (!m_lock)
        return fail(tr("another Coinhall has this money file open"));

    if (m_book.transactions.size() >= m_saveInBackgroundFrom) {
        saveInBackground();
        m_saveError.clear();
        return true;
    }
    QString reason;
    if (!writeNow(&reason))
        return fail(reason);
    m_saveError.clear();
    return true;
}

QByteArray Store::fileBytes(const Book &book, const Sealed::Key *key)
{
    const QByteArray plain = MoneyFile::encode(book);
    return key ? Sealed::seal(plain, *key) : plain;
}

bool Store::writeNow(QString *reason)
{
    const QByteArray bytes = fileBytes(m_book, m_key.get());
    if (!writeFileAtomically(moneyFilePath(), bytes, reason, ownerOnlyFile))
        return false;
    // The file was made owner-only; the folders around it may have been opened up meanwhile.
    keepFolderPrivate(m_dir);
    keepFolderPrivate(backupsFolder());
    return true;
}

void Store::saveInBackground()
{
    auto encoded = std::make_shared<std::promise<void>>();
    m_encoded = encoded->get_future().share();
    m_saving = std::thread([this, encoded, before = std::move(m_saving), path = moneyFilePath(), key = m_key,
                            folders = QStringList{m_dir, backupsFolder()}]() mutable {
        QByteArray bytes = MoneyFile::encode(m_book);
        encoded->set_value();
        if (key)
            bytes = Sealed::seal(bytes, *key);
        // The earlier write lands first, so the file never goes back to an older Book.
        if (before.joinable())
            before.join();
        QString reason;
        const bool written = writeFileAtomically(path, bytes, &reason, ownerOnlyFile);
        if (written) {
            for (const QString &folder : folders)
                keepFolderPrivate(folder);
        }
        QMetaObject::invokeMethod(
            this,
            [this, written, reason] {
                if (written)
                    return;
                m_saveError = tr("Could not save: %1").arg(reason);
                setStatus(m_saveError);
            },
            Qt::QueuedConnection);
    });
}

void Store::finishSaving()
{
    if (m_saving.joinable())
        m_saving.join();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall); // a failure to report
}

void Store::settle()
{
    m_sums.reset(); // a change is about to begin
    if (m_encoded.valid())
        m_encoded.wait();
}

Saved Store::done(const QString &text)
{
    // Called once the operation's one write is over, so m_saveError is that write's.
    if (m_recording && m_stepDepth == 1 && !m_recording->named && !text.isEmpty())
        m_recording->step.what = text.endsWith(QLatin1Char('.')) ? text.chopped(1) : text;
    if (!m_saveError.isEmpty())
        return {true, m_saveError};
    if (!text.isEmpty())
        setStatus(text);
    return {true, {}};
}

void Store::setStatus(const QString &status)
{
    if (m_status == status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
}

bool Store::askForUnlock()
{
    return preferences().value(QStringLiteral("requireUnlock"), false).toBool();
}

void Store::setRequireUnlock(bool on)
{
    // Stored first: Qt observers read the new value when they are told of the change.
    if (requireUnlock() == on)
        return;
    auto settings = preferences();
    settings.setValue(QStringLiteral("requireUnlock"), on);
    Q_EMIT requireUnlockChanged();
}

void Store::setLocked(bool locked)
{
    if (m_locked == locked)
        return;
    m_locked = locked;
    Q_EMIT lockedChanged();
    Q_EMIT historyChanged();
}

void Store::unlock(const QString &password)
{
    if (!m_locked || m_unlocking)
        return;
    if (m_awaitingPassphrase) { // only the passphrase opens encrypted books
        Q_EMIT unlockFailed();
        return;
    }
    if (!m_authenticator)
        m_authenticator = makePlatformAuthenticator();
    // A computer that cannot check its owner never locks the owner out of the data.
    if (!m_authenticator || !m_authenticator->canEvaluate()) {
        setLocked(false);
        return;
    }
    if (password.isEmpty()) {
        Q_EMIT unlockFailed();
        return;
    }
    m_unlocking = true;
    QPointer<Store> self(this);
    m_authenticator->evaluate(tr("Open your Coinhall"), password, [self](bool ok) {
        // The reply may come on another thread; the answer is applied on the main one.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, ok] {
                if (!self)
                    return;
                self->m_unlocking = false;
                if (ok)
                    self->setLocked(false);
                else
                    Q_EMIT self->unlockFailed();
            },
            Qt::QueuedConnection);
    });
}

void Store::dailyBackup()
{
    // The window never hears of this step; a failure is told on standard error only.
    const QString folder = backupsFolder();
    if (!makePrivateFolder(folder)) {
        qWarning("Coinhall: could not make today's backup: cannot make the folder %s", qPrintable(folder));
        return;
    }
    const QString name = QStringLiteral("coinhall-") + QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")) +
                         QStringLiteral(".json");
    const QString target = folder + QLatin1Char('/') + name;
    if (!QFileInfo::exists(target) && QFile::exists(moneyFilePath())) {
        QString reason;
        if (!copyFileAtomically(moneyFilePath(), target, &reason, ownerOnlyFile))
            qWarning("Coinhall: could not make today's backup: %s", qPrintable(reason));
    }

    const QDir dir(folder);
    if (!dir.exists())
        return;
    // Backups that a crash cut short.
    for (const QString &name : dir.entryList({QStringLiteral("coinhall-*.json.saving")}, QDir::Files | QDir::Hidden))
        QFile::remove(folder + QLatin1Char('/') + name);
    QStringList entries = dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    std::sort(entries.begin(), entries.end(), std::greater<>());
    for (qsizetype i = backupsKept; i < entries.size(); ++i)
        removeEntry(folder + QLatin1Char('/') + entries.at(i));
    // The backups kept are owner-only too, older ones that were opened up included.
    keepFilesPrivate(folder);
}
