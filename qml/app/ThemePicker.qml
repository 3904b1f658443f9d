import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Coinhall

// The header's theme picker, titled "Theme": one entry per look, the current one shown.
ColumnLayout {
    id: root

    readonly property alias box: box
    // The picker's help text.
    readonly property string hint: "Theme: Studio, Ice Blue, Rose Gold, Lavender, Carbon (black) or Graphite (gray)"

    spacing: Tokens.spaceXS

    Label2 {
        text: "Theme"
    }

    ComboBox {
        id: box

        objectName: "themePicker"
        Layout.preferredWidth: 140
        implicitHeight: Tokens.keyHeight
        model: Looks.all.map(l => l.name)
        currentIndex: Looks.all.findIndex(l => l.id === Looks.current.id)
        font.family: Tokens.textFamily
        font.weight: Font.Bold
        font.pointSize: Tokens.pt(Tokens.keySize)
        onActivated: index => Looks.choose(Looks.all[index].id)

        Accessible.name: "Theme"
        Accessible.description: root.hint
        ToolTip.visible: hovered && !popup.visible
        ToolTip.delay: 600
        ToolTip.text: root.hint

        contentItem: Text {
            leftPadding: Tokens.spaceM
            rightPadding: box.indicator.width + Tokens.spaceS
            text: box.displayText
            font: box.font
            color: Looks.current.text
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
        }

        indicator: Text {
            x: box.width - width - Tokens.spaceM
            y: (box.height - height) / 2
            text: "\u25BE"
            font.pointSize: Tokens.pt(14)
            color: Looks.current.muted
        }

        background: Rectangle {
            implicitWidth: 140
            implicitHeight: Tokens.keyHeight
            radius: Tokens.keyRadius
            border.width: 1
            border.color: box.visualFocus ? Looks.current.accent2 : Looks.current.line
            gradient: Gradient {
                GradientStop { position: 0; color: Qt.lighter(Looks.current.panelTop, 1.25) }
                GradientStop { position: 1; color: Looks.current.panelBottom }
            }
        }

        delegate: ItemDelegate {
            id: entry

            required property int index
            required property string modelData

            width: box.width
            highlighted: box.highlightedIndex === index
            // Its name for screen readers; the text below draws it.
            text: modelData
            contentItem: Text {
                text: entry.text
                font: box.font
                color: entry.index === box.currentIndex ? Looks.current.accent : Looks.current.text
                verticalAlignment: Text.AlignVCenter
            }
            background: Rectangle {
                color: entry.highlighted ? Looks.current.line : "transparent"
            }
        }

        popup: Popup {
            // Opens above the zoomed content, so it takes the zoom itself.
            scale: QFZoom.value
            transformOrigin: Popup.TopLeft
            y: box.height + 2
            width: box.width
            implicitHeight: contentItem.implicitHeight + 2
            padding: 1

            contentItem: ListView {
                clip: true
                implicitHeight: contentHeight
                model: box.popup.visible ? box.delegateModel : null
                currentIndex: box.highlightedIndex
                highlightMoveDuration: 0
                highlightResizeDuration: 0
            }

            background: Rectangle {
                radius: Tokens.keyRadius
                color: Looks.current.panelBottom
                border.width: 1
                border.color: Looks.current.line
            }
        }
    }
}
