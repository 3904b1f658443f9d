import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// One royalty as a row. Expected: the note symbol, the payer (with " · FOLLOWING UP"
// while followed up), its work and period, the expected amount and date, and a "Got
// it" key. Received: the amount that came and how it compared with the guess.
// Right-click (or the menu key, or Shift+F10) offers editing and deleting; a
// double-click edits. It only shows what it is given and says what the user asked for.
FocusScope {
    id: root

    // The royalty to show: a map from RoyaltiesBridge.
    property var royalty: ({})
    readonly property bool received: royalty.received === true
    readonly property alias menu: menu

    // "Got it" was pressed.
    signal receiveRequested
    // "Edit royalty…" was chosen, or the row was double-clicked.
    signal editRequested
    // "Delete" was chosen.
    signal deleteRequested

    function openMenu(x: real, y: real) {
        menu.popup(root, x, y)
    }

    implicitWidth: plate.implicitWidth
    implicitHeight: plate.implicitHeight
    activeFocusOnTab: true

    Accessible.role: Accessible.ListItem
    Accessible.name: received
                     ? (royalty.payer || "") + ", " + (royalty.receivedText || "") + ", " + (royalty.versus || "")
                       + ", " + (royalty.receivedDateText || "")
                     : (royalty.payerLine || "") + ", " + (royalty.expectedText || "") + ", expected "
                       + (royalty.expectedDateText || "")

    Keys.onMenuPressed: openMenu(Tokens.spaceL, height)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier)) {
            openMenu(Tokens.spaceL, height)
            event.accepted = true
        }
    }

    // Clicks on the row itself, under the key: right-click for the menu, double-click to edit.
    MouseArea {
        anchors.fill: parent
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

    RowBG {
        id: plate

        anchors.fill: parent

        RowLayout {
            anchors.fill: parent
            spacing: Tokens.spaceM

            Icon {
                symbol: "music.note"
                size: 18
                color: root.received ? Tokens.positive
                       : root.royalty.followingUp ? Tokens.destructive : Looks.current.accent
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 1

                Text {
                    objectName: "payerText"
                    Layout.fillWidth: true
                    text: (root.received ? root.royalty.payer : root.royalty.payerLine) || ""
                    font.family: Tokens.textFamily
                    font.weight: Font.Bold
                    font.pointSize: Tokens.pt(Tokens.bodySize)
                    color: Looks.current.text
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                }
                Text {
                    objectName: "workText"
                    Layout.fillWidth: true
                    visible: text !== ""
                    text: root.received ? [root.royalty.workLine, root.royalty.receivedDateText].filter(part => part)
                                                                                              .join(" · ")
                                        : root.royalty.workLine || ""
                    font.family: Tokens.textFamily
                    font.pointSize: Tokens.pt(Tokens.captionSize)
                    color: Looks.current.muted
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                }
            }

            ColumnLayout {
                spacing: 1

                Text {
                    objectName: "amountText"
                    Layout.alignment: Qt.AlignRight
                    text: (root.received ? root.royalty.receivedText : root.royalty.expectedText) || ""
                    font.family: Tokens.lcdFamily
                    font.weight: Font.Bold
                    font.pointSize: Tokens.pt(Tokens.amountSize)
                    color: root.received ? Tokens.positive : Looks.current.text
                    textFormat: Text.PlainText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Text {
                    objectName: "sideText"
                    Layout.alignment: Qt.AlignRight
                    text: (root.received ? root.royalty.versus : root.royalty.expectedDateText) || ""
                    font.family: Tokens.textFamily
                    font.pointSize: Tokens.pt(Tokens.captionSize)
                    color: Looks.current.muted
                    textFormat: Text.PlainText
                }
            }

            Key {
                objectName: "gotItKey"
                visible: !root.received
                title: "Got it"
                onClicked: root.receiveRequested()
            }
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
            text: "Edit royalty…"
            onTriggered: root.editRequested()
        }
        MenuSeparator {}
        Action {
            text: "Delete"
            onTriggered: root.deleteRequested()
        }
    }
}
