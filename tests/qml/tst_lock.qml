import QtQuick
import QtTest
import Coinhall
import CoinhallTest

// The lock. This file runs on books that ask for unlocking, checked through a private
// PAM configuration that starts out denying everyone (tests/qml/tst_main.cpp).
TestCase {
    id: testCase

    name: "Lock"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    property int shortcutsFired: 0

    Component {
        id: mainComponent

        Main {
            // A window-wide shortcut, as a screen might have one.
            Shortcut {
                sequence: "Ctrl+N"
                onActivated: testCase.shortcutsFired += 1
            }
        }
    }

    function initTestCase() {
        Prefs.welcomed = true
    }

    // What is drawn and read out while locked is checked in the real window
    // (tests/app/lockscreen_test.cpp), the passwords in tests/journeys; here, input.
    function test_theLockTakesAllInputUntilUnlocked() {
        verify(Store.locked)
        const window = createTemporaryObject(mainComponent, null)
        waitForRendering(window.contentItem)
        const view = window.rootView
        const overlay = findChild(view, "lockOverlay")
        window.requestActivate()
        tryVerify(() => window.active)
        // Nothing was typed yet: no complaint on the screen.
        wait(50)
        verify(!overlay.refused)
        // Clicks anywhere, where the keys would be too, reach nothing beneath.
        for (let x = 20; x < view.width; x += 90) {
            for (let y = 20; y < view.height; y += 70)
                mouseClick(view, x, y)
        }
        compare([view.sheet, view.screen], [null, "dashboard"])
        // Keys stay in the overlay: Tab never leaves it and shortcuts do not fire.
        const password = findChild(view, "lockPassword")
        for (let i = 0; i < 12; ++i)
            keyClick(Qt.Key_Tab)
        verify(password.activeFocus)
        keyClick(Qt.Key_N, Qt.ControlModifier)
        compare(shortcutsFired, 0)
        view.openSheet(CHSheet.newBill())
        compare(view.sheetHost.view, null, "a sheet asked for meanwhile is not shown")
        view.closeSheet()
        // The help, the about panel and the theme hold no data: they stay open to use.
        verify([window.helpMenu.itemAt(0), window.helpMenu.itemAt(3), window.themeMenu.itemAt(4)].every(i => i.enabled))
        // Unlocked, the screens take the keyboard and the window's shortcuts again. The
        // clicks above pressed the Unlock key too: wait for those checks.
        tryVerify(() => !overlay.checking, 5000)
        verify(TestHooks.usePamModule("pam_permit.so"))
        password.forceActiveFocus()
        keyClick(Qt.Key_S)
        keyClick(Qt.Key_Return)
        tryCompare(Store, "locked", false, 5000)
        verify(view.screenView.activeFocus)
        keyClick(Qt.Key_N, Qt.ControlModifier)
        compare(shortcutsFired, 1)
    }
}
