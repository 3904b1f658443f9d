import QtQuick
import QtTest
import Qt.labs.settings
import Coinhall
import CoinhallTest

// The lock. This file runs on books that ask for unlocking, checked through a private
// PAM configuration that starts out denying everyone (tests/qml/tst_main.cpp). The
// functions run in name order: the books stay locked until the last one.
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
        id: mainComponent

        Main {}
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
        // The keyboard belongs to this window, whatever window an earlier test opened.
        view.Window.window.requestActivate()
        tryVerify(() => view.Window.window.active)
        return view
    }

    // Every item under `item`, with whether it lies inside `fence` (or is it).
    function everyItem(item, fence) {
        const found = []
        const walk = (node, fenced) => {
            found.push({ item: node, fenced: fenced })
            for (let i = 0; i < node.children.length; ++i)
                walk(node.children[i], fenced || node.children[i] === fence)
        }
        walk(item, item === fence)
        return found
    }

    // The texts of every item under `item` that shows one.
    function texts(item) {
        return everyItem(item, null).map(e => e.item.text).filter(t => typeof t === "string" && t !== "")
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

    function test_a_nothingOfTheBooksExistsWhileLocked() {
        verify(Store.locked)
        refusals.clear()
        const view = makeRoot()
        const overlay = findChild(view, "lockOverlay")
        verify(overlay.visible)
        // The unlock tried on appearing is refused quietly: no complaint on the screen.
        refusals.wait(5000)
        verify(Store.locked)
        verify(!overlay.refused)

        // Nothing but the overlay is drawn, and nothing of the books is even made.
        const items = everyItem(view, overlay)
        const shown = items.filter(e => !e.fenced && e.item !== view && e.item.visible)
        compare(shown.length, 0, shown.map(e => String(e.item)).join(", "))
        const words = texts(view)
        verify(words.indexOf("COINHALL IS LOCKED") >= 0, words)
        for (const text of words) {
            verify(text.indexOf("Main checking") < 0, text)
            verify(text.indexOf("$") < 0, text)
        }
        compare(view.screenView, null)
        for (const name of ["moneyOutKey", "totalReadout", "screenKey_accounts", "statusLine"])
            compare(findChild(view, name), null, name)
    }

    function test_b_inputReachesNothingButTheLock() {
        refusals.clear()
        const view = makeRoot()
        refusals.wait(5000)

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
        compare(view.sheet, null)

        // A sheet asked for meanwhile is not shown; the help, which holds no data, is.
        view.openSheet(CHSheet.newBill())
        compare(view.sheetHost.view, null)
        view.closeSheet()
        view.openHelp()
        tryCompare(view.helpWindow, "visible", true)
        compare(view.helpWindow.title, "QFS Coinhall Help")
        view.helpWindow.close()
    }

    function test_c_helpAboutThemeAndZoomWorkWhileLocked() {
        refusals.clear()
        const window = createTemporaryObject(mainComponent, null)
        verify(window !== null)
        waitForRendering(window.contentItem)
        refusals.wait(5000)
        verify(Store.locked)
        compare(window.rootView.screenView, null)

        choose(window.helpMenu, 0)
        tryCompare(window.helpWindow, "visible", true)
        compare(window.helpWindow.title, "QFS Coinhall Help")
        compare(findChild(window.helpWindow.contentItem, "helpTitle").text, "Welcome")
        window.helpWindow.close()

        choose(window.helpMenu, 3)
        tryCompare(window.aboutPanel, "visible", true)
        compare(findChild(window.aboutPanel.contentItem, "aboutName").text, "QFS Coinhall")
        window.aboutPanel.close()

        choose(window.themeMenu, 4)
        compare(Looks.current.id, "carbon")
        compare(window.rootView.look.id, "carbon")
        Looks.choose("studio")
        QFZoom.setLevel(115)
        fuzzyCompare(window.rootView.width, 1200, 0.5)
        QFZoom.actualSize()
        verify(Store.locked)
        compare(window.rootView.screenView, null)
    }

    function test_d_aWrongPasswordKeepsTheBooksLocked() {
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
        compare(findChild(view, "moneyOutKey"), null)
    }

    function test_e_theRightPasswordOpensTheBooks() {
        refusals.clear()
        const view = makeRoot()
        refusals.wait(5000)
        verify(TestHooks.usePamModule("pam_permit.so"))
        const password = findChild(view, "lockPassword")
        password.text = "secret"
        keyClick(Qt.Key_Return)
        tryCompare(Store, "locked", false, 5000)

        // The screens are made now, and the keyboard is theirs.
        const overlay = findChild(view, "lockOverlay")
        verify(!overlay.visible)
        verify(view.screenView !== null)
        verify(String(view.screenView.item).startsWith("DashboardScreen"), String(view.screenView.item))
        verify(view.screenView.activeFocus)
        verify(findChild(view, "moneyOutKey").visible)
        compare(findChild(view, "statusLine").text, Store.status)
        // The same walk that found nothing before finds the books' figures.
        const words = texts(view)
        verify(words.some(t => t.indexOf("$") >= 0), words)
        verify(words.some(t => t.indexOf("Main checking") >= 0), words)

        // Now the screens and the window's shortcuts take input again.
        mouseClick(findChild(view, "moneyOutKey"))
        compare(view.sheet.kind, "newTx")
        keyClick(Qt.Key_Escape)
        compare(view.sheet, null)
        keyClick(Qt.Key_N, Qt.ControlModifier)
        compare(shortcutsFired, 1)
    }
}
