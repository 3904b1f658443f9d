pragma Singleton
import QtQuick

// Design tokens: the type faces, spacing, radii and sizes the widgets and screens
// share, so no screen carries its own literal numbers.
// Imports nothing of Coinhall: two singletons of one module that both import the
// module load each other in a cycle.
QtObject {
    id: root

    // Type faces. Where one is not installed Qt falls back to the system font.
    readonly property string displayFamily: "Unbounded"
    readonly property string textFamily: "Manrope"
    // The system's monospaced design (fontconfig's "monospace" on Linux).
    readonly property string lcdFamily: Qt.platform.os === "osx" ? "Menlo"
                                        : Qt.platform.os === "windows" ? "Consolas" : "monospace"
    readonly property string iconFamily: "Material Icons"
    // Whether the icon face was registered before the first icon was drawn.
    readonly property bool hasIconFont: Qt.fontFamilies().indexOf(iconFamily) >= 0

    // Spacing, smallest to largest.
    readonly property real spaceXS: 4
    readonly property real spaceS: 6
    readonly property real spaceM: 10
    readonly property real spaceL: 14
    readonly property real spaceXL: 20

    // Corner radii.
    readonly property real panelRadius: 12
    readonly property real keyRadius: 7
    readonly property real wellRadius: 8
    readonly property real lcdRadius: 6
    readonly property real rowRadius: 6
    readonly property real sheetRadius: 14

    // Panels.
    readonly property real panelPadding: 14
    readonly property real screwSize: 9

    // Type sizes, in points of the window's logical coordinates.
    readonly property real label2Size: 9.5
    readonly property real label2Tracking: 1.2
    readonly property real knobLabelSize: 9
    readonly property real amountSize: 13
    readonly property real noteSize: 12.5
    readonly property real bodySize: 13
    readonly property real captionSize: 11
    readonly property real keySize: 12.5
    readonly property real keyIconSize: 15
    readonly property real screenTitleSize: 24
    readonly property real subtitleSize: 12.5
    readonly property real sheetTitleSize: 14
    // Small capitals on a badge ("PENDING"): below this, heavy capitals lose the shapes
    // that tell them apart (a G reads as an O).
    readonly property real badgeSize: 10.5

    // Keys.
    readonly property real keyHeight: 30
    readonly property real keyPadding: 11
    readonly property real keyWidePadding: 20

    readonly property real knobDragSpan: 150

    // LCD scan lines: one line of this height every `lcdLinePitch` points.
    readonly property real lcdLinePitch: 3
    readonly property real lcdLineHeight: 1

    // The note of an empty list.
    readonly property real notePadding: 18

    // List rows.
    readonly property real rowPadH: 10
    readonly property real rowPadV: 7

    // Sheets.
    readonly property real sheetWidth: 460
    readonly property real sheetTitleSide: 20
    readonly property real sheetTitleTop: 18
    readonly property real sheetTitleBottom: 6
    readonly property real sheetButtonInset: 16

    // Form fields.
    readonly property real fieldHeight: 30
    readonly property real fieldLabelWidth: 110

    // Fixed colours that do not follow the look: gains and destructive actions.
    readonly property color positive: "#4ADE80"
    readonly property color destructive: "#F87171"

    // Qt's font points become pixels at the screen's logical dots per inch; this turns
    // a size in logical pixels (points of the rack's drawings) into a font point size.
    readonly property real dpi: Qt.application.screens.length > 0
                                ? Math.round(Qt.application.screens[0].logicalPixelDensity * 25.4) : 96
    function pt(size: real): real {
        return size * 72 / (dpi > 0 ? dpi : 96)
    }
}
