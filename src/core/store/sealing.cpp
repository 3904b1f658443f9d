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
    // Only the header is read before the key is known to be the books' own.
    QFile file(moneyFilePath());
    const bool opened = file.open(QIODevice::ReadOnly);
    const QByteArray head = opened ? file.read(qint64(Sealed::headerSize)) : QByteArray();
    const bool sealed = Sealed::looksSealed(head);
    const std::optional<Sealed::Header> header = Sealed::readHeader(head);
    std::shared_ptr<const Sealed::Key> key;
    if (header) {
        key = Sealed::Key::forHeader(passphrase, *header);
        if (!key || !key->opens(*header)) {
            Q_EMIT unlockFailed();
            return false;
        }
    } else if (sealed) {
        // A header too damaged to check the passphrase against: the file is set aside as
        // it is, and the owner chose encryption, so the new Book is encrypted with this one.
        key = Sealed::Key::fresh(passphrase, m_sealingCost);
        if (!key) {
            Q_EMIT unlockFailed();
            return false;
        }
    } // else replaced by a plain money file since the start: read as one
    m_key = std::move(key);
    m_awaitingPassphrase = false;
    Q_EMIT encryptedChanged();
    if (header && Sealed::wholenessOfFile(moneyFilePath()).isEmpty() && file.size() >= m_readInBackgroundFrom) {
        // A big book opens as a plain one does: the window shows the reading.
        readInBackground(file.size());
        setLocked(false);
        return true;
    }
    Read got;
    if (sealed && !header) {
        got.exists = true;
        got.openError = tr("its header is damaged");
    } else {
        got = read(moneyFilePath(), nullptr, header ? m_key.get() : nullptr);
    }
    use(std::move(got));
    started();
    setLocked(false);
    Q_EMIT bookChanged();
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
