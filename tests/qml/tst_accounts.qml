import QtQuick
import QtTest
import Coinhall

// The Accounts screen and the account editor as a user works them: the account
// lines, the lock toggle, the budget rows' commit rules, adding, changing and
// deleting an account, and the rule that an account with lines is only closed.
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

        // Every item under `item` (visual children, depth first) that `test` accepts.
        function findAll(item: var, test: var): var {
            let found = []
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i]
                if (test(child))
                    found.push(child)
                found = found.concat(findAll(child, test))
            }
            return found
        }

        function visibleKeys(item: var): var {
            return findAll(item, c => c.Accessible.role === Accessible.Button && c.visible).map(k => k.title)
        }

        function findKey(item: var, title: string): var {
            return findAll(item, c => c.title === title && c.Accessible.role === Accessible.Button)[0] || null
        }

        function budgetRow(screen: var, name: string): var {
            return findAll(screen, c => c.objectName === "budgetRow" && c.name === name)[0]
        }

        function accountTitles(screen: var): var {
            return findAll(screen, c => c.objectName === "accountTitle").map(t => t.text)
        }

        // Clicks into `field` and types `text` at the end.
        function type(field: var, text: string) {
            mouseClick(field)
            verify(field.activeFocus, "typing into " + field.Accessible.name)
            for (const c of text)
                keyClick(c)
        }

        // Puts the focus in `field`, replaces its text by typing, and presses Return.
        function typeAndCommit(field: var, text: string) {
            mouseClick(field)
            verify(field.activeFocus)
            field.selectAll()
            keyClick(Qt.Key_Delete)
            for (const c of text)
                keyClick(c)
            keyClick(Qt.Key_Return)
        }

        function openScreen(): var {
            const screen = createTemporaryObject(screenComponent, stage)
            waitForRendering(screen)
            return screen
        }

        function openEditor(sheet: var): var {
            const editor = createTemporaryObject(editorComponent, stage, { sheet: sheet })
            editor.forceActiveFocus()
            const name = findAll(editor, c => c.objectName === "nameField")[0]
            tryVerify(() => name.field.activeFocus, 1000, "the name field has the focus first")
            // The wrapped hint settles the sheet's height only once it is drawn.
            waitForRendering(editor)
            return editor
        }

        function accountNamed(screen: var, name: string): var {
            return screen.bridge.accounts.find(a => a.name === name)
        }

        function test_keysOpenTheEditorThroughTheSheetHost() {
            const screen = openScreen()
            const host = createTemporaryObject(hostComponent, stage)
            const closed = spyOn(host, "done")
            screen.openSheet.connect(sheet => host.sheet = sheet)

            mouseClick(findAll(screen, c => c.objectName === "editAccountKey")[0])
            tryVerify(() => host.view !== null)
            compare(host.view.title, "Change account")
            compare(host.view.name, "Main checking")
            compare(findAll(host.view, c => c.objectName === "kindPicker")[0].currentText, "Checking")
            keyClick(Qt.Key_Escape)
            compare(closed.count, 1)

            host.sheet = null
            mouseClick(findKey(screen, "Add account"))
            tryVerify(() => host.view !== null)
            compare(host.view.title, "New account")
            compare(host.view.name, "")
        }

        // A budget is written when the field is left or Return is pressed (the rules
        // of what clears it are the bridge's); only spending categories have one.
        function test_budgetRowCommitsWhenLeft() {
            const screen = openScreen()
            verify(!budgetRow(screen, "Paycheck"), "no budget row for an income category")
            const row = budgetRow(screen, "Dining out")
            compare(row.field.placeholderText, "no limit")
            mouseClick(row.field)
            for (const c of "45")
                keyClick(c)
            keyClick(Qt.Key_Tab)
            compare(row.budget, "45")
            typeAndCommit(row.field, "$60.00")
            compare(row.budget, "60")
            compare(row.text, "60")
            typeAndCommit(row.field, "")
            compare(row.budget, "")
        }

        function test_unlockToggleIsTheStoresSetting() {
            const screen = openScreen()
            const toggle = findAll(screen, c => c.objectName === "unlockToggle")[0]
            compare(toggle.text, "Ask for your account password when Coinhall opens")
            compare(toggle.checked, Store.requireUnlock)
            const before = Store.requireUnlock
            mouseClick(toggle)
            compare(Store.requireUnlock, !before)
            keyClick(Qt.Key_Space)
            compare(Store.requireUnlock, before)
            verify(findKey(screen, "Show backups folder"))
        }

        function test_newAccountWithUnreadableStartingBalanceStartsAtZero() {
            const screen = openScreen()
            const editor = openEditor(CHSheet.newAccount())
            const done = spyOn(editor, "done")
            compare(editor.title, "New account")
            compare(visibleKeys(editor), ["Cancel", "Save"], "a new account offers no delete")
            verify(!findKey(editor, "Save").enabled, "nothing to save without a name")

            type(findAll(editor, c => c.objectName === "nameField")[0].field, "Cash box")
            const kind = findAll(editor, c => c.objectName === "kindPicker")[0]
            kind.box.forceActiveFocus()
            for (let i = 0; i < 3; ++i)
                keyClick(Qt.Key_Down)
            compare(kind.currentText, "Cash")
            type(findAll(editor, c => c.objectName === "openingField")[0].field, "abc")
            mouseClick(findKey(editor, "Save"))
            compare(done.count, 1)
            const saved = accountNamed(screen, "Cash box")
            verify(saved, "the new account is listed")
            compare(saved.balanceText, "$0.00")
            compare(screen.bridge.account(saved.id).kind, "Cash")
        }

        function test_accountWithoutLinesCanBeDeleted() {
            const screen = openScreen()
            const added = openEditor(CHSheet.newAccount())
            added.name = "Old wallet"
            added.opening = "-12.5"
            mouseClick(findKey(added, "Save"))
            const wallet = accountNamed(screen, "Old wallet")
            compare(wallet.balanceText, "-$12.50")

            const editor = openEditor(CHSheet.editAccount(wallet))
            compare(editor.title, "Change account")
            compare(editor.name, "Old wallet")
            compare(editor.opening, "-12.5")
            verify(!findAll(editor, c => c.objectName === "deleteNote")[0].visible)
            compare(visibleKeys(editor), ["Delete account", "Cancel", "Save"])
            const deleteKey = findKey(editor, "Delete account")
            mouseClick(deleteKey)
            verify(!accountNamed(screen, "Old wallet"), "the account is gone")
        }

        function test_accountWithLinesIsClosedNotDeleted() {
            const screen = openScreen()
            const savings = accountNamed(screen, "Savings")
            const importer = createTemporaryObject(importerComponent, stage, { account: savings.id })
            importer.open(Qt.resolvedUrl("../data/bank/riverbend_savings.csv"))
            compare(importer.importNow(), 7)

            const editor = openEditor(CHSheet.editAccount(savings))
            compare(visibleKeys(editor), ["Cancel", "Save"], "no delete for an account with lines")
            const note = findAll(editor, c => c.objectName === "deleteNote")[0]
            verify(note.visible)
            compare(note.text, "This account has transactions, so it can be closed but not deleted.")

            mouseClick(findAll(editor, c => c.objectName === "closedToggle")[0])
            mouseClick(findKey(editor, "Save"))
            compare(accountTitles(screen).indexOf("Savings (closed)") >= 0, true)
            compare(accountNamed(screen, "Savings").countText, "0 transactions this month")

            const reopen = openEditor(CHSheet.editAccount(accountNamed(screen, "Savings")))
            verify(reopen.closed)
            reopen.closed = false
            mouseClick(findKey(reopen, "Save"))
            verify(accountTitles(screen).indexOf("Savings") >= 0)
        }
    }
}
