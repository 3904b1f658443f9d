import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The Accounts screen and the account editor as a user works them: budgets and the
// lock toggle, adding and deleting an account, and closing one that has lines.
Item {
    id: stage

    width: 1000
    height: 900

    Component {
        id: screenComponent

        AccountsScreen {
            anchors.fill: parent
        }
    }

    Component {
        id: hostComponent

        SheetHost {
            anchors.fill: parent
        }
    }

    Component {
        id: editorComponent

        AccountEditor {}
    }

    Component {
        id: importerComponent

        ImportBridge {
            store: Store
        }
    }

    Component {
        id: spyComponent

        SignalSpy {}
    }

    TestCase {
        id: testCase
        name: "Accounts"
        when: windowShown
        function spyOn(target: var, signalName: string): var {
            return createTemporaryObject(spyComponent, stage, { target: target, signalName: signalName })
        }
        function visibleKeys(item: var): var {
            return H.findAll(item, c => c.Accessible.role === Accessible.Button && c.visible).map(k => k.title)
        }
        function openScreen(): var {
            const screen = createTemporaryObject(screenComponent, stage)
            waitForRendering(screen)
            return screen
        }
        function accountNamed(screen: var, name: string): var {
            return screen.bridge.accounts.find(a => a.name === name)
        }
        // A budget is written when its field is left or Return is pressed; only spending
        // categories have one. The lock toggle is the Store's setting.
        function test_budgetsAndTheLockToggle() {
            const screen = openScreen()
            verify(!H.first(screen, c => c.objectName === "budgetRow" && c.name === "Paycheck"))
            const row = H.first(screen, c => c.objectName === "budgetRow" && c.name === "Dining out")
            mouseClick(row.field)
            H.type(testCase, "45")
            keyClick(Qt.Key_Tab)
            compare(row.budget, "45")
            H.retype(testCase, row.field, "$60.00")
            keyClick(Qt.Key_Return)
            compare([row.budget, row.text], ["60", "60"])
            H.retype(testCase, row.field, "")
            keyClick(Qt.Key_Return)
            compare(row.budget, "")
            const toggle = H.named(screen, "unlockToggle")
            const before = Store.requireUnlock
            mouseClick(toggle)
            compare(Store.requireUnlock, !before)
            keyClick(Qt.Key_Space)
            compare(Store.requireUnlock, before)
        }
        // The screen's keys open the editor through the sheet host; a new account with an
        // unreadable starting balance starts at zero; one without lines can be deleted.
        function test_addAndDeleteAnAccount() {
            const screen = openScreen()
            const host = createTemporaryObject(hostComponent, stage)
            const closed = spyOn(host, "done")
            screen.openSheet.connect(sheet => host.sheet = sheet)
            mouseClick(H.named(screen, "editAccountKey"))
            tryVerify(() => host.view !== null)
            compare([host.view.title, host.view.name], ["Change account", "Main checking"])
            keyClick(Qt.Key_Escape)
            compare(closed.count, 1)
            host.sheet = null
            mouseClick(H.key(screen, "Add account"))
            tryVerify(() => host.view !== null)
            const editor = host.view
            compare(editor.title, "New account")
            tryVerify(() => H.named(editor, "nameField").field.activeFocus, 1000, "the name field has the focus first")
            compare(visibleKeys(editor), ["Cancel", "Save"], "a new account offers no delete")
            verify(!H.key(editor, "Save").enabled, "nothing to save without a name")
            H.type(testCase, "Cash box")
            const kind = H.named(editor, "kindPicker")
            kind.box.forceActiveFocus()
            for (let i = 0; i < 3; ++i)
                keyClick(Qt.Key_Down)
            compare(kind.currentText, "Cash")
            H.retype(testCase, H.named(editor, "openingField").field, "abc")
            mouseClick(H.key(editor, "Save"))
            compare(closed.count, 2)
            const saved = accountNamed(screen, "Cash box")
            compare(saved.balanceText, "$0.00")
            compare(screen.bridge.account(saved.id).kind, "Cash")
            const change = createTemporaryObject(editorComponent, stage, { sheet: CHSheet.editAccount(saved) })
            verify(!H.named(change, "deleteNote").visible)
            compare(visibleKeys(change), ["Delete account", "Cancel", "Save"])
            mouseClick(H.key(change, "Delete account"))
            verify(!accountNamed(screen, "Cash box"), "the account is gone")
        }
        function test_accountWithLinesIsClosedNotDeleted() {
            const screen = openScreen()
            const savings = accountNamed(screen, "Savings")
            const importer = createTemporaryObject(importerComponent, stage, { account: savings.id })
            importer.open(Qt.resolvedUrl("../data/bank/riverbend_savings.csv"))
            verify(importer.importNow() > 0)
            const editor = createTemporaryObject(editorComponent, stage, { sheet: CHSheet.editAccount(savings) })
            compare(visibleKeys(editor), ["Cancel", "Save"], "no delete for an account with lines")
            compare(H.named(editor, "deleteNote").text, "This account has transactions, so it can be closed but not deleted.")
            mouseClick(H.named(editor, "closedToggle"))
            mouseClick(H.key(editor, "Save"))
            verify(H.texts(screen, "accountTitle").indexOf("Savings (closed)") >= 0)
            const reopen = createTemporaryObject(editorComponent, stage,
                                                 { sheet: CHSheet.editAccount(accountNamed(screen, "Savings")) })
            verify(reopen.closed)
            mouseClick(H.named(reopen, "closedToggle"))
            mouseClick(H.key(reopen, "Save"))
            verify(H.texts(screen, "accountTitle").indexOf("Savings") >= 0)
        }
    }
}
