pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// The bills screen: the active bills soonest first, with paying, skipping, editing
// and deleting; the finished one-time bills; and at the side what the bills cost in
// an average month, which are overdue, and the latest payments.
Item {
    id: root

    readonly property alias bills: bills
    readonly property alias list: list

    // Asks the root view to open a sheet (a CHSheet value).
    signal openSheet(var sheet)
    // Asks the root view to switch to another screen (its key, for example "bills").
    signal showScreen(string screen)

    BillsBridge {
        id: bills

        store: Store
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Tokens.spaceM

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: Tokens.spaceXL
            Layout.bottomMargin: Tokens.spaceXS
            spacing: Tokens.spaceL

            ScreenTitle {
                Layout.fillWidth: true
                title: "Bills"
                subtitle: "Coinhall reminds you before each one is due. Right-click a bill for more."
            }
            Key {
                objectName: "addBillKey"
                Layout.alignment: Qt.AlignTop
                title: "Add bill"
                icon.name: "plus"
                onClicked: root.openSheet(CHSheet.newBill())
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: Tokens.spaceM

            Flickable {
                id: list

                Layout.fillWidth: true
                Layout.fillHeight: true
                contentWidth: width
                contentHeight: column.implicitHeight
                clip: true
                boundsBehavior: Flickable.StopAtBounds

                ScrollBar.vertical: ScrollBar {
                    policy: list.contentHeight > list.height ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
                }

                ColumnLayout {
                    id: column

                    width: list.width - (list.contentHeight > list.height ? Tokens.spaceL : 0)
                    spacing: Tokens.spaceM

                    Panel {
                        Layout.fillWidth: true

                        ColumnLayout {
                            anchors.fill: parent
                            spacing: Tokens.spaceS

                            ListRows {
                                id: activeRows

                                spacing: Tokens.spaceS
                                // A count, not the list: a change updates the lines in place.
                                model: bills.active.length

                                delegate: BillLine {
                                    required property int index

                                    width: activeRows.cellWidth
                                    bill: bills.active[index] || ({})
                                    onPayRequested: root.openSheet(CHSheet.payBill(bill))
                                    onEditRequested: root.openSheet(CHSheet.editBill(bill))
                                    onSkipRequested: bills.skip(bill.id)
                                    onDeleteRequested: bills.deleteBill(bill.id)
                                }
                            }

                            EmptyNote {
                                objectName: "noBillsNote"
                                Layout.fillWidth: true
                                visible: bills.active.length === 0
                                text: "No bills yet. Add rent, phone, internet, insurance, hosting… anything that comes around."
                            }
                        }
                    }

                    Panel {
                        objectName: "finishedPanel"
                        Layout.fillWidth: true
                        visible: bills.finished.length > 0

                        ColumnLayout {
                            anchors.fill: parent
                            spacing: Tokens.spaceS

                            Label2 {
                                text: "Finished one-time bills"
                            }

                            ListRows {
                                id: finishedRows

                                spacing: Tokens.spaceS
                                model: bills.finished

                                delegate: RowBG {
                                    id: finishedRow

                                    required property var modelData

                                    objectName: "finishedRow"
                                    width: finishedRows.cellWidth
                                    Accessible.role: Accessible.ListItem
                                    Accessible.name: modelData.name + ", " + modelData.amountText

                                    RowLayout {
                                        anchors.fill: parent
                                        spacing: Tokens.spaceM

                                        BodyText {
                                            Layout.fillWidth: true
                                            text: finishedRow.modelData.name
                                            font.weight: Font.Bold
                                            color: Looks.current.soft
                                            elide: Text.ElideRight
                                        }
                                        Text {
                                            text: finishedRow.modelData.amountText
                                            font.family: Tokens.lcdFamily
                                            font.pointSize: Tokens.pt(Tokens.amountSize)
                                            color: Looks.current.muted
                                            textFormat: Text.PlainText
                                        }
                                        Key {
                                            title: "Delete"
                                            destructive: true
                                            Accessible.name: "Delete " + finishedRow.modelData.name
                                            onClicked: bills.deleteBill(finishedRow.modelData.id)
                                        }
                                    }
                                }
                            }
                        }
                    }
                }
            }

            ColumnLayout {
                Layout.preferredWidth: 300
                Layout.maximumWidth: 300
                Layout.fillHeight: true
                spacing: Tokens.spaceM

                Panel {
                    Layout.fillWidth: true
                    screws: true
                    leftPadding: Tokens.spaceXL
                    rightPadding: Tokens.spaceXL
                    topPadding: Tokens.spaceXL
                    bottomPadding: Tokens.spaceXL

                    ColumnLayout {
                        anchors.fill: parent
                        spacing: Tokens.spaceS

                        Label2 {
                            text: "Bills per month (average)"
                        }
                        LCD {
                            Layout.fillWidth: true

                            FigureText {
                                objectName: "monthlyAverage"
                                width: parent.width
                                text: bills.monthlyAverageText
                                font.pointSize: Tokens.pt(22)
                                fontSizeMode: Text.HorizontalFit
                                minimumPointSize: Tokens.pt(12)
                                color: Looks.current.lcd
                                Accessible.role: Accessible.StaticText
                                Accessible.name: "Bills per month (average): " + text
                            }
                        }

                        Label2 {
                            Layout.topMargin: Tokens.spaceM
                            text: "Overdue"
                        }
                        BodyText {
                            objectName: "overdueSummary"
                            Layout.fillWidth: true
                            text: bills.overdue.length === 0 ? "Nothing overdue."
                                  : bills.overdue.length + (bills.overdue.length === 1 ? " bill · " : " bills · ")
                                    + bills.overdueTotalText
                            font.weight: Font.Bold
                            color: bills.overdue.length === 0 ? Looks.current.muted : Tokens.destructive
                            wrapMode: Text.WordWrap
                            Accessible.role: Accessible.StaticText
                            Accessible.name: "Overdue: " + text
                        }
                        // The first few, soonest due first; the summary above counts them all.
                        ListRows {
                            id: overdueRows

                            spacing: Tokens.spaceS
                            model: bills.overdue.slice(0, 4)

                            delegate: RowLayout {
                                id: overdueRow

                                required property var modelData

                                width: overdueRows.cellWidth
                                spacing: Tokens.spaceS

                                CaptionText {
                                    Layout.fillWidth: true
                                    text: overdueRow.modelData.name
                                    color: Looks.current.soft
                                    elide: Text.ElideRight
                                }
                                CaptionText {
                                    text: "was due " + overdueRow.modelData.dueShort
                                    color: Tokens.destructive
                                }
                            }
                        }
                    }
                }

                Panel {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    screws: true
                    leftPadding: Tokens.spaceXL
                    rightPadding: Tokens.spaceXL
                    topPadding: Tokens.spaceXL
                    bottomPadding: Tokens.spaceXL

                    ColumnLayout {
                        anchors.fill: parent
                        spacing: Tokens.spaceS
                        clip: true

                        Label2 {
                            text: "Recently paid"
                        }

                        ListRows {
                            id: paymentRows

                            spacing: Tokens.spaceS
                            model: bills.recentPayments

                            delegate: RowLayout {
                                id: paidRow

                                required property var modelData

                                objectName: "paidRow"
                                width: paymentRows.cellWidth
                                spacing: Tokens.spaceS
                                Accessible.role: Accessible.ListItem
                                Accessible.name: modelData.name + ", " + modelData.dateText + ", "
                                                 + modelData.amountText

                                ColumnLayout {
                                    Layout.fillWidth: true
                                    spacing: 0

                                    BodyText {
                                        Layout.fillWidth: true
                                        text: paidRow.modelData.name
                                        font.weight: Font.Bold
                                        elide: Text.ElideRight
                                    }
                                    CaptionText {
                                        Layout.fillWidth: true
                                        text: paidRow.modelData.dateText
                                        elide: Text.ElideRight
                                    }
                                }
                                FigureText {
                                    text: paidRow.modelData.amountText
                                    font.pointSize: Tokens.pt(Tokens.bodySize)
                                    color: Looks.current.soft
                                }
                            }
                        }

                        EmptyNote {
                            objectName: "noPaymentsNote"
                            Layout.fillWidth: true
                            visible: bills.recentPayments.length === 0
                            text: "Payments show up here."
                        }

                        Item {
                            Layout.fillHeight: true
                        }
                    }
                }
            }
        }
    }
}
