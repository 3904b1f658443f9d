import QtQuick
import Coinhall

// The heading at the top of each screen: the title in the display face, the subtitle
// under it in the body face.
Item {
    id: root

    property string title
    property string subtitle

    implicitWidth: Math.max(heading.implicitWidth, sub.implicitWidth)
    implicitHeight: sub.visible ? sub.y + sub.implicitHeight : heading.implicitHeight

    Text {
        id: heading

        width: root.width
        text: root.title
        font.family: Tokens.displayFamily
        font.weight: Font.ExtraBold
        font.pointSize: Tokens.pt(Tokens.screenTitleSize)
        color: Looks.current.text
        textFormat: Text.PlainText
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    BodyText {
        id: sub

        y: heading.implicitHeight + Tokens.spaceXS
        width: root.width
        visible: root.subtitle !== ""
        text: root.subtitle
        font.pointSize: Tokens.pt(Tokens.subtitleSize)
        color: Looks.current.muted
        wrapMode: Text.WordWrap
    }
}
