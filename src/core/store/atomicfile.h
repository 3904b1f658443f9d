#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

// Writes `bytes` to `path` so that the file holds either its old content or all of
// the new, whatever happens meanwhile (a crash, a full disk). On failure, returns
// false and puts the reason in `reason`. `permissions`, when given, are set on the new file.
bool writeFileAtomically(const QString &path, const QByteArray &bytes, QString *reason,
                         std::optional<QFileDevice::Permissions> permissions = std::nullopt);
