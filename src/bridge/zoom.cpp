#include "zoom.h"

#include <QJSEngine>
#include <cmath>

#include "prefs.h"

namespace {

// Two decimals as the menu shows them, rounding halves up.
double hundredths(double z)
{
    return std::floor(z * 100 + 0.5) / 100;
}

} // namespace

Zoom::Zoom(QObject *parent)
    : QObject(parent)
{
    connect(Prefs::instance(), &Prefs::zoomChanged, this, &Zoom::valueChanged);
}

Zoom *Zoom::create(QQmlEngine *, QJSEngine *)
{
    static Zoom zoom;
    QJSEngine::setObjectOwnership(&zoom, QJSEngine::CppOwnership);
    return &zoom;
}

QVariantList Zoom::levels() const
{
    return {85, 100, 115, 130, 150, 175, 200};
}

double Zoom::value() const
{
    const double stored = Prefs::instance()->zoom();
    return stored == 0 ? 1.0 : clamp(stored);
}

double Zoom::clamp(double z)
{
    return std::min(max, std::max(min, hundredths(z)));
}

void Zoom::setValue(double z)
{
    Prefs::instance()->setZoom(clamp(z));
}

void Zoom::stepBy(double delta, double below)
{
    const double stored = Prefs::instance()->zoom();
    if (stored == 0) {
        setValue(1.0 + delta);
        return;
    }
    // Whole per cent at every step, so repeated steps never drift.
    const double current = hundredths(stored);
    setValue(current < min ? below : std::min(current, max) + delta);
}

void Zoom::zoomIn()
{
    stepBy(step, 1.0);
}

void Zoom::zoomOut()
{
    stepBy(-step, 0.70);
}

void Zoom::actualSize()
{
    setValue(1.0);
}

void Zoom::setLevel(int percent)
{
    setValue(percent / 100.0);
}
