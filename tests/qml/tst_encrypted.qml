import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// Books encrypted with the passphrase "tuba solo" (tests/qml/tst_main.cpp): the lock asks
// for it and shows nothing of the books until it is given; the Accounts screen turns
// encryption off, on again and changes the passphrase, each through its sheet.
TestCase {
    id: testCase

    name: "Encrypted"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    function shows(item: Item, text: string): bool {
        return H.findAll(item, c => c.visible && c.text === text).length > 0
    }

    function test_1_theLockAsksForThePassphraseAndShowsNothingUntilItIsGiven() {
        verify(Store.locked && Store.needsPassphrase && Store.encrypted)
        Prefs.welcomed = true
        const window = H.make(testCase, null, "Main {}")
        waitForRendering(window.contentItem)
        const view = window.rootView
        const overlay = findChild(view, "lockOverlay")
        const field = findChild(view, "lockPassword")
        window.requestActivate()
        tryVerify(() => field.activeFocus)
        compare(field.placeholderText, "Passphrase")
        verify(shows(overlay, "Your books are encrypted. Type your passphrase to open them."))
        H.type(testCase, "tuba")
        keyClick(Qt.Key_Return)
        tryVerify(() => overlay.refused)
        verify(shows(overlay, "That passphrase did not open your books."))
        compare([Store.locked, findChild(view, "desk").active, Store.totalText], [true, false, "$0.00"])
        H.retype(testCase, field, "tuba solo")
        keyClick(Qt.Key_Return)
        tryCompare(Store, "locked", false, 5000)
        compare(field.text, "")
        verify(findChild(view, "desk").active)
        window.destroy()
    }

    function test_2_thePassphraseSheetTurnsEncryptionOffAndOnAndChangesIt() {
        verify(!Store.locked)
        const screen = H.make(testCase, testCase, "AccountsScreen { anchors.fill: parent; property var asked: null; "
                              + "onOpenSheet: s => asked = s }")
        const toggle = H.named(screen, "encryptToggle")
        compare([toggle.text, toggle.Accessible.name, toggle.checked], ["Encrypt my books with a passphrase",
                 "Encrypt my books with a passphrase", true])
        verify(H.named(screen, "changePassphraseKey").visible)
        toggle.forceActiveFocus()
        keyClick(Qt.Key_Space)
        compare([screen.asked.kind, screen.asked.mode, toggle.checked], ["passphrase", "off", true])

        // Off: the current passphrase, a wrong one first.
        let sheet = H.make(testCase, testCase, "PassphraseSheet {}", { sheet: screen.asked })
        let closed = H.spy(testCase, sheet, "done")
        const current = H.named(sheet, "currentPassphraseField")
        tryVerify(() => current.field.activeFocus)
        compare(current.field.echoMode, TextInput.Password)
        verify(!H.named(sheet, "passphraseField").visible && !H.named(sheet, "passphraseWarning").visible)
        H.type(testCase, "tuba")
        keyClick(Qt.Key_Return)
        compare([closed.count, H.named(sheet, "passphraseProblem").text], [0, "That is not your current passphrase."])
        current.field.text = "tuba solo"
        keyClick(Qt.Key_Return)
        compare([closed.count, Store.encrypted, toggle.checked, Store.status],
                [1, false, false, "Your books are no longer encrypted."])
        verify(!H.named(screen, "changePassphraseKey").visible)

        // On: typed twice, with the strength hint and the warning; two that differ are refused.
        sheet = H.make(testCase, testCase, "PassphraseSheet {}", { sheet: CHSheet.passphrase("on") })
        closed = H.spy(testCase, sheet, "done")
        const first = H.named(sheet, "passphraseField")
        tryVerify(() => first.field.activeFocus)
        H.type(testCase, "cello")
        compare(H.named(sheet, "passphraseStrength").text,
                "Too short: use at least 12 characters, a few words are easiest to remember.")
        first.field.text = "cello bow in the attic"
        compare(H.named(sheet, "passphraseStrength").text, "Strong.")
        verify(H.named(sheet, "passphraseWarning").text.startsWith("If you forget this passphrase, nobody can recover"))
        H.named(sheet, "passphraseAgainField").field.text = "cello bow in the attik"
        keyClick(Qt.Key_Return)
        compare([closed.count, H.named(sheet, "passphraseProblem").text, Store.encrypted],
                [0, "The two passphrases differ.", false])
        H.named(sheet, "passphraseAgainField").field.text = "cello bow in the attic"
        keyClick(Qt.Key_Return)
        compare([closed.count, Store.encrypted, Store.status], [1, true, "Your books are now encrypted."])

        // Escape leaves the books as they are.
        sheet = H.make(testCase, testCase, "PassphraseSheet {}", { sheet: CHSheet.passphrase("change") })
        closed = H.spy(testCase, sheet, "done")
        tryVerify(() => H.named(sheet, "currentPassphraseField").field.activeFocus)
        keyClick(Qt.Key_Escape)
        compare([closed.count, Store.status], [1, "Your books are now encrypted."])
    }
}
