#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

// Writes `bytes` to `path` so that the file holds either its old content or all of
// the new, whatever happens meanwhile (a crash, a full disk). On failure, returns
// false and puts the reason in `reason`. `permissions`, when given, are the new
// file's from its first byte on; otherwise it keeps those of the file it replaces.
bool writeFileAtomically(const QString &path, const QByteArray &bytes, QString *reason,
                         std::optional<QFileDevice::Permissions> permissions = std::nullopt);

// Copies the file at `from` to `to` the same way: `to` ends up as it was or as a
// whole copy, never a part of one.
// `permissions`, when given, are the copy's from its first byte on.
bool copyFileAtomically(const QString &from, const QString &to, QString *reason,
                        std::optional<QFileDevice::Permissions> permissions = std::nullopt);

// Where a write of `path` is made before it replaces the file: "<path>.saving". When a
// file of that name is there already, the write leaves it alone and uses
// "<path>.saving-2" and so on. Only a crash in the middle of a write leaves a file
// there, which may then be removed.
QString inProgressPath(const QString &path);
