import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The dashboard as a user reads it: an empty Book, then a small one built through the
// editors' bridges. Its figures are the C++ summary's (tests/app/overview_test.cpp).
Item {
    id: stage

    width: 1300
    height: 1400

    Component {
        id: screenComponent

        DashboardScreen {
            anchors.fill: parent
        }
    }

    Component {
        id: ledgerComponent

        LedgerBridge {
            store: Store
        }
    }

    Component {
        id: billsComponent

        BillsBridge {
            store: Store
        }
    }

    Component {
        id: royaltiesComponent

        RoyaltiesBridge {
            store: Store
        }
    }

    TransactionListModel {
        id: lines

        store: Store
    }

    SignalSpy {
        id: screenSpy

        signalName: "showScreen"
    }

    SignalSpy {
        id: sheetSpy

        signalName: "openSheet"
    }

    TestCase {
        id: testCase
        name: "Dashboard"
        when: windowShown
        property var screen
        property var ledger
        property var bills
        property var royalties
        function initTestCase() {
            ledger = ledgerComponent.createObject(stage)
            bills = billsComponent.createObject(stage)
            royalties = royaltiesComponent.createObject(stage)
        }
        // Each test starts from the runner's Book: its two accounts and nothing else.
        function init() {
            while (lines.count > 0)
                ledger.deleteTransaction(lines.idAt(0))
            for (const b of bills.active.concat(bills.finished))
                bills.deleteBill(b.id)
            for (const r of royalties.expected.concat(royalties.received))
                royalties.deleteRoyalty(r.id)
            screen = createTemporaryObject(screenComponent, stage)
            screenSpy.target = screen
            screenSpy.clear()
            sheetSpy.target = screen
            sheetSpy.clear()
        }
        function tile(name: string): string {
            return H.named(H.named(screen, name), "tileValue").text
        }
        function spend(income: bool, amount: string, payee: string) {
            verify(ledger.saveTransaction({ id: "", income: income, date: Date.now(), amount: amount, payee: payee,
                                            category: income ? "Other income" : "Other spending",
                                            accountId: ledger.firstAccountId(), note: "", cleared: true }))
        }
        // Empty, then lines, a bill and a royalty logged through the editors' bridges: the
        // screen shows them at once.
        function test_whatIsLoggedShowsAtOnce() {
            compare(H.named(screen, "latestEmpty").text,
                    "Nothing logged yet. Use MONEY IN or MONEY OUT at the top, or import your bank's CSV.")
            compare(H.findAll(screen, c => c.objectName === "accountRow").map(r => r.Accessible.name),
                    ["Main checking, $0.00", "Savings, $0.00"])
            spend(true, "10", "The Blue Room")
            spend(false, "10.01", "Corner cafe")
            compare(tile("netTile"), "-$0.01")
            compare(H.named(screen, "netTile").valueColor, Tokens.destructive)
            for (let i = 0; i < 7; ++i)
                spend(false, "1", "Snack " + i)
            compare(H.findAll(screen, c => c.objectName === "latestRow").length, 8, "only eight lines are listed")
            const groups = H.findAll(H.named(screen, "monthlyChart"), c => c.objectName === "monthGroup")
            verify(H.named(groups[5], "barOut").Accessible.name.endsWith(" Out $17.01"))
            compare(H.named(groups[0], "barOut").height, 0)
            // A monthly bill overdue by a month still shows among the next 14 days.
            const bill = Object.assign(bills.newBill(), { name: "Rent", amount: "1200",
                                                          due: Date.now() - 32 * 24 * 3600 * 1000 })
            verify(bills.saveBill(bill))
            verify(H.named(H.named(screen, "billRow"), "dueText").text.startsWith("OVERDUE · was due "))
            // "Following up" is still on the way; its key asks for the receiving sheet.
            verify(royalties.saveRoyalty(Object.assign({}, royalties.newRoyalty(),
                                                        { payer: "BMI", amount: "80", followingUp: true,
                                                          expectedDate: new Date(2031, 2, 4, 12).getTime() })))
            const row = H.named(screen, "royaltyRow")
            compare(H.named(row, "expectedLine").text, "Expected Mar 4")
            mouseClick(H.named(row, "gotItKey"))
            compare(sheetSpy.signalArguments[0][0].kind, "receiveRoyalty")
            verify(royalties.receive(royalties.expected[0].id, "80", Date.now(), ledger.firstAccountId()))
            compare(tile("royaltiesTile"), "$80.00")
            verify(H.named(screen, "royaltiesEmpty").visible)
        }
        function test_panelKeysSwitchScreensAndOpenSheets() {
            const keys = H.findAll(screen, c => c.objectName === "sectionKey")
            for (const title of ["All", "Bills", "Royalties"])
                mouseClick(keys.find(k => k.text === title))
            compare([0, 1, 2].map(i => screenSpy.signalArguments[i][0]), ["register", "bills", "royalties"])
            mouseClick(keys.find(k => k.Accessible.name === "New account"))
            compare(sheetSpy.signalArguments[0][0].kind, "newAccount")
        }
    }
}
