import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// An on/off row of the bill and royalty sheets: the caption, then a switch drawn in
// the look's colours at the trailing end. Space toggles it.
Switch {
    id: root

    // The look to draw with.
    property var look: Looks.current

    Layout.fillWidth: true
    padding: 0
    spacing: Tokens.spaceM
    font.family: Tokens.textFamily
    font.weight: Font.DemiBold
    font.pointSize: Tokens.pt(Tokens.bodySize)
    Accessible.name: text

    indicator: Rectangle {
        x: root.width - width
        y: (root.height - height) / 2
        implicitWidth: 38
        implicitHeight: 20
        radius: height / 2
        color: root.checked ? root.look.accent : root.look.bg
        border.width: root.visualFocus ? 1.5 : 1
        border.color: root.visualFocus ? root.look.accent2 : root.look.line

        Rectangle {
            x: root.checked ? parent.width - width - 3 : 3
            anchors.verticalCenter: parent.verticalCenter
            width: 14
            height: 14
            radius: 7
            color: root.checked ? root.look.bg : root.look.muted

            Behavior on x {
                NumberAnimation { duration: 120 }
            }
        }
    }

    contentItem: Text {
        rightPadding: root.indicator.width + root.spacing
        text: root.text
        font: root.font
        color: root.look.soft
        wrapMode: Text.WordWrap
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
    }
}
