import QtQuick
import Coinhall

// A system symbol drawn from the icon font. Decorative unless given an accessible name.
Text {
    id: root

    // The system symbol name, for example "plus.circle".
    property string symbol
    // Size of the glyph in points.
    property real size: 16
    // What a screen reader says; empty keeps the icon out of the accessibility tree.
    property string label

    // Draw the ligature only when the icon face is really there: without it the
    // ligature name would show as a word.
    text: Tokens.hasIconFont ? Icons.glyph(symbol) : ""
    font.family: Tokens.iconFamily
    font.pointSize: Tokens.pt(size)
    verticalAlignment: Text.AlignVCenter
    horizontalAlignment: Text.AlignHCenter
    textFormat: Text.PlainText
    renderType: Text.QtRendering

    Accessible.role: Accessible.Graphic
    Accessible.name: label
    Accessible.ignored: label === ""
}
