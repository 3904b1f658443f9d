import QtQuick
import QtTest
import Coinhall

// The Reports screen as a user reads it: the period picker changes the tiles and
// the category lists, and a budget turns red only when spending is strictly over
// it. The lines are dated in 2099, so only "This year" (no upper end) counts them.
Item {
    id: stage

    width: 1100
    height: 1000

    Component {
        id: screenComponent

        ReportsScreen {
            anchors.fill: parent
        }
    }

    Component {
        id: barsComponent

        CategoryBars {
            width: 400
        }
    }

    Component {
        id: importerComponent

        ImportBridge {
            store: Store
        }
    }

    Component {
        id: accountsComponent

        AccountsBridge {
            store: Store
        }
    }

    TestCase {
        id: testCase

        name: "Reports"
        when: windowShown

        property var accounts

        function initTestCase() {
            const importer = createTemporaryObject(importerComponent, stage)
            importer.open(Qt.resolvedUrl("data/reports_2099.csv"))
            compare(importer.importNow(), 5)
            // Kept for the whole file: temporary objects end with their test function.
            accounts = accountsComponent.createObject(stage)
        }

        function cleanup() {
            setBudget("Groceries", "")
        }

        function setBudget(name: string, typed: string) {
            const entry = accounts.budgets.find(b => b.name === name)
            accounts.commitBudget(entry.index, typed)
        }

        function findAll(item: var, test: var): var {
            let found = []
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i]
                if (test(child))
                    found.push(child)
                found = found.concat(findAll(child, test))
            }
            return found
        }

        function named(item: var, objectName: string): var {
            return findAll(item, c => c.objectName === objectName)[0]
        }

        function tiles(screen: var): var {
            return ["incomeTile", "spendingTile", "netTile", "royaltyShareTile"].map(
                        n => named(named(screen, n), "tileValue").text)
        }

        function periodKey(screen: var, title: string): var {
            return findAll(screen, c => c.objectName === "periodKey" && c.title === title)[0]
        }

        // The lines of a CategoryBars as "name amount percent [budget]".
        function lines(bars: var): var {
            return findAll(bars, c => c.objectName === "categoryLine").map(line => {
                const budget = named(line, "budgetText")
                return line.modelData.name + " " + named(line, "amountText").text + " " + named(line, "percentText").text
                        + (budget.visible ? " " + budget.text : "")
            })
        }

        function openScreen(): var {
            const screen = createTemporaryObject(screenComponent, stage)
            waitForRendering(screen)
            return screen
        }

        function test_periodPickerChangesTheTiles() {
            const screen = openScreen()
            compare(findAll(screen, c => c.objectName === "periodKey").map(k => k.title),
                    ["This month", "Last month", "This year", "Last 12 months", "Last year"])
            verify(periodKey(screen, "This month").lit, "a new screen starts at this month")
            compare(tiles(screen), ["$0.00", "$0.00", "$0.00", "—"])
            verify(named(named(screen, "spendingBars"), "emptyNote").visible)
            compare(named(named(screen, "spendingBars"), "emptyNote").text, "Nothing in this period.")

            mouseClick(periodKey(screen, "This year"))
            verify(periodKey(screen, "This year").lit)
            verify(!periodKey(screen, "This month").lit)
            compare(tiles(screen), ["$2,500.00", "$2,650.00", "-$150.00", "20%"])
            compare(lines(named(screen, "spendingBars")),
                    ["Rent / mortgage $1,450.00 54%", "Groceries $1,200.00 45%"])
            compare(lines(named(screen, "incomeBars")), ["Web design clients $2,000.00 80%", "Royalties $500.00 20%"])
            verify(!named(named(screen, "incomeBars"), "emptyNote").visible)

            periodKey(screen, "Last 12 months").forceActiveFocus()
            keyClick(Qt.Key_Space)
            compare(tiles(screen), ["$0.00", "$0.00", "$0.00", "—"])

            const again = openScreen()
            compare(tiles(again), ["$0.00", "$0.00", "$0.00", "—"], "the period is not kept")
        }

        function test_overBudgetIsRedOnlyAboveTheLimit() {
            const screen = openScreen()
            mouseClick(periodKey(screen, "This year"))
            const bars = named(screen, "spendingBars")
            const groceries = () => findAll(bars, c => c.objectName === "categoryLine" && c.modelData.name === "Groceries")[0]

            setBudget("Groceries", "100")
            compare(lines(bars)[1], "Groceries $1,200.00 45% budget $1,200.00", "a year is twelve months of budget")
            verify(!Qt.colorEqual(named(groceries(), "budgetText").color, Tokens.destructive), "exactly at the limit")

            setBudget("Groceries", "99.99")
            compare(lines(bars)[1], "Groceries $1,200.00 45% budget $1,199.88")
            verify(Qt.colorEqual(named(groceries(), "budgetText").color, Tokens.destructive), "over the limit")
            verify(!named(findAll(bars, c => c.objectName === "categoryLine")[0], "budgetText").visible,
                   "rent has no budget")
            compare(lines(named(screen, "incomeBars"))[0], "Web design clients $2,000.00 80%", "income has no budgets")
        }

        function test_categoryBarsWithZeroShareStillShowABar() {
            const none = { name: "Gigs", amountText: "$0.00", share: 0, percentText: "0%", budgetText: "", over: false }
            const bars = createTemporaryObject(barsComponent, stage, { title: "Income by category", lines: [none, none] })
            waitForRendering(bars)
            const drawn = findAll(bars, c => c.objectName === "categoryLine")
            compare(drawn.length, 2)
            for (const line of drawn) {
                compare(named(line, "bar").width, 3)
                verify(!named(line, "budgetText").visible)
            }
        }
    }
}
