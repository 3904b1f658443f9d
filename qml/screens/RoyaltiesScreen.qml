pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// The royalties screen: the statements on the way (with "Got it" when the money
// lands), the ones received and how each compared with what was expected, and at the
// side who paid this year.
Item {
    id: root

    readonly property alias royalties: royalties

    // Asks the root view to open a sheet (a CHSheet value).
    signal openSheet(var sheet)
    // Asks the root view to switch to another screen (its key, for example "bills").
    signal showScreen(string screen)

    RoyaltiesBridge {
        id: royalties

        store: Store
    }

    component Figure: FigureText {
        Layout.alignment: Qt.AlignRight
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    component Caption: BodyText {
        Layout.fillWidth: true
        font.weight: Font.DemiBold
        elide: Text.ElideRight
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
                title: "Royalties"
                subtitle: "Log the statements you expect, then hit GOT IT when the money lands."
            }
            Key {
                objectName: "addRoyaltyKey"
                Layout.alignment: Qt.AlignTop
                title: "Add royalty"
                icon.name: "plus"
                onClicked: root.openSheet(CHSheet.newRoyalty())
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

                            Label2 {
                                text: "Expected"
                            }

                            ListRows {
                                id: expectedRows

                                spacing: Tokens.spaceS
                                // A count, not the list: a change updates the rows in place.
                                model: royalties.expected.length

                                delegate: RoyaltyLine {
                                    required property int index

                                    objectName: "expectedRow"
                                    width: expectedRows.cellWidth
                                    royalty: royalties.expected[index] || ({})
                                    onReceiveRequested: root.openSheet(CHSheet.receiveRoyalty(royalty))
                                    onEditRequested: root.openSheet(CHSheet.editRoyalty(royalty))
                                    onDeleteRequested: royalties.deleteRoyalty(royalty.id)
                                }
                            }

                            EmptyNote {
                                objectName: "noExpectedNote"
                                Layout.fillWidth: true
                                visible: royalties.expected.length === 0
                                text: "Nothing expected right now. Add DistroKid, BMI/ASCAP, SoundExchange, publishers or software sales."
                            }
                        }
                    }

                    Panel {
                        Layout.fillWidth: true

                        ColumnLayout {
                            anchors.fill: parent
                            spacing: Tokens.spaceS

                            Label2 {
                                text: "Received"
                            }

                            ListRows {
                                id: receivedRows

                                spacing: Tokens.spaceS
                                model: royalties.received.length

                                delegate: RoyaltyLine {
                                    required property int index

                                    objectName: "receivedRow"
                                    width: receivedRows.cellWidth
                                    royalty: royalties.received[index] || ({})
                                    onEditRequested: root.openSheet(CHSheet.editRoyalty(royalty))
                                    onDeleteRequested: royalties.deleteRoyalty(royalty.id)
                                }
                            }

                            EmptyNote {
                                objectName: "noReceivedNote"
                                Layout.fillWidth: true
                                visible: royalties.received.length === 0
                                text: "Received royalties are listed here and added to your income."
                            }
                        }
                    }
                }
            }

            Panel {
                Layout.preferredWidth: 300
                Layout.maximumWidth: 300
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
                        text: "Who paid you this year"
                    }

                    ListRows {
                        id: payerRows

                        spacing: Tokens.spaceS
                        model: royalties.payers

                        delegate: RowLayout {
                            id: payerRow

                            required property var modelData

                            objectName: "payerRow"
                            width: payerRows.cellWidth
                            spacing: Tokens.spaceS
                            Accessible.role: Accessible.ListItem
                            Accessible.name: modelData.payer + ", " + modelData.totalText

                            Caption {
                                text: payerRow.modelData.payer
                                }
                            Figure {
                                text: payerRow.modelData.totalText
                                color: Tokens.positive
                            }
                        }
                    }

                    EmptyNote {
                        Layout.fillWidth: true
                        visible: royalties.payers.length === 0
                        text: "Nobody has paid yet this year."
                    }

                    Rectangle {
                        Layout.fillWidth: true
                        Layout.topMargin: Tokens.spaceS
                        Layout.bottomMargin: Tokens.spaceXS
                        implicitHeight: 1
                        color: Looks.current.line
                    }

                    RowLayout {
                        Layout.fillWidth: true
                        spacing: Tokens.spaceS

                        Caption {
                            text: "Received in " + royalties.year
                            color: Looks.current.soft
                        }
                        Figure {
                            objectName: "receivedThisYear"
                            text: royalties.receivedThisYearText
                            color: Tokens.positive
                        }
                    }
                    RowLayout {
                        Layout.fillWidth: true
                        spacing: Tokens.spaceS

                        Caption {
                            text: "Still expected"
                            color: Looks.current.soft
                        }
                        Figure {
                            objectName: "stillExpected"
                            text: royalties.stillExpectedText
                        }
                    }

                    Item {
                        Layout.fillHeight: true
                    }
                }
            }
        }
    }
}
