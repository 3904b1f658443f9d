import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The dashboard, empty and then filled through the bridges. Its figures are
// overview_test.cpp's, its balances a journey's.
TestCase {
    id: testCase

    name: "Dashboard"
    width: 1300
    height: 1400
    visible: true
    when: windowShown

    readonly property TransactionListModel lines: TransactionListModel { store: Store }
    readonly property LedgerBridge ledger: LedgerBridge { store: Store }
    readonly property BillsBridge bills: BillsBridge { store: Store }
    readonly property RoyaltiesBridge royalties: RoyaltiesBridge { store: Store }

    function init() {
        while (lines.count > 0)
            ledger.deleteTransaction(lines.idAt(0))
        for (const b of bills.active.concat(bills.finished))
            bills.deleteBill(b.id)
        for (const r of royalties.expected.concat(royalties.received))
            royalties.deleteRoyalty(r.id)
    }
    function spend(income: bool, amount: string, payee: string) {
        verify(ledger.saveTransaction({ id: "", income: income, date: Date.now(), amount: amount, payee: payee,
                                        category: income ? "Other income" : "Other spending",
                                        accountId: ledger.firstAccountId(), note: "", cleared: true }))
    }

    function test_whatIsLoggedShowsAtOnce() {
        const screen = H.make(testCase, testCase, "DashboardScreen { anchors.fill: parent }")
        const sheets = H.spy(testCase, screen, "openSheet")
        compare(H.named(screen, "latestEmpty").text,
                "Nothing logged yet. Use MONEY IN or MONEY OUT at the top, or import your bank's CSV.")
        spend(true, "10", "The Blue Room")
        spend(false, "10.01", "Corner cafe")
        const net = H.named(screen, "netTile")
        compare(H.named(net, "tileValue").text, "-$0.01")
        compare(net.valueColor, Tokens.destructive)
        for (let i = 0; i < 7; ++i)
            spend(false, "1", "Snack " + i)
        compare(H.findAll(screen, c => c.objectName === "latestRow").length, 8, "only eight lines are listed")
        const groups = H.findAll(H.named(screen, "monthlyChart"), c => c.objectName === "monthGroup")
        verify(H.named(groups[5], "barOut").Accessible.name.endsWith(" Out $17.01"))
        compare(H.named(groups[0], "barOut").height, 0)
        // A monthly bill overdue by a month still shows among the next 14 days.
        verify(bills.saveBill(Object.assign(bills.newBill(), { name: "Rent", amount: "1200",
                                                              due: Date.now() - 32 * 24 * 3600 * 1000 })))
        verify(H.named(H.named(screen, "billRow"), "dueText").text.startsWith("OVERDUE · was due "))
        // "Following up" is still on the way; its key asks for the receiving sheet.
        verify(royalties.saveRoyalty(Object.assign({}, royalties.newRoyalty(),
                                                    { payer: "BMI", amount: "80", followingUp: true,
                                                      expectedDate: new Date(2031, 2, 4, 12).getTime() })))
        const row = H.named(screen, "royaltyRow")
        compare(H.named(row, "expectedLine").text, "Expected Mar 4")
        mouseClick(H.named(row, "gotItKey"))
        compare(sheets.signalArguments[0][0].kind, "receiveRoyalty")
        verify(royalties.receive(royalties.expected[0].id, "80", Date.now(), ledger.firstAccountId()))
        compare(H.named(H.named(screen, "royaltiesTile"), "tileValue").text, "$80.00")
        verify(H.named(screen, "royaltiesEmpty").visible)
        // The panels' keys switch screens and open sheets.
        const screens = H.spy(testCase, screen, "showScreen")
        const keys = H.findAll(screen, c => c.objectName === "sectionKey")
        for (const title of ["All", "Bills", "Royalties"])
            mouseClick(keys.find(k => k.text === title))
        compare([0, 1, 2].map(i => screens.signalArguments[i][0]), ["register", "bills", "royalties"])
        mouseClick(keys.find(k => k.Accessible.name === "New account"))
        compare(sheets.signalArguments[1][0].kind, "newAccount")
    }
}
