import QtQuick
import QtQuick.Layouts
import Coinhall

// The royalty editor: a royalty the user expects, or a change to one. It edits a
// private copy and hands it to the Store only on save. An empty expected amount
// counts as zero; an amount that cannot be read keeps the sheet open and says so.
SheetFrame {
    id: root

    // The sheet case that opened this editor (CHSheet): newRoyalty, or editRoyalty with the royalty.
    property var sheet
    readonly property bool isNew: !sheet || sheet.kind !== "editRoyalty"
    // The royalty as it was when the sheet opened (a map from RoyaltiesBridge).
    property var r: ({})
    readonly property alias royalties: royalties
    // The fields, as the user has them now.
    property alias payer: payerField.text
    property string source
    property alias work: workField.text
    property alias period: periodField.text
    property alias amount: amountField.text
    property alias expectedDate: dateField.date
    property string repeats
    property alias accountId: accountField.selection
    property alias followingUp: followField.checked
    property alias got: gotField.text
    property alias note: noteField.text
    // Why the last save was refused; empty when it was not.
    property string problem

    // Closes the sheet.
    signal done

    function load() {
        const fresh = royalties.newRoyalty()
        let start = fresh
        // Read from `sheet` itself: this runs when it changes, maybe before `isNew` follows.
        if (sheet && sheet.kind === "editRoyalty") {
            const record = sheet.record || {}
            const stored = royalties.royalty(String(record.id || ""))
            start = stored.id !== undefined ? stored : Object.assign({}, fresh, record)
        }
        r = start
        payer = start.payer || ""
        source = start.source
        work = start.work || ""
        period = start.period || ""
        amount = start.editExpected || ""
        expectedDate = start.expectedDate
        repeats = start.repeats
        accountId = start.accountId || ""
        followingUp = start.followingUp === true
        got = start.editReceived || ""
        note = start.note || ""
        problem = ""
    }

    function commit() {
        if (amount.trim() !== "" && !amountField.valid) {
            problem = "The expected amount is not an amount. Type it like 250.00, or leave it empty."
            amountField.field.forceActiveFocus()
            return
        }
        if (gotField.visible && got.trim() !== "" && !gotField.valid) {
            problem = "The amount received is not an amount. Type it like 250.00."
            gotField.field.forceActiveFocus()
            return
        }
        const saved = royalties.saveRoyalty({
            id: isNew ? "" : String(r.id || ""),
            payer: payer,
            source: source,
            work: work,
            period: period,
            amount: amount,
            expectedDate: expectedDate,
            repeats: repeats,
            accountId: accountId,
            followingUp: followingUp,
            got: gotField.visible ? got : "",
            note: note
        })
        if (saved)
            done()
        else
            problem = "This royalty could not be saved."
    }

    title: isNew ? "Royalty you're expecting" : "Change royalty"
    saveTitle: "Save"
    canSave: payer !== ""
    extraTitle: isNew ? "" : "Delete"

    onSave: commit()
    onCancel: done()
    onExtra: {
        royalties.deleteRoyalty(String(r.id || ""))
        done()
    }
    onSheetChanged: load()
    Component.onCompleted: load()

    RoyaltiesBridge {
        id: royalties

        store: Store
    }

    Form {
        FormTextField {
            id: payerField

            objectName: "payerField"
            label: "Who pays (DistroKid, BMI, ASCAP, SoundExchange, publisher…)"
        }

        FormChoice {
            id: sourceField

            objectName: "sourceField"
            label: "Kind"
            model: royalties.sourceNames
            currentIndex: royalties.sourceNames.indexOf(root.source)
            onActivated: index => root.source = royalties.sourceNames[index]
        }

        FormTextField {
            id: workField

            objectName: "workField"
            label: "Song, album, catalog or product"
        }

        FormTextField {
            id: periodField

            objectName: "periodField"
            label: "Statement period (e.g. Q3 2026)"
        }

        MoneyField {
            id: amountField

            objectName: "amountField"
            label: "Expected amount (a guess is fine)"
        }

        FormDateField {
            id: dateField

            objectName: "dateField"
            label: "Expected around"
        }

        FormChoice {
            id: repeatsField

            objectName: "repeatsField"
            label: "Comes"
            model: royalties.repeatNames
            currentIndex: royalties.repeatNames.indexOf(root.repeats)
            onActivated: index => root.repeats = royalties.repeatNames[index]
        }

        AccountPicker {
            id: accountField

            objectName: "accountField"
            label: "Paid into"
            store: Store
        }

        FormRow {
            FormToggle {
                id: followField

                objectName: "followField"
                text: "Late or wrong — I'm following up on it"
            }
        }

        MoneyField {
            id: gotField

            objectName: "gotField"
            visible: root.r.received === true
            label: "Amount received"
        }

        FormTextField {
            id: noteField

            objectName: "noteField"
            label: "Note"
        }

        CaptionText {
            objectName: "problem"
            Layout.fillWidth: true
            visible: root.problem !== ""
            text: root.problem
            color: Tokens.destructive
            wrapMode: Text.WordWrap
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }
}
