pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A form row: a label and a picker over a list of texts. `currentIndex` is the chosen
// entry; `activated` tells a user's choice apart from a bound value.
Item {
    id: root

    property string label
    // The entries, as shown.
    property var model: []
    property alias currentIndex: box.currentIndex
    readonly property alias currentText: box.currentText
    // Width of the label column; the picker takes the rest.
    property real labelWidth: Tokens.fieldLabelWidth
    // The look to draw with.
    property var look: Looks.current
    readonly property alias box: box

    // The user chose the entry at `index`.
    signal activated(int index)

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Layout.fillWidth: true

    RowLayout {
        id: row

        anchors.fill: parent
        spacing: Tokens.spaceM

        Text {
            Layout.preferredWidth: root.labelWidth
            text: root.label
            font.family: Tokens.textFamily
            font.weight: Font.DemiBold
            font.pointSize: Tokens.pt(Tokens.bodySize)
            color: root.look.soft
            textFormat: Text.PlainText
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        ComboBox {
            id: box

            Layout.fillWidth: true
            implicitHeight: Tokens.fieldHeight
            model: root.model
            font.family: Tokens.textFamily
            font.pointSize: Tokens.pt(Tokens.bodySize)
            Accessible.name: root.label

            onActivated: index => root.activated(index)

            contentItem: Text {
                leftPadding: Tokens.spaceM
                rightPadding: box.indicator.width + Tokens.spaceS
                text: box.displayText
                font: box.font
                color: root.look.text
                verticalAlignment: Text.AlignVCenter
                elide: Text.ElideRight
                textFormat: Text.PlainText
            }

            indicator: Icon {
                x: box.width - width - Tokens.spaceS
                y: (box.height - height) / 2
                symbol: "chevron.up.chevron.down"
                size: 16
                color: root.look.muted
            }

            background: Rectangle {
                radius: Tokens.keyRadius
                color: root.look.bg
                border.width: box.visualFocus ? 1.5 : 1
                border.color: box.visualFocus || box.popup.visible ? root.look.accent : root.look.line
            }

            delegate: ItemDelegate {
                id: option

                required property int index
                required property var modelData

                width: ListView.view ? ListView.view.width : implicitWidth
                highlighted: box.highlightedIndex === index
                text: modelData
                font: box.font

                contentItem: Text {
                    text: option.text
                    font: option.font
                    color: root.look.text
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                }

                background: Rectangle {
                    color: option.highlighted ? Qt.rgba(root.look.accent.r, root.look.accent.g, root.look.accent.b, 0.28)
                                              : "transparent"
                    radius: Tokens.rowRadius
                }
            }

            // The list opens above the zoomed content, so it takes the zoom itself.
            popup.scale: QFZoom.value
            popup.transformOrigin: Popup.TopLeft
            popup.background: Rectangle {
                radius: Tokens.wellRadius
                color: root.look.well
                border.width: 1
                border.color: root.look.line
            }
        }
    }
}
