#include "platform/dbusnotifier.h"

#include "help/helptexts.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <algorithm>
#include <cstdio>

namespace {

const QString notificationsService = QStringLiteral("org.freedesktop.Notifications");
const QString notificationsPath = QStringLiteral("/org/freedesktop/Notifications");
const QString notificationsInterface = notificationsService;

// Long waits are cut into pieces, each measured again against the wall clock: a
// timer's own clock stops while the computer sleeps, and a QTimer cannot wait
// longer than INT_MAX milliseconds anyway.
constexpr std::int64_t longestWaitMs = 15 * 60 * 1000;
constexpr int serviceCheckTimeoutMs = 5000;

QDBusMessage notificationsCall(const QString &method)
{
    return QDBusMessage::createMethodCall(notificationsService, notificationsPath, notificationsInterface, method);
}

} // namespace

DBusNotifier::DBusNotifier(QDBusConnection bus, std::shared_ptr<const ReminderLedger> ledger, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_ledger(std::move(ledger))
{
    if (!m_bus.isConnected())
        return;
    m_bus.connect(notificationsService, notificationsPath, notificationsInterface, QStringLiteral("ActionInvoked"), this,
                  SLOT(actionInvoked(uint, QString)));
    m_bus.connect(notificationsService, notificationsPath, notificationsInterface,
                  QStringLiteral("NotificationClosed"), this, SLOT(notificationClosed(uint, uint)));
}

DBusNotifier::~DBusNotifier() = default;

void DBusNotifier::removeAllPending()
{
    for (const auto &entry : m_pending) {
        entry.first->stop();
        entry.first->deleteLater();
    }
    m_pending.clear();
}

void DBusNotifier::add(const ReminderRequest &request)
{
    if (request.fireAt <= Instant::now())
        return;
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, [this, timer] { fire(timer); });
    m_pending.emplace(timer, request);
    arm(timer);
}

void DBusNotifier::arm(QTimer *timer)
{
    const std::int64_t left = m_pending.at(timer).fireAt.msecs() - Instant::now().msecs();
    timer->start(int(std::clamp<std::int64_t>(left, 0, longestWaitMs)));
}

void DBusNotifier::fire(QTimer *timer)
{
    const auto it = m_pending.find(timer);
    if (it == m_pending.end())
        return;
    if (Instant::now() < it->second.fireAt) {
        arm(timer);
        return;
    }
    const ReminderRequest request = it->second;
    m_pending.erase(it);
    timer->deleteLater();
    const Instant now = Instant::now();
    if (now.msecs() - request.fireAt.msecs() > ReminderLedger::lateLimitMs)
        return;
    if (m_ledger && !m_ledger->take(request, now))
        return;
    show(request);
}

void DBusNotifier::show(const ReminderRequest &request)
{
    if (!m_bus.isConnected())
        return;

    QDBusMessage call = notificationsCall(QStringLiteral("Notify"));
    call << AppInfo::displayName()     // app_name
         << uint(0)                    // replaces_id: a new notification
         << AppInfo::applicationId()   // app_icon: the installed icon's name
         << request.title              // summary
         << request.body              // body
         << QStringList{QStringLiteral("default"), QStringLiteral("Show bills")} // a click opens the Bills screen
         << QVariantMap{{QStringLiteral("sound-name"), QStringLiteral("message-new-instant")}, // the default sound
                        {QStringLiteral("desktop-entry"), AppInfo::applicationId()}} // grouped with the program
         << qint32(-1); // expire_timeout: the service decides
    // The reply carries the notification's number, which its click and close name.
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, serviceCheckTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        const QDBusMessage reply = finished->reply();
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty())
            m_shown.insert(reply.arguments().constFirst().toUInt());
        finished->deleteLater();
    });
}

void DBusNotifier::actionInvoked(uint id, const QString &action)
{
    if (m_shown.count(id) && action == QLatin1String("default") && onClicked)
        onClicked();
}

void DBusNotifier::notificationClosed(uint id, uint)
{
    if (m_shown.erase(id) && m_shown.empty())
        Q_EMIT allClosed();
}

void DBusNotifier::requestAuthorization()
{
    if (!m_bus.isConnected()) {
        m_serviceReachable = false;
        Q_EMIT serviceChecked(false);
        return;
    }
    auto *watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(notificationsCall(QStringLiteral("GetServerInformation")), serviceCheckTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        m_serviceReachable = !finished->isError();
        finished->deleteLater();
        Q_EMIT serviceChecked(m_serviceReachable);
    });
}

std::unique_ptr<Notifier> makePlatformNotifier(const QString &dir)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        std::fprintf(stderr, "Coinhall: no D-Bus session bus, so bill reminders cannot be shown.\n");
    return std::make_unique<DBusNotifier>(bus, std::make_shared<ReminderLedger>(dir));
}
