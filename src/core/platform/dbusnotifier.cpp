#include "platform/dbusnotifier.h"

#include "help/helptexts.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <algorithm>

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

DBusNotifier::DBusNotifier(QDBusConnection bus, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
{}

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
    if (!m_bus.isConnected())
        return;

    QDBusMessage call = notificationsCall(QStringLiteral("Notify"));
    call << AppInfo::displayName()     // app_name
         << uint(0)                    // replaces_id: a new notification
         << AppInfo::applicationId()   // app_icon: the installed icon's name
         << request.title              // summary
         << request.body << QStringList() // body, no actions
         << QVariantMap{{QStringLiteral("sound-name"), QStringLiteral("message-new-instant")}, // the default sound
                        {QStringLiteral("desktop-entry"), AppInfo::applicationId()}} // grouped with the program
         << qint32(-1); // expire_timeout: the service decides
    // The reply only carries the notification's number, which nothing here needs.
    m_bus.send(call);
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

std::unique_ptr<Notifier> makePlatformNotifier()
{
    return std::make_unique<DBusNotifier>();
}
