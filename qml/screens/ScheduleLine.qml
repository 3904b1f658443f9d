import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A row of a schedule list (a bill, a royalty): the content on a row plate, reached by
// Tab and ringed while it has the focus. Right-click (or the menu key, or Shift+F10)
// opens its menu: the skip entry when `skipText` is set, then editing and deleting; a
// double-click edits. It only says what the user asked for; whoever places it acts.
FocusScope {
    id: root

    // The menu's entries; no skip entry when `skipText` is empty.
    property string skipText
    property string editText
    property string deleteText
    // The row's content, laid out left to right.
    default property alias content: row.data
    readonly property alias menu: menu

    signal skipRequested
    // The edit entry was chosen, or the row was double-clicked.
    signal editRequested
    signal deleteRequested

    function openMenu(x: real, y: real) {
        menu.popup(root, x, y)
    }

    implicitWidth: plate.implicitWidth
    implicitHeight: plate.implicitHeight
    activeFocusOnTab: true

    Accessible.role: Accessible.ListItem

    Keys.onMenuPressed: openMenu(Tokens.spaceL, height)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier)) {
            openMenu(Tokens.spaceL, height)
            event.accepted = true
        }
    }

    // Clicks on the row itself, under its keys: right-click for the menu, double-click to edit.
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
            id: row

            anchors.fill: parent
            spacing: Tokens.spaceM
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
            text: root.skipText
            onTriggered: root.skipRequested()
        }
        Action {
            text: root.editText
            onTriggered: root.editRequested()
        }
        MenuSeparator {}
        Action {
            text: root.deleteText
            onTriggered: root.deleteRequested()
        }

        Component.onCompleted: {
            if (root.skipText === "")
                removeAction(actionAt(0))
        }
    }
}
