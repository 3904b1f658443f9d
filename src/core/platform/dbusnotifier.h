#pragma once

#include "platform/notifier.h"
#include "platform/reminderledger.h"

#include <QDBusConnection>
#include <QObject>

#include <map>
#include <memory>
#include <set>

class QTimer;

// Bill reminders through the desktop's freedesktop Notifications service.
//
// That service only shows a notification when asked, so each request waits here
// in its own timer while Coinhall runs and is sent at its time. With a ledger, the
// plan is also kept on disk for the reminder service (`coinhall remind`) to deliver
// while the window is closed, and a reminder is shown only by whoever takes it first.
// One that is late (the computer slept through its moment) is dropped. A missing bus
// or service is not an error: the notification is simply not shown.
class DBusNotifier final : public QObject, public Notifier
{
    Q_OBJECT

public:
    // Sends on `bus`; the default is the user's session bus.
    explicit DBusNotifier(QDBusConnection bus = QDBusConnection::sessionBus(),
                          std::shared_ptr<const ReminderLedger> ledger = nullptr, QObject *parent = nullptr);
    ~DBusNotifier() override;

    void removeAllPending() override;
    // A request whose time has already passed is dropped, as a calendar trigger
    // for a moment gone never matches.
    void add(const ReminderRequest &request) override;
    // freedesktop has no permission step: the user silences Coinhall in the desktop's
    // own settings. This only asks whether the service answers; see serviceReachable().
    void requestAuthorization() override;

    // Shows `request` now, as its timer would (the ledger is not asked).
    void show(const ReminderRequest &request);
    // How many of the notifications shown from here are still on screen.
    int openCount() const { return int(m_shown.size()); }

    // How many requests are waiting to be shown.
    int pendingCount() const { return int(m_pending.size()); }
    // Whether the service answered the last requestAuthorization(); false before.
    bool serviceReachable() const { return m_serviceReachable; }

Q_SIGNALS:
    // The answer to requestAuthorization() came (or the call failed).
    void serviceChecked(bool reachable);
    // The last notification shown from here was closed.
    void allClosed();

private:
    // Starts (or restarts) the request's timer for what is left of its wait.
    void arm(QTimer *timer);
    void fire(QTimer *timer);

private Q_SLOTS:
    // The service's signals, for every program's notifications.
    void actionInvoked(uint id, const QString &action);
    void notificationClosed(uint id, uint reason);

private:

    QDBusConnection m_bus;
    std::shared_ptr<const ReminderLedger> m_ledger;
    std::map<QTimer *, ReminderRequest> m_pending;
    std::set<uint> m_shown; // ids the service gave the notifications shown from here
    bool m_serviceReachable = false;
};
