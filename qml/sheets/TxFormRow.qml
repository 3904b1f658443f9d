import QtQuick
import QtQuick.Layouts
import Coinhall

// A form row of the transaction sheets: a caption at the left (wrapping when long)
// and one control filling the rest. The control names itself after `label` for
// screen readers, so the caption is not read twice.
Item {
    id: root

    property string label
    // The look to draw with.
    property var look: Looks.current
    // The control of the row.
    default property alias control: slot.data

    implicitWidth: Tokens.fieldLabelWidth + Tokens.spaceM + slot.implicitWidth
    implicitHeight: Math.max(caption.implicitHeight, slot.implicitHeight)
    Layout.fillWidth: true

    Text {
        id: caption

        width: Tokens.fieldLabelWidth
        // Centred on a one-line control, at the top of a taller one.
        y: Math.max(0, (Math.min(slot.height, Tokens.fieldHeight) - implicitHeight) / 2)
        text: root.label
        wrapMode: Text.WordWrap
        font.family: Tokens.textFamily
        font.weight: Font.DemiBold
        font.pointSize: Tokens.pt(Tokens.bodySize)
        lineHeight: 0.95
        color: root.look.soft
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    Item {
        id: slot

        readonly property Item first: children.length > 0 ? children[0] : null

        x: Tokens.fieldLabelWidth + Tokens.spaceM
        width: root.width - x
        height: root.height
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
