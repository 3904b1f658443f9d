import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The bills screen and its sheets as a user meets them: adding a bill in the editor,
// paying it, skipping one, overdue marks, finished one-time bills and the monthly average.
Item {
    id: stage

    width: 1100
    height: 760

    BillsBridge {
        id: data

        store: Store
    }

    Component {
        id: editorComponent

        BillEditor {}
    }
    Component {
        id: payComponent

        PayBillView {}
    }
    Component {
        id: screenComponent

        BillsScreen {
            anchors.fill: parent
        }
    }
    Component {
        id: spyComponent

        SignalSpy {}
    }

    TestCase {
        id: testCase

        name: "Bills"
        when: windowShown

        // Puts a bill in the Store as the editor would and returns its map.
        function addBill(name: string, amount: string, due: double, fields: var): var {
            verify(data.saveBill(Object.assign(data.newBill(), { name: name, amount: amount, due: due }, fields || {})))
            return data.active.concat(data.finished).find(b => b.name === name)
        }

        function daysFromNow(days: int, hour: int): double {
            const d = new Date()
            d.setDate(d.getDate() + days)
            d.setHours(hour, 0, 0, 0)
            return d.getTime()
        }

        function spyOn(target: var, signalName: string): var {
            return createTemporaryObject(spyComponent, stage, { target: target, signalName: signalName })
        }

        // Rows are placed by a positioner on the next polish: wait for it before clicking.
        function placed(item: var): var {
            if (item && isPolishScheduled(item.parent))
                waitForItemPolished(item.parent)
            return item
        }

        function lineNamed(screen: var, name: string): var {
            return placed(H.first(screen, i => i.bill !== undefined && i.bill.name === name && i.payRequested !== undefined))
        }

        function openScreen(): var {
            const screen = createTemporaryObject(screenComponent, stage)
            verify(screen)
            return screen
        }

        function init() {
            for (const b of data.active.concat(data.finished))
                data.deleteBill(b.id)
            Store.status = ""
        }

        function test_newBillFromTheEditor() {
            const editor = createTemporaryObject(editorComponent, stage, { sheet: CHSheet.newBill() })
            const done = spyOn(editor, "done")
            compare(editor.repeats, "Monthly")
            compare(editor.category, "Bills & Utilities")
            compare(findChild(editor, "remindField").text, "Remind me 3 days before (and on the day)")
            const save = H.key(editor, "Save")
            verify(!save.enabled)
            verify(!H.key(editor, "Delete bill"), "a new bill has nothing to delete")
            H.retype(testCase, findChild(editor, "nameField").field, "Rent")
            verify(!save.enabled, "no amount yet")
            H.retype(testCase, findChild(editor, "amountField").field, "abc")
            keyClick(Qt.Key_Return)
            compare(data.active.length, 0, "Return saves nothing while the amount is bad")
            H.retype(testCase, findChild(editor, "amountField").field, "1450.5")
            const remind = findChild(editor, "remindField")
            mouseClick(H.key(remind, "−"))
            mouseClick(H.key(remind, "−"))
            compare(remind.text, "Remind me 1 day before (and on the day)")
            mouseClick(findChild(editor, "autopayField"))
            H.retype(testCase, findChild(editor, "websiteField").field, "rent.example.com")
            mouseClick(H.key(editor, "Save"))

            compare(done.count, 1, "saving closes the sheet")
            compare(Store.status, "Saved bill Rent.")
            compare(data.active.length, 1)
            const saved = data.active[0]
            compare([saved.name, saved.amountText, saved.repeats, saved.remindDays, saved.autopay, saved.website],
                    ["Rent", "$1,450.50", "Monthly", 1, true, "rent.example.com"])
        }

        function test_nextDueDatePickerKeepsTheTimeOfDay() {
            const editor = createTemporaryObject(editorComponent, stage, { sheet: CHSheet.newBill() })
            const field = findChild(editor, "dueField")
            field.date = new Date(2031, 0, 31, 9, 30).getTime()
            compare(field.button.text, "Jan 31, 2031")
            tryVerify(() => findChild(editor, "nameField").field.activeFocus, 1000, "the sheet focuses its first field")
            field.button.forceActiveFocus()
            keyClick(Qt.Key_PageUp)
            compare(field.button.text, "Feb 28, 2031", "a month on from the 31st lands on the month's last day")
            keyClick(Qt.Key_Up)
            compare(field.button.text, "Mar 1, 2031")
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            compare(field.button.text, "Feb 27, 2031")

            mouseClick(field.button)
            tryCompare(field.popup, "opened", true)
            const cell = H.first(field.popup.contentItem, i => i.day === 14 && i.month === 1 && i.year === 2031)
            verify(cell, "February 14 is in the grid")
            mouseClick(cell)
            tryCompare(field.popup, "visible", false)
            compare(field.button.text, "Feb 14, 2031")
            const picked = new Date(field.date)
            compare(picked.getHours(), 9)
            compare(picked.getMinutes(), 30)
        }

        function test_payingWithATypedAmountMovesTheBillOn() {
            const rent = addBill("Rent", "10", new Date(2031, 0, 31, 9, 0).getTime())
            const pay = createTemporaryObject(payComponent, stage, { sheet: CHSheet.payBill(rent) })
            const done = spyOn(pay, "done")
            compare(pay.title, "Pay Rent")
            compare(findChild(pay, "amountField").text, "10.00", "starts at the usual amount")
            verify(!findChild(pay, "websiteLink").visible)

            H.retype(testCase, findChild(pay, "amountField").field, "12.5x")
            verify(!H.key(pay, "Mark paid").enabled)
            H.retype(testCase, findChild(pay, "amountField").field, "12.5")
            mouseClick(H.key(pay, "Mark paid"))

            compare(done.count, 1)
            compare(Store.status, "Paid Rent: $12.50.")
            const after = data.bill(rent.id)
            compare([after.dueText, after.history.length, after.history[0].dateText],
                    ["Feb 28, 2031", 1, Fmt.date(Date.now())])

            // The editor, given its sheet once made (as the sheet host does), lists the payment.
            const editor = createTemporaryObject(editorComponent, stage)
            editor.sheet = CHSheet.editBill(after)
            compare(editor.title, "Change bill")
            compare(findChild(editor, "nameField").text, "Rent")
            compare(findChild(editor, "amountField").text, "10.00")
            const history = findChild(editor, "history")
            verify(history.visible)
            verify(H.first(history, i => i.text === "$12.50"), "the payment's amount is listed")
        }

        function test_websiteLinkAndOneTimeBills() {
            const repair = addBill("Repair", "80", daysFromNow(2, 9), { repeats: "One time", website: "fixit.example" })
            const pay = createTemporaryObject(payComponent, stage, { sheet: CHSheet.payBill(repair) })
            const link = findChild(pay, "websiteLink")
            verify(link.visible)
            compare(link.text, "Open fixit.example to pay.")
            mouseClick(H.key(pay, "Mark paid"))

            // The bill leaves the list and shows under the finished one-time bills.
            const screen = openScreen()
            verify(!lineNamed(screen, "Repair"))
            verify(findChild(screen, "finishedPanel").visible)
            const row = H.first(screen, i => i.objectName === "finishedRow" && i.modelData.name === "Repair")
            verify(row, "Repair is listed as finished")
            mouseClick(H.key(row, "Delete"))
            compare(data.finished.length, 0)
        }

        function test_skipAndDeleteFromTheContextMenu() {
            const phone = addBill("Phone", "45", new Date(2031, 0, 31, 9, 0).getTime())
            const screen = openScreen()
            const opened = spyOn(screen, "openSheet")
            let line = lineNamed(screen, "Phone")
            verify(line)
            mouseClick(line, 40, line.height / 2, Qt.RightButton)
            tryCompare(line.menu, "opened", true)
            compare(line.menu.itemAt(0).text, "Skip this one")
            mouseClick(line.menu.itemAt(0))
            compare(data.bill(phone.id).dueText, "Feb 28, 2031")
            compare(data.bill(phone.id).history.length, 0, "skipping pays nothing")

            line = lineNamed(screen, "Phone")
            verify(findChild(line, "dueText").text.startsWith("Due Feb 28 · in "))
            mouseClick(line, 40, line.height / 2, Qt.RightButton)
            tryCompare(line.menu, "opened", true)
            mouseClick(line.menu.itemAt(1))
            compare(opened.count, 1)
            compare(opened.signalArguments[0][0].kind, "editBill")
            compare(opened.signalArguments[0][0].record.id, phone.id)

            mouseClick(findChild(line, "payKey"))
            compare(opened.signalArguments[1][0].kind, "payBill")

            mouseClick(line, 40, line.height / 2, Qt.RightButton)
            tryCompare(line.menu, "opened", true)
            mouseClick(line.menu.itemAt(3))
            tryVerify(() => data.active.length === 0)
            verify(findChild(screen, "noBillsNote").visible)
        }

        function test_anOverdueBillIsMarkedRed() {
            addBill("Late", "20", daysFromNow(-1, 9))
            addBill("Today", "30", daysFromNow(0, 0))
            const screen = openScreen()
            verify(Qt.colorEqual(findChild(lineNamed(screen, "Late"), "dueText").color, Tokens.destructive))
            verify(Qt.colorEqual(findChild(lineNamed(screen, "Late"), "statusDot").color, Tokens.destructive))
            verify(!Qt.colorEqual(findChild(lineNamed(screen, "Today"), "dueText").color, Tokens.destructive))
            compare(findChild(screen, "overdueSummary").text, "1 bill · $20.00")
        }
    }
}
