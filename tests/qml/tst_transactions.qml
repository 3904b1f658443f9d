import QtQuick
import QtTest
import Coinhall

// The register and the transaction sheets, used as a user does: typing into the
// filters, logging money in and out, moving money, the line menu and the export.
Item {
    id: stage

    width: 1380
    height: 900

    LedgerBridge {
        id: ledger

        store: Store
    }

    TransactionListModel {
        id: everything

        store: Store
    }

    Component {
        id: screenComponent

        TransactionsScreen {
            anchors.fill: parent
        }
    }

    Component {
        id: rootComponent

        RootView {
            anchors.fill: parent
        }
    }

    Component {
        id: txEditorComponent

        TxEditor {}
    }

    Component {
        id: transferComponent

        TransferEditor {}
    }

    Component {
        id: spyComponent

        SignalSpy {}
    }

    TestCase {
        id: testCase

        name: "Transactions"
        when: windowShown

        function accountId(name: string): string {
            return ledger.accounts.find(a => a.name === name).id
        }

        // A line `hoursBefore` hours before noon on the 15th of this month, so that the
        // order and the month are the same whatever day the test runs.
        function addLine(income: bool, amount: string, payee: string, category: string, hoursBefore: int) {
            const base = new Date()
            base.setDate(15)
            base.setHours(12, 0, 0, 0)
            verify(ledger.saveTransaction({
                income: income, amount: amount, payee: payee, category: category, note: "", cleared: true,
                date: base.getTime() - hoursBefore * 3600000, accountId: accountId("Main checking")
            }))
        }

        function init() {
            while (everything.count > 0)
                ledger.deleteTransaction(everything.idAt(0))
            Store.status = ""
        }

        function spyOn(target: var, signalName: string): var {
            return createTemporaryObject(spyComponent, stage, { target: target, signalName: signalName })
        }

        function find(item: var, test: var): var {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i]
                if (test(child))
                    return child
                const found = find(child, test)
                if (found)
                    return found
            }
            return null
        }

        function findText(item: var, text: string): var {
            return find(item, c => c.text === text && c.visible)
        }

        function type(text: string) {
            for (const c of text)
                keyClick(c)
        }

        function clearField(field: var) {
            field.forceActiveFocus()
            field.selectAll()
            keyClick(Qt.Key_Backspace)
        }

        function payees(screen: var): var {
            const names = []
            for (let i = 0; i < screen.lines.count; ++i)
                names.push(screen.lines.get(i).payee)
            return names
        }

        // The payees of the rows the list shows, once it has laid out its latest changes.
        function shownPayees(screen: var): var {
            waitForItemPolished(screen.list)
            const names = []
            for (let i = 0; i < screen.list.count; ++i) {
                const row = screen.list.itemAtIndex(i)
                if (row)
                    names.push(row.payee)
            }
            return names
        }

        // The row the list shows for the line with this payee.
        function rowOf(screen: var, payee: string): var {
            waitForItemPolished(screen.list)
            for (let i = 0; i < screen.list.count; ++i) {
                const row = screen.list.itemAtIndex(i)
                if (row && row.payee === payee)
                    return row
            }
            return null
        }

        function openScreen(): var {
            const screen = createTemporaryObject(screenComponent, stage)
            waitForRendering(screen)
            return screen
        }

        function test_filtersNarrowTheListAsTheUserTypes() {
            addLine(false, "1200", "Landlord", "Rent / mortgage", 0)
            addLine(false, "45.10", "Green Basket", "Groceries", 1)
            addLine(true, "2500", "Label Co", "Royalties", 2)
            addLine(false, "9.99", "Parent's gift shop", "Shopping", 40 * 24)
            const screen = openScreen()
            compare(shownPayees(screen), ["Landlord", "Green Basket", "Label Co", "Parent's gift shop"])

            mouseClick(screen.searchField)
            type("re")
            compare(shownPayees(screen), ["Landlord", "Green Basket", "Parent's gift shop"])
            type("nt")
            compare(shownPayees(screen), ["Landlord", "Parent's gift shop"], "found by category and by payee")

            clearField(screen.searchField)
            type("RENT")
            compare(shownPayees(screen), ["Landlord", "Parent's gift shop"])

            mouseClick(screen.monthToggle)
            compare(shownPayees(screen), ["Landlord"], "only this month")
            clearField(screen.searchField)
            compare(shownPayees(screen), ["Landlord", "Green Basket", "Label Co"])

            mouseClick(findText(screen.flowPicker, "Money in"))
            compare(shownPayees(screen), ["Label Co"])
            mouseClick(findText(screen.flowPicker, "Money out"))
            compare(shownPayees(screen), ["Landlord", "Green Basket"])

            screen.accountPicker.forceActiveFocus()
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            compare(screen.accountPicker.displayText, "Savings")
            compare(screen.lines.count, 0)
            verify(findText(screen, "No transactions match."), "the empty note shows")
        }

        function test_summaryLineCountsAndSumsTheListedLines() {
            addLine(false, "1200", "Landlord", "Rent / mortgage", 0)
            addLine(false, "45.10", "Green Basket", "Groceries", 1)
            addLine(true, "2500", "Label Co", "Royalties", 2)
            const screen = openScreen()
            verify(findText(screen, "3 lines"))
            verify(findText(screen, "In $2,500.00"))
            verify(findText(screen, "Out -$1,245.10"))

            mouseClick(screen.searchField)
            type("zzz")
            verify(findText(screen, "0 lines"))
            verify(findText(screen, "In $0.00"))
            verify(findText(screen, "No transactions match."))
        }

        function test_moneyOutAndInThroughTheHeaderKeys() {
            const root = createTemporaryObject(rootComponent, stage)
            // The first run's help window took the keyboard: close it and take it back.
            root.helpWindow.close()
            root.Window.window.requestActivate()
            tryVerify(() => root.Window.window.active)
            root.screen = "register"
            waitForRendering(root)
            const total = Store.totalText

            mouseClick(find(root, c => c.objectName === "moneyOutKey"))
            tryVerify(() => root.sheetHost.view && root.sheetHost.view.amountField.field.activeFocus)
            compare(root.sheetHost.view.title, "Money out")
            type("4.50")
            keyClick(Qt.Key_Tab)
            type("Corner cafe")
            keyClick(Qt.Key_Return) // in the payee: picks the category and moves on
            mouseClick(find(root.sheetHost.view, c => c.objectName === "sheetSaveKey"))

            tryCompare(root, "sheet", null)
            compare(Store.status, "Spent $4.50 · Corner cafe.")
            compare(find(root, c => c.objectName === "statusLine").text, "Spent $4.50 · Corner cafe.")
            const register = root.screenView.item
            compare(shownPayees(register), ["Corner cafe"])
            compare(rowOf(register, "Corner cafe").amount, "-4.5")
            compare(rowOf(register, "Corner cafe").category, "Other spending")
            verify(Store.totalText !== total, "the total went down")

            mouseClick(find(root, c => c.objectName === "moneyInKey"))
            tryVerify(() => root.sheetHost.view && root.sheetHost.view.amountField.field.activeFocus)
            compare(root.sheetHost.view.title, "Money in")
            type("-100")
            keyClick(Qt.Key_Tab)
            type("Gig")
            keyClick(Qt.Key_Return)
            mouseClick(find(root.sheetHost.view, c => c.objectName === "sheetSaveKey"))
            tryCompare(root, "sheet", null)
            compare(Store.status, "Logged $100.00 · Gig.")
            compare(rowOf(register, "Gig").amount, "100", "money in is stored positive whatever was typed")
            compare(rowOf(register, "Gig").category, "Other income")
            verify(findText(register, "In $100.00"))
        }

        function test_returnDoesNothingWhileSaveIsDisabled() {
            const editor = createTemporaryObject(txEditorComponent, stage)
            const done = spyOn(editor, "done")
            editor.sheet = CHSheet.newTx(false)
            tryVerify(() => editor.amountField.field.activeFocus)
            verify(!editor.canSave)
            keyClick(Qt.Key_Return)
            type("4.5o")
            verify(!editor.canSave, "no amount")
            keyClick(Qt.Key_Return)
            compare(done.count, 0, "the sheet stays open")
            compare(everything.count, 0, "nothing was saved")
            compare(Store.status, "")
            verify(findText(editor, "Not an amount"))
        }

        function test_returnInThePayeeGuessesTheCategoryAndMovesOn() {
            addLine(false, "12", "Corner cafe", "Dining out", 1)
            const editor = createTemporaryObject(txEditorComponent, stage)
            const done = spyOn(editor, "done")
            editor.sheet = CHSheet.newTx(false)
            tryVerify(() => editor.amountField.field.activeFocus)
            type("4.50")
            for (const [payee, category] of [["corner CAFE", "Dining out"], ["SHELL OIL 123", "Car & gas"]]) {
                clearField(editor.payeeField.field)
                type(payee)
                keyClick(Qt.Key_Return)
                compare(editor.category, category)
                verify(!editor.payeeField.field.activeFocus, "the focus moved on")
            }
            compare(done.count, 0, "nothing saved yet")
        }

        // The day `days` whole days from now, as the app writes dates.
        function dayText(days: int): string {
            const d = new Date()
            d.setDate(d.getDate() + days)
            return Fmt.date(d.getTime())
        }

        function test_theDateStartsTodayAndMovesFromTheKeyboard() {
            const editor = createTemporaryObject(txEditorComponent, stage)
            const done = spyOn(editor, "done")
            editor.sheet = CHSheet.newTx(false)
            tryVerify(() => editor.amountField.field.activeFocus)
            const date = editor.dateField
            compare(date.button.text, dayText(0), "a new line starts today")
            compare(date.button.Accessible.name, "Date")
            type("12")

            // The date sits just above the amount.
            keyClick(Qt.Key_Tab, Qt.ShiftModifier)
            verify(date.button.activeFocus, "Shift+Tab from the amount reaches the date")
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            compare(date.button.text, dayText(-2))
            keyClick(Qt.Key_Up)
            compare(date.button.text, dayText(-1))
            keyClick(Qt.Key_Return)
            tryCompare(date.popup, "opened", true)
            compare(done.count, 0, "Return on the date opens the grid, it does not save")
            keyClick(Qt.Key_Escape)
            tryCompare(date.popup, "visible", false)
            compare(done.count, 0, "Escape closes only the grid")

            editor.amountField.field.forceActiveFocus()
            keyClick(Qt.Key_Return)
            compare(done.count, 1)
            compare(everything.count, 1)
            compare(Fmt.date(ledger.transaction(everything.idAt(0)).date), dayText(-1))
        }

        function test_aDayPickedInTheGridIsSavedWithItsTimeOfDay() {
            const noon = new Date()
            noon.setDate(15)
            noon.setHours(12, 0, 0, 0)
            addLine(false, "45.10", "Green Basket", "Groceries", 0)
            const editor = createTemporaryObject(txEditorComponent, stage)
            editor.sheet = CHSheet.editTx(ledger.transaction(everything.idAt(0)))
            const date = editor.dateField
            compare(date.button.text, Fmt.date(noon.getTime()))
            tryVerify(() => editor.amountField.field.activeFocus)

            date.button.forceActiveFocus()
            keyClick(Qt.Key_Space)
            tryCompare(date.popup, "opened", true)
            const cell = find(date.popup.contentItem, c => c.day === 3 && c.month === noon.getMonth())
            verify(cell, "the 3rd of the month is in the grid")
            mouseClick(cell)
            tryCompare(date.popup, "visible", false)

            editor.amountField.field.forceActiveFocus()
            keyClick(Qt.Key_Return)
            const saved = new Date(ledger.transaction(everything.idAt(0)).date)
            compare(saved.getMonth(), noon.getMonth())
            compare(saved.getDate(), 3)
            compare(saved.getHours(), 12, "picking a day keeps the time of day")
            compare(everything.count, 1, "changed, not added")
        }

        function test_changingALineKeepsItsSideAndOffersDelete() {
            addLine(true, "2500", "Label Co", "Royalties", 0)
            const editor = createTemporaryObject(txEditorComponent, stage)
            const done = spyOn(editor, "done")
            editor.sheet = CHSheet.editTx(ledger.transaction(everything.idAt(0)))
            compare(editor.title, "Change transaction")
            compare(editor.amountField.text, "2500.00")
            compare(editor.payeeField.text, "Label Co")
            compare(editor.categoryPicker.box.displayText, "Royalties")
            verify(findText(editor, "From (who paid you)"))
            verify(findText(editor, "Delete"))

            clearField(editor.amountField.field)
            type("2,450")
            keyClick(Qt.Key_Return)
            compare(done.count, 1)
            compare(everything.count, 1, "changed, not added")
            compare(everything.get(0).amount, "2450")
            compare(Store.status, "Logged $2,450.00 · Label Co.")
        }

        function test_aTransferMakesTwoLines() {
            const editor = createTemporaryObject(transferComponent, stage)
            const done = spyOn(editor, "done")
            editor.sheet = CHSheet.transfer()
            verify(findText(editor, "Transfers don't count as income or spending — they just move money from one account to the other."))
            editor.fromPicker.box.forceActiveFocus()
            keyClick(Qt.Key_Down)
            compare(editor.fromPicker.box.displayText, "Main checking")
            editor.toPicker.box.forceActiveFocus()
            keyClick(Qt.Key_Down)
            verify(findText(editor, "Choose two different accounts."))
            verify(!editor.canSave)
            keyClick(Qt.Key_Down)
            compare(editor.toPicker.box.displayText, "Savings")
            editor.amountField.field.forceActiveFocus()
            type("250")
            keyClick(Qt.Key_Return)

            compare(done.count, 1)
            compare(Store.status, "Moved $250.00.")
            compare(everything.count, 2)
            compare(everything.get(0).payee, "Transfer to Savings")
            compare(everything.get(1).payee, "Transfer from Main checking")

            // Either side opens the transfer with both sides, and saving changes both.
            const sheet = CHSheet.editTx(ledger.transaction(everything.idAt(1)))
            compare(sheet.kind, "transfer")
            const change = createTemporaryObject(transferComponent, stage, { sheet: sheet })
            waitForRendering(change)
            compare(change.title, "Change transfer")
            compare([change.fromPicker.box.displayText, change.toPicker.box.displayText, change.amountField.text],
                    ["Main checking", "Savings", "250.00"])
            clearField(change.amountField.field)
            type("300")
            keyClick(Qt.Key_Return)
            compare(Store.status, "Moved $300.00.")
            compare(everything.count, 2)
            compare([everything.get(0).amount, everything.get(1).amount], ["-300", "300"])
        }

        function test_theLineMenuMarksAndDeletes() {
            addLine(false, "45.10", "Green Basket", "Groceries", 0)
            addLine(false, "1200", "Landlord", "Rent / mortgage", 1)
            const screen = openScreen()
            const row = screen.list.itemAtIndex(0)
            verify(!find(row, c => c.objectName === "pendingBadge").visible)

            mouseClick(row, 40, row.height / 2, Qt.RightButton)
            tryCompare(screen.menu, "opened", true)
            const cleared = screen.menu.itemAt(0)
            compare(cleared.text, "Mark as pending")
            mouseClick(cleared)
            tryCompare(screen.menu, "visible", false)
            tryVerify(() => find(screen.list.itemAtIndex(0), c => c.objectName === "pendingBadge").visible)

            mouseClick(screen.list.itemAtIndex(0), 40, 10, Qt.RightButton)
            tryCompare(screen.menu, "opened", true)
            compare(screen.menu.itemAt(0).text, "Mark as cleared")
            compare(screen.menu.itemAt(1).text, "Delete")
            mouseClick(screen.menu.itemAt(1))
            compare(shownPayees(screen), ["Landlord"])
            compare(everything.count, 1)
        }

        function test_doubleClickAndReturnOpenTheLine() {
            addLine(false, "45.10", "Green Basket", "Groceries", 0)
            const screen = openScreen()
            const opened = spyOn(screen, "openSheet")
            mouseDoubleClickSequence(screen.list.itemAtIndex(0))
            compare(opened.count, 1)
            compare(opened.signalArguments[0][0].kind, "editTx")
            compare(opened.signalArguments[0][0].record.payee, "Green Basket")

            verify(screen.list.activeFocus)
            keyClick(Qt.Key_Return)
            compare(opened.count, 2)
        }

        function test_exportSavesTheFileAndSaysSo() {
            addLine(false, "45.10", "Green Basket", "Groceries", 0)
            const screen = openScreen()
            mouseClick(find(screen, c => c.objectName === "exportKey"))
            tryCompare(screen.exportDialog, "visible", true)
            verify(decodeURIComponent(String(screen.exportDialog.selectedFile)).endsWith("/Coinhall transactions.csv"))
            screen.exportDialog.reject()

            screen.exportDialog.selectedFile = "file://" + Store.dir + "/Coinhall transactions.csv"
            screen.exportDialog.accepted()
            compare(Store.status, "Saved Coinhall transactions.csv.")

            screen.exportDialog.selectedFile = "file://" + Store.dir + "/no such folder/out.csv"
            screen.exportDialog.accepted()
            verify(Store.status.startsWith("Could not save: "), Store.status)
        }
    }
}
