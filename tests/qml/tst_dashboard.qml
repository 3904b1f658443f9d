import QtQuick
import QtTest
import Coinhall

// The dashboard as a user reads it, from an empty Book (the runner's two accounts and
// nothing else) to a small one built through the editors' bridges. The test functions
// run in the order of their names, each building on the Book the one before left.
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

        function init() {
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

        function test_1_an_empty_book_shows_zeros_and_the_empty_notes() {
            for (const name of ["totalTile", "inTile", "outTile", "netTile", "royaltiesTile"])
                compare(tile(name), "$0.00", name)
            compare(one("netTile").valueColor, screen.look.text)
            verify(one("latestEmpty").visible)
            verify(one("billsEmpty").visible)
            verify(one("royaltiesEmpty").visible)
            compare(one("latestEmpty").text,
                    "Nothing logged yet. Use MONEY IN or MONEY OUT at the top, or import your bank's CSV.")
            compare(one("billsEmpty").text, "No bills due in the next two weeks.")
            compare(one("royaltiesEmpty").text, "Add the royalty statements you expect so nothing slips by.")
            // The runner's Book has its two accounts, with nothing in them.
            compare(findAll(screen, "accountRow").map(r => r.Accessible.name),
                    ["Main checking, $0.00", "Savings, $0.00"])
            const chart = one("monthlyChart")
            compare(findAll(chart, "monthGroup").length, 6)
            for (const bar of findAll(chart, "barIn").concat(findAll(chart, "barOut")))
                compare(bar.height, 0)
        }

        function test_2_the_net_tile_turns_red_only_below_zero() {
            spend(true, "10", "The Blue Room")
            spend(false, "10", "Corner cafe")
            compare(tile("inTile"), "$10.00")
            compare(tile("outTile"), "$10.00")
            compare(tile("netTile"), "$0.00")
            compare(one("netTile").valueColor, screen.look.text)
            spend(false, "0.01", "Gumball")
            compare(tile("outTile"), "$10.01")
            compare(tile("netTile"), "-$0.01")
            compare(tile("totalTile"), "-$0.01")
            compare(one("netTile").valueColor, Tokens.destructive)
        }

        function test_3_latest_activity_and_the_chart_show_the_new_lines() {
            verify(!one("latestEmpty").visible)
            const rows = findAll(screen, "latestRow")
            // Lines logged within one second keep the order they were logged in.
            compare(rows.map(r => r.payee).sort(), ["Corner cafe", "Gumball", "The Blue Room"])
            // Only eight lines are listed, newest first.
            for (let i = 0; i < 7; ++i)
                spend(false, "1", "Snack " + i)
            compare(findAll(screen, "latestRow").length, 8)

            // This month, the last group, has both bars; the five months before are empty.
            const chart = one("monthlyChart")
            const groups = findAll(chart, "monthGroup")
            verify(findAll(groups[5], "barIn")[0].height > 0)
            verify(findAll(groups[5], "barOut")[0].height > findAll(groups[5], "barIn")[0].height)
            compare(findAll(groups[0], "barOut")[0].height, 0)
            compare(findAll(groups[5], "barOut")[0].Accessible.name.endsWith(" Out $17.01"), true)
        }

        function test_4_bills_and_royalties_on_the_way() {
            // A monthly bill overdue by a month still shows among the next 14 days.
            const bill = bills.newBill()
            bill.name = "Rent"
            bill.amount = "1200"
            bill.due = Date.now() - 32 * 24 * 3600 * 1000
            verify(bills.saveBill(bill))
            verify(royalties.saveRoyalty(Object.assign({}, royalties.newRoyalty(),
                                                        { payer: "BMI", amount: "80", followingUp: true,
                                                          expectedDate: new Date(2031, 2, 4, 12).getTime() })))

            verify(!one("billsEmpty").visible)
            const billRows = findAll(screen, "billRow")
            compare(billRows.length, 1)
            compare(findAll(billRows[0], "nameText")[0].text, "Rent")
            verify(findAll(billRows[0], "dueText")[0].text.startsWith("OVERDUE · was due "))

            // "Following up" is still on the way.
            verify(!one("royaltiesEmpty").visible)
            const row = one("royaltyRow")
            compare(findAll(row, "expectedLine")[0].text, "Expected Mar 4")
            compare(findAll(row, "expectedAmount")[0].text, "$80.00")
            mouseClick(findAll(row, "gotItKey")[0])
            compare(sheetSpy.count, 1)
            compare(sheetSpy.signalArguments[0][0].kind, "receiveRoyalty")
            compare(sheetSpy.signalArguments[0][0].record.payer, "BMI")
        }

        function test_5_received_royalties_count_this_year() {
            const pending = royalties.expected[0]
            verify(royalties.receive(pending.id, "80", Date.now(), ledger.firstAccountId()))
            compare(tile("royaltiesTile"), "$80.00")
            compare(tile("inTile"), "$90.00")
            verify(one("royaltiesEmpty").visible)
        }

        function test_6_panel_keys_switch_screens_and_open_sheets() {
            const keys = findAll(screen, "sectionKey")
            mouseClick(keys.find(k => k.text === "All"))
            mouseClick(keys.find(k => k.text === "Bills"))
            mouseClick(keys.find(k => k.text === "Royalties"))
            compare(screenSpy.count, 3)
            compare([0, 1, 2].map(i => screenSpy.signalArguments[i][0]), ["register", "bills", "royalties"])
            mouseClick(keys.find(k => k.Accessible.name === "New account"))
            compare(sheetSpy.count, 1)
            compare(sheetSpy.signalArguments[0][0].kind, "newAccount")
        }
    }
}
