// Encrypted books: opening them with the passphrase, and turning encryption on, off
// or to a new passphrase across the money file and every copy of it.
#include "store/store.h"

#include "model/money.h"
#include "model/moneyfile.h"
#include "store/atomicfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr auto ownerOnlyFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

} // namespace

bool Store::openWithPassphrase(const Sealed::Secret &passphrase)
{
    if (!m_awaitingPassphrase)
        return true;
    Read read;
    read.exists = true;
    std::shared_ptr<const Sealed::Key> key;
    QString problem;
    // Mapped rather than copied: a large book is decrypted straight from the file's pages.
    QFile file(moneyFilePath());
    QByteArray copied;
    QByteArrayView bytes;
    if (!file.open(QIODevice::ReadOnly)) {
        problem = file.errorString();
    } else if (const uchar *mapped = file.size() > 0 ? file.map(0, file.size()) : nullptr) {
        bytes = QByteArrayView(mapped, file.size());
    } else {
        copied = file.readAll();
        bytes = copied;
    }
    if (!problem.isEmpty()) {
        read.openError = problem;
    } else {
        QByteArray plain;
        switch (Sealed::open(bytes, passphrase, &plain, &key, &problem)) {
        case Sealed::Opened::ok:
            read.decoded = MoneyFile::decode(std::string_view(plain.constData(), size_t(plain.size())));
            if (read.decoded.book)
                putNewestFirst(read.decoded.book->transactions);
            break;
        case Sealed::Opened::wrongPassphrase:
        case Sealed::Opened::noMemory:
            Q_EMIT unlockFailed();
            return false;
        case Sealed::Opened::notSealed: // replaced by a plain one since the start
            read.decoded = MoneyFile::decode(std::string_view(bytes.constData(), size_t(bytes.size())));
            break;
        case Sealed::Opened::damaged:
        case Sealed::Opened::otherKey:
            read.openError = problem;
            break;
        }
    }
    // A damaged file is set aside as it is; the owner chose encryption, so the new
    // Book is encrypted with the passphrase given.
    if (!key && Sealed::looksSealed(bytes))
        key = Sealed::Key::fresh(passphrase, m_sealingCost);
    if (!key && !read.decoded.book && read.openError.isEmpty()) {
        Q_EMIT unlockFailed();
        return false;
    }
    m_key = std::move(key);
    m_awaitingPassphrase = false;
    use(std::move(read));
    started();
    setLocked(false);
    Q_EMIT encryptedChanged();
    Q_EMIT bookChanged();
    // A switch that a crash cut short is finished: every copy as the money file is.
    if (m_key && writable())
        convertCopies(m_key.get(), m_key.get());
    return true;
}

bool Store::unlockWithPassphrase(const QString &passphrase)
{
    return !passphrase.isEmpty() && openWithPassphrase(Sealed::Secret::fromText(passphrase));
}

bool Store::isPassphrase(const Sealed::Secret &passphrase) const
{
    if (!m_key)
        return false;
    QFile file(moneyFilePath());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const std::optional<Sealed::Header> read = Sealed::readHeader(file.read(qint64(Sealed::headerSize)));
    if (!read || !m_key->fits(*read))
        return false;
    const auto again = Sealed::Key::forHeader(passphrase, *read);
    return again && again->opens(*read);
}

QByteArray Store::unseal(const QByteArray &bytes, QString *problem) const
{
    if (!Sealed::looksSealed(bytes))
        return bytes;
    QByteArray plain;
    QString why;
    switch (m_key ? Sealed::open(bytes, *m_key, &plain, &why) : Sealed::Opened::otherKey) {
    case Sealed::Opened::ok:
        return plain;
    case Sealed::Opened::damaged:
        *problem = why;
        break;
    default:
        *problem = tr("it is encrypted with another passphrase");
        break;
    }
    return {};
}

