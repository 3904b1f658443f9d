import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A text row of the bill and royalty sheets: the label over a full-width field, so a
// long label ("Name (e.g. Rent, Verizon, Web hosting)") reads whole.
Item {
    id: root

    property string label
    // The text as typed; two-way: write it back with onTextChanged.
    property alias text: field.text
    // The look to draw with.
    property var look: Looks.current
    readonly property alias field: field

    implicitWidth: column.implicitWidth
    implicitHeight: column.implicitHeight
    Layout.fillWidth: true

    ColumnLayout {
        id: column

        anchors.fill: parent
        spacing: Tokens.spaceXS

        Text {
            Layout.fillWidth: true
            text: root.label
            font.family: Tokens.textFamily
            font.weight: Font.DemiBold
            font.pointSize: Tokens.pt(Tokens.captionSize)
            color: root.look.soft
            wrapMode: Text.WordWrap
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        TextField {
            id: field

            Layout.fillWidth: true
            implicitHeight: Tokens.fieldHeight
            leftPadding: Tokens.spaceM
            rightPadding: Tokens.spaceM
            font.family: Tokens.textFamily
            font.pointSize: Tokens.pt(Tokens.bodySize)
            color: root.look.text
            selectionColor: root.look.accent
            selectedTextColor: root.look.bg
            selectByMouse: true
            Accessible.name: root.label

            background: Rectangle {
                radius: Tokens.keyRadius
                color: root.look.bg
                border.width: field.activeFocus ? 1.5 : 1
                border.color: field.activeFocus ? root.look.accent : root.look.line
            }
        }
    }
}
