import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The parts of every screen and sheet. A key's keyboard, mouse and accessible name are
// the sheet frame's test's and the journeys'.
TestCase {
    id: testCase

    name: "Parts"
    width: 700
    height: 600
    visible: true
    when: windowShown

    FontLoader {
        source: "qrc:/fonts/MaterialIcons-Regular.ttf"
    }

    // Below zero is soft, the rest green; no amount, no text (money texts are tests/core's).
    function test_amountsAndLooks_data() {
        return [{ tag: "zero", amount: "0", text: "$0.00", negative: false },
                { tag: "below zero", amount: "-0.01", text: "-$0.01", negative: true },
                { tag: "no amount", amount: "abc", text: "", negative: false }]
    }
    function test_amountsAndLooks(row) {
        const shown = H.make(testCase, testCase, "AmountText {}", { amount: row.amount })
        compare([shown.text, shown.color], [row.text, row.negative ? Looks.current.soft : Tokens.positive])
        compare([Fmt.money(row.amount) === "", Fmt.parse(row.amount) === "", Fmt.date(NaN)], [row.text === "", row.text === "", ""])
        // An old or unknown look id still opens a look.
        compare([Looks.named("crimson").name, Looks.named("").name], ["Rose Gold", "Studio"])
    }

    // A ligature the font lacks would be laid out as a whole word.
    function test_everySymbolDrawsAGlyphAndOnlyANamedIconIsRead() {
        for (const symbol of Object.keys(Icons.table)) {
            const icon = H.make(testCase, testCase, "Icon { size: 20 }", { symbol: symbol })
            compare([icon.implicitWidth > 10 && icon.implicitWidth < 30, icon.fontInfo.pixelSize], [true, 20],
                    symbol + " is " + icon.implicitWidth + " wide")
        }
        ignoreWarning(/no icon for the symbol no.such.symbol/)
        compare(H.make(testCase, testCase, "Icon { symbol: \"no.such.symbol\" }").text, "")
        verify(H.make(testCase, testCase, "Icon { symbol: \"plus\" }").Accessible.ignored)
        const named = H.make(testCase, testCase, "Icon { symbol: \"plus\"; label: \"Add\" }")
        compare([named.Accessible.ignored, named.Accessible.name], [false, "Add"])
    }

    // Return and Enter save only when allowed, Escape always cancels, Tab runs through
    // the fields, then the keys.
    function test_sheetKeysAndKeyboard() {
        const sheet = H.make(testCase, testCase, "SheetFrame { title: \"New bill\"; saveTitle: \"Add bill\"; "
                             + "canSave: amount.valid; property alias amount: amount; property alias picker: picker; "
                             + "MoneyField { id: amount; label: \"Amount\" } AccountPicker { id: picker; label: \"Pay from\" } }")
        sheet.forceActiveFocus()
        tryVerify(() => sheet.amount.field.activeFocus, 1000, "the first field has the focus")
        const [saves, cancels] = [H.spy(testCase, sheet, "save"), H.spy(testCase, sheet, "cancel")]
        const saveKey = H.key(sheet, "Add bill")
        compare(H.keys(sheet), ["Cancel", "Add bill"], "no destructive key unless asked for")
        keyClick(Qt.Key_Return)
        mouseClick(saveKey)
        keyClick(Qt.Key_Escape)
        compare([saves.count, cancels.count], [0, 1], "nothing saves while saving is not allowed")
        H.type(testCase, "12.50")
        keyClick(Qt.Key_Return)
        keyClick(Qt.Key_Enter)
        for (const [focused, press] of [[sheet.picker.box, 0], [H.key(sheet, "Cancel"), Qt.Key_Space], [saveKey, 0]]) {
            keyClick(Qt.Key_Tab)
            verify(focused.activeFocus, "Tab runs through the fields, then the keys")
            if (press)
                keyClick(press)
        }
        mouseClick(saveKey)
        compare([saves.count, cancels.count], [3, 2])
        // A destructive key, when asked for, comes first, at the leading end.
        sheet.extraTitle = "Delete"
        compare(H.keys(sheet), ["Delete", "Cancel", "Add bill"])
        const extras = H.spy(testCase, sheet, "extra")
        mouseClick(H.key(sheet, "Delete"))
        const box = sheet.picker.box
        compare([extras.count, box.textAt(0), box.textAt(1), box.displayText], [1, "Main checking", "Savings", ""])
        box.forceActiveFocus(Qt.TabFocusReason)
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Down)
        compare(sheet.picker.selection, sheet.picker.accounts.idAt(1))
        // An account no longer offered (archived since) shows nothing chosen.
        sheet.picker.selection = "{00000000-0000-4000-8000-000000000001}"
        compare(box.displayText, "")
    }

    // A long caption stands above its field rather than wrapping into a tall column.
    function test_longCaptionsStandAboveTheirField() {
        const brief = H.make(testCase, testCase, "FormTextField { width: 420; label: \"Payer\" }")
        const lengthy = H.make(testCase, testCase, "FormTextField { width: 420 }",
                               { label: "Who pays (DistroKid, BMI, ASCAP, SoundExchange, publisher…)" })
        compare(lengthy.field.mapToItem(lengthy, 0, 0).x, brief.field.mapToItem(brief, 0, 0).x)
        verify(!brief.stacked && lengthy.stacked)
        verify(lengthy.field.mapToItem(lengthy, 0, 0).y > 0, "the field is under its caption")
        verify(lengthy.height < 3 * brief.height, "row height " + lengthy.height)
    }

    // Page Up from the 31st lands on the month's last day; a picked day keeps the time.
    function test_dateFieldKeysAndGrid() {
        const field = H.make(testCase, testCase, "FormDateField { width: 420; label: \"Due\" }",
                             { date: new Date(2031, 0, 31, 9, 30).getTime() })
        compare(field.button.text, "Jan 31, 2031")
        field.button.forceActiveFocus()
        for (const [key, text] of [[Qt.Key_PageUp, "Feb 28, 2031"], [Qt.Key_Up, "Mar 1, 2031"], [Qt.Key_Down, "Feb 28, 2031"],
                                   [Qt.Key_PageDown, "Jan 28, 2031"]]) {
            keyClick(key)
            compare(field.button.text, text)
        }
        mouseClick(field.button)
        tryCompare(field.popup, "opened", true)
        mouseClick(H.first(field.popup.contentItem, i => i.day === 14 && i.month === 0 && i.year === 2031))
        tryCompare(field.popup, "visible", false)
        const picked = new Date(field.date)
        compare([field.button.text, picked.getHours(), picked.getMinutes()], ["Jan 14, 2031", 9, 30])
    }
}
