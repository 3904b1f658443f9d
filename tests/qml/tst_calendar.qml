import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The calendar as a user reads and drives it. The Book gets, on March 12, 2031, two
// bills, two royalties, money in and money out (six items), and a transfer on March 20.
Item {
    id: stage

    width: 1300
    height: 1100

    Component {
        id: screenComponent

        CalendarScreen {
            anchors.fill: parent
        }
    }

    // The screen's share of a 1380 by 900 window, and of a much shorter one.
    Component {
        id: shortScreenComponent

        CalendarScreen {
            width: 1150
            height: 730
        }
    }

    Component {
        id: tinyScreenComponent

        CalendarScreen {
            width: 1150
            height: 420
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

    TestCase {
        id: testCase

        name: "Calendar"
        when: windowShown

        function at(month: int, day: int, hour: int): real {
            return new Date(2031, month - 1, day, hour, 0, 0).getTime()
        }

        function initTestCase() {
            const ledger = ledgerComponent.createObject(stage)
            const bills = billsComponent.createObject(stage)
            const royalties = royaltiesComponent.createObject(stage)
            const checking = ledger.firstAccountId()
            const savings = ledger.accounts[1].id
            for (const [name, amount, repeats] of [["Rent", "1200", "One time"], ["Phone", "65.5", "Monthly"]]) {
                const bill = bills.newBill()
                bill.name = name
                bill.amount = amount
                bill.due = at(3, 12, 9)
                bill.repeats = repeats
                verify(bills.saveBill(bill))
            }
            for (const [payer, amount, hour] of [["BMI", "80", 10], ["ASCAP", "20", 11]]) {
                verify(royalties.saveRoyalty(Object.assign({}, royalties.newRoyalty(),
                                                            { payer: payer, amount: amount,
                                                              expectedDate: at(3, 12, hour) })))
            }
            for (const [income, amount, payee] of [[true, "500", "The Blue Room"], [false, "30", "Corner cafe"]]) {
                verify(ledger.saveTransaction({ id: "", income: income, date: at(3, 12, 14), amount: amount,
                                                payee: payee, category: "Other", accountId: checking, note: "",
                                                cleared: true }))
            }
            verify(ledger.transfer(checking, savings, "25", at(3, 20, 9), "To savings"))
            ledger.destroy()
            bills.destroy()
            royalties.destroy()
        }

        function findAll(item: var, name: string): var {
            return H.findAll(item, c => c.objectName === name)
        }

        function cell(screen: var, day: int): var {
            return findAll(screen, "dayCell").find(c => c.day.day === day)
        }

        function shown(component: var, month: int): var {
            const screen = createTemporaryObject(component, stage)
            screen.calendar.showMonthOf(at(month, 1, 12))
            waitForRendering(screen)
            return screen
        }

        // US weeks start on Sunday: March 2031 begins on the Saturday after six blanks. A
        // full day lists four items, and the rest on hover and when picked.
        function test_a_full_day_lists_four_items_and_the_rest_on_hover_and_pick() {
            const screen = shown(screenComponent, 3)
            compare(findAll(screen, "blankCell").length, 6)
            const names = findAll(screen, "weekdayName")
            compare(names.map(n => n.text), ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"])
            const column = item => Math.round(item.mapToItem(screen, item.width / 2, 0).x)
            verify(Math.abs(column(cell(screen, 1)) - column(names[6])) < cell(screen, 1).width / 2)
            verify(Math.abs(column(cell(screen, 2)) - column(names[0])) < cell(screen, 2).width / 2)
            const day = cell(screen, 12)
            compare(H.texts(day, "itemTitle"), ["Rent", "Phone", "BMI", "ASCAP"])
            compare(H.texts(day, "itemAmount"), ["$1,200.00", "$65.50", "$80.00", "$20.00"])
            compare(H.texts(day, "moreText"), ["+2 more"])
            compare(day.help, "Rent: $1,200.00\nPhone: $65.50\nBMI: $80.00\nASCAP: $20.00\n"
                    + "Money in: $500.00\nMoney out: -$30.00")

            const panel = findAll(screen, "pickedPanel")[0]
            mouseClick(day)
            compare(screen.picked, 12)
            compare(H.texts(panel, "itemTitle"), ["Rent", "Phone", "BMI", "ASCAP", "Money in", "Money out"])
            compare(H.texts(panel, "itemAmount")[5], "$30.00")
        }

        // A six-week month fits a window of ordinary height: the cells give up item
        // lines (never below 92 high), and "+<n> more" counts what they no longer list.
        function test_six_weeks_fit_a_short_window() {
            const screen = shown(shortScreenComponent, 3)
            const last = cell(screen, 31)
            const bottom = last.mapToItem(screen, 0, last.height).y
            verify(bottom <= screen.height, "the last week ends at " + bottom + " of " + screen.height)
            verify(last.height >= 92)

            const day = cell(screen, 12)
            const titles = H.texts(day, "itemTitle")
            const more = H.texts(day, "moreText")
            verify(titles.length < 4, "lists " + titles)
            compare(more, ["+" + (6 - titles.length) + " more"])
            compare(titles, ["Rent", "Phone", "BMI", "ASCAP"].slice(0, titles.length))
            // Every line it lists lies inside the cell.
            const line = findAll(day, "moreText")[0]
            verify(line.mapToItem(day, 0, line.height).y <= day.height, "the more line ends below the cell")

            // Shorter still, the cells keep their least height and the screen scrolls.
            const tiny = shown(tinyScreenComponent, 3)
            compare(cell(tiny, 12).height, 92)
            let column = null
            for (let i = 0; i < tiny.children.length; ++i) {
                if (tiny.children[i].contentHeight !== undefined)
                    column = tiny.children[i]
            }
            verify(column.contentHeight > column.height, "no scrolling: " + column.contentHeight)
            verify(H.texts(cell(tiny, 12), "itemTitle").length >= 1)
        }

        function test_keys_move_and_pick_the_day_and_turn_the_month() {
            const screen = shown(screenComponent, 3)
            screen.grid.forceActiveFocus()
            screen.cursor = 12
            keyClick(Qt.Key_Space)
            compare(screen.picked, 12)
            keyClick(Qt.Key_Right)
            compare(screen.picked, 13)
            keyClick(Qt.Key_Up)
            compare(screen.picked, 6)
            keyClick(Qt.Key_Left)
            keyClick(Qt.Key_Down)
            compare(screen.picked, 12)
            compare(findAll(findAll(screen, "pickedPanel")[0], "pickedItem").length, 6)
            // Past the month's end the grid turns to the next month.
            screen.cursor = 31
            keyClick(Qt.Key_Right)
            compare([screen.calendar.title, screen.picked], ["April 2031", 1])
            // The month keys, and Today back to this month with today marked.
            mouseClick(findAll(screen, "previousMonthKey")[0])
            compare(screen.calendar.title, "March 2031")
            mouseClick(findAll(screen, "nextMonthKey")[0])
            compare(screen.calendar.title, "April 2031")
            mouseClick(findAll(screen, "todayKey")[0])
            compare(screen.calendar.title, Fmt.month(Date.now()))
            compare(findAll(screen, "dayCell").filter(c => c.day.today).map(c => c.day.day), [new Date().getDate()])
        }
    }
}
