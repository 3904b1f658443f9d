import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Coinhall

// Covers the whole window while the books are locked. It takes every click, wheel
// turn, key and shortcut but the help, zoom and quit commands, so nothing reaches
// the screens beneath (which are not even made until the books open). When it appears
// it focuses the password field and asks the Store once with no password, which only a
// computer that cannot check its owner opens by (no empty password is ever checked);
// after that the password field and the "Unlock" key try with what the owner typed.
FocusScope {
    id: root

    // An unlock attempt is under way; a key press meanwhile is queued, not lost.
    property bool checking: false
    // The last attempt was the user's own and it was refused.
    property bool refused: false

    property bool userAttempt: false
    property bool hasQueued: false
    property string queued

    // Asks the Store to unlock with `password`. While an earlier check is still running
    // (the one made on appearing may take a moment), the newest request waits for it.
    function attempt(password: string, byUser: bool) {
        if (checking) {
            queued = password
            hasQueued = true
            return
        }
        checking = true
        userAttempt = byUser
        if (byUser)
            refused = false
        Store.unlock(password)
        // A Store that cannot check its owner opens (or stays open) at once.
        if (!Store.locked)
            checking = false
    }

    function unlockNow() {
        attempt(password.text, true)
    }

    onVisibleChanged: {
        if (visible)
            appear()
    }
    Component.onCompleted: {
        if (visible)
            appear()
    }

    function appear() {
        password.forceActiveFocus()
        attempt("", false)
    }

    Connections {
        target: Store

        function onUnlockFailed() {
            root.checking = false
            if (root.hasQueued) {
                root.hasQueued = false
                root.attempt(root.queued, true)
                return
            }
            if (root.userAttempt) {
                root.refused = true
                password.selectAll()
                password.forceActiveFocus()
            }
        }
        function onLockedChanged() {
            root.checking = false
            root.hasQueued = false
            password.clear()
        }
    }

    // The window's own commands that show no data: help, zoom and quit.
    function passesThrough(event: var): bool {
        const zoomKeys = event.modifiers & Qt.ControlModifier && (event.key === Qt.Key_0 || event.key === Qt.Key_Equal)
        return event.matches(StandardKey.HelpContents) || event.matches(StandardKey.ZoomIn)
            || event.matches(StandardKey.ZoomOut) || event.matches(StandardKey.Quit) || zoomKeys
    }

    // Every key that the password field does not use, and every other shortcut, ends here.
    Keys.onShortcutOverride: event => event.accepted = !passesThrough(event)
    Keys.onPressed: event => event.accepted = true

    Rectangle {
        anchors.fill: parent
        color: Looks.current.bg
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: password.forceActiveFocus()
        onWheel: wheel => wheel.accepted = true
    }

    Panel {
        anchors.centerIn: parent
        width: 420
        screws: true
        padding: 28

        ColumnLayout {
            anchors.left: parent.left
            anchors.right: parent.right
            spacing: Tokens.spaceL

            Icon {
                Layout.alignment: Qt.AlignHCenter
                symbol: "lock.shield.fill"
                size: 54
                color: Looks.current.accent
            }
            Text {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: "COINHALL IS LOCKED"
                font.family: Tokens.displayFamily
                font.weight: Font.ExtraBold
                font.pointSize: Tokens.pt(22)
                color: Looks.current.text
                textFormat: Text.PlainText
                wrapMode: Text.WordWrap
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            BodyText {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                text: root.refused ? "That password did not open Coinhall. Try again."
                                   : "Type your account password to open your books."
                color: root.refused ? Tokens.destructive : Looks.current.muted
                wrapMode: Text.WordWrap
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            TextField {
                id: password

                objectName: "lockPassword"
                Layout.fillWidth: true
                echoMode: TextInput.Password
                placeholderText: "Account password"
                Accessible.name: placeholderText
                placeholderTextColor: Looks.current.muted
                color: Looks.current.text
                font.family: Tokens.textFamily
                font.pointSize: Tokens.pt(Tokens.bodySize)
                focus: true
                background: Rectangle {
                    implicitHeight: Tokens.fieldHeight
                    radius: Tokens.wellRadius
                    color: Looks.current.well
                    border.width: 1
                    border.color: password.activeFocus ? Looks.current.accent : Looks.current.line
                }
                onAccepted: root.unlockNow()
            }
            Key {
                objectName: "unlockKey"
                Layout.alignment: Qt.AlignHCenter
                title: "Unlock"
                lit: true
                wide: true
                onClicked: root.unlockNow()
            }
        }
    }
}
