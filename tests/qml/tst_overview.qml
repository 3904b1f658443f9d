import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The dashboard and the calendar, on Books filled through the bridges. Their figures, a
// day's items, their order and count, and the months are tests/bridge/overview_test.cpp's,
// the balances a journey's.
TestCase {
    id: testCase

    name: "Overview"
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
    function spend(income: bool, amount: string, payee: string, date: double) {
        verify(ledger.saveTransaction({ id: "", income: income, date: date || Date.now(), amount: amount, payee: payee,
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
        compare([H.named(net, "tileValue").text, net.valueColor], ["-$0.01", Tokens.destructive])
        for (let i = 0; i < 7; ++i)
            spend(false, "1", "Snack " + i)
        compare(H.findAll(screen, c => c.objectName === "latestRow").length, 8, "only eight lines are listed")
        const groups = H.findAll(H.named(screen, "monthlyChart"), c => c.objectName === "monthGroup")
        compare([H.named(groups[5], "barOut").Accessible.name.endsWith(" Out $17.01"), H.named(groups[0], "barOut").height], [true, 0])
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
        compare([H.named(H.named(screen, "royaltiesTile"), "tileValue").text, H.named(screen, "royaltiesEmpty").visible],
                ["$80.00", true])
        // The panels' keys switch screens and open sheets.
        const screens = H.spy(testCase, screen, "showScreen")
        const keys = H.findAll(screen, c => c.objectName === "sectionKey")
        for (const title of ["All", "Bills", "Royalties"])
            mouseClick(keys.find(k => k.text === title))
        compare([0, 1, 2].map(i => screens.signalArguments[i][0]), ["register", "bills", "royalties"])
        mouseClick(keys.find(k => k.Accessible.name === "New account"))
        compare(sheets.signalArguments[1][0].kind, "newAccount")
    }

    function at(month: int, day: int, hour: int): real {
        return new Date(2031, month - 1, day, hour, 0, 0).getTime()
    }
    // March 12, 2031, once per test: two bills, two royalties, money in and money out.
    function fillMarch12() {
        if (bills.active.length > 0)
            return
        for (const [name, amount, repeats] of [["Rent", "1200", "One time"], ["Phone", "65.5", "Monthly"]])
            verify(bills.saveBill(Object.assign(bills.newBill(), { name: name, amount: amount, due: at(3, 12, 9),
                                                                  repeats: repeats })))
        for (const [payer, amount, hour] of [["BMI", "80", 10], ["ASCAP", "20", 11]])
            verify(royalties.saveRoyalty(Object.assign({}, royalties.newRoyalty(),
                                                        { payer: payer, amount: amount, expectedDate: at(3, 12, hour) })))
        spend(true, "500", "The Blue Room", at(3, 12, 14))
        spend(false, "30", "Corner cafe", at(3, 12, 14))
    }
    function findAll(item: var, name: string): var {
        return H.findAll(item, c => c.objectName === name)
    }
    function cell(screen: var, day: int): var {
        return findAll(screen, "dayCell").find(c => c.day.day === day)
    }
    // March 2031, its 12th filled, on a screen of this size.
    function shown(size: var): var {
        fillMarch12()
        const screen = H.make(testCase, testCase, "CalendarScreen {}", size || { width: 1300, height: 1100 })
        screen.calendar.showMonthOf(at(3, 1, 12))
        waitForRendering(screen)
        return screen
    }

    // US weeks start on Sunday: March 2031 begins on the Saturday after six blanks.
    function test_a_full_day_lists_four_items_and_all_when_picked() {
        const screen = shown()
        compare(findAll(screen, "blankCell").length, 6)
        const names = findAll(screen, "weekdayName")
        compare(names.map(n => n.text), ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"])
        const column = item => Math.round(item.mapToItem(screen, item.width / 2, 0).x)
        verify(Math.abs(column(cell(screen, 1)) - column(names[6])) < cell(screen, 1).width / 2)
        verify(Math.abs(column(cell(screen, 2)) - column(names[0])) < cell(screen, 2).width / 2)
        const day = cell(screen, 12)
        compare(H.texts(day, "itemTitle").concat(H.texts(day, "moreText")), ["Rent", "Phone", "BMI", "ASCAP", "+2 more"])
        compare(H.texts(day, "itemAmount"), ["$1,200.00", "$65.50", "$80.00", "$20.00"])
        verify(day.help.startsWith("Rent: $1,200.00\n"), "the hover text lists the day")
        mouseClick(day)
        const panel = findAll(screen, "pickedPanel")[0]
        compare(H.texts(panel, "itemTitle").concat(H.texts(panel, "itemAmount")[5]),
                ["Rent", "Phone", "BMI", "ASCAP", "Money in", "Money out", "$30.00"])
    }

    // Six weeks fit an ordinary window, the cells listing fewer items (never below 92
    // high); shorter still, the screen scrolls.
    function test_six_weeks_fit_a_short_window() {
        const screen = shown({ width: 1150, height: 730 })
        const last = cell(screen, 31)
        verify(last.mapToItem(screen, 0, last.height).y <= screen.height && last.height >= 92, "the last week fits")
        const day = cell(screen, 12)
        const titles = H.texts(day, "itemTitle")
        verify(titles.length < 4, "lists " + titles)
        compare(H.texts(day, "moreText"), ["+" + (6 - titles.length) + " more"])
        const line = findAll(day, "moreText")[0]
        verify(line.mapToItem(day, 0, line.height).y <= day.height, "the more line ends below the cell")

        const tiny = shown({ width: 1150, height: 420 })
        compare(cell(tiny, 12).height, 92)
        const column = H.first(tiny, c => c.contentHeight !== undefined && c.parent === tiny)
        verify(column.contentHeight > column.height, "no scrolling: " + column.contentHeight)
        verify(H.texts(cell(tiny, 12), "itemTitle").length >= 1)
    }

    function test_keys_move_and_pick_the_day_and_turn_the_month() {
        const screen = shown()
        screen.grid.forceActiveFocus()
        screen.cursor = 12
        for (const [key, day] of [[Qt.Key_Space, 12], [Qt.Key_Right, 13], [Qt.Key_Up, 6], [Qt.Key_Left, 5], [Qt.Key_Down, 12]]) {
            keyClick(key)
            compare(screen.picked, day)
        }
        // Past the month's end the grid turns to the next month.
        screen.cursor = 31
        keyClick(Qt.Key_Right)
        compare([screen.calendar.title, screen.picked], ["April 2031", 1])
        for (const [key, title] of [["previousMonthKey", "March 2031"], ["nextMonthKey", "April 2031"],
                                    ["todayKey", Fmt.month(Date.now())]]) {
            mouseClick(findAll(screen, key)[0])
            compare(screen.calendar.title, title)
        }
        compare(findAll(screen, "dayCell").filter(c => c.day.today).map(c => c.day.day), [new Date().getDate()])
    }
}
