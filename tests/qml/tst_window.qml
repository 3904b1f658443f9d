import QtQuick
import QtQuick.Controls
import QtTest
import Coinhall
import "helpers.js" as H

// The main window. The screen keys, F10 and Alt+V opening the menus and the zoom and
// theme surviving a restart are real-window journeys.
TestCase {
    id: testCase

    name: "Window"
    when: windowShown

    function init() {
        Prefs.welcomed = true
        Looks.choose("studio")
        QFZoom.actualSize()
    }
    function makeWindow() {
        const window = H.make(testCase, null, "Main {}")
        waitForRendering(window.contentItem)
        return window
    }
    // Chooses a menu's item as a user does.
    function choose(menu, index) {
        menu.open()
        tryCompare(menu, "opened", true)
        waitForRendering(menu.itemAt(index))
        mouseClick(menu.itemAt(index))
        tryCompare(menu, "visible", false)
    }

    // Escape gives the keyboard back to the key that opened the sheet.
    function test_sheetsTakeTheDeskAndGiveTheKeyboardBack() {
        const view = makeWindow().rootView
        for (const keyName of ["moneyOutKey", "moneyInKey", "transferKey", "importKey"]) {
            mouseClick(H.named(view, keyName))
            mouseClick(H.named(view, "screenKey_bills"))
            keyClick(Qt.Key_Escape)
            compare([view.screen, view.sheet, H.named(view, keyName).activeFocus], ["dashboard", null, true], keyName)
        }
        for (const kind of CHSheet.kinds.filter(k => k !== "help")) {
            view.openSheet(CHSheet[kind]({ id: "x", name: "Verizon", payer: "BMI" }))
            verify(view.sheetHost.view !== null, kind)
            view.sheetHost.view.done()
        }
    }

    // The desktop's actions open their sheet, but never over one the user is filling in.
    function test_desktopActionsOpenTheirSheetOrScreen() {
        const view = makeWindow().rootView
        view.openFromOutside("money-in")
        compare([view.sheet.kind, view.sheet.income], ["newTx", true])
        view.openFromOutside("import")
        view.openFromOutside("bills")
        compare([view.sheet.kind, view.screen], ["newTx", "bills"])
        view.closeSheet()
        view.openFromOutside("import")
        compare(view.sheet.kind, "importCSV")
    }

    function test_menusByKeyboardAndTheTheme() {
        const window = makeWindow()
        const bar = window.menuBar
        const focused = window.activeFocusItem
        keyClick(Qt.Key_F10)
        tryCompare(bar.menuAt(0), "opened", true)
        keyClick(Qt.Key_Right)
        tryCompare(bar.menuAt(1), "opened", true)
        keyClick(Qt.Key_Escape)
        tryVerify(() => !bar.menuAt(0).visible && !bar.menuAt(1).visible)
        compare(window.activeFocusItem, focused)
        keyClick(Qt.Key_V, Qt.AltModifier)
        tryCompare(bar.menuAt(3), "opened", true)
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Return)
        tryCompare(bar.menuAt(3), "visible", false)
        compare([QFZoom.value, window.activeFocusItem], [1.15, focused])
        // The header's picker and the Theme menu are one choice.
        const picker = H.named(window.rootView, "themePicker")
        mouseClick(picker)
        tryCompare(picker.popup, "opened", true)
        tryVerify(() => picker.popup.contentItem.itemAtIndex(4) !== null)
        mouseClick(picker.popup.contentItem.itemAtIndex(4))
        tryCompare(picker.popup, "visible", false)
        compare([Prefs.look, window.color, window.helpWindow.color, window.themeMenu.itemAt(4).checked],
                ["carbon", Looks.carbon.bg, Looks.carbon.bg, true])
        choose(window.themeMenu, 1)
        compare([Prefs.look, picker.displayText, window.themeMenu.itemAt(4).checked], ["ice", "Ice Blue", false])
    }

    // The help opens by itself on the first run only; the help key, the Help menu and the
    // kit's hook open it on its first chapter.
    function test_helpAtFirstRunAndAfter() {
        Prefs.welcomed = false
        const first = makeWindow()
        tryCompare(first.helpWindow, "visible", true)
        compare([first.helpWindow.view.topic, first.rootView.sheet], [0, null])
        first.helpWindow.close()
        first.destroy()
        wait(0)
        const window = makeWindow()
        const help = window.helpWindow
        verify(!help.visible, "only on the first run")
        for (const open of [() => choose(window.helpMenu, 0), () => mouseClick(H.named(window.rootView, "helpKey")),
                            () => QFSKitHost.openHelp("Themes & zoom")]) {
            help.show(6)
            help.close()
            open()
            tryCompare(help, "visible", true)
            compare([help.view.topic, window.rootView.sheet], [0, null])
        }
        help.close()
        choose(window.helpMenu, 3)
        tryCompare(window.aboutPanel, "visible", true)
        window.aboutPanel.close()
    }

    // Reopened at another zoom, at once (before the window system answers), it fits.
    function test_helpWindowByKeyboardAndAtTheZoom() {
        const window = H.make(testCase, testCase, "CHHelpWindow {}")
        const key = name => findChild(window.contentItem, name)
        QFZoom.setLevel(85)
        window.show(0)
        tryCompare(window, "active", true)
        compare([window.title, window.width, window.height], ["QFS Coinhall Help", 731, 476])
        const middle = Qt.point(window.screen.virtualX + window.screen.width / 2, window.screen.virtualY + window.screen.height / 2)
        verify(Math.abs(window.x + window.width / 2 - middle.x) <= 1 && Math.abs(window.y + window.height / 2 - middle.y) <= 1)
        waitForRendering(window.contentItem)
        verify(!key("helpBack").visible, "nowhere to go back to from the first chapter")
        for (const [name, presses, topic] of [["helpChapters", 2, 2], ["helpBack", 1, 1], ["helpNext", 2, 3], ["helpDone", 0, 3]]) {
            keyClick(Qt.Key_Tab)
            verify(key(name).activeFocus, name)
            for (let i = 0; i < presses; ++i)
                keyClick(name === "helpChapters" ? Qt.Key_Down : Qt.Key_Space)
            compare(window.view.topic, topic)
        }
        compare(key("helpTitle").text, "Bills & reminders")
        keyClick(Qt.Key_Escape)
        tryCompare(window, "visible", false)
        QFZoom.setLevel(200)
        window.show(10)
        compare([window.width, window.height, key("helpTitle").text, key("helpNext").visible], [1720, 1120, "About QFS", false])
        window.close()
        QFZoom.actualSize()
        window.show(0)
        compare([window.width, window.view.width], [860, 860])
        waitForRendering(window.contentItem)
        tryVerify(() => key("helpDone").visible && key("helpDone").mapToItem(window.contentItem, key("helpDone").width, 0).x <= 860, 2000)
        verify(key("helpBody").mapToItem(window.contentItem, key("helpBody").width, 0).x <= 860)
        window.close()
    }

    // Zoomed, the window follows the focus and the wheel; over a sheet the wheel scrolls
    // its rows, never the window beneath.
    function test_zoomedWindowFollowsTheFocusAndTheWheel() {
        const window = makeWindow()
        QFZoom.setLevel(200)
        const picker = H.named(window.rootView, "themePicker")
        verify(H.sceneRect(picker).x > window.width, "the picker starts off-screen")
        H.named(window.rootView, "transferKey").forceActiveFocus(Qt.TabFocusReason)
        for (let i = 0; i < 4 && !picker.activeFocus; ++i)
            keyClick(Qt.Key_Tab)
        verify(picker.activeFocus)
        tryVerify(() => H.sceneRect(picker).x + picker.width * 2 <= window.width, 1000, "picker at " + H.sceneRect(picker).x)
        for (let i = 0; i < 40; ++i)
            mouseWheel(window.contentItem, 900, 600, 0, -120)
        fuzzyCompare(window.rootView.mapToItem(null, 0, window.rootView.height).y, window.height, 1)

        window.rootView.openSheet(CHSheet.newTx(false))
        const rows = H.named(window.rootView.sheetHost.view, "sheetRows")
        tryVerify(() => rows.contentHeight > rows.height, 1000, "the rows scroll")
        const below = window.rootView.mapToItem(null, 0, 0)
        mouseWheel(rows, rows.width / 2, rows.height / 2, 0, -360)
        compare([rows.contentY > 0, window.rootView.mapToItem(null, 0, 0)], [true, below])
    }
}
