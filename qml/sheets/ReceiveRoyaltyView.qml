import QtQuick
import QtQuick.Layouts
import Coinhall

// Records a royalty that came in: the amount, the day and the account. It books
// the deposit under Royalties and, for a repeating royalty, lines up the next
// expected statement.
SheetFrame {
    id: root

    // The sheet case that opened this view (CHSheet.receiveRoyalty with the royalty).
    property var sheet
    // The royalty being received (a map from RoyaltiesBridge).
    property var royalty: ({})
    readonly property alias royalties: royalties
    // The fields, as the user has them now.
    property alias amount: amountField.text
    property alias date: dateField.date
    property alias account: accountField.selection

    // Closes the sheet.
    signal done

    // Starts from the expected amount, today and the royalty's account, else the first active one.
    function load() {
        const record = sheet && sheet.record ? sheet.record : {}
        const stored = royalties.royalty(String(record.id || ""))
        royalty = stored.id !== undefined ? stored : Object.assign(royalties.newRoyalty(), record)
        amount = royalty.editExpected || ""
        date = Date.now()
        account = royalty.accountId !== "" ? royalty.accountId : accountField.accounts.idAt(0)
    }

    function commit() {
        royalties.receive(String(royalty.id || ""), amount, date, account)
        done()
    }

    title: "Royalty from " + (royalty.payer || "")
    saveTitle: "Log it"
    // Only money that really came in: an amount above zero.
    canSave: royalties.canReceive(amount)

    onSave: commit()
    onCancel: done()
    onSheetChanged: load()
    Component.onCompleted: load()

    RoyaltiesBridge {
        id: royalties

        store: Store
    }

    Form {
        MoneyField {
            id: amountField

            objectName: "amountField"
            label: "Amount that came in"
        }

        FormDateField {
            id: dateField

            objectName: "dateField"
            label: "Arrived on"
        }

        AccountPicker {
            id: accountField

            objectName: "accountField"
            label: "Into account"
            store: Store
        }

        CaptionText {
            objectName: "explanation"
            Layout.fillWidth: true
            text: root.royalty.explanation || ""
            wrapMode: Text.WordWrap
        }
    }
}
