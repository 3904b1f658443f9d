import QtQuick
import Coinhall

// The engraved caption over a group of controls: upper-cased, heavy, tracked, in the
// look's soft colour with a hard black shadow 0.6 points above it.
Item {
    id: root

    property string text
    // Type size in points.
    property real size: Tokens.label2Size

    implicitWidth: face.implicitWidth
    implicitHeight: face.implicitHeight

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    Text {
        id: shadow

        y: -0.6
        text: face.text
        font: face.font
        color: Qt.rgba(0, 0, 0, 0.6)
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    BodyText {
        id: face

        text: root.text.toUpperCase()
        font.weight: Font.ExtraBold
        font.pointSize: Tokens.pt(root.size)
        font.letterSpacing: Tokens.label2Tracking
        color: Qt.rgba(Looks.current.soft.r, Looks.current.soft.g, Looks.current.soft.b, 0.8)
        Accessible.ignored: true
    }
}
