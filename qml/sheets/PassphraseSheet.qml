import QtQuick
import QtQuick.Layouts
import Coinhall

// Encrypting the books with a passphrase, changing it, or writing them plain again.
// The new passphrase is typed twice, with a hint of its strength and the plain warning
// that nobody can recover a forgotten one; the current one is asked before a change
// or before turning encryption off. Return saves, Escape closes.
SheetFrame {
    id: root

    // The sheet case (CHSheet.passphrase): `mode` is "on", "change" or "off".
    property var sheet
    readonly property string mode: sheet && typeof sheet.mode === "string" ? sheet.mode : "on"
    readonly property bool asksCurrent: mode !== "on"
    readonly property bool asksNew: mode !== "off"
    // What was wrong with the last try; empty before one.
    property string problem

    // Closes the sheet.
    signal done

    width: 540
    title: mode === "on" ? "Encrypt my books" : mode === "change" ? "Change passphrase" : "Stop encrypting"
    saveTitle: mode === "on" ? "Encrypt" : mode === "change" ? "Change" : "Decrypt"
    canSave: (!asksCurrent || current.text.length > 0)
             && (!asksNew || (passphrase.text.length > 0 && again.text.length > 0))

    onSave: {
        const result = mode === "on" ? bridge.encryptBooks(passphrase.text, again.text)
                     : mode === "change" ? bridge.changePassphrase(current.text, passphrase.text, again.text)
                     : bridge.decryptBooks(current.text)
        if (result === "") {
            done()
            return
        }
        problem = result
        const field = result.indexOf("current") >= 0 ? current.field : again.field
        field.selectAll()
        field.forceActiveFocus()
    }
    onCancel: done()

    Component.onCompleted: (asksCurrent ? current : passphrase).field.forceActiveFocus()

    AccountsBridge {
        id: bridge

        store: Store
    }

    BodyText {
        objectName: "passphraseIntro"
        Layout.fillWidth: true
        visible: root.mode !== "off"
        text: "Your money file and every backup are encrypted with a key made from your passphrase. "
              + "Coinhall asks for it each time it opens your books."
        wrapMode: Text.WordWrap
    }
    BodyText {
        objectName: "passphraseOffIntro"
        Layout.fillWidth: true
        visible: root.mode === "off"
        text: "Your money file and every backup will be written plain again, readable by anything that "
              + "runs as you on this computer."
        wrapMode: Text.WordWrap
    }

    FormTextField {
        id: current

        objectName: "currentPassphraseField"
        visible: root.asksCurrent
        label: "Current passphrase"
        field.echoMode: TextInput.Password
        onTextChanged: root.problem = ""
    }
    FormTextField {
        id: passphrase

        objectName: "passphraseField"
        visible: root.asksNew
        label: root.mode === "change" ? "New passphrase" : "Passphrase"
        field.echoMode: TextInput.Password
        onTextChanged: root.problem = ""
    }
    FormTextField {
        id: again

        objectName: "passphraseAgainField"
        visible: root.asksNew
        label: "The same again"
        field.echoMode: TextInput.Password
        onTextChanged: root.problem = ""
    }

    CaptionText {
        objectName: "passphraseStrength"
        Layout.fillWidth: true
        visible: root.asksNew && text !== ""
        text: bridge.passphraseStrength(passphrase.text)
        color: text.startsWith("Strong") ? Looks.current.soft : Tokens.destructive
        wrapMode: Text.WordWrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    BodyText {
        objectName: "passphraseWarning"
        Layout.fillWidth: true
        visible: root.asksNew
        text: "If you forget this passphrase, nobody can recover your books: not Coinhall, not its makers, "
              + "not anyone. Keep it somewhere safe."
        font.weight: Font.Bold
        wrapMode: Text.WordWrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    BodyText {
        objectName: "passphraseProblem"
        Layout.fillWidth: true
        visible: root.problem !== ""
        text: root.problem
        color: Tokens.destructive
        wrapMode: Text.WordWrap
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }
}
