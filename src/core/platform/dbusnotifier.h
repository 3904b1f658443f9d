#pragma once

#include "platform/notifier.h"

#include <QDBusConnection>
#include <QObject>

#include <map>

class QTimer;

// Bill reminders through the desktop's freedesktop Notifications service.
//
// That service only shows a notification when asked, so each request waits here
// in its own timer while Coinhall runs and is sent at its time; requests that fall
// due while Coinhall is closed are not shown. A missing bus or service is not an
// error: the notification is simply not shown.
class DBusNotifier final : public QObject, public Notifier
{
    Q_OBJECT

public:
    // Sends on `bus`; the default is the user's session bus.
    explicit DBusNotifier(QDBusConnection bus = QDBusConnection::sessionBus(), QObject *parent = nullptr);
    ~DBusNotifier() override;

    void removeAllPending() override;
    // A request whose time has already passed is dropped, as a calendar trigger
    // for a moment gone never matches.
    void add(const ReminderRequest &request) override;
    // freedesktop has no permission step: the user silences Coinhall in the desktop's
    // own settings. This only asks whether the service answers; see serviceReachable().
    void requestAuthorization() override;

    // How many requests are waiting to be shown.
    int pendingCount() const { return int(m_pending.size()); }
    // Whether the service answered the last requestAuthorization(); false before.
    bool serviceReachable() const { return m_serviceReachable; }

Q_SIGNALS:
    // The answer to requestAuthorization() came (or the call failed).
    void serviceChecked(bool reachable);

private:
    // Starts (or restarts) the request's timer for what is left of its wait.
    void arm(QTimer *timer);
    void fire(QTimer *timer);

    QDBusConnection m_bus;
    std::map<QTimer *, ReminderRequest> m_pending;
    bool m_serviceReachable = false;
};
