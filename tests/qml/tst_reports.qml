import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

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
        function setBudget(name: string, typed: string) {
            accounts.commitBudget(accounts.budgets.find(b => b.name === name).index, typed)
        }
        function cleanup() {
            setBudget("Groceries", "")
        }
        function tiles(screen: var): var {
            return ["incomeTile", "spendingTile", "netTile", "royaltyShareTile"].map(
                        n => H.named(H.named(screen, n), "tileValue").text)
        }
        function periodKey(screen: var, title: string): var {
            return H.first(screen, c => c.objectName === "periodKey" && c.title === title)
        }
        // The lines of a CategoryBars as "name amount percent [budget]".
        function lines(bars: var): var {
            return H.findAll(bars, c => c.objectName === "categoryLine").map(line => {
                const budget = H.named(line, "budgetText")
                return line.modelData.name + " " + H.named(line, "amountText").text + " "
                        + H.named(line, "percentText").text + (budget.visible ? " " + budget.text : "")
            })
        }
        // The period keys change the tiles and the lists; a budget is red only when
        // spending is strictly over it (the rule itself is the core's).
        function test_periodsAndBudgets() {
            const screen = createTemporaryObject(screenComponent, stage)
            waitForRendering(screen)
            verify(periodKey(screen, "This month").lit, "a new screen starts at this month")
            compare(tiles(screen), ["$0.00", "$0.00", "$0.00", "—"])
            compare(H.named(H.named(screen, "spendingBars"), "emptyNote").text, "Nothing in this period.")
            mouseClick(periodKey(screen, "This year"))
            verify(!periodKey(screen, "This month").lit)
            compare(tiles(screen), ["$2,500.00", "$2,650.00", "-$150.00", "20%"])
            const bars = H.named(screen, "spendingBars")
            compare(lines(bars), ["Rent / mortgage $1,450.00 54%", "Groceries $1,200.00 45%"])
            compare(lines(H.named(screen, "incomeBars")), ["Web design clients $2,000.00 80%", "Royalties $500.00 20%"])
            const groceries = () => H.first(bars, c => c.objectName === "categoryLine" && c.modelData.name === "Groceries")
            setBudget("Groceries", "100")
            compare(lines(bars)[1], "Groceries $1,200.00 45% budget $1,200.00", "a year is twelve months of budget")
            verify(!Qt.colorEqual(H.named(groceries(), "budgetText").color, Tokens.destructive), "exactly at the limit")
            setBudget("Groceries", "99.99")
            verify(Qt.colorEqual(H.named(groceries(), "budgetText").color, Tokens.destructive), "over the limit")
            periodKey(screen, "Last 12 months").forceActiveFocus()
            keyClick(Qt.Key_Space)
            compare(tiles(screen), ["$0.00", "$0.00", "$0.00", "—"])
        }
        function test_categoryBarsWithZeroShareStillShowABar() {
            const none = { name: "Gigs", amountText: "$0.00", share: 0, percentText: "0%", budgetText: "", over: false }
            const bars = createTemporaryObject(barsComponent, stage, { title: "Income by category", lines: [none] })
            waitForRendering(bars)
            compare(H.named(H.named(bars, "categoryLine"), "bar").width, 3)
        }
    }
}
