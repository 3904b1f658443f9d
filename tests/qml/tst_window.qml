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

    function titles(menu) {
        const list = []
        for (let i = 0; i < menu.count; ++i)
            list.push(menu.itemAt(i).text !== undefined ? menu.itemAt(i).text : "")
        return list
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

    function test_headerKeysSidebarAndSheets() {
        const window = makeWindow()
        const view = window.rootView
        compare(window.title, "QFS Coinhall")
        const menus = []
        for (let i = 0; i < window.menuBar.count; ++i)
            menus.push(window.menuBar.menuAt(i).title)
        compare(menus, ["&File", "&Theme", "&View", "&Help"])
        compare(H.named(H.named(view, "totalReadout"), "value").text, "$0.00")
        compare(H.named(H.named(view, "dueSoonReadout"), "value").text, "0")
        verify(!H.named(view, "overdueBadge").visible)

        // A sheet takes the clicks away from the desk; Escape closes it and gives the
        // keyboard back to the key that opened it.
        for (const [keyName, title] of [["moneyOutKey", "Money out"], ["moneyInKey", "Money in"],
                                        ["transferKey", "Move money between accounts"],
                                        ["importKey", "Import from your bank"]]) {
            mouseClick(H.named(view, keyName))
            compare(view.sheetHost.view.title, title)
            mouseClick(H.named(view, "screenKey_bills"))
            compare(view.screen, "dashboard")
            keyClick(Qt.Key_Escape)
            compare(view.sheet, null)
            verify(H.named(view, keyName).activeFocus, keyName)
        }

        // Every sheet case has its view; the help is a window of its own.
        const sample = { id: "x", name: "Verizon", payer: "BMI" }
        for (const kind of CHSheet.kinds) {
            const sheet = kind === "newTx" ? CHSheet.newTx(false)
                        : kind.startsWith("edit") || kind === "payBill" || kind === "receiveRoyalty"
                          ? CHSheet[kind](sample) : CHSheet[kind]()
            view.openSheet(sheet)
            if (kind === "help") {
                compare(view.sheet, null)
                tryCompare(view.helpWindow, "visible", true)
                view.helpWindow.close()
                continue
            }
            verify(view.sheetHost.view !== null, kind)
            view.sheetHost.view.done()
            compare(view.sheet, null, kind)
        }

        const shown = []
        for (const screen of view.screens) {
            const key = H.named(view, "screenKey_" + screen.key)
            mouseClick(key)
            verify(key.lit)
            shown.push(String(view.screenView.item).split("_")[0].split("(")[0])
        }
        compare(shown, ["DashboardScreen", "TransactionsScreen", "BillsScreen", "RoyaltiesScreen", "CalendarScreen",
                        "ReportsScreen", "AccountsScreen"])
        // The help key opens the help window on its first chapter, whatever was read last.
        view.helpWindow.show(6)
        view.helpWindow.close()
        mouseClick(H.named(view, "helpKey"))
        tryCompare(view.helpWindow, "visible", true)
        compare(view.helpWindow.view.topic, 0)
        view.helpWindow.close()
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

    // The header's picker and the Theme menu change the same stored choice, and the
    // window, its screens, its sheets and the kit all draw with it.
    function test_pickerAndThemeMenuAreOneChoice() {
        const window = makeWindow()
        const menu = window.themeMenu
        compare(titles(menu), ["Studio", "Ice Blue", "Rose Gold", "Lavender", "Carbon", "Graphite"])
        const picker = H.named(window.rootView, "themePicker")
        mouseClick(picker)
        tryCompare(picker.popup, "opened", true)
        tryVerify(() => picker.popup.contentItem.itemAtIndex(4) !== null)
        mouseClick(picker.popup.contentItem.itemAtIndex(4))
        tryCompare(picker.popup, "visible", false)
        compare(Prefs.look, "carbon")
        compare(window.color, Looks.carbon.bg)
        verify(menu.itemAt(4).checked)
        compare(QFSKitHost.theme.panelTop, Looks.carbon.panelTop)

        choose(menu, 1)
        compare(Prefs.look, "ice")
        compare(picker.displayText, "Ice Blue")
        const checked = []
        for (let i = 0; i < menu.count; ++i)
            checked.push(menu.itemAt(i).checked)
        compare(checked, [false, true, false, false, false, false])
        compare(QFSKitHost.theme.bg, Looks.ice.bg)
        compare(QFSKitHost.theme.dim, Looks.ice.muted)
        compare(QFSKitHost.theme.rim, Looks.ice.line)
    }

    function test_helpMenuKitHookHelpKeyAndAbout() {
        const window = makeWindow()
        compare(titles(window.helpMenu), ["QFS Coinhall Help", "Quillfern Website", "", "About QFS Coinhall"])
        const help = window.helpWindow
        choose(window.helpMenu, 0)
        tryCompare(help, "visible", true)
        waitForRendering(help.contentItem)
        mouseClick(H.named(help.contentItem, "helpNext"))
        compare(help.view.topic, 1)
        // The kit's hook brings the open window back to its first chapter.
        QFSKitHost.openHelp("Themes & zoom")
        compare(help.view.topic, 0)
        compare(window.rootView.sheet, null)
        help.close()

        choose(window.helpMenu, 3)
        const about = window.aboutPanel
        tryCompare(about, "visible", true)
        compare(H.named(about.contentItem, "aboutName").text, "QFS Coinhall")
        compare(H.named(about.contentItem, "aboutCredit").text, "Coinhall by Quillfern · QFS")
        compare(H.named(about.contentItem, "aboutLink").text,
                "<a href=\"" + HelpBook.website + "\">" + HelpBook.websiteText + "</a>")
        about.close()
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
