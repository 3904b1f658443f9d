pragma Singleton
import QtQuick
import Coinhall

// Whole-window zoom: its limits, the menu's levels and the stored factor.
QtObject {
    id: root

    // The settings key of the zoom factor.
    readonly property string key: "qfs.zoom"
    readonly property real min: 0.85
    readonly property real max: 2.0
    readonly property real step: 0.15
    // The levels of the Zoom Level menu, in per cent.
    readonly property var levels: [85, 100, 115, 130, 150, 175, 200]

    // The factor in force: 1.0 while nothing (or 0) is stored, else the stored one clamped.
    readonly property real value: stored === 0 ? 1.0 : clamp(stored)

    // The value in the settings as it is, 0 when missing or not a number.
    readonly property real stored: Prefs.zoom

    // Rounds to two decimals, then keeps it within min and max.
    function clamp(z: real): real {
        return Math.min(max, Math.max(min, Math.round(z * 100) / 100))
    }

    // Stores `z`, clamped.
    function setValue(z: real) {
        write(clamp(z))
    }

    // One step up. From a stored value below the minimum it goes to 100%.
    function zoomIn() {
        if (stored === 0) {
            write(wholePercent(1.0 + step))
            return
        }
        const c = Math.round(stored * 100) / 100
        write(wholePercent(c < min ? 1.0 : Math.min(c, max) + step))
    }

    // One step down.
    function zoomOut() {
        if (stored === 0) {
            write(wholePercent(1.0 - step))
            return
        }
        const c = Math.round(stored * 100) / 100
        write(wholePercent(c < min ? 0.70 : Math.min(c, max) - step))
    }

    function actualSize() {
        write(1.0)
    }

    // Jumps to a level of the menu, given in per cent.
    function setLevel(percent: int) {
        write(clamp(percent / 100))
    }

    // Rounded to whole per cent and clamped, so repeated steps never drift.
    function wholePercent(z: real): real {
        return clamp(Math.round(z * 100) / 100)
    }

    function write(z: real) {
        Prefs.zoom = z
    }
}
