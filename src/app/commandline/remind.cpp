// coinhall remind: the reminder service. The system starts it at 09:00 (a systemd user
// timer) to show the bill reminders due then while the window is closed; with --wait
// (the fallback started with the desktop session) it stays and shows each at its time.
#include "commands.h"

#include "platform/dbusnotifier.h"
#include "platform/reminderledger.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFileSystemWatcher>
#include <QLockFile>
#include <QProcess>
#include <QTimer>

#include <algorithm>

namespace CommandLine {
namespace {

// How long shown notifications are waited on for a click, at most.
int lingerMs()
{
    bool ok = false;
    const int ms = qEnvironmentVariableIntValue("COINHALL_REMIND_LINGER_MS", &ok);
    return ok ? ms : 30 * 60 * 1000;
}
// The longest single wait of --wait: the clock is looked at again after it, as after
// a sleep of the computer.
constexpr std::int64_t longestWaitMs = 15 * 60 * 1000;

// Shows what is due now; the number shown.
int showDue(const ReminderLedger &ledger, DBusNotifier &notifier)
{
    int shown = 0;
    const Instant now = Instant::now();
    for (const ReminderRequest &request : ledger.plan()) {
        if (ledger.take(request, now)) {
            notifier.show(request);
            ++shown;
        }
    }
    return shown;
}

// The time of the next reminder still to come, if any.
std::optional<Instant> nextMoment(const ReminderLedger &ledger)
{
    std::optional<Instant> next;
    const Instant now = Instant::now();
    for (const ReminderRequest &request : ledger.plan()) {
        if (request.fireAt > now && (!next || request.fireAt < *next))
            next = request.fireAt;
    }
    return next;
}

} // namespace

int remind(const QString &dir, const QStringList &arguments, std::FILE *err)
{
    const Options options(arguments, {QStringLiteral("--wait")}, {});
    if (!options.error().isEmpty() || !options.words().isEmpty())
        return usageError(err, options.error().isEmpty() ? QStringLiteral("remind takes only --wait.") : options.error());
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        print(err, QStringLiteral("No D-Bus session bus: bill reminders cannot be shown."));
        return ExitStatus::failed;
    }
    const ReminderLedger ledger(dir);
    DBusNotifier notifier(bus);
    // A click opens the window on the Bills screen (or brings the running one there).
    notifier.onClicked = [dir] {
        QStringList open{QStringLiteral("--open"), QStringLiteral("bills")};
        if (dir != Store::defaultDir())
            open << QStringLiteral("--data-dir") << dir;
        QProcess::startDetached(QCoreApplication::applicationFilePath(), open);
    };

    if (!options.has(QStringLiteral("--wait"))) {
        if (showDue(ledger, notifier) == 0)
            return ExitStatus::ok;
        QObject::connect(&notifier, &DBusNotifier::allClosed, qApp, &QCoreApplication::quit);
        QTimer::singleShot(lingerMs(), qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        return ExitStatus::ok;
    }

    // One waiting service per folder.
    QLockFile running(QDir(dir).filePath(QStringLiteral("reminders-service.lock")));
    if (!running.tryLock(0))
        return ExitStatus::ok;
    QTimer wake;
    wake.setSingleShot(true);
    wake.setTimerType(Qt::PreciseTimer);
    const auto plan = [&] {
        showDue(ledger, notifier);
        const std::optional<Instant> next = nextMoment(ledger);
        const std::int64_t left = next ? next->msecs() - Instant::now().msecs() : longestWaitMs;
        wake.start(int(std::clamp<std::int64_t>(left, 0, longestWaitMs)));
    };
    QObject::connect(&wake, &QTimer::timeout, plan);
    // A new plan from the window: the next moment may have changed.
    QFileSystemWatcher watcher({dir});
    QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, plan);
    plan();
    return QCoreApplication::exec();
}

} // namespace CommandLine
