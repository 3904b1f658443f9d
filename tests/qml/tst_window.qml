import QtQuick
import QtQuick.Controls
import QtTest
import Qt.labs.settings
import Coinhall

// The main window as the user meets it: its menus, the theme choice, the kit's hooks,
// the help window and the about panel.
TestCase {
    id: testCase

    name: "Window"
    when: windowShown

    Settings {
        id: prefs
    }

    Component {
        id: mainComponent

        Main {}
    }

    function init() {
        prefs.setValue("welcomed", true)
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

    function test_windowAndMenus() {
        const window = makeWindow()
        compare(window.title, "QFS Coinhall")
        compare(window.width, 1380)
        compare(window.height, 900)
        compare(titles(window.themeMenu), ["Studio", "Ice Blue", "Rose Gold", "Lavender", "Carbon", "Graphite"])
        compare(titles(window.helpMenu), ["QFS Coinhall Help", "Quillfern Website", "", "About QFS Coinhall"])
        const menus = []
        for (let i = 0; i < window.menuBar.count; ++i)
            menus.push(window.menuBar.menuAt(i).title)
        compare(menus, ["&File", "&Theme", "&View", "&Help"])
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
        QFZoom.actualSize()
    }

    function test_themeMenuRecoloursAndIsStored() {
        const window = makeWindow()
        const menu = window.themeMenu
        verify(menu.itemAt(0).checked)

        choose(menu, 5)
        compare(String(prefs.value("look")), "graphite")
        compare(Looks.current.id, "graphite")
        compare(window.color, Looks.graphite.bg)
        compare(window.rootView.look.id, "graphite")
        // Exactly the current look is checked, also after a second change.
        choose(menu, 1)
        const checked = []
        for (let i = 0; i < menu.count; ++i)
            checked.push(menu.itemAt(i).checked)
        compare(checked, [false, true, false, false, false, false])
        compare(String(prefs.value("look")), "ice")

        // The kit draws with the look too: its theme's colours follow the change.
        compare(QFSKitHost.theme.bg, Looks.ice.bg)
        compare(QFSKitHost.theme.dim, Looks.ice.muted)
        compare(QFSKitHost.theme.rim, Looks.ice.line)
        compare(QFSKitHost.theme.accent, Looks.ice.accent)
    }

    function test_helpMenuKitHookAndHelpKeyShareOneHelpWindow() {
        const window = makeWindow()
        const help = window.helpWindow
        verify(!help.visible)
        choose(window.helpMenu, 0)
        tryCompare(help, "visible", true)
        waitForRendering(help.contentItem)
        compare(help.title, "QFS Coinhall Help")
        compare(window.rootView.sheet, null)
        mouseClick(findChild(help.contentItem, "helpNext"))
        compare(help.view.topic, 1)

        // The kit's hook brings the open window back to its first chapter.
        QFSKitHost.openHelp("Themes & zoom")
        verify(help.visible)
        compare(help.view.topic, 0)
        compare(window.rootView.sheet, null)

        // Closed, it is only hidden: the sidebar's key shows the same window again.
        mouseClick(findChild(help.contentItem, "helpDone"))
        tryCompare(help, "visible", false)
        mouseClick(findChild(window.rootView, "helpKey"))
        tryCompare(help, "visible", true)
        help.close()
    }

    function test_zoomScalesTheRootViewAboveItsMinimumSize() {
        const window = makeWindow()
        const view = window.rootView
        compare(view.width, window.contentItem.width)
        QFZoom.setLevel(200)
        compare(view.width, 1180)
        compare(view.height, 760)
        const corner = view.mapToItem(window.contentItem, 10, 10)
        compare(corner.x, 20)
        compare(corner.y, 20)
    }

    // Zoomed in, a sheet stays inside what the window shows, its keys in view, and
    // the wheel scrolls its rows, never the window beneath.
    function test_zoomedSheetFitsTheWindowAndScrollsItsRows() {
        const window = makeWindow()
        QFZoom.setLevel(200)
        window.rootView.openSheet(CHSheet.newTx(false))
        const sheet = window.rootView.sheetHost.view
        const shown = window.contentItem.mapToItem(null, 0, 0)
        const inWindow = item => {
            const r = sceneRect(item)
            return r.x >= 0 && r.y >= shown.y && r.x + r.width <= window.width + 0.5 && r.y + r.height <= window.height + 0.5
        }
        tryVerify(() => inWindow(sheet), 1000, "sheet at " + JSON.stringify(sceneRect(sheet)))
        verify(inWindow(findChild(sheet, "sheetSaveKey")))
        verify(inWindow(findChild(sheet, "sheetCancelKey")))

        const rows = findChild(sheet, "sheetRows")
        verify(rows.contentHeight > rows.height, "the rows scroll")
        const below = window.rootView.mapToItem(null, 0, 0)
        mouseWheel(rows, rows.width / 2, rows.height / 2, 0, -360)
        verify(rows.contentY > 0)
        compare(window.rootView.mapToItem(null, 0, 0), below)
        QFZoom.actualSize()
    }

    // Zoomed in, the control the keyboard moves to is scrolled into the window.
    function test_tabScrollsTheZoomedWindowToTheFocus() {
        const window = makeWindow()
        QFZoom.setLevel(200)
        const picker = findChild(window.rootView, "themePicker")
        verify(sceneRect(picker).x > window.width, "the picker starts off-screen")
        findChild(window.rootView, "transferKey").forceActiveFocus(Qt.TabFocusReason)
        for (let i = 0; i < 4 && !picker.activeFocus; ++i)
            keyClick(Qt.Key_Tab)
        verify(picker.activeFocus)
        tryVerify(() => sceneRect(picker).x + picker.width * 2 <= window.width, 1000, "picker at " + sceneRect(picker).x)
        QFZoom.actualSize()
    }

    // Zoomed in, the wheel over a screen scrolls its column and then the window, down
    // to the window's foot.
    function test_wheelOverAZoomedScreenReachesTheFoot() {
        const window = makeWindow()
        QFZoom.setLevel(200)
        for (let i = 0; i < 40; ++i)
            mouseWheel(window.contentItem, 900, 600, 0, -120)
        const foot = window.rootView.mapToItem(null, 0, window.rootView.height)
        fuzzyCompare(foot.y, window.height, 1)
        QFZoom.actualSize()
    }

    function sceneRect(item) {
        const corner = item.mapToItem(null, 0, 0)
        const end = item.mapToItem(null, item.width, item.height)
        return Qt.rect(corner.x, corner.y, end.x - corner.x, end.y - corner.y)
    }

    function test_aboutPanelCredits() {
        const window = makeWindow()
        choose(window.helpMenu, 3)
        const about = window.aboutPanel
        tryCompare(about, "visible", true)
        compare(about.title, "About QFS Coinhall")
        const name = findChild(about.contentItem, "aboutName")
        compare(name.text, "QFS Coinhall")
        compare(findChild(about.contentItem, "aboutCredit").text, "Coinhall by Quillfern · QFS")
        const link = findChild(about.contentItem, "aboutLink")
        verify(HelpBook.websiteText.length > 0)
        compare(link.text, "<a href=\"" + HelpBook.website + "\">" + HelpBook.websiteText + "</a>")
        verify(HelpBook.website.toString().indexOf(HelpBook.websiteText) > 0)
        about.close()
    }
}
