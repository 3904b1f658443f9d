pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Coinhall

// A category list of the Reports screen under its caption: per row the name, for a
// budgeted category "budget <limit>" (red only when the amount is strictly over the
// limit), the amount, its whole percent of the total and a bar as long as that share
// (never shorter than 3 points). With no rows, "Nothing in this period.".
ColumnLayout {
    id: root

    property string title
    // The lines in the order shown, as ReportsBridge.spendingLines and incomeLines give them.
    property var lines: []
    // The colour of the bars.
    property color color: Looks.current.accent

    spacing: Tokens.spaceS

    Label2 {
        Layout.bottomMargin: Tokens.spaceXS
        text: root.title
    }

    EmptyNote {
        objectName: "emptyNote"
        Layout.fillWidth: true
        visible: root.lines.length === 0
        text: "Nothing in this period."
    }

    ListRows {
        id: lineRows

        spacing: Tokens.spaceS
        model: root.lines

        delegate: ColumnLayout {
            id: line

            required property var modelData

            objectName: "categoryLine"
            width: lineRows.cellWidth
            spacing: Tokens.spaceXS
            Accessible.role: Accessible.ListItem
            Accessible.name: modelData.name + ", " + modelData.amountText + ", " + modelData.percentText
                             + (modelData.budgetText === "" ? "" : ", " + modelData.budgetText
                                                               + (modelData.over ? ", over budget" : ""))

            RowLayout {
                Layout.fillWidth: true
                spacing: Tokens.spaceM

                BodyText {
                    Layout.fillWidth: true
                    text: line.modelData.name
                    font.weight: Font.Bold
                    font.pointSize: Tokens.pt(12.5)
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                BodyText {
                    objectName: "budgetText"
                    visible: text !== ""
                    text: line.modelData.budgetText
                    font.pointSize: Tokens.pt(10.5)
                    color: line.modelData.over ? Tokens.destructive : Looks.current.muted
                    Accessible.ignored: true
                }
                Text {
                    objectName: "amountText"
                    text: line.modelData.amountText
                    font.family: Tokens.lcdFamily
                    font.pointSize: Tokens.pt(12)
                    color: Looks.current.text
                    textFormat: Text.PlainText
                    Accessible.ignored: true
                }
                Text {
                    objectName: "percentText"
                    Layout.preferredWidth: 36
                    horizontalAlignment: Text.AlignRight
                    text: line.modelData.percentText
                    font.family: Tokens.lcdFamily
                    font.pointSize: Tokens.pt(10.5)
                    color: Looks.current.muted
                    textFormat: Text.PlainText
                    Accessible.ignored: true
                }
            }

            // The bar: a dark capsule track and the share over it in the row's colour.
            Rectangle {
                id: track

                Layout.fillWidth: true
                implicitHeight: 6
                radius: height / 2
                color: Qt.rgba(0, 0, 0, 0.4)

                Rectangle {
                    objectName: "bar"
                    width: Math.min(track.width, Math.max(3, track.width * line.modelData.share))
                    height: parent.height
                    radius: height / 2
                    color: root.color
                }
            }
        }
    }
}
