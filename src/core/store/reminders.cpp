// Bill reminders: the Store's side. Which requests to make is ReminderPlan's job;
// this file only debounces the rebuild and hands the plan to the notification centre.
#include "platform/reminderledger.h"
#include "store/reminderplan.h"
#include "store/store.h"

#include <QTimer>

namespace {

// A burst of changes (an import, a payment that changes three things) costs one rebuild.
constexpr int reminderDelayMs = 1000;

} // namespace

void Store::scheduleReminders()
{
    // The bills are not known yet; the end of the reading schedules them.
    if (loading())
        return;
    if (!m_reminderWork) {
        m_reminderWork = new QTimer(this);
        m_reminderWork->setSingleShot(true);
        m_reminderWork->setInterval(reminderDelayMs);
        connect(m_reminderWork, &QTimer::timeout, this, &Store::rebuildReminders);
    }
    // The bills as they are now: the rebuild reflects this call, not later changes.
    m_reminderSnapshot = activeBills();
    // The plan on disk follows at once, so that the reminder service never shows a
    // bill paid a moment ago. It only changes when bills do.
    if (writable()) {
        const ReminderLedger ledger(m_dir);
        if (!m_writtenPlan)
            m_writtenPlan = ledger.plan();
        std::vector<ReminderRequest> plan = ReminderPlan::requests(m_reminderSnapshot, now());
        if (plan != *m_writtenPlan && ledger.writePlan(plan))
            m_writtenPlan = std::move(plan);
    }
    m_reminderWork->start();
}

void Store::rebuildReminders()
{
    const std::vector<ReminderRequest> planned = ReminderPlan::requests(m_reminderSnapshot, now());
    Notifier &centre = notifier();
    centre.removeAllPending();
    for (const ReminderRequest &request : planned)
        centre.add(request);
}

void Store::requestNotifications()
{
    notifier().requestAuthorization();
}

Notifier &Store::notifier()
{
    if (!m_notifier) {
        m_notifier = makePlatformNotifier(m_dir);
        m_notifier->onClicked = [this] { Q_EMIT reminderClicked(); };
    }
    return *m_notifier;
}