QStringList Store::convertCopies(const Sealed::Key *from, const Sealed::Key *to)
{
    // The backups, and the copies kept beside the money file before a restore or a
    // rounding. Files set aside as unreadable stay exactly as they were found.
    QStringList paths;
    const QString backups = backupsFolder();
    for (const QString &name : QDir(backups).entryList({QStringLiteral("coinhall-*.json")}, QDir::Files))
        paths << backups + QLatin1Char('/') + name;
    for (const QString &name : QDir(m_dir).entryList(
             {QStringLiteral("coinhall.json.before-restore-*"), QStringLiteral("coinhall.json.unrounded-*")},
             QDir::Files))
        paths << m_dir + QLatin1Char('/') + name;

    QStringList left;
    for (const QString &path : paths) {
        QString problem;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray head = file.read(qint64(Sealed::headerSize));
        const bool sealed = Sealed::looksSealed(head);
        const std::optional<Sealed::Header> header = sealed ? Sealed::readHeader(head) : std::nullopt;
        if ((!sealed && !to) || (header && to && to->fits(*header)))
            continue; // already as wanted
        file.seek(0);
        const QByteArray bytes = file.readAll();
        file.close();
        QByteArray plain = bytes;
        if (sealed) {
            if (!from || Sealed::open(bytes, *from, &plain, &problem) != Sealed::Opened::ok) {
                left << QFileInfo(path).fileName();
                continue;
            }
        }
        // Byte for byte the same money file inside, whichever way it is written.
        const QByteArray rewritten = to ? Sealed::seal(plain, *to) : plain;
        if (!writeFileAtomically(path, rewritten, &problem, ownerOnlyFile))
            left << QFileInfo(path).fileName();
    }
    return left;
}

Saved Store::switchSealing(std::shared_ptr<const Sealed::Key> to, const QString &text)
{
    const auto refuse = [this](const QString &why) {
        setStatus(why);
        return Saved{false, why};
    };
    if (loading() || m_awaitingPassphrase)
        return refuse(tr("Your books are still opening, so nothing was changed."));
    if (m_fromNewer)
        return refuse(tr("This money file was written by a newer Coinhall, so nothing was changed."));
    if (!writable())
        return refuse(tr("Coinhall is already open with this money file, so nothing was changed."));
    finishSaving();
    settle();

    const std::shared_ptr<const Sealed::Key> from = m_key;
    QString reason;
    QStringList left;
    if (to) {
        // Money file first: from the moment it is encrypted the books are, and a crash
        // before the copies are done is finished at the next opening.
        if (!writeFileAtomically(moneyFilePath(), fileBytes(m_book, to.get()), &reason, ownerOnlyFile))
            return refuse(tr("Could not save: %1").arg(reason));
        m_key = to;
        m_saveError.clear();
        Q_EMIT encryptedChanged();
        left = convertCopies(from.get(), to.get());
    } else {
        // Copies first, the money file last: until it is plain the books count as
        // encrypted, and a crash leaves them so.
        left = convertCopies(from.get(), nullptr);
        if (!writeFileAtomically(moneyFilePath(), fileBytes(m_book, nullptr), &reason, ownerOnlyFile)) {
            convertCopies(nullptr, from.get());
            return refuse(tr("Could not save: %1").arg(reason));
        }
        m_key.reset();
        m_saveError.clear();
        Q_EMIT encryptedChanged();
    }
    QString said = text;
    if (!left.isEmpty())
        said += tr(" These copies could not be rewritten and were left as they were: %1.")
                    .arg(left.join(QStringLiteral(", ")));
    setStatus(said);
    return {true, {}};
}

Saved Store::encryptWith(const Sealed::Secret &passphrase)
{
    if (passphrase.empty()) {
        setStatus(tr("A passphrase cannot be empty."));
        return {false, m_status};
    }
    const bool changing = m_key != nullptr;
    std::shared_ptr<const Sealed::Key> key = Sealed::Key::fresh(passphrase, m_sealingCost);
    if (!key) {
        setStatus(tr("There is not enough memory to encrypt your books now."));
        return {false, m_status};
    }
    return switchSealing(std::move(key),
                         changing ? tr("Your passphrase was changed.") : tr("Your books are now encrypted."));
}

Saved Store::decrypt()
{
    if (!m_key) {
        setStatus(tr("Your books are not encrypted."));
        return {false, m_status};
    }
    return switchSealing(nullptr, tr("Your books are no longer encrypted."));
}
