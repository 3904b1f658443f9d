import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The royalties screen and its sheets as a user meets them: adding a royalty,
// receiving it, following one up, and who paid this year.
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
        id: receiveComponent

        ReceiveRoyaltyView {}
    }
    Component {
        id: screenComponent

        RoyaltiesScreen {
            anchors.fill: parent
        }
    }
    Component {
        id: spyComponent

        SignalSpy {}
    }

    TestCase {
        id: testCase

        name: "Royalties"
        when: windowShown

        function addRoyalty(payer: string, amount: string, expectedDate: double, fields: var): var {
            verify(data.saveRoyalty(Object.assign(data.newRoyalty(),
                                                  { payer: payer, amount: amount, expectedDate: expectedDate },
                                                  fields || {})))
            return data.expected.find(r => r.payer === payer)
        }

        function spyOn(target: var, signalName: string): var {
            return createTemporaryObject(spyComponent, stage, { target: target, signalName: signalName })
        }

        // Rows are placed by a positioner on the next polish: wait for it before clicking.
        function row(screen: var, kind: string, payer: string): var {
            const found = H.first(screen, i => i.objectName === kind && i.royalty.payer === payer)
            if (found && isPolishScheduled(found.parent))
                waitForItemPolished(found.parent)
            return found
        }

        function init() {
            for (const r of data.expected.concat(data.received))
                data.deleteRoyalty(r.id)
            Store.status = ""
        }

        function test_addARoyaltyFromTheEditor() {
            const editor = createTemporaryObject(editorComponent, stage, { sheet: CHSheet.newRoyalty() })
            const done = spyOn(editor, "done")
            compare(editor.title, "Royalty you're expecting")
            compare(editor.source, "Streaming / distributor")
            compare(editor.repeats, "One time")
            verify(!findChild(editor, "gotField").visible, "nothing received yet")
            const save = H.key(editor, "Save")
            verify(!save.enabled, "no payer yet")

            H.retype(testCase, findChild(editor, "payerField").field, "BMI")
            verify(save.enabled)
            H.retype(testCase, findChild(editor, "workField").field, "Night Ferry")
            H.retype(testCase, findChild(editor, "periodField").field, "Q2")
            H.retype(testCase, findChild(editor, "amountField").field, "about 400")
            mouseClick(save)
            compare(done.count, 0, "an amount that cannot be read keeps the sheet open")
            compare(findChild(editor, "problem").text,
                    "The expected amount is not an amount. Type it like 250.00, or leave it empty.")
            compare(data.expected.length, 0)

            H.retype(testCase, findChild(editor, "amountField").field, "420")
            editor.repeats = "Every 3 months"
            mouseClick(save)
            compare(done.count, 1)

            const screen = createTemporaryObject(screenComponent, stage)
            const line = row(screen, "expectedRow", "BMI")
            verify(line)
            compare(findChild(line, "payerText").text, "BMI")
            compare(findChild(line, "workText").text, "Night Ferry · Q2")
            compare(findChild(line, "amountText").text, "$420.00")
            compare(findChild(screen, "stillExpected").text, "$420.00")
            verify(findChild(screen, "noReceivedNote").visible)
        }

        function test_receivingBooksTheMoneyAndLinesUpTheNext() {
            const distro = addRoyalty("DistroKid", "600", new Date(2031, 2, 10, 9).getTime(),
                                      { repeats: "Every 3 months", work: "Catalog streams" })
            const screen = createTemporaryObject(screenComponent, stage)
            const opened = spyOn(screen, "openSheet")
            mouseClick(findChild(row(screen, "expectedRow", "DistroKid"), "gotItKey"))
            compare(opened.count, 1)
            compare(opened.signalArguments[0][0].kind, "receiveRoyalty")

            const sheet = createTemporaryObject(receiveComponent, stage, { sheet: opened.signalArguments[0][0] })
            compare(sheet.title, "Royalty from DistroKid")
            compare(findChild(sheet, "amountField").text, "600.00")
            compare(findChild(sheet, "explanation").text,
                    "It's added to your income under Royalties. The next quarterly statement is lined up automatically.")
            const log = H.key(sheet, "Log it")
            verify(log.enabled)
            H.retype(testCase, findChild(sheet, "amountField").field, "0")
            verify(!log.enabled, "nothing came in")
            H.retype(testCase, findChild(sheet, "amountField").field, "-5")
            verify(!log.enabled)
            H.retype(testCase, findChild(sheet, "amountField").field, "618.75")
            mouseClick(log)

            compare(Store.status, "Logged $618.75 from DistroKid.")
            const received = row(screen, "receivedRow", "DistroKid")
            verify(received, "listed as received")
            compare(findChild(received, "amountText").text, "$618.75")
            compare(findChild(received, "sideText").text, "+$18.75 vs expected")
            // The next statement, three months on, waits under Expected.
            const next = data.expected.find(r => r.payer === "DistroKid")
            compare(next.expectedDateText, "Jun 10, 2031")
            verify(row(screen, "expectedRow", "DistroKid"))

            const payer = findChild(screen, "payerRow")
            compare(payer.Accessible.name, "DistroKid, $618.75")
            compare(findChild(screen, "receivedThisYear").text, "$618.75")
        }

        function test_followingUpStaysExpectedWithItsMark() {
            const sx = addRoyalty("SoundExchange", "185.50", new Date(2031, 0, 5, 9).getTime())
            const editor = createTemporaryObject(editorComponent, stage, { sheet: CHSheet.editRoyalty(sx) })
            compare(editor.title, "Change royalty")
            compare(findChild(editor, "amountField").text, "185.50")
            mouseClick(findChild(editor, "followField"))
            mouseClick(H.key(editor, "Save"))

            const screen = createTemporaryObject(screenComponent, stage)
            const line = row(screen, "expectedRow", "SoundExchange")
            verify(line, "still under Expected")
            compare(findChild(line, "payerText").text, "SoundExchange · FOLLOWING UP")
            compare(findChild(screen, "stillExpected").text, "$185.50")

            // Switching it off goes back to plain "Expected".
            // Given its sheet once made, as the sheet host does.
            const again = createTemporaryObject(editorComponent, stage)
            again.sheet = CHSheet.editRoyalty(data.expected[0])
            compare(again.payer, "SoundExchange")
            verify(again.followingUp)
            mouseClick(findChild(again, "followField"))
            mouseClick(H.key(again, "Save"))
            compare(data.expected[0].status, "Expected")
        }

        function test_deleteFromTheContextMenuAndTheEditor() {
            addRoyalty("ASCAP", "50", new Date(2031, 3, 1, 9).getTime())
            const bmi = addRoyalty("BMI", "75", new Date(2031, 4, 1, 9).getTime())
            const screen = createTemporaryObject(screenComponent, stage)
            const line = row(screen, "expectedRow", "ASCAP")
            mouseClick(line, 30, line.height / 2, Qt.RightButton)
            const menu = line.menu
            tryCompare(menu, "opened", true)
            compare(menu.itemAt(2).text, "Delete")
            mouseClick(menu.itemAt(2))
            compare(data.expected.length, 1)
            compare(data.expected[0].payer, "BMI")

            const editor = createTemporaryObject(editorComponent, stage, { sheet: CHSheet.editRoyalty(bmi) })
            const done = spyOn(editor, "done")
            mouseClick(H.key(editor, "Delete"))
            compare(done.count, 1)
            compare(data.expected.length, 0)
            verify(findChild(screen, "noExpectedNote").visible)
        }

    }
}
