import QtQuick
import QtTest
import Coinhall

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

        function openSheet(properties: var): var {
            const sheet = createTemporaryObject(sheetComponent, stage, properties || {})
            sheet.forceActiveFocus()
            tryVerify(() => sheet.amountField.field.activeFocus, 1000, "the first field has the focus")
            return sheet
        }

        function findKey(item: var, title: string): var {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i]
                if (child.title === title && child.Accessible.role === Accessible.Button)
                    return child
                const found = findKey(child, title)
                if (found)
                    return found
            }
            return null
        }

        function visibleKeys(item: var): var {
            let titles = []
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i]
                if (!child.visible)
                    continue
                if (child.Accessible.role === Accessible.Button)
                    titles.push(child.title)
                titles = titles.concat(visibleKeys(child))
            }
            return titles
        }

        function type(text: string) {
            for (const c of text)
                keyClick(c)
        }

        function test_returnSavesOnlyWhenSavingIsAllowed() {
            const sheet = openSheet()
            const saves = spyOn(sheet, "save")
            keyClick(Qt.Key_Return)
            compare(saves.count, 0, "Return does nothing while saving is not allowed")

            type("12.50")
            verify(sheet.canSave)
            keyClick(Qt.Key_Return)
            compare(saves.count, 1)
            keyClick(Qt.Key_Enter)
            compare(saves.count, 2)
        }

        function test_escapeAlwaysCancels() {
            const sheet = openSheet()
            const cancels = spyOn(sheet, "cancel")
            const saves = spyOn(sheet, "save")
            keyClick(Qt.Key_Escape)
            compare(cancels.count, 1)
            type("3")
            keyClick(Qt.Key_Escape)
            compare(cancels.count, 2)
            compare(saves.count, 0)
        }

        function test_buttonRow() {
            const sheet = openSheet()
            const saves = spyOn(sheet, "save")
            const cancels = spyOn(sheet, "cancel")
            const saveKey = findKey(sheet, "Add bill")
            const cancelKey = findKey(sheet, "Cancel")
            verify(saveKey && cancelKey)
            compare(visibleKeys(sheet), ["Cancel", "Add bill"], "no destructive key unless asked for")

            mouseClick(saveKey)
            compare(saves.count, 0, "a disabled confirming key does nothing")
            sheet.amountField.text = "40"
            mouseClick(saveKey)
            compare(saves.count, 1)
            mouseClick(cancelKey)
            compare(cancels.count, 1)

            // A destructive key, when asked for, comes first, at the leading end.
            sheet.extraTitle = "Delete"
            const deleteKey = findKey(sheet, "Delete")
            compare(visibleKeys(sheet), ["Delete", "Cancel", "Add bill"])
            verify(deleteKey.x < cancelKey.x)
            const extras = spyOn(sheet, "extra")
            mouseClick(deleteKey)
            compare(extras.count, 1)
        }

        function test_tabOrderRunsThroughFieldsThenKeys() {
            const sheet = openSheet()
            compare(sheet.amountField.field.Accessible.name, "Amount")
            compare(sheet.accountPicker.box.Accessible.name, "Pay from")
            sheet.amountField.text = "1"
            keyClick(Qt.Key_Tab)
            verify(sheet.accountPicker.box.activeFocus, "the picker follows the amount")
            keyClick(Qt.Key_Tab)
            verify(findKey(sheet, "Cancel").activeFocus)
            keyClick(Qt.Key_Tab)
            verify(findKey(sheet, "Add bill").activeFocus)
        }

        // Fields line up whatever their captions; a long caption stands above its field
        // rather than wrapping into a tall column of single words.
        function test_longCaptionsStandAboveTheirField() {
            const rows = createTemporaryObject(rowsComponent, stage)
            const left = field => field.mapToItem(rows, 0, 0).x
            compare(left(rows.lengthy.field), left(rows.brief.field))
            verify(!rows.brief.stacked)
            verify(rows.lengthy.stacked)
            const top = rows.lengthy.field.mapToItem(rows.lengthy, 0, 0).y
            verify(top > 0, "the field is under its caption")
            verify(rows.lengthy.height < 3 * rows.brief.height, "row height " + rows.lengthy.height)
            compare(rows.lengthy.field.Accessible.name, rows.lengthy.label)
        }

        function test_accountPickerOffersActiveAccountsInOrder() {
            const sheet = openSheet()
            const picker = sheet.accountPicker
            compare(picker.accounts.count, 2)
            compare(picker.box.textAt(0), "Main checking")
            compare(picker.box.textAt(1), "Savings")
            compare(picker.box.currentIndex, -1, "nothing chosen while the selection is empty")
            compare(picker.box.displayText, "")

            picker.box.forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Down)
            compare(picker.selection, picker.accounts.idAt(0))
            keyClick(Qt.Key_Down)
            compare(picker.selection, picker.accounts.idAt(1))
            compare(picker.box.displayText, "Savings")
            // An account no longer offered (archived since) shows nothing chosen.
            picker.selection = "{00000000-0000-4000-8000-000000000001}"
            compare(picker.box.currentIndex, -1)
            compare(picker.box.displayText, "")
        }
    }
}
