#include "store/atomicfile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace {

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

// Writes all of `size` bytes. A write that falls short (the disk filled mid-way) sets
// no error; the next one fails and says why ("No space left on device").
bool writeAll(QFile &file, const char *bytes, qint64 size)
{
    for (qint64 done = 0; done < size;) {
        const qint64 written = file.write(bytes + done, size - done);
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

// Makes a rename in the folder of `path` reach the disk, so that a power cut just after
// a save finds the new file rather than the old. The new content itself was synced
// before the rename; this only fixes which of the two whole files the name points at.
// A failure changes nothing the caller can act on: the file is whole either way.
void syncFolderOf(const QString &path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

// Replaces `path` with what `fill` writes, so that it holds either its old content or
// all of the new. The new content goes to inProgressPath() first, reaches the disk,
// is then renamed over the old file, and the rename is synced too. `fill` returns an error text, empty on success.
template <typename Fill>
bool replace(const QString &path, std::optional<QFileDevice::Permissions> permissions, QString *reason, Fill fill)
{
    // A link is followed: the file it points at is the one replaced, as QSaveFile does.
    QFileInfo info(path);
    for (int depth = 0; depth < 128 && info.isSymLink(); ++depth)
        info.setFile(info.symLinkTarget());
    const QString target = info.isSymLink() ? path : info.filePath();
    if (info.isDir()) {
        if (reason)
            *reason = systemError(EISDIR);
        return false;
    }
    if (!permissions && info.exists())
        permissions = info.permissions(); // an export keeps the old file's permissions

    // Made anew, never opened through whatever lies under that name, nor removing it:
    // that may be the user's own file. The Store clears its own leftovers at start, so
    // its saves always find the first name free.
    QString temp = inProgressPath(target);
    QFile file(temp);
    for (int attempt = 2; !file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered); ++attempt) {
        if (!QFileInfo::exists(temp) || attempt > 100) {
            if (reason)
                *reason = file.errorString();
            return false;
        }
        temp = inProgressPath(target) + QLatin1Char('-') + QString::number(attempt);
        file.setFileName(temp);
    }
    auto fail = [&](const QString &why) {
        if (reason)
            *reason = why;
        file.close();
        QFile::remove(temp);
        return false;
    };
    if (permissions && !file.setPermissions(*permissions))
        return fail(file.errorString());
    const QString error = fill(file);
    if (!error.isEmpty())
        return fail(error);
    if (::fsync(file.handle()) != 0)
        return fail(systemError(errno));
    file.close();
    if (std::rename(QFile::encodeName(temp).constData(), QFile::encodeName(target).constData()) != 0)
        return fail(systemError(errno));
    syncFolderOf(target);
    return true;
}

} // namespace

QString inProgressPath(const QString &path)
{
    return path + QStringLiteral(".saving");
}

bool writeFileAtomically(const QString &path, const QByteArray &bytes, QString *reason,
                         std::optional<QFileDevice::Permissions> permissions)
{
    // Unbuffered, so that a short write (a full disk, a size limit) is seen here
    // rather than lost inside a flush that reports success.
    return replace(path, permissions, reason, [&](QFile &file) {
        return writeAll(file, bytes.constData(), bytes.size()) ? QString() : file.errorString();
    });
}

bool copyFileAtomically(const QString &from, const QString &to, QString *reason,
                        std::optional<QFileDevice::Permissions> permissions)
{
    // Not QFile::copy: that gives the copy the source's permissions, which may be
    // anyone's, until they are changed after the copy.
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly)) {
        if (reason)
            *reason = source.errorString();
        return false;
    }
    return replace(to, permissions, reason, [&](QFile &file) {
        QByteArray chunk(1 << 20, Qt::Uninitialized);
        for (;;) {
            const qint64 got = source.read(chunk.data(), chunk.size());
            if (got < 0)
                return source.errorString();
            if (got == 0)
                return QString();
            if (!writeAll(file, chunk.constData(), got))
                return file.errorString();
        }
    });
}
