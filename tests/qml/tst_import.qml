import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The import sheet with tests/data/bank's files. Counts, columns, flips and status texts
// are tests/bridge's and tests/core/bankfiles', the file dialog a journey's.
TestCase {
    id: testCase

    name: "Import"
    width: 760
    height: 720
    visible: true
    when: windowShown

    function bankFile(name: string): url {
        return Qt.resolvedUrl("../data/bank/" + name)
    }
    function importKey(sheet: var): var {
        return H.first(sheet, c => c.visible && typeof c.clicked === "function" && String(c.title).startsWith("Import"))
    }
    // The sheet, the file key with the focus first, its account chosen by `downs` presses of Down.
    function openSheet(downs: int): var {
        const sheet = H.make(testCase, testCase, "ImportSheet {}", { sheet: CHSheet.importCSV() })
        sheet.forceActiveFocus()
        tryVerify(() => H.named(sheet, "chooseFileKey").activeFocus, 1000, "the file key has the focus first")
        H.named(sheet, "accountPicker").box.forceActiveFocus()
        for (let i = 0; i < downs; ++i)
            keyClick(Qt.Key_Down)
        return sheet
    }
    function message(sheet: var): string {
        return H.named(sheet, "message").visible ? H.named(sheet, "message").text : ""
    }

    function test_previewFollowsTheFileAndTheColumns() {
        const sheet = openSheet(0)
        compare([H.named(sheet, "fileName").text, H.named(sheet, "previewTitle").visible, importKey(sheet).enabled,
                 H.named(sheet, "accountPicker").box.displayText], ["No file chosen", false, false, "Main checking"])
        sheet.chooseFile(bankFile("harbor_checking.csv"))
        compare([H.named(sheet, "fileName").text, H.named(sheet, "previewTitle").text, importKey(sheet).title,
                 importKey(sheet).enabled], ["harbor_checking.csv", "Preview · 14 new · 1 already in · 2 unreadable",
                                             "Import 14", true])
        const list = H.named(sheet, "previewList")
        const lines = []
        for (let i = 0; i < list.count; ++i) {
            list.positionViewAtIndex(i, ListView.Contain)
            lines.push(H.findAll(list.itemAtIndex(i), c => c.text !== undefined).map(t => t.text).join(" "))
        }
        compare(lines.length, 14)
        compare(lines.slice(0, 2), ["Jan 31 PAYROLL ACME ROOFING INC Paycheck +$2,150.00",
                                    "Jan 30 SAFEWAY #1432 PORTLAND OR Groceries -$86.41"])
        // A column changed by keyboard changes the preview at once.
        const amount = H.first(sheet, c => c.objectName === "columnPicker" && c.label === "Amount")
        amount.box.forceActiveFocus()
        for (let i = 0; i < 4; ++i)
            keyClick(Qt.Key_Up)
        compare([amount.currentText, H.named(sheet, "previewTitle").text, importKey(sheet).enabled],
                ["—", "Preview · 0 new · 0 already in · 17 unreadable", false])
        // A file that cannot be read, or a folder, drops the earlier one and says so.
        for (const bad of ["no_such_download.csv", ""]) {
            sheet.chooseFile(bankFile(bad))
            compare(message(sheet), "That file couldn't be read as a bank CSV.")
            verify(!H.named(sheet, "columnPickers").visible && !H.named(sheet, "previewTitle").visible)
            compare([importKey(sheet).title, importKey(sheet).enabled], ["Import 0", false])
        }
        sheet.chooseFile(bankFile("thistle_uk.csv"))
        compare([message(sheet), H.named(sheet, "previewTitle").visible], ["", true], "a good file clears the message")
    }

    function test_importThenTheSameFileAgainOffersNothing() {
        for (const [expected, closes] of [["Preview · 7 new · 0 already in · 1 unreadable", 1],
                                          ["Preview · 0 new · 7 already in · 1 unreadable", 0]]) {
            const sheet = openSheet(1)
            const done = H.spy(testCase, sheet, "done")
            compare(H.named(sheet, "accountPicker").box.displayText, "Savings")
            sheet.chooseFile(bankFile("riverbend_savings.csv"))
            compare(H.named(sheet, "previewTitle").text, expected)
            // Return on a closed column list is the sheet's.
            H.first(sheet, c => c.objectName === "columnPicker").box.forceActiveFocus()
            keyClick(Qt.Key_Return)
            compare(done.count, closes, closes ? "Return imports" : "Return imports nothing at zero")
        }
    }
}
