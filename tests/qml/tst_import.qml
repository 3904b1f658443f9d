import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The import sheet as a user works it: choose a bank file, read the preview and its
// counts, correct a column, flip the signs, import, and see the same file again
// offer nothing new. Files come from tests/data/bank.
Item {
    id: stage

    width: 760
    height: 720

    Component {
        id: sheetComponent

        ImportSheet {}
    }

    Component {
        id: spyComponent

        SignalSpy {}
    }

    TestCase {
        id: testCase

        name: "Import"
        when: windowShown

        function bankFile(name: string): url {
            return Qt.resolvedUrl("../data/bank/" + name)
        }

        function spyOn(target: var, signalName: string): var {
            return createTemporaryObject(spyComponent, stage, { target: target, signalName: signalName })
        }

        function importKey(sheet: var): var {
            return H.findAll(sheet, c => c.Accessible.role === Accessible.Button && c.title.startsWith("Import"))[0]
        }

        function picker(sheet: var, label: string): var {
            return H.findAll(sheet, c => c.objectName === "columnPicker" && c.label === label)[0]
        }

        // The preview lines as shown, scrolling through the list: "date payee category amount".
        function previewLines(sheet: var): var {
            const list = H.named(sheet, "previewList")
            const texts = []
            for (let i = 0; i < list.count; ++i) {
                list.positionViewAtIndex(i, ListView.Contain)
                const row = list.itemAtIndex(i)
                verify(row, "line " + i + " is drawn")
                texts.push(H.findAll(row, c => c.text !== undefined).map(t => t.text).join(" "))
            }
            list.positionViewAtBeginning()
            return texts
        }

        function openSheet(): var {
            const sheet = createTemporaryObject(sheetComponent, stage, { sheet: CHSheet.importCSV() })
            sheet.forceActiveFocus()
            const chooseKey = H.named(sheet, "chooseFileKey")
            tryVerify(() => chooseKey.activeFocus, 1000, "the file key has the focus first")
            return sheet
        }

        function test_previewFollowsTheFileAndTheColumns() {
            const sheet = openSheet()
            compare(H.named(sheet, "fileName").text, "No file chosen")
            verify(!H.named(sheet, "previewTitle").visible)
            verify(!importKey(sheet).enabled)
            compare(H.named(sheet, "accountPicker").box.displayText, "Main checking")
            sheet.chooseFile(bankFile("harbor_checking.csv"))
            compare(H.named(sheet, "fileName").text, "harbor_checking.csv")
            verify(H.named(sheet, "columnPickers").visible)
            compare(H.named(sheet, "previewTitle").text, "Preview · 14 new · 1 already in · 2 unreadable")
            compare(importKey(sheet).title, "Import 14")
            verify(importKey(sheet).enabled)
            const lines = previewLines(sheet)
            compare(lines.length, 14)
            compare(lines[0], "Jan 31 PAYROLL ACME ROOFING INC Paycheck +$2,150.00")
            compare(lines[1], "Jan 30 SAFEWAY #1432 PORTLAND OR Groceries -$86.41")

            // A column changed by keyboard changes the preview at once.
            const amount = picker(sheet, "Amount")
            amount.box.forceActiveFocus()
            for (let i = 0; i < 4; ++i)
                keyClick(Qt.Key_Up)
            compare(amount.currentText, "—")
            compare(H.named(sheet, "previewTitle").text, "Preview · 0 new · 0 already in · 17 unreadable")
            verify(!importKey(sheet).enabled, "nothing to import at zero")
            // A file that cannot be read drops the earlier one and says so.
            sheet.chooseFile(bankFile("no_such_download.csv"))
            verify(H.named(sheet, "message").visible)
            compare(H.named(sheet, "message").text, "That file couldn't be read as a bank CSV.")
            verify(!H.named(sheet, "columnPickers").visible, "the earlier file is dropped")
            verify(!H.named(sheet, "previewTitle").visible)
            compare(importKey(sheet).title, "Import 0")
            verify(!importKey(sheet).enabled)

            sheet.chooseFile(Qt.resolvedUrl("../data/bank/"))
            compare(H.named(sheet, "message").text, "That file couldn't be read as a bank CSV.", "a folder is no file")

            sheet.chooseFile(bankFile("thistle_uk.csv"))
            verify(!H.named(sheet, "message").visible, "a good file clears the message")
            compare(H.named(sheet, "previewTitle").text, "Preview · 9 new · 0 already in · 1 unreadable")
        }

        function test_importThenTheSameFileAgainOffersNothing() {
            const sheet = openSheet()
            const done = spyOn(sheet, "done")
            const accountBox = H.named(sheet, "accountPicker").box
            accountBox.forceActiveFocus()
            keyClick(Qt.Key_Down)
            compare(accountBox.displayText, "Savings")
            sheet.chooseFile(bankFile("riverbend_savings.csv"))
            waitForRendering(sheet)
            compare(importKey(sheet).title, "Import 7")

            mouseClick(importKey(sheet))
            compare(Store.status, "Imported 7 transactions from riverbend_savings.csv.")
            compare(done.count, 1)

            const again = openSheet()
            H.named(again, "accountPicker").box.forceActiveFocus()
            keyClick(Qt.Key_Down)
            again.chooseFile(bankFile("riverbend_savings.csv"))
            compare(H.named(again, "previewTitle").text, "Preview · 0 new · 7 already in · 1 unreadable")
            compare(importKey(again).title, "Import 0")
            verify(!importKey(again).enabled)
            keyClick(Qt.Key_Return)
            compare(Store.status, "Imported 7 transactions from riverbend_savings.csv.", "Return imports nothing at zero")
        }
    }
}
