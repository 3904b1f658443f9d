import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H
// The frame every sheet stands in: its keys, its keyboard, its rows and its account picker.

Item {
    id: stage

    width: 700
    height: 600

    Component {
        id: sheetComponent

        SheetFrame {
            property alias amountField: amountField
            property alias accountPicker: accountPicker

            title: "New bill"
            saveTitle: "Add bill"
            canSave: amountField.valid

            MoneyField {
                id: amountField

                label: "Amount"
            }

            AccountPicker {
                id: accountPicker

                label: "Pay from"
            }
        }
    }

    // Form rows with a short caption and with one too long for the caption column.
    Component {
        id: rowsComponent

        Column {
            width: 420

            property alias brief: brief
            property alias lengthy: lengthy

            FormTextField {
                id: brief

                width: parent.width
                label: "Payer"
            }
            FormTextField {
                id: lengthy

                width: parent.width
                label: "Who pays (DistroKid, BMI, ASCAP, SoundExchange, publisher…)"
            }
        }
    }

    Component {
        id: spyComponent

        SignalSpy {}
    }

    TestCase {
        id: testCase
        name: "SheetFrame"
        when: windowShown
        function spyOn(target: var, signalName: string): var {
            return createTemporaryObject(spyComponent, stage, { target: target, signalName: signalName })
        }
        function visibleKeys(item: var): var {
            return H.findAll(item, c => c.visible && c.Accessible.role === Accessible.Button).map(k => k.title)
        }
        // Return and Enter save only when saving is allowed, Escape always cancels, the
        // keys do what they say, and Tab runs through the fields, then the keys.
        function test_keysAndKeyboard() {
            const sheet = createTemporaryObject(sheetComponent, stage)
            sheet.forceActiveFocus()
            tryVerify(() => sheet.amountField.field.activeFocus, 1000, "the first field has the focus")
            const saves = spyOn(sheet, "save")
            const cancels = spyOn(sheet, "cancel")
            const saveKey = H.key(sheet, "Add bill")
            compare(visibleKeys(sheet), ["Cancel", "Add bill"], "no destructive key unless asked for")
            keyClick(Qt.Key_Return)
            mouseClick(saveKey)
            compare(saves.count, 0, "nothing saves while saving is not allowed")
            keyClick(Qt.Key_Escape)
            compare(cancels.count, 1)
            H.type(testCase, "12.50")
            keyClick(Qt.Key_Return)
            keyClick(Qt.Key_Enter)
            compare(saves.count, 2)
            compare(sheet.amountField.field.Accessible.name, "Amount")
            keyClick(Qt.Key_Tab)
            verify(sheet.accountPicker.box.activeFocus, "the picker follows the amount")
            keyClick(Qt.Key_Tab)
            verify(H.key(sheet, "Cancel").activeFocus)
            keyClick(Qt.Key_Space)
            compare(cancels.count, 2)
            keyClick(Qt.Key_Tab)
            verify(saveKey.activeFocus)
            mouseClick(saveKey)
            compare(saves.count, 3)
            // A destructive key, when asked for, comes first, at the leading end.
            sheet.extraTitle = "Delete"
            compare(visibleKeys(sheet), ["Delete", "Cancel", "Add bill"])
            const extras = spyOn(sheet, "extra")
            mouseClick(H.key(sheet, "Delete"))
            compare(extras.count, 1)
            // The picker offers the active accounts in order and starts with none chosen.
            const picker = sheet.accountPicker
            compare([picker.box.textAt(0), picker.box.textAt(1), picker.box.displayText], ["Main checking", "Savings", ""])
            picker.box.forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            compare(picker.selection, picker.accounts.idAt(1))
            // An account no longer offered (archived since) shows nothing chosen.
            picker.selection = "{00000000-0000-4000-8000-000000000001}"
            compare(picker.box.displayText, "")
        }
        // Fields line up whatever their captions; a long caption stands above its field
        // rather than wrapping into a tall column of single words.
        function test_longCaptionsStandAboveTheirField() {
            const rows = createTemporaryObject(rowsComponent, stage)
            const left = field => field.mapToItem(rows, 0, 0).x
            compare(left(rows.lengthy.field), left(rows.brief.field))
            verify(!rows.brief.stacked && rows.lengthy.stacked)
            verify(rows.lengthy.field.mapToItem(rows.lengthy, 0, 0).y > 0, "the field is under its caption")
            verify(rows.lengthy.height < 3 * rows.brief.height, "row height " + rows.lengthy.height)
        }
    }
}
