import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The royalty editor's own rules and the rows' menu. Receiving is a real-window journey
// (tests/journeys); the texts and the saving of fields are bridge tests.
Item {
    id: stage

    width: 1100
    height: 760

    RoyaltiesBridge {
        id: data

        store: Store
    }

    Component {
        id: editorComponent

        RoyaltyEditor {}
    }
    Component {
        id: screenComponent

        RoyaltiesScreen {
            anchors.fill: parent
        }
    }

    TestCase {
        id: testCase

        name: "Royalties"
        when: windowShown

        // Rows are placed by a positioner on the next polish: wait for it before clicking.
        function row(screen: var, payer: string): var {
            const found = H.first(screen, i => i.objectName === "expectedRow" && i.royalty.payer === payer)
            if (found && isPolishScheduled(found.parent))
                waitForItemPolished(found.parent)
            return found
        }

        function test_editThenDeleteFromTheMenuAndTheEditor() {
            const editor = createTemporaryObject(editorComponent, stage, { sheet: CHSheet.newRoyalty() })
            const save = H.key(editor, "Save")
            verify(!save.enabled, "no payer yet")
            H.retype(testCase, findChild(editor, "payerField").field, "BMI")
            H.retype(testCase, findChild(editor, "amountField").field, "about 400")
            mouseClick(save)
            compare(findChild(editor, "problem").text,
                    "The expected amount is not an amount. Type it like 250.00, or leave it empty.")
            compare(data.expected.length, 0, "the sheet stays open and nothing is saved")
            H.retype(testCase, findChild(editor, "amountField").field, "420")
            mouseClick(findChild(editor, "followField"))
            mouseClick(save)
            verify(data.expected.find(r => r.payer === "BMI").payerLine.endsWith("FOLLOWING UP"))
            verify(data.saveRoyalty(Object.assign(data.newRoyalty(), { payer: "ASCAP", amount: "50" })))

            // A sheet made once and given a royalty later, as the sheet host does, shows it.
            const again = createTemporaryObject(editorComponent, stage)
            again.sheet = CHSheet.editRoyalty(data.expected.find(r => r.payer === "BMI"))
            verify(again.followingUp)
            compare(findChild(again, "amountField").text, "420.00")
            mouseClick(H.key(again, "Delete"))
            compare(data.expected.map(r => r.payer), ["ASCAP"])

            const screen = createTemporaryObject(screenComponent, stage)
            const line = row(screen, "ASCAP")
            mouseClick(line, 30, line.height / 2, Qt.RightButton)
            tryCompare(line.menu, "opened", true)
            compare(line.menu.itemAt(2).text, "Delete")
            mouseClick(line.menu.itemAt(2))
            compare(data.expected.length, 0)
            verify(findChild(screen, "noExpectedNote").visible)
        }
    }
}
