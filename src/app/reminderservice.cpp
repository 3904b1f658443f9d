#include "reminderservice.h"

#include "help/helptexts.h"
#include "store/atomicfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>

namespace ReminderService {
namespace {

const QString timerName = QStringLiteral("coinhall-reminders.timer");
const QString doneKey = QStringLiteral("reminderService");

} // namespace

QString autostartFileName()
{
    return AppInfo::applicationId() + QStringLiteral(".Reminders.desktop");
}

bool writeAutostartEntry(const QString &folder, const QString &program)
{
    if (!QDir().mkpath(folder))
        return false;
    const QString text = QStringLiteral("[Desktop Entry]\n"
                                        "Type=Application\n"
                                        "Name=QFS Coinhall reminders\n"
                                        "Comment=Shows bill reminders while Coinhall is closed\n"
                                        "Exec=\"%1\" remind --wait\n"
                                        "Icon=%2\n"
                                        "NoDisplay=true\n"
                                        "X-GNOME-Autostart-enabled=true\n")
                             .arg(program, AppInfo::applicationId());
    return writeFileAtomically(QDir(folder).filePath(autostartFileName()), text.toUtf8(), nullptr);
}

void enableOnce()
{
    QSettings settings;
    if (!settings.value(doneKey).toString().isEmpty())
        return;
    // Installed: the timer's unit lies beside the program (<prefix>/bin and
    // <prefix>/lib/systemd/user).
    const QString program = QCoreApplication::applicationFilePath();
    const QDir prefix(QCoreApplication::applicationDirPath() + QStringLiteral("/.."));
    if (!QFileInfo::exists(prefix.filePath(QStringLiteral("lib/systemd/user/") + timerName)))
        return;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString systemctl = QStandardPaths::findExecutable(QStringLiteral("systemctl"));
    if (!runtime.isEmpty() && !systemctl.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/systemd/private"))) {
        QProcess::startDetached(systemctl, {QStringLiteral("--user"), QStringLiteral("enable"), QStringLiteral("--now"),
                                            timerName});
        settings.setValue(doneKey, QStringLiteral("systemd"));
        return;
    }
    const QString autostart =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/autostart");
    if (writeAutostartEntry(autostart, program)) {
        // For this session too; a second one started later finds this one and leaves.
        QProcess::startDetached(program, {QStringLiteral("remind"), QStringLiteral("--wait")});
        settings.setValue(doneKey, QStringLiteral("autostart"));
    }
}

} // namespace ReminderService
