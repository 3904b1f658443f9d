pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Coinhall

// A segmented picker: one lit segment among a few texts ("All", "Money in", "Money
// out"). Tab reaches the segments, Space or a click picks one, Left and Right move
// the choice. `activated` tells a user's pick apart from a bound value.
FocusScope {
    id: root

    // The segments' texts, left to right.
    property var options: []
    property int currentIndex: 0
    // What a screen reader calls the whole picker.
    property string name
    // The widest label's need: every segment gets it, or more when the picker is stretched.
    property real widest: 0

    // The user picked the segment at `index`.
    signal activated(int index)

    function pick(index: int) {
        if (index < 0 || index >= options.length)
            return
        currentIndex = index
        activated(index)
    }

    implicitWidth: options.length * widest + Math.max(0, options.length - 1) * segments.spacing + 2 * segments.anchors.margins
    implicitHeight: Tokens.fieldHeight
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Keys.onLeftPressed: {
        pick(Math.max(0, currentIndex - 1))
        buttons.itemAt(currentIndex).forceActiveFocus(Qt.TabFocusReason)
    }
    Keys.onRightPressed: {
        pick(Math.min(options.length - 1, currentIndex + 1))
        buttons.itemAt(currentIndex).forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        anchors.fill: parent
        radius: Tokens.keyRadius
        color: Looks.current.bg
        border.width: 1
        border.color: Looks.current.line
    }

    Row {
        id: segments

        anchors.fill: parent
        anchors.margins: 2
        spacing: 2

        Repeater {
            id: buttons

            model: root.options

            T.AbstractButton {
                id: segment

                required property int index
                required property string modelData
                readonly property bool chosen: root.currentIndex === index

                width: (segments.width - (root.options.length - 1) * segments.spacing) / root.options.length
                height: segments.height
                implicitWidth: label.implicitWidth + 2 * Tokens.keyPadding
                onImplicitWidthChanged: root.widest = Math.max(root.widest, implicitWidth)
                Component.onCompleted: root.widest = Math.max(root.widest, implicitWidth)
                text: modelData
                focusPolicy: Qt.StrongFocus
                // The button's own state: Qt hands it to screen readers when they
                // connect, over anything set on Accessible.
                checked: chosen
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.onPressAction: root.pick(index)

                onClicked: root.pick(index)
                Keys.onSpacePressed: root.pick(index)

                background: Rectangle {
                    radius: Tokens.keyRadius - 2
                    color: segment.chosen ? Looks.current.accent
                           : segment.hovered ? Qt.rgba(Looks.current.accent.r, Looks.current.accent.g, Looks.current.accent.b, 0.14)
                           : "transparent"
                    border.width: segment.visualFocus ? 1.5 : 0
                    border.color: Looks.current.accent2
                }

                contentItem: Text {
                    id: label

                    text: segment.text
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    font.family: Tokens.textFamily
                    font.weight: Font.Bold
                    font.pointSize: Tokens.pt(Tokens.keySize)
                    color: segment.chosen ? Looks.current.bg : Looks.current.text
                    textFormat: Text.PlainText
                }
            }
        }
    }
}
