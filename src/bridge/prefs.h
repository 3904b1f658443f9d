#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

// The user's preferences that the window reads and changes, stored at once in the
// program's settings (organisation "QFS", application "Coinhall"). One instance
// per process, shared by QML and C++, so a change made anywhere is seen everywhere.
class Prefs : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // The id of the chosen look ("look"); "studio" when none was ever chosen.
    Q_PROPERTY(QString look READ look WRITE setLook NOTIFY lookChanged FINAL)

public:
    // The process-wide instance.
    static Prefs *instance();
    // Hands QML the process-wide instance; C++ keeps ownership.
    static Prefs *create(QQmlEngine *qmlEngine, QJSEngine *jsEngine);

    QString look() const;
    void setLook(const QString &id);

Q_SIGNALS:
    void lookChanged();

private:
    explicit Prefs(QObject *parent = nullptr);
};
