#include "platform/reminderledger.h"

#include "store/atomicfile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>

#include <algorithm>

namespace {

const QString planName = QStringLiteral("reminders.json");
const QString shownName = QStringLiteral("reminders-shown.json");
const QString lockName = QStringLiteral("reminders.lock");
// Moments are kept as milliseconds since 1970 (UTC).
// Shown reminders are remembered for two days: long enough to cover any plan that
// can still name them.
constexpr std::int64_t shownKeptMs = 2 * 24 * 60 * 60 * 1000;
constexpr int lockWaitMs = 5000;
constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QJsonArray readArray(const QString &path, const QString &key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object().value(key).toArray();
}

bool writeObject(const QString &path, const QJsonObject &object, QString *reason)
{
    return writeFileAtomically(path, QJsonDocument(object).toJson(QJsonDocument::Indented), reason, ownerOnly);
}

} // namespace

ReminderLedger::ReminderLedger(QString dir)
    : m_dir(std::move(dir))
{}

void ReminderLedger::clearLeftovers() const
{
    QFile::remove(inProgressPath(planPath()));
    QLockFile lock(QDir(m_dir).filePath(lockName));
    if (lock.tryLock(0))
        QFile::remove(inProgressPath(QDir(m_dir).filePath(shownName)));
}

QString ReminderLedger::planPath() const
{
    return QDir(m_dir).filePath(planName);
}

bool ReminderLedger::writePlan(const std::vector<ReminderRequest> &plan, QString *reason) const
{
    QJsonArray requests;
    for (const ReminderRequest &r : plan)
        requests.append(QJsonObject{{QStringLiteral("identifier"), r.identifier},
                                    {QStringLiteral("title"), r.title},
                                    {QStringLiteral("body"), r.body},
                                    {QStringLiteral("fireAt"), qint64(r.fireAt.msecs())}});
    return writeObject(planPath(), QJsonObject{{QStringLiteral("requests"), requests}}, reason);
}

std::vector<ReminderRequest> ReminderLedger::plan() const
{
    std::vector<ReminderRequest> plan;
    for (const QJsonValue &value : readArray(planPath(), QStringLiteral("requests"))) {
        const QJsonObject o = value.toObject();
        if (!o.value(QStringLiteral("fireAt")).isDouble())
            continue;
        plan.push_back({o.value(QStringLiteral("identifier")).toString(), o.value(QStringLiteral("title")).toString(),
                        o.value(QStringLiteral("body")).toString(),
                        Instant::fromMSecs(o.value(QStringLiteral("fireAt")).toInteger())});
    }
    return plan;
}

bool ReminderLedger::take(const ReminderRequest &request, Instant now) const
{
    if (now < request.fireAt || now.msecs() - request.fireAt.msecs() > lateLimitMs)
        return false;
    QLockFile lock(QDir(m_dir).filePath(lockName));
    if (!lock.tryLock(lockWaitMs))
        return false;
    // A bill paid or changed since this request was made has a new plan without it.
    const std::vector<ReminderRequest> current = plan();
    if (std::find(current.begin(), current.end(), request) == current.end())
        return false;
    const QString shownPath = QDir(m_dir).filePath(shownName);
    const qint64 fireAt = request.fireAt.msecs();
    QJsonArray kept;
    for (const QJsonValue &value : readArray(shownPath, QStringLiteral("shown"))) {
        const QJsonObject o = value.toObject();
        const qint64 at = o.value(QStringLiteral("fireAt")).toInteger();
        if (o.value(QStringLiteral("identifier")).toString() == request.identifier && at == fireAt)
            return false;
        if (now.msecs() - at < shownKeptMs)
            kept.append(o);
    }
    kept.append(QJsonObject{{QStringLiteral("identifier"), request.identifier}, {QStringLiteral("fireAt"), fireAt}});
    return writeObject(shownPath, QJsonObject{{QStringLiteral("shown"), kept}}, nullptr);
}
