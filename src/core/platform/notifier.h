#pragma once

#include "model/instant.h"

#include <QString>

#include <functional>
#include <memory>

// One local notification, to be shown once at a set moment with the default sound.
struct ReminderRequest
{
    // Unique within one rebuild: the bill's id in upper case and the days before due ("…-3").
    QString identifier;
    QString title;
    QString body;
    // When to show it: a local year, month, day, hour and minute, so whole minutes only.
    Instant fireAt;
    friend bool operator==(const ReminderRequest &, const ReminderRequest &) = default;
};

// The desktop's notification centre, as far as bill reminders use it.
class Notifier
{
public:
    virtual ~Notifier() = default;

    // Cancels every request of this program that has not been shown yet.
    virtual void removeAllPending() = 0;
    // Schedules one request; failures are not reported.
    virtual void add(const ReminderRequest &request) = 0;
    // Asks to show alerts, play sounds and set badges; the answer is not looked at.
    virtual void requestAuthorization() = 0;

    // Called when the user clicks a notification shown from here.
    std::function<void()> onClicked;
};

// The notification centre of this platform: freedesktop Notifications on the session bus on Linux,
// its reminders kept in `dir` (the application folder) for the reminder service too.
std::unique_ptr<Notifier> makePlatformNotifier(const QString &dir);
