import QtQuick
import Coinhall

// Shows the open sheet (a CHSheet value) over a dimmed window, centred, and keeps
// every click and wheel turn away from what lies beneath. The help is not among the
// sheets: it has a window of its own (CHHelpWindow). The sheet's view closes
// itself through its `done` signal, which ends here as `done`.
FocusScope {
    id: root

    // The sheet to show; null shows nothing.
    property var sheet: null
    // The look to draw with.
    property var look: Looks.current
    // The shown sheet's view, null when none is open.
    readonly property Item view: loader.item

    // The sheet's view asked to close.
    signal done

    // The view for each case of CHSheet.
    function componentFor(kind: string): Component {
        switch (kind) {
        case "newTx":
        case "editTx":
            return txEditor
        case "transfer":
            return transferEditor
        case "newBill":
        case "editBill":
            return billEditor
        case "payBill":
            return payBill
        case "newRoyalty":
        case "editRoyalty":
            return royaltyEditor
        case "receiveRoyalty":
            return receiveRoyalty
        case "newAccount":
        case "editAccount":
            return accountEditor
        case "importCSV":
            return importSheet
        case "settings":
            return settingsSheet
        }
        console.warn("SheetHost: no sheet for", kind)
        return null
    }

    // A new sheet gets a new view, even when it is of the same kind as the last one.
    onSheetChanged: {
        loader.sourceComponent = null
        if (sheet)
            loader.sourceComponent = componentFor(sheet.kind)
    }

    visible: loader.item !== null

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.55)
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    Loader {
        id: loader

        anchors.centerIn: parent
        focus: true
        onLoaded: {
            item.sheet = root.sheet
            item.done.connect(root.done)
            item.forceActiveFocus()
        }
    }

    Component {
        id: txEditor

        TxEditor {}
    }
    Component {
        id: transferEditor

        TransferEditor {}
    }
    Component {
        id: billEditor

        BillEditor {}
    }
    Component {
        id: payBill

        PayBillView {}
    }
    Component {
        id: royaltyEditor

        RoyaltyEditor {}
    }
    Component {
        id: receiveRoyalty

        ReceiveRoyaltyView {}
    }
    Component {
        id: accountEditor

        AccountEditor {}
    }
    Component {
        id: importSheet

        ImportSheet {}
    }
    // Kept for a settings panel; nothing opens it yet.
    Component {
        id: settingsSheet

        SheetFrame {
            property var sheet
            signal done

            title: "Settings"
            canSave: false
            onCancel: done()

            EmptyNote {
                text: "The lock and backup settings are on the Accounts screen."
            }
        }
    }
}
