#include "prefs.h"

#include <QJSEngine>
#include <QSettings>
#include <cmath>

#include "store/store.h"

namespace {

const QString lookKey = QStringLiteral("look");
const QString defaultLook = QStringLiteral("studio");
const QString zoomKey = QStringLiteral("qfs.zoom");
const QString welcomedKey = QStringLiteral("welcomed");

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
    if (Store *store = Store::shared())
        connect(store, &Store::requireUnlockChanged, prefs, &Prefs::requireUnlockChanged, Qt::UniqueConnection);
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

double Prefs::zoom() const
{
    bool ok = false;
    const double stored = preferences().value(zoomKey, 0).toDouble(&ok);
    return ok && std::isfinite(stored) ? stored : 0;
}

void Prefs::setZoom(double zoom)
{
    if (zoom == this->zoom())
        return;
    QSettings settings = preferences();
    settings.setValue(zoomKey, zoom);
    settings.sync();
    emit zoomChanged();
}

bool Prefs::welcomed() const
{
    return preferences().value(welcomedKey, false).toBool();
}

void Prefs::setWelcomed(bool welcomed)
{
    if (welcomed == this->welcomed())
        return;
    QSettings settings = preferences();
    settings.setValue(welcomedKey, welcomed);
    settings.sync();
    emit welcomedChanged();
}

bool Prefs::requireUnlock() const
{
    const Store *store = Store::shared();
    return store && store->requireUnlock();
}

void Prefs::setRequireUnlock(bool on)
{
    if (Store *store = Store::shared()) {
        connect(store, &Store::requireUnlockChanged, this, &Prefs::requireUnlockChanged, Qt::UniqueConnection);
        store->setRequireUnlock(on);
    }
}
