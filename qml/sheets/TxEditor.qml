pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Coinhall

// The transaction editor: logs a new deposit or payment (the newTx sheet, money in or
// out by its `income`) or changes an existing line (the editTx sheet, whose record
// carries at least the line's id). Saving needs an amount and an account; the amount
// is stored positive for money in and negative for money out, whatever sign was typed.
SheetFrame {
    id: root

    // The sheet case that opened this editor (CHSheet).
    property var sheet
    // Edit state; filled from the sheet when it arrives.
    property bool income: false
    property string category
    property string accountId
    // The id of the line being changed; empty for a new line.
    property string txId

    readonly property bool changing: sheet !== undefined && sheet !== null && sheet.kind === "editTx"
    // The categories of the chosen side, with the line's own first when it is not one of them.
    readonly property var categoryChoices: {
        const names = ledger.categories(income)
        return category !== "" && names.indexOf(category) < 0 ? [category].concat(names) : names
    }
    readonly property alias typePicker: typePicker
    readonly property alias dateField: dateField
    readonly property alias amountField: amountField
    readonly property alias payeeField: payeeField
    readonly property alias categoryPicker: categoryPicker
    readonly property alias accountPicker: accountPicker
    readonly property alias noteField: noteField
    readonly property alias clearedToggle: clearedToggle

    // Closes the sheet.
    signal done

    function defaultCategory(moneyIn: bool): string {
        return moneyIn ? "Other income" : "Other spending"
    }

    // Fills the form from the sheet: the line as the Book has it now, or the defaults of a new one.
    function load() {
        if (!sheet)
            return
        // Read from the sheet itself: `changing` may not have followed it yet.
        if (sheet.kind !== "editTx") {
            txId = ""
            income = sheet.income === true
            dateField.date = ledger.now()
            amountField.text = ""
            payeeField.text = ""
            category = defaultCategory(income)
            accountId = ledger.firstAccountId()
            noteField.text = ""
            clearedToggle.checked = true
        } else {
            const given = sheet.record || {}
            const stored = given.id !== undefined ? ledger.transaction(String(given.id)) : {}
            const line = stored.id !== undefined ? stored : given
            txId = line.id !== undefined ? String(line.id) : ""
            income = line.income === true
            dateField.date = line.date !== undefined ? line.date : ledger.now()
            amountField.text = line.magnitude !== undefined ? line.magnitude : ""
            payeeField.text = line.payee || ""
            category = line.category || ""
            // An account archived since the line was made is not offered: none is chosen.
            accountId = accountPicker.accounts.indexOf(line.accountId || "") >= 0 ? line.accountId : ""
            noteField.text = line.note || ""
            clearedToggle.checked = line.cleared !== false
        }
        Qt.callLater(() => amountField.field.forceActiveFocus(Qt.TabFocusReason))
    }

    // Money in or out was picked: a category of the other side gives way to that side's default.
    function setIncome(moneyIn: bool) {
        income = moneyIn
        if (ledger.categories(moneyIn).indexOf(category) < 0)
            category = defaultCategory(moneyIn)
    }

    title: changing ? "Change transaction" : income ? "Money in" : "Money out"
    saveTitle: "Save"
    extraTitle: changing ? "Delete" : ""
    canSave: amountField.valid && accountId !== ""

    onSheetChanged: load()
    onCancel: done()
    onExtra: {
        ledger.deleteTransaction(txId)
        done()
    }
    onSave: {
        const saved = ledger.saveTransaction({
            id: txId,
            income: income,
            date: dateField.date,
            amount: amountField.text,
            payee: payeeField.text,
            category: category,
            accountId: accountId,
            note: noteField.text,
            cleared: clearedToggle.checked
        })
        if (saved)
            done()
    }

    LedgerBridge {
        id: ledger

        store: Store
    }

    FormRow {
        label: "Type"

        FormSegments {
            id: typePicker

            objectName: "typePicker"
            name: "Type"
            options: ["Money in", "Money out"]
            currentIndex: root.income ? 0 : 1
            onActivated: index => root.setIncome(index === 0)
        }
    }

    FormDateField {
        id: dateField

        objectName: "dateField"
        label: "Date"
    }

    MoneyField {
        id: amountField

        objectName: "amountField"
        label: "Amount"
    }

    FormTextField {
        id: payeeField

        objectName: "payeeField"
        label: root.income ? "From (who paid you)" : "To (who you paid)"
        // Return picks the category as an import would and moves on, rather than saving.
        keepsReturn: true
        onAccepted: {
            root.category = ledger.guessCategory(text, root.income)
            field.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        }
    }

    FormChoice {
        id: categoryPicker

        objectName: "categoryPicker"
        label: "Category"
        model: root.categoryChoices
        currentIndex: root.categoryChoices.indexOf(root.category)
        onActivated: index => root.category = root.categoryChoices[index]
    }

    AccountPicker {
        id: accountPicker

        objectName: "accountPicker"
        label: "Account"
        store: Store
        selection: root.accountId
        onSelectionChanged: root.accountId = selection
    }

    FormTextField {
        id: noteField

        objectName: "noteField"
        label: "Note"
    }

    FormRow {
        FormToggle {
            id: clearedToggle

            objectName: "clearedToggle"
            text: "Cleared (shows on the bank statement)"
            checked: true
        }
    }
}
