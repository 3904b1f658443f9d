import QtQuick
import QtTest
import Coinhall
import CoinhallTest
import "helpers.js" as H

// The lock takes the input (books locked by tst_main.cpp). What shows is
// tests/app/lockscreen_test.cpp's, the passwords a journey's.
TestCase {
    id: testCase

    name: "Lock"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    function test_theLockTakesAllInputUntilUnlocked() {
        verify(Store.locked)
        Prefs.welcomed = true
        // A window-wide shortcut, as a screen might have one.
        const window = H.make(testCase, null, "Main { property alias shortcut: shortcut; Shortcut { id: shortcut; "
                              + "sequence: \"Ctrl+N\" } }")
        const shortcuts = H.spy(testCase, window.shortcut, "activated")
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
        compare(shortcuts.count, 0)
        view.openSheet(CHSheet.newBill())
        compare(view.sheetHost.view, null, "a sheet asked for meanwhile is not shown")
        view.closeSheet()
        // The help, the about panel and the theme hold no data: they stay open to use.
        verify([window.helpMenu.itemAt(0), window.helpMenu.itemAt(3), window.themeMenu.itemAt(4)].every(i => i.enabled))
        // Unlocked (once the Unlock key the clicks pressed is done), the keys are back.
        tryVerify(() => !overlay.checking, 5000)
        verify(TestHooks.usePamModule("pam_permit.so"))
        password.forceActiveFocus()
        keyClick(Qt.Key_S)
        keyClick(Qt.Key_Return)
        tryCompare(Store, "locked", false, 5000)
        verify(view.screenView.activeFocus)
        keyClick(Qt.Key_N, Qt.ControlModifier)
        compare(shortcuts.count, 1)
    }
}
