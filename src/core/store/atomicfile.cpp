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
    if (file.write(bytes) != bytes.size()) {
        fail();
        file.cancelWriting();
        return false;
    }
    if (!file.commit())
        return fail();
    return true;
}
