#pragma once

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

// Whole-window zoom: its limits, the View menu's levels and steps, and the factor in
// force, kept in Prefs ("qfs.zoom"). In C++ rather than a QML singleton, because a QML
// singleton that imports its own module to reach Prefs makes a cycle with the looks.
class Zoom : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(QFZoom)
    QML_SINGLETON
    // The levels of the Zoom Level menu, in per cent.
    Q_PROPERTY(QVariantList levels READ levels CONSTANT FINAL)
    // The factor in force: 1.0 while nothing (or 0) is stored, else the stored one clamped.
    Q_PROPERTY(double value READ value NOTIFY valueChanged FINAL)

public:
    static constexpr double min = 0.85;
    static constexpr double max = 2.0;
    static constexpr double step = 0.15;

    static Zoom *create(QQmlEngine *qmlEngine, QJSEngine *jsEngine);

    QVariantList levels() const;
    double value() const;

    // Rounds to two decimals, then keeps it within min and max.
    Q_INVOKABLE static double clamp(double z);
    // Stores `z`, clamped.
    Q_INVOKABLE void setValue(double z);
    // One step up; from a stored value below the minimum it goes to 100%.
    Q_INVOKABLE void zoomIn();
    // One step down.
    Q_INVOKABLE void zoomOut();
    Q_INVOKABLE void actualSize();
    // Jumps to a level of the menu, given in per cent.
    Q_INVOKABLE void setLevel(int percent);

Q_SIGNALS:
    void valueChanged();

private:
    explicit Zoom(QObject *parent = nullptr);
    // One step from the stored factor: `up` or down, from `below` when it is under the minimum.
    void stepBy(double delta, double below);
};
