import QtQuick
import QtTest
import Qt.labs.settings
import Coinhall

// The root view: the header's keys and read-outs, the sidebar, the sheets and the theme picker.
TestCase {
    id: testCase

    name: "RootView"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    Settings {
        id: prefs
    }

    Component {
        id: rootComponent

        RootView {
            width: 1380
            height: 900
        }
    }

    function init() {
        prefs.setValue("welcomed", true)
        Looks.choose("studio")
    }

    function makeRoot() {
        const view = createTemporaryObject(rootComponent, testCase)
        verify(view !== null)
        waitForRendering(view)
        return view
    }

    function child(view, name) {
        const found = findChild(view, name)
        verify(found !== null, "no " + name)
        return found
    }

    function sheetTitle(view) {
        return view.sheetHost.view ? view.sheetHost.view.title : undefined
    }

    function test_moneyKeysOpenTheirSheets() {
        const view = makeRoot()
        mouseClick(child(view, "moneyOutKey"))
        compare(view.sheet.kind, "newTx")
        compare(view.sheet.income, false)
        compare(sheetTitle(view), "Money out")
        // Escape cancels the sheet and gives the focus back to its key; the next key
        // opens a fresh one.
        keyClick(Qt.Key_Escape)
        compare(view.sheet, null)
        compare(view.sheetHost.view, null)
        verify(child(view, "moneyOutKey").activeFocus)

        mouseClick(child(view, "moneyInKey"))
        compare(view.sheet.kind, "newTx")
        compare(view.sheet.income, true)
        compare(sheetTitle(view), "Money in")
        keyClick(Qt.Key_Escape)

        mouseClick(child(view, "transferKey"))
        compare(view.sheet.kind, "transfer")
        compare(sheetTitle(view), "Move money between accounts")
        keyClick(Qt.Key_Escape)

        mouseClick(child(view, "importKey"))
        compare(view.sheet.kind, "importCSV")
        compare(sheetTitle(view), "Import from your bank")
        keyClick(Qt.Key_Escape)
        compare(view.sheet, null)
    }

    function test_openSheetTakesTheClicksAwayFromTheDesk() {
        const view = makeRoot()
        mouseClick(child(view, "moneyOutKey"))
        mouseClick(child(view, "screenKey_bills"))
        compare(view.screen, "dashboard")
        compare(view.sheet.kind, "newTx")
    }

    function test_everySheetCaseHasAView() {
        const view = makeRoot()
        const sample = { id: "x", name: "Verizon", payer: "BMI" }
        const expected = {
            newTx: "Money out", editTx: "Change transaction", editBill: "Change bill", payBill: "Pay Verizon",
            editRoyalty: "Change royalty", receiveRoyalty: "Royalty from BMI", editAccount: "Change account",
            transfer: "Move money between accounts", newBill: "New bill", newRoyalty: "Royalty you're expecting",
            newAccount: "New account", importCSV: "Import from your bank", settings: "Settings"
        }
        for (const kind of CHSheet.kinds) {
            let sheet
            if (kind === "newTx")
                sheet = CHSheet.newTx(false)
            else if (kind.startsWith("edit") || kind === "payBill" || kind === "receiveRoyalty")
                sheet = CHSheet[kind](sample)
            else
                sheet = CHSheet[kind]()
            view.openSheet(sheet)
            if (kind === "help") {
                // The help is a window of its own, not a sheet over the books.
                compare(view.sheet, null)
                compare(view.sheetHost.view, null)
                tryCompare(view.helpWindow, "visible", true)
                compare(view.helpWindow.view.chapters.length, 11)
                view.helpWindow.close()
                continue
            }
            verify(view.sheetHost.view !== null, kind)
            compare(sheetTitle(view), expected[kind], kind)
            view.sheetHost.view.done()
            compare(view.sheet, null, kind)
        }
    }

    function test_sidebarPicksTheScreen() {
        const view = makeRoot()
        const types = {
            dashboard: "DashboardScreen", register: "TransactionsScreen", bills: "BillsScreen",
            royalties: "RoyaltiesScreen", calendar: "CalendarScreen", reports: "ReportsScreen",
            accounts: "AccountsScreen"
        }
        const titles = []
        for (const screen of view.screens) {
            const key = child(view, "screenKey_" + screen.key)
            titles.push(key.title)
            mouseClick(key)
            compare(view.screen, screen.key)
            verify(key.lit)
            verify(String(view.screenView.item).startsWith(types[screen.key]), String(view.screenView.item))
        }
        compare(titles, ["Dashboard", "Transactions", "Bills", "Royalties", "Calendar", "Reports", "Accounts"])
        verify(!child(view, "screenKey_dashboard").lit)
        // The help key opens the help window on its first chapter, whatever was read last.
        view.helpWindow.show(6)
        view.helpWindow.close()
        mouseClick(child(view, "helpKey"))
        tryCompare(view.helpWindow, "visible", true)
        compare(view.helpWindow.view.topic, 0)
        compare(view.sheet, null)
        view.helpWindow.close()
    }

    function test_headerReadsTheStore() {
        const view = makeRoot()
        compare(child(child(view, "totalReadout"), "value").text, "$0.00")
        compare(child(child(view, "royaltiesReadout"), "value").text, "$0.00")
        compare(child(child(view, "dueSoonReadout"), "value").text, "0")
        verify(!child(view, "overdueBadge").visible)
    }

    function test_themePickerRecoloursEveryScreenAndIsStored() {
        const view = makeRoot()
        const picker = child(view, "themePicker")
        compare(picker.displayText, "Studio")
        mouseClick(picker)
        tryCompare(picker.popup, "opened", true)
        // The list: Studio, Ice Blue, Rose Gold, Lavender, Carbon, Graphite.
        const list = picker.popup.contentItem
        tryVerify(() => list.itemAtIndex(4) !== null)
        const entry = list.itemAtIndex(4)
        mouseClick(entry)
        tryCompare(picker.popup, "visible", false)

        compare(String(prefs.value("look")), "carbon")
        compare(picker.displayText, "Carbon")
        compare(view.look.id, "carbon")
        for (const screen of view.screens) {
            view.screen = screen.key
            compare(view.screenView.item.look.id, "carbon", screen.key)
        }
        view.openSheet(CHSheet.newBill())
        compare(view.sheetHost.view.look.id, "carbon")
        view.closeSheet()

        // A change made elsewhere (the Theme menu) shows in the picker.
        Looks.choose("lavender")
        compare(picker.displayText, "Lavender")
        compare(view.look, Looks.lavender)
    }
}
