pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A labelled picker of the bill and royalty sheets over a list of texts (schedules,
// kinds, categories). `value` is the chosen text; one that is not offered shows
// nothing chosen.
Item {
    id: root

    property string label
    // The texts offered, in order.
    property var options: []
    // The chosen text. Two-way: write it back with onValueChanged.
    property string value
    // The look to draw with.
    property var look: Looks.current
    readonly property alias box: box

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Layout.fillWidth: true

    RowLayout {
        id: row

        anchors.fill: parent
        spacing: Tokens.spaceM

        Text {
            Layout.preferredWidth: Tokens.fieldLabelWidth
            text: root.label
            font.family: Tokens.textFamily
            font.weight: Font.DemiBold
            font.pointSize: Tokens.pt(Tokens.bodySize)
            color: root.look.soft
            wrapMode: Text.WordWrap
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        ComboBox {
            id: box

            Layout.fillWidth: true
            implicitHeight: Tokens.fieldHeight
            model: root.options
            currentIndex: root.options.indexOf(root.value)
            displayText: currentIndex < 0 ? "" : currentText
            font.family: Tokens.textFamily
            font.pointSize: Tokens.pt(Tokens.bodySize)
            Accessible.name: root.label

            onActivated: index => root.value = root.options[index]

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
                required property string modelData

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
                    color: option.highlighted
                           ? Qt.rgba(root.look.accent.r, root.look.accent.g, root.look.accent.b, 0.28)
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
