import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Coinhall

// Covers the whole window while the books are locked, taking all input but the
// window's own commands; the screens beneath are not even made until the books open.
// When it appears it focuses the password field and asks the Store once with no
// password, which only a computer that cannot check its owner opens by (no empty
// password is ever checked); after that the password field and the "Unlock" key try
// with what the owner typed. Encrypted books ask for their passphrase instead, and
// nothing of them is even read until it is given.
Curtain {
    id: root

    // An unlock attempt is under way; a key press meanwhile is queued, not lost.
    property bool checking: false
    // The last attempt was the user's own and it was refused.
    property bool refused: false

    // The books are encrypted: the field takes their passphrase.
    readonly property bool passphrase: Store.needsPassphrase
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
        if (passphrase && password === "") // nothing to try: the field waits
            return
        checking = true
        userAttempt = byUser
        if (byUser)
            refused = false
        if (passphrase) {
            // Deriving the key takes a moment; the refusal, if any, comes as unlockFailed.
            Store.unlockWithPassphrase(password)
            return
        }
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

    symbol: "lock.shield.fill"
    title: "COINHALL IS LOCKED"
    onPressed: password.forceActiveFocus()

    BodyText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: root.passphrase ? (root.refused ? "That passphrase did not open your books."
                                              : "Your books are encrypted. Type your passphrase to open them.")
                              : root.refused ? "That password did not open Coinhall. Try again."
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
        placeholderText: root.passphrase ? "Passphrase" : "Account password"
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
