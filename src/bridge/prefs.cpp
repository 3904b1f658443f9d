#include "prefs.h"

#include <QJSEngine>
#include <QSettings>

namespace {

const QString lookKey = QStringLiteral("look");
const QString defaultLook = QStringLiteral("studio");

QSettings preferences()
{
    return QSettings(QStringLiteral("QFS"), QStringLiteral("Coinhall"));
}

} // namespace

Prefs::Prefs(QObject *parent)
    : QObject(parent)
{}

Prefs *Prefs::instance()
{
    static Prefs prefs;
    return &prefs;
}

Prefs *Prefs::create(QQmlEngine *, QJSEngine *)
{
    Prefs *prefs = instance();
    QJSEngine::setObjectOwnership(prefs, QJSEngine::CppOwnership);
    return prefs;
}

QString Prefs::look() const
{
    // Read each time: the settings are the one place the choice lives.
    return preferences().value(lookKey, defaultLook).toString();
}

void Prefs::setLook(const QString &id)
{
    if (id == look())
        return;
    QSettings settings = preferences();
    settings.setValue(lookKey, id);
    settings.sync();
    emit lookChanged();
}
