import QtQuick
import QtQuick.Controls
import QtTest
import Coinhall
import "helpers.js" as H

// The main window as the user meets it: the header's keys and read-outs, the sidebar,
// the sheets, the menus (by mouse and keyboard), the one theme choice, the help window
// and the about panel, and what stays usable when the window is zoomed in.
TestCase {
    id: testCase

    name: "Window"
    when: windowShown

    Component {
        id: mainComponent

        Main {}
    }

    function init() {
        Prefs.welcomed = true
        Looks.choose("studio")
        QFZoom.actualSize()
    }

    function cleanup() {
        Looks.choose("studio")
        QFZoom.actualSize()
    }

    function makeWindow() {
        const window = createTemporaryObject(mainComponent, null)
        verify(window !== null)
        waitForRendering(window.contentItem)
        return window
    }

    // Chooses a menu's item as the user does: opens the menu and clicks the item.
    function choose(menu, index) {
        menu.open()
        tryCompare(menu, "opened", true)
        const item = menu.itemAt(index)
        waitForRendering(item)
        mouseClick(item)
        tryCompare(menu, "visible", false)
    }

    function sceneRect(item) {
        const corner = item.mapToItem(null, 0, 0)
        const end = item.mapToItem(null, item.width, item.height)
        return Qt.rect(corner.x, corner.y, end.x - corner.x, end.y - corner.y)
    }

    // A sheet takes the clicks away from the desk; Escape closes it and gives the
    // keyboard back to the key that opened it. Every sheet case has its view.
    function test_sheetsTakeTheDeskAndGiveTheKeyboardBack() {
        const view = makeWindow().rootView
        for (const keyName of ["moneyOutKey", "moneyInKey", "transferKey", "importKey"]) {
            mouseClick(H.named(view, keyName))
            mouseClick(H.named(view, "screenKey_bills"))
            compare(view.screen, "dashboard")
            keyClick(Qt.Key_Escape)
            compare(view.sheet, null)
            verify(H.named(view, keyName).activeFocus, keyName)
        }
        const sample = { id: "x", name: "Verizon", payer: "BMI" }
        for (const kind of CHSheet.kinds.filter(k => k !== "help")) {
            view.openSheet(kind === "newTx" ? CHSheet.newTx(false)
                           : kind.startsWith("edit") || kind === "payBill" || kind === "receiveRoyalty"
                             ? CHSheet[kind](sample) : CHSheet[kind]())
            verify(view.sheetHost.view !== null, kind)
            view.sheetHost.view.done()
        }
    }

    // F10 and Alt with the underlined letter open the menus; the arrows, Return and
    // Escape do the rest, and the keyboard goes back where it was.
    function test_menusOpenFromTheKeyboard() {
        const window = makeWindow()
        const bar = window.menuBar
        const focused = window.activeFocusItem
        compare(bar.itemAt(0).Accessible.name, "File")
        keyClick(Qt.Key_F10)
        tryCompare(bar.menuAt(0), "opened", true)
        keyClick(Qt.Key_Right)
        tryCompare(bar.menuAt(1), "opened", true)
        verify(!bar.menuAt(0).visible)
        keyClick(Qt.Key_Escape)
        tryCompare(bar.menuAt(1), "visible", false)
        compare(window.activeFocusItem, focused)

        keyClick(Qt.Key_V, Qt.AltModifier)
        tryCompare(bar.menuAt(2), "opened", true)
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Return)
        tryCompare(bar.menuAt(2), "visible", false)
        compare(QFZoom.value, 1.15)
        compare(window.activeFocusItem, focused)
    }

    // The header's picker and the Theme menu change the same stored choice.
    function test_pickerAndThemeMenuAreOneChoice() {
        const window = makeWindow()
        const picker = H.named(window.rootView, "themePicker")
        mouseClick(picker)
        tryCompare(picker.popup, "opened", true)
        tryVerify(() => picker.popup.contentItem.itemAtIndex(4) !== null)
        mouseClick(picker.popup.contentItem.itemAtIndex(4))
        tryCompare(picker.popup, "visible", false)
        compare([Prefs.look, window.color], ["carbon", Looks.carbon.bg])
        verify(window.themeMenu.itemAt(4).checked)
        choose(window.themeMenu, 1)
        compare([Prefs.look, picker.displayText], ["ice", "Ice Blue"])
        verify(!window.themeMenu.itemAt(4).checked)
    }

    // The help key, the kit's hook and the Help menu open the help window (the key on its first chapter,
    // whatever was read last); the menu opens the about panel.
    function test_helpAndAbout() {
        const window = makeWindow()
        const help = window.helpWindow
        choose(window.helpMenu, 0)
        tryCompare(help, "visible", true)
        help.show(6)
        help.close()
        mouseClick(H.named(window.rootView, "helpKey"))
        tryCompare(help, "visible", true)
        compare([help.view.topic, window.rootView.sheet], [0, null])
        help.show(6)
        QFSKitHost.openHelp("Themes & zoom") // the kit's hook does the same
        compare(help.view.topic, 0)
        help.close()
        choose(window.helpMenu, 3)
        tryCompare(window.aboutPanel, "visible", true)
        window.aboutPanel.close()
    }

    // Zoomed in, the root view keeps its least size drawn larger; a sheet stays inside
    // what the window shows with its keys in view and the wheel scrolls its rows, never
    // the window beneath.
    function test_zoomedSheetFitsTheWindowAndScrollsItsRows() {
        const window = makeWindow()
        QFZoom.setLevel(200)
        compare(window.rootView.width, 1180)
        compare(window.rootView.mapToItem(window.contentItem, 10, 10), Qt.point(20, 20))
        window.rootView.openSheet(CHSheet.newTx(false))
        const sheet = window.rootView.sheetHost.view
        const shown = window.contentItem.mapToItem(null, 0, 0)
        const inWindow = item => {
            const r = sceneRect(item)
            return r.x >= 0 && r.y >= shown.y && r.x + r.width <= window.width + 0.5 && r.y + r.height <= window.height + 0.5
        }
        tryVerify(() => inWindow(sheet), 1000, "sheet at " + JSON.stringify(sceneRect(sheet)))
        verify(inWindow(H.named(sheet, "sheetSaveKey")))
        verify(inWindow(H.named(sheet, "sheetCancelKey")))
        const rows = H.named(sheet, "sheetRows")
        verify(rows.contentHeight > rows.height, "the rows scroll")
        const below = window.rootView.mapToItem(null, 0, 0)
        mouseWheel(rows, rows.width / 2, rows.height / 2, 0, -360)
        verify(rows.contentY > 0)
        compare(window.rootView.mapToItem(null, 0, 0), below)
    }

    // Zoomed in, the control the keyboard moves to is scrolled into the window, and the
    // wheel over a screen scrolls its column and then the window, down to its foot.
    function test_zoomedWindowFollowsTheFocusAndTheWheel() {
        const window = makeWindow()
        QFZoom.setLevel(200)
        const picker = H.named(window.rootView, "themePicker")
        verify(sceneRect(picker).x > window.width, "the picker starts off-screen")
        H.named(window.rootView, "transferKey").forceActiveFocus(Qt.TabFocusReason)
        for (let i = 0; i < 4 && !picker.activeFocus; ++i)
            keyClick(Qt.Key_Tab)
        verify(picker.activeFocus)
        tryVerify(() => sceneRect(picker).x + picker.width * 2 <= window.width, 1000, "picker at " + sceneRect(picker).x)

        for (let i = 0; i < 40; ++i)
            mouseWheel(window.contentItem, 900, 600, 0, -120)
        fuzzyCompare(window.rootView.mapToItem(null, 0, window.rootView.height).y, window.height, 1)
    }
}
