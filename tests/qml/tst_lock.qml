import QtQuick
import QtTest
import Qt.labs.settings
import Coinhall
import CoinhallTest

// The lock overlay. This file runs on books that ask for unlocking, checked through a
// private PAM configuration that starts out denying everyone (tests/qml/tst_main.cpp).
// The functions run in name order: the books stay locked until the last one.
TestCase {
    id: testCase

    name: "Lock"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    property int shortcutsFired: 0

    Settings {
        id: prefs
    }

    // A window-wide shortcut, as a screen might have one.
    Shortcut {
        sequence: "Ctrl+N"
        onActivated: testCase.shortcutsFired += 1
    }

    Component {
        id: rootComponent

        RootView {
            width: 1380
            height: 900
        }
    }

    SignalSpy {
        id: refusals

        target: Store
        signalName: "unlockFailed"
    }

    function initTestCase() {
        prefs.setValue("welcomed", true)
    }

    function makeRoot() {
        const view = createTemporaryObject(rootComponent, testCase)
        verify(view !== null)
        waitForRendering(view)
        return view
    }

    function test_a_overlayHidesEverythingAndTakesNoInputForTheScreens() {
        verify(Store.locked)
        refusals.clear()
        const view = makeRoot()
        const overlay = findChild(view, "lockOverlay")
        verify(overlay.visible)
        // The unlock tried on appearing is refused quietly: no complaint on the screen.
        refusals.wait(5000)
        verify(Store.locked)
        verify(!overlay.refused)

        // Nothing of the books is drawn.
        const money = findChild(view, "moneyOutKey")
        verify(!money.visible)

        // Clicks anywhere, where the keys would be too, reach nothing beneath.
        for (let x = 20; x < view.width; x += 90) {
            for (let y = 20; y < view.height; y += 70)
                mouseClick(view, x, y)
        }
        compare(view.sheet, null)
        compare(view.screen, "dashboard")

        // Keys stay in the overlay: Tab never leaves it and shortcuts do not fire.
        const password = findChild(view, "lockPassword")
        verify(password.activeFocus)
        for (let i = 0; i < 12; ++i)
            keyClick(Qt.Key_Tab)
        verify(password.activeFocus)
        keyClick(Qt.Key_N, Qt.ControlModifier)
        keyClick(Qt.Key_F1)
        compare(shortcutsFired, 0)
        compare(view.sheet, null)

        // A help request made meanwhile waits until the books are open.
        view.openHelp()
        compare(view.sheetHost.view, null)
        view.closeSheet()
    }

    function test_b_aWrongPasswordKeepsTheBooksLocked() {
        refusals.clear()
        const view = makeRoot()
        refusals.wait(5000) // the attempt made on appearing
        const overlay = findChild(view, "lockOverlay")
        const password = findChild(view, "lockPassword")
        keyClick("w")
        keyClick("r")
        keyClick("o")
        keyClick("n")
        keyClick("g")
        compare(password.text, "wrong")
        mouseClick(findChild(view, "unlockKey"))
        refusals.wait(5000)
        verify(Store.locked)
        verify(overlay.visible)
        verify(overlay.refused)
        verify(!findChild(view, "moneyOutKey").visible)
    }

    function test_c_theRightPasswordOpensTheBooks() {
        refusals.clear()
        const view = makeRoot()
        refusals.wait(5000)
        verify(TestHooks.usePamModule("pam_permit.so"))
        const password = findChild(view, "lockPassword")
        password.text = "secret"
        keyClick(Qt.Key_Return)
        tryCompare(Store, "locked", false, 5000)

        const overlay = findChild(view, "lockOverlay")
        verify(!overlay.visible)
        verify(findChild(view, "moneyOutKey").visible)
        // Now the screens and the window's shortcuts take input again.
        mouseClick(findChild(view, "moneyOutKey"))
        compare(view.sheet.kind, "newTx")
        keyClick(Qt.Key_Escape)
        compare(view.sheet, null)
        keyClick(Qt.Key_N, Qt.ControlModifier)
        compare(shortcutsFired, 1)
    }
}
