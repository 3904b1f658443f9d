#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

// Keeps Coinhall to one running copy per user.
//
// The first copy listens on a local socket named after the user; a later copy
// finds it there, asks it to bring its window forward and then quits.
class SingleCopy : public QObject
{
    Q_OBJECT

public:
    // `name` is the socket's name; the default one is per user.
    explicit SingleCopy(QString name = defaultName(), QObject *parent = nullptr);

    // "qfs-coinhall-<user id>".
    static QString defaultName();

    // True when this is the first copy (it now listens); false when another copy
    // answered and was asked to raise its window.
    bool claim();

Q_SIGNALS:
    // A later copy asked this one to bring its window to the front.
    void raiseRequested();

private:
    bool askRunningCopy();

    QString m_name;
    QLocalServer m_server;
};
