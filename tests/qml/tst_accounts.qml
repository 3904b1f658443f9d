import QtQuick
import QtTest
import Coinhall
import "helpers.js" as H

// The Accounts screen and the account editor: budgets, the lock toggle, adding, deleting
// and closing accounts. Balances, titles and reading typed budgets are bridge tests.
TestCase {
    id: testCase

    name: "Accounts"
    width: 1000
    height: 900
    visible: true
    when: windowShown

    function openScreen(): var {
        const screen = H.make(testCase, testCase, "AccountsScreen { anchors.fill: parent }")
        waitForRendering(screen)
        return screen
    }
    function accountNamed(screen: var, name: string): var {
        return screen.bridge.accounts.find(a => a.name === name)
    }
    function editor(account: var): var {
        return H.make(testCase, testCase, "AccountEditor {}", { sheet: CHSheet.editAccount(account) })
    }

    // A budget (spending categories only) is written on leaving its field or on Return.
    function test_budgetsAndTheLockToggle() {
        const screen = openScreen()
        verify(!H.first(screen, c => c.objectName === "budgetRow" && c.name === "Paycheck"))
        const row = H.first(screen, c => c.objectName === "budgetRow" && c.name === "Dining out")
        for (const [typed, key, budget] of [["45", Qt.Key_Tab, "45"], ["$60.00", Qt.Key_Return, "60"]]) {
            H.retype(testCase, row.field, typed)
            keyClick(key)
            compare([row.budget, row.text], [budget, budget])
        }
        const before = Store.requireUnlock
        mouseClick(H.named(screen, "unlockToggle"))
        compare(Store.requireUnlock, !before)
        keyClick(Qt.Key_Space)
        compare(Store.requireUnlock, before)
    }
    // An unreadable starting balance is zero; an account without lines can be deleted.
    function test_addAndDeleteAnAccount() {
        const screen = openScreen()
        const host = H.make(testCase, testCase, "SheetHost { anchors.fill: parent }")
        const closed = H.spy(testCase, host, "done")
        screen.openSheet.connect(sheet => host.sheet = sheet)
        mouseClick(H.named(screen, "editAccountKey"))
        tryVerify(() => host.view !== null)
        compare([host.view.title, host.view.name], ["Change account", "Main checking"])
        keyClick(Qt.Key_Escape)
        compare(closed.count, 1)
        host.sheet = null
        mouseClick(H.key(screen, "Add account"))
        tryVerify(() => host.view !== null)
        const adding = host.view
        tryVerify(() => H.named(adding, "nameField").field.activeFocus, 1000, "the name field has the focus first")
        compare([H.keys(adding), H.key(adding, "Save").enabled], [["Cancel", "Save"], false], "no delete, no name")
        H.type(testCase, "Cash box")
        H.named(adding, "kindPicker").box.forceActiveFocus()
        for (let i = 0; i < 3; ++i)
            keyClick(Qt.Key_Down)
        H.retype(testCase, H.named(adding, "openingField").field, "abc")
        mouseClick(H.key(adding, "Save"))
        compare(closed.count, 2)
        const saved = accountNamed(screen, "Cash box")
        compare([saved.balanceText, screen.bridge.account(saved.id).kind], ["$0.00", "Cash"])
        const change = editor(saved)
        compare([H.keys(change), H.named(change, "deleteNote").visible], [["Delete account", "Cancel", "Save"], false])
        mouseClick(H.key(change, "Delete account"))
        verify(!accountNamed(screen, "Cash box"), "the account is gone")
    }
    function test_accountWithLinesIsClosedNotDeleted() {
        const screen = openScreen()
        const savings = accountNamed(screen, "Savings")
        const importer = H.make(testCase, testCase, "ImportBridge { store: Store }", { account: savings.id })
        importer.open(Qt.resolvedUrl("../data/bank/riverbend_savings.csv"))
        verify(importer.importNow() > 0)
        const closing = editor(savings)
        compare(H.keys(closing), ["Cancel", "Save"], "no delete for an account with lines")
        compare(H.named(closing, "deleteNote").text, "This account has transactions, so it can be closed but not deleted.")
        mouseClick(H.named(closing, "closedToggle"))
        mouseClick(H.key(closing, "Save"))
        verify(H.texts(screen, "accountTitle").indexOf("Savings (closed)") >= 0)
        verify(editor(accountNamed(screen, "Savings")).closed, "the editor shows it closed")
    }
}
