#include "store/atomicfile.h"

#include <QSaveFile>

bool writeFileAtomically(const QString &path, const QByteArray &bytes, QString *reason,
                         std::optional<QFileDevice::Permissions> permissions)
{
    // QSaveFile writes a temporary file beside the target, flushes it to disk and
    // renames it over the old one. Unbuffered, so that a short write (a full disk,
    // a size limit) is seen here rather than lost inside a flush that reports success.
    QSaveFile file(path);
    auto fail = [&] {
        if (reason)
            *reason = file.errorString();
        return false;
    };
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return fail();
    if (permissions)
        file.setPermissions(*permissions);
    // A write that falls short (the disk filled mid-way) sets no error; the next one
    // fails and says why ("No space left on device").
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0) {
            fail();
            file.cancelWriting();
            return false;
        }
        done += written;
    }
    if (!file.commit())
        return fail();
    return true;
}
