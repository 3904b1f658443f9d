import QtQuick
import QtQuick.Layouts
import Coinhall

// The window's header: the program's name and line, the money keys, the LCD with
// the total, the royalties due and the bills due soon, the overdue badge and the
// theme picker.
Panel {
    id: root

    // A money key was pressed: the sheet it opens (a CHSheet value).
    signal openSheet(var sheet)

    screws: true
    leftPadding: 24
    rightPadding: 24
    topPadding: 12
    bottomPadding: 12

    RowLayout {
        anchors.fill: parent
        spacing: Tokens.spaceL

        ColumnLayout {
            Layout.fillWidth: true
            Layout.minimumWidth: 150
            spacing: 2

            Text {
                Layout.fillWidth: true
                text: "QFS COINHALL"
                font.family: Tokens.displayFamily
                font.weight: Font.ExtraBold
                font.pointSize: Tokens.pt(20)
                color: Looks.current.text
                elide: Text.ElideRight
                textFormat: Text.PlainText
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            BodyText {
                Layout.fillWidth: true
                text: "Bills · income · royalties · private on this computer"
                font.weight: Font.DemiBold
                font.pointSize: Tokens.pt(11)
                color: Looks.current.soft
                elide: Text.ElideRight
            }
            BodyText {
                Layout.fillWidth: true
                text: HelpBook.fullName + " · " + HelpBook.websiteText
                font.pointSize: Tokens.pt(9.5)
                color: Looks.current.muted
                elide: Text.ElideRight
            }
        }

        Key {
            objectName: "moneyInKey"
            title: "Money in"
            icon.name: "plus.circle"
            onClicked: root.openSheet(CHSheet.newTx(true))
        }
        Key {
            objectName: "moneyOutKey"
            title: "Money out"
            icon.name: "minus.circle"
            onClicked: root.openSheet(CHSheet.newTx(false))
        }
        Key {
            objectName: "transferKey"
            title: "Transfer"
            icon.name: "arrow.left.arrow.right"
            onClicked: root.openSheet(CHSheet.transfer())
        }

        LCD {
            objectName: "headerLCD"

            RowLayout {
                anchors.fill: parent
                spacing: 18

                Readout {
                    objectName: "totalReadout"
                    caption: "TOTAL"
                    value: Store.totalText
                }
                Readout {
                    objectName: "royaltiesReadout"
                    caption: "ROYALTIES DUE"
                    value: Store.royaltiesDueText
                }
                Readout {
                    objectName: "dueSoonReadout"
                    caption: "DUE 14 DAYS"
                    value: String(Store.dueSoonCount)
                }
            }
        }

        Rectangle {
            objectName: "overdueBadge"
            visible: Store.overdueCount > 0
            implicitWidth: badgeText.implicitWidth + 2 * Tokens.spaceM
            implicitHeight: badgeText.implicitHeight + Tokens.spaceS
            radius: height / 2
            color: Looks.current.accent

            CaptionText {
                id: badgeText

                anchors.centerIn: parent
                text: Store.overdueCount + " overdue"
                font.weight: Font.ExtraBold
                color: Looks.current.bg
            }
        }

        ThemePicker {}
    }
}
