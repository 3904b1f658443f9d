#pragma once

#include <QString>

// The reminder service that shows bill reminders while the window is closed
// (`coinhall remind`). An installed Coinhall turns it on for its user once, at the
// first start: the systemd user timer shipped beside the program where a systemd user
// manager runs, else an entry in the desktop session's autostart folder that keeps
// `coinhall remind --wait` running. A Coinhall run from its build folder does nothing.
namespace ReminderService {

// Turns the service on when it has not been yet; returns at once (the work is done by
// other processes).
void enableOnce();

// Writes the autostart entry that runs `program remind --wait` into `folder`; false
// when it cannot be written.
bool writeAutostartEntry(const QString &folder, const QString &program);

// The entry's file name: "com.quillfern.Coinhall.Reminders.desktop".
QString autostartFileName();

} // namespace ReminderService
