import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The register, the transaction sheets and the import sheet (with tests/data/bank's
// files). What saving and importing store and say, the category guesses, the filters and
// the import's counts, columns and flips are tests/bridge's and tests/core/bankfiles';
// the file dialog is a real-window journey's.
TestCase {
    id: testCase

    name: "Transactions"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    readonly property LedgerBridge ledger: LedgerBridge { store: Store }
    readonly property TransactionListModel everything: TransactionListModel { store: Store }

    function addLine(income: bool, amount: string, payee: string, category: string, hoursBefore: int) {
        verify(ledger.saveTransaction({ income: income, amount: amount, payee: payee, category: category, note: "",
                                        cleared: true, date: Date.now() - hoursBefore * 3600000,
                                        accountId: ledger.firstAccountId() }))
    }
    function init() {
        while (everything.count > 0)
            ledger.deleteTransaction(everything.idAt(0))
    }
    function findText(item: var, text: string): var {
        return H.first(item, c => c.text === text && c.visible)
    }
    // The day `days` whole days from now, as the app writes dates.
    function dayText(days: int): string {
        const d = new Date()
        d.setDate(d.getDate() + days)
        return Fmt.date(d.getTime())
    }

    // Return on the date opens only the grid; Return in the payee guesses and moves on.
    function test_aNewLineFromTheKeyboard() {
        addLine(false, "12", "Corner cafe", "Dining out", 48)
        const editor = H.make(testCase, testCase, "TxEditor {}")
        const done = H.spy(testCase, editor, "done")
        editor.sheet = CHSheet.newTx(false)
        tryVerify(() => editor.amountField.field.activeFocus)
        H.type(testCase, "4.5o")
        keyClick(Qt.Key_Return)
        compare([done.count, !!findText(editor, "Not an amount")], [0, true], "the sheet stays open and says why")
        H.retype(testCase, editor.amountField.field, "4.50")
        const date = editor.dateField
        compare(date.button.text, dayText(0), "a new line starts today")
        keyClick(Qt.Key_Tab, Qt.ShiftModifier)
        verify(date.button.activeFocus, "Shift+Tab from the amount reaches the date")
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Return)
        tryCompare(date.popup, "opened", true)
        keyClick(Qt.Key_Escape)
        tryCompare(date.popup, "visible", false)
        compare(done.count, 0, "Escape closes only the grid")
        H.retype(testCase, editor.payeeField.field, "corner CAFE")
        keyClick(Qt.Key_Return)
        compare([editor.category, editor.payeeField.field.activeFocus, done.count], ["Dining out", false, 0],
                "the category guessed, the focus moved on, nothing saved yet")
        editor.amountField.field.forceActiveFocus()
        keyClick(Qt.Key_Return)
        const saved = ledger.transaction(everything.idAt(0))
        compare([done.count, Fmt.date(saved.date), saved.payee, saved.category, saved.amount],
                [1, dayText(-1), "corner CAFE", "Dining out", "-4.5"])
    }

    function test_changingALineKeepsItsSideAndOffersDelete() {
        addLine(true, "2500", "Label Co", "Royalties", 0)
        const editor = H.make(testCase, testCase, "TxEditor {}")
        editor.sheet = CHSheet.editTx(ledger.transaction(everything.idAt(0)))
        compare([editor.amountField.text, editor.categoryPicker.box.displayText], ["2500.00", "Royalties"])
        verify(findText(editor, "From (who paid you)") && findText(editor, "Delete"))
        H.retype(testCase, editor.amountField.field, "2,450")
        keyClick(Qt.Key_Return)
        compare([everything.count, everything.get(0).amount], [1, "2450"], "changed, not added")
    }

    // Either side opens the whole transfer, and saving changes both. A new one is a journey.
    function test_aTransferAndChangingIt() {
        const editor = H.make(testCase, testCase, "TransferEditor {}", { sheet: CHSheet.transfer() })
        for (const picker of [editor.fromPicker, editor.toPicker]) {
            picker.box.forceActiveFocus()
            keyClick(Qt.Key_Down)
        }
        verify(findText(editor, "Choose two different accounts.") && !editor.canSave)
        verify(ledger.transfer(ledger.firstAccountId(), ledger.accounts[1].id, "250", Date.now(), ""))
        const sheet = CHSheet.editTx(ledger.transaction(everything.idAt(1)))
        const change = H.make(testCase, testCase, "TransferEditor {}", { sheet: sheet })
        waitForRendering(change)
        compare([sheet.kind, change.title, change.fromPicker.box.displayText, change.toPicker.box.displayText,
                 change.amountField.text], ["transfer", "Change transfer", "Main checking", "Savings", "250.00"])
        H.retype(testCase, change.amountField.field, "300")
        keyClick(Qt.Key_Return)
        compare([everything.count, everything.get(0).amount, everything.get(1).amount, Store.status],
                [2, "-300", "300", "Moved $300.00."])
    }

    function test_theRegisterLineMenuOpenAndExport() {
        addLine(false, "45.10", "Green Basket", "Groceries", 0)
        addLine(false, "1200", "Landlord", "Rent / mortgage", 1)
        const screen = H.make(testCase, testCase, "TransactionsScreen { anchors.fill: parent }")
        waitForRendering(screen)
        const opened = H.spy(testCase, screen, "openSheet")
        mouseDoubleClickSequence(screen.list.itemAtIndex(0))
        compare([opened.signalArguments[0][0].record.payee, screen.list.activeFocus], ["Green Basket", true])
        keyClick(Qt.Key_Return)
        compare(opened.count, 2)
        const pending = H.menuItem(testCase, screen.list.itemAtIndex(0), screen.menu, 0)
        compare(pending.text, "Mark as pending")
        mouseClick(pending)
        tryVerify(() => H.named(screen.list.itemAtIndex(0), "pendingBadge").visible)
        const remove = H.menuItem(testCase, screen.list.itemAtIndex(0), screen.menu, 1)
        compare(remove.text, "Delete")
        mouseClick(remove)
        waitForItemPolished(screen.list)
        compare([screen.list.count, screen.list.itemAtIndex(0).payee], [1, "Landlord"])

        mouseClick(H.named(screen, "exportKey"))
        tryCompare(screen.exportDialog, "visible", true)
        verify(decodeURIComponent(String(screen.exportDialog.selectedFile)).endsWith("/Coinhall transactions.csv"))
        screen.exportDialog.reject()
        screen.exportDialog.selectedFile = "file://" + Store.dir + "/no such folder/out.csv"
        screen.exportDialog.accepted()
        verify(Store.status.startsWith("Could not save: "), Store.status)
    }

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

    function test_previewFollowsTheFileAndTheColumns() {
        const sheet = openSheet(0)
        compare([H.named(sheet, "fileName").text, H.named(sheet, "previewTitle").visible, importKey(sheet).enabled,
                 H.named(sheet, "accountPicker").box.displayText], ["No file chosen", false, false, "Main checking"])
        sheet.chooseFile(bankFile("harbor_checking.csv"))
        compare([H.named(sheet, "fileName").text, H.named(sheet, "previewTitle").text, importKey(sheet).title,
                 importKey(sheet).enabled], ["harbor_checking.csv", "Preview · 15 new · 0 already in · 2 unreadable",
                                             "Import 15", true])
        const list = H.named(sheet, "previewList")
        const line = i => (list.positionViewAtIndex(i, ListView.Contain),
                           H.findAll(list.itemAtIndex(i), c => c.text !== undefined).map(t => t.text).join(" "))
        compare([list.count, line(0), line(1)], [15, "Jan 31 PAYROLL ACME ROOFING INC Paycheck +$2,150.00",
                                                  "Jan 30 SAFEWAY #1432 PORTLAND OR Groceries -$86.41"])
        // A column changed by keyboard changes the preview at once.
        const amount = H.first(sheet, c => c.objectName === "columnPicker" && c.label === "Amount")
        amount.box.forceActiveFocus()
        for (let i = 0; i < 4; ++i)
            keyClick(Qt.Key_Up)
        compare([amount.currentText, H.named(sheet, "previewTitle").text, importKey(sheet).enabled],
                ["—", "Preview · 0 new · 0 already in · 17 unreadable", false])
        // So does how the text is read: semicolons leave one column of whole rows.
        const separator = H.named(sheet, "separatorPicker")
        separator.box.forceActiveFocus()
        keyClick(Qt.Key_Down)
        compare([separator.currentText, H.named(sheet, "fileSummary").text, H.named(sheet, "columnPickers").model.length],
                ["Semicolons", "CSV · UTF-8 · separated by ; · decimal point", 6])
        compare(amount.box.count, 2, "the pickers offer the one column left")
        // A file that cannot be read (which ones: tests/core/bankfiles) drops the earlier one and says so.
        const message = H.named(sheet, "message")
        sheet.chooseFile(bankFile("no_such_download.csv"))
        compare([message.visible, message.text, H.named(sheet, "columnPickers").visible && H.named(sheet, "readingPickers").visible,
                 H.named(sheet, "previewTitle").visible,
                 importKey(sheet).title, importKey(sheet).enabled],
                [true, "Coinhall can't read no_such_download.csv: it could not be opened (No such file or directory).", false,
                 false, "Import 0", false])
        sheet.chooseFile(bankFile("thistle_uk.csv"))
        compare([message.visible, H.named(sheet, "previewTitle").visible], [false, true], "a good file clears the message")
    }

    // Several files at once, each after the ones before it: the same download twice adds nothing more.
    // They come with the sheet case, as when dropped on the window.
    function test_severalFilesAtOnce() {
        const host = H.make(testCase, testCase, "SheetHost { anchors.fill: parent }")
        host.sheet = CHSheet.importCSV([bankFile("harbor_checking.csv"), bankFile("harbor_checking.csv"),
                                        bankFile("thistle_uk.csv")])
        tryVerify(() => host.view !== null)
        const sheet = host.view
        const reading = " · CSV · UTF-8 · separated by , · decimal point · "
        compare([H.named(sheet, "fileName").text, H.texts(sheet, "fileLine"), importKey(sheet).title],
                ["3 files", ["harbor_checking.csv" + reading + "15 new · 0 already in · 2 unreadable",
                             "harbor_checking.csv" + reading + "0 new · 15 already in · 2 unreadable",
                             "thistle_uk.csv" + reading + "dates day first · 9 new · 0 already in · 1 unreadable"],
                 "Import 24"])
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
