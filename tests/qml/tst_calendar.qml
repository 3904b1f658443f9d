import QtQuick
import QtTest
import Coinhall

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
            let found = []
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i]
                if (child.objectName === name)
                    found.push(child)
                found = found.concat(findAll(child, name))
            }
            return found
        }

        function cell(screen: var, day: int): var {
            return findAll(screen, "dayCell").find(c => c.day.day === day)
        }

        function texts(item: var, name: string): var {
            return findAll(item, name).filter(t => t.visible).map(t => t.text)
        }

        function shown(component: var, month: int): var {
            const screen = createTemporaryObject(component, stage)
            screen.calendar.showMonthOf(at(month, 1, 12))
            waitForRendering(screen)
            return screen
        }

        function test_grid_starts_on_the_locales_first_weekday() {
            // US weeks start on Sunday: March 2031 begins on the Saturday after six blanks.
            const screen = shown(screenComponent, 3)
            compare(findAll(screen, "blankCell").length, 6)
            compare(findAll(screen, "dayCell").length, 31)
            compare(texts(screen, "weekdayName"), ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"])
            // The 1st stands under "Sat", and the 2nd starts the next row under "Sun".
            const names = findAll(screen, "weekdayName")
            const column = (item) => Math.round(item.mapToItem(screen, item.width / 2, 0).x)
            const first = cell(screen, 1)
            const second = cell(screen, 2)
            verify(Math.abs(column(first) - column(names[6])) < first.width / 2,
                   "the 1st at " + column(first) + ", Sat at " + column(names[6]))
            verify(Math.abs(column(second) - column(names[0])) < second.width / 2)
            verify(second.y > first.y)
        }

        function test_a_full_day_lists_four_items_and_the_rest_on_hover_and_pick() {
            const screen = shown(screenComponent, 3)
            const day = cell(screen, 12)
            compare(texts(day, "itemTitle"), ["Rent", "Phone", "BMI", "ASCAP"])
            compare(texts(day, "itemAmount"), ["$1,200.00", "$65.50", "$80.00", "$20.00"])
            compare(texts(day, "moreText"), ["+2 more"])
            compare(day.help, "Rent: $1,200.00\nPhone: $65.50\nBMI: $80.00\nASCAP: $20.00\n"
                    + "Money in: $500.00\nMoney out: -$30.00")
            const chips = findAll(day, "cellItem")
            compare(chips[0].tone, Looks.current.video)
            compare(chips[2].tone, Qt.color("#60A5FA"))

            const panel = findAll(screen, "pickedPanel")[0]
            compare(findAll(panel, "pickedItem").length, 0)
            mouseClick(day)
            compare(screen.picked, 12)
            compare(texts(panel, "itemTitle"), ["Rent", "Phone", "BMI", "ASCAP", "Money in", "Money out"])
            compare(texts(panel, "itemAmount")[5], "$30.00")
            const pickedChips = findAll(panel, "pickedItem")
            compare(pickedChips[4].tone, Tokens.positive)
            compare(pickedChips[5].tone, Qt.color("#9CA3AF"))
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
            const titles = texts(day, "itemTitle")
            const more = texts(day, "moreText")
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
            verify(texts(cell(tiny, 12), "itemTitle").length >= 1)
        }

        function test_month_keys_and_today() {
            const screen = shown(screenComponent, 1)
            const title = findAll(screen, "monthTitle")[0]
            compare(title.text, "January 2031")
            mouseClick(findAll(screen, "previousMonthKey")[0])
            compare(title.text, "December 2030")
            mouseClick(findAll(screen, "nextMonthKey")[0])
            mouseClick(findAll(screen, "nextMonthKey")[0])
            compare(title.text, "February 2031")
            mouseClick(findAll(screen, "todayKey")[0])
            compare(title.text, Fmt.month(Date.now()))
            const today = findAll(screen, "dayCell").filter(c => c.day.today)
            compare(today.length, 1)
            compare(today[0].day.day, new Date().getDate())
        }

        function test_keyboard_moves_and_picks_the_day() {
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
            compare(screen.calendar.title, "April 2031")
            compare(screen.picked, 1)
        }
    }
}
