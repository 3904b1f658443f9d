#pragma once

#include "platform/notifier.h"

#include <QString>

#include <vector>

// The bill reminders the system holds for the user, kept in the application folder
// beside the money file: the plan the window made last ("reminders.json") and which
// of its reminders were shown ("reminders-shown.json"). The window's own timers and
// the reminder service that the system starts while the window is closed both deliver
// from here, and whoever comes first at a reminder's time takes it, so each is shown
// once. A reminder whose moment passed more than a little while ago (the computer
// slept, or was off) is never shown.
class ReminderLedger
{
public:
    // How late a reminder may still be shown.
    static constexpr std::int64_t lateLimitMs = 2 * 60 * 1000;

    explicit ReminderLedger(QString dir);

    // Replaces the plan (atomically); false, with `reason`, when it cannot be written.
    bool writePlan(const std::vector<ReminderRequest> &plan, QString *reason = nullptr) const;
    // The plan as last written; empty when there is none or it cannot be read.
    std::vector<ReminderRequest> plan() const;

    // Whether the caller is to show `request` now: it is still in the plan as it
    // stands, its moment has come and is not past the late limit, and nobody showed it
    // yet. When true, it is recorded as shown.
    bool take(const ReminderRequest &request, Instant now) const;

    QString planPath() const;
    // Removes what a write cut short by a crash left; for the window's start, which no
    // other writer of the plan runs beside.
    void clearLeftovers() const;

private:
    QString m_dir;
};
