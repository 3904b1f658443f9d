import QtQuick
import QtQuick.Layouts
import Coinhall

// A stepper row: its text (which names the value) under the other fields, then a key
// that lowers and one that raises `value` within `from` and `to`. Up and Down on the
// focused row do the same.
FormRow {
    id: root

    // What the row says for the current value.
    property string text
    property int value: 0
    property int from: 0
    property int to: 100
    // What a screen reader calls the two keys.
    property string decreaseName: "Fewer"
    property string increaseName: "More"

    function step(by: int) {
        value = Math.max(from, Math.min(to, value + by))
    }

    activeFocusOnTab: true

    Accessible.role: Accessible.SpinBox
    Accessible.name: text
    Accessible.onIncreaseAction: step(1)
    Accessible.onDecreaseAction: step(-1)

    Keys.onUpPressed: step(1)
    Keys.onDownPressed: step(-1)

    Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Rectangle {
            anchors.fill: parent
            anchors.margins: -2
            radius: Tokens.keyRadius
            color: "transparent"
            border.width: 1.5
            border.color: Looks.current.accent2
            visible: root.activeFocus
        }

        RowLayout {
            id: row

            anchors.fill: parent
            spacing: Tokens.spaceS

            BodyText {
                Layout.fillWidth: true
                text: root.text
                font.weight: Font.DemiBold
                color: Looks.current.soft
                wrapMode: Text.WordWrap
                Accessible.ignored: true
            }

            Key {
                title: "\u2212"
                enabled: root.value > root.from
                focusPolicy: Qt.NoFocus
                Accessible.name: root.decreaseName
                onClicked: root.step(-1)
            }
            Key {
                title: "+"
                enabled: root.value < root.to
                focusPolicy: Qt.NoFocus
                Accessible.name: root.increaseName
                onClicked: root.step(1)
            }
        }
    }
}
