#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

// Keeps Coinhall to one running copy per user.
//
// The first copy listens on a local socket named after the user and its books; a
// later copy for the same books finds it there, asks it to bring its window forward
// and then quits. Books in another folder (--data-dir) open in a window of their own.
class SingleCopy : public QObject
{
    Q_OBJECT

public:
    // `name` is the socket's name; the default one is per user.
    explicit SingleCopy(QString name = defaultName(QString()), QObject *parent = nullptr);

    // "qfs-coinhall-<user id>" for the books in the default folder (`dataDir` empty),
    // followed by a short digest of the folder's absolute path for any other.
    static QString defaultName(const QString &dataDir = {});

    // True when this is the first copy (it now listens); false when another copy
    // answered and was asked to raise its window, and to show `open` there (a name of
    // `--open`; empty for the window as it is).
    bool claim(const QString &open = {});

Q_SIGNALS:
    // A later copy asked this one to bring its window to the front, showing `open`.
    void raiseRequested(const QString &open);

private:
    bool askRunningCopy(const QString &open);

    QString m_name;
    QLocalServer m_server;
};
