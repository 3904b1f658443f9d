import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The Reports screen on lines of 2099, which only "This year" counts. Figures and the
// budget rule are tests/bridge's and tests/core/store's, periods by mouse a journey's.
TestCase {
    id: testCase

    name: "Reports"
    width: 1100
    height: 1000
    visible: true
    when: windowShown

    function initTestCase() {
        const importer = H.make(testCase, testCase, "ImportBridge { store: Store }")
        importer.open(Qt.resolvedUrl("data/reports_2099.csv"))
        compare(importer.importNow(), 5)
    }
    // The lines of a CategoryBars as "name amount percent [budget]".
    function lines(bars: var): var {
        return H.findAll(bars, c => c.objectName === "categoryLine").map(line => {
            const budget = H.named(line, "budgetText")
            return [line.modelData.name, H.named(line, "amountText").text, H.named(line, "percentText").text]
                    .concat(budget.visible ? [budget.text] : []).join(" ")
        })
    }

    // A period key works from the keyboard; a budget shows, red when over.
    function test_periodsAndBudgets() {
        const accounts = H.make(testCase, testCase, "AccountsBridge { store: Store }")
        accounts.commitBudget(accounts.budgets.find(b => b.name === "Groceries").index, "99.99")
        const screen = H.make(testCase, testCase, "ReportsScreen { anchors.fill: parent }")
        waitForRendering(screen)
        const tiles = () => ["incomeTile", "spendingTile", "netTile", "royaltyShareTile"].map(
                          n => H.named(H.named(screen, n), "tileValue").text)
        const key = title => H.first(screen, c => c.objectName === "periodKey" && c.title === title)
        verify(key("This month").lit, "a new screen starts at this month")
        compare(tiles(), ["$0.00", "$0.00", "$0.00", "—"])
        compare(H.named(H.named(screen, "spendingBars"), "emptyNote").text, "Nothing in this period.")
        key("This year").forceActiveFocus()
        keyClick(Qt.Key_Space)
        verify(key("This year").lit && !key("This month").lit)
        compare(tiles(), ["$2,500.00", "$2,650.00", "-$150.00", "20%"])
        const bars = H.named(screen, "spendingBars")
        compare(lines(bars), ["Rent / mortgage $1,450.00 54%", "Groceries $1,200.00 45% budget $1,199.88"])
        compare(lines(H.named(screen, "incomeBars")), ["Web design clients $2,000.00 80%", "Royalties $500.00 20%"])
        const over = H.named(H.findAll(bars, c => c.objectName === "categoryLine")[1], "budgetText")
        verify(Qt.colorEqual(over.color, Tokens.destructive), "over the budget")
        accounts.commitBudget(accounts.budgets.find(b => b.name === "Groceries").index, "")
        compare(lines(bars)[1], "Groceries $1,200.00 45%", "no budget, no budget text")
    }
    // A category with no share still shows a sliver of bar.
    function test_categoryBarsWithZeroShareStillShowABar() {
        const none = { name: "Gigs", amountText: "$0.00", share: 0, percentText: "0%", budgetText: "", over: false }
        const bars = H.make(testCase, testCase, "CategoryBars { width: 400 }", { title: "Income", lines: [none] })
        waitForRendering(bars)
        compare(H.named(H.named(bars, "categoryLine"), "bar").width, 3)
    }
}
