pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Coinhall

// The overview on one scrolling page: five figure tiles and, when the book sets money
// aside for taxes, this year's set-aside; the latest ledger lines, the accounts, the
// bills of the next two weeks, the royalties on the way and six months of money in
// against money out. It only reads the Store; changes go through the sheets it opens
// or the screens it switches to.
Item {
    id: root

    readonly property alias summary: summary

    // Asks the root view to open a sheet (a CHSheet value).
    signal openSheet(var sheet)
    // Asks the root view to switch to another screen (its key, for example "bills").
    signal showScreen(string screen)

    // A panel with an engraved caption and a key at its right; the rows go below.
    component Section: Panel {
        id: section

        property string caption
        property string keyTitle
        property string keyIcon
        // What a screen reader calls the key when it shows only a symbol.
        property string keyName: keyTitle
        default property alias rows: body.data

        signal keyPressed

        Layout.fillWidth: true
        // Panels side by side are as tall as the tallest.
        Layout.fillHeight: true

        ColumnLayout {
            anchors.fill: parent
            spacing: Tokens.spaceS

            RowLayout {
                Layout.fillWidth: true
                spacing: Tokens.spaceM

                Label2 {
                    Layout.fillWidth: true
                    text: section.caption
                    clip: true
                }
                Key {
                    objectName: "sectionKey"
                    visible: section.keyTitle !== "" || section.keyIcon !== ""
                    title: section.keyTitle
                    icon.name: section.keyIcon
                    Accessible.name: section.keyName
                    onClicked: section.keyPressed()
                }
            }

            ColumnLayout {
                id: body

                Layout.fillWidth: true
                spacing: Tokens.spaceS
            }

            Item {
                Layout.fillHeight: true
            }
        }
    }

    DashboardSummary {
        id: summary

        store: Store
    }

    BillsBridge {
        id: bills

        store: Store
    }

    LedgerBridge {
        id: ledger

        store: Store
    }

    // The Book's first eight lines, newest first.
    TransactionListModel {
        id: latest

        store: Store
        limit: 8
    }

    ScreenColumn {
        id: page

        anchors.fill: parent

        ScreenTitle {
            Layout.fillWidth: true
            Layout.topMargin: Tokens.spaceS
            Layout.leftMargin: Tokens.spaceXS
            title: "Dashboard"
        }

        RowLayout {
            objectName: "tiles"
            Layout.fillWidth: true
            spacing: Tokens.spaceM

            StatTile {
                objectName: "totalTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Total balance"
                value: summary.totalText
            }
            StatTile {
                objectName: "inTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "In this month"
                value: summary.inText
            }
            StatTile {
                objectName: "outTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Out this month"
                value: summary.outText
            }
            StatTile {
                objectName: "netTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Net this month"
                value: summary.netText
                color: summary.netNegative ? Tokens.destructive : null
            }
            StatTile {
                objectName: "royaltiesTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Royalties this year"
                value: summary.royaltiesText
            }
        }

        SetAsideTile {
            objectName: "setAsideTile"
            Layout.fillWidth: true
            visible: summary.setAsideShown
            label: "Set aside for taxes this year"
            percentText: summary.setAsidePercentText
            dueText: summary.setAsideDueText
            paidText: summary.setAsidePaidText
            leftText: summary.setAsideLeftText
            overpaid: summary.overpaid
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Tokens.spaceM

            Section {
                objectName: "latestPanel"
                Layout.preferredWidth: 3
                caption: "Latest activity"
                keyTitle: "All"
                onKeyPressed: root.showScreen("register")

                ListRows {
                    id: latestRows

                    spacing: Tokens.spaceS
                    model: latest

                    delegate: TxRow {
                        required property string txId
                        required kind
                        required payee
                        required category
                        required dateText
                        required accountName
                        required amount
                        required cleared

                        objectName: "latestRow"
                        width: latestRows.cellWidth
                        onActivated: {
                            const record = ledger.transaction(txId)
                            if (record.id !== undefined)
                                root.openSheet(CHSheet.editTx(record))
                        }
                    }
                }
                EmptyNote {
                    objectName: "latestEmpty"
                    Layout.fillWidth: true
                    visible: latest.count === 0
                    text: "Nothing logged yet. Use MONEY IN or MONEY OUT at the top, or import your bank's CSV."
                }
            }

            Section {
                objectName: "accountsPanel"
                Layout.preferredWidth: 2
                caption: "Accounts"
                keyIcon: "plus"
                keyName: "New account"
                onKeyPressed: root.openSheet(CHSheet.newAccount())

                ListRows {
                    id: accountRows

                    spacing: Tokens.spaceS
                    model: summary.accounts

                    delegate: RowBG {
                        id: accountRow

                        required property var modelData

                        objectName: "accountRow"
                        width: accountRows.cellWidth
                        Accessible.role: Accessible.ListItem
                        Accessible.name: modelData.name + ", " + modelData.balanceText

                        RowLayout {
                            anchors.fill: parent
                            spacing: Tokens.spaceM

                            Icon {
                                Layout.preferredWidth: 22
                                symbol: accountRow.modelData.icon
                                size: 18
                                color: Looks.current.soft
                            }
                            BodyText {
                                Layout.fillWidth: true
                                text: accountRow.modelData.name
                                font.weight: Font.Bold
                                elide: Text.ElideRight
                            }
                            FigureText {
                                objectName: "balanceText"
                                text: accountRow.modelData.balanceText
                                color: accountRow.modelData.negative ? Looks.current.soft : Looks.current.text
                            }
                        }
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Tokens.spaceM

            Section {
                objectName: "billsPanel"
                Layout.preferredWidth: 1
                caption: "Bills due · next 14 days"
                keyTitle: "Bills"
                onKeyPressed: root.showScreen("bills")

                ListRows {
                    id: billRows

                    spacing: Tokens.spaceS
                    model: bills.upcoming

                    delegate: BillLine {
                        required property var modelData

                        objectName: "billRow"
                        width: billRows.cellWidth
                        bill: modelData
                        onPayRequested: root.openSheet(CHSheet.payBill(modelData))
                        onEditRequested: root.openSheet(CHSheet.editBill(modelData))
                        onSkipRequested: bills.skip(modelData.id)
                        onDeleteRequested: bills.deleteBill(modelData.id)
                    }
                }
                EmptyNote {
                    objectName: "billsEmpty"
                    Layout.fillWidth: true
                    visible: bills.upcoming.length === 0
                    text: "No bills due in the next two weeks."
                }
            }

            Section {
                objectName: "royaltiesPanel"
                Layout.preferredWidth: 1
                caption: "Royalties on the way"
                keyTitle: "Royalties"
                onKeyPressed: root.showScreen("royalties")

                ListRows {
                    id: royaltyRows

                    spacing: Tokens.spaceS
                    model: summary.royalties

                    delegate: RowBG {
                        id: royaltyRow

                        required property var modelData

                        objectName: "royaltyRow"
                        width: royaltyRows.cellWidth
                        Accessible.role: Accessible.ListItem
                        Accessible.name: modelData.payer + ", " + modelData.expectedText + ", " + modelData.expectedLine

                        RowLayout {
                            anchors.fill: parent
                            spacing: Tokens.spaceM

                            Icon {
                                Layout.preferredWidth: 22
                                symbol: "music.note"
                                size: 18
                                color: Looks.current.soft
                            }
                            ColumnLayout {
                                Layout.fillWidth: true
                                spacing: 1

                                BodyText {
                                    Layout.fillWidth: true
                                    text: royaltyRow.modelData.payer
                                    font.weight: Font.Bold
                                    elide: Text.ElideRight
                                }
                                CaptionText {
                                    objectName: "expectedLine"
                                    Layout.fillWidth: true
                                    text: royaltyRow.modelData.expectedLine
                                    elide: Text.ElideRight
                                }
                            }
                            FigureText {
                                objectName: "expectedAmount"
                                text: royaltyRow.modelData.expectedText
                            }
                            Key {
                                objectName: "gotItKey"
                                title: "Got it"
                                onClicked: root.openSheet(CHSheet.receiveRoyalty(royaltyRow.modelData))
                            }
                        }
                    }
                }
                EmptyNote {
                    objectName: "royaltiesEmpty"
                    Layout.fillWidth: true
                    visible: summary.royalties.length === 0
                    text: "Add the royalty statements you expect so nothing slips by."
                }
            }
        }

        Section {
            objectName: "chartPanel"
            Layout.bottomMargin: Tokens.spaceM
            caption: "Money in vs money out · 6 months"
            // The chart's panel has no key.
            keyTitle: ""

            MonthlyChart {
                objectName: "monthlyChart"
                Layout.fillWidth: true
                Layout.preferredHeight: 240
                months: summary.months
            }
        }
    }
}
