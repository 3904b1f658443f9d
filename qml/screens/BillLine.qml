import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// One bill as a row: a status dot (green fine, orange due within three days, red
// overdue), the name, the due line, the amount and a "Pay" key. Right-click (or the
// menu key, or Shift+F10 on the focused row) offers skipping, editing and deleting;
// a double-click edits. It only shows what it is given and says what the user asked
// for; whoever places it opens the sheets and calls the Store.
FocusScope {
    id: root

    // The bill to show: a map from BillsBridge (id, name, amountText, dueLine, overdue, soon, ...).
    property var bill: ({})
    readonly property alias menu: menu
    // The dot of a bill due within three days: a fixed orange, like the red and green beside it.
    readonly property color soonColor: "#FB923C"

    // "Pay" was pressed.
    signal payRequested
    // "Edit bill…" was chosen, or the row was double-clicked.
    signal editRequested
    // "Skip this one" was chosen.
    signal skipRequested
    // "Delete bill" was chosen.
    signal deleteRequested

    function openMenu(x: real, y: real) {
        menu.popup(root, x, y)
    }

    implicitWidth: plate.implicitWidth
    implicitHeight: plate.implicitHeight
    activeFocusOnTab: true

    Accessible.role: Accessible.ListItem
    Accessible.name: (bill.name || "") + ", " + (bill.amountText || "") + ", " + (bill.dueLine || "")

    Keys.onMenuPressed: openMenu(Tokens.spaceL, height)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier)) {
            openMenu(Tokens.spaceL, height)
            event.accepted = true
        }
    }

    RowBG {
        id: plate

        anchors.fill: parent

        RowLayout {
            anchors.fill: parent
            spacing: Tokens.spaceM

            Rectangle {
                objectName: "statusDot"
                Layout.alignment: Qt.AlignVCenter
                implicitWidth: 9
                implicitHeight: 9
                radius: 4.5
                color: root.bill.overdue ? Tokens.destructive : root.bill.soon ? root.soonColor : Tokens.positive
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 1

                Text {
                    objectName: "nameText"
                    Layout.fillWidth: true
                    text: root.bill.name || ""
                    font.family: Tokens.textFamily
                    font.weight: Font.Bold
                    font.pointSize: Tokens.pt(Tokens.bodySize)
                    color: Looks.current.text
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                }
                Text {
                    objectName: "dueText"
                    Layout.fillWidth: true
                    text: root.bill.dueLine || ""
                    font.family: Tokens.textFamily
                    font.weight: root.bill.overdue ? Font.ExtraBold : Font.Normal
                    font.pointSize: Tokens.pt(Tokens.captionSize)
                    color: root.bill.overdue ? Tokens.destructive : Looks.current.muted
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                }
            }

            Text {
                objectName: "amountText"
                text: root.bill.amountText || ""
                font.family: Tokens.lcdFamily
                font.weight: Font.Bold
                font.pointSize: Tokens.pt(Tokens.amountSize)
                color: Looks.current.text
                textFormat: Text.PlainText
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            Key {
                objectName: "payKey"
                title: "Pay"
                onClicked: root.payRequested()
            }
        }
    }

    // Clicks on the row itself, under the key: right-click for the menu, double-click to edit.
    MouseArea {
        anchors.fill: parent
        z: -1
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton)
                root.openMenu(mouse.x, mouse.y)
            else
                root.forceActiveFocus(Qt.MouseFocusReason)
        }
        onDoubleClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                root.editRequested()
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: -2
        radius: Tokens.rowRadius + 2
        color: "transparent"
        border.width: 1.5
        border.color: Looks.current.accent2
        visible: root.activeFocus && !menu.visible
    }

    QFMenu {
        id: menu

        Action {
            text: "Skip this one"
            onTriggered: root.skipRequested()
        }
        Action {
            text: "Edit bill…"
            onTriggered: root.editRequested()
        }
        MenuSeparator {}
        Action {
            text: "Delete bill"
            onTriggered: root.deleteRequested()
        }
    }
}
