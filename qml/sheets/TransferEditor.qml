import QtQuick
import QtQuick.Layouts
import Coinhall

// The transfer editor: moves money from one of the user's accounts to another as a
// linked pair of lines, or, opened with a side of a transfer as the sheet's record,
// changes both sides of that transfer together. Saving needs two different accounts
// and an amount; the sign typed does not matter.
SheetFrame {
    id: root

    // The sheet case that opened this editor (CHSheet).
    property var sheet
    // The accounts chosen (QUuid text); empty for none.
    property string from
    property string to
    // The id of a side of the transfer being changed; empty for a new transfer.
    property string txId

    readonly property alias fromPicker: fromPicker
    readonly property alias toPicker: toPicker
    readonly property alias amountField: amountField
    readonly property alias dateField: dateField
    readonly property alias noteField: noteField
    readonly property bool sameAccount: from !== "" && from === to

    // Closes the sheet.
    signal done

    // Fills the form from the sheet: the transfer as the Book has it now, or a new one.
    function load() {
        const line = sheet && sheet.record && sheet.record.id !== undefined ? ledger.transaction(String(sheet.record.id)) : {}
        txId = line.id !== undefined ? String(line.id) : ""
        from = line.fromAccountId || ""
        to = line.toAccountId || ""
        amountField.text = line.magnitude || ""
        dateField.date = line.date !== undefined ? line.date : ledger.now()
        noteField.text = line.note || ""
    }

    title: txId !== "" ? "Change transfer" : "Move money between accounts"
    saveTitle: txId !== "" ? "Save" : "Transfer"
    extraTitle: txId !== "" ? "Delete" : ""
    canSave: from !== "" && to !== "" && !sameAccount && amountField.valid

    onSheetChanged: load()
    onCancel: done()
    onExtra: {
        ledger.deleteTransaction(txId)
        done()
    }
    onSave: {
        if (ledger.transfer(from, to, amountField.text, dateField.date, noteField.text, txId))
            done()
    }
    Component.onCompleted: load()

    LedgerBridge {
        id: ledger

        store: Store
    }

    AccountPicker {
        id: fromPicker

        objectName: "fromPicker"
        label: "From"
        store: Store
        selection: root.from
        onSelectionChanged: root.from = selection
    }

    AccountPicker {
        id: toPicker

        objectName: "toPicker"
        label: "To"
        store: Store
        selection: root.to
        onSelectionChanged: root.to = selection
    }

    FormRow {
        visible: root.sameAccount

        CaptionText {
            text: "Choose two different accounts."
            wrapMode: Text.WordWrap
            color: Tokens.destructive
        }
    }

    MoneyField {
        id: amountField

        objectName: "amountField"
        label: "Amount"
    }

    FormDateField {
        id: dateField

        objectName: "dateField"
        label: "Date"
    }

    FormTextField {
        id: noteField

        objectName: "noteField"
        label: "Note"
    }

    CaptionText {
        Layout.fillWidth: true
        text: "Transfers don't count as income or spending — they just move money from one account to the other."
        wrapMode: Text.WordWrap
    }
}
