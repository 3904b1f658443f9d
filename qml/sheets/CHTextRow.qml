import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A form row: a label and a one-line text field, the label read out as the field's
// name. A long label can sit above the field (`stacked`) instead of beside it.
Item {
    id: root

    property string label
    // The text as typed; two-way: write it back with onTextChanged.
    property alias text: field.text
    property alias placeholderText: field.placeholderText
    // The label above the field rather than to its left.
    property bool stacked: false
    // The look to draw with.
    property var look: Looks.current
    readonly property alias field: field

    // Return or Enter was pressed in the field.
    signal accepted

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Layout.fillWidth: true

    GridLayout {
        id: row

        anchors.fill: parent
        columns: root.stacked ? 1 : 2
        columnSpacing: Tokens.spaceM
        rowSpacing: Tokens.spaceXS

        Text {
            Layout.preferredWidth: root.stacked ? -1 : Tokens.fieldLabelWidth
            Layout.fillWidth: root.stacked
            text: root.label
            font.family: Tokens.textFamily
            font.weight: Font.DemiBold
            font.pointSize: Tokens.pt(Tokens.bodySize)
            color: root.look.soft
            textFormat: Text.PlainText
            elide: root.stacked ? Text.ElideNone : Text.ElideRight
            wrapMode: root.stacked ? Text.WordWrap : Text.NoWrap
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
            placeholderTextColor: root.look.muted
            selectByMouse: true
            Accessible.name: root.label
            onAccepted: root.accepted()

            background: Rectangle {
                radius: Tokens.keyRadius
                color: root.look.bg
                border.width: field.activeFocus ? 1.5 : 1
                border.color: field.activeFocus ? root.look.accent : root.look.line
            }
        }
    }
}
