import QtQuick
import QtQuick.Layouts
import Coinhall

// A row of a form: the caption at the left (wrapping when long) and one control filling
// the rest. Every sheet's rows share this caption column, so their fields line up. The
// control names itself after `label` for screen readers, so the caption is not read twice;
// a row without a label keeps the column empty and its control under the other fields.
Item {
    id: root

    property string label
    // The control of the row.
    default property alias control: slot.data

    // A caption longer than two lines in the caption column stands above its control
    // instead, across the whole row, rather than making a tall narrow column of words.
    readonly property bool stacked: probe.lineCount > 2

    implicitWidth: Tokens.fieldLabelWidth + Tokens.spaceM + slot.implicitWidth
    implicitHeight: stacked ? caption.implicitHeight + Tokens.spaceXS + slot.implicitHeight
                            : Math.max(caption.implicitHeight, slot.implicitHeight)
    Layout.fillWidth: true

    // The caption as it would wrap in the caption column, only to count its lines.
    Text {
        id: probe

        visible: false
        width: Tokens.fieldLabelWidth
        text: root.label
        wrapMode: Text.WordWrap
        font: caption.font
        textFormat: Text.PlainText
    }

    BodyText {
        id: caption

        width: root.stacked ? root.width : Tokens.fieldLabelWidth
        // Centred on a one-line control, at the top of a taller one.
        y: root.stacked ? 0 : Math.max(0, (Math.min(slot.height, Tokens.fieldHeight) - implicitHeight) / 2)
        text: root.label
        wrapMode: Text.WordWrap
        font.weight: Font.DemiBold
        color: Looks.current.soft
        Accessible.ignored: true
    }

    Item {
        id: slot

        readonly property Item first: children.length > 0 ? children[0] : null

        x: Tokens.fieldLabelWidth + Tokens.spaceM
        y: root.stacked ? caption.implicitHeight + Tokens.spaceXS : 0
        width: root.width - x
        height: root.height - y
        implicitWidth: first ? first.implicitWidth : 0
        implicitHeight: first ? first.implicitHeight : 0

        // The control fills the slot's width.
        Binding {
            target: slot.first
            property: "width"
            value: slot.width
            when: slot.first !== null
        }
    }
}
