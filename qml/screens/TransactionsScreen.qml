pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Dialogs
import QtQuick.Layouts
import Coinhall

// The register: every ledger line, newest first, narrowed by account, flow, a search
// and "This month only", with the filtered lines' count and sums, the export key, and
// per line a double click to change it and a menu to mark it cleared or delete it.
// From the keyboard: Up and Down move through the lines, Return opens the current
// one, the Menu key (or Shift+F10) opens its menu.
Item {
    id: root

    // The account whose lines are listed (QUuid text); empty for all accounts.
    property string accountId: ""

    readonly property alias lines: lines
    readonly property alias list: list
    readonly property alias searchField: searchField
    readonly property alias flowPicker: flowPicker
    readonly property alias monthToggle: monthToggle
    readonly property alias accountPicker: accountPicker
    readonly property alias menu: menu
    readonly property alias exportDialog: exportDialog
    // "All accounts" and then every account of the Book.
    readonly property var accountChoices: [{ id: "", name: "All accounts" }].concat(
        ledger.accounts.map(a => ({ id: a.id, name: a.name })))

    // Asks the root view to open a sheet (a CHSheet value).
    signal openSheet(var sheet)
    // Asks the root view to switch to another screen (its key, for example "bills").
    signal showScreen(string screen)

    // Opens the editor for the line with this id.
    function edit(txId: string) {
        const record = ledger.transaction(txId)
        if (record.id !== undefined)
            openSheet(CHSheet.editTx(record))
    }

    // Opens the line's menu at (x, y) of `item`.
    function showMenu(txId: string, cleared: bool, item: Item, x: real, y: real) {
        menu.txId = txId
        menu.cleared = cleared
        menu.popup(item, x, y)
    }

    // Opens the save dialog of the export, proposing "Coinhall transactions.csv".
    function startExport() {
        const proposed = ledger.proposedExportFile()
        exportDialog.currentFolder = String(proposed).replace(/\/[^\/]*$/, "")
        exportDialog.selectedFile = proposed
        exportDialog.open()
    }

    // One figure of the summary strip: the count of lines, money in, money out.
    component SummaryText: FigureText {
        font.pointSize: Tokens.pt(Tokens.bodySize)
        color: Looks.current.lcd
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    LedgerBridge {
        id: ledger

        store: Store
    }

    TransactionListModel {
        id: lines

        store: Store
        accountFilter: root.accountChoices.some(c => c.id === root.accountId) ? root.accountId : ""
        flow: flowPicker.currentIndex
        search: searchField.text
        monthOnly: monthToggle.checked
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Tokens.spaceM

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Tokens.spaceXS
            spacing: Tokens.spaceL

            ScreenTitle {
                Layout.fillWidth: true
                title: "Transactions"
                subtitle: "Every deposit, payment and transfer. Double-click a line to change it."
            }

            Key {
                objectName: "exportKey"
                Layout.alignment: Qt.AlignTop
                icon.name: "square.and.arrow.up"
                title: "Export CSV"
                onClicked: root.startExport()
            }
        }

        Panel {
            Layout.fillWidth: true
            topPadding: Tokens.spaceM
            bottomPadding: Tokens.spaceM

            RowLayout {
                anchors.fill: parent
                spacing: Tokens.spaceM

                BodyText {
                    text: "Account"
                    font.weight: Font.DemiBold
                    color: Looks.current.soft
                    Accessible.ignored: true
                }

                FormDropDown {
                    id: accountPicker

                    objectName: "accountFilter"
                    Layout.preferredWidth: 170
                    model: root.accountChoices
                    textRole: "name"
                    currentIndex: Math.max(0, root.accountChoices.findIndex(c => c.id === root.accountId))
                    Accessible.name: "Account"
                    onActivated: index => root.accountId = root.accountChoices[index].id
                }

                FormSegments {
                    id: flowPicker

                    objectName: "flowPicker"
                    name: "Flow"
                    options: ["All", "Money in", "Money out"]
                }

                FormInput {
                    id: searchField

                    objectName: "searchField"
                    Layout.fillWidth: true
                    Layout.minimumWidth: 120
                    placeholderText: "Search payee, category, note"
                    Accessible.name: placeholderText
                }

                FormToggle {
                    id: monthToggle

                    objectName: "monthToggle"
                    text: "This month only"
                }
            }
        }

        LCD {
            objectName: "summary"
            Layout.fillWidth: true
            padding: Tokens.spaceS

            RowLayout {
                anchors.fill: parent
                anchors.leftMargin: Tokens.spaceS
                anchors.rightMargin: Tokens.spaceS
                spacing: Tokens.spaceXL

                SummaryText {
                    text: lines.linesText
                }
                SummaryText {
                    text: lines.inText
                }
                SummaryText {
                    text: lines.outText
                }

                Item {
                    Layout.fillWidth: true
                }
            }
        }

        Panel {
            Layout.fillWidth: true
            Layout.fillHeight: true
            padding: Tokens.spaceM

            ListView {
                id: list

                objectName: "register"
                anchors.fill: parent
                clip: true
                spacing: Tokens.spaceS
                model: lines
                boundsBehavior: Flickable.StopAtBounds
                keyNavigationEnabled: true
                activeFocusOnTab: true
                highlightMoveDuration: 0
                highlightResizeDuration: 0
                // Rows only for the lines in view, and a row that scrolls out takes the next line
                // that comes in: rows made ahead are made in slices between frames, and each
                // slice draws a frame of its own and holds up the next one.
                cacheBuffer: 0
                reuseItems: true
                Accessible.role: Accessible.List
                Accessible.name: "Transactions"

                Keys.onReturnPressed: root.edit(lines.idAt(currentIndex))
                Keys.onEnterPressed: root.edit(lines.idAt(currentIndex))
                Keys.onPressed: event => {
                    const menuKey = event.key === Qt.Key_Menu
                                    || (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier))
                    if (!menuKey || !currentItem)
                        return
                    event.accepted = true
                    root.showMenu(lines.idAt(currentIndex), currentItem.cleared, currentItem, Tokens.spaceXL,
                                  currentItem.height / 2)
                }

                ScrollBar.vertical: ScrollBar {
                    policy: list.contentHeight > list.height ? ScrollBar.AlwaysOn : ScrollBar.AsNeeded
                }

                delegate: TxRow {
                    id: row

                    required property int index
                    required property string txId
                    required kind
                    required payee
                    required category
                    required dateText
                    required accountName
                    required amount
                    required cleared

                    width: ListView.view.width - (list.ScrollBar.vertical.visible ? list.ScrollBar.vertical.width : 0)
                    showAccount: true
                    current: ListView.isCurrentItem && list.activeFocus

                    onPicked: {
                        list.currentIndex = index
                        list.forceActiveFocus()
                    }
                    onActivated: root.edit(txId)
                    onMenuRequested: (x, y) => root.showMenu(txId, cleared, row, x, y)
                }
            }

            EmptyNote {
                objectName: "emptyNote"
                anchors.top: parent.top
                visible: lines.count === 0
                text: "No transactions match."
            }
        }
    }

    // The menu of one line.
    Menu {
        id: menu

        // The line the menu is for, and whether it is cleared now.
        property string txId
        property bool cleared

        LookMenuItem {
            objectName: "clearedItem"
            text: menu.cleared ? "Mark as pending" : "Mark as cleared"
            onTriggered: ledger.setCleared(menu.txId, !menu.cleared)
        }
        LookMenuItem {
            objectName: "deleteItem"
            text: "Delete"
            destructive: true
            onTriggered: ledger.deleteTransaction(menu.txId)
        }

        background: Rectangle {
            implicitWidth: 190
            radius: Tokens.wellRadius
            color: Looks.current.well
            border.width: 1
            border.color: Looks.current.line
        }
    }

    FileDialog {
        id: exportDialog

        // The second choice writes a journal for ledger and hledger instead.
        readonly property bool journal: selectedNameFilter.index === 1

        title: "Export transactions"
        fileMode: FileDialog.SaveFile
        nameFilters: ["Comma-separated text (*.csv)", "Plain-text accounting journal (*.journal)"]
        defaultSuffix: journal ? "journal" : "csv"
        onAccepted: journal ? ledger.exportJournal(selectedFile) : ledger.exportCSV(selectedFile)
    }

    // A menu entry in the look's colours; inline components do not see `root`, so the look is passed in.
    component LookMenuItem: MenuItem {
        id: item

        property bool destructive: false

        font.family: Tokens.textFamily
        font.pointSize: Tokens.pt(Tokens.bodySize)

        contentItem: Text {
            text: item.text
            font: item.font
            color: item.destructive ? Tokens.destructive : Looks.current.text
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }

        background: Rectangle {
            implicitHeight: Tokens.fieldHeight
            radius: Tokens.rowRadius
            color: item.highlighted ? Qt.rgba(Looks.current.accent.r, Looks.current.accent.g, Looks.current.accent.b, 0.28)
                                    : "transparent"
        }
    }
}
