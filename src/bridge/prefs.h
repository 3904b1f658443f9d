#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

// The user's preferences that the window reads and changes, stored at once in the
// program's settings (organisation "QFS", application "Coinhall"). One instance
// per process, shared by QML and C++, so a change made anywhere is seen everywhere.
// The lock setting belongs to the Store (the command line needs it too); Prefs hands
// it over from the shared Store.
class Prefs : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // The id of the chosen look ("look"); "studio" when none was ever chosen.
    Q_PROPERTY(QString look READ look WRITE setLook NOTIFY lookChanged FINAL)
    // The stored zoom factor ("qfs.zoom") as it is: 0 when missing or not a number.
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY zoomChanged FINAL)
    // Whether the first-run help was ever shown ("welcomed"); false at first.
    Q_PROPERTY(bool welcomed READ welcomed WRITE setWelcomed NOTIFY welcomedChanged FINAL)
    // Whether the books open locked (Store::requireUnlock); false without a shared Store.
    Q_PROPERTY(bool requireUnlock READ requireUnlock WRITE setRequireUnlock NOTIFY requireUnlockChanged FINAL)

public:
    // The process-wide instance.
    static Prefs *instance();
    // Hands QML the process-wide instance; C++ keeps ownership.
    static Prefs *create(QQmlEngine *qmlEngine, QJSEngine *jsEngine);

    QString look() const;
    void setLook(const QString &id);
    double zoom() const;
    void setZoom(double zoom);
    bool welcomed() const;
    void setWelcomed(bool welcomed);
    bool requireUnlock() const;
    void setRequireUnlock(bool on);

Q_SIGNALS:
    void lookChanged();
    void zoomChanged();
    void welcomedChanged();
    void requireUnlockChanged();

private:
    explicit Prefs(QObject *parent = nullptr);
};
