import QtQuick
import QtQuick.Layouts
import Coinhall

// The account editor: a new account, or a change to one. Saving reads the starting
// balance as typed (text that is no amount counts as 0). An account that has
// transactions can be closed but not deleted, and the editor says so.
SheetFrame {
    id: root

    // The sheet case that opened this editor (CHSheet): newAccount, or editAccount
    // with the account as `record` (at least its id).
    property var sheet
    readonly property bool isNew: !sheet || sheet.kind !== "editAccount"
    // The edited account as the Book has it (see AccountsBridge.account), read by load().
    property var stored: ({ found: false })
    // The id of the edited account; empty for a new one.
    property string accountId
    readonly property bool hasTransactions: stored.found === true && stored.hasTransactions === true
    // Edit state.
    property alias name: nameRow.text
    property alias kindIndex: kindRow.currentIndex
    property alias opening: openingField.text
    property alias closed: closedToggle.checked

    // Closes the sheet.
    signal done

    width: 520
    title: isNew ? "New account" : "Change account"
    saveTitle: "Save"
    canSave: name.trim() !== ""
    extraTitle: !isNew && !hasTransactions ? "Delete account" : ""

    onSave: {
        bridge.saveAccount(accountId, name.trim(), bridge.kinds[Math.max(0, kindIndex)], opening, closed)
        done()
    }
    onCancel: done()
    onExtra: {
        bridge.deleteAccount(accountId)
        done()
    }

    // Fills the form from the account, as the Book has it; a record the Book does not
    // know is taken as given; a new account starts empty. Reads `sheet` itself: the
    // bindings that follow it may not have caught up yet.
    function load() {
        const editing = !!sheet && sheet.kind === "editAccount" && !!sheet.record
        stored = bridge.account(editing ? String(sheet.record.id) : "")
        const from = !editing ? {} : stored.found ? stored : sheet.record
        accountId = editing ? String(from.id || "") : ""
        name = from.name || ""
        kindIndex = Math.max(0, bridge.kinds.indexOf(from.kind || ""))
        opening = from.opening !== undefined && from.opening !== "0" ? String(from.opening) : ""
        closed = from.closed === true
    }

    // The sheet host hands the case over after the editor is made.
    onSheetChanged: load()
    Component.onCompleted: load()

    AccountsBridge {
        id: bridge

        store: Store
    }

    FormTextField {
        id: nameRow

        objectName: "nameField"
        label: "Name (e.g. Chase checking, Business savings)"
    }

    FormChoice {
        id: kindRow

        objectName: "kindPicker"
        label: "Kind"
        model: bridge.kinds
    }

    MoneyField {
        id: openingField

        objectName: "openingField"
        label: "Starting balance"
    }

    CaptionText {
        Layout.fillWidth: true
        Layout.leftMargin: Tokens.fieldLabelWidth + Tokens.spaceM
        text: "Enter what the account had on the day you start using Coinhall. For a credit card, enter what you owe as a minus number (e.g. -450)."
        wrapMode: Text.WordWrap
    }

    FormRow {
        FormToggle {
            id: closedToggle

            objectName: "closedToggle"
            text: "Closed / hide this account"
        }
    }

    CaptionText {
        objectName: "deleteNote"
        Layout.fillWidth: true
        visible: root.hasTransactions
        text: "This account has transactions, so it can be closed but not deleted."
        color: Looks.current.soft
        wrapMode: Text.WordWrap
    }
}
