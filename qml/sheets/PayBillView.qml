import QtQuick
import QtQuick.Layouts
import Coinhall

// Records one payment of a bill: the amount paid, the day and the account. Paying
// books the money out, adds the payment to the bill's history and moves the bill
// on to its next due date (a one-time bill is finished).
SheetFrame {
    id: root

    // The sheet case that opened this view (CHSheet.payBill with the bill).
    property var sheet
    // The bill being paid (a map from BillsBridge).
    property var bill: ({})
    readonly property alias bills: bills
    // The fields, as the user has them now.
    property alias amount: amountField.text
    property alias date: dateField.date
    property alias account: accountField.selection

    // Closes the sheet.
    signal done

    // Starts from the bill's usual amount, today and the bill's account, else the first active one.
    function load() {
        const record = sheet && sheet.record ? sheet.record : {}
        const stored = bills.bill(String(record.id || ""))
        bill = stored.id !== undefined ? stored : Object.assign(bills.newBill(), record)
        amount = bill.editAmount || ""
        date = Date.now()
        account = bill.accountId !== "" ? bill.accountId : accountField.accounts.idAt(0)
    }

    function commit() {
        bills.pay(String(bill.id || ""), amount, date, account)
        done()
    }

    title: "Pay " + (bill.name || "")
    saveTitle: "Mark paid"
    canSave: amountField.valid

    onSave: commit()
    onCancel: done()
    onSheetChanged: load()
    Component.onCompleted: load()

    BillsBridge {
        id: bills

        store: Store
    }

    Form {
        MoneyField {
            id: amountField

            objectName: "amountField"
            label: "Amount paid"
        }

        FormDateField {
            id: dateField

            objectName: "dateField"
            label: "Paid on"
        }

        AccountPicker {
            id: accountField

            objectName: "accountField"
            label: "Paid from"
            store: Store
        }

        BodyText {
            id: link

            objectName: "websiteLink"
            Layout.fillWidth: true
            visible: (root.bill.website || "") !== ""
            text: root.bill.websiteLine || ""
            font.weight: Font.Bold
            font.underline: linkMouse.containsMouse || link.activeFocus
            color: Looks.current.accent2
            wrapMode: Text.WordWrap
            activeFocusOnTab: true
            Accessible.role: Accessible.Link
            Accessible.name: text
            Accessible.onPressAction: Qt.openUrlExternally(root.bill.websiteUrl)
            Keys.onSpacePressed: Qt.openUrlExternally(root.bill.websiteUrl)

            MouseArea {
                id: linkMouse

                anchors.fill: parent
                hoverEnabled: true
                cursorShape: Qt.PointingHandCursor
                onClicked: Qt.openUrlExternally(root.bill.websiteUrl)
            }
        }

        CaptionText {
            objectName: "nextLine"
            Layout.fillWidth: true
            text: root.bill.nextLine || ""
            wrapMode: Text.WordWrap
        }
    }
}
