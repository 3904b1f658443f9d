import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The bills and royalties screens and sheets. Due texts, defaults and what paying,
// skipping and receiving do to the Book are tests/bridge's and the journeys'.
TestCase {
    id: testCase

    name: "BillsRoyalties"
    width: 1100
    height: 760
    visible: true
    when: windowShown

    readonly property BillsBridge data: BillsBridge { store: Store }
    readonly property RoyaltiesBridge royalties: RoyaltiesBridge { store: Store }

    function addBill(name: string, amount: string, due: double, fields: var): var {
        verify(data.saveBill(Object.assign(data.newBill(), { name: name, amount: amount, due: due }, fields || {})))
        return data.active.concat(data.finished).find(b => b.name === name)
    }
    function daysFromNow(days: int): double {
        return Date.now() + days * 24 * 3600 * 1000
    }
    function lineNamed(screen: var, name: string): var {
        return H.placed(testCase, H.first(screen, i => i.bill !== undefined && i.bill.name === name
                                                      && i.payRequested !== undefined))
    }
    function sheet(type: string, sheet: var): var {
        return H.make(testCase, testCase, type + " {}", { sheet: sheet })
    }
    function init() {
        for (const b of data.active.concat(data.finished))
            data.deleteBill(b.id)
        for (const r of royalties.expected.concat(royalties.received))
            royalties.deleteRoyalty(r.id)
    }

    function test_newBillFromTheEditor() {
        const editor = sheet("BillEditor", CHSheet.newBill())
        const done = H.spy(testCase, editor, "done")
        const save = H.key(editor, "Save")
        verify(!save.enabled && !H.key(editor, "Delete bill"), "nothing to save yet, nothing to delete")
        H.retype(testCase, findChild(editor, "nameField").field, "Rent")
        H.retype(testCase, findChild(editor, "amountField").field, "abc")
        verify(!save.enabled, "no readable amount yet")
        H.retype(testCase, findChild(editor, "amountField").field, "1450.5")
        const remind = findChild(editor, "remindField")
        for (let i = 0; i < 2; ++i)
            mouseClick(H.key(remind, "−"))
        compare(remind.text, "Remind me 1 day before (and on the day)")
        mouseClick(findChild(editor, "autopayField"))
        H.retype(testCase, findChild(editor, "websiteField").field, "rent.example.com")
        mouseClick(save)
        compare(done.count, 1, "saving closes the sheet")
        compare(["name", "amountText", "repeats", "remindDays", "autopay", "website"].map(field => data.active[0][field]),
                ["Rent", "$1,450.50", "Monthly", 1, true, "rent.example.com"])
    }

    // Estimated tax in one click: set dates, named and filed; dates that are no days of
    // the year cannot be saved. The next pair after a payment or a skip is tests/core/store's.
    function test_quarterlyEstimatedTax() {
        const editor = sheet("BillEditor", CHSheet.newBill())
        mouseClick(H.key(editor, "Quarterly estimated tax (US dates)"))
        const dates = findChild(editor, "yearDatesField")
        compare([findChild(editor, "nameField").text, findChild(editor, "repeatsField").currentText, dates.visible,
                 dates.text, findChild(editor, "categoryField").currentText],
                ["Estimated tax", "On set dates each year", true, "Apr 15, Jun 15, Sep 15, Jan 15", "Taxes"])
        const today = new Date(), due = new Date(editor.due)
        verify(due >= new Date(today.getFullYear(), today.getMonth(), today.getDate()) && due.getDate() === 15
               && [0, 3, 5, 8].indexOf(due.getMonth()) >= 0 && due - today < 123 * 24 * 3600 * 1000, due)
        dates.text = "Apr 15, Jun 31" // typing it: the journeys
        verify(!H.key(editor, "Save").enabled && findChild(editor, "yearDatesProblem").visible)
        dates.text = "Sep 15, Jan 15, Apr 15, Jun 15"
        findChild(editor, "amountField").text = "1200"
        editor.due = new Date(2030, 8, 15, 9).getTime()
        mouseClick(H.key(editor, "Save"))
        const tax = data.active.find(b => b.name === "Estimated tax")
        compare([tax.repeats, tax.yearDates], ["On set dates each year", "Jan 15, Apr 15, Jun 15, Sep 15"])
    }

    // A one-time bill paid with a typed amount is finished; the editor, given its sheet
    // once made (as the sheet host does), lists the payment.
    function test_payingAOneTimeBillWithATypedAmount() {
        const repair = addBill("Repair", "80", daysFromNow(2), { repeats: "One time", website: "fixit.example" })
        const pay = sheet("PayBillView", CHSheet.payBill(repair))
        compare([findChild(pay, "amountField").text, findChild(pay, "websiteLink").text], ["80.00", "Open fixit.example to pay."])
        H.retype(testCase, findChild(pay, "amountField").field, "12.5x")
        verify(!H.key(pay, "Mark paid").enabled)
        H.retype(testCase, findChild(pay, "amountField").field, "12.5")
        mouseClick(H.key(pay, "Mark paid"))
        const editor = H.make(testCase, testCase, "BillEditor {}")
        editor.sheet = CHSheet.editBill(data.bill(repair.id))
        compare([editor.title, findChild(editor, "nameField").text, findChild(editor, "amountField").text],
                ["Change bill", "Repair", "80.00"])
        verify(H.first(findChild(editor, "history"), i => i.text === "$12.50" && i.visible), "the payment is listed")
        const screen = H.make(testCase, testCase, "BillsScreen { anchors.fill: parent }")
        verify(!lineNamed(screen, "Repair") && findChild(screen, "finishedPanel").visible)
        mouseClick(H.key(H.first(screen, i => i.objectName === "finishedRow" && i.modelData.name === "Repair"), "Delete"))
        compare(data.finished.length, 0)
    }

    // Overdue is red, due today is not. Skipping and the pay key are journeys.
    function test_theLinesMenuKeysAndMarks() {
        const phone = addBill("Phone", "45", daysFromNow(9))
        const plain = sheet("PayBillView", CHSheet.payBill(phone))
        verify(!findChild(plain, "websiteLink").visible, "no website, no link")
        plain.destroy()
        addBill("Late", "20", daysFromNow(-1))
        addBill("Today", "30", daysFromNow(0))
        const screen = H.make(testCase, testCase, "BillsScreen { anchors.fill: parent }")
        const late = lineNamed(screen, "Late")
        compare([findChild(late, "dueText").color, findChild(late, "statusDot").color], [Tokens.destructive, Tokens.destructive])
        verify(!Qt.colorEqual(findChild(lineNamed(screen, "Today"), "dueText").color, Tokens.destructive))
        compare(findChild(screen, "overdueSummary").text, "1 bill · $20.00")

        const opened = H.spy(testCase, screen, "openSheet")
        const line = lineNamed(screen, "Phone")
        const change = H.menuItem(testCase, line, line.menu, 1)
        compare(change.text, "Edit bill…")
        mouseClick(change)
        compare([opened.signalArguments[0][0].kind, opened.signalArguments[0][0].record.id], ["editBill", phone.id])
        for (const name of ["Phone", "Late", "Today"]) {
            const shown = lineNamed(screen, name)
            mouseClick(H.menuItem(testCase, shown, shown.menu, 3))
        }
        tryVerify(() => data.active.length === 0)
        verify(findChild(screen, "noBillsNote").visible)
    }

    // A bad amount keeps the royalty editor open, saying why.
    function test_royaltyEditorAndMenu() {
        const editor = sheet("RoyaltyEditor", CHSheet.newRoyalty())
        const save = H.key(editor, "Save")
        verify(!save.enabled, "no payer yet")
        H.retype(testCase, findChild(editor, "payerField").field, "BMI")
        H.retype(testCase, findChild(editor, "amountField").field, "about 400")
        mouseClick(save)
        compare([findChild(editor, "problem").text, royalties.expected.length],
                ["The expected amount is not an amount. Type it like 250.00, or leave it empty.", 0],
                "the sheet stays open and nothing is saved")
        H.retype(testCase, findChild(editor, "amountField").field, "420")
        mouseClick(findChild(editor, "followField"))
        mouseClick(save)
        verify(royalties.expected[0].payerLine.endsWith("FOLLOWING UP"))
        verify(royalties.saveRoyalty(Object.assign(royalties.newRoyalty(), { payer: "ASCAP", amount: "50" })))

        const again = H.make(testCase, testCase, "RoyaltyEditor {}")
        again.sheet = CHSheet.editRoyalty(royalties.expected.find(r => r.payer === "BMI"))
        compare([again.followingUp, findChild(again, "amountField").text], [true, "420.00"])
        mouseClick(H.key(again, "Delete"))
        compare(royalties.expected.map(r => r.payer), ["ASCAP"])
        const screen = H.make(testCase, testCase, "RoyaltiesScreen { anchors.fill: parent }")
        const line = H.placed(testCase, H.first(screen, i => i.objectName === "expectedRow"))
        const remove = H.menuItem(testCase, line, line.menu, 2)
        compare(remove.text, "Delete")
        mouseClick(remove)
        compare([royalties.expected.length, findChild(screen, "noExpectedNote").visible], [0, true])
    }
}
