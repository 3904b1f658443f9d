import QtQuick
import QtTest
import Coinhall

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

        function initTestCase() {
            ledger = ledgerComponent.createObject(stage)
            bills = billsComponent.createObject(stage)
            royalties = royaltiesComponent.createObject(stage)
        }

        function findAll(item: var, name: string): var {
            let found = []
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i]
                if (child.objectName === name)
                    found.push(child)
                found = found.concat(findAll(child, name))
            }
            return found
        }

        function one(name: string): var {
            const found = findAll(screen, name)
            compare(found.length, 1, name)
            return found[0]
        }

        function tile(name: string): string {
            return findAll(one(name), "tileValue")[0].text
        }

        function spend(income: bool, amount: string, payee: string) {
            verify(ledger.saveTransaction({ id: "", income: income, date: Date.now(), amount: amount, payee: payee,
                                            category: income ? "Other income" : "Other spending",
                                            accountId: ledger.firstAccountId(), note: "", cleared: true }))
        }

        function test_anEmptyBookShowsZerosAndTheEmptyNotes() {
            for (const name of ["totalTile", "inTile", "outTile", "netTile", "royaltiesTile"])
                compare(tile(name), "$0.00", name)
            compare(one("latestEmpty").text,
                    "Nothing logged yet. Use MONEY IN or MONEY OUT at the top, or import your bank's CSV.")
            compare(one("billsEmpty").text, "No bills due in the next two weeks.")
            compare(one("royaltiesEmpty").text, "Add the royalty statements you expect so nothing slips by.")
            compare(findAll(screen, "accountRow").map(r => r.Accessible.name),
                    ["Main checking, $0.00", "Savings, $0.00"])
            for (const bar of findAll(one("monthlyChart"), "barIn").concat(findAll(one("monthlyChart"), "barOut")))
                compare(bar.height, 0)
        }

        // Lines, a bill and a royalty logged through the editors' bridges show at once.
        function test_whatIsLoggedShowsAtOnce() {
            spend(true, "10", "The Blue Room")
            spend(false, "10.01", "Corner cafe")
            compare(tile("netTile"), "-$0.01")
            compare(one("netTile").valueColor, Tokens.destructive)
            for (let i = 0; i < 7; ++i)
                spend(false, "1", "Snack " + i)
            compare(findAll(screen, "latestRow").length, 8, "only eight lines are listed")
            // This month, the last group, has both bars; the five months before are empty.
            const groups = findAll(one("monthlyChart"), "monthGroup")
            verify(findAll(groups[5], "barOut")[0].height > findAll(groups[5], "barIn")[0].height)
            compare(findAll(groups[0], "barOut")[0].height, 0)
            verify(findAll(groups[5], "barOut")[0].Accessible.name.endsWith(" Out $17.01"))

            // A monthly bill overdue by a month still shows among the next 14 days.
            const bill = bills.newBill()
            bill.name = "Rent"
            bill.amount = "1200"
            bill.due = Date.now() - 32 * 24 * 3600 * 1000
            verify(bills.saveBill(bill))
            const billRows = findAll(screen, "billRow")
            compare(billRows.length, 1)
            verify(findAll(billRows[0], "dueText")[0].text.startsWith("OVERDUE · was due "))
            // "Following up" is still on the way; its key asks for the receiving sheet.
            verify(royalties.saveRoyalty(Object.assign({}, royalties.newRoyalty(),
                                                        { payer: "BMI", amount: "80", followingUp: true,
                                                          expectedDate: new Date(2031, 2, 4, 12).getTime() })))
            const row = one("royaltyRow")
            compare(findAll(row, "expectedLine")[0].text, "Expected Mar 4")
            mouseClick(findAll(row, "gotItKey")[0])
            compare(sheetSpy.signalArguments[0][0].kind, "receiveRoyalty")
            verify(royalties.receive(royalties.expected[0].id, "80", Date.now(), ledger.firstAccountId()))
            compare(tile("royaltiesTile"), "$80.00")
            verify(one("royaltiesEmpty").visible)
        }

        function test_panelKeysSwitchScreensAndOpenSheets() {
            const keys = findAll(screen, "sectionKey")
            for (const title of ["All", "Bills", "Royalties"])
                mouseClick(keys.find(k => k.text === title))
            compare([0, 1, 2].map(i => screenSpy.signalArguments[i][0]), ["register", "bills", "royalties"])
            mouseClick(keys.find(k => k.Accessible.name === "New account"))
            compare(sheetSpy.signalArguments[0][0].kind, "newAccount")
        }
    }
}
