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

    SignalSpy {
        id: refusals

        target: Store
        signalName: "unlockFailed"
    }

    function initTestCase() {
        Prefs.welcomed = true
    }

    // Chooses a menu's item as the user does: opens the menu and clicks the item.
    function choose(menu, index) {
        menu.open()
        tryCompare(menu, "opened", true)
        const item = menu.itemAt(index)
        verify(item.enabled, item.text)
        waitForRendering(item)
        mouseClick(item)
        tryCompare(menu, "visible", false)
    }

    // One journey, from locked books to open ones. What is drawn and read out while
    // locked is checked in the real window (tests/app/lockscreen_test.cpp); here, input.
    function test_theLockTakesAllInputUntilTheRightPassword() {
        verify(Store.locked)
        refusals.clear()
        const window = createTemporaryObject(mainComponent, null)
        waitForRendering(window.contentItem)
        const view = window.rootView
        window.requestActivate()
        tryVerify(() => window.active)
        compare(view.screenView, null)
        compare(findChild(view, "moneyOutKey"), null)
        // Nothing was typed yet: no complaint on the screen.
        wait(50)
        verify(!findChild(view, "lockOverlay").refused)

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
        compare(shortcutsFired, 0)
        // A sheet asked for meanwhile is not shown.
        view.openSheet(CHSheet.newBill())
        compare(view.sheetHost.view, null)
        view.closeSheet()

        // The help, the about panel, the theme and the zoom hold no data: they work.
        choose(window.helpMenu, 0)
        tryCompare(window.helpWindow, "visible", true)
        window.helpWindow.close()
        choose(window.helpMenu, 3)
        tryCompare(window.aboutPanel, "visible", true)
        window.aboutPanel.close()
        choose(window.themeMenu, 4)
        compare(Looks.current.id, "carbon")
        Looks.choose("studio")
        QFZoom.setLevel(115)
        fuzzyCompare(view.width, 1200, 0.5)
        QFZoom.actualSize()
        window.requestActivate()
        tryVerify(() => window.active)

        // A wrong password keeps the books locked and says so.
        const overlay = findChild(view, "lockOverlay")
        tryVerify(() => !overlay.checking, 5000, "the checks the clicks asked for are done")
        refusals.clear()
        password.forceActiveFocus()
        for (const c of "wrong")
            keyClick(c)
        mouseClick(findChild(view, "unlockKey"))
        refusals.wait(5000)
        verify(Store.locked)
        verify(overlay.refused)
        compare(findChild(view, "moneyOutKey"), null)

        // The right one opens them: the screens are made and take the keyboard and the
        // window's shortcuts again.
        verify(TestHooks.usePamModule("pam_permit.so"))
        password.text = "secret"
        keyClick(Qt.Key_Return)
        tryCompare(Store, "locked", false, 5000)
        verify(!overlay.visible)
        verify(view.screenView.activeFocus)
        mouseClick(findChild(view, "moneyOutKey"))
        compare(view.sheet.kind, "newTx")
        keyClick(Qt.Key_Escape)
        compare(view.sheet, null)
        keyClick(Qt.Key_N, Qt.ControlModifier)
        compare(shortcutsFired, 1)
    }
}
