pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Coinhall

// The bill editor: a new bill or a change to one. It edits a private copy of the
// bill and hands it to the Store only on save; "Delete bill" removes a stored one
// (the lines its payments booked stay in the ledger).
SheetFrame {
    id: root

    // The sheet case that opened this editor (CHSheet): newBill, or editBill with the bill.
    property var sheet
    readonly property bool isNew: !sheet || sheet.kind !== "editBill"
    // The bill as it was when the sheet opened (a map from BillsBridge).
    property var b: ({})
    readonly property alias bills: bills
    // The fields, as the user has them now.
    property alias name: nameField.text
    property alias amount: amountField.text
    property alias due: dueField.date
    property string repeats
    property alias yearDates: yearDatesField.text
    readonly property bool onSetDates: repeats === bills.setDatesName
    readonly property string yearDatesProblem: onSetDates ? bills.yearDatesProblem(yearDates) : ""
    property string category
    property alias accountId: accountField.selection
    property alias remindDays: remindField.value
    property alias autopay: autopayField.checked
    property alias website: websiteField.text
    property alias note: noteField.text

    // Closes the sheet.
    signal done

    // Fills the fields from the stored bill (or, when it is gone, the record the sheet
    // carries), or with a new bill's defaults.
    function load() {
        const fresh = bills.newBill()
        let start = fresh
        // Read from `sheet` itself: this runs when it changes, maybe before `isNew` follows.
        if (sheet && sheet.kind === "editBill") {
            const record = sheet.record || {}
            const stored = bills.bill(String(record.id || ""))
            start = stored.id !== undefined ? stored : Object.assign({}, fresh, record)
        }
        b = start
        name = start.name || ""
        amount = start.editAmount || ""
        due = start.due
        repeats = start.repeats
        yearDates = start.yearDates || ""
        category = start.category
        accountId = start.accountId || ""
        remindDays = start.remindDays
        autopay = start.autopay === true
        website = start.website || ""
        note = start.note || ""
    }

    function commit() {
        const saved = bills.saveBill({
            id: isNew ? "" : String(b.id || ""),
            name: name,
            amount: amount,
            due: due,
            repeats: repeats,
            yearDates: yearDates,
            category: category,
            accountId: accountId,
            autopay: autopay,
            remindDays: remindDays,
            website: website,
            note: note
        })
        if (saved)
            done()
    }

    title: isNew ? "New bill" : "Change bill"
    saveTitle: "Save"
    canSave: name !== "" && amountField.valid && yearDatesProblem === ""
    extraTitle: isNew ? "" : "Delete bill"

    onSave: commit()
    onCancel: done()
    onExtra: {
        bills.deleteBill(String(b.id || ""))
        done()
    }
    onSheetChanged: load()
    Component.onCompleted: load()

    BillsBridge {
        id: bills

        store: Store
    }

    Form {
        FormTextField {
            id: nameField

            objectName: "nameField"
            label: "Name (e.g. Rent, Verizon, Web hosting)"
        }

        MoneyField {
            id: amountField

            objectName: "amountField"
            label: "Amount"
        }

        FormDateField {
            id: dueField

            objectName: "dueField"
            label: "Next due date"
        }

        FormChoice {
            id: repeatsField

            objectName: "repeatsField"
            label: "Repeats"
            model: bills.repeatNames
            currentIndex: bills.repeatNames.indexOf(root.repeats)
            onActivated: index => root.repeats = bills.repeatNames[index]
        }

        FormTextField {
            id: yearDatesField

            objectName: "yearDatesField"
            visible: root.onSetDates
            label: "Dates each year"
            placeholderText: bills.usTaxDatesText
        }

        CaptionText {
            objectName: "yearDatesProblem"
            Layout.fillWidth: true
            Layout.leftMargin: Tokens.fieldLabelWidth + Tokens.spaceM
            visible: root.onSetDates && root.yearDates !== "" && root.yearDatesProblem !== ""
            text: root.yearDatesProblem
            color: Tokens.destructive
            wrapMode: Text.WordWrap
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }

        FormRow {
            Key {
                objectName: "usTaxKey"
                title: "Quarterly estimated tax (US dates)"
                // The US schedule of estimated tax, named and filed as such when the bill is new.
                onClicked: {
                    root.repeats = bills.setDatesName
                    root.yearDates = bills.usTaxDatesText
                    root.due = bills.firstSetDate(root.yearDates)
                    if (root.name === "")
                        root.name = "Estimated tax"
                    if (bills.categories.indexOf("Taxes") >= 0)
                        root.category = "Taxes"
                }
            }
        }

        FormChoice {
            id: categoryField

            // A category no longer in the Book's list is still offered for this bill.
            readonly property var options: bills.categories.indexOf(root.category) < 0 && root.category !== ""
                                           ? [root.category].concat(bills.categories) : bills.categories

            objectName: "categoryField"
            label: "Category"
            model: options
            currentIndex: options.indexOf(root.category)
            onActivated: index => root.category = categoryField.options[index]
        }

        AccountPicker {
            id: accountField

            objectName: "accountField"
            label: "Paid from"
            store: Store
        }

        FormStepper {
            id: remindField

            objectName: "remindField"
            text: bills.remindText(value)
            from: 0
            to: 30
            decreaseName: "Remind fewer days before"
            increaseName: "Remind more days before"
        }

        FormRow {
            FormToggle {
                id: autopayField

                objectName: "autopayField"
                text: "Autopay is set up with the company"
            }
        }

        FormTextField {
            id: websiteField

            objectName: "websiteField"
            label: "Website to pay it"
        }

        FormTextField {
            id: noteField

            objectName: "noteField"
            label: "Note (account number, phone…)"
        }

        ColumnLayout {
            objectName: "history"
            Layout.fillWidth: true
            Layout.topMargin: Tokens.spaceS
            visible: (root.b.history || []).length > 0
            spacing: Tokens.spaceXS

            Label2 {
                text: "Payment history"
            }

            ListRows {
                id: historyRows

                spacing: Tokens.spaceXS
                model: root.b.history || []

                delegate: RowLayout {
                    id: payment

                    required property var modelData

                    width: historyRows.cellWidth
                    spacing: Tokens.spaceM
                    Accessible.role: Accessible.StaticText
                    Accessible.name: modelData.dateText + ", " + modelData.amountText

                    BodyText {
                        Layout.fillWidth: true
                        text: payment.modelData.dateText
                        color: Looks.current.soft
                        elide: Text.ElideRight
                    }
                    FigureText {
                        text: payment.modelData.amountText
                        font.pointSize: Tokens.pt(Tokens.bodySize)
                    }
                }
            }
        }
    }
}
