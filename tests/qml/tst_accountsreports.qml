import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The Accounts screen and editor, and the Reports screen (on lines of 2099, which only
// "This year" counts). Balances, titles, reading typed budgets, the report's figures and
// the budget rule are tests/bridge's and tests/core/store's, periods by mouse a journey's.
TestCase {
    id: testCase

    name: "AccountsReports"
    width: 1000
    height: 900
    visible: true
    when: windowShown

    readonly property LedgerBridge ledger: LedgerBridge { store: Store }
    readonly property TransactionListModel everything: TransactionListModel { store: Store }

    function init() {
        while (everything.count > 0)
            ledger.deleteTransaction(everything.idAt(0))
    }
    function openScreen(): var {
        const screen = H.make(testCase, testCase, "AccountsScreen { anchors.fill: parent }")
        waitForRendering(screen)
        return screen
    }
    function accountNamed(screen: var, name: string): var {
        return screen.bridge.accounts.find(a => a.name === name)
    }
    function editor(account: var): var {
        return H.make(testCase, testCase, "AccountEditor {}", { sheet: CHSheet.editAccount(account) })
    }

    // The percent typed on the Accounts screen (a refusal saves nothing), the income that
    // counts chosen by keyboard, and the dashboard's tile of this year's figures.
    function test_setAsideForTaxes() {
        const screen = openScreen()
        const dashboard = H.make(testCase, testCase, "DashboardScreen { width: 1000; height: 900 }")
        const tile = H.named(dashboard, "setAsideTile")
        const figures = () => ["setAsideDue", "setAsidePaid", "setAsideLeft"].map(
                              n => H.named(H.named(tile, n), "tileValue").text)
        verify(!tile.visible)
        const field = H.named(screen, "setAsidePercentField")
        compare(field.Accessible.name, "Percent of income")
        for (const bad of ["abc", "150", "-3"]) {
            H.retype(testCase, field, bad)
            keyClick(Qt.Key_Return)
            compare([H.named(screen, "setAsideError").text, screen.bridge.setAsidePercent],
                    ["The percent to set aside is a number from 0 to 100.", ""], bad)
        }
        H.retype(testCase, field, "25")
        keyClick(Qt.Key_Return)
        compare([H.named(screen, "setAsideError").text, screen.bridge.setAsidePercent], ["", "25"])
        for (const [income, amount, category] of [[true, "1000", "Paycheck"], [true, "200", "Refunds"],
                                                  [true, "100", "Royalties"], [false, "50", "Taxes"]])
            verify(ledger.saveTransaction({ id: "", income: income, date: Date.now(), amount: amount, payee: "P",
                                            category: category, accountId: ledger.firstAccountId(), note: "",
                                            cleared: true }))
        verify(tile.visible)
        compare(figures(), ["$275.00", "$50.00", "$225.00"])
        compare(H.named(tile, "setAsideLeft").Accessible.name, "Still to put aside $225.00")

        const paycheck = H.first(screen, c => c.objectName === "setAsideCategory" && c.text === "Paycheck")
        verify(!H.first(screen, c => c.objectName === "setAsideCategory" && c.text === "Refunds").checked)
        paycheck.forceActiveFocus()
        keyClick(Qt.Key_Space)
        compare(paycheck.checked, false)
        compare(figures(), ["$25.00", "$50.00", "$25.00"])
        compare(H.named(tile, "setAsideLeft").Accessible.name, "Overpaid $25.00")
        // The Reports screen shows the same for its period; this month's lines are this year's too.
        const reports = H.make(testCase, testCase, "ReportsScreen { width: 1000; height: 900; period: 2 }")
        const reportTile = H.named(reports, "setAsideTile")
        compare([reportTile.label, H.named(H.named(reportTile, "setAsideLeft"), "tileValue").text],
                ["Set aside for taxes · This year", "$25.00"])

        keyClick(Qt.Key_Space)
        H.retype(testCase, field, "0")
        keyClick(Qt.Key_Return)
        compare([paycheck.checked, screen.bridge.setAsidePercent, tile.visible], [true, "", false])
    }

    // A budget (spending categories only) is written on leaving its field; on Return: test_periodsAndBudgets.
    function test_budgetsAndTheLockToggle() {
        const screen = openScreen()
        verify(!H.first(screen, c => c.objectName === "budgetRow" && c.name === "Paycheck"))
        const row = H.first(screen, c => c.objectName === "budgetRow" && c.name === "Dining out")
        H.retype(testCase, row.field, "$60.00")
        keyClick(Qt.Key_Tab)
        compare([row.budget, row.text], ["60", "60"])
        const before = Store.requireUnlock
        mouseClick(H.named(screen, "unlockToggle"))
        compare(Store.requireUnlock, !before)
        keyClick(Qt.Key_Space)
        compare(Store.requireUnlock, before)
    }
    // An unreadable starting balance is zero; an account without lines can be deleted.
    function test_addAndDeleteAnAccount() {
        const screen = openScreen()
        const host = H.make(testCase, testCase, "SheetHost { anchors.fill: parent }")
        const closed = H.spy(testCase, host, "done")
        screen.openSheet.connect(sheet => host.sheet = sheet)
        mouseClick(H.named(screen, "editAccountKey"))
        tryVerify(() => host.view !== null)
        compare([host.view.title, host.view.name], ["Change account", "Main checking"])
        host.sheet = null // Escape closing a sheet: tst_parts
        mouseClick(H.key(screen, "Add account"))
        tryVerify(() => host.view !== null)
        const adding = host.view
        tryVerify(() => H.named(adding, "nameField").field.activeFocus, 1000, "the name field has the focus first")
        compare([H.keys(adding), H.key(adding, "Save").enabled], [["Cancel", "Save"], false], "no delete, no name")
        H.type(testCase, "Cash box")
        H.named(adding, "kindPicker").box.forceActiveFocus()
        for (let i = 0; i < 3; ++i)
            keyClick(Qt.Key_Down)
        H.retype(testCase, H.named(adding, "openingField").field, "abc")
        mouseClick(H.key(adding, "Save"))
        compare(closed.count, 1)
        const saved = accountNamed(screen, "Cash box")
        compare([saved.balanceText, screen.bridge.account(saved.id).kind], ["$0.00", "Cash"])
        const change = editor(saved)
        compare([H.keys(change), H.named(change, "deleteNote").visible], [["Delete account", "Cancel", "Save"], false])
        mouseClick(H.key(change, "Delete account"))
        verify(!accountNamed(screen, "Cash box"), "the account is gone")
    }
    function test_accountWithLinesIsClosedNotDeleted() {
        const screen = openScreen()
        const savings = accountNamed(screen, "Savings")
        const importer = H.make(testCase, testCase, "ImportBridge { store: Store }", { account: savings.id })
        importer.open(Qt.resolvedUrl("../data/bank/riverbend_savings.csv"))
        verify(importer.importNow() > 0)
        const closing = editor(savings)
        compare(H.keys(closing), ["Cancel", "Save"], "no delete for an account with lines")
        compare(H.named(closing, "deleteNote").text, "This account has transactions, so it can be closed but not deleted.")
        mouseClick(H.named(closing, "closedToggle"))
        mouseClick(H.key(closing, "Save"))
        verify(H.texts(screen, "accountTitle").indexOf("Savings (closed)") >= 0)
        verify(editor(accountNamed(screen, "Savings")).closed, "the editor shows it closed")
    }

    // The lines of a CategoryBars as "name amount percent [budget]".
    function lines(bars: var): var {
        return H.findAll(bars, c => c.objectName === "categoryLine").map(line => {
            const budget = H.named(line, "budgetText")
            return [line.modelData.name, H.named(line, "amountText").text, H.named(line, "percentText").text]
                    .concat(budget.visible ? [budget.text] : []).join(" ")
        })
    }

    // A period key works from the keyboard; a budget typed on the Accounts screen shows, red when over.
    function test_periodsAndBudgets() {
        const importer = H.make(testCase, testCase, "ImportBridge { store: Store }")
        importer.open(Qt.resolvedUrl("data/reports_2099.csv"))
        compare(importer.importNow(), 5)
        // The Groceries budget as typed on the Accounts screen.
        const budget = H.first(openScreen(), c => c.objectName === "budgetRow" && c.name === "Groceries").field
        H.retype(testCase, budget, "99.99")
        keyClick(Qt.Key_Return)
        const screen = H.make(testCase, testCase, "ReportsScreen { anchors.fill: parent }")
        waitForRendering(screen)
        const tiles = () => ["incomeTile", "spendingTile", "netTile", "royaltyShareTile"].map(
                          n => H.named(H.named(screen, n), "tileValue").text)
        const key = title => H.first(screen, c => c.objectName === "periodKey" && c.title === title)
        compare([key("This month").lit, H.named(H.named(screen, "spendingBars"), "emptyNote").text],
                [true, "Nothing in this period."], "a new screen starts at this month")
        key("This year").forceActiveFocus()
        keyClick(Qt.Key_Space)
        compare([key("This year").lit, key("This month").lit].concat(tiles()), [true, false, "$2,500.00", "$2,650.00", "-$150.00", "20%"])
        const bars = H.named(screen, "spendingBars")
        compare(lines(bars), ["Rent / mortgage $1,450.00 54%", "Groceries $1,200.00 45% budget $1,199.88"])
        compare(lines(H.named(screen, "incomeBars")), ["Web design clients $2,000.00 80%", "Royalties $500.00 20%"])
        const over = H.named(H.findAll(bars, c => c.objectName === "categoryLine")[1], "budgetText")
        verify(Qt.colorEqual(over.color, Tokens.destructive), "over the budget")
        H.retype(testCase, budget, "")
        keyClick(Qt.Key_Return)
        compare(lines(bars)[1], "Groceries $1,200.00 45%", "no budget, no budget text")
    }
    // A category with no share still shows a sliver of bar.
    function test_categoryBarsWithZeroShareStillShowABar() {
        const none = { name: "Gigs", amountText: "$0.00", share: 0, percentText: "0%", budgetText: "", over: false }
        const bars = H.make(testCase, testCase, "CategoryBars { width: 400 }", { title: "Income", lines: [none] })
        waitForRendering(bars)
        compare(H.named(H.named(bars, "categoryLine"), "bar").width, 3)
    }

    // The tax year offers the years with lines; its keys are reachable by Tab and say
    // where the report went, or why it did not.
    function test_taxYearAndTheYearsReportKeys() {
        const importer = H.make(testCase, testCase, "ImportBridge { store: Store }")
        importer.open(Qt.resolvedUrl("data/reports_2099.csv"))
        compare(importer.importNow(), 5)
        const screen = H.make(testCase, testCase, "ReportsScreen { anchors.fill: parent }")
        waitForRendering(screen)
        const picker = H.named(screen, "taxYearPicker")
        const keys = ["savePdfKey", "printKey", "saveCsvKey"].map(n => H.named(screen, n))
        compare([picker.displayText, picker.count, picker.Accessible.name, picker.Accessible.role],
                ["2099", 1, "Tax year", Accessible.ComboBox])
        compare(keys.map(k => [k.title, k.Accessible.name, k.enabled]),
                [["Save as PDF…", "Save as PDF…", true], ["Print…", "Print…", true],
                 ["Save as CSV…", "Save as CSV…", true]])
        picker.forceActiveFocus()
        for (const k of keys) {
            keyClick(Qt.Key_Tab)
            verify(k.activeFocus, k.title + " is next by Tab")
        }
        verify(screen.bridge.saveYearCsv("file://" + Store.dir + "/2099.csv"))
        compare(Store.status, "Saved 2099.csv.")
        verify(!screen.bridge.saveYearPdf("file://" + Store.dir + "/no such folder/2099.pdf"))
        verify(Store.status.startsWith("Could not save: "), Store.status)
    }
}
